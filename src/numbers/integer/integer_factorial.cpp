// Factorials, as a balanced product of factors that have been gathered into groups.

#include "numbers/integer/integer.h"

#include "frame/errors.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_groups.h"

namespace korel {

namespace {

constexpr std::int32_t smallFactorials[] = {1,    1,     2,      6,       24,       120,      720,
                                            5040, 40320, 362880, 3628800, 39916800, 479001600};
constexpr std::int32_t largestArgument = 32176;
constexpr std::int32_t leafFactors = 128;

/// Groups that hold a product of n factors of at most 5 decimals.
std::size_t productBound(std::int32_t n) { return static_cast<std::size_t>(n) * 5 / 16 + 2; }

/// r = first * (first + 1) * ... * last; gives the count of groups.
std::size_t rangeProduct(std::int32_t first, std::int32_t last, Group* r) {
  if (last - first < leafFactors) {
    std::size_t count = 1;
    r[0] = 1;
    Group gathered = 1;
    auto take = [&] {
      if (Group carry = scaleGroups(r, r, count, gathered)) r[count++] = carry;
      gathered = 1;
    };
    for (std::int32_t k = first; k <= last; ++k) {
      if (gathered >= groupBase / static_cast<Group>(k)) take();
      gathered *= static_cast<Group>(k);
    }
    take();
    return count;
  }
  std::int32_t middle = first + (last - first) / 2;
  GroupSpace low(productBound(middle - first + 1)), high(productBound(last - middle));
  std::size_t nl = rangeProduct(first, middle, low), nh = rangeProduct(middle + 1, last, high);
  multiplyGroups(r, low, nl, high, nh);
  return significantGroups(r, nl + nh);
}

}  // namespace

DAG factorial(DAG n) {
  if (!isImmediate(n) || immediateValue(n) > largestArgument) KernelException("object too large for factorial");
  std::int32_t k = immediateValue(n);
  assert(k >= 0);
  if (k < static_cast<std::int32_t>(std::size(smallFactorials))) return Newint(smallFactorials[k]);
  GroupSpace product(productBound(k));
  std::size_t count = rangeProduct(2, k, product);
  return integerOfGroups(product, count, INTPOS);
}

}  // namespace korel
