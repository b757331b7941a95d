#pragma once
// Many steps of the Euclidean algorithm on long polynomials at the price of some products.
//
// The first half of the quotients depends on the upper halves of the operands only (von zur Gathen and Gerhard,
// "Modern Computer Algebra", chapter 11). They are gathered in a matrix, which is then applied to the whole operands.

#include "algebra/modular/dense_polynomials.h"
#include "algebra/modular/galois_rings.h"

namespace korel {

/// Operands of this degree and more take half-gcd steps (bench/modular_bench.cpp).
constexpr long halfGcdFrom(const HardwareRing&) { return 8000; }
constexpr long halfGcdFrom(const WideRing&) { return 250; }
template <class Base>
constexpr long halfGcdFrom(const GaloisRing<Base>&) {
  return 120;
}

/// Replaces (a, b), deg a > deg b, by two later neighbours (c, d) in their sequence of remainders, with deg c at least
/// half of deg a and deg d less. Both have room for the degree of a. False where nothing was to be done.
template <class R>
bool halfGcdStep(const R& ring, Dense<R>& a, Dense<R>& b);

}  // namespace korel
