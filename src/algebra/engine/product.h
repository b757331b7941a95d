#pragma once
// Products and powers.
//
// Where the terms fill the box that the degrees span, products of terms are added up in an array with a place for each
// monomial of the box. Otherwise they meet in a hash table of the monomials that occur.

#include "algebra/engine/polynomial.h"

namespace korel::engine {

/// a * b with coefficients of `width` limbs, which is enough for the result. Error: "object too large".
Polynomial multiply(Arena& arena, const Layout& layout, const Polynomial& a, const Polynomial& b, int width);
/// a + b, of one width, in which it fits.
Polynomial sum(Arena& arena, const Polynomial& a, const Polynomial& b);

/// Binary logarithm of the sum of the absolute values of the coefficients, rounded up.
double bitsOfNorm(const Polynomial& p);

/// a^n for n > 0, by one product after the other, or no terms when the coefficients need more than the widest limbs.
/// For few variables a power of k terms has about k times as many as the one before, so that squaring would cost more
/// (Fateman, "On the computation of powers of sparse polynomials").
Polynomial raise(Arena& arena, const Layout& layout, const Polynomial& a, std::int32_t n);

/// A box of monomials in mixed radix: the place of each in lexicographic order.
class Box {
 public:
  /// For exponents from 0 to `highest[v]`.
  Box(const Layout& layout, const std::int64_t* highest);
  /// How many places there are; a huge number stands for more.
  double places() const { return places_; }
  std::size_t placeOf(Monomial m) const;
  Monomial monomialAt(std::size_t place) const;

 private:
  const Layout& layout_;
  std::size_t strides_[mostVariables];
  double places_;
};

/// The highest exponents that occur.
void highestExponents(const Layout& layout, const Polynomial& p, std::int64_t* highest);

}  // namespace korel::engine
