#include "library/help_path.h"

#include "frame/output.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"

namespace korel {

namespace {
DAG announcedPath;  // 0 before the first call
}  // namespace

void InitializeHelp() {
  registerRoot(&announcedPath);
  DAG path = ini("libname")[1];
  if (!path || path == announcedPath) return;
  announcedPath = path;
  sendStream("INTERFACE_HELP", {naminstall("setpath"), path});
}

}  // namespace korel
