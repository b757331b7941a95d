#pragma once
// Coefficients of what is no sum of monomials: a series of it tells them.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// An expression in which the coefficient of x^n stands in the open: `p` as a series in x that is long enough.
/// Errors: "unable to compute coeff", "degree overflow in coeff", those of the series.
DAG seriesForCoefficient(DAG p, DAG x, std::int64_t n);

}  // namespace korel
