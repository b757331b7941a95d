#include "algebra/modular/modular_polynomials.h"

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/objects.h"

namespace korel {

// ---- coefficients

DAG zeroCoefficient(DAG a) { return isSequence(a[1]) ? zeroDense(a[1][2], a[2]) : cons0; }

DAG denseCoefficient(DAG a, std::int64_t i) {
  if (i < 0 || i > denseDegree(a)) return zeroCoefficient(a);
  if (!hasRawCoefficients(a)) return a[firstCoefficient + i];
  return immediate(static_cast<std::int32_t>(rawField(a, firstCoefficient + i)));
}

DAG newDense(DAG indeterminate, DAG modulus, std::int64_t degree) {
  if (degree > std::int64_t{maxLength} - 4) KernelException("object too large");
  return newl4(static_cast<Word>(degree + 4), ZPPOLY, indeterminate, modulus);
}

void setDenseCoefficient(DAG a, std::int64_t i, DAG value) {
  if (!hasRawCoefficients(a)) a[firstCoefficient + i] = value;
  else rawField(a, firstCoefficient + i) = static_cast<Word>(immediateValue(value));
}

DAG finishedDense(DAG a) {
  const bool raw = hasRawCoefficients(a), several = isSequence(a[1]);
  auto isZeroAt = [&](Word i) {
    if (raw) return rawField(a, i) == 0;
    return several ? lengthOf(a[i]) == firstCoefficient : a[i] == cons0;
  };
  const Word n = lengthOf(a);
  Word length = n;
  while (length > firstCoefficient && isZeroAt(length - 1)) --length;
  if (length != n) shorten(a, n, length);
  return simpl(a);
}

DAG zeroDense(DAG x, DAG m) { return simpl(new3(ZPPOLY, x, m)); }

DAG constantDense(DAG c, DAG x, DAG m) {
  DAG a = newDense(x, m, 0);
  setDenseCoefficient(a, 0, simpl(imod(c, m, false)));
  return finishedDense(a);
}

DAG withModulus(DAG a, DAG m) {
  if (a[2] == m) return a;
  DAG result = CopyAlg(a);
  result[2] = m;
  if (isSequence(a[1]))
    for (Word i = firstCoefficient; i < lengthOf(a); ++i) result[i] = withModulus(a[i], m);
  return simpl(result);
}

DAG mEmbed(DAG a, DAG m2) {
  if (a[2] == m2) return a;
  const bool reduces = compcon(m2, a[2]) < 0;
  DAG result = newDense(a[1], m2, denseDegree(a));
  for (long i = 0; i <= denseDegree(a); ++i) {
    DAG c = denseCoefficient(a, i);
    setDenseCoefficient(result, i, reduces ? simpl(imod(c, m2, false)) : c);
  }
  return finishedDense(result);
}

DAG mShift(DAG a, std::int64_t n, DAG m) {
  const std::int64_t degree = denseDegree(a);
  if (n == 0 || degree < 0) return withModulus(a, m);
  if (degree + n < 0) return zeroDense(a[1], m);
  DAG result = newDense(a[1], m, degree + n);
  if (!hasRawCoefficients(a))
    for (std::int64_t i = 0; i < n; ++i) result[firstCoefficient + i] = zeroCoefficient(a);
  for (std::int64_t i = n < 0 ? -n : 0; i <= degree; ++i)
    result[firstCoefficient + i + n] =
        isSequence(a[1]) ? withModulus(a[firstCoefficient + i], m) : a[firstCoefficient + i];
  return finishedDense(result);
}

DAG libraryArguments(DAG arguments, DAG m) {
  DAG result = newl2(lengthOf(arguments) + 1, EXPSEQ);
  for (Word i = 1; i < lengthOf(arguments); ++i)
    result[i] = isNameOrIndexed(arguments[i]) ? new2(UNEVAL, arguments[i]) : arguments[i];
  result[lengthOf(arguments)] = m;
  return simpl(result);
}

// ---- checks of arguments

namespace {

bool isBelowOrEqual(DAG modulus, DAG m) {
  return modulus == m ||
         (compcon(modulus, m) <= 0 && (isImmediate(modulus) && immediateValue(modulus) <= largestRawModulus) ==
                                          (isImmediate(m) && immediateValue(m) <= largestRawModulus));
}

}  // namespace

bool mVerify(DAG a, DAG m) { return isUnivariate(a) && isBelowOrEqual(a[2], m); }

bool mVerifyPair(DAG a, DAG b, DAG m) { return mVerify(a, m) && mVerify(b, m) && a[1] == b[1]; }

bool mVerifyMany(DAG sequence, DAG m) {
  return everyMember(sequence, [&](DAG a) { return mVerify(a, m) && a[1] == sequence[1][1]; });
}

bool mVerifyList(DAG list, DAG m) {
  return isTag(list, LIST) &&
         everyMember(list[1], [&](DAG c) { return isInteger(c) && !consneg(c) && compcon(c, m) < 0; });
}

bool mVerifyComparison(DAG a, DAG b) {
  if (isTag(a, LIST) && isTag(b, LIST)) {
    if (lengthOf(a[1]) != lengthOf(b[1])) return false;
    if (memberCount(a[1]) == 0) return true;
    DAG first = a[1][1];
    auto alike = [&](DAG x) { return isUnivariate(x) && isDense(first) && x[1] == first[1] && x[2] == first[2]; };
    return everyMember(a[1], alike) && everyMember(b[1], alike);
  }
  return isUnivariate(a) && isUnivariate(b) && a[1] == b[1] && a[2] == b[2];
}

bool m2Verify(DAG a, DAG m) {
  if (!isBivariate(a) || memberCount(a[1]) != 2 || !isBelowOrEqual(a[2], m)) return false;
  for (Word i = firstCoefficient; i < lengthOf(a); ++i)
    if (!mVerify(a[i], m) || a[i][1] != a[1][2]) return false;
  return true;
}

}  // namespace korel
