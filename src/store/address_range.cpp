#include "store/address_range.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <sys/resource.h>

namespace korel {

namespace {

constexpr std::uint64_t pageBytes = 4096;
constexpr std::uint64_t hugePageBytes = std::uint64_t{2} << 20;
constexpr std::uint64_t lowestAddress = 0x10000;  // what the system keeps free at the bottom
constexpr std::uint64_t addressLimit = std::uint64_t{1} << 32;
constexpr std::uint64_t smallestRange = std::uint64_t{16} << 20;

struct Range {
  std::uint64_t begin = 0, end = 0;
  std::uint64_t size() const { return end - begin; }
};

std::uint64_t rangeBegin = 0, rangeNext = 0, rangeEnd = 0;

// The largest gap between mappings below 4 GiB.
Range largestGap() {
  Range best;
  std::uint64_t free = lowestAddress;
  auto consider = [&best](std::uint64_t begin, std::uint64_t end) {
    if (end > begin && end - begin > best.size()) best = {begin, end};
  };
  std::FILE* maps = std::fopen("/proc/self/maps", "r");
  if (maps == nullptr) return {lowestAddress, addressLimit};
  char line[512];
  while (std::fgets(line, sizeof line, maps) != nullptr) {
    unsigned long begin = 0, end = 0;
    if (std::sscanf(line, "%lx-%lx", &begin, &end) != 2) continue;
    if (begin >= addressLimit) break;
    consider(free, begin);
    if (end > free) free = end;
  }
  std::fclose(maps);
  if (free < addressLimit) consider(free, addressLimit - pageBytes);
  return best;
}

bool reserve(Range range) {
  void* wanted = reinterpret_cast<void*>(range.begin);
  void* got =
      ::mmap(wanted, range.size(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED_NOREPLACE, -1, 0);
  if (got == MAP_FAILED) return false;
  if (got != wanted) {
    ::munmap(got, range.size());
    return false;
  }
  return true;
}

// Reserves what there is. A sanitizer or a limit of the system can refuse a part: smaller ranges at the
// gap's end are tried then.
void reserveRange() {
  Range gap = largestGap();
  gap.begin = (gap.begin + pageBytes - 1) & ~(pageBytes - 1);
  gap.end &= ~(pageBytes - 1);
  while (gap.size() >= smallestRange) {
    if (reserve(gap)) {
      rangeBegin = rangeNext = gap.begin;
      ::madvise(reinterpret_cast<void*>(gap.begin), gap.size(), MADV_HUGEPAGE);
      rangeEnd = gap.end;
      return;
    }
    gap.begin += ((gap.size() / 8) + pageBytes - 1) & ~(pageBytes - 1);
  }
  std::fputs("korel: no addresses below 4 GiB are free\n", stderr);
  std::exit(1);
}

std::uint64_t committedEnd = 0;  // page boundary up to which memory stands behind the range

// Bytes that the system counts against the limit of data; 0 when it doesn't tell.
std::uint64_t dataBytes() {
  std::FILE* statm = std::fopen("/proc/self/statm", "r");
  if (statm == nullptr) return 0;
  unsigned long pages = 0;
  if (std::fscanf(statm, "%*u %*u %*u %*u %*u %lu", &pages) != 1) pages = 0;
  std::fclose(statm);
  return pages * pageBytes;
}

}  // namespace

Word commitWords(std::int64_t words) {
  if (rangeEnd == 0) {
    reserveRange();
    committedEnd = rangeNext;
  }
  std::uint64_t bytes = static_cast<std::uint64_t>(words) * 4;
  if (bytes + readableBehind > rangeEnd - rangeNext) return 0;
  std::uint64_t begin = rangeNext, end = begin + bytes;
  if (end + readableBehind > committedEnd) {
    // Memory comes in steps of whole pages; a private mapping is counted against the data limit.
    std::uint64_t upTo = (end + readableBehind + pageBytes - 1) & ~(pageBytes - 1);
    // A heap that has grown goes on in huge pages, which fault and miss less (bench/collections.sh).
    if (upTo - rangeBegin > 2 * hugePageBytes) upTo = (upTo + hugePageBytes - 1) & ~(hugePageBytes - 1);
    if (upTo > rangeEnd) upTo = rangeEnd;
    if (::mprotect(reinterpret_cast<void*>(committedEnd), upTo - committedEnd, PROT_READ | PROT_WRITE) != 0) return 0;
    committedEnd = upTo;
  }
  rangeNext = end;
  return static_cast<Word>(begin);
}

std::int64_t uncommittedWords() {
  std::uint64_t bytes = rangeEnd - rangeNext;
  rlimit limit{};
  if (::getrlimit(RLIMIT_DATA, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) {
    const std::uint64_t used = dataBytes();
    bytes = std::min<std::uint64_t>(bytes, limit.rlim_cur > used ? limit.rlim_cur - used : 0);
  }
  return static_cast<std::int64_t>(bytes / 4);
}

}  // namespace korel
