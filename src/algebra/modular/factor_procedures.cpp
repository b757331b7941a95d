// Native library procedures: factors and roots of dense polynomials over a prime field; powers of integers.
//
// Each is called with a dense polynomial and the modulus. Factors are monic and come in order: by degree, then by
// coefficients from the top.

#include <algorithm>

#include "algebra/modular/dense_factor.h"
#include "algebra/modular/dense_objects.h"
#include "algebra/polynomial_order.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

struct Operands {
  DAG a, m;
  long degree;
};

Operands operandsOf(const BuiltinCall& call, const char* name) {
  if (argumentCount(call) != 2 || !isInteger(call.arguments[2])) wrongParameters(call);
  DAG a = call.arguments[1], m = call.arguments[2];
  if (!mVerify(a, m)) KernelException("modp1: invalid arguments to function %1", naminstall(name));
  if (!isPrimeModulus(m)) KernelException("prime modulus expected, but received %1", m);
  return {withModulus(a, m), m, denseDegree(a)};
}

DAG listOf(DAG sequence) { return simpl(new2(LIST, simpl(sequence))); }
DAG pairOf(DAG a, DAG b) { return listOf(newSequence({a, b})); }
DAG number(long n) { return immediate(static_cast<std::int32_t>(n)); }

bool comesBefore(DAG a, DAG b) {
  if (denseDegree(a) != denseDegree(b)) return denseDegree(a) < denseDegree(b);
  for (long i = denseDegree(a); i >= 0; --i) {
    DAG c = denseCoefficient(a, i), d = denseCoefficient(b, i);
    if (c != d) return compcon(c, d) < 0;
  }
  return false;
}

/// The list of the pairs (factor, number) in order.
template <class R>
DAG listed(const R& ring, const Operands& operands, const FactorList<R>& found) {
  DAG pairs = newl2(static_cast<Word>(found.count + 1), EXPSEQ);
  for (long i = 0; i < found.count; ++i)
    pairs[i + 1] = pairOf(store(ring, operands.a[1], operands.m, found.factors[i]), number(found.numbers[i]));
  auto* first = &pairs[1];
  std::sort(first, first + found.count, [](DAG p, DAG q) {
    if (p[1][1] != q[1][1]) return comesBefore(p[1][1], q[1][1]);
    return compcon(p[1][2], q[1][2]) < 0;
  });
  return listOf(pairs);
}

template <class R>
Dense<R> monic(const R& ring, Workspace& space, DAG a) {
  Dense<R> f = loadCopy(ring, space, a);
  scaleDense(ring, f.c, f, invertedLead(ring, space, f));
  return f;
}

/// Runs `step(ring, space, f, result)` on the monic polynomial; gives the list of what it found.
template <class Step>
DAG found(const Operands& operands, Step step) {
  if (operands.degree < 1) return emptylist;
  return withModularRing(operands.m, [&](const auto& ring, Workspace& space) {
    auto f = monic(ring, space, operands.a);
    FactorList<std::remove_cvref_t<decltype(ring)>> result(ring, space, operands.degree);
    step(ring, space, f, result);
    return listed(ring, operands, result);
  });
}
/// The same with the leading coefficient in front.
template <class Step>
DAG foundWithLead(const Operands& operands, Step step) {
  DAG lead = denseCoefficient(operands.a, operands.degree);
  return pairOf(operands.degree < 0 ? cons0 : lead, found(operands, step));
}

}  // namespace

// modp1/Factors(a, m): [leading coefficient, [[factor, multiplicity], ...]].
DAG native::modularFactors(const BuiltinCall& call) {
  return foundWithLead(operandsOf(call, "Factors"), [](const auto& ring, Workspace& space, auto f, auto& result) {
    factorDense(ring, space, f, result);
  });
}

// modp1/Sqrfree(a, m): the same with square-free factors.
DAG native::modularSqrfree(const BuiltinCall& call) {
  return foundWithLead(operandsOf(call, "Sqrfree"),
                       [](const auto& ring, Workspace&, auto f, auto& result) { squareFreeParts(ring, f, result); });
}

// modp1/DistDeg(a, m): [[product of the factors of a degree, degree], ...] of a square-free polynomial.
DAG native::modularDistDeg(const BuiltinCall& call) {
  return found(operandsOf(call, "DistDeg"),
               [](const auto& ring, Workspace&, auto f, auto& result) { distinctDegrees(ring, f, result); });
}

// modp1/Irreduc(a, m): true or false.
DAG native::modularIrreduc(const BuiltinCall& call) {
  Operands operands = operandsOf(call, "Irreduc");
  if (operands.degree < 1) return truth(false);
  return withModularRing(operands.m, [&](const auto& ring, Workspace& space) {
    return truth(isIrreducible(ring, monic(ring, space, operands.a)));
  });
}

// modp1/Roots(a, m): [[root, multiplicity], ...], the roots in order.
DAG native::modularRoots(const BuiltinCall& call) {
  Operands operands = operandsOf(call, "Roots");
  if (operands.degree < 0) KernelException("polynomial that is not zero expected");
  if (operands.degree == 0) return emptylist;
  return withModularRing(operands.m, [&](const auto& ring, Workspace& space) {
    using R = std::remove_cvref_t<decltype(ring)>;
    Dense<R> f = monic(ring, space, operands.a);
    FactorList<R> linear(ring, space, operands.degree);
    if (Dense<R> part = partWithRoots(ring, space, f); part.degree > 0) equalDegrees(ring, part, 1, linear);
    DAG pairs = newl2(static_cast<Word>(linear.count + 1), EXPSEQ);
    for (long i = 0; i < linear.count; ++i) {
      const long multiplicity = takeOutRoot(ring, space, f, linear.factors[i]);
      ring.negate(linear.factors[i].c, linear.factors[i].c);
      pairs[i + 1] = pairOf(simpl(ring.integer(linear.factors[i].c)), number(multiplicity));
    }
    auto* first = &pairs[1];
    std::sort(first, first + linear.count, [](DAG p, DAG q) { return compcon(p[1][1], q[1][1]) < 0; });
    return listOf(pairs);
  });
}

// mod/aid/variables(a, ...): the names and calls that the expressions are made of, as a set.
DAG native::modularVariables(const BuiltinCall& call) {
  DAG list = simpl(new2(LIST, call.arguments));
  return simpl(new2(SET, simpl(indeterminates(list))));
}

// powermod(b, e, m): b^e modulo m > 0, for a negative e with an inverse of b; what `&^` gives under `mod` as well.
DAG native::powermod(const BuiltinCall& call) {
  if (argumentCount(call) != 3 || !everyMember(call.arguments, isInteger)) wrongParameters(call);
  return mpower(call.arguments[1], call.arguments[2], call.arguments[3]);
}

}  // namespace korel
