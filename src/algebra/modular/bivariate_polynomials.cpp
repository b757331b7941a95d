#include "algebra/modular/bivariate_polynomials.h"

#include <algorithm>
#include <cstring>

#include "algebra/modular/polynomial_conversion.h"
#include "algebra/polynomial_order.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/objects.h"

namespace korel {

DAG newBivariate(DAG indeterminates, DAG m, DAG coefficients) {
  const Word n = memberCount(coefficients);
  DAG a = newDense(indeterminates, m, std::int64_t{n} - 1);
  for (Word i = 0; i < n; ++i) a[firstCoefficient + i] = coefficients[i + 1];
  return finishedDense(a);
}

namespace {

DAG newCoefficients(std::int64_t n) {
  if (n >= std::int64_t{maxLength}) KernelException("object too large");
  return newl2(static_cast<Word>(n + 1), EXPSEQ);
}

}  // namespace

// ---- indeterminates

DAG m2ResolveIndets(DAG f, DAG given) {
  const Word count = memberCount(given);
  if (count > 2) KernelException("incorrect number of arguments");
  if (count == 2 && given[1] == given[2]) KernelException("cannot specify the same indeterminate twice");
  DAG found = simpl(indeterminates(f));
  const Word n = memberCount(found);
  if (n > 2) KernelException("polynomial has more than 2 indeterminates");
  if (count == 0) {
    if (n < 2) KernelException("cannot infer indeterminates from polynomial");
    // The order of a set is that of addresses; names stand in the order of the alphabet.
    const bool inOrder = !isName(found[1]) || !isName(found[2]) || std::strcmp(textOf(found[1]), textOf(found[2])) < 0;
    return inOrder ? found : simpl(newSequence({found[2], found[1]}));
  }
  DAG x = given[1];
  if (count == 1) {
    if (n == 2) {
      if (!isMember(x, found)) KernelException("polynomial is in variables %1", simpl(new2(SET, found)));
      return simpl(newSequence({x, found[1] == x ? found[2] : found[1]}));
    }
    if (n == 1 && found[1] != x) KernelException("polynomial not in variable %1", x);
    KernelException("cannot infer second indeterminate from polynomial");
  }
  for (Word i = 1; i <= n; ++i) {
    if (isMember(found[i], given)) continue;
    if (n == 1) KernelException("polynomial is in variable %1", found[1]);
    KernelException("polynomial is in variables %1", simpl(new2(SET, found)));
  }
  return given;
}

// ---- conversion

namespace {

// The polynomial, or 0 with the reason why f is none as it stands.
DAG readBivariate(DAG f, DAG indeterminates, DAG m, PolynomialFault& fault) {
  DAG x = indeterminates[1], y = indeterminates[2];
  const DegreeBound dx = degreeBound(f, x), dy = degreeBound(f, y);
  fault = dx.fault != PolynomialFault::none ? dx.fault : dy.fault;
  if (fault == PolynomialFault::none && std::max(dx.degree, dy.degree) > maxImmediate)
    fault = PolynomialFault::degreeTooLarge;
  if (fault != PolynomialFault::none) return DAG();
  const std::int64_t stride = dy.degree + 1;
  return withModularRing(m, [&](const auto& ring, Workspace& space) {
    Dense<std::remove_cvref_t<decltype(ring)>> all;
    fault = readPolynomial(ring, space, f, x, stride, y, (dx.degree + 1) * stride, all);
    if (fault != PolynomialFault::none) return DAG();
    const std::int64_t n = all.degree < 0 ? 0 : all.degree / stride + 1;
    DAG coefficients = newCoefficients(n);
    for (std::int64_t i = 0; i < n; ++i) {
      const std::int64_t top = std::min<std::int64_t>(stride - 1, all.degree - i * stride);
      DAG c = newDense(y, m, top);
      for (std::int64_t j = 0; j <= top; ++j) setDenseCoefficient(c, j, ring.integer(ring.at(all.c, i * stride + j)));
      coefficients[i + 1] = finishedDense(c);
    }
    return newBivariate(indeterminates, m, coefficients);
  });
}

}  // namespace

DAG m2ConvertIn(DAG f, DAG indeterminates, DAG m, const BivariateMessages& messages) {
  PolynomialFault fault;
  DAG result = readBivariate(f, indeterminates, m, fault);
  // Fractions may go when it is multiplied out.
  if (!result && fault != PolynomialFault::degreeTooLarge)
    if (DAG expanded = multipliedOut(f); expanded != f) result = readBivariate(expanded, indeterminates, m, fault);
  if (result) return result;
  if (fault == PolynomialFault::degreeTooLarge) KernelException(messages.degreeTooLarge);
  KernelException(fault == PolynomialFault::notInteger ? messages.notInteger : messages.invalidArguments);
}

DAG m2ConvertOut(DAG a, DAG x, DAG y) {
  std::int64_t terms = 0;
  for (long i = 0; i <= denseDegree(a); ++i)
    for (long j = 0; j <= denseDegree(denseCoefficient(a, i)); ++j)
      terms += denseCoefficient(denseCoefficient(a, i), j) != cons0 ? 1 : 0;
  if (2 * terms >= std::int64_t{maxLength}) KernelException("object too large");
  DAG sum = newl2(static_cast<Word>(2 * terms + 1), SUM);
  Word at = 1;
  for (long i = denseDegree(a); i >= 0; --i) {
    DAG inner = denseCoefficient(a, i);
    for (long j = denseDegree(inner); j >= 0; --j) {
      DAG c = denseCoefficient(inner, j);
      if (c == cons0) continue;
      auto power = [](long n) { return immediate(static_cast<std::int32_t>(n)); };
      const bool constant = i == 0 && j == 0;
      sum[at++] = constant ? c : simpl(new5(PROD, x, power(i), y, power(j)));
      sum[at++] = constant ? cons1 : c;
    }
  }
  return simpl(sum);
}

DAG m2Build(DAG list, DAG indeterminates, DAG m) {
  auto refuse = [] { KernelException("modp2: invalid arguments to Build"); };
  if (!isTag(list, LIST)) refuse();
  DAG y = indeterminates[2], coefficients = CopyAlg(list[1]);
  for (Word i = 1; i < lengthOf(coefficients); ++i) {
    DAG c = coefficients[i];
    if (isInteger(c)) coefficients[i] = constantDense(c, y, m);
    else if (mVerify(c, m) && c[1] == y) coefficients[i] = withModulus(c, m);
    else refuse();
  }
  return newBivariate(indeterminates, m, coefficients);
}

// ---- parts and other views

long m2Degree2(DAG a) {
  long degree = -1;
  for (long i = 0; i <= denseDegree(a); ++i) degree = std::max(degree, denseDegree(denseCoefficient(a, i)));
  return degree;
}

DAG m2Coeff2(DAG a, std::int64_t i, DAG m) {
  DAG result = newDense(a[1][1], m, denseDegree(a));
  for (long k = 0; k <= denseDegree(a); ++k)
    setDenseCoefficient(result, k, denseCoefficient(denseCoefficient(a, k), i));
  return finishedDense(result);
}

DAG m2Eval2(DAG a, DAG c, DAG m) {
  DAG result = newDense(a[1][1], m, denseDegree(a));
  for (long k = 0; k <= denseDegree(a); ++k) setDenseCoefficient(result, k, mEval(denseCoefficient(a, k), c, m));
  return finishedDense(result);
}

DAG m2VarSwap(DAG a, DAG m) {
  const long n = m2Degree2(a) + 1;
  DAG coefficients = newCoefficients(n);
  for (long j = 0; j < n; ++j) coefficients[j + 1] = m2Coeff2(a, j, m);
  return newBivariate(simpl(newSequence({a[1][2], a[1][1]})), m, coefficients);
}

DAG m2SubPoly(DAG a, std::int64_t i, std::int64_t j, DAG m) {
  j = std::min<std::int64_t>(j, denseDegree(a));
  DAG coefficients = newCoefficients(std::max<std::int64_t>(j - i + 1, 0));
  for (std::int64_t k = i; k <= j; ++k) coefficients[k - i + 1] = withModulus(denseCoefficient(a, k), m);
  return newBivariate(a[1], m, coefficients);
}

// ---- replacement

namespace {

bool isResidue(DAG c, DAG m) { return isInteger(c) && !consneg(c) && compcon(c, m) < 0; }
// What can be a coefficient of `a`.
bool isCoefficientOf(DAG c, DAG a) {
  if (!isSequence(a[1])) return isResidue(c, a[2]);
  return isUnivariate(c) && c[1] == a[1][2] && c[2] == a[2];
}

DAG withCoefficients(DAG a, DAG coefficients) {
  if (!everyMember(coefficients, [&](DAG c) { return isCoefficientOf(c, a); }))
    KernelException("invalid substitution into zppoly");
  DAG result = newDense(a[1], a[2], std::int64_t{memberCount(coefficients)} - 1);
  for (Word i = 0; i < memberCount(coefficients); ++i) setDenseCoefficient(result, i, coefficients[i + 1]);
  return finishedDense(result);
}

DAG withTerm(DAG a, DAG i, DAG c, const char* refusal) {
  if (!isImmediate(i) || immediateValue(i) < 1) KernelException("modp2: invalid replacement term number");
  if (!isCoefficientOf(c, a)) KernelException(refusal);
  const std::int64_t place = immediateValue(i) - 1, degree = denseDegree(a);
  DAG result = newDense(a[1], a[2], std::max(place, degree));
  for (std::int64_t k = 0; k <= std::max(place, degree); ++k)
    setDenseCoefficient(result, k, k == place ? c : denseCoefficient(a, k));
  return finishedDense(result);
}

}  // namespace

DAG mReplaceTerm(DAG a, DAG i, DAG c) { return withTerm(a, i, c, "modp1: invalid replacement term"); }
DAG m2ReplaceTerm(DAG a, DAG i, DAG c) { return withTerm(a, i, c, "modp2: invalid replacement term"); }
DAG mReplaceCoeffs(DAG a, DAG coefficients) { return withCoefficients(a, coefficients); }
DAG m2ReplaceCoeffs(DAG a, DAG coefficients) { return withCoefficients(a, coefficients); }

}  // namespace korel
