#include "hardware/hardware_cache.h"

#include <algorithm>
#include <iterator>

#include "hardware/hardware_frame.h"

namespace korel {

namespace {

constexpr Word cacheSlots = 64;
DAG HFCacheAdd[cacheSlots];
double HFCacheVal[cacheSlots];
std::uint32_t cacheEpoch = 0;

Word slotOf(DAG x) { return (x.word >> 3) & (cacheSlots - 1); }

}  // namespace

void clearNumberCache() {
  std::fill(std::begin(HFCacheAdd), std::end(HFCacheAdd), DAG());
  cacheEpoch = hardwareEpoch;
}

bool findCachedNumber(DAG x, double& value) {
  if (cacheEpoch != hardwareEpoch) clearNumberCache();
  const Word slot = slotOf(x);
  if (HFCacheAdd[slot] != x) return false;
  value = HFCacheVal[slot];
  return true;
}

void cacheNumber(DAG x, double value) {
  HFCacheAdd[slotOf(x)] = x;
  HFCacheVal[slotOf(x)] = value;
}

}  // namespace korel
