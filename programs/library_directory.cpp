#include <cstdio>
#include <cstdlib>
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

/// The tree of the running program, `../lib/korel` or `..`; null when it has no library.
const char* programTree() {
  static char tree[1024 + 16];
  char program[1024], library[sizeof tree + 8];
  ssize_t length = readlink("/proc/self/exe", program, sizeof program - 1);
  if (length <= 0) return nullptr;
  program[length] = '\0';
  for (int up = 0; up < 2; ++up) {  // the program's name, then bin
    char* slash = std::strrchr(program, '/');
    if (slash == nullptr) return nullptr;
    *slash = '\0';
  }
  for (const char* place : {"/lib/korel", ""}) {
    std::snprintf(tree, sizeof tree, "%s%s", program, place);
    std::snprintf(library, sizeof library, "%s/lib", tree);
    if (isDirectory(library)) return tree;
  }
  return nullptr;
}

}  // namespace

const char* programLibrary() {
  static char library[1024 + 32];
  const char* tree = programTree();
  if (tree == nullptr) return nullptr;
  std::snprintf(library, sizeof library, "%s/lib", tree);
  return library;
}

void exportProgramTree() {
  if (const char* tree = programTree()) setenv("KOREL", tree, 0);
}

}  // namespace korel
