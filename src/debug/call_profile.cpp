#include "debug/call_profile.h"

#include <cmath>
#include <cstdio>

#include "frame/interrupts.h"
#include "frame/output.h"
#include "session/driver.h"
#include "store/allocator.h"
#include "store/long_string.h"
#include "store/objects.h"
#include "text/print/convert_text.h"

namespace korel {

namespace {
constexpr std::int64_t wordsPart = 100000000;
constexpr double ticksPerSecond = 300;
}  // namespace

void prtprof(bool entering, const char* name, std::int32_t depth) {
  if (optprofile == 0) return;
  Msendprint(entering ? "->" : "<-");
  Msendprint(name);
  const std::int64_t words = wordsUsed();
  char line[96];
  int n = std::snprintf(line, sizeof line, " %d,", static_cast<int>(depth));
  n += words < wordsPart ? std::snprintf(line + n, sizeof line - n, "%d", static_cast<int>(words))
                         : std::snprintf(line + n, sizeof line - n, "%ld%08ld", static_cast<long>(words / wordsPart),
                                         static_cast<long>(words % wordsPart));
  std::snprintf(line + n, sizeof line - n, ",%.0f\n", std::rint(cptime() * ticksPerSecond));
  Msendprint(line);
}

void prtprof(bool entering, DAG name, std::int32_t depth) {
  if (optprofile != 0) prtprof(entering, textOf(ConvertToString(name)), depth);
}

}  // namespace korel
