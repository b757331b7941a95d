#pragma once
// Products, quotients and powers of truncated series.
//
// Operands are simplified series in one variable, results are simplified. `d` is the degree at which results
// are truncated: the first exponent above it is the order term's.

#include "store/dag.h"

namespace korel {

/// a * b.
DAG mulpol(DAG a, DAG b, std::int32_t d);
/// a / b by long division from the lowest exponents on. `Testzero` tells which leading coefficients of b are 0,
/// `Normalizer` brings the quotient's coefficients to their form before they are used on.
/// Error: "division by zero series".
DAG divpol(DAG a, DAG b, std::int32_t d);
/// a^n, where a is the series of `base`; squares to fourth powers by products, others by the library's
/// `series/power`. The name FAIL when that says so.
/// Errors: "division by zero series", "series/power must return a series".
DAG powpol(DAG a, DAG n, std::int32_t d, DAG base);
/// The answer of `series/power` for `power`, a power: a series, or the name FAIL.
/// Error: "series/power must return a series".
DAG powerByLibrary(DAG power, DAG variable);

}  // namespace korel
