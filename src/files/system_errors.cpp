#include "files/system_errors.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "frame/errors.h"

namespace korel {

namespace {

struct ErrorRow {
  int error;
  const char* text;
};
constexpr ErrorRow errorRows[] = {
    // error         message
    {EACCES,        "permission denied"},
    {EPERM,         "permission denied"},
    {ENOENT,        "file or directory does not exist"},
    {ENOTDIR,       "file or directory does not exist"},
    {EBUSY,         "operation failed, please try again"},
    {EAGAIN,        "operation failed, please try again"},
    {EISDIR,        "file name refers to a directory"},
    {ETXTBSY,       "file name refers to an active executable"},
    {ENAMETOOLONG,  "file name too long"},
    {ENOSPC,        "no space left on device"},
    {EDQUOT,        "file space quota exceeded"},
    {EROFS,         "read-only file system"},
    {EMFILE,        "too many files already open"},
    {ENFILE,        "too many files already open"},
    {ELOOP,         "too many symbolic links - possible circular reference"},
    {EBADF,         "internal error - invalid file descriptor"},
    {EEXIST,        "directory exists and is not empty"},
    {ENOTEMPTY,     "directory exists and is not empty"},
};

}  // namespace

const char* systemErrorText(int error, bool onDirectory) {
  if (onDirectory && (error == ENOENT || error == ENOTDIR)) return "directory does not exist";
  for (const ErrorRow& row : errorRows)
    if (row.error == error) return row.text;
  // The system's own words, in the style of the others.
  static char text[128];
  std::snprintf(text, sizeof text, "%s", std::strerror(error));
  if (text[0] >= 'A' && text[0] <= 'Z') text[0] = static_cast<char>(text[0] - 'A' + 'a');
  return text;
}

void raiseSystemError(int error) { userror(systemErrorText(error)); }
void raiseSystemError() { raiseSystemError(errno); }
void raiseDirectoryError() { userror(systemErrorText(errno, true)); }
}  // namespace korel
