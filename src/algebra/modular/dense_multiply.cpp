// Sums and products of dense polynomials.

#include <algorithm>

#include "algebra/modular/dense_instances.h"
#include "algebra/modular/dense_polynomials.h"
#include "algebra/modular/dense_transform.h"
#include "algebra/modular/vector_words.h"
#include "frame/interrupts.h"

namespace korel {

template <class R>
long addDense(const R& ring, typename R::Unit* r, Dense<R> a, Dense<R> b) {
  if (a.degree < b.degree) std::swap(a, b);
  for (long i = 0; i <= b.degree; ++i) ring.add(ring.at(r, i), ring.at(a.c, i), ring.at(b.c, i));
  if (r != a.c && a.degree > b.degree)
    ring.copy(ring.at(r, b.degree + 1), ring.at(a.c, b.degree + 1), a.degree - b.degree);
  return trimmedDegree(ring, r, a.degree);
}

template <class R>
long subtractDense(const R& ring, typename R::Unit* r, Dense<R> a, Dense<R> b) {
  const long both = std::min(a.degree, b.degree), all = std::max(a.degree, b.degree);
  for (long i = 0; i <= both; ++i) ring.subtract(ring.at(r, i), ring.at(a.c, i), ring.at(b.c, i));
  for (long i = both + 1; i <= all; ++i) {
    if (i <= a.degree) ring.copy(ring.at(r, i), ring.at(a.c, i), 1);
    else ring.negate(ring.at(r, i), ring.at(b.c, i));
  }
  return trimmedDegree(ring, r, all);
}

template <class R>
long scaleDense(const R& ring, typename R::Unit* r, Dense<R> a, const typename R::Unit* factor) {
  passWork(ring.steps(a.degree + 1));
  for (long i = 0; i <= a.degree; ++i) ring.multiply(ring.at(r, i), ring.at(a.c, i), factor);
  return trimmedDegree(ring, r, a.degree);
}

template <class R>
void schoolMultiply(const R& ring, typename R::Unit* r, const typename R::Unit* a, long na, const typename R::Unit* b,
                    long nb) {
  if (na > nb) {
    std::swap(a, b);
    std::swap(na, nb);
  }
  Workspace space;
  auto* reversed = ring.take(space, na);
  for (long i = 0; i < na; ++i) ring.copy(ring.at(reversed, na - 1 - i), ring.at(a, i), 1);
  // Column t is the sum of a[i] * b[t - i].
  for (long t = 0; t < na + nb - 1; ++t) {
    const long from = std::max(0L, t - na + 1), to = std::min(t, nb - 1);
    ring.dot(ring.at(r, t), ring.at(b, from), ring.at(reversed, na - 1 - t + from), to - from + 1);
    passWork(ring.steps(to - from + 1) + 1);
  }
}

namespace {

// Cut-overs to the transforms, by the shorter operand and by both (bench/modular_bench.cpp).
constexpr long hardwareTransformFrom = 400;
constexpr long wideTransformFrom = 40;

bool fastMultiply(const HardwareRing& ring, Word* r, const Word* a, long na, const Word* b, long nb) {
  if (!hasVectorInstructions()) return false;
  if (std::min(na, nb) >= hardwareTransformFrom) return transformMultiply(ring, r, a, na, b, nb);
  if (na > nb) {
    std::swap(a, b);
    std::swap(na, nb);
  }
  passWork(ring.steps(na * nb) + 1);
  Workspace space;
  vectorColumns(ring, r, na + nb - 1, a, na, withColumnPadding(space, b, nb), nb);
  return true;
}
bool fastMultiply(const WideRing& ring, Limb* r, const Limb* a, long na, const Limb* b, long nb) {
  if (std::min(na, nb) < wideTransformFrom) return false;
  return transformMultiply(ring, r, a, na, b, nb);
}
// One product over the ring below: the elements side by side, with room for their products in between.
template <class Base>
bool fastMultiply(const GaloisRing<Base>& ring, typename Base::Unit* r, const typename Base::Unit* a, long na,
                  const typename Base::Unit* b, long nb) {
  if (std::min(na, nb) < 2) return false;
  const Base& base = ring.base;
  const long k = ring.k, stride = 2 * k - 1;
  Workspace space;
  auto spread = [&](const typename Base::Unit* x, long n) {
    auto* c = base.take(space, n * stride);
    for (long i = 0; i < n; ++i) {
      base.copy(base.at(c, i * stride), ring.at(x, i), k);
      base.clear(base.at(c, i * stride + k), k - 1);
    }
    return Dense<Base>{c, trimmedDegree(base, c, n * stride - 1)};
  };
  const Dense<Base> left = spread(a, na), right = a == b && na == nb ? left : spread(b, nb);
  auto* product = base.take(space, (na + nb) * stride);
  base.clear(product, (na + nb) * stride);
  multiplyDense(base, product, left, right);
  for (long i = 0; i < na + nb - 1; ++i) {
    auto* c = base.at(product, i * stride);
    ring.reduce(ring.at(r, i), {c, trimmedDegree(base, c, stride - 1)});
  }
  return true;
}

}  // namespace

template <class R>
long multiplyDense(const R& ring, typename R::Unit* r, Dense<R> a, Dense<R> b) {
  if (a.degree < 0 || b.degree < 0) return -1;
  if (!fastMultiply(ring, r, a.c, a.degree + 1, b.c, b.degree + 1))
    schoolMultiply(ring, r, a.c, a.degree + 1, b.c, b.degree + 1);
  return trimmedDegree(ring, r, a.degree + b.degree);
}

KOREL_FOR_EACH_RING(KOREL_INSTANTIATE_MULTIPLY)

}  // namespace korel
