#pragma once
// Generalized hypergeometric functions of one more upper than lower parameters at 1, where the terms of the series fall
// like a power of their number.

#include "library/native/special/ball.h"

namespace korel::special {

/// pFq(a; b; 1) for p = q + 1, where the series converges: the sum of b has a larger real part than that of a. The
/// precision is to be more than twice that of the result.
Complex hypergeometricAtOne(const Complex* a, const Complex* b, int q);

}  // namespace korel::special
