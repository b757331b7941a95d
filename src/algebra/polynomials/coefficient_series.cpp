#include "algebra/polynomials/coefficient_series.h"

#include <algorithm>

#include "algebra/float_context.h"
#include "algebra/polynomials/expand.h"
#include "algebra/series/expansion.h"
#include "algebra/series/series_object.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr std::int64_t leastDegree = 7;

// `p` as a series in x up to degree k, or FAIL; `Order` says the same to the procedures of the library.
DAG seriesToDegree(DAG p, DAG x, std::int64_t k) {
  EnvironmentChange order;
  changeEnvironmentWord(order, envOrder, immediate(static_cast<std::int32_t>(k + 1)));
  DAG s = inFloatContextOf(p, [&] { return polyn(p, x, static_cast<std::int32_t>(k)); });
  restoreEnvironmentWord(order);
  return s;
}

}  // namespace

DAG seriesForCoefficient(DAG p, DAG x, std::int64_t n) {
  DAG expanded = expand(p);
  if (expanded != p) return expanded;
  // Divisions take terms away: the degree grows until the coefficient is known, or nothing is gained by it.
  std::int64_t known = -std::int64_t{largestSeriesExponent} - 1;
  for (std::int64_t k = std::max(n, leastDegree);; k += k / 5 + 2) {
    if (k > largestSeriesExponent) KernelException("degree overflow in coeff");
    DAG s = seriesToDegree(p, x, k);
    if (!isTag(s, SERIES)) KernelException("unable to compute coeff");
    if (!hasOrderTerm(s) || lastSeriesPair(s).exponent > n) return s;
    if (lastSeriesPair(s).exponent <= known) KernelException("degree overflow in coeff");
    known = lastSeriesPair(s).exponent;
  }
}

}  // namespace korel
