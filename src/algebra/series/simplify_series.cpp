#include "algebra/series/simplify_series.h"

#include <cstdlib>

#include "algebra/series/series_object.h"
#include "eval/simplify/simplify.h"
#include "eval/types/constant_expressions.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// The coefficient at exponent 0, when x is 0.
DAG valueAtZero(DAG s) {
  const Word count = seriesPairCount(s);
  const SeriesPair* pairs = seriesPairs(s);
  if (count == 0 || pairs[0].exponent > 0) return cons0;
  if (pairs[0].exponent < 0) KernelException("division by zero");
  return simpl(pairs[0].coefficient);
}

// Long lists of integer coefficients at an integer take as many multiplications as the highest exponent.
bool takesHorner(DAG s) {
  const Word count = seriesPairCount(s);
  const SeriesPair* pairs = seriesPairs(s);
  if (count < 8 || !isInteger(variableOf(s))) return false;
  if (pairs[0].exponent < 0 || pairs[count - 1].exponent > static_cast<std::int32_t>(lengthOf(s))) return false;
  for (Word i = 0; i < count; ++i)
    if (!isInteger(pairs[i].coefficient)) return false;
  return true;
}

DAG hornerValue(DAG s) {
  const SeriesPair* pairs = seriesPairs(s);
  DAG x = variableOf(s), value = cons0;
  std::int32_t exponent = lastSeriesPair(s).exponent;
  for (Word i = seriesPairCount(s); i-- > 0;) {
    for (; exponent > pairs[i].exponent; --exponent) value = mulint(value, x);
    value = addint(value, pairs[i].coefficient);
    if (!isImmediate(value)) passWork(lengthOf(value));
  }
  for (; exponent > 0; --exponent) value = mulint(value, x);
  return simpl(value);
}

DAG valueAtNumber(DAG s) {
  if (hasOrderTerm(s)) KernelException("invalid substitution in series");
  return takesHorner(s) ? hornerValue(s) : convpoly(s);
}

// The variable as c*x^k, with a number c and a name x.
struct ScaledPower {
  DAG factor = cons1;
  DAG name;
  std::int32_t exponent = 1;
};

bool readScaledPower(DAG variable, ScaledPower& scaled) {
  if (isTag(variable, SUM)) {
    if (lengthOf(variable) != 3) return false;
    scaled.factor = variable[2];
    variable = variable[1];
  }
  if (isTag(variable, PROD)) {
    if (lengthOf(variable) != 3 || !isImmediate(variable[2])) return false;
    scaled.exponent = immediateValue(variable[2]);
    variable = variable[1];
  }
  scaled.name = variable;
  return isNameOrIndexed(variable) && (scaled.factor != cons1 || scaled.exponent != 1);
}

// The same series in x. An order term at a negative multiple of its exponent would tell nothing.
DAG inTermsOfName(DAG s, const ScaledPower& scaled) {
  const Word count = seriesPairCount(s);
  if (scaled.exponent < 0 && hasOrderTerm(s)) KernelException("invalid substitution in series");
  SeriesBuilder result(scaled.name, count);
  for (Word i = 0; i < count; ++i) {
    SeriesPair pair = seriesPairs(s)[i];
    if (pair.coefficient != order1 && scaled.factor != cons1)
      pair.coefficient =
          productOfCoefficients(pair.coefficient, simpl(new3(PROD, scaled.factor, immediate(pair.exponent))));
    result.add(pair.coefficient, boundedExponent(std::int64_t{pair.exponent} * scaled.exponent));
  }
  return sortpol(result.finish(), noTruncation);
}

bool hasZero(DAG s) {
  for (Word i = 2, n = lengthOf(s); i < n; i += 2)
    if (isNumber(s[i]) && isZero(s[i])) return true;
  return false;
}

}  // namespace

DAG simplseries(DAG s) {
  s[1] = simpl(s[1]);
  DAG variable = s[1];
  if (isNumber(variable) && isZero(variable)) return valueAtZero(s);
  for (Word i = 2, n = lengthOf(s); i < n; i += 2) s[i] = simpl(s[i]);
  if (isNumber(variable) || (!isNameOrIndexed(variable) && onlyconst(variable))) return valueAtNumber(s);
  ScaledPower scaled;
  if (readScaledPower(variable, scaled)) return inTermsOfName(s, scaled);
  if (hasZero(s)) {
    for (Word i = 2; i < lengthOf(s);) {
      if (isNumber(s[i]) && isZero(s[i])) shrinkn(s, i - 1, 2);
      else i += 2;
    }
  }
  return makeUnique(s);
}

}  // namespace korel
