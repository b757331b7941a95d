// Commands of the archive tool on single members: add, update, extract, delete, list.

#include "library/archive/march.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/archive/archive_index.h"
#include "numbers/integer/integer.h"
#include "store/append.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- arguments

struct PairTexts {
  const char* none;        // no argument at all
  const char* incomplete;  // one too few
};

// Pairs of a file and a member, in whichever order the command takes them. Everything is checked before anything
// is written.
void checkPairs(const MarchRun& run, const PairTexts& texts, bool fileFirst) {
  Word n = memberCount(run.arguments);
  if (n == 0) KernelException(texts.none, strinstall(run.command));
  if (n % 2 != 0) KernelException(texts.incomplete);
  for (Word i = 1; i <= n; ++i) {
    DAG argument = run.arguments[i];
    bool isFile = (i % 2 == 1) == fileFirst;
    // An entry that begins with the end of its name is an empty one.
    const bool isStorable = !fileFirst || isFile || !isText(argument) || textOf(argument)[0] != 0;
    if (!isText(argument) || !isStorable)
      KernelException(isFile ? "\"%1\" is not a valid file name" : "\"%1\" is not a valid member name", argument);
  }
}

void checkMemberLengths(const MarchRun& run, Word first, Word step) {
  const int longest = longestMemberName(run.pair.entrySize);
  for (Word i = first; i < lengthOf(run.arguments); i += step)
    if (std::strlen(textOf(run.arguments[i])) > static_cast<std::size_t>(longest))
      KernelException("member name \"%1\" is longer than %2 characters", run.arguments[i], immediate(longest));
}

void checkNoArguments(const MarchRun& run) {
  if (memberCount(run.arguments) != 0)
    KernelException("no additional arguments expected for %1 command", strinstall(run.command));
}

// ---- entries, one at a time

struct EntryPlace {
  bool found;
  std::int64_t position;  // of the entry found, or of the one that a new member takes; -1 when there is none
  IndexEntry entry;
};

EntryPlace findEntry(MarchRun& run, const char* name) {
  const int size = run.pair.entrySize;
  const std::int64_t count = fileSize(run.pair.index) / size, blocks = count / entriesPerBlock;
  EntryPlace place{false, -1, IndexEntry()};
  if (blocks == 0) return place;
  char entry[largestEntry];
  std::int64_t i = entriesPerBlock * (archiveHash(name) % blocks);
  for (std::int64_t steps = 0; steps < count; ++steps, i = (i + 1) % count) {
    if (readAt(run.pair.index, entry, size, i * size) != size) KernelException("error while reading index");
    if (isFree(entry)) {
      if (place.position < 0) place.position = i * size;
      return place;
    }
    if (isTombstone(entry)) {
      place.position = i * size;  // the latest one is taken
    } else if (std::strncmp(entry, name, static_cast<std::size_t>(size)) == 0) {
      place.found = readEntry(entry, size, fileSize(run.pair.data), place.entry);
      place.position = i * size;
      if (!place.found) KernelException("error while reading index");
      return place;
    }
  }
  return place;
}

void storeEntry(MarchRun& run, const char* name, std::int64_t position, std::int64_t offset, std::int64_t length) {
  char entry[largestEntry];
  if (offset + length > 0xffffffff) KernelException("error while updating index");
  writeEntry(entry, run.pair.entrySize, name,
             {static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(length),
              static_cast<std::uint32_t>(std::time(nullptr))});
  if (writeAt(run.pair.index, entry, run.pair.entrySize, position) != run.pair.entrySize)
    KernelException("error while updating index");
}

// Copies `length` bytes between open files; false when either fails.
bool copyBytes(int from, std::int64_t at, int to, std::int64_t toAt, std::int64_t length) {
  char buffer[65536];
  while (length > 0) {
    std::int64_t piece = length < static_cast<std::int64_t>(sizeof buffer) ? length : sizeof buffer;
    if (readAt(from, buffer, piece, at) != piece || writeAt(to, buffer, piece, toAt) != piece) return false;
    at += piece;
    toAt += piece;
    length -= piece;
  }
  return true;
}

// ---- add and update

void storeFile(MarchRun& run, DAG file, DAG member, bool isUpdate) {
  int source = ::open(textOf(file), O_RDONLY | O_CLOEXEC);
  std::int64_t length = source < 0 ? -1 : fileSize(source);
  struct stat s;
  if (source < 0 || ::fstat(source, &s) != 0 || !S_ISREG(s.st_mode)) {
    if (source >= 0) ::close(source);
    return KernelWarning(2, "file \"%1\" could not be opened, skipping", file);
  }
  run.file = source;  // an error closes it
  EntryPlace place = findEntry(run, textOf(member));
  if (place.found && !isUpdate) KernelWarning(2, "member \"%1\" already in archive, skipping", member);
  if (!place.found && isUpdate) KernelWarning(2, "member \"%1\" not found in archive, skipping", member);
  if (place.found == isUpdate) {
    if (place.position < 0) KernelException("no more members can be added to the index");
    bool inPlace = isUpdate && length <= std::int64_t{place.entry.length};
    std::int64_t offset = inPlace ? std::int64_t{place.entry.offset} : fileSize(run.pair.data);
    // A new member's bytes stand before its entry does.
    if (!copyBytes(source, 0, run.pair.data, offset, length)) KernelException("error while updating archive");
    storeEntry(run, textOf(member), place.position, offset, length);
  }
  ::close(source);
  run.file = -1;
}

DAG storeFiles(MarchRun& run, bool isUpdate) {
  checkPairs(run, {"file and member name(s) expected for %1 command", "there must be a member name for each file name"},
             true);
  openArchiveForChange(run, "archive could not be opened for updating");
  checkMemberLengths(run, 2, 2);
  for (Word i = 1; i < lengthOf(run.arguments); i += 2)
    storeFile(run, run.arguments[i], run.arguments[i + 1], isUpdate);
  bool good = ::close(run.pair.index) == 0;
  good = ::close(run.pair.data) == 0 && good;
  run.pair = ArchivePair();
  if (!good) KernelException("error while updating index or archive");
  return null;
}

// ---- list

// The time of storing as [year, month, day, hour, minute, second]; [] for one that can't be true.
DAG dateOf(std::uint32_t time) {
  constexpr std::uint32_t earliest = 799048800, clockError = 300;
  const std::time_t now = std::time(nullptr);
  if (std::int64_t{time} > std::int64_t{now} + clockError || time < earliest) return emptylist;
  const std::time_t t = time;
  struct tm parts;
  ::localtime_r(&t, &parts);
  DAG date = newSequence({Newint(parts.tm_year + 1900), Newint(parts.tm_mon + 1), Newint(parts.tm_mday),
                          Newint(parts.tm_hour), Newint(parts.tm_min), Newint(parts.tm_sec)});
  return simpl(new2(LIST, date));
}

struct Listing {
  MarchRun& run;
  DAG members;
};

}  // namespace

DAG marchAdd(MarchRun& run) { return storeFiles(run, false); }
DAG marchUpdate(MarchRun& run) { return storeFiles(run, true); }

DAG marchExtract(MarchRun& run) {
  checkPairs(run, {"member and file name(s) expected for %1 command", "there must be a file name for each member name"},
             false);
  openArchive(run);
  checkMemberLengths(run, 1, 2);
  for (Word i = 1; i < lengthOf(run.arguments); i += 2) {
    DAG member = run.arguments[i], file = run.arguments[i + 1];
    EntryPlace place = findEntry(run, textOf(member));
    if (!place.found) {
      KernelWarning(2, "member \"%1\" not found in archive, skipping", member);
      continue;
    }
    run.file = ::open(textOf(file), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (run.file < 0) {
      KernelWarning(2, "file \"%1\" could not be opened, skipping", file);
      continue;
    }
    bool good = copyBytes(run.pair.data, place.entry.offset, run.file, 0, place.entry.length);
    good = ::close(run.file) == 0 && good;
    run.file = -1;
    if (!good) KernelException("error while creating \"%1\"", file);
  }
  return null;
}

DAG marchDelete(MarchRun& run) {
  if (memberCount(run.arguments) == 0)
    KernelException("member name(s) expected for %1 command", strinstall(run.command));
  for (Word i = 1; i < lengthOf(run.arguments); ++i)
    if (!isText(run.arguments[i])) KernelException("\"%1\" is not a valid member name", run.arguments[i]);
  openArchiveForChange(run, "index could not be opened for updating");
  for (Word i = 1; i < lengthOf(run.arguments); ++i) {
    EntryPlace place = findEntry(run, textOf(run.arguments[i]));
    if (!place.found) {
      KernelWarning(2, "member \"%1\" not found in archive, skipping", run.arguments[i]);
      continue;
    }
    char entry[largestEntry] = {tombstone};
    if (writeAt(run.pair.index, entry, run.pair.entrySize, place.position) != run.pair.entrySize)
      KernelException("error while updating index");
  }
  return null;
}

DAG marchList(MarchRun& run) {
  checkNoArguments(run);
  openArchive(run);
  Listing listing{run, new1(EXPSEQ)};
  forEachEntry(
      run,
      [](void* context, const char* text, std::int64_t) {
        auto& l = *static_cast<Listing*>(context);
        IndexEntry entry;
        char name[largestEntry + 1] = "";
        std::memcpy(name, text, static_cast<std::size_t>(l.run.pair.entrySize));
        readEntry(text, l.run.pair.entrySize, INT64_MAX, entry);
        DAG row =
            newSequence({strinstall(name), dateOf(entry.time), NewInteger(entry.offset), NewInteger(entry.length)});
        l.members = Append2(l.members, simpl(new2(LIST, row)));
      },
      &listing);
  return simpl(new2(LIST, simpl(listing.members)));
}

}  // namespace korel
