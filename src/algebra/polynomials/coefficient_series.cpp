#include "algebra/polynomials/coefficient_series.h"

#include <algorithm>

#include "algebra/polynomials/degree.h"
#include "algebra/series/expansion.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// Where the series may be cut off: at the degree of p, if that is known and not far above n.
std::int64_t firstEstimate(DAG p, DAG x, std::int64_t n) {
  constexpr std::int64_t least = 7;
  std::int64_t k = std::max<std::int64_t>(n, 1), d;
  DAG known = degree(p, x);
  if (isInteger(known) && readLongLong(known, d)) k = std::max(k, d);
  while (k / 2 >= n && k / 2 >= least) k /= 2;
  return k;
}

// The order term hides the coefficient of x^n. It may stand below the degree that was asked for, since a pole takes
// terms away.
bool isTooShort(DAG series, std::int64_t n) {
  const Word length = lengthOf(series);
  return length > 2 && series[length - 2] == order1 && static_cast<std::int32_t>(rawField(series, length - 1)) <= n;
}

}  // namespace

DAG seriesForCoefficient(DAG p, DAG x, std::int64_t n) {
  std::int64_t k = firstEstimate(p, x, n);
  for (;; k += k / 5 + 2) {
    if (k < 0 || k > INT32_MAX - 1) KernelException("degree overflow in coeff");
    EnvironmentChange order;
    changeEnvironmentWord(order, envOrder, NewInteger(k + 1));
    DAG series = polyn(p, x, static_cast<std::int32_t>(k));
    restoreEnvironmentWord(order);
    if (!isTag(series, SERIES)) KernelException("unable to compute coeff");
    if (!isTooShort(series, n)) return series;
  }
}

}  // namespace korel
