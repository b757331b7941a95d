#include "library/repository/directory_contents.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <sys/stat.h>

#include "library/archive/archive_files.h"
#include "library/archive/archive_index.h"
#include "store/word_map.h"

namespace korel {

namespace {

// ---- times

struct FileTime {
  std::uint64_t device = 0, inode = 0;
  std::int64_t changed = 0;  // nanoseconds
  bool operator==(const FileTime&) const = default;
};

std::int64_t nanoseconds(const timespec& t) { return std::int64_t{t.tv_sec} * 1000000000 + t.tv_nsec; }
std::int64_t now(clockid_t clock) {
  timespec t;
  return ::clock_gettime(clock, &t) == 0 ? nanoseconds(t) : 0;
}

FileTime timeOf(const char* path) {
  struct stat s;
  if (::stat(path, &s) != 0) return FileTime();
  return {s.st_dev, s.st_ino, nanoseconds(s.st_mtim)};
}

constexpr std::int64_t clockTick = 20 * 1000000;  // within it, two changes may bear one time
constexpr std::int64_t doubtAfter = 100 * 1000000;

// ---- one directory

struct Contents {
  char directory[longestArchivePath] = "";
  FileTime directoryTime, indexTime;
  bool isKnown = false;    // the hashes tell all there is
  bool isTrusted = false;  // the times have been looked at since the last doubt
  std::int64_t trustedAt = 0;
  WordMap names;  // hashes of files and members, and of folders with a slash behind
};
constexpr int contentsCount = 8;
Contents contents[contentsCount];
int nextContents = 0;

std::uint32_t hashOf(const char* text, std::size_t n, std::uint32_t h = 2166136261u) {
  for (std::size_t i = 0; i < n; ++i) h = (h ^ static_cast<unsigned char>(text[i])) * 16777619u;
  return h;
}
Word key(std::uint32_t hash) { return hash == 0 ? 1 : hash; }

bool endsInM(const char* text, std::size_t n) { return n >= 2 && text[n - 2] == '.' && text[n - 1] == 'm'; }

bool addName(Contents& c, const char* text) {
  std::size_t n = std::strlen(text);
  std::uint32_t hash = endsInM(text, n) ? hashOf(text, n - 2) : hashOf("/", 1, hashOf(text, n));
  return c.names.insert(key(hash), 0) != WordMap::outOfMemory;
}

bool addFiles(Contents& c) {
  DIR* folder = ::opendir(c.directory);
  if (folder == nullptr) return errno == ENOENT;
  bool good = true;
  while (const dirent* entry = ::readdir(folder)) good = good && addName(c, entry->d_name);
  ::closedir(folder);
  return good;
}

bool addMembers(Contents& c) {
  const ArchivePair* cached = cachedArchive(c.directory);
  if (cached == nullptr) return true;
  ArchivePair pair = *cached;
  const std::int64_t size = fileSize(pair.index);
  if (size % pair.blockSize() != 0 || size == 0) return false;  // damaged: whoever looks a member up is told
  auto* index = static_cast<char*>(std::malloc(static_cast<std::size_t>(size) + 1));
  bool good = index != nullptr && readAt(pair.index, index, size, 0) == size;
  for (std::int64_t at = 0; good && at + pair.entrySize <= size; at += pair.entrySize) {
    IndexEntry numbers;
    const char* entry = index + at;
    if (!isFree(entry) && !isTombstone(entry) && readEntry(entry, pair.entrySize, INT64_MAX, numbers))
      good = addName(c, entry);
  }
  std::free(index);
  return good;
}

void look(Contents& c) {
  char index[longestArchivePath];
  archivePath(ArchivePlace{c.directory}, ArchiveFile::index, index);
  const FileTime directoryTime = timeOf(c.directory), indexTime = timeOf(index);
  c.isTrusted = true;
  c.trustedAt = now(CLOCK_MONOTONIC_COARSE);
  if (c.isKnown && directoryTime == c.directoryTime && indexTime == c.indexTime) return;
  c.names.clear();
  const std::int64_t recent = now(CLOCK_REALTIME) - clockTick;
  c.isKnown = addFiles(c) && addMembers(c);
  c.directoryTime = directoryTime;
  c.indexTime = indexTime;
  // What is this young may change again without showing it.
  if (directoryTime.changed > recent) c.directoryTime = FileTime();
  if (indexTime.changed > recent) c.indexTime.changed = -1;
}

Contents& contentsOf(const char* directory) {
  for (Contents& c : contents)
    if (c.directory[0] != 0 && std::strcmp(c.directory, directory) == 0) return c;
  Contents& c = contents[nextContents];
  nextContents = (nextContents + 1) % contentsCount;
  c.names.clear();
  c.isKnown = c.isTrusted = false;
  std::snprintf(c.directory, sizeof c.directory, "%s", directory);
  return c;
}

}  // namespace

bool mayHoldMember(const char* directory, const char* name) {
  if (std::strlen(directory) + 16 >= longestArchivePath) return true;
  Contents& c = contentsOf(directory);
  if (!c.isTrusted || now(CLOCK_MONOTONIC_COARSE) - c.trustedAt > doubtAfter) look(c);
  if (!c.isKnown) return true;
  if (c.names.find(key(hashOf(name, std::strlen(name)))) != nullptr) return true;
  const char* slash = std::strchr(name, '/');
  if (slash == nullptr) return false;
  // A file of a folder: a path may also go through `..` or name nothing in front of the slash.
  if (slash == name || name[0] == '.') return true;
  return c.names.find(key(hashOf(name, static_cast<std::size_t>(slash - name) + 1))) != nullptr;
}

void doubtDirectoryContents() {
  for (Contents& c : contents) c.isTrusted = false;
}

void forgetDirectoryContents() {
  for (Contents& c : contents) {
    c.names.release();
    c.directory[0] = 0;
    c.isKnown = c.isTrusted = false;
  }
}

}  // namespace korel
