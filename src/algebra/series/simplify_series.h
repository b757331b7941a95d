#pragma once
// The simplifier's case of series: a variable that has become a number, a power or a multiple.

#include "store/dag.h"

namespace korel {

/// A raw SERIES, whose fields it may overwrite, in canonical form: with a name or a difference x - a as its
/// variable the object without pairs of coefficient 0; with the variable 0 its constant coefficient, with another
/// number its value. Where the variable is c*x^k, exponents and coefficients take k and c in.
/// Errors: "division by zero", "invalid substitution in series".
DAG simplseries(DAG s);

}  // namespace korel
