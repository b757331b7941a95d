#pragma once
// Polynomials and rational functions as types.

#include "store/dag.h"

namespace korel {

/// As `limit` of `typol`: any constant may be a coefficient.
constexpr Word noCoefficientLimit = 0x7fffffff;

/// `x` is a polynomial, or with `rational` a rational function, in `vars`: 0 for all names, a NAME or
/// TABLEREF, the imaginary unit, or a LIST, SET or EXPSEQ of names. A number is a coefficient when its
/// tag is at most `limit`; without a limit whatever holds none of the variables is one.
bool typol(bool rational, DAG x, DAG vars, Word limit);

/// Test of `x` against the type head(args...) for the heads `polynom` and `ratpoly`: (coefficients,
/// variables), or one of the two. Error: "invalid arguments".
bool matchesPolynomial(bool rational, DAG x, DAG args);

/// A NAME, a TABLEREF, or a PROD whose bases are all atoms.
bool monomial(DAG x);

}  // namespace korel
