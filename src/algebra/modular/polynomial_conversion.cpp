#include "algebra/modular/polynomial_conversion.h"

#include <algorithm>

#include "algebra/modular/modular_polynomials.h"
#include "algebra/polynomials/expand.h"
#include "eval/simplify/simplify.h"
#include "eval/walk/has.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/objects.h"

namespace korel {

namespace {

constexpr std::int64_t hugeDegree = std::int64_t{1} << 60;

DegreeBound fault(PolynomialFault what) { return {what, 0}; }

DegreeBound boundOfPower(DAG base, DAG exponent, DAG x) {
  DegreeBound inner = degreeBound(base, x);
  if (inner.fault != PolynomialFault::none || inner.degree == 0) return inner;
  if (!isInteger(exponent) || consneg(exponent)) return fault(PolynomialFault::notPolynomial);
  std::int64_t n = hugeDegree;
  if (FitIntoLongLong(exponent)) n = std::min(n, LongLongValue(exponent));
  std::int64_t degree;
  if (__builtin_mul_overflow(inner.degree, n, &degree) || degree > hugeDegree) degree = hugeDegree;
  return {PolynomialFault::none, degree};
}

}  // namespace

DegreeBound degreeBound(DAG f, DAG x) {
  if (f == x) return {PolynomialFault::none, 1};
  if (isImmediate(f) || isName(f)) return {PolynomialFault::none, 0};
  checkStack();
  DegreeBound bound = {PolynomialFault::none, 0};
  switch (tagOf(f)) {
    case SUM:
      for (Word i = 1; i + 1 < lengthOf(f); i += 2) {
        DegreeBound term = degreeBound(f[i], x);
        if (term.fault != PolynomialFault::none) return term;
        bound.degree = std::max(bound.degree, term.degree);
      }
      return bound;
    case PROD:
      for (Word i = 1; i + 1 < lengthOf(f); i += 2) {
        DegreeBound factor = boundOfPower(f[i], f[i + 1], x);
        if (factor.fault != PolynomialFault::none) return factor;
        bound.degree = std::min(hugeDegree, bound.degree + factor.degree);
      }
      return bound;
    case POWER: return boundOfPower(f[1], f[2], x);
    default: return has(f, x) ? fault(PolynomialFault::notPolynomial) : bound;
  }
}

namespace {

template <class R>
struct Reader {
  using Unit = typename R::Unit;
  const R& ring;
  DAG first, second;
  std::int64_t weight;

  PolynomialFault read(Workspace& space, DAG f, Dense<R>& result) {
    if (isInteger(f)) return constant(space, f, result);
    if (std::int64_t exponent = exponentOf(f); exponent >= 0) {
      result = {ring.take(space, exponent + 1), exponent};
      ring.clear(result.c, exponent + 1);
      ring.setSmall(ring.at(result.c, exponent), 1);
      return PolynomialFault::none;
    }
    checkStack();
    if (isTag(f, SUM)) return sum(space, f, result);
    if (isTag(f, PROD)) return product(space, f, result);
    return PolynomialFault::notInteger;
  }

 private:
  PolynomialFault constant(Workspace& space, DAG c, Dense<R>& result) {
    result = {ring.take(space, 1), 0};
    ring.setInteger(result.c, c);
    if (ring.isZero(result.c)) result.degree = -1;
    return PolynomialFault::none;
  }

  /// Exponent of a monomial in the indeterminates with coefficient 1, or -1.
  std::int64_t exponentOf(DAG f) const {
    auto weightOf = [&](DAG x) { return x == first ? weight : second && x == second ? 1 : -1; };
    if (std::int64_t w = weightOf(f); w >= 0) return w;
    if (!isTag(f, PROD)) return -1;
    std::int64_t exponent = 0;
    for (Word i = 1; i + 1 < lengthOf(f); i += 2) {
      std::int64_t w = weightOf(f[i]);
      if (w < 0 || !isImmediate(f[i + 1]) || consneg(f[i + 1])) return -1;
      exponent += w * immediateValue(f[i + 1]);
    }
    return exponent;
  }

  PolynomialFault sum(Workspace& space, DAG f, Dense<R>& result) {
    // Monomials go straight to their places; the largest place is known first.
    std::int64_t room = 0;
    for (Word i = 1; i + 1 < lengthOf(f); i += 2) room = std::max(room, exponentOf(f[i]));
    result = {ring.take(space, room + 1), -1};
    ring.clear(result.c, room + 1);
    auto* c = ring.take(space, 1);
    for (Word i = 1; i + 1 < lengthOf(f); i += 2) {
      std::int64_t exponent = isInteger(f[i]) ? 0 : exponentOf(f[i]);
      if (exponent < 0) continue;
      DAG coefficient = isInteger(f[i]) ? f[i] : f[i + 1];
      if (!isInteger(coefficient)) return PolynomialFault::notInteger;
      ring.setInteger(c, coefficient);
      ring.add(ring.at(result.c, exponent), ring.at(result.c, exponent), c);
    }
    result.degree = trimmedDegree(ring, result.c, room);
    passWork(ring.steps(lengthOf(f)) + 10 * std::int64_t{lengthOf(f)});
    for (Word i = 1; i + 1 < lengthOf(f); i += 2) {
      if (isInteger(f[i]) || exponentOf(f[i]) >= 0) continue;
      if (!isInteger(f[i + 1])) return PolynomialFault::notInteger;
      Dense<R> term;
      if (PolynomialFault fault = read(space, f[i], term); fault != PolynomialFault::none) return fault;
      ring.setInteger(c, f[i + 1]);
      term.degree = scaleDense(ring, term.c, term, c);
      if (term.degree > room) {
        room = term.degree;
        result = copied(ring, space, result, room);
      }
      result.degree = addDense(ring, result.c, result, term);
    }
    return PolynomialFault::none;
  }

  Dense<R> times(Workspace& space, Dense<R> a, Dense<R> b) {
    if (a.degree < 0 || b.degree < 0) return {a.c, -1};
    Dense<R> r = {ring.take(space, a.degree + b.degree + 1), 0};
    r.degree = multiplyDense(ring, r.c, a, b);
    return r;
  }

  PolynomialFault product(Workspace& space, DAG f, Dense<R>& result) {
    constant(space, cons1, result);
    for (Word i = 1; i + 1 < lengthOf(f); i += 2) {
      if (!isInteger(f[i + 1]) || consneg(f[i + 1])) return PolynomialFault::notInteger;
      Dense<R> base;
      if (PolynomialFault fault = read(space, f[i], base); fault != PolynomialFault::none) return fault;
      if (!FitIntoLongLong(f[i + 1])) return PolynomialFault::notInteger;
      // Binary powering, from the lowest bit.
      for (std::int64_t n = LongLongValue(f[i + 1]); n > 0; n >>= 1) {
        if ((n & 1) != 0) result = times(space, result, base);
        if (n > 1) base = times(space, base, base);
      }
    }
    return PolynomialFault::none;
  }
};

}  // namespace

template <class R>
PolynomialFault readPolynomial(const R& ring, Workspace& space, DAG f, DAG first, std::int64_t weight, DAG second,
                               std::int64_t bound, Dense<R>& result) {
  if (bound > std::int64_t{maxLength}) KernelException("object too large");
  return Reader<R>{ring, first, second, weight}.read(space, f, result);
}

template PolynomialFault readPolynomial(const HardwareRing&, Workspace&, DAG, DAG, std::int64_t, DAG, std::int64_t,
                                        Dense<HardwareRing>&);
template PolynomialFault readPolynomial(const WideRing&, Workspace&, DAG, DAG, std::int64_t, DAG, std::int64_t,
                                        Dense<WideRing>&);

DAG multipliedOut(DAG f) {
  bool failed;
  DAG expanded = KernelTrapError([](DAG x) { return simpl(expand(x)); }, f, failed);
  return failed ? f : expanded;
}

// ---- one indeterminate

namespace {

// The dense polynomial, or 0 with the reason why f is none as it stands.
DAG readDense(DAG f, DAG x, DAG m, PolynomialFault& fault) {
  DegreeBound bound = degreeBound(f, x);
  fault = bound.fault;
  if (fault != PolynomialFault::none) return DAG();
  if (bound.degree > maxImmediate) {
    fault = PolynomialFault::degreeTooLarge;
    return DAG();
  }
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    Dense<std::remove_cvref_t<decltype(ring)>> a;
    fault = readPolynomial(ring, space, f, x, 1, DAG(), bound.degree, a);
    if (fault != PolynomialFault::none) return DAG();
    DAG result = newDense(x, m, a.degree);
    for (long i = 0; i <= a.degree; ++i) setDenseCoefficient(result, i, ring.integer(ring.at(a.c, i)));
    return finishedDense(result);
  });
}

}  // namespace

DAG mConvertIn(DAG f, DAG x, DAG m) {
  if (isZero(f)) return zeroDense(x, m);
  PolynomialFault fault;
  DAG result = readDense(f, x, m, fault);
  if (result) return result;
  if (fault == PolynomialFault::degreeTooLarge) KernelException("modp1: degree too large");
  // Fractions and other indeterminates may go when it is multiplied out.
  if (DAG expanded = multipliedOut(f); expanded != f) result = readDense(expanded, x, m, fault);
  if (!result) KernelException("modp1: invalid arguments");
  return result;
}

DAG mConvertList(DAG list, DAG x, DAG m) {
  const Word n = memberCount(list[1]);
  if (!everyMember(list[1], [](DAG c) { return isInteger(c); })) KernelException("modp1: invalid arguments");
  DAG result = newDense(x, m, std::int64_t{n} - 1);
  withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto* c = ring.take(space, 1);
    for (Word i = 0; i < n; ++i) {
      ring.setInteger(c, list[1][i + 1]);
      setDenseCoefficient(result, i, ring.integer(c));
    }
  });
  return finishedDense(result);
}

DAG mConvertOut(DAG a, DAG x) {
  const long degree = denseDegree(a);
  long terms = 0;
  for (long i = 0; i <= degree; ++i) terms += denseCoefficient(a, i) != cons0 ? 1 : 0;
  DAG sum = newl2(static_cast<Word>(2 * terms + 1), SUM);
  Word at = 1;
  for (long i = degree; i >= 0; --i) {
    DAG c = denseCoefficient(a, i);
    if (c == cons0) continue;
    sum[at++] = i == 0 ? c : i == 1 ? x : simpl(new3(PROD, x, immediate(static_cast<std::int32_t>(i))));
    sum[at++] = i == 0 ? cons1 : c;
  }
  return simpl(sum);
}

}  // namespace korel
