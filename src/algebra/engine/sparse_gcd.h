#pragma once
// The sparse modular method for greatest common divisors.

#include "algebra/engine/image_gcd.h"

namespace korel::engine {

/// False when chance is against it several times.
/// Zippel, "Probabilistic algorithms for sparse polynomials".
///
/// One variable stays. For the others random values are put in, and they come back one after the other: the first
/// values of a new variable tell which terms there are, after that a few images in one variable determine the
/// coefficients of all terms by linear equations.
bool sparseGcd(const ImageProblem& problem, IntegerPolynomial& result);

}  // namespace korel::engine
