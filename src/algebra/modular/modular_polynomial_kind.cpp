// Modular polynomials in the operations that all objects share.
//
// Their operands are the coefficients, from that of degree 0 on, which is operand 1.

#include <utility>

#include "algebra/modular/bivariate_polynomials.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

namespace {

std::int64_t coefficientCount(DAG a) { return denseDegree(a) + 1; }
DAG coefficientAt(DAG a, std::int64_t place) { return denseCoefficient(a, place - 1); }

// ---- selection: a[i], a[i..j]

[[noreturn]] void invalidIndex() { KernelException("invalid index into zppoly"); }

// A place counted from 1; negative ones count from the end.
std::int64_t placeOf(DAG a, DAG index) {
  if (!isImmediate(index)) invalidIndex();
  const std::int64_t i = immediateValue(index);
  return i < 0 ? i + coefficientCount(a) + 1 : i;
}

DAG zpIndex(DAG a, DAG index) {
  if (isZeroImmediate(index)) return zeroCoefficient(a);
  const std::int64_t place = placeOf(a, index);
  if (place < 1 || place > coefficientCount(a)) invalidIndex();
  return coefficientAt(a, place);
}

DAG zpRangeIndex(DAG a, DAG range) {
  if (!isInteger(range[1]) || !isInteger(range[2])) KernelException("invalid range index");
  const std::int64_t from = placeOf(a, range[1]), to = placeOf(a, range[2]);
  const std::int64_t step = to < from ? -1 : 1, count = (to - from) * step + 1;
  if (count >= std::int64_t{maxLength}) invalidIndex();
  DAG sequence = newl2(static_cast<Word>(count + 1), EXPSEQ);
  for (std::int64_t k = 0; k < count; ++k) sequence[k + 1] = coefficientAt(a, from + k * step);
  return simpl(sequence);
}

DAG select(DAG a, DAG index) {
  index = singleMember(index);
  if (isInteger(index)) return zpIndex(a, index);
  return isTag(index, RANGE) ? zpRangeIndex(a, index) : DAG();
}

// ---- subsop

void replaceCoefficient(TakenApart& object, std::int64_t i, DAG replacement) {
  DAG place = immediate(static_cast<std::int32_t>(i));
  // Each replacement is checked against the object as it is; only the place is written.
  if (isSequence(object.parts[1])) m2ReplaceTerm(object.original, place, replacement);
  else mReplaceTerm(object.original, place, replacement);
  setDenseCoefficient(object.parts, i - 1, replacement);
}

DAG putTogether(const TakenApart& object) { return finishedDense(object.parts); }

// ---- map

DAG zpMap(const OperandWalk& walk, DAG a) {
  const bool several = isSequence(a[1]);
  DAG result = newDense(a[1], a[2], denseDegree(a));
  // In order before the walk goes on: it may collect.
  for (std::int64_t i = 0; i < coefficientCount(a); ++i) setDenseCoefficient(result, i, zeroCoefficient(a));
  for (std::int64_t i = 0; i < coefficientCount(a); ++i) {
    DAG c = simpl(walk(denseCoefficient(a, i)));
    const bool fits = several ? isUnivariate(c) && c[1] == a[1][2] && c[2] == a[2]
                              : isInteger(c) && !consneg(c) && compcon(c, a[2]) < 0;
    if (!fits) KernelException("invalid map onto ZPPOLY");
    setDenseCoefficient(result, i, c);
  }
  return finishedDense(result);
}

// ---- substitution

DAG zpReplaceIndet(DAG a, DAG indeterminate) {
  const bool several = isSequence(a[1]);
  if (isSequence(indeterminate) != several ||
      (several && (memberCount(indeterminate) != memberCount(a[1]) || indeterminate[1] == indeterminate[2])))
    KernelException("cannot change number of indeterminates");
  DAG result = CopyAlg(a);
  result[1] = indeterminate;
  for (Word i = firstCoefficient; several && i < lengthOf(a); ++i) result[i] = zpReplaceIndet(a[i], indeterminate[2]);
  if (!everyMember(asSequence(indeterminate), isNameOrIndexed)) KernelException("invalid substitution into zppoly");
  return simpl(result);
}

DAG zpReplaceMod(DAG a, DAG modulus) {
  if (!isInteger(modulus) || compcon(modulus, cons0) <= 0) KernelException("modulus must be a positive integer");
  if (compcon(modulus, a[2]) < 0) KernelException("cannot decrease modulus");
  if (!isSequence(a[1])) return mEmbed(a, modulus);
  DAG result = CopyAlg(a);
  result[2] = modulus;
  for (Word i = firstCoefficient; i < lengthOf(a); ++i) result[i] = mEmbed(a[i], modulus);
  return simpl(result);
}

DAG zpSubs(Substitution& substitution, DAG a) {
  DAG head = new3(EXPSEQ, a[1], a[2]);
  DAG coefficients = newl2(static_cast<Word>(coefficientCount(a) + 1), EXPSEQ);
  for (std::int64_t i = 0; i < coefficientCount(a); ++i) coefficients[i + 1] = denseCoefficient(a, i);
  DAG newHead = substituteFields(substitution, head, {1, 3});
  DAG newCoefficients = substituteFields(substitution, coefficients, {1, lengthOf(coefficients)});
  DAG result = a;
  if (newHead[1] != a[1]) result = zpReplaceIndet(result, simpl(newHead[1]));
  if (newHead[2] != a[2]) result = zpReplaceMod(result, simpl(newHead[2]));
  if (newCoefficients != coefficients)
    result = isSequence(a[1]) ? m2ReplaceCoeffs(result, newCoefficients) : mReplaceCoeffs(result, newCoefficients);
  return result;
}

}  // namespace

constexpr Kind modularPolynomialKind = {
    .count = coefficientCount,
    .operand = coefficientAt,
    .replace = replaceCoefficient,
    .putTogether = putTogether,
    .map = zpMap,
    .substitute = zpSubs,
    .index = select,
};

}  // namespace korel
