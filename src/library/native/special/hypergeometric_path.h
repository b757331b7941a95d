#pragma once
// Generalized hypergeometric functions of one more upper than lower parameters, outside the circle where their series
// serves: along a path, from Taylor series of their differential equation.

#include "library/native/special/ball.h"

namespace korel::special {

/// pFq(a; b; z) for p = q + 1, z not 0 or 1; cut along z > 1, where it belongs to the lower side.
Complex hypergeometricAlongPath(const Complex* a, const Complex* b, int q, const Complex& z);

}  // namespace korel::special
