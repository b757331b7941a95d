#pragma once
// Arithmetic of dense polynomials over a ring of residues, on plain arrays of coefficients.
//
// A polynomial is a pointer to its coefficients, lowest first, and its degree, -1 for zero; the top coefficient is not
// zero. Routines write to arrays of the caller's and give the degree of what they wrote. Results never overlap operands
// unless a line says so. Where a top coefficient has no inverse the error is "the modular inverse does not exist".
// All long work counts as such (`passWork`).

#include "algebra/modular/modular_rings.h"

namespace korel {

template <class R>
struct Dense {
  typename R::Unit* c = nullptr;
  long degree = -1;
};

/// Degree of `c` without the zeros on top of place `degree`.
template <class R>
long trimmedDegree(const R& ring, const typename R::Unit* c, long degree) {
  while (degree >= 0 && ring.isZero(ring.at(c, degree))) --degree;
  return degree;
}
template <class R>
bool isConstantOne(const R& ring, Dense<R> a) {
  return a.degree == 0 && ring.isOne(a.c);
}
/// A copy with room for the degree `room`.
template <class R>
Dense<R> copied(const R& ring, Workspace& space, Dense<R> a, long room) {
  Dense<R> r = {ring.take(space, (room > a.degree ? room : a.degree) + 1), a.degree};
  ring.copy(r.c, a.c, a.degree + 1);
  return r;
}
/// The inverse of the top coefficient, or the error.
template <class R>
typename R::Unit* invertedLead(const R& ring, Workspace& space, Dense<R> a) {
  auto* inverse = ring.take(space, 1);
  if (!ring.invert(inverse, ring.at(a.c, a.degree))) mInverseError();
  return inverse;
}

// ---- sums

/// r = a + b, a - b; r may be either, and has room for the larger degree.
template <class R>
long addDense(const R& ring, typename R::Unit* r, Dense<R> a, Dense<R> b);
template <class R>
long subtractDense(const R& ring, typename R::Unit* r, Dense<R> a, Dense<R> b);
/// r = factor * a; r may be a.
template <class R>
long scaleDense(const R& ring, typename R::Unit* r, Dense<R> a, const typename R::Unit* factor);

// ---- products

/// r = a * b, room for the sum of the degrees; the same array twice makes a square.
template <class R>
long multiplyDense(const R& ring, typename R::Unit* r, Dense<R> a, Dense<R> b);
/// The plain method, for any lengths.
template <class R>
void schoolMultiply(const R& ring, typename R::Unit* r, const typename R::Unit* a, long na, const typename R::Unit* b,
                    long nb);

// ---- quotients

/// A polynomial to divide by, b not zero: with the inverse of its top coefficient, its coefficients in reverse, and,
/// for long quotients, the first terms of the power series that is inverse to those.
template <class R>
struct Divisor {
  Dense<R> b;
  typename R::Unit* inverse = nullptr;  // of the top coefficient
  typename R::Unit* reversed = nullptr;
  typename R::Unit* negative = nullptr;  // words with vector instructions: the same times -1/top coefficient,
  typename R::Unit* padded = nullptr;    // and b for `vectorColumns`
  typename R::Unit* series = nullptr;
  long terms = 0;
};
/// How often a divisor will be used: the series costs as much as some quotients.
enum class Use : std::uint8_t { once, often };
/// `quotient` is the largest count of coefficients of a quotient that will be asked for, as far as known; for a divisor
/// that is used once it is the only one.
template <class R>
Divisor<R> preparedDivisor(const R& ring, Workspace& space, Dense<R> b, long quotient, Use use = Use::often);
/// Replaces a by its remainder, whose degree it gives; the quotient of da - db + 1 coefficients goes to q unless that
/// is null.
template <class R>
long divideDense(const R& ring, typename R::Unit* a, long degree, const Divisor<R>& divisor, typename R::Unit* q);

// ---- powers

/// The bits of an exponent.
struct ExponentBits {
  const Limb* limbs;
  long bits;
  bool operator[](long i) const { return (limbs[i / 64] >> (i % 64) & 1) != 0; }
};
inline long significantBits(const Limb* limbs, long count) {
  while (count > 0 && limbs[count - 1] == 0) --count;
  return count == 0 ? 0 : 64 * count - __builtin_clzll(limbs[count - 1]);
}
/// base^n modulo the divisor; base is reduced and n at least 1. The result lies in `space`.
template <class R>
Dense<R> powerDense(const R& ring, Workspace& space, Dense<R> base, const ExponentBits& n, const Divisor<R>& divisor);

// ---- the Euclidean algorithm

/// Both operands are lost; the result, monic, is one of them.
template <class R>
Dense<R> gcdDense(const R& ring, Dense<R> a, Dense<R> b);
/// g = s a + t b, monic, with s of degree below that of b; `s` has room for the degree of b (at least 0).
template <class R>
struct ExtendedGcd {
  Dense<R> g, s;
};
template <class R>
ExtendedGcd<R> gcdexDense(const R& ring, Workspace& space, Dense<R> a, Dense<R> b);
template <class R>
void resultantDense(const R& ring, typename R::Unit* r, Dense<R> a, Dense<R> b);

// ---- points

template <class R>
void evaluateDense(const R& ring, typename R::Unit* r, Dense<R> a, const typename R::Unit* point);
/// r[i] = a(points[i]).
template <class R>
void evaluateAtPoints(const R& ring, typename R::Unit* r, Dense<R> a, const typename R::Unit* points, long n);
/// r, of n coefficients, takes the values at the points; gives the degree.
/// Error: "the same point has been entered twice".
template <class R>
long interpolateDense(const R& ring, typename R::Unit* r, const typename R::Unit* points,
                      const typename R::Unit* values, long n);
/// a(x + shift) in place.
template <class R>
void translateDense(const R& ring, Dense<R> a, const typename R::Unit* shift);

}  // namespace korel
