#pragma once
// Polynomials whose coefficients are integers of the kernel, of any length, and their values at powers of ten.
//
// At x = 10000^k, with the next variable at x^(degree of the first + 1) and so on, a polynomial with coefficients below
// x/2 is an integer from whose digits it can be read: the places of its monomials in a box are runs of k digits
// (Kronecker's substitution, in the base that the kernel's integers have). So products and greatest common divisors of
// polynomials become those of integers.

#include "algebra/engine/polynomial.h"
#include "algebra/engine/product.h"

namespace korel::engine {

/// Terms in descending order. The coefficients are no roots of the collector, which doesn't run meanwhile.
struct IntegerPolynomial {
  std::size_t count = 0;
  Monomial* monomials = nullptr;
  DAG* coefficients = nullptr;
};

/// A term that hasn't its place yet.
struct IntegerTerm {
  Monomial monomial;
  DAG coefficient;
};
/// The polynomial of `count` terms in any order, each monomial once. The terms are sorted where they stand.
IntegerPolynomial fromTerms(Arena& arena, IntegerTerm* terms, std::size_t count);
IntegerPolynomial packIntegers(Arena& arena, const Layout& layout, const Operand& operand);
/// In limbs, of the width that its coefficients need; no terms when that is more than the widest.
Polynomial inLimbs(Arena& arena, const IntegerPolynomial& p);
IntegerPolynomial asIntegers(Arena& arena, const Polynomial& p);

/// Digits of base 10000 that numbers of so many bits take, with a sign.
std::int64_t digitsForBits(double bits);
double bitsOfLargest(const IntegerPolynomial& p);

/// The value at x = 10000^digits; coefficients are below that.
DAG valueAtPower(Arena& arena, const Box& box, const IntegerPolynomial& p, std::int64_t digits);
/// The coefficients in [-x/2, x/2) of the polynomial in x that has the value n, by ascending exponents, zeros left out.
struct PowerSum {
  std::size_t count = 0;
  std::size_t* exponents = nullptr;
  DAG* coefficients = nullptr;
};
PowerSum fromValue(Arena& arena, DAG n, std::int64_t digits);
/// The polynomial whose lowest monomial is at `lowest` in the box; no terms when the highest isn't in it.
IntegerPolynomial inBox(Arena& arena, const Box& box, const PowerSum& p, std::size_t lowest);

/// Greatest common divisor of the coefficients, not negative; and the polynomial divided by a divisor of it.
DAG contentOf(const IntegerPolynomial& p);
void divideBy(IntegerPolynomial& p, DAG divisor);

}  // namespace korel::engine
