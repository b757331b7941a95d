#include "library/repository/side_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "library/archive/archive_files.h"

namespace korel {

namespace {

constexpr int recordLength = 264, wasteOffset = 260, directoryLength = 255;

struct SideRecord {
  std::uint32_t number = 1, wasted = 0;
};

void putWord(unsigned char* at, std::uint32_t value) {
  for (int i = 0; i < 4; ++i, value >>= 8) at[i] = static_cast<unsigned char>(value & 255);
}
std::uint32_t word(const unsigned char* at) {
  std::uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = value << 8 | at[i];
  return value;
}

int openSideFile(const char* directory) {
  char path[longestArchivePath];
  std::snprintf(path, sizeof path, "%s/korel.rep", directory);
  int descriptor;
  do descriptor = ::open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

bool readRecord(int descriptor, SideRecord& record) {
  unsigned char bytes[recordLength];
  std::int64_t got = readAt(descriptor, bytes, recordLength, 0);
  if (got == 0) {
    record = SideRecord();
    return true;
  }
  if (got != recordLength) return false;
  record = {word(bytes), word(bytes + wasteOffset)};
  return true;
}

bool writeRecord(int descriptor, const char* directory, const SideRecord& record) {
  unsigned char bytes[recordLength] = {};
  putWord(bytes, record.number);
  std::strncpy(reinterpret_cast<char*>(bytes) + 4, directory, directoryLength);
  putWord(bytes + wasteOffset, record.wasted);
  return writeAt(descriptor, bytes, recordLength, 0) == recordLength;
}

// Calls `change(record)` under the lock and writes the record back; false when that can't be done.
template <class Change>
bool updateRecord(const char* directory, Change change) {
  int descriptor = openSideFile(directory);
  if (descriptor < 0) return false;
  SideRecord record;
  bool good = lockFile(descriptor, 0, recordLength) && readRecord(descriptor, record);
  if (good) {
    change(record);
    good = writeRecord(descriptor, directory, record);
  }
  ::close(descriptor);  // and with it the lock
  return good;
}

}  // namespace

std::uint32_t CreateUniqueObjectNumber(const char* directory) {
  std::uint32_t number = 0;
  bool good = updateRecord(directory, [&](SideRecord& record) { number = record.number++; });
  return good ? number : 0;
}

std::uint32_t UpdateWastedSpace(const char* directory, std::uint32_t n) {
  std::uint32_t total = n;
  bool good = updateRecord(directory, [&](SideRecord& record) {
    record.wasted = n == 0 ? 0 : record.wasted + n;
    total = record.wasted;
  });
  return good ? total : n;
}

namespace {

int lockDirectory(const char* directory, int operation) {
  int descriptor = ::open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return -1;
  int result;
  do result = ::flock(descriptor, operation);
  while (result != 0 && errno == EINTR);
  if (result == 0) return descriptor;
  ::close(descriptor);
  return -1;
}

}  // namespace

int enterDirectory(const char* directory, DirectoryUse use) {
  return lockDirectory(directory, use == DirectoryUse::save ? LOCK_SH : LOCK_EX);
}
bool isDirectoryBusy(const char* directory) {
  int lock = lockDirectory(directory, LOCK_EX | LOCK_NB);
  bool busy = lock < 0 && errno == EWOULDBLOCK;
  leaveDirectory(lock);
  return busy;
}
void leaveDirectory(int lock) {
  if (lock >= 0) ::close(lock);
}

}  // namespace korel
