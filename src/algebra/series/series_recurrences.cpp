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
#include "algebra/series/scaled_rows.h"
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
  std::size_t count() const { return static_cast<std::size_t>(last - first); }
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

// Recurrences of rational numbers: the steps k * c, or c, as a row over one denominator.
class ScaledSteps {
 public:
  ScaledSteps(engine::Arena& arena, const PrimeBase& base, const Steps& steps)
      : base_(base), first_(steps.first), from_(steps.from), row_(arena, base, steps.count()) {}
  enum Weight { exponent, none };
  // The coefficients times `factor`; false where the recurrence has to go the other way.
  bool prepare(const Steps& steps, Weight weight, DAG factor = cons1) {
    for (const SeriesPair* p = steps.first; p != steps.last; ++p) {
      if (!isRationalNumber(p->coefficient)) return false;
      DAG c = simpl(mul(p->coefficient, factor));
      row_.put(weight == exponent ? simpl(mul(c, immediate(p->exponent - from_))) : c);
    }
    return row_.finish();
  }
  // Calls `work(k, numerator)` for 0 < k <= m.
  template <class Work>
  void upTo(std::int32_t m, Work work) const {
    for (std::size_t i = 0; i < row_.count() && first_[i].exponent - from_ <= m; ++i)
      work(first_[i].exponent - from_, row_[i]);
  }
  // Sets `below` to the denominators of the steps and of `row` times n, which is at most the base's bound.
  void setBelow(const GrowingRow& row, std::int32_t n, SmoothNumber& below) const {
    base_.assign(below, row_.denominator());
    base_.multiply(below, row.denominator());
    base_.multiply(below, n);
  }

 private:
  const PrimeBase& base_;
  const SeriesPair* first_;
  std::int32_t from_;
  FixedRow row_;
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

namespace {

// Longer rows have more primes below them than is worth while.
constexpr std::int32_t longestScaled = 4000;

// Each finds the coefficients from 1 on; false, with nothing done, where they aren't rational with small primes below.
bool scaledExp(const Steps& steps, const Coefficients& e) {
  if (e.count() < 2 || e.count() > longestScaled) return false;
  engine::Arena arena;
  const PrimeBase base(arena, e.count() + 10);
  ScaledSteps scaled(arena, base, steps);
  if (!scaled.prepare(steps, ScaledSteps::exponent)) return false;
  GrowingRow row(arena, base, static_cast<std::size_t>(e.count()));
  ProductSum sum(arena);
  SmoothNumber below = base.one();
  row.appendSmall(true);
  for (std::int32_t m = 1; m < e.count(); ++m) {
    passWork(1);
    scaled.upTo(m, [&](std::int32_t k, const ScaledNumber& c) { sum.add(c, row[m - k]); });
    scaled.setBelow(row, m, below);
    e[m] = row.append(sum.take(), below);
  }
  return true;
}

bool scaledSincos(const Steps& steps, std::int32_t sign, const Coefficients& sine, const Coefficients& cosine) {
  const std::int32_t n = sine.count();
  if (n < 2 || n > longestScaled) return false;
  engine::Arena arena;
  const PrimeBase base(arena, n + 10);
  ScaledSteps scaled(arena, base, steps);
  if (!scaled.prepare(steps, ScaledSteps::exponent)) return false;
  GrowingRow sines(arena, base, static_cast<std::size_t>(n)), cosines(arena, base, static_cast<std::size_t>(n));
  ProductSum forSine(arena), forCosine(arena);
  SmoothNumber belowSine = base.one(), belowCosine = base.one();
  sines.appendSmall(false);
  cosines.appendSmall(true);
  for (std::int32_t m = 1; m < n; ++m) {
    passWork(1);
    scaled.upTo(m, [&](std::int32_t k, const ScaledNumber& c) {
      forSine.add(c, cosines[m - k]);
      if (sign > 0) forCosine.add(c, sines[m - k]);
      else forCosine.subtract(c, sines[m - k]);
    });
    // Of both denominators as they stand, before either grows.
    scaled.setBelow(cosines, m, belowSine);
    scaled.setBelow(sines, m, belowCosine);
    sine[m] = sines.append(forSine.take(), belowSine);
    cosine[m] = cosines.append(forCosine.take(), belowCosine);
  }
  return true;
}

// h0 * (s/c0)^a, with `inverse` for 1/c0.
bool scaledPower(const Steps& steps, DAG a, DAG inverse, const Coefficients& h) {
  if (h.count() > longestScaled || h.count() < 2 || !isRationalNumber(a) || !isRationalNumber(inverse)) return false;
  DAG above = isInteger(a) ? a : a[1], q = isInteger(a) ? cons1 : a[2];
  if (!isRationalNumber(h[0]) || !isImmediate(above) || !isImmediate(q)) return false;
  engine::Arena arena;
  const PrimeBase base(arena, h.count() + 10);
  ScaledSteps scaled(arena, base, steps);
  SmoothNumber below = base.one(), ofRoot = base.one();
  if (!base.factor(q, ofRoot) || !scaled.prepare(steps, ScaledSteps::none, inverse)) return false;
  GrowingRow row(arena, base, static_cast<std::size_t>(h.count()));
  ProductSum sum(arena);
  row.appendSmall(true);
  const std::int64_t forStep = std::int64_t{immediateValue(above)} + immediateValue(q), forPlace = immediateValue(q);
  for (std::int32_t m = 1; m < h.count(); ++m) {
    passWork(1);
    scaled.upTo(m, [&](std::int32_t k, const ScaledNumber& c) { sum.add(forStep * k - forPlace * m, c, row[m - k]); });
    scaled.setBelow(row, m, below);
    base.multiply(below, ofRoot);
    DAG value = row.append(sum.take(), below);
    h[m] = h[0] == cons1 ? value : simpl(mul(h[0], value));
  }
  return true;
}

}  // namespace

// series/exp(s, n): exp(s) to n terms, for a series without constant term. e' = s' e.
DAG native::seriesExp(const BuiltinCall& call) {
  DAG s = seriesArgument(call, 1);
  const Coefficients e(knownTerms(s, 0, countArgument(call, 2)));
  const Steps steps(s, 0, e.count());
  if (e.count() > 0) e[0] = cons1;
  const bool isDone = scaledExp(steps, e);
  for (std::int32_t m = 1; m < e.count() && !isDone; ++m) {
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
  const bool isDone = scaledSincos(steps, sign, sine, cosine);
  for (std::int32_t m = 1; m < n && !isDone; ++m) {
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
  const bool isDone = scaledPower(steps, a, inverse, h);
  for (std::int32_t m = 1; m < h.count() && !isDone; ++m) {
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
