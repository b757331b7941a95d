#include "algebra/polynomials/ascending_terms.h"

#include <algorithm>

#include "algebra/polynomials/expand.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

struct Power {
  DAG coefficient;
  std::int32_t exponent;
};

// An expanded term as a coefficient times a power of x.
Power powerOf(DAG term, DAG x) {
  if (term == x) return {cons1, 1};
  if (isTag(term, PROD))
    for (Word i = 1; i < lengthOf(term); i += 2)
      if (term[i] == x) {
        if (!isImmediate(term[i + 1])) KernelException("integer too large in context");
        return {simpl(copydel(term, i - 1, 2)), immediateValue(term[i + 1])};
      }
  return {term, 0};
}

}  // namespace

AscendingTerms ascendingTerms(DAG p, DAG x) {
  p = expand(p);
  DAG sum = isTag(p, SUM) ? p : new3(SUM, p, cons1);
  const Word count = (lengthOf(sum) - 1) / 2;
  // Terms in the order of their exponents: a coefficient and a raw exponent each.
  DAG parts = newl2(count + 1, EXPSEQ), order = newl2(2 * count + 1, BINARY);
  for (Word i = 1; i <= count; ++i) {
    passWork(objectSteps);
    Power power = powerOf(sum[2 * i - 1], x);
    parts[i] = power.coefficient;
    rawField(order, 2 * i - 1) = static_cast<Word>(power.exponent);
    rawField(order, 2 * i) = i;
  }
  struct Place {
    std::int32_t exponent;
    Word index;
  };
  auto* places = reinterpret_cast<Place*>(&rawField(order, 1));
  std::sort(places, places + count, [](const Place& a, const Place& b) {
    return a.exponent != b.exponent ? a.exponent < b.exponent : a.index < b.index;
  });
  DAG series = newl3(2 * count + 2, SERIES, x);
  Word at = 2;
  for (Word i = 0; i < count;) {
    Word end = i;
    while (end < count && places[end].exponent == places[i].exponent) ++end;
    DAG coefficient = newl2(2 * (end - i) + 1, SUM);
    for (Word k = i; k < end; ++k) {
      coefficient[2 * (k - i) + 1] = parts[places[k].index];
      coefficient[2 * (k - i) + 2] = sum[2 * places[k].index];
    }
    coefficient = simpl(coefficient);
    if (coefficient != cons0) {
      series[at++] = coefficient;
      rawField(series, at++) = static_cast<Word>(places[i].exponent);
    }
    i = end;
  }
  shorten(series, lengthOf(series), at);
  return AscendingTerms(series);
}

void AscendingTerms::subtractMultiple(const AscendingTerms& b, DAG q, std::int64_t e) {
  const Word n = count(), m = b.count() - 1;
  DAG negated = simpl(NewPROD(consm1, q));
  DAG merged = newl3(2 * (n + m) + 2, SERIES, series_[1]);
  Word at = 2, i = 1, j = 1;
  auto put = [&](DAG coefficient, std::int64_t exponent) {
    if (isNumber(coefficient) && isZero(coefficient)) return;
    merged[at++] = coefficient;
    rawField(merged, at++) = static_cast<Word>(static_cast<std::int32_t>(exponent));
  };
  while (i <= n || j <= m) {
    std::int64_t left = i <= n ? exponent(i) : INT64_MAX, right = j <= m ? b.exponent(j) + e : INT64_MAX;
    if (left < right) {
      put(coefficient(i++), left);
      continue;
    }
    DAG product = exprod(b.coefficient(j++), negated);
    if (left > right) put(product, right);
    else put(simpl(new5(SUM, coefficient(i++), cons1, product, cons1)), left);
  }
  shorten(merged, lengthOf(merged), at);
  series_ = merged;
}

}  // namespace korel
