// Quotients and remainders of dense polynomials.

#include <algorithm>

#include "algebra/modular/dense_instances.h"
#include "algebra/modular/dense_polynomials.h"
#include "frame/interrupts.h"

namespace korel {

template <class R>
Divisor<R> preparedDivisor(const R& ring, Workspace& space, Dense<R> b, long) {
  Divisor<R> d;
  d.b = b;
  d.inverse = invertedLead(ring, space, b);
  d.reversed = ring.take(space, b.degree + 1);
  for (long i = 0; i <= b.degree; ++i) ring.copy(ring.at(d.reversed, b.degree - i), ring.at(b.c, i), 1);
  return d;
}

namespace {

// From the top down; q has n coefficients, a n + degree of b. The coefficients of a from the degree of b on are lost.
template <class R>
void schoolQuotient(const R& ring, const typename R::Unit* a, long n, const Divisor<R>& d, typename R::Unit* q) {
  const long db = d.b.degree;
  const bool monic = ring.isOne(d.inverse);
  for (long k = n - 1; k >= 0; --k) {
    // a[db + k] less the sum of q[i] * b[db + k - i] for i above k
    const long count = std::min(n - 1 - k, db);
    auto* target = ring.at(q, k);
    if (count == 0) {
      ring.copy(target, ring.at(a, db + k), 1);
    } else {
      ring.dot(target, ring.at(q, k + 1), ring.at(d.reversed, 1), count);
      ring.subtract(target, ring.at(a, db + k), target);
    }
    if (!monic) ring.multiply(target, target, d.inverse);
    passWork(ring.steps(count) + 1);
  }
}

template <class R>
void schoolRemainder(const R& ring, typename R::Unit* a, long n, const Divisor<R>& d, const typename R::Unit* q) {
  const long db = d.b.degree;
  Workspace space;
  auto* sum = ring.take(space, 1);
  for (long j = 0; j < db; ++j) {
    const long count = std::min(j + 1, n);
    ring.dot(sum, q, ring.at(d.reversed, db - j), count);
    ring.subtract(ring.at(a, j), ring.at(a, j), sum);
    passWork(ring.steps(count) + 1);
  }
}

}  // namespace

template <class R>
long divideDense(const R& ring, typename R::Unit* a, long degree, const Divisor<R>& d, typename R::Unit* q) {
  const long db = d.b.degree, n = degree - db + 1;
  if (n <= 0) return degree;
  Workspace space;
  if (q == nullptr) q = ring.take(space, n);
  schoolQuotient(ring, a, n, d, q);
  schoolRemainder(ring, a, n, d, q);
  return trimmedDegree(ring, a, db - 1);
}

template <class R>
Dense<R> powerDense(const R& ring, Workspace& space, Dense<R> base, const ExponentBits& n, const Divisor<R>& divisor) {
  const long db = divisor.b.degree;
  Dense<R> result = copied(ring, space, base, 2 * db);
  auto* product = ring.take(space, 2 * db + 1);
  auto multiplyBy = [&](Dense<R> factor) {
    const long degree = multiplyDense(ring, product, result, factor);
    std::swap(result.c, product);
    result.degree = divideDense(ring, result.c, degree, divisor, static_cast<typename R::Unit*>(nullptr));
  };
  for (long i = n.bits - 2; i >= 0; --i) {
    multiplyBy(result);
    if (n[i]) multiplyBy(base);
  }
  return result;
}

KOREL_FOR_EACH_RING(KOREL_INSTANTIATE_DIVIDE)

}  // namespace korel
