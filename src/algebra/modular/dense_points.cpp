// Values of dense polynomials at points, polynomials by their values, and shifts of the variable.

#include "algebra/modular/dense_instances.h"
#include "algebra/modular/dense_polynomials.h"
#include "frame/errors.h"
#include "frame/interrupts.h"

namespace korel {

template <class R>
void evaluateDense(const R& ring, typename R::Unit* r, Dense<R> a, const typename R::Unit* point) {
  ring.clear(r, 1);
  for (long i = a.degree; i >= 0; --i) {
    ring.multiply(r, r, point);
    ring.add(r, r, ring.at(a.c, i));
    passWork(ring.steps(1) + 1);
  }
}

template <class R>
void evaluateAtPoints(const R& ring, typename R::Unit* r, Dense<R> a, const typename R::Unit* points, long n) {
  for (long i = 0; i < n; ++i) evaluateDense(ring, ring.at(r, i), a, ring.at(points, i));
}

// Newton's divided differences, then the Newton form multiplied out from its last term.
template <class R>
long interpolateDense(const R& ring, typename R::Unit* r, const typename R::Unit* points,
                      const typename R::Unit* values, long n) {
  Workspace space;
  auto *difference = ring.take(space, 1), *term = ring.take(space, 1);
  ring.copy(r, values, n);
  for (long j = 1; j < n; ++j)
    for (long i = n - 1; i >= j; --i) {
      ring.subtract(difference, ring.at(points, i), ring.at(points, i - j));
      if (ring.isZero(difference)) KernelException("the same point has been entered twice");
      if (!ring.invert(difference, difference)) mInverseError();
      ring.subtract(term, ring.at(r, i), ring.at(r, i - 1));
      ring.multiply(ring.at(r, i), term, difference);
      passWork(ring.steps(20) + 100);
    }
  for (long i = n - 2; i >= 0; --i)
    for (long j = i; j < n - 1; ++j) {
      ring.multiply(term, ring.at(r, j + 1), ring.at(points, i));
      ring.subtract(ring.at(r, j), ring.at(r, j), term);
      passWork(ring.steps(1) + 1);
    }
  return trimmedDegree(ring, r, n - 1);
}

template <class R>
void translateDense(const R& ring, Dense<R> a, const typename R::Unit* shift) {
  Workspace space;
  auto* term = ring.take(space, 1);
  for (long i = a.degree - 1; i >= 0; --i)
    for (long j = i; j < a.degree; ++j) {
      ring.multiply(term, ring.at(a.c, j + 1), shift);
      ring.add(ring.at(a.c, j), ring.at(a.c, j), term);
      passWork(ring.steps(1) + 1);
    }
}

KOREL_FOR_EACH_RING(KOREL_INSTANTIATE_POINTS)

}  // namespace korel
