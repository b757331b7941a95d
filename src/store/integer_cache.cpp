#include "store/integer_cache.h"

#include <cstring>

namespace korel {

Word IntHashAddr[integerCacheSize];
Word IntHashRes[integerCacheSize];
Word IntHashTime[integerCacheSize];
Word IntHashClock = 0;

Word beginIntegerTraversal() {
  ++IntHashClock;
  // Behind the wrap: no traversal has the time 0, which places never written bear.
  if (IntHashClock == 0) IntHashClock = 1;
  if (IntHashClock == 1) std::memset(IntHashTime, 0, sizeof IntHashTime);
  return IntHashClock;
}

}  // namespace korel
