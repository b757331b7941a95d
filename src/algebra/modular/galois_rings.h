#pragma once
// Coefficients in a finite field of p^k elements, or a ring like it: residues of polynomials modulo one of degree k.
//
// An element is a run of k coefficients of the ring below. With this as its ring every algorithm on dense polynomials
// works over GF(p^k) as well.

#include <algorithm>

#include "algebra/modular/dense_polynomials.h"

namespace korel {

template <class Base>
struct GaloisRing {
  using Unit = typename Base::Unit;
  static constexpr bool isHardware = false;
  const Base& base;
  Divisor<Base> modulus;
  long k;
  long width;

  /// `m`, of degree at least 1, lies in the workspace.
  GaloisRing(const Base& base, Workspace& space, Dense<Base> m)
      : base(base), modulus(preparedDivisor(base, space, m, m.degree)), k(m.degree), width(m.degree * base.width) {}

  Unit* at(Unit* c, long i) const { return c + i * width; }
  const Unit* at(const Unit* c, long i) const { return c + i * width; }
  Unit* take(Workspace& space, long count) const { return base.take(space, count * k); }
  void copy(Unit* r, const Unit* a, long count) const { base.copy(r, a, count * k); }
  void clear(Unit* r, long count) const { base.clear(r, count * k); }

  bool isZero(const Unit* a) const { return trimmedDegree(base, a, k - 1) < 0; }
  bool isOne(const Unit* a) const { return base.isOne(a) && trimmedDegree(base, a, k - 1) == 0; }
  bool isEqual(const Unit* a, const Unit* b) const {
    return std::memcmp(a, b, static_cast<std::size_t>(width) * sizeof(Unit)) == 0;
  }
  void setSmall(Unit* r, std::uint64_t x) const {
    clear(r, 1);
    base.setSmall(r, x);
  }
  void add(Unit* r, const Unit* a, const Unit* b) const {
    for (long i = 0; i < k; ++i) base.add(base.at(r, i), base.at(a, i), base.at(b, i));
  }
  void subtract(Unit* r, const Unit* a, const Unit* b) const {
    for (long i = 0; i < k; ++i) base.subtract(base.at(r, i), base.at(a, i), base.at(b, i));
  }
  void negate(Unit* r, const Unit* a) const {
    for (long i = 0; i < k; ++i) base.negate(base.at(r, i), base.at(a, i));
  }
  void multiply(Unit* r, const Unit* a, const Unit* b) const { dot(r, a, b, 1); }
  bool invert(Unit* r, const Unit* a) const;
  void dot(Unit* r, const Unit* x, const Unit* y, long n) const;
  std::int64_t steps(std::int64_t products) const { return base.steps(products * k * k) + 20 * products; }

  /// r = residue of a polynomial, whose room is lost.
  void reduce(Unit* r, Dense<Base> a) const {
    a.degree = divideDense(base, a.c, a.degree, modulus, static_cast<Unit*>(nullptr));
    base.copy(r, a.c, a.degree + 1);
    base.clear(base.at(r, a.degree + 1), k - 1 - a.degree);
  }
};

template <class Base>
bool GaloisRing<Base>::invert(Unit* r, const Unit* a) const {
  Workspace space;
  Dense<Base> element = {const_cast<Unit*>(a), trimmedDegree(base, a, k - 1)};
  if (element.degree < 0) return false;
  ExtendedGcd<Base> result = gcdexDense(base, space, element, modulus.b);
  if (result.g.degree != 0) return false;
  reduce(r, result.s);
  return true;
}

template <class Base>
void GaloisRing<Base>::dot(Unit* r, const Unit* x, const Unit* y, long n) const {
  Workspace space;
  auto *sum = base.take(space, 2 * k - 1), *reversed = base.take(space, k), *column = base.take(space, 1);
  base.clear(sum, 2 * k - 1);
  for (long i = 0; i < n; ++i) {
    const Unit *a = at(x, i), *b = at(y, i);
    for (long j = 0; j < k; ++j) base.copy(base.at(reversed, k - 1 - j), base.at(b, j), 1);
    for (long t = 0; t < 2 * k - 1; ++t) {
      const long from = std::max(0L, t - k + 1), to = std::min(t, k - 1);
      base.dot(column, base.at(a, from), base.at(reversed, k - 1 - t + from), to - from + 1);
      base.add(base.at(sum, t), base.at(sum, t), column);
    }
  }
  reduce(r, {sum, trimmedDegree(base, sum, 2 * k - 2)});
}

}  // namespace korel
