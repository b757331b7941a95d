#pragma once
// The rings for which the templates of dense polynomials are compiled, each group in its own file.

#include "algebra/modular/galois_rings.h"

#define KOREL_FOR_EACH_FIELD(instantiate)                                               \
  instantiate(HardwareRing) instantiate(WideRing) instantiate(GaloisRing<HardwareRing>) \
      instantiate(GaloisRing<WideRing>)
// And an extension of an extension, in which polynomials over a small field get their values.
#define KOREL_FOR_EACH_RING(instantiate) \
  KOREL_FOR_EACH_FIELD(instantiate) instantiate(GaloisRing<GaloisRing<HardwareRing>>)

#define KOREL_INSTANTIATE_MULTIPLY(R)                                     \
  template long addDense(const R&, R::Unit*, Dense<R>, Dense<R>);         \
  template long subtractDense(const R&, R::Unit*, Dense<R>, Dense<R>);    \
  template long scaleDense(const R&, R::Unit*, Dense<R>, const R::Unit*); \
  template long multiplyDense(const R&, R::Unit*, Dense<R>, Dense<R>);    \
  template void schoolMultiply(const R&, R::Unit*, const R::Unit*, long, const R::Unit*, long);

#define KOREL_INSTANTIATE_DIVIDE(R)                                                 \
  template Divisor<R> preparedDivisor(const R&, Workspace&, Dense<R>, long, Use);   \
  template long divideDense(const R&, R::Unit*, long, const Divisor<R>&, R::Unit*); \
  template Dense<R> powerDense(const R&, Workspace&, Dense<R>, const ExponentBits&, const Divisor<R>&);

#define KOREL_INSTANTIATE_FACTOR(R)                                     \
  template void squareFreeParts(const R&, Dense<R>, FactorList<R>&);    \
  template void distinctDegrees(const R&, Dense<R>, FactorList<R>&);    \
  template void equalDegrees(const R&, Dense<R>, long, FactorList<R>&); \
  template Dense<R> partWithRoots(const R&, Workspace&, Dense<R>);      \
  template bool isIrreducible(const R&, Dense<R>);                      \
  template long characteristic(const R&);                               \
  template void rootOfElement(const R&, R::Unit*, const R::Unit*);

#define KOREL_INSTANTIATE_EUCLID(R)                                             \
  template Dense<R> gcdDense(const R&, Dense<R>, Dense<R>);                     \
  template ExtendedGcd<R> gcdexDense(const R&, Workspace&, Dense<R>, Dense<R>); \
  template void resultantDense(const R&, R::Unit*, Dense<R>, Dense<R>);

#define KOREL_INSTANTIATE_POINTS(R)                                                         \
  template void evaluateDense(const R&, R::Unit*, Dense<R>, const R::Unit*);                \
  template void evaluateAtPoints(const R&, R::Unit*, Dense<R>, const R::Unit*, long);       \
  template long interpolateDense(const R&, R::Unit*, const R::Unit*, const R::Unit*, long); \
  template void translateDense(const R&, Dense<R>, const R::Unit*);

#define KOREL_INSTANTIATE_HALF_GCD(R) template bool halfGcdStep(const R&, Dense<R>&, Dense<R>&);
