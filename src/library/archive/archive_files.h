#pragma once
// The two files of an archive, opened as a pair: the data, in which members lie one after another, and the
// index, which tells where.
//
//   data    byte 0: 0 for index entries of 64 bytes, 1 for 128; then members, each a whole `.m` file
//   index   blocks of 64 entries; no header
//   entry   name, zero byte, then big-endian words: offset, length, seconds since the epoch
//           first byte 0: empty; 1: a tombstone
//
// Readers take no lock. They are safe since nothing in use is overwritten: members are appended, an entry changes
// by one write within a page, and a rebuild writes two new files beside the old ones, which it renames into place,
// the data first. Whoever opens between the two renames finds the new index under its temporary name. A pair that
// is open stays consistent for good, and is opened anew when its paths name other files.
//
// Writers lock a block of the index, then the data; whoever rebuilds locks both files whole, in that order. Locks
// belong to the open file, so that closing another descriptor loses none. After locking, a writer checks that the
// paths still name what it has locked. What a killed rebuild left behind is completed, or removed, under the lock of
// the whole index.

#include <cstdint>

namespace korel {

constexpr int entriesPerBlock = 64;
constexpr int largestEntry = 128;
constexpr int largestBlock = entriesPerBlock * largestEntry;
constexpr int longestArchivePath = 1200;

/// Where an archive lies: the directory, and the text before and behind the extension of its files' names.
struct ArchivePlace {
  const char* directory;
  const char* prefix = "korel";
  const char* suffix = "";
};
enum class ArchiveFile { index, data, newIndex, newData };
/// The path of a file, into `path` of `longestArchivePath` characters. The new files of a rebuild are called
/// "lerok.ind" and "lerok.lib".
void archivePath(const ArchivePlace& place, ArchiveFile file, char* path);

struct ArchivePair {
  int index = -1, data = -1;  // descriptors; -1 for none
  int entrySize = 0;
  bool isOpen() const { return index >= 0; }
  int blockSize() const { return entriesPerBlock * entrySize; }
};
void closePair(ArchivePair& pair);

/// Opens both for reading, in a state that fits together. False when there is no archive. Errors: "could not open
/// archive file to determine index size", "failed to read archive index entry size byte", "invalid entry size byte
/// (%d) in archive".
bool openForReading(const ArchivePlace& place, ArchivePair& pair);
/// The same for reading and writing; leftovers of a killed rebuild are put in order first.
bool openForWriting(const ArchivePlace& place, ArchivePair& pair);
/// Whether the paths still name the files of the pair.
bool isCurrent(const ArchivePlace& place, const ArchivePair& pair);

/// Waits for the lock of `length` bytes from `offset` (0: to the end) and gives it back.
bool lockFile(int descriptor, std::int64_t offset = 0, std::int64_t length = 0);
void unlockFile(int descriptor, std::int64_t offset = 0, std::int64_t length = 0);
/// Locks both files whole; false when they are no longer what the paths name: open anew.
bool lockWhole(const ArchivePlace& place, const ArchivePair& pair);

/// Reads or writes `n` bytes at `offset`, going on after interruptions; the count done, or -1.
std::int64_t readAt(int descriptor, void* bytes, std::int64_t n, std::int64_t offset);
std::int64_t writeAt(int descriptor, const void* bytes, std::int64_t n, std::int64_t offset);
std::int64_t fileSize(int descriptor);

/// The pair of the archive in `directory`, kept open among eight; null when it has none, which is remembered too.
/// Valid until the next call.
const ArchivePair* cachedArchive(const char* directory);
/// Closes and forgets them all.
void FlushDotMFileCache();

}  // namespace korel
