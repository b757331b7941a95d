#include "library/search_path.h"

#include <unistd.h>

#include "frame/errors.h"
#include "frame/output.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"

namespace korel {

const char* FullyQualifyDir(const char* path) {
  static char qualified[pathBufferSize];
  char before[pathBufferSize];
  if (getcwd(before, sizeof before) == nullptr) userror("could not determine current directory");
  if (chdir(path) != 0) userror("directory does not exist");
  // The way back comes first: a failure must not leave the process elsewhere.
  bool known = getcwd(qualified, sizeof qualified) != nullptr;
  if (chdir(before) != 0) userror("could not return to current directory");
  if (!known) userror("could not qualify directory");
  return qualified;
}

namespace {
DAG announcedPath;  // 0 before the first call
}  // namespace

void InitializeHelp() {
  registerRoot(&announcedPath);
  DAG path = ini("libname")[1];
  if (!path || path == announcedPath) return;
  announcedPath = path;
  sendStream(Stream::HELP, {naminstall("setpath"), path});
}

}  // namespace korel
