#include "rtable/storage_kinds.h"

#include <algorithm>

#include "store/constants.h"
#include "store/object_fields.h"
#include "store/standard_names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

using Count = __int128;

// Elements of the upper triangle of an r by c block, `above` more diagonals than the strict one's.
Count upperCount(Count r, Count c) { return c < r ? c * (c + 1) / 2 : r * (2 * c + 1 - r) / 2; }
Count strictUpperCount(Count r, Count c) { return c < r ? c * (c - 1) / 2 : r * (2 * c - 1 - r) / 2; }
Count upperHessenbergCount(Count r, Count c) {
  if (r == 0 || c == 0) return 0;
  return c < r ? (c + 1) * (c + 2) / 2 - 1 : r * (2 * c + 3 - r) / 2 - 1;
}

// How a storage kind counts what it keeps of an r by c block; null where the rule isn't one for two dimensions.
struct StorageRule {
  bool twoDimensions;
  Count (*count)(Count r, Count c);
};
constexpr StorageRule storageRules[] = {
    // two dims  count
    {false, nullptr},                                                       // sparse: the capacity
    {false, nullptr},                                                       // empty
    {false, nullptr},                                                       // diagonal
    {true, nullptr},                                                        // band
    {false, nullptr},                                                       // rectangular
    {true, upperCount},                                                     // triangular[upper]
    {true, strictUpperCount},                                               // triangular[upper,strict]
    {true, upperHessenbergCount},                                           // Hessenberg[upper]
    {true, [](Count r, Count c) { return upperCount(c, r); }},              // triangular[lower]
    {true, [](Count r, Count c) { return strictUpperCount(c, r); }},        // triangular[lower,strict]
    {true, [](Count r, Count c) { return upperHessenbergCount(c, r); }},    // Hessenberg[lower]
    {false, nullptr},                                                       // scalar
};
static_assert(std::size(storageRules) == storageKindCount);

constexpr Count largestCount = 0x7fffffff;

Count extent(const std::int32_t* bounds, Word k) {
  return std::max(Count{bounds[2 * k + 1]} - bounds[2 * k] + 1, Count{0});
}

// The product of all extents, up to where it no longer fits.
Count wholeCount(const std::int32_t* bounds, Word n) {
  Count product = 1;
  for (Word k = 0; k < n; ++k)
    if (extent(bounds, k) == 0) return 0;
  for (Word k = 0; k < n && product <= largestCount; ++k) product *= extent(bounds, k);
  return product;
}

Count diagonalCount(const std::int32_t* bounds, Word n) {
  Count lowest = bounds[0], highest = bounds[1];
  for (Word k = 1; k < n; ++k) {
    lowest = std::max(lowest, Count{bounds[2 * k]});
    highest = std::min(highest, Count{bounds[2 * k + 1]});
  }
  return std::max(highest - lowest + 1, Count{0});
}

}  // namespace

std::int64_t storedElements(const std::int32_t* bounds, Word n, Word storage, std::int32_t b1, std::int32_t b2) {
  const StorageRule& rule = storageRules[storage];
  if (rule.twoDimensions && n != 2) return -1;
  Count count = 0;
  switch (storage) {
    case storageSparse: count = std::min(Count{std::max(b1, 0)}, wholeCount(bounds, n)); break;
    case storageEmpty: count = 0; break;
    case storageDiagonal: count = n == 0 ? Count{1} : diagonalCount(bounds, n); break;
    case storageBand: count = (Count{b1} + b2 + 1) * std::max(extent(bounds, 0), extent(bounds, 1)); break;
    case storageRectangular: count = wholeCount(bounds, n); break;
    case storageScalar: count = 1; break;
    default: count = rule.count(extent(bounds, 0), extent(bounds, 1)); break;
  }
  return count > largestCount ? -2 : static_cast<std::int64_t>(count);
}

}  // namespace korel
