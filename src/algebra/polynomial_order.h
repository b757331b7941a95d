#pragma once
// The order in which a polynomial shows its terms.
//
// The order of a sum's terms is no part of what it is: the table of simplified objects takes it as a
// multiset of pairs. So a polynomial is sorted in place, and everything that refers to it shows the
// new order from then on.

#include "store/dag.h"

namespace korel {

/// Order of the monomials `a` and `b` in the EXPSEQ `variables`: 1 when `a` is the greater, 0, or -1.
/// The earlier variable makes the greater monomial, of one variable the higher exponent; with
/// `totalDegree` the sum of the exponents comes first. Factors before the first variable don't count.
int compmon(DAG a, DAG b, DAG variables, bool totalDegree);

/// Sorts each sum in `x` by descending monomials, and the factors of each product by the positions of
/// their bases among the variables, those that are none first. Gives `x`, or a copy when a part was no
/// unique object yet.
DAG algsort(DAG x, DAG variables, bool totalDegree);

/// Names, indexed names and calls in the algebraic structure of `x`, as the EXPSEQ of their set.
DAG indeterminates(DAG x);

}  // namespace korel
