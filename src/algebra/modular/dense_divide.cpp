// Quotients and remainders of dense polynomials.

#include <algorithm>

#include "algebra/modular/dense_instances.h"
#include "algebra/modular/dense_polynomials.h"
#include "algebra/modular/vector_words.h"
#include "frame/interrupts.h"

namespace korel {

namespace {

// Cut-overs to quotients by the power series, by the shorter of divisor and quotient (bench/modular_bench.cpp).
struct SeriesCutover {
  long often, once;
};
constexpr SeriesCutover cutoverOf(const HardwareRing&) { return {900, 2500}; }
constexpr SeriesCutover cutoverOf(const WideRing&) { return {60, 150}; }
template <class Base>
constexpr SeriesCutover cutoverOf(const GaloisRing<Base>&) {
  return {20, 60};
}

// r = the first n terms of the inverse of the series f, whose first term has the inverse `lead`; each step doubles
// the terms (von zur Gathen and Gerhard, "Modern Computer Algebra", algorithm 9.3).
template <class R>
void invertSeries(const R& ring, typename R::Unit* r, Dense<R> f, const typename R::Unit* lead, long n) {
  ring.copy(r, lead, 1);
  for (long known = 1; known < n; known *= 2) {
    Workspace space;
    const long more = std::min(known, n - known), used = std::min(known + more, f.degree + 1);
    const Dense<R> start = {f.c, trimmedDegree(ring, f.c, used - 1)};
    const Dense<R> inverse = {r, trimmedDegree(ring, r, known - 1)};
    auto* product = ring.take(space, used + known);
    ring.clear(product, used + known);
    multiplyDense(ring, product, start, inverse);
    // f * r is 1 up to there; what follows is the error.
    const long errors = std::min(more, used + known - 1 - known);
    Dense<R> error = {ring.at(product, known), trimmedDegree(ring, ring.at(product, known), errors - 1)};
    auto* change = ring.take(space, known + more);
    ring.clear(change, known + more);
    multiplyDense(ring, change, error, inverse);
    for (long i = 0; i < more; ++i) ring.negate(ring.at(r, known + i), ring.at(change, i));
  }
}

// What divisors of words have besides.
void prepareWords(const HardwareRing& ring, Workspace& space, Divisor<HardwareRing>& d) {
  if (!hasVectorInstructions()) return;
  const long db = d.b.degree;
  d.padded = withColumnPadding(space, d.b.c, db + 1);
  d.negative = reversedMultiple(ring, space, d.padded, db + 1, ring.m - *d.inverse);
}
template <class R>
void prepareWords(const R&, Workspace&, Divisor<R>&) {}

}  // namespace

template <class R>
Divisor<R> preparedDivisor(const R& ring, Workspace& space, Dense<R> b, long quotient, Use use) {
  Divisor<R> d;
  d.b = b;
  d.inverse = invertedLead(ring, space, b);
  // The quotient of neighbours has a loop of its own.
  if (R::isHardware && use == Use::once && quotient == 2 && b.degree > 0) return d;
  prepareWords(ring, space, d);
  const SeriesCutover cutover = cutoverOf(ring);
  const long terms = std::min(quotient, b.degree + 1);
  const bool isShort = terms < (use == Use::often ? cutover.often : cutover.once);
  if (isShort && d.negative != nullptr) return d;
  d.reversed = ring.take(space, b.degree + 1);
  for (long i = 0; i <= b.degree; ++i) ring.copy(ring.at(d.reversed, b.degree - i), ring.at(b.c, i), 1);
  if (isShort) return d;
  d.series = ring.take(space, terms);
  d.terms = terms;
  invertSeries(ring, d.series, {d.reversed, trimmedDegree(ring, d.reversed, b.degree)}, d.inverse, terms);
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

constexpr long vectorQuotientFrom = 24;
void schoolQuotient(const HardwareRing& ring, const Word* a, long n, const Divisor<HardwareRing>& d, Word* q) {
  if (d.negative == nullptr) return schoolQuotient<HardwareRing>(ring, a, n, d, q);
  const long db = d.b.degree;
  passWork(ring.steps(n * std::min(n, db)) + n);
  if (n < vectorQuotientFrom) return shortQuotient(ring, q, a + db, n, d.negative, db, *d.inverse);
  Workspace space;
  Word* found = HardwareRing::take(space, n + 8);
  vectorQuotient(ring, found, a + db, n, d.negative, db, *d.inverse);
  HardwareRing::copy(q, found, n);
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

void schoolRemainder(const HardwareRing& ring, Word* a, long n, const Divisor<HardwareRing>& d, const Word* q) {
  if (d.padded == nullptr) return schoolRemainder<HardwareRing>(ring, a, n, d, q);
  const long db = d.b.degree;
  Workspace space;
  Word* product = HardwareRing::take(space, db);
  vectorColumns(ring, product, db, q, std::min(n, db), d.padded, db + 1);
  for (long j = 0; j < db; ++j) ring.subtract(a + j, a + j, product + j);
  passWork(ring.steps(std::min(n, db) * db) + 1);
}

// The n quotient coefficients, n at most the known terms: the top of a in reverse, times the series.
template <class R>
void seriesQuotient(const R& ring, const typename R::Unit* a, long n, const Divisor<R>& d, typename R::Unit* q) {
  const long db = d.b.degree;
  Workspace space;
  auto *top = ring.take(space, n), *product = ring.take(space, 2 * n);
  for (long i = 0; i < n; ++i) ring.copy(ring.at(top, i), ring.at(a, db + n - 1 - i), 1);
  ring.clear(product, 2 * n);
  multiplyDense(ring, product, {top, trimmedDegree(ring, top, n - 1)},
                {d.series, trimmedDegree(ring, d.series, n - 1)});
  for (long i = 0; i < n; ++i) ring.copy(ring.at(q, n - 1 - i), ring.at(product, i), 1);
}
// a less q * b, below the degree of b.
template <class R>
void productRemainder(const R& ring, typename R::Unit* a, long n, const Divisor<R>& d, typename R::Unit* q) {
  const long db = d.b.degree;
  Workspace space;
  auto* product = ring.take(space, db + n);
  ring.clear(product, db + n);
  const long low = std::min(n, db);  // higher ones have no part in the remainder
  multiplyDense(ring, product, {q, trimmedDegree(ring, q, low - 1)}, d.b);
  for (long i = 0; i < db; ++i) ring.subtract(ring.at(a, i), ring.at(a, i), ring.at(product, i));
}

// A quotient of two coefficients, as the Euclidean algorithm has them: one pass over a.
bool divideByNeighbour(const HardwareRing& ring, Word* a, const Divisor<HardwareRing>& d, Word* q) {
  const long db = d.b.degree;
  if (db < 1) return false;
  const Word* b = d.b.c;
  ring.multiply(&q[1], &a[db + 1], d.inverse);
  const Word next = ring.reduced(a[db] + std::uint64_t{ring.m - q[1]} * b[db - 1]);
  ring.multiply(&q[0], &next, d.inverse);
  addTwoMultiples(ring, a, b, db, ring.m - q[1], q[0] == 0 ? 0 : ring.m - q[0]);
  passWork(ring.steps(4 * db) + 4);
  return true;
}
template <class R>
bool divideByNeighbour(const R&, typename R::Unit*, const Divisor<R>&, typename R::Unit*) {
  return false;
}

}  // namespace

template <class R>
long divideDense(const R& ring, typename R::Unit* a, long degree, const Divisor<R>& d, typename R::Unit* q) {
  const long db = d.b.degree;
  long n = degree - db + 1;
  if (n <= 0) return degree;
  Workspace space;
  if (q == nullptr) q = ring.take(space, n);
  if (n == 2 && divideByNeighbour(ring, a, d, q)) return trimmedDegree(ring, a, db - 1);
  if (std::min(n, d.terms) < cutoverOf(ring).often) {
    schoolQuotient(ring, a, n, d, q);
    schoolRemainder(ring, a, n, d, q);
    return trimmedDegree(ring, a, db - 1);
  }
  // From the top, as many coefficients at a time as the series has terms.
  while (n > 0) {
    const long count = std::min(n, d.terms);
    n -= count;
    seriesQuotient(ring, ring.at(a, n), count, d, ring.at(q, n));
    productRemainder(ring, ring.at(a, n), count, d, ring.at(q, n));
  }
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
