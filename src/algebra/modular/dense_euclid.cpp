// Greatest common divisors and resultants of dense polynomials.

#include <algorithm>
#include <utility>

#include "algebra/modular/dense_half_gcd.h"
#include "algebra/modular/dense_instances.h"
#include "algebra/modular/dense_polynomials.h"
#include "algebra/modular/vector_words.h"
#include "frame/interrupts.h"

namespace korel {

namespace {

// Words modulo a prime, which is asked for the same modulus again and again.
bool isPrimeWord(Word m) {
  static Word last = 0;
  static bool lastIsPrime = false;
  if (m == last) return lastIsPrime;
  bool isPrime = m > 1;
  for (Word d = 2; d * d <= m && isPrime; ++d) isPrime = m % d != 0;
  last = m;
  return lastIsPrime = isPrime;
}

// The remainder of neighbours but for a factor, in the place of a: with the top coefficient l of b, l^2 a less a
// multiple of b. An inverse of l, which is most of the time of a short remainder, is not wanted; so the modulus has to
// be a prime, where it would exist. False when there is no such remainder here.
bool takeSimilarRemainder(const HardwareRing& ring, Dense<HardwareRing>& a, Dense<HardwareRing> b) {
  const long db = b.degree;
  if (a.degree != db + 1 || !isPrimeWord(ring.m)) return false;
  const std::uint64_t lead = b.c[db], top = a.c[db + 1];
  const Word high = ring.reduced(lead * top);
  const Word low = ring.reduced(lead * a.c[db] + (ring.m - top) * b.c[db - 1]);
  addTwoMultiplesToMultiple(ring, a.c, b.c, db, ring.reduced(lead * lead), ring.m - high, ring.m - low);
  passWork(ring.steps(6 * db) + 4);
  a.degree = trimmedDegree(ring, a.c, db - 1);
  return true;
}
template <class R>
bool takeSimilarRemainder(const R&, Dense<R>&, Dense<R>) {
  return false;
}

}  // namespace

template <class R>
Dense<R> gcdDense(const R& ring, Dense<R> a, Dense<R> b) {
  if (a.degree < b.degree) std::swap(a, b);
  while (b.degree > 0) {
    if (b.degree < halfGcdFrom(ring) && takeSimilarRemainder(ring, a, b)) {
      std::swap(a, b);
      continue;
    }
    Workspace space;
    if (a.degree > b.degree && b.degree >= halfGcdFrom(ring) && halfGcdStep(ring, a, b) && b.degree <= 0) break;
    a.degree = divideDense(ring, a.c, a.degree, preparedDivisor(ring, space, b, a.degree - b.degree + 1, Use::once),
                           static_cast<typename R::Unit*>(nullptr));
    std::swap(a, b);
  }
  if (b.degree == 0 || a.degree == 0) {
    Dense<R> one = {b.degree == 0 ? b.c : a.c, 0};
    ring.setSmall(one.c, 1);
    return one;
  }
  if (a.degree < 0) return a;
  Workspace space;
  scaleDense(ring, a.c, a, invertedLead(ring, space, a));
  return a;
}

template <class R>
ExtendedGcd<R> gcdexDense(const R& ring, Workspace& space, Dense<R> a, Dense<R> b) {
  const long room = std::max(a.degree, b.degree) + 1;
  Dense<R> r0 = copied(ring, space, a, room), r1 = copied(ring, space, b, room);
  Dense<R> s0 = {ring.take(space, room + 1), 0}, s1 = {ring.take(space, room + 1), -1};
  ring.setSmall(s0.c, 1);
  auto *q = ring.take(space, room + 1), *product = ring.take(space, 2 * room + 2);
  while (r1.degree >= 0) {
    Workspace step;
    const long n = r0.degree - r1.degree;
    if (n >= 0) {
      r0.degree = divideDense(ring, r0.c, r0.degree, preparedDivisor(ring, step, r1, n + 1, Use::once), q);
      Dense<R> quotient = {q, n};
      if (s1.degree >= 0) {
        Dense<R> change = {product, multiplyDense(ring, product, quotient, s1)};
        s0.degree = subtractDense(ring, s0.c, s0, change);
      }
    }
    std::swap(r0, r1);
    std::swap(s0, s1);
  }
  if (r0.degree >= 0) {
    auto* inverse = invertedLead(ring, space, r0);
    scaleDense(ring, r0.c, r0, inverse);
    s0.degree = scaleDense(ring, s0.c, s0, inverse);
  }
  return {r0, s0};
}

namespace {

template <class R>
void powerInto(const R& ring, typename R::Unit* r, const typename R::Unit* base, long n) {
  Workspace space;
  auto* square = ring.take(space, 1);
  ring.copy(square, base, 1);
  ring.setSmall(r, 1);
  for (; n > 0; n >>= 1) {
    if ((n & 1) != 0) ring.multiply(r, r, square);
    if (n > 1) ring.multiply(square, square, square);
  }
}

}  // namespace

template <class R>
void resultantDense(const R& ring, typename R::Unit* r, Dense<R> first, Dense<R> second) {
  if (first.degree < 0 || second.degree < 0) {
    ring.clear(r, 1);
    return;
  }
  Workspace space;
  Dense<R> a = copied(ring, space, first, 0), b = copied(ring, space, second, 0);
  bool negative = false;
  if (a.degree < b.degree) {
    negative = (a.degree & b.degree & 1) != 0;
    std::swap(a, b);
  }
  ring.setSmall(r, 1);
  auto* factor = ring.take(space, 1);
  while (b.degree > 0) {
    Workspace step;
    const long da = a.degree, db = b.degree;
    ring.copy(factor, ring.at(b.c, db), 1);
    a.degree = divideDense(ring, a.c, da, preparedDivisor(ring, step, b, da - db + 1, Use::once), nullptr);
    if (a.degree < 0) {
      ring.clear(r, 1);
      return;
    }
    powerInto(ring, factor, ring.at(b.c, db), da - a.degree);
    ring.multiply(r, r, factor);
    if ((da & db & 1) != 0) negative = !negative;
    std::swap(a, b);
  }
  powerInto(ring, factor, b.c, a.degree);
  ring.multiply(r, r, factor);
  if (negative) ring.negate(r, r);
}

KOREL_FOR_EACH_RING(KOREL_INSTANTIATE_EUCLID)

}  // namespace korel
