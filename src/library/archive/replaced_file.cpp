#include "library/archive/replaced_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korel {

namespace {

int openForWriting(const char* path) {
  int descriptor;
  do descriptor = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

// Opens a file beside `path`, with the rights of the one that it is to replace.
void openBeside(ReplacedFile& file, const char* path) {
  struct stat s;
  const bool exists = ::stat(path, &s) == 0;
  if (exists && (!S_ISREG(s.st_mode) || ::access(path, W_OK) != 0)) return;
  if (std::strlen(path) + 16 >= sizeof file.temporary) return;
  std::snprintf(file.path, sizeof file.path, "%s", path);
  std::snprintf(file.temporary, sizeof file.temporary, "%.*s.%ld", longestArchivePath - 16, path,
                static_cast<long>(::getpid()));
  file.descriptor = openForWriting(file.temporary);
  if (file.descriptor >= 0 && exists) static_cast<void>(::fchmod(file.descriptor, s.st_mode & 07777));
}

}  // namespace

bool openReplaced(ReplacedFile& file, const char* name) {
  file = ReplacedFile();
  char* target = ::realpath(name, nullptr);
  const char* path = target != nullptr ? target : name;
  openBeside(file, path);
  if (file.descriptor < 0) {
    file.temporary[0] = 0;
    file.descriptor = openForWriting(path);
  }
  std::free(target);
  return file.descriptor >= 0;
}

bool commitReplaced(ReplacedFile& file) {
  bool good = ::close(file.descriptor) == 0;
  file.descriptor = -1;
  if (file.temporary[0] == 0) return good;
  good = good && std::rename(file.temporary, file.path) == 0;
  if (!good) ::unlink(file.temporary);
  return good;
}

void abandonReplaced(ReplacedFile& file) {
  if (file.descriptor >= 0) ::close(file.descriptor);
  if (file.temporary[0] != 0) ::unlink(file.temporary);
  file = ReplacedFile();
}

}  // namespace korel
