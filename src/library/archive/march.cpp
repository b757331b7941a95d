#include "library/archive/march.h"

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/archive/archive_index.h"
#include "library/repository/directory_contents.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

struct CommandRow {
  const char* name;
  DAG (*run)(MarchRun& run);
};
constexpr CommandRow commands[] = {
    {"create", marchCreate},   {"add", marchAdd},         {"update", marchUpdate},
    {"extract", marchExtract}, {"delete", marchDelete},   {"list", marchList},
    {"pack", marchPack},       {"reindex", marchReindex}, {"gc", marchCollect},
};

const CommandRow* rowOf(const char* name) {
  for (const CommandRow& row : commands)
    if (std::strcmp(row.name, name) == 0) return &row;
  return nullptr;
}

// ---- the run under way, which an error cleans up

void closeRun(MarchRun& run) {
  closePair(run.pair);  // the locks go with the files
  if (run.newIndex >= 0) ::close(run.newIndex);
  if (run.newData >= 0) ::close(run.newData);
  if (run.file >= 0) ::close(run.file);
  std::free(run.memory);
  run.newIndex = run.newData = run.file = -1;
  run.memory = nullptr;
}

// A rebuild that fails leaves no temporary file. The data go last (archive_files.h).
void cleanUpRun(const char*) {
  auto& run = *reinterpret_cast<MarchRun*>(errorProcParam);
  if (run.newIndex >= 0 || run.newData >= 0) {
    char path[longestArchivePath];
    for (ArchiveFile file : {ArchiveFile::newIndex, ArchiveFile::newData}) {
      archivePath(run.place, file, path);
      ::unlink(path);
    }
  }
  closeRun(run);
}

// ---- arguments

const char* textSetting(DAG argument, const char* name) {
  bool isSetting =
      isTag(argument, EQUATION) && isName(argument[1]) && hasText(argument[1], name) && isTag(argument[2], STRING);
  return isSetting ? textOf(argument[2]) : nullptr;
}

// What stands behind command and directory; the equations become settings.
DAG commandArguments(DAG arguments, ArchivePlace& place) {
  DAG rest = newl2(lengthOf(arguments), EXPSEQ);
  Word n = 1;
  for (Word i = 3; i < lengthOf(arguments); ++i) {
    if (const char* prefix = textSetting(arguments[i], "prefix")) place.prefix = prefix;
    else if (const char* suffix = textSetting(arguments[i], "suffix")) place.suffix = suffix;
    else rest[n++] = arguments[i];
  }
  if (n != lengthOf(rest)) shorten(rest, lengthOf(rest), n);
  return rest;
}

bool fitsPath(const ArchivePlace& place) {
  return std::strlen(place.directory) + std::strlen(place.prefix) + std::strlen(place.suffix) + 16 <
         static_cast<std::size_t>(longestArchivePath);
}

[[noreturn]] void noArchive(const ArchivePlace& place) {
  KernelException("there is no existing archive in \"%1\"", strinstall(place.directory));
}

bool hasFile(const ArchivePlace& place, ArchiveFile file) {
  char path[longestArchivePath];
  archivePath(place, file, path);
  return ::access(path, R_OK) == 0;
}
bool hasArchive(const ArchivePlace& place) {
  return hasFile(place, ArchiveFile::index) && hasFile(place, ArchiveFile::data);
}

DAG runCommand(const CommandRow& row, const ArchivePlace& place, DAG arguments) {
  MarchRun run{place, arguments, row.name, ArchivePair(), -1, -1, -1, nullptr};
  PushParamErrorProc(cleanUpRun, &run);
  DAG result = row.run(run);
  PopErrorProc();
  closeRun(run);
  doubtDirectoryContents();
  return result;
}

}  // namespace

DAG March(DAG arguments) {
  if (lengthOf(arguments) < 3 || !isText(arguments[1]) || !isText(arguments[2]))
    KernelException("command and archive directory name required");
  ArchivePlace place{textOf(arguments[2])};
  DAG rest = commandArguments(arguments, place);
  const CommandRow* row = rowOf(textOf(arguments[1]));
  if (row == nullptr) KernelException("unrecognized march command %1", arguments[1]);
  if (!fitsPath(place) || (row->run != marchCreate && !hasArchive(place))) noArchive(place);
  return runCommand(*row, place, rest);
}

void packArchive(const char* directory) { runCommand(*rowOf("pack"), ArchivePlace{directory}, null); }
void rebuildArchiveIndex(const char* directory) { runCommand(*rowOf("reindex"), ArchivePlace{directory}, null); }

// ---- steps shared by commands

void openArchive(MarchRun& run) {
  if (!hasArchive(run.place) || !openForReading(run.place, run.pair)) noArchive(run.place);
}

void openArchiveForChange(MarchRun& run, const char* failure) {
  if (!hasArchive(run.place)) noArchive(run.place);
  for (;;) {
    if (!openForWriting(run.place, run.pair)) KernelException(failure);
    if (lockWhole(run.place, run.pair)) return;
    closePair(run.pair);
  }
}

void forEachEntry(MarchRun& run, void (*visit)(void* context, const char* entry, std::int64_t position), void* context,
                  bool all) {
  char block[largestBlock];
  const std::int64_t size = run.pair.blockSize(), end = fileSize(run.pair.index);
  for (std::int64_t at = 0; at < end; at += size) {
    std::int64_t got = readAt(run.pair.index, block, size, at);
    if (got < size && at + got < end) KernelException("error while reading index");
    for (std::int64_t i = 0; i + run.pair.entrySize <= got; i += run.pair.entrySize)
      if (all || (!isFree(block + i) && !isTombstone(block + i))) visit(context, block + i, at + i);
  }
}

}  // namespace korel
