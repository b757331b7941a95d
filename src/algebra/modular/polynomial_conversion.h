#pragma once
// Between expressions and dense polynomials.
//
// An expression is read by multiplying it out over the residues: sums, products and powers of the indeterminates and of
// integers, in any nesting. With two indeterminates x and y it is read in one, y standing for t and x for a power of t
// that no power of y reaches.

#include "algebra/modular/dense_polynomials.h"
#include "store/dag.h"

namespace korel {

enum class PolynomialFault : std::uint8_t { none, notPolynomial, degreeTooLarge, notInteger };

/// How large the degree of `f` in `x` can be at most, as it stands; a fault is none of the integers.
struct DegreeBound {
  PolynomialFault fault;
  std::int64_t degree;
};
DegreeBound degreeBound(DAG f, DAG x);

/// The coefficients of `f` in the indeterminates, of which the second has weight 1 and the first `weight`; with one
/// indeterminate `second` is 0 and the weight 1. `bound` is the degree that none of the parts exceeds.
template <class R>
PolynomialFault readPolynomial(const R& ring, Workspace& space, DAG f, DAG first, std::int64_t weight, DAG second,
                               std::int64_t bound, Dense<R>& result);

/// `f` expanded, for a second try; f itself where that fails.
DAG multipliedOut(DAG f);

}  // namespace korel
