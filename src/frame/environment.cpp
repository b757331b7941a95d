#include "frame/environment.h"

#include <sys/auxv.h>
#include <sys/resource.h>

#include "frame/environment_block.h"
#include "frame/errors.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/object_fields.h"

namespace korel {

EnvironmentBlock* Environment = nullptr;
EnvironmentBlock IniEnv;
Frame TopLevelStack;
DAG funret;

std::int64_t maxKorelStackSize = 0;
char* stackBaseAddress = nullptr;
char* stackEndAddress = nullptr;

namespace {

constexpr int evalfTable = 2;  // among the remember tables of built-ins
// Below the bound some stack must be left for what runs without a check of its own.
constexpr std::int64_t stackReserve = 32768;
constexpr std::int64_t unlimitedStackCap = std::int64_t{1} << 30;

}  // namespace

void forgetFloatsUnderOtherHandlers(DAG before, DAG after) {
  if (!before || !after) return;
  if (before[envNumericEventHandlers] == after[envNumericEventHandlers]) return;
  DAG table = rememberOf(builtrem[evalfTable]);
  if (isObject(table) && tagOf(table) == HASHTAB) clearhash(table, false);
}

void recordStackBounds() {
  char* here = static_cast<char*>(__builtin_frame_address(0));
  rlimit limit{};
  getrlimit(RLIMIT_STACK, &limit);
  std::int64_t size = limit.rlim_cur == RLIM_INFINITY || limit.rlim_cur > static_cast<rlim_t>(unlimitedStackCap)
                          ? unlimitedStackCap
                          : static_cast<std::int64_t>(limit.rlim_cur);
  maxKorelStackSize = size - stackReserve;
  if (korelLimitStack > stackReserve && korelLimitStack - stackReserve < maxKorelStackSize)
    maxKorelStackSize = korelLimitStack - stackReserve;
  // The system counts its limit from the very top, where the environment strings lie. Measuring
  // from there keeps a big environment from eating the reserve; another thread's stack has its own
  // top.
  char* top = reinterpret_cast<char*>(getauxval(AT_EXECFN));
  bool onMainStack = top >= here && top - here < size;
  stackBaseAddress = onMainStack ? top : here;
  stackEndAddress = stackBaseAddress - maxKorelStackSize;
}

bool stackExhausted() {
  char* here = static_cast<char*>(__builtin_frame_address(0));
  return here < stackEndAddress && SpecialError == noSpecialError;
}

void raiseUnlessUnwinding() {
  if (SpecialError != noSpecialError) return;
  SpecialError = stackOverflow;
  KernelException("too many levels of recursion");
}

}  // namespace korel
