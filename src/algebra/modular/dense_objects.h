#pragma once
// Between dense polynomials as objects and as arrays.

#include "algebra/modular/dense_polynomials.h"
#include "algebra/modular/modular_polynomials.h"
#include "frame/interrupts.h"
#include "store/objects.h"

namespace korel {

/// The coefficients of an object, to be read only: where they are raw words, its own.
inline Dense<HardwareRing> load(const HardwareRing&, Workspace&, DAG a) {
  return {&rawField(a, firstCoefficient), denseDegree(a)};
}
inline Dense<WideRing> load(const WideRing& ring, Workspace& space, DAG a) {
  const long degree = denseDegree(a);
  Limb* c = ring.take(space, degree + 1);
  for (long i = 0; i <= degree; ++i) limbsOfInteger(a[firstCoefficient + i], ring.at(c, i), ring.width);
  passWork(ring.steps(degree + 1));
  return {c, degree};
}
template <class R>
Dense<R> loadCopy(const R& ring, Workspace& space, DAG a, long room = 0) {
  Dense<R> own = load(ring, space, a);
  if (!R::isHardware && room <= own.degree) return own;
  return copied(ring, space, own, room);
}

/// The object of a polynomial in x.
inline DAG store(const HardwareRing&, DAG x, DAG m, Dense<HardwareRing> a) {
  DAG result = newDense(x, m, a.degree);
  HardwareRing::copy(&rawField(result, firstCoefficient), a.c, a.degree + 1);
  return finishedDense(result);
}
inline DAG store(const WideRing& ring, DAG x, DAG m, Dense<WideRing> a) {
  DAG result = newDense(x, m, a.degree);
  for (long i = 0; i <= a.degree; ++i) result[firstCoefficient + i] = ring.integer(ring.at(a.c, i));
  passWork(ring.steps(a.degree + 1));
  return finishedDense(result);
}

/// The residues of a LIST of integers.
template <class R>
typename R::Unit* loadList(const R& ring, Workspace& space, DAG list) {
  const auto n = static_cast<long>(memberCount(list[1]));
  auto* r = ring.take(space, n);
  for (long i = 0; i < n; ++i) ring.setInteger(ring.at(r, i), list[1][i + 1]);
  return r;
}
inline ExponentBits exponentOf(Workspace& space, DAG n) {
  const long count = limbsFor(n);
  auto* limbs = space.take<Limb>(static_cast<std::size_t>(count));
  limbsOfInteger(n, limbs, count);
  return {limbs, significantBits(limbs, count)};
}

}  // namespace korel
