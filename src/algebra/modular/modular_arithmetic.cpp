// Dense polynomials as operands: what dense_polynomials.h does on arrays, done on objects.

#include "algebra/modular/dense_objects.h"
#include "algebra/modular/modular_polynomials.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/primes/montgomery.h"
#include "store/objects.h"

namespace korel {

void mInverseError() { KernelException("the modular inverse does not exist"); }

namespace {

[[noreturn]] void divisionByZero() { KernelException("division by zero"); }

}  // namespace

// ---- sums and products

DAG mAdd(DAG summands, DAG m) {
  DAG first = summands[1];
  if (memberCount(summands) == 1) return withModulus(first, m);
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    long room = 0;
    for (Word i = 1; i < lengthOf(summands); ++i) room = std::max(room, denseDegree(summands[i]));
    auto sum = loadCopy(ring, space, first, room);
    for (Word i = 2; i < lengthOf(summands); ++i) {
      Workspace term;
      sum.degree = addDense(ring, sum.c, sum, load(ring, term, summands[i]));
    }
    return store(ring, first[1], m, sum);
  });
}

DAG mSubtract(DAG a, DAG b, DAG m) {
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto difference = loadCopy(ring, space, a, denseDegree(b));
    difference.degree = subtractDense(ring, difference.c, difference, load(ring, space, b));
    return store(ring, a[1], m, difference);
  });
}

DAG mNegate(DAG a, DAG m) { return mSubtract(zeroDense(a[1], m), a, m); }

DAG mMultiply(DAG a, DAG b, DAG m) {
  if (denseDegree(a) < 0) return withModulus(a, m);
  if (denseDegree(b) < 0) return withModulus(b, m);
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto left = load(ring, space, a);
    auto right = a == b ? left : load(ring, space, b);
    auto product = left;
    product.c = ring.take(space, left.degree + right.degree + 1);
    if (right.degree == 0) product.degree = scaleDense(ring, product.c, left, right.c);
    else if (left.degree == 0) product.degree = scaleDense(ring, product.c, right, left.c);
    else product.degree = multiplyDense(ring, product.c, left, right);
    return store(ring, a[1], m, product);
  });
}

// ---- quotients

void mDivide(DAG a, DAG b, DAG* quotient, DAG* remainder, DAG m) {
  const long da = denseDegree(a), db = denseDegree(b);
  if (db < 0) divisionByZero();
  if (da < db) {
    if (quotient != nullptr) *quotient = zeroDense(a[1], m);
    if (remainder != nullptr) *remainder = withModulus(a, m);
    return;
  }
  withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto divisor = preparedDivisor(ring, space, load(ring, space, b), da - db + 1, Use::once);
    auto rest = loadCopy(ring, space, a), result = rest;
    result.c = ring.take(space, da - db + 1);
    rest.degree = divideDense(ring, rest.c, da, divisor, result.c);
    if (remainder != nullptr) *remainder = store(ring, a[1], m, rest);
    result.degree = trimmedDegree(ring, result.c, da - db);
    if (quotient != nullptr) *quotient = store(ring, a[1], m, result);
  });
}

DAG mGcd(DAG a, DAG b, DAG m) {
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto g = gcdDense(ring, loadCopy(ring, space, a), loadCopy(ring, space, b));
    return store(ring, a[1], m, g);
  });
}

DAG mGcdex(DAG a, DAG b, DAG* s, DAG m) {
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto result = gcdexDense(ring, space, load(ring, space, a), load(ring, space, b));
    *s = store(ring, a[1], m, result.s);
    return store(ring, a[1], m, result.g);
  });
}

DAG mResultant(DAG a, DAG b, DAG m) {
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto* r = ring.take(space, 1);
    resultantDense(ring, r, load(ring, space, a), load(ring, space, b));
    return simpl(ring.integer(r));
  });
}

DAG mPowmod(DAG a, DAG n, DAG b, DAG m) {
  DAG reduced;
  mDivide(a, b, nullptr, &reduced, m);
  if (denseDegree(reduced) < 0) {
    if (n == cons0) KernelException("0^0 generated");
    return reduced;
  }
  if (n == cons0) return constantDense(cons1, a[1], m);
  if (n == cons1) return reduced;
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto modulus = load(ring, space, b);
    auto divisor = preparedDivisor(ring, space, modulus, modulus.degree);
    return store(ring, a[1], m, powerDense(ring, space, load(ring, space, reduced), exponentOf(space, n), divisor));
  });
}

// ---- values

DAG mDiff(DAG a, DAG m) {
  if (denseDegree(a) < 1) return zeroDense(a[1], m);
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto from = load(ring, space, a), to = from;
    to.c = ring.take(space, from.degree + 1);
    auto* factor = ring.take(space, 1);
    for (long i = 1; i <= from.degree; ++i) {
      ring.setSmall(factor, static_cast<std::uint64_t>(i));
      ring.multiply(ring.at(to.c, i - 1), ring.at(from.c, i), factor);
    }
    to.degree = trimmedDegree(ring, to.c, from.degree - 1);
    return store(ring, a[1], m, to);
  });
}

DAG mTranslate(DAG a, DAG c, DAG m) {
  c = simpl(imod(c, m, false));
  if (c == cons0 || denseDegree(a) < 1) return withModulus(a, m);
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto moved = loadCopy(ring, space, a);
    auto* shift = ring.take(space, 1);
    ring.setInteger(shift, c);
    translateDense(ring, moved, shift);
    return store(ring, a[1], m, moved);
  });
}

DAG mEval(DAG a, DAG point, DAG m) {
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto *at = ring.take(space, 1), *value = ring.take(space, 1);
    ring.setInteger(at, point);
    evaluateDense(ring, value, load(ring, space, a), at);
    return simpl(ring.integer(value));
  });
}

DAG mEval2(DAG a, DAG points, DAG m) {
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    const auto n = static_cast<long>(memberCount(points[1]));
    auto* values = ring.take(space, n);
    evaluateAtPoints(ring, values, load(ring, space, a), loadList(ring, space, points), n);
    DAG list = newl2(static_cast<Word>(n + 1), EXPSEQ);
    for (long i = 0; i < n; ++i) list[i + 1] = simpl(ring.integer(ring.at(values, i)));
    return simpl(new2(LIST, simpl(list)));
  });
}

DAG mInterpolate(DAG points, DAG values, DAG x, DAG m) {
  const auto n = static_cast<long>(memberCount(points[1]));
  if (memberCount(values[1]) != memberCount(points[1])) KernelException("modp1: invalid arguments");
  if (n == 0) return zeroDense(x, m);
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    auto* at = loadList(ring, space, points);
    decltype(load(ring, space, x)) result = {ring.take(space, n), -1};
    result.degree = interpolateDense(ring, result.c, at, loadList(ring, space, values), n);
    return store(ring, x, m, result);
  });
}

// ---- numbers

DAG mInverse(DAG a, DAG m) {
  GuardedWorkspace space;
  if (m == cons1) return cons0;
  WideRing ring(m, space);
  auto* r = ring.take(space, 1);
  ring.setInteger(r, a);
  if (ring.isZero(r) || !ring.invert(r, r)) return cons0;
  return simpl(ring.integer(r));
}

namespace {

/// a^n modulo an odd m > 1, for 1 < a < m and n > 0; 0 when stopped.
DAG powerModuloOdd(DAG a, DAG n, DAG m) {
  const MontgomeryModulus modulus(naturalOf(m));
  Natural r;
  if (!modulus.power(r, modulus.form(naturalOf(a)), naturalOf(n))) return DAG();
  return simpl(integerOf(modulus.valueOf(r)));
}

}  // namespace

DAG mpower(DAG a, DAG n, DAG m) {
  m = absalg(m);
  DAG base = simpl(imod(a, m, false));
  if (n == cons0 && base == cons0) KernelException("0^0 is undefined");
  if (m == cons1) return cons0;
  if (consneg(n)) {
    base = mInverse(base, m);
    if (base == cons0) mInverseError();
    n = simpl(complint(n));
  }
  if (base == cons1 || n == cons0) return cons1;
  if (base == cons0) return cons0;
  if (isodd(m)) {
    DAG r = powerModuloOdd(base, n, m);
    if (!r) endOperation();
    return r;
  }
  GuardedWorkspace space;
  WideRing ring(m, space);
  auto *factor = ring.take(space, 1), *result = ring.take(space, 1);
  ring.setInteger(factor, base);
  ring.copy(result, factor, 1);
  ExponentBits bits = exponentOf(space, n);
  for (long i = bits.bits - 2; i >= 0; --i) {
    ring.multiply(result, result, result);
    if (bits[i]) ring.multiply(result, result, factor);
    passWork(2 * ring.steps(1));
  }
  return simpl(ring.integer(result));
}

}  // namespace korel
