#include "library/archive/member_io.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

#include "eval/evaluate/environment_variables.h"
#include "frame/errors.h"
#include "library/archive/archive_files.h"
#include "library/archive/archive_index.h"
#include "library/archive/march.h"
#include "library/archive/replaced_file.h"
#include "library/repository/directory_contents.h"
#include "library/repository/repository.h"
#include "library/repository/side_file.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- reading

struct ReadState {
  int descriptor;
  char* buffer;
  std::size_t space;
  const char *at, *end;
  std::int64_t left;  // bytes of the member still to come; -1 for a plain file
  ReadState* outer;
};
ReadState* reading = nullptr;
bool mayFailToRead = false;

int openFile(const char* name, int flags) {
  int descriptor;
  do descriptor = ::open(name, flags | O_CLOEXEC, 0666);
  while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

// What `OpenArchiveMember` has found out about the member it opened.
std::int64_t memberLength = -1;

void logRead(const char* name) {
  if (logfiles < 0) return;
  bool written = ::write(logfiles, name, std::strlen(name)) >= 0 && ::write(logfiles, "\n", 1) >= 0;
  static_cast<void>(written);  // the log is no part of the result
}

bool fillBuffer(ReadState& s) {
  std::size_t wanted = readPiece;
  if (s.left >= 0 && static_cast<std::int64_t>(wanted) > s.left) wanted = static_cast<std::size_t>(s.left);
  if (wanted == 0) return false;
  ssize_t got;
  do got = ::read(s.descriptor, s.buffer, wanted);
  while (got < 0 && errno == EINTR);
  if (got < 0) userror("unable to read file or pipe");
  if (s.left >= 0) s.left -= got;
  s.at = s.buffer;
  s.end = s.buffer + got;
  return got > 0;
}

}  // namespace

void ReadFailOK() { mayFailToRead = true; }

bool AllocRead(const char* name, char* buffer, std::size_t size) {
  memberLength = -1;
  bool mayFail = mayFailToRead;
  mayFailToRead = false;
  int descriptor = openFile(name, O_RDONLY);
  if (descriptor < 0) descriptor = OpenArchiveMember(name, readMember);
  if (descriptor < 0) {
    if (!mayFail) _userror2("could not open `%s` for reading", name);
    return false;
  }
  logRead(name);
  auto* state = static_cast<ReadState*>(std::malloc(sizeof(ReadState)));
  if (state == nullptr) {
    ::close(descriptor);
    notimpl("ran out of memory");
  }
  *state = {descriptor, buffer, size, buffer, buffer, memberLength, reading};
  reading = state;
  return true;
}

int ReadByte() {
  if (reading == nullptr) return -1;  // closed by an error
  ReadState& s = *reading;
  if (s.at == s.end && !fillBuffer(s)) return -1;
  return static_cast<unsigned char>(*s.at++);
}

bool ReadPiece(const unsigned char*& at, const unsigned char*& end) {
  if (reading == nullptr) return false;  // closed by an error
  ReadState& s = *reading;
  if (s.at == s.end && !fillBuffer(s)) return false;
  at = reinterpret_cast<const unsigned char*>(s.at);
  end = reinterpret_cast<const unsigned char*>(s.end);
  s.at = s.end;
  return true;
}

void DeallocRead() {
  ReadState* s = reading;
  if (s == nullptr) return;
  reading = s->outer;
  ::close(s->descriptor);
  std::free(s);
}

// ---- the directories whose archives count

namespace {

constexpr std::size_t longestMemberPath = 116;  // in any archive

// The directory of `libname` that holds `path` and has an archive, and the member's name in it.
struct MemberPlace {
  char directory[longestArchivePath];
  const char* member;
};

// The member behind the directory that the first `n` characters of `path` name.
template <class Visit>
bool visitPlace(const char* path, std::size_t n, Visit visit) {
  if (path[n] != '/' || std::strlen(path + n + 1) >= longestMemberPath || n + 16 >= longestArchivePath) return false;
  MemberPlace place;
  std::memcpy(place.directory, path, n);
  place.directory[n] = 0;
  place.member = path + n + 1;
  return visit(place);
}

// Calls `visit(place)` for each candidate that fits, in order, until it answers true.
template <class Visit>
bool forEachFittingEntry(const char* path, Visit visit) {
  DAG entries = valuenv(ini("libname"), true);
  DAG alone[1] = {entries};
  const DAG* entry = isSequence(entries) ? &entries[1] : alone;
  Word count = isSequence(entries) ? memberCount(entries) : 1;
  for (Word i = 0; i < count; ++i) {
    if (!isText(entry[i])) continue;
    const char* text = textOf(entry[i]);
    std::size_t n = std::strlen(text);
    if (std::strncmp(path, text, n) == 0 && visitPlace(path, n, visit)) return true;
  }
  // A repository that is open counts also when its directory has left `libname`.
  for (const char* slash = std::strchr(path, '/'); slash != nullptr; slash = std::strchr(slash + 1, '/')) {
    auto n = static_cast<std::size_t>(slash - path);
    if (isOpenRepository(path, n) && visitPlace(path, n, visit)) return true;
  }
  return false;
}

// ---- writing

struct WriteState {
  int descriptor = -1;
  char* buffer = nullptr;
  std::size_t space = 0, used = 0;
  bool isMember = false;
  ReplacedFile plain;  // when it is no member
  // Of a member:
  char directory[longestArchivePath] = "", member[largestEntry] = "";
  int index = -1;
  int entrySize = 0;
  std::int64_t block = 0, entryOffset = 0, offset = 0;
  std::uint32_t oldLength = 0;
};
WriteState writing;

void closeWriting() {
  // The locks belong to the open files and go with them.
  if (writing.descriptor >= 0) ::close(writing.descriptor);
  if (writing.index >= 0) ::close(writing.index);
  writing = WriteState();
}

bool flushBuffer() {
  std::size_t done = 0;
  while (done < writing.used) {
    ssize_t put = ::write(writing.descriptor, writing.buffer + done, writing.used - done);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    done += static_cast<std::size_t>(put);
  }
  writing.used = 0;
  return true;
}

// A search that has passed so many full blocks says that the index wants to be rebuilt.
constexpr std::int64_t longestChain = 11;

enum class Opened { ready, absent, again };

// Locks the entry's block and the data, and looks again: others may have written meanwhile.
Opened lockMember(const ArchivePlace& place, ArchivePair& pair, const char* member) {
  char block[largestBlock];
  IndexPlace at = findMember(pair, member, block, true);
  const std::int64_t blocks = blockCount(pair);
  // An index of one or two blocks is full before so many are: `create` and `reindex` make none so small.
  const bool isFull = at.result == Lookup::full && blocks <= 2;
  if (!isFull && (at.searched >= longestChain || at.searched > blocks / 2)) {
    closePair(pair);
    FlushDotMFileCache();
    rebuildArchiveIndex(place.directory);
    return Opened::again;
  }
  if (at.result == Lookup::full) {
    closePair(pair);
    userror("library archive is full");
  }
  const std::int64_t size = pair.blockSize();
  if (!lockFile(pair.index, at.block * size, size) || !lockFile(pair.data) || !isCurrent(place, pair))
    return Opened::again;
  IndexPlace now = findMember(pair, member, block, true);
  if (now.result == Lookup::full || now.block != at.block) return Opened::again;
  writing.block = now.block;
  writing.entryOffset = now.block * size + now.entry * pair.entrySize;
  IndexEntry old;
  const std::int64_t end = fileSize(pair.data);
  if (now.result == Lookup::found)
    writing.oldLength = readEntry(block + now.entry * pair.entrySize, pair.entrySize, end, old) ? old.length : 0;
  writing.offset = end;
  return Opened::ready;
}

// The index has no room for the new data's place: entries have four bytes for it.
constexpr std::int64_t largestOffset = 0xffffffff;

bool openForMember(const MemberPlace& at) {
  const ArchivePlace place{at.directory};
  for (;;) {
    ArchivePair pair;
    if (!openForWriting(place, pair)) return false;
    if (static_cast<int>(std::strlen(at.member)) > longestMemberName(pair.entrySize)) {
      closePair(pair);
      return false;
    }
    writing = WriteState();
    Opened opened = lockMember(place, pair, at.member);
    if (opened == Opened::again) {
      closePair(pair);
      continue;
    }
    if (writing.offset >= largestOffset || ::lseek(pair.data, writing.offset, SEEK_SET) < 0) {
      closePair(pair);
      userror("could not open archive file for writing");
    }
    writing.isMember = true;
    writing.descriptor = pair.data;
    writing.index = pair.index;
    writing.entrySize = pair.entrySize;
    std::snprintf(writing.directory, sizeof writing.directory, "%s", at.directory);
    std::snprintf(writing.member, sizeof writing.member, "%s", at.member);
    return true;
  }
}

int openMemberToRead(const MemberPlace& at) {
  const ArchivePair* cached = cachedArchive(at.directory);
  if (cached == nullptr) return -1;
  ArchivePair pair = *cached;
  if (static_cast<int>(std::strlen(at.member)) > longestMemberName(pair.entrySize)) return -1;
  char block[largestBlock];
  IndexPlace place = findMember(pair, at.member, block, false);
  if (place.result != Lookup::found) return -1;
  IndexEntry entry;
  if (!readEntry(block + place.entry * pair.entrySize, pair.entrySize, fileSize(pair.data), entry))
    entry = IndexEntry();  // nothing of it can be read
  // A description of its own: what is read meanwhile may move or close the cached one.
  char path[64];
  std::snprintf(path, sizeof path, "/proc/self/fd/%d", pair.data);
  int descriptor = openFile(path, O_RDONLY);
  if (descriptor < 0) userror("could not open archive file for reading or writing");
  ::lseek(descriptor, entry.offset, SEEK_SET);
  memberLength = entry.length;
  return descriptor;
}

}  // namespace

int OpenArchiveMember(const char* path, MemberMode mode) {
  std::size_t n = std::strlen(path);
  if (n < 2 || std::strcmp(path + n - 2, ".m") != 0) userror("only .m files can be stored in archives");
  int descriptor = -1;
  forEachFittingEntry(path, [&](const MemberPlace& place) {
    if (mode == readMember) descriptor = openMemberToRead(place);
    else if (openForMember(place)) descriptor = writing.descriptor;
    return descriptor >= 0;
  });
  return descriptor;
}

namespace {
bool openPlain(const char* name) {
  writing = WriteState();
  if (!openReplaced(writing.plain, name)) return false;
  writing.descriptor = writing.plain.descriptor;
  return true;
}
}  // namespace

void AllocWrite(const char* name, char* buffer, std::size_t size) {
  doubtDirectoryContents();
  if (writing.descriptor >= 0) AbandonWrite();
  bool isPlain = ::access(name, F_OK) == 0;
  bool opened = isPlain && openPlain(name);
  std::size_t n = std::strlen(name);
  bool isRecords = n >= 2 && std::strcmp(name + n - 2, ".m") == 0;
  if (!opened && isRecords) opened = OpenArchiveMember(name, writeMember) >= 0;
  if (!opened && !openPlain(name)) {
    writing = WriteState();
    _userror2("could not open `%s` for writing", name);
  }
  writing.buffer = buffer;
  writing.space = size;
  writing.used = 0;
}

bool WriteByte(int c) {
  if (writing.descriptor < 0) return false;
  if (writing.used == writing.space && !flushBuffer()) return false;
  writing.buffer[writing.used++] = static_cast<char>(c);
  return true;
}

bool WriteBytes(const char* bytes, std::size_t n) {
  if (writing.descriptor < 0) return false;
  while (n > 0) {
    if (writing.used == writing.space && !flushBuffer()) return false;
    const std::size_t piece = n < writing.space - writing.used ? n : writing.space - writing.used;
    std::memcpy(writing.buffer + writing.used, bytes, piece);
    writing.used += piece;
    bytes += piece;
    n -= piece;
  }
  return true;
}

void AbandonWrite() {
  if (writing.descriptor < 0) return;
  if (writing.isMember) {
    // The bytes written so far lie behind the end that the index knows.
    static_cast<void>(::ftruncate(writing.descriptor, writing.offset) == 0);
  } else {
    abandonReplaced(writing.plain);
    writing.descriptor = -1;
  }
  closeWriting();
}

namespace {

bool finishPlainFile() {
  writing.descriptor = -1;
  bool good = commitReplaced(writing.plain);
  closeWriting();
  return good;
}

// The new place of the member in one write, which lies within a page.
bool finishMember() {
  std::int64_t length = fileSize(writing.descriptor) - writing.offset;
  if (length < 0 || writing.offset + length > largestOffset) return false;
  char entry[largestEntry];
  writeEntry(entry, writing.entrySize, writing.member,
             {static_cast<std::uint32_t>(writing.offset), static_cast<std::uint32_t>(length),
              static_cast<std::uint32_t>(std::time(nullptr))});
  return writeAt(writing.index, entry, writing.entrySize, writing.entryOffset) == writing.entrySize;
}

}  // namespace

void DeallocWrite() {
  doubtDirectoryContents();
  if (!flushBuffer()) {
    AbandonWrite();
    userror("could not flush .m file");
  }
  if (!writing.isMember) {
    if (!finishPlainFile()) userror("could not flush .m file");
    return;
  }
  if (!finishMember()) {
    closeWriting();
    userror("could not update library archive index");
  }
  char directory[longestArchivePath];
  std::snprintf(directory, sizeof directory, "%s", writing.directory);
  const std::uint32_t oldLength = writing.oldLength;
  const std::int64_t end = fileSize(writing.descriptor);
  closeWriting();
  if (oldLength == 0) return;
  if (UpdateWastedSpace(directory, oldLength) > end / 3) {
    FlushDotMFileCache();
    packArchive(directory);
  }
}

void ResetDotMIO() {
  while (reading != nullptr) DeallocRead();
  AbandonWrite();
  mayFailToRead = false;
}

}  // namespace korel
