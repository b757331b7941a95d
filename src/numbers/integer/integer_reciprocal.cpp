#include "numbers/integer/integer_reciprocal.h"

#include <algorithm>
#include <cstring>

namespace korel {

namespace {

// Groups of a reciprocal: below, it comes from a division. Measured with bench/integer_bench.cpp.
constexpr std::size_t newtonGroups = 300;

/// r = base^2k / b less a few units, k + 1 groups, for the k groups of b, the top one at least half the
/// base: no more than base^2k / (b + 1), so that it is low for whatever b is the leading part of.
void reciprocal(Group* r, const Group* b, std::size_t k) {
  constexpr Group slack = 4;  // at least base^2k / b - base^2k / (b + 1)
  if (k < newtonGroups) {
    GroupSpace unit(2 * k);
    for (std::size_t i = 0; i < 2 * k; ++i) unit[i] = groupBase - 1;
    divideGroups(r, unit, 2 * k, b, k);
    subtractGroups(r, r, k + 1, &slack, 1);
    return;
  }
  // From x for the upper h groups, x + x (1 - b x), which is low again: the error's square lies below the
  // last group.
  const std::size_t h = k / 2 + 2, l = k - h;
  GroupSpace space(h + 1 + (k + h + 1) + (k + 2) + (k + 3));
  Group *x = space, *product = x + h + 1, *error = product + k + h + 1, *step = error + k + 2;
  reciprocal(x, b + l, h);
  multiplyGroups(product, b, k, x, h + 1);
  // base^(k + h) - b x is not negative and has k + 1 groups.
  std::memset(error, 0, (k + 2) * sizeof(Group));
  subtractGroups(error, error, k + 2, product, k + 2);
  // Of the error only what reaches the result.
  multiplyGroups(step, x, h + 1, error + h - 1, l + 2);
  std::memset(r, 0, l * sizeof(Group));
  std::memcpy(r + l, x, (h + 1) * sizeof(Group));
  addGroups(r, r, k + 1, step + h + 1, l + 2);
  subtractGroups(r, r, k + 1, &slack, 1);
}

}  // namespace

void divideByReciprocal(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  // Two blocks at least: the second half of a reciprocal costs more than it saves.
  std::size_t count = na - nb, blocks = std::max<std::size_t>(2, (count + nb - 2) / (nb - 1));
  const std::size_t block = (count + blocks - 1) / blocks, k = block + 1;
  GroupSpace space((k + 1) + (2 * k + 1) + (block + nb));
  Group *inverse = space, *estimate = inverse + k + 1, *product = estimate + 2 * k + 1;
  reciprocal(inverse, b + nb - k, k);
  while (count > 0) {
    // What is left so far lies in a[count .. count + nb) and is below b.
    const std::size_t n = (count - 1) % block + 1;
    multiplyGroups(estimate, inverse, k + 1, a + count + nb - k, k);
    count -= n;
    std::memcpy(q + count, estimate + 2 * k - n, n * sizeof(Group));
    multiplyGroups(product, q + count, n, b, nb);
    Group* left = a + count;
    subtractGroups(left, left, n + nb, product, n + nb);
    // One too small at most, and seldom.
    while (left[nb] != 0 || compareGroups(left, b, nb) >= 0) {
      const Group one = 1;
      left[nb] -= subtractGroups(left, left, nb, b, nb);
      addGroups(q + count, q + count, n, &one, 1);
    }
  }
}

}  // namespace korel
