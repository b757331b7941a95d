#pragma once
// Greatest common divisors of sparse polynomials in several variables, from images modulo primes.

#include "algebra/engine/integer_polynomial.h"

namespace korel::engine {

/// The primitive greatest common divisor of two primitive polynomials in the same variables, without a monomial factor,
/// with a positive leading coefficient (Zippel, "Probabilistic algorithms for sparse polynomials"). False when chance
/// is against it several times.
///
/// One variable stays. For the others random values are put in, and they come back one after the other: the first
/// values of a new variable tell which terms there are, after that a few images in one variable determine the
/// coefficients of all terms by linear equations. The leading coefficients' divisor makes the images fit together; what
/// is too much of it goes at the end with the content.
bool sparseGcd(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b,
               IntegerPolynomial& result);

}  // namespace korel::engine
