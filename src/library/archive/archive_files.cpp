#include "library/archive/archive_files.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "frame/errors.h"

namespace korel {

// ---- bytes and locks

std::int64_t readAt(int descriptor, void* bytes, std::int64_t n, std::int64_t offset) {
  std::int64_t done = 0;
  while (done < n) {
    ssize_t got =
        ::pread(descriptor, static_cast<char*>(bytes) + done, static_cast<std::size_t>(n - done), offset + done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return -1;
    if (got == 0) break;
    done += got;
  }
  return done;
}

std::int64_t writeAt(int descriptor, const void* bytes, std::int64_t n, std::int64_t offset) {
  std::int64_t done = 0;
  while (done < n) {
    ssize_t put =
        ::pwrite(descriptor, static_cast<const char*>(bytes) + done, static_cast<std::size_t>(n - done), offset + done);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return done > 0 ? done : -1;
    done += put;
  }
  return done;
}

std::int64_t fileSize(int descriptor) {
  struct stat s;
  return ::fstat(descriptor, &s) == 0 ? s.st_size : -1;
}

namespace {

bool setLock(int descriptor, int command, short type, std::int64_t offset, std::int64_t length) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = offset;
  lock.l_len = length;
  int result;
  do result = ::fcntl(descriptor, command, &lock);
  while (result != 0 && errno == EINTR);
  return result == 0;
}

}  // namespace

bool lockFile(int descriptor, std::int64_t offset, std::int64_t length) {
  return setLock(descriptor, F_OFD_SETLKW, F_WRLCK, offset, length);
}
void unlockFile(int descriptor, std::int64_t offset, std::int64_t length) {
  setLock(descriptor, F_OFD_SETLK, F_UNLCK, offset, length);
}

// ---- paths

void archivePath(const ArchivePlace& place, ArchiveFile file, char* path) {
  switch (file) {
    case ArchiveFile::index:
      std::snprintf(path, longestArchivePath, "%s/%s.ind%s", place.directory, place.prefix, place.suffix);
      return;
    case ArchiveFile::data:
      std::snprintf(path, longestArchivePath, "%s/%s.lib%s", place.directory, place.prefix, place.suffix);
      return;
    case ArchiveFile::newIndex: std::snprintf(path, longestArchivePath, "%s/lerok.ind", place.directory); return;
    case ArchiveFile::newData: std::snprintf(path, longestArchivePath, "%s/lerok.lib", place.directory); return;
  }
}

namespace {

int openPath(const ArchivePlace& place, ArchiveFile file, int mode) {
  char path[longestArchivePath];
  archivePath(place, file, path);
  int descriptor;
  do descriptor = ::open(path, mode | O_CLOEXEC);
  while (descriptor < 0 && errno == EINTR);
  return descriptor;
}
bool exists(const ArchivePlace& place, ArchiveFile file) {
  char path[longestArchivePath];
  archivePath(place, file, path);
  return ::access(path, F_OK) == 0;
}
void removePath(const ArchivePlace& place, ArchiveFile file) {
  char path[longestArchivePath];
  archivePath(place, file, path);
  ::unlink(path);
}

// The path names the file that is open.
bool names(const ArchivePlace& place, ArchiveFile file, int descriptor) {
  char path[longestArchivePath];
  archivePath(place, file, path);
  struct stat byPath, opened;
  return ::stat(path, &byPath) == 0 && ::fstat(descriptor, &opened) == 0 && byPath.st_ino == opened.st_ino &&
         byPath.st_dev == opened.st_dev;
}

// A rebuild has put its data in place, and its index not yet: that one belongs to the data.
bool isBetweenRenames(const ArchivePlace& place) {
  return exists(place, ArchiveFile::newIndex) && !exists(place, ArchiveFile::newData);
}

void readEntrySize(ArchivePair& pair) {
  unsigned char byte;
  if (readAt(pair.data, &byte, 1, 0) != 1) {
    closePair(pair);
    userror("failed to read archive index entry size byte");
  }
  if (byte > 1) {
    closePair(pair);
    _userror2("invalid entry size byte (%d) in archive", static_cast<long>(byte));
  }
  pair.entrySize = byte == 0 ? 64 : 128;
}

constexpr int mostTries = 1000;  // renames that may come between two looks

}  // namespace

void closePair(ArchivePair& pair) {
  if (pair.index >= 0) ::close(pair.index);
  if (pair.data >= 0) ::close(pair.data);
  pair = ArchivePair();
}

bool isCurrent(const ArchivePlace& place, const ArchivePair& pair) {
  return names(place, ArchiveFile::index, pair.index) && names(place, ArchiveFile::data, pair.data);
}

bool openForReading(const ArchivePlace& place, ArchivePair& pair) {
  for (int tries = 0; tries < mostTries; ++tries) {
    pair.index = openPath(place, ArchiveFile::index, O_RDONLY);
    if (pair.index < 0) return false;
    pair.data = openPath(place, ArchiveFile::data, O_RDONLY);
    if (pair.data < 0) {
      closePair(pair);
      userror("could not open archive file to determine index size");
    }
    bool fits = isCurrent(place, pair);
    if (fits && isBetweenRenames(place)) {
      ::close(pair.index);
      pair.index = openPath(place, ArchiveFile::newIndex, O_RDONLY);
      fits = pair.index >= 0 && names(place, ArchiveFile::data, pair.data) &&
             (names(place, ArchiveFile::newIndex, pair.index) || names(place, ArchiveFile::index, pair.index));
    }
    if (fits) {
      readEntrySize(pair);
      return true;
    }
    closePair(pair);
  }
  return false;
}

bool lockWhole(const ArchivePlace& place, const ArchivePair& pair) {
  return lockFile(pair.index) && lockFile(pair.data) && isCurrent(place, pair);
}

namespace {

// Nobody rebuilds while this holds the lock of the whole index, so that temporary files are leftovers.
void putInOrder(const ArchivePlace& place) {
  int index = openPath(place, ArchiveFile::index, O_RDWR);
  if (index < 0) return;
  if (lockFile(index) && names(place, ArchiveFile::index, index)) {
    if (isBetweenRenames(place)) {
      char from[longestArchivePath], to[longestArchivePath];
      archivePath(place, ArchiveFile::newIndex, from);
      archivePath(place, ArchiveFile::index, to);
      std::rename(from, to);
    } else {
      // The data go last: an index alone would count as the second half of a rebuild.
      removePath(place, ArchiveFile::newIndex);
      removePath(place, ArchiveFile::newData);
    }
  }
  ::close(index);
}

}  // namespace

bool openForWriting(const ArchivePlace& place, ArchivePair& pair) {
  if (exists(place, ArchiveFile::newIndex) || exists(place, ArchiveFile::newData)) putInOrder(place);
  pair.index = openPath(place, ArchiveFile::index, O_RDWR);
  if (pair.index < 0) return false;
  pair.data = openPath(place, ArchiveFile::data, O_RDWR);
  if (pair.data < 0) {
    closePair(pair);
    return false;
  }
  readEntrySize(pair);
  return true;
}

// ---- archives kept open for reading

namespace {

struct Slot {
  char* directory = nullptr;  // from the system heap; null when the slot is free
  ArchivePair pair;           // not open: the directory has no archive
};
constexpr int slotCount = 8;
Slot slots[slotCount];
int nextSlot = 0;

void freeSlot(Slot& slot) {
  closePair(slot.pair);
  std::free(slot.directory);
  slot = Slot();
}

Slot* slotOf(const char* directory) {
  for (Slot& slot : slots)
    if (slot.directory != nullptr && std::strcmp(slot.directory, directory) == 0) return &slot;
  return nullptr;
}

Slot& newSlot(const char* directory) {
  Slot& slot = slots[nextSlot];
  nextSlot = (nextSlot + 1) % slotCount;
  freeSlot(slot);
  slot.directory = ::strdup(directory);
  if (slot.directory == nullptr) notimpl("ran out of memory");
  return slot;
}

}  // namespace

const ArchivePair* cachedArchive(const char* directory) {
  const ArchivePlace place{directory};
  Slot* slot = slotOf(directory);
  if (slot != nullptr && slot->pair.isOpen() && !isCurrent(place, slot->pair)) {
    freeSlot(*slot);
    slot = nullptr;
  }
  if (slot == nullptr) {
    ArchivePair pair;
    bool found = openForReading(place, pair);
    slot = &newSlot(directory);
    if (found) slot->pair = pair;
  }
  return slot->pair.isOpen() ? &slot->pair : nullptr;
}

void FlushDotMFileCache() {
  for (Slot& slot : slots) freeSlot(slot);
  nextSlot = 0;
}

}  // namespace korel
