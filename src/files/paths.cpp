#include "files/paths.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "frame/errors.h"

namespace korel {

namespace {
void currentDirectory(char* result, const char* failure) {
  if (getcwd(result, longestPath + 1) == nullptr) userror(failure);
}
}  // namespace

void FullyQualifyDir(const char* path, char* result) {
  char before[longestPath + 1];
  currentDirectory(before, "could not determine current directory");
  if (chdir(path) != 0) userror("directory does not exist");
  const bool known = getcwd(result, longestPath + 1) != nullptr;
  if (chdir(before) != 0) userror("could not return to current directory");
  if (!known) userror("could not qualify directory");
}

void FullyQualifyFile(const char* path, char* result) {
  if (std::strlen(path) > longestPath) KernelException("file name longer than %1 characters", immediate(longestPath));
  char directory[longestPath + 1], qualified[longestPath + 1];
  const char* name = path;
  if (const char* slash = std::strrchr(path, '/')) {
    const auto n = static_cast<std::size_t>(slash - path);
    std::memcpy(directory, path, n);
    std::strcpy(directory + n, n == 0 ? "/" : "");
    FullyQualifyDir(directory, qualified);
    name = slash + 1;
  } else {
    currentDirectory(qualified, "could not determine current directory");
  }
  char whole[2 * longestPath + 4];
  const bool isRoot = std::strcmp(qualified, "/") == 0;
  const int length = std::snprintf(whole, sizeof whole, "%s%c%s", isRoot ? "" : qualified, '/', name);
  if (length > longestPath)
    KernelException("expanded file name would be longer than %1 characters", immediate(longestPath));
  std::memcpy(result, whole, static_cast<std::size_t>(length) + 1);
}

bool absolutePath(const char* path, char* result) {
  if (std::strlen(path) > longestPath) return false;
  char directory[longestPath + 1], whole[PATH_MAX];
  const char* slash = std::strrchr(path, '/');
  const auto n = slash != nullptr ? static_cast<std::size_t>(slash - path) : 0;
  std::memcpy(directory, path, n);
  std::strcpy(directory + n, n > 0 ? "" : slash != nullptr ? "/" : ".");
  if (realpath(directory, whole) == nullptr) return false;
  const char* name = slash != nullptr ? slash + 1 : path;
  const int length = std::snprintf(result, longestPath + 1, "%s/%s", std::strcmp(whole, "/") == 0 ? "" : whole, name);
  return length <= longestPath;
}

}  // namespace korel
