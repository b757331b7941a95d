#include "library/archive/archive_index.h"

#include <cstring>

#include "frame/errors.h"

namespace korel {

namespace {

std::uint32_t bigEndian(const char* bytes) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
  return value;
}
void putBigEndian(char* bytes, std::uint32_t value) {
  for (int i = 3; i >= 0; --i, value >>= 8) bytes[i] = static_cast<char>(value & 255);
}

}  // namespace

bool readEntry(const char* entry, int entrySize, std::int64_t dataSize, IndexEntry& numbers) {
  std::size_t n = strnlen(entry, static_cast<std::size_t>(entrySize));
  if (n > static_cast<std::size_t>(longestMemberName(entrySize))) return false;
  numbers = {bigEndian(entry + n + 1), bigEndian(entry + n + 5), bigEndian(entry + n + 9)};
  return std::int64_t{numbers.offset} + numbers.length <= dataSize;
}

void writeEntry(char* entry, int entrySize, const char* name, const IndexEntry& numbers) {
  std::size_t n = std::strlen(name);
  std::memset(entry, 0, static_cast<std::size_t>(entrySize));
  std::memcpy(entry, name, n);
  putBigEndian(entry + n + 1, numbers.offset);
  putBigEndian(entry + n + 5, numbers.length);
  putBigEndian(entry + n + 9, numbers.time);
}

std::int64_t blockCount(const ArchivePair& pair) { return fileSize(pair.index) / pair.blockSize(); }

void readBlock(ArchivePair& pair, std::int64_t b, char* block, bool closes) {
  std::int64_t size = pair.blockSize();
  std::int64_t got = readAt(pair.index, block, size, b * size);
  if (got == size) return;
  if (closes) closePair(pair);
  if (got < 0) _userror2("failed to read library archive block %ld", static_cast<long>(b));
  _userror2("library archive block is too short (%ld bytes)", static_cast<long>(got));
}

IndexPlace findMember(ArchivePair& pair, const char* name, char* block, bool closes) {
  const std::int64_t blocks = blockCount(pair);
  if (blocks <= 0) {
    if (closes) closePair(pair);
    userror("archive index has zero length");
  }
  std::int64_t b = archiveHash(name) % blocks;
  for (std::int64_t searched = 0; searched < blocks; ++searched, b = (b + 1) % blocks) {
    readBlock(pair, b, block, closes);
    for (int i = 0; i < entriesPerBlock; ++i) {
      const char* entry = block + i * pair.entrySize;
      if (isFree(entry)) return {Lookup::absent, b, i, searched};
      if (std::strncmp(entry, name, static_cast<std::size_t>(pair.entrySize)) == 0)
        return {Lookup::found, b, i, searched};
    }
  }
  return {Lookup::full, 0, 0, blocks};
}

}  // namespace korel
