// Commands of the archive tool that make files: create, pack, reindex.

#include "library/archive/march.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/archive/archive_index.h"
#include "library/repository/side_file.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool isPrime(std::int64_t n) {
  if (n < 2) return false;
  for (std::int64_t d = 2; d * d <= n; ++d)
    if (n % d == 0) return false;
  return true;
}
// The first prime among the odd numbers from `n` on.
std::int64_t firstPrime(std::int64_t n) {
  if (n % 2 == 0) ++n;
  while (!isPrime(n)) n += 2;
  return n;
}

int createFile(const ArchivePlace& place, ArchiveFile file) {
  char path[longestArchivePath];
  archivePath(place, file, path);
  return ::open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
}
bool moveFile(const ArchivePlace& place, ArchiveFile from, ArchiveFile to) {
  char before[longestArchivePath], after[longestArchivePath];
  archivePath(place, from, before);
  archivePath(place, to, after);
  return std::rename(before, after) == 0;
}
void removeFile(const ArchivePlace& place, ArchiveFile file) {
  char path[longestArchivePath];
  archivePath(place, file, path);
  ::unlink(path);
}

void checkNoArguments(const MarchRun& run) {
  if (memberCount(run.arguments) != 0)
    KernelException("no additional arguments expected for %1 command", strinstall(run.command));
}

// ---- create

constexpr std::int32_t largestTable = 999999;

std::int32_t tableSize(const MarchRun& run) {
  Word n = memberCount(run.arguments);
  DAG size = n == 1 ? run.arguments[1] : naminstall("nothing");
  if (n != 1 || !isInteger(size) || hasTag(size, INTNEG))
    KernelException("positive integer argument expected for %1 command, but received %2", strinstall(run.command),
                    size);
  if (!isImmediate(size) || immediateValue(size) < 1 || immediateValue(size) > largestTable)
    KernelException("table size must be between 1 and 999999");
  return immediateValue(size);
}

bool exists(const MarchRun& run, ArchiveFile file) {
  char path[longestArchivePath];
  archivePath(run.place, file, path);
  return ::access(path, F_OK) == 0;
}

[[noreturn]] void failToCreate(MarchRun& run, const char* text) {
  removeFile(run.place, ArchiveFile::index);
  removeFile(run.place, ArchiveFile::data);
  closePair(run.pair);
  KernelException(text);
}

// ---- pack

struct Packing {
  MarchRun& run;
  std::int64_t offset;  // of the next member in the new data
  bool failed;
};

bool copyMember(MarchRun& run, const IndexEntry& entry, std::int64_t to) {
  char buffer[65536];
  for (std::int64_t done = 0; done < entry.length;) {
    std::int64_t piece = std::int64_t{entry.length} - done;
    if (piece > static_cast<std::int64_t>(sizeof buffer)) piece = sizeof buffer;
    if (readAt(run.pair.data, buffer, piece, entry.offset + done) != piece) return false;
    if (writeAt(run.newData, buffer, piece, to + done) != piece) return false;
    done += piece;
  }
  return true;
}

// Empty entries and tombstones keep their places; members move up in the data.
void packEntry(void* context, const char* text, std::int64_t position) {
  auto& p = *static_cast<Packing*>(context);
  const int size = p.run.pair.entrySize;
  char entry[largestEntry];
  std::memcpy(entry, text, static_cast<std::size_t>(size));
  if (!isFree(entry) && !isTombstone(entry)) {
    IndexEntry numbers;
    if (!readEntry(text, size, fileSize(p.run.pair.data), numbers)) {
      // A damaged entry leads to no member.
      std::memset(entry, 0, static_cast<std::size_t>(size));
      entry[0] = tombstone;
    } else {
      p.failed = p.failed || !copyMember(p.run, numbers, p.offset);
      char name[largestEntry + 1] = "";
      std::memcpy(name, text, static_cast<std::size_t>(size));
      writeEntry(entry, size, name, {static_cast<std::uint32_t>(p.offset), numbers.length, numbers.time});
      p.offset += numbers.length;
    }
  }
  p.failed = p.failed || writeAt(p.run.newIndex, entry, size, position) != size;
}

// ---- reindex

struct Members {
  char* entries;
  std::int64_t count, capacity;
  MarchRun& run;
};

void keepEntry(void* context, const char* text, std::int64_t) {
  auto& m = *static_cast<Members*>(context);
  const int size = m.run.pair.entrySize;
  if (m.count == m.capacity) {
    m.capacity = m.capacity == 0 ? 256 : 2 * m.capacity;
    auto* entries = static_cast<char*>(std::realloc(m.entries, static_cast<std::size_t>(m.capacity * size)));
    if (entries == nullptr) notimpl("out of memory allocating hash table");
    m.run.memory = m.entries = entries;
  }
  IndexEntry numbers;
  if (!readEntry(text, size, INT64_MAX, numbers)) return;  // damaged
  std::memcpy(m.entries + m.count++ * size, text, static_cast<std::size_t>(size));
}

std::int64_t blockOf(const Members& m, std::int64_t i, std::int64_t blocks) {
  return archiveHash(m.entries + i * m.run.pair.entrySize) % blocks;
}

// Counts of members by block, behind the members in one piece of memory.
struct Layout {
  std::int64_t blocks;
  std::int32_t fewest, most;
};

Layout layoutFor(const Members& m, std::int64_t blocks, std::int32_t* counts) {
  std::memset(counts, 0, static_cast<std::size_t>(blocks) * sizeof *counts);
  for (std::int64_t i = 0; i < m.count; ++i) ++counts[blockOf(m, i, blocks)];
  Layout layout{blocks, counts[0], counts[0]};
  for (std::int64_t b = 1; b < blocks; ++b) {
    if (counts[b] < layout.fewest) layout.fewest = counts[b];
    if (counts[b] > layout.most) layout.most = counts[b];
  }
  return layout;
}

// So many blocks that none is full: a search ends within the home block.
Layout chooseLayout(const Members& m, std::int32_t*& counts) {
  std::int64_t blocks = firstPrime(m.count / entriesPerBlock + 1);
  if (blocks < 3) blocks = 3;
  for (;; blocks = firstPrime(blocks + 1)) {
    auto* grown = static_cast<std::int32_t*>(std::realloc(counts, static_cast<std::size_t>(blocks) * sizeof *counts));
    if (grown == nullptr) {
      std::free(counts);
      notimpl("out of memory allocating bucket table");
    }
    counts = grown;
    Layout layout = layoutFor(m, blocks, counts);
    if (layout.most < entriesPerBlock) return layout;
  }
}

// Each member at the next place of its block, the last of the list first.
bool writeIndex(const Members& m, const Layout& layout, std::int32_t* counts) {
  const int size = m.run.pair.entrySize;
  const std::int64_t blockSize = m.run.pair.blockSize();
  if (::ftruncate(m.run.newIndex, layout.blocks * blockSize) != 0) return false;
  std::memset(counts, 0, static_cast<std::size_t>(layout.blocks) * sizeof *counts);
  for (std::int64_t i = m.count; i-- > 0;) {
    std::int64_t b = blockOf(m, i, layout.blocks);
    std::int64_t at = b * blockSize + std::int64_t{counts[b]++} * size;
    if (writeAt(m.run.newIndex, m.entries + i * size, size, at) != size) return false;
  }
  return true;
}

}  // namespace

DAG marchCreate(MarchRun& run) {
  if (exists(run, ArchiveFile::index) || exists(run, ArchiveFile::data))
    KernelException("there is already an archive in \"%1\"", strinstall(run.place.directory));
  std::int64_t entries = 2 * std::int64_t{tableSize(run)};
  if (entries < entriesPerBlock) entries = entriesPerBlock;
  const std::int64_t blocks = firstPrime(entries / entriesPerBlock + 1);
  // The data first: an index alone would look like an archive whose data are lost.
  run.pair.data = createFile(run.place, ArchiveFile::data);
  if (run.pair.data < 0) KernelException("archive data file could not be created");
  run.pair.entrySize = largestEntry;
  const char entrySizeByte = 1;
  if (writeAt(run.pair.data, &entrySizeByte, 1, 0) != 1) failToCreate(run, "error while creating archive");
  run.pair.index = createFile(run.place, ArchiveFile::index);
  if (run.pair.index < 0) failToCreate(run, "archive index file could not be created");
  if (::ftruncate(run.pair.index, blocks * run.pair.blockSize()) != 0) failToCreate(run, "error while creating index");
  FlushDotMFileCache();  // its absence may have been noted
  return null;
}

DAG marchPack(MarchRun& run) {
  checkNoArguments(run);
  openArchiveForChange(run, "archive could not be opened for updating");
  // What is left of an index without a block names no member: all data would go.
  if (fileSize(run.pair.index) < run.pair.blockSize()) KernelException("archive index has zero length");
  FlushDotMFileCache();
  run.newData = createFile(run.place, ArchiveFile::newData);
  if (run.newData >= 0) run.newIndex = createFile(run.place, ArchiveFile::newIndex);
  if (run.newData < 0 || run.newIndex < 0) KernelException("temporary archive files could not be created");
  const char entrySizeByte = run.pair.entrySize == 64 ? 0 : 1;
  Packing packing{run, 1, writeAt(run.newData, &entrySizeByte, 1, 0) != 1};
  forEachEntry(run, packEntry, &packing, true);
  if (packing.failed) KernelException("could not write to new index or archive");
  // As long as both have their temporary names, the cleaning up of an error removes them.
  bool closed = ::fsync(run.newData) == 0 && ::fsync(run.newIndex) == 0;
  if (!closed || !moveFile(run.place, ArchiveFile::newData, ArchiveFile::data))
    KernelException("error while closing new archive");
  // From here on the new index belongs to the data, under whichever name.
  moveFile(run.place, ArchiveFile::newIndex, ArchiveFile::index);
  UpdateWastedSpace(run.place.directory, 0);
  return null;
}

DAG marchReindex(MarchRun& run) {
  checkNoArguments(run);
  openArchiveForChange(run, "index could not be opened for updating");
  FlushDotMFileCache();
  const std::int64_t before = fileSize(run.pair.index) / run.pair.entrySize;
  Members members{nullptr, 0, 0, run};
  forEachEntry(run, keepEntry, &members);
  std::int32_t* counts = nullptr;
  Layout layout = chooseLayout(members, counts);
  // An empty data file beside it says that the new index isn't the second half of a `pack`.
  run.newData = createFile(run.place, ArchiveFile::newData);
  if (run.newData >= 0) run.newIndex = createFile(run.place, ArchiveFile::newIndex);
  bool created = run.newIndex >= 0;
  bool written = created && writeIndex(members, layout, counts);
  std::free(counts);
  if (!created) KernelException("temporary index file could not be created");
  if (!written) KernelException("error while updating index");
  if (::fsync(run.newIndex) != 0 || !moveFile(run.place, ArchiveFile::newIndex, ArchiveFile::index))
    KernelException("error while closing new index");
  removeFile(run.place, ArchiveFile::newData);
  DAG range = new3(RANGE, Newint(layout.fewest), Newint(layout.most));
  return simpl(newSequence(
      {NewInteger(members.count), NewInteger(before), NewInteger(entriesPerBlock * layout.blocks), simpl(range)}));
}

}  // namespace korel
