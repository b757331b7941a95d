#include "algebra/series/series_object.h"

#include <algorithm>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

// ---- making series

DAG newSeries(DAG variable, Word pairs) {
  if (pairs > (maxLength - 2) / 2) KernelException("object too large");
  return newl3(2 + 2 * pairs, SERIES, variable);
}

DAG singleTerm(DAG variable, DAG coefficient, std::int32_t exponent) {
  DAG s = newSeries(variable, 1);
  seriesPairs(s)[0] = {coefficient, exponent};
  return s;
}

DAG orderTerm(DAG variable, std::int64_t exponent) {
  const auto shown = std::min<std::int64_t>(exponent, largestSeriesExponent);
  return singleTerm(variable, order1, boundedExponent(shown));
}

std::int32_t boundedExponent(std::int64_t exponent) {
  if (exponent > largestSeriesExponent || exponent < -largestSeriesExponent) KernelException("object too large");
  return static_cast<std::int32_t>(exponent);
}

void SeriesBuilder::add(DAG coefficient, std::int32_t exponent) {
  if (used == seriesPairCount(series)) {
    if (used > (maxLength - 2) / 4) KernelException("object too large");
    series = enlarge(series, 2 * used);
  }
  seriesPairs(series)[used++] = {coefficient, exponent};
}

DAG SeriesBuilder::finish() {
  if (used != seriesPairCount(series)) shorten(series, lengthOf(series), 2 + 2 * used);
  return series;
}

// ---- coefficients

DAG sumOfCoefficients(DAG a, DAG b) {
  if (isNumber(a) && isNumber(b)) return simpl(add(a, b));
  return simpl(new5(SUM, a, cons1, b, cons1));
}

DAG productOfCoefficients(DAG a, DAG b) {
  if (a == order1 || b == order1) return order1;
  return simpl(NewPROD(a, b));
}

DAG termOfSeries(DAG coefficient, DAG variable, std::int32_t exponent) {
  DAG power = exponent == 0 ? cons1 : exponent == 1 ? variable : simpl(new3(PROD, variable, immediate(exponent)));
  if (coefficient == order1) return simpl(newCall(ini("O"), {power}));
  return exponent == 0 ? coefficient : simpl(NewPROD(coefficient, power));
}

// ---- the canonical form

namespace {

// Sum of the coefficients from `first` up to `last`, which stand at one exponent; order1 when one is.
DAG sumOfRun(const SeriesPair* first, const SeriesPair* last) {
  if (last - first == 1) return first->coefficient;
  for (const SeriesPair* p = first; p != last; ++p)
    if (p->coefficient == order1) return order1;
  if (last - first == 2) return sumOfCoefficients(first[0].coefficient, first[1].coefficient);
  DAG sum = newl2(static_cast<Word>(1 + 2 * (last - first)), SUM);
  Word at = 1;
  for (const SeriesPair* p = first; p != last; ++p) {
    sum[at++] = p->coefficient;
    sum[at++] = cons1;
  }
  return simpl(sum);
}

bool ascends(const SeriesPair* pairs, Word count) {
  for (Word i = 1; i < count; ++i)
    if (pairs[i - 1].exponent >= pairs[i].exponent) return false;
  return true;
}

}  // namespace

DAG sortpol(DAG s, std::int32_t d) {
  const Word count = seriesPairCount(s);
  passWork(count);
  SeriesPair* pairs = seriesPairs(s);
  if (!ascends(pairs, count))
    std::stable_sort(pairs, pairs + count,
                     [](const SeriesPair& a, const SeriesPair& b) { return a.exponent < b.exponent; });
  Word used = 0;
  for (Word i = 0; i < count;) {
    const std::int32_t exponent = pairs[i].exponent;
    Word end = i + 1;
    while (end < count && pairs[end].exponent == exponent) ++end;
    DAG coefficient = sumOfRun(pairs + i, pairs + end);
    i = end;
    if (isNumber(coefficient) && isZero(coefficient)) continue;
    if (exponent > d) coefficient = order1;
    pairs[used++] = {coefficient, exponent};
    if (coefficient == order1) break;
  }
  if (used != count) shorten(s, lengthOf(s), 2 + 2 * used);
  for (Word i = 0; i < used; ++i) {
    const bool last = i + 1 == used && pairs[i].coefficient == order1;
    pairs[i].exponent = last ? std::min(pairs[i].exponent, largestSeriesExponent) : pairs[i].exponent;
    pairs[i].exponent = boundedExponent(pairs[i].exponent);
  }
  return simpl(s);
}

DAG convpoly(DAG series) {
  const Word count = seriesPairCount(series);
  DAG sum = newl2(1 + 2 * count, SUM);
  for (Word i = 0; i < count; ++i) {
    const SeriesPair pair = seriesPairs(series)[i];
    DAG term = pair.coefficient, coefficient = cons1;
    if (isNumeric(term) && pair.exponent != 0) {
      coefficient = term;
      term = cons1;
    }
    sum[1 + 2 * i] = termOfSeries(term, variableOf(series), pair.exponent);
    sum[2 + 2 * i] = coefficient;
  }
  return simpl(sum);
}

}  // namespace korel
