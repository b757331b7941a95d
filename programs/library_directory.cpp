#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <sys/stat.h>
#include <unistd.h>

#include "library_directory.h"

namespace korel {

namespace {

bool isDirectory(const char* path) {
  struct stat status;
  return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

const char* programLibrary() {
  static char library[1024 + 16];
  char program[1024];
  ssize_t length = readlink("/proc/self/exe", program, sizeof program - 1);
  if (length <= 0) return nullptr;
  program[length] = '\0';
  for (int up = 0; up < 2; ++up) {  // the program's name, then bin
    char* slash = std::strrchr(program, '/');
    if (slash == nullptr) return nullptr;
    *slash = '\0';
  }
  for (const char* place : {"lib/korel", "lib"}) {
    std::snprintf(library, sizeof library, "%s/%s", program, place);
    if (isDirectory(library)) return library;
  }
  return nullptr;
}

}  // namespace korel
