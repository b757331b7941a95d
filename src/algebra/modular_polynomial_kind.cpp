// Modular polynomials in the operations that all objects share.
//
//   ZPPOLY  s[1]             s[2]     s[3] ...
//           indeterminate,   modulus  coefficients by ascending exponents, raw for a small modulus
//           or EXPSEQ of two

#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr Word beforeCoefficients = 2;  // words from the header to the one before the first coefficient

std::int64_t coefficientCount(DAG polynomial) { return lengthOf(polynomial) - 1 - beforeCoefficients; }

DAG coefficient(DAG polynomial, std::int64_t i) {
  if (!hasRawCoefficients(polynomial)) return polynomial[beforeCoefficients + i];
  return Newint(static_cast<std::int32_t>(rawField(polynomial, beforeCoefficients + i)));
}
void setCoefficient(DAG polynomial, std::int64_t i, DAG value) {
  if (!hasRawCoefficients(polynomial)) polynomial[beforeCoefficients + i] = value;
  else rawField(polynomial, beforeCoefficients + i) = static_cast<Word>(immediateValue(value));
}

bool isResidue(DAG x, DAG modulus) { return isInteger(x) && !consneg(x) && compcon(x, modulus) < 0; }

// Simplified, without the leading zeros.
DAG finished(DAG parts) {
  bool raw = hasRawCoefficients(parts);
  auto isZeroAt = [&](Word i) { return raw ? rawField(parts, i) == 0 : parts[i] == cons0; };
  Word n = lengthOf(parts), length = n;
  while (length > beforeCoefficients + 1 && isZeroAt(length - 1)) --length;
  if (length != n) shorten(parts, n, length);
  return simpl(parts);
}
DAG putTogether(const TakenApart& object) { return finished(object.parts); }

void replaceCoefficient(TakenApart& object, std::int64_t i, DAG replacement) {
  if (isSequence(object.parts[1])) KernelException("the operation `%1` is not available", naminstall("m2ReplaceTerm"));
  if (!isResidue(replacement, object.parts[2])) KernelException("modp1: invalid replacement term");
  setCoefficient(object.parts, i, replacement);
}

DAG mapCoefficients(const OperandWalk& walk, DAG polynomial) {
  DAG result = CopyAlg(polynomial);
  for (std::int64_t i = 1, n = coefficientCount(polynomial); i <= n; ++i) {
    DAG value = simpl(walk(coefficient(polynomial, i)));
    // A raw coefficient is an immediate, as all below its modulus are.
    if (!isResidue(value, polynomial[2]) || (hasRawCoefficients(polynomial) && !isImmediate(value)))
      KernelException("invalid map onto ZPPOLY");
    setCoefficient(result, i, value);
  }
  return finished(result);
}

DAG substituteInIndeterminates(Substitution& substitution, DAG polynomial) {
  DAG result = substituteFields(substitution, polynomial, {1, 2});
  if (result != polynomial && !isSameDeclaration(polynomial[1], result[1]))
    KernelException("the operation `%1` is not available", naminstall("zpSubs"));
  return result;
}

}  // namespace

constexpr Kind modularPolynomialKind = {
    .count = coefficientCount,
    .operand = coefficient,
    .replace = replaceCoefficient,
    .putTogether = putTogether,
    .map = mapCoefficients,
    .substitute = substituteInIndeterminates,
};

}  // namespace korel
