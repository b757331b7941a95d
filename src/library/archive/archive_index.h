#pragma once
// The index of an archive: a hash table of entries on disk, in blocks that are read whole.
//
// A member stands in the block that the hash of its name tells, or, when that was full, in a later one in cyclic
// order. The first empty entry ends a search; tombstones do not.

#include <cstdint>

#include "library/archive/archive_files.h"

namespace korel {

/// h = 131 h + c over the bytes of the name.
constexpr std::uint32_t archiveHash(const char* name) {
  std::uint32_t h = 0;
  for (; *name != 0; ++name) h = 131 * h + static_cast<unsigned char>(*name);
  return h;
}

struct IndexEntry {
  std::uint32_t offset = 0, length = 0, time = 0;
};
/// The longest name that an entry has room for.
constexpr int longestMemberName(int entrySize) { return entrySize - 13; }
constexpr char tombstone = 1;
inline bool isFree(const char* entry) { return entry[0] == 0; }
inline bool isTombstone(const char* entry) { return entry[0] == tombstone; }

/// The numbers behind the name of a used entry. False when the name has no end within the entry, or the member
/// would reach beyond a data file of `dataSize` bytes.
bool readEntry(const char* entry, int entrySize, std::int64_t dataSize, IndexEntry& numbers);
/// Fills an entry of `entrySize` bytes.
void writeEntry(char* entry, int entrySize, const char* name, const IndexEntry& numbers);

/// How many blocks the index has. Error: "archive index has zero length".
std::int64_t blockCount(const ArchivePair& pair);
/// Reads block `b` into `block`. Errors: "failed to read library archive block %ld", "library archive block is too
/// short (%ld bytes)"; `pair` is closed first when `closes`.
void readBlock(ArchivePair& pair, std::int64_t b, char* block, bool closes);

enum class Lookup { found, absent, full };
struct IndexPlace {
  Lookup result;
  std::int64_t block = 0;     // of the entry
  int entry = 0;              // within the block
  std::int64_t searched = 0;  // blocks that were full
};
/// Looks for `name`; for `absent`, the place is the first empty entry. `block` holds the entry's block afterwards.
IndexPlace findMember(ArchivePair& pair, const char* name, char* block, bool closes);

}  // namespace korel
