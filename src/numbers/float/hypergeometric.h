#pragma once
// The sum of a hypergeometric series as a float: what the library's `evalf` procedures rest on.

#include "store/dag.h"

namespace korel {

/// The series with the numerator list `a` and the denominator list `b` at `z`. `terms` is 0, or a positive
/// integer that ends the sum. Gives a float, or the name `FAIL` when the numbers outgrow the space reckoned
/// for them; a series on its circle of convergence is the library's.
/// Errors: "series is divergent", "Too many iterations without convergence", and for parameters and argument
/// that are no numbers.
DAG hypergeom(DAG a, DAG b, DAG z, DAG terms);

}  // namespace korel
