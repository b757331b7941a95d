#pragma once
// The dense modular method for greatest common divisors.

#include "algebra/engine/image_gcd.h"

namespace korel::engine {

/// Images at all points of a grid, modulo primes of 31 bits, joined by interpolation in one variable after the other
/// and by the Chinese remainder theorem (Brown, "On Euclid's algorithm and the computation of polynomial greatest
/// common divisors"). False when chance is against it several times. Time is that of one division with remainder for
/// each point, whatever the number of terms.
bool denseGcd(const ImageProblem& problem, IntegerPolynomial& result);

}  // namespace korel::engine
