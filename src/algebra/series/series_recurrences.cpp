// Native library procedures on series: powers, exponentials and their kin by linear recurrences of coefficients.
//
// A series g = g0 + g1 x + ... is taken as a polynomial in x alone: whatever else its coefficients hold, logarithms
// of x for one, counts as constant. The recurrences follow from the differential equations of the functions (Knuth,
// vol. 2, 4.7; exercise 4.7-4), and cost n^2/2 products of coefficients for n terms.

#include <algorithm>

#include "algebra/polynomial_types.h"
#include "algebra/polynomials/expand.h"
#include "algebra/series/expansion.h"
#include "algebra/series/rational_sum.h"
#include "algebra/series/series_object.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG seriesArgument(const BuiltinCall& call, Word i) {
  if (argumentCount(call) < i || !isTag(call.arguments[i], SERIES)) wrongParameters(call);
  return call.arguments[i];
}
std::int32_t countArgument(const BuiltinCall& call, Word i) {
  DAG n = argumentCount(call) < i ? DAG() : call.arguments[i];
  if (n == ini("infinity")) return noTruncation;
  if (!n || !isImmediate(n) || immediateValue(n) < 0) wrongParameters(call);
  return immediateValue(n);
}

// Coefficients by exponent, 0 where there is none. An EXPSEQ: what it holds stays alive.
struct Coefficients {
  DAG words;

  explicit Coefficients(std::int32_t n) : words(newl2(static_cast<Word>(n) + 1, EXPSEQ)) {
    for (Word i = 1; i < lengthOf(words); ++i) words[i] = cons0;
  }
  DAG& operator[](std::int32_t exponent) const { return words[exponent + 1]; }
  std::int32_t count() const { return static_cast<std::int32_t>(lengthOf(words)) - 1; }
};

// How many coefficients from x^from on are known of a function of `s`, `n` being asked for.
std::int32_t knownTerms(DAG s, std::int32_t from, std::int32_t n) {
  if (hasOrderTerm(s)) n = std::min(n, lastSeriesPair(s).exponent - from);
  if (n > largestSeriesExponent) KernelException("object too large");
  return std::max(n, 0);
}

// The pairs of `s` behind the exponent `from`: recurrences step over zeros.
struct Steps {
  const SeriesPair* first;
  const SeriesPair* last;
  std::int32_t from;

  Steps(DAG s, std::int32_t lowest, std::int32_t count) : from(lowest) {
    first = seriesPairs(s);
    last = first + seriesPairCount(s);
    while (first != last && first->exponent <= lowest) ++first;
    while (last != first && (last[-1].exponent - lowest >= count || last[-1].coefficient == order1)) --last;
  }
  // Calls `work(k, c)` for the coefficients c of x^(from + k), 0 < k <= m.
  template <class Work>
  void upTo(std::int32_t m, Work work) const {
    for (const SeriesPair* p = first; p != last && p->exponent - from <= m; ++p)
      work(p->exponent - from, p->coefficient);
  }
};

// The series of the row, times x^shift, with an order term behind it.
DAG seriesOfRow(DAG variable, const Coefficients& row, std::int32_t shift, bool truncated) {
  SeriesBuilder result(variable, static_cast<Word>(row.count()) + 1);
  for (std::int32_t i = 0; i < row.count(); ++i)
    if (row[i] != cons0) result.add(row[i], boundedExponent(std::int64_t{shift} + i));
  if (truncated) {
    const std::int64_t end = std::int64_t{shift} + row.count();
    result.add(order1, static_cast<std::int32_t>(std::min<std::int64_t>(end, largestSeriesExponent)));
  }
  return simpl(result.finish());
}

// A sum of products, of rational numbers and of others.
struct Accumulator {
  RationalSum numbers;
  DAG terms;  // SUM of what is no number, or 0
  Word used = 1;

  void add(DAG factor, DAG a, DAG b) {
    if (a == cons0 || b == cons0 || factor == cons0) return;
    if (isRationalNumber(a) && isRationalNumber(b) && isRationalNumber(factor)) {
      numbers.add(factor, a, b);
      return;
    }
    passWork(objectSteps);
    if (!terms) terms = newl2(9, SUM);
    if (used == lengthOf(terms)) terms = enlarge(terms, used - 1);
    terms[used] = simpl(NewPROD(a, b));
    terms[used + 1] = factor;
    used += 2;
  }
  DAG total(DAG scale) {
    DAG sum = numbers.total();
    if (terms) {
      shorten(terms, lengthOf(terms), used);
      sum = simpl(new5(SUM, sum, cons1, simpl(terms), cons1));
      // Polynomials are multiplied out: nested as they come, they would grow without end. Single terms stay products.
      if (used > 3 && typol(PolynomialForm::polynomial, sum, DAG(), rationalTags)) sum = expand(sum);
    }
    return simpl(NewPROD(scale, sum));
  }
};

DAG inverseOf(std::int32_t n) { return n == 1 ? cons1 : simpl(new3(RATIONAL, cons1, immediate(n))); }

}  // namespace

// object(x, [c0, e0, c1, e1, ...]): c0*x^e0 + c1*x^e1 + ..., sorted; O(1) as a coefficient makes an order term.
DAG native::seriesObject(const BuiltinCall& call) {
  if (argumentCount(call) != 2 || !isTag(call.arguments[2], LIST)) wrongParameters(call);
  DAG members = asSequence(call.arguments[2][1]);
  const Word pairs = memberCount(members) / 2;
  if (memberCount(members) % 2 != 0) wrongParameters(call);
  DAG result = newSeries(call.arguments[1], pairs);
  for (Word i = 0; i < pairs; ++i) {
    DAG exponent = members[2 + 2 * i];
    if (!isImmediate(exponent)) wrongParameters(call);
    seriesPairs(result)[i] = {members[1 + 2 * i], boundedExponent(immediateValue(exponent))};
  }
  return sortpol(result, noTruncation);
}

// derivative(s): each c*x^e becomes e*c*x^(e - 1).
DAG native::seriesDerivative(const BuiltinCall& call) {
  DAG s = seriesArgument(call, 1);
  SeriesBuilder result(variableOf(s), seriesPairCount(s));
  for (Word i = 0; i < seriesPairCount(s); ++i) {
    const SeriesPair pair = seriesPairs(s)[i];
    if (pair.exponent != 0 || pair.coefficient == order1)
      result.add(productOfCoefficients(pair.coefficient, immediate(pair.exponent)), pair.exponent - 1);
  }
  return simpl(result.finish());
}

// integral(s, c): the series with the derivative s and the constant term c, to `Order` terms. Terms of 1/x have
// no place in it.
DAG native::seriesIntegral(const BuiltinCall& call) {
  DAG s = seriesArgument(call, 1);
  if (argumentCount(call) != 2) wrongParameters(call);
  SeriesBuilder result(variableOf(s), seriesPairCount(s) + 1);
  result.add(call.arguments[2], 0);
  for (Word i = 0; i < seriesPairCount(s); ++i) {
    const SeriesPair pair = seriesPairs(s)[i];
    if (pair.exponent == -1 && pair.coefficient != order1) wrongParameters(call);
    DAG inverse = pair.exponent == -1 ? cons1 : simpl(new3(PROD, immediate(pair.exponent + 1), consm1));
    result.add(productOfCoefficients(pair.coefficient, inverse), pair.exponent + 1);
  }
  return sortpol(result.finish(), degreeOfOrder());
}

// series/exp(s, n): exp(s) to n terms, for a series without constant term. e' = s' e.
DAG native::seriesExp(const BuiltinCall& call) {
  DAG s = seriesArgument(call, 1);
  const Coefficients e(knownTerms(s, 0, countArgument(call, 2)));
  const Steps steps(s, 0, e.count());
  if (e.count() > 0) e[0] = cons1;
  for (std::int32_t m = 1; m < e.count(); ++m) {
    passWork(1);
    Accumulator sum;
    steps.upTo(m, [&](std::int32_t k, DAG c) { sum.add(immediate(k), c, e[m - k]); });
    e[m] = sum.total(inverseOf(m));
  }
  return seriesOfRow(variableOf(s), e, 0, true);
}

// sincos(s, n, t): sin(s) and cos(s) to n terms for t = -1, sinh(s) and cosh(s) for t = 1, of a series without
// constant term. sin' = s' cos, cos' = t s' sin.
DAG native::seriesSincos(const BuiltinCall& call) {
  DAG s = seriesArgument(call, 1);
  if (argumentCount(call) != 3 || (call.arguments[3] != cons1 && call.arguments[3] != consm1)) wrongParameters(call);
  const std::int32_t sign = immediateValue(call.arguments[3]);
  const std::int32_t n = knownTerms(s, 0, countArgument(call, 2));
  const Coefficients sine(n), cosine(n);
  const Steps steps(s, 0, n);
  if (n > 0) cosine[0] = cons1;
  for (std::int32_t m = 1; m < n; ++m) {
    passWork(1);
    Accumulator forSine, forCosine;
    steps.upTo(m, [&](std::int32_t k, DAG c) {
      forSine.add(immediate(k), c, cosine[m - k]);
      forCosine.add(immediate(sign * k), c, sine[m - k]);
    });
    sine[m] = forSine.total(inverseOf(m));
    cosine[m] = forCosine.total(inverseOf(m));
  }
  return simpl(new3(EXPSEQ, seriesOfRow(variableOf(s), sine, 0, true), seriesOfRow(variableOf(s), cosine, 0, true)));
}

// series/power(s, a, h, e, n): s^a to n terms, h*x^e being its first; s begins with a pair that is no order term.
// h' s = a s' h. Powers of a single pair, and those of exact series to natural numbers, end, when n lets them.
DAG native::seriesPower(const BuiltinCall& call) {
  DAG s = seriesArgument(call, 1);
  if (argumentCount(call) != 5 || !isImmediate(call.arguments[4]) || seriesPairCount(s) == 0) wrongParameters(call);
  DAG a = call.arguments[2];
  std::int32_t n = countArgument(call, 5);
  const std::int32_t v = seriesPairs(s)[0].exponent;
  bool truncated = true;
  if (!hasOrderTerm(s) && seriesPairCount(s) == 1 && n > 0) {
    n = 1;
    truncated = false;
  } else if (!hasOrderTerm(s) && isImmediate(a) && immediateValue(a) >= 0) {
    const std::int64_t width = std::int64_t{immediateValue(a)} * (lastSeriesPair(s).exponent - v) + 1;
    if (width <= n) {
      n = static_cast<std::int32_t>(width);
      truncated = false;
    }
  }
  const Coefficients h(knownTerms(s, v, n));
  const Steps steps(s, v, h.count());
  if (h.count() > 0) h[0] = call.arguments[3];
  DAG inverse = simpl(new3(PROD, seriesPairs(s)[0].coefficient, consm1));
  for (std::int32_t m = 1; m < h.count(); ++m) {
    passWork(1);
    Accumulator sum;
    steps.upTo(m, [&](std::int32_t k, DAG c) {
      if (h[m - k] == cons0) return;
      DAG weight = simpl(new5(SUM, a, immediate(k), immediate(k - m), cons1));
      if (isRationalNumber(weight)) sum.add(weight, c, h[m - k]);
      else sum.add(cons1, simpl(NewPROD(weight, c)), h[m - k]);
    });
    h[m] = sum.total(simpl(NewPROD(inverseOf(m), inverse)));
  }
  return seriesOfRow(variableOf(s), h, immediateValue(call.arguments[4]), truncated);
}

}  // namespace korel
