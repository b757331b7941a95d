#pragma once
// Greatest common divisors of polynomials over the integers.

#include "algebra/engine/integer_polynomial.h"

namespace korel::engine {

/// The primitive greatest common divisor of two primitive polynomials, with a positive leading coefficient. False when
/// none of the methods here comes to an end.
///
/// Variables that only one polynomial has are taken away first. Then the heuristic method: the divisor of the values at
/// a power of ten, tried as a divisor (Char, Geddes and Gonnet, "GCDHEU"). Where values would be long, the methods by
/// images modulo primes (image_gcd.h).
bool primitiveGcd(Arena& arena, const Layout& layout, IntegerPolynomial a, IntegerPolynomial b,
                  IntegerPolynomial& result);

/// `divisor` divides `p` over the integers.
bool isDivisor(Arena& arena, const Layout& layout, const IntegerPolynomial& divisor, const IntegerPolynomial& p);
/// Divides the primitive polynomial `p` by its content as a polynomial in the variables of `fields`; that content is a
/// primitive polynomial in the others.
bool takeContent(Arena& arena, const Layout& layout, IntegerPolynomial& p, Monomial fields, IntegerPolynomial& content);
/// a * b; no terms when the coefficients are too long.
IntegerPolynomial productOf(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b);
IntegerPolynomial constantOne(Arena& arena);

/// Divides by the content, and by -1 when the leading coefficient is negative.
void makePrimitive(IntegerPolynomial& p);

}  // namespace korel::engine
