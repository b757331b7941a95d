#include "algebra/series/series_arithmetic.h"

#include <algorithm>
#include <limits>

#include "algebra/polynomial_types.h"
#include "algebra/series/rational_sum.h"
#include "algebra/series/scaled_rows.h"
#include "algebra/series/series_object.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();

// What a series holds apart from its order term. `series` is looked at in place.
struct Terms {
  DAG series;
  Word count;
  std::int64_t orderAt;  // exponent of the order term, or `never`

  const SeriesPair& operator[](Word i) const { return seriesPairs(series)[i]; }
};
Terms termsOf(DAG s) {
  const Word count = seriesPairCount(s);
  const bool truncated = hasOrderTerm(s);
  return {s, truncated ? count - 1 : count, truncated ? lastSeriesPair(s).exponent : never};
}

bool areRational(const Terms& t) {
  for (Word i = 0; i < t.count; ++i)
    if (!isRationalNumber(t[i].coefficient)) return false;
  return true;
}

// ---- rational coefficients, by exponent

// A row of coefficients for the exponents from `first` on, 0 where there is none. It is an EXPSEQ, so that it
// keeps them alive.
struct Row {
  DAG words;
  std::int64_t first;

  Row(std::int64_t from, std::int64_t length) : words(newl2(static_cast<Word>(length + 1), EXPSEQ)), first(from) {
    for (Word i = 1, n = lengthOf(words); i < n; ++i) words[i] = cons0;
  }
  std::int64_t end() const { return first + lengthOf(words) - 1; }
  bool holds(std::int64_t exponent) const { return exponent >= first && exponent < end(); }
  DAG& operator[](std::int64_t exponent) const { return words[1 + exponent - first]; }
  void giveBack() const { release(words, lengthOf(words)); }
};

// A row is worth its room when it has no more than a few places for each pair of terms.
bool isDense(std::int64_t places, std::int64_t pairs) { return places < 64 + 4 * pairs && places < maxLength / 2; }

// Products of rationals are formed over one denominator: their sums then need no greatest common divisors.
DAG commonDenominator(const Terms& t) {
  DAG all = cons1;
  for (Word i = 0; i < t.count; ++i) {
    DAG c = t[i].coefficient;
    if (isInteger(c) || c[2] == all) continue;
    DAG shared[2];
    gcdsimpl(all, c[2], shared);
    all = mulint(shared[0], c[2]);
  }
  return simpl(all);
}

DAG inverseInteger(DAG n) { return n == cons1 ? cons1 : simpl(new3(RATIONAL, cons1, n)); }

// The coefficients of `t` times `denominator`, as integers by exponent.
Row integerRow(const Terms& t, DAG denominator) {
  Row row(t[0].exponent, std::int64_t{t[t.count - 1].exponent} - t[0].exponent + 1);
  for (Word i = 0; i < t.count; ++i) row[t[i].exponent] = simpl(mul(t[i].coefficient, denominator));
  return row;
}

// Gives back an integer that was made on the way, unless it went over into `result`.
void giveBack(DAG integer, DAG result) {
  if (integer != result && isObject(integer) && !isSimplified(integer)) release(integer, lengthOf(integer));
}

// Coefficient of x^e in a product of integer rows.
DAG coefficientOfProduct(const Row& a, const Row& b, std::int64_t e) {
  DAG sum = cons0;
  const std::int64_t from = std::max(a.first, e - b.end() + 1), to = std::min(a.end(), e - b.first + 1);
  for (std::int64_t i = from; i < to; ++i) {
    DAG x = a[i], y = b[e - i];
    if (x == cons0 || y == cons0) continue;
    DAG product = mulint(x, y);
    if (!isImmediate(product)) passWork(lengthOf(product));
    DAG next = addint(sum, product);
    giveBack(product, next);
    giveBack(sum, next);
    sum = next;
  }
  return sum;
}

// Longer series have more primes below their coefficients than is worth while.
constexpr std::int64_t longestScaled = 4000;

// The coefficients of `t` for all exponents from its first on, below `end`.
FixedRow scaledRow(engine::Arena& arena, const PrimeBase& base, const Terms& t, std::int64_t end) {
  const std::int64_t first = t[0].exponent;
  FixedRow row(arena, base, static_cast<std::size_t>(t[t.count - 1].exponent - first + 1));
  for (Word i = 0; i < t.count && t[i].exponent < end; ++i) {
    while (static_cast<std::int64_t>(row.count()) < t[i].exponent - first) row.put(cons0);
    row.put(t[i].coefficient);
  }
  return row;
}

// Coefficients of a product in ascending order: up to degree `d` they go into the result, the first one beyond tells
// where the order term is.
struct ProductTerms {
  SeriesBuilder result;
  std::int32_t degree;
  std::int64_t orderAt;

  // False when no further one is wanted.
  bool take(DAG coefficient, std::int64_t e) {
    if (e > degree) orderAt = e;
    else result.add(coefficient, boundedExponent(e));
    return e <= degree;
  }
  DAG finish() {
    if (orderAt != never)
      result.add(order1, static_cast<std::int32_t>(std::min<std::int64_t>(orderAt, largestSeriesExponent)));
    return simpl(result.finish());
  }
};

// The product's coefficients for exponents from `first` to before `end`, where denominators have small primes only;
// false otherwise, or when no coefficient beyond the degree has been met that has to be.
bool scaledProduct(ProductTerms& terms, const Terms& a, const Terms& b, std::int64_t first, std::int64_t end) {
  constexpr std::int64_t beyond = 16;  // exponents above the degree that are looked at
  const std::int64_t stop = std::min(end, std::int64_t{terms.degree} + 1 + beyond);
  if (stop - first > longestScaled || stop <= first) return false;
  engine::Arena arena;
  const PrimeBase base(arena, static_cast<std::int32_t>(stop - first) + 10);
  FixedRow ra = scaledRow(arena, base, a, stop - b[0].exponent);
  if (!ra.finish()) return false;
  FixedRow rb = a.series == b.series ? ra : scaledRow(arena, base, b, stop - a[0].exponent);
  if (a.series != b.series && !rb.finish()) return false;
  const auto count = static_cast<std::size_t>(stop - first);
  ScaledNumber* product = lowProduct(arena, ra.numbers(), ra.count(), rb.numbers(), rb.count(), count);
  SmoothNumber ofA = base.one(), ofB = base.one(), below = base.one(), above = base.one(), left = base.one();
  std::size_t k = 0;
  for (; k < count && first + static_cast<std::int64_t>(k) <= terms.degree; ++k) {
    if (k < ra.count()) ra.joinDenominator(ofA, k);
    if (k < rb.count()) rb.joinDenominator(ofB, k);
    if (product[k].count == 0) continue;
    base.assign(below, ofA);
    base.multiply(below, ofB);
    base.assign(above, ra.denominator());
    base.multiply(above, rb.denominator());
    base.divide(above, below);
    terms.take(productCoefficient(base, product[k], below, above, left), first + static_cast<std::int64_t>(k));
  }
  for (; k < count; ++k)
    if (product[k].count != 0) return !terms.take(cons1, first + static_cast<std::int64_t>(k));
  return stop == end;
}

DAG rationalProduct(DAG variable, const Terms& a, const Terms& b, std::int64_t orderAt, std::int32_t d) {
  const std::int64_t first = std::int64_t{a[0].exponent} + b[0].exponent;
  const std::int64_t end = std::min(orderAt, std::int64_t{a[a.count - 1].exponent} + b[b.count - 1].exponent + 1);
  ProductTerms scaled{SeriesBuilder(variable, a.count + b.count + 1), d, orderAt};
  if (scaledProduct(scaled, a, b, first, end)) return scaled.finish();
  DAG da = commonDenominator(a), db = commonDenominator(b);
  const Row ra = integerRow(a, da), rb = integerRow(b, db);
  DAG scale = inverseInteger(simpl(mulint(da, db)));
  ProductTerms terms{SeriesBuilder(variable, a.count + b.count + 1), d, orderAt};
  for (std::int64_t e = first; e < end; ++e) {
    passWork(1);
    DAG sum = coefficientOfProduct(ra, rb, e);
    if (isZeroImmediate(sum)) continue;
    if (!terms.take(scale == cons1 ? simpl(sum) : simpl(mul(simpl(sum), scale)), e)) break;
  }
  ra.giveBack();
  rb.giveBack();
  return terms.finish();
}

// ---- products

std::int64_t orderOfProduct(const Terms& a, const Terms& b) {
  // Below its order term a series begins with its first pair, or with the order term itself.
  const std::int64_t startA = a.count != 0 ? a[0].exponent : a.orderAt;
  const std::int64_t startB = b.count != 0 ? b[0].exponent : b.orderAt;
  std::int64_t at = never;
  if (a.orderAt != never && startB != never) at = a.orderAt + startB;
  if (b.orderAt != never && startA != never) at = std::min(at, b.orderAt + startA);
  return at;
}

DAG generalProduct(DAG variable, const Terms& a, const Terms& b, std::int64_t orderAt, std::int32_t d) {
  SeriesBuilder result(variable, std::min<Word>(maxLength / 4, a.count * b.count + 1));
  for (Word i = 0; i < a.count; ++i)
    for (Word k = 0; k < b.count; ++k) {
      const std::int64_t e = std::int64_t{a[i].exponent} + b[k].exponent;
      if (e >= orderAt) break;
      passWork(objectSteps);
      result.add(productOfCoefficients(a[i].coefficient, b[k].coefficient), static_cast<std::int32_t>(e));
    }
  if (orderAt != never) result.add(order1, static_cast<std::int32_t>(orderAt));
  return sortpol(result.finish(), d);
}

}  // namespace

DAG mulpol(DAG a, DAG b, std::int32_t d) {
  const Terms ta = termsOf(a), tb = termsOf(b);
  const std::int64_t orderAt = orderOfProduct(ta, tb);
  if (ta.count == 0 || tb.count == 0) {
    if (orderAt == never || seriesPairCount(a) == 0 || seriesPairCount(b) == 0) return simpl(zeroSeries(variableOf(a)));
    return simpl(orderTerm(variableOf(a), orderAt));
  }
  const std::int64_t pairs = std::int64_t{ta.count} * tb.count;
  const std::int64_t widthA = std::int64_t{ta[ta.count - 1].exponent} - ta[0].exponent;
  const std::int64_t widthB = std::int64_t{tb[tb.count - 1].exponent} - tb[0].exponent;
  if (isDense(widthA + widthB, pairs) && areRational(ta) && areRational(tb))
    return rationalProduct(variableOf(a), ta, tb, orderAt, d);
  return generalProduct(variableOf(a), ta, tb, orderAt, d);
}

// ---- quotients

namespace {

// The user may have put other procedures into the environment variables; as they come, they leave numbers alone.
bool hasDefaultTests() {
  return environmentWord(envTestzero) == DefTestzero && environmentWord(envNormalizer) == builtrem[7];
}
bool isKnownToTests(DAG x) { return hasDefaultTests() && (isNumber(x) || monomial(x)); }

bool testsZero(DAG x) {
  if (isKnownToTests(x)) return isNumber(x) && isZero(x);
  return simpl(eval(newCall(ini("Testzero"), {x}))) == ini("true");
}
DAG normalized(DAG x) {
  if (isKnownToTests(x)) return x;
  DAG value = simpl(eval(newCall(ini("Normalizer"), {x})));
  updategen(value);
  return value;
}

// `s` without leading pairs that are 0. Error when nothing to divide by is left.
DAG withoutLeadingZeros(DAG s) {
  Word from = 0;
  for (const Word count = seriesPairCount(s); from < count; ++from) {
    DAG c = seriesPairs(s)[from].coefficient;
    if (c == order1) break;
    if (!testsZero(c)) return from == 0 ? s : simpl(copydel(s, 1, 2 * from));
  }
  KernelException("division by zero series");
}

// Where the remainder is cut off: everything from this exponent on belongs to its order term.
struct Cut {
  std::int64_t degree;  // exponents up to here are kept
  std::int64_t at;      // exponent of the order term, or `never`

  void see(std::int64_t exponent) {
    if (exponent > degree) at = std::min(at, exponent);
  }
};

// The same division over common denominators: one coefficient of the quotient after the other.
class ScaledQuotient {
 public:
  ScaledQuotient(engine::Arena& arena, const Terms& a, const Terms& b, std::int32_t places)
      : a_(a),
        b_(b),
        places_(places),
        base_(arena, places + 10),
        row_(arena, base_, a.count + b.count),
        quotients_(arena, base_, static_cast<std::size_t>(places)),
        sum_(arena),
        below_(base_.one()) {}
  // `inverse` is that of the divisor's first coefficient. False where a denominator has a large prime.
  bool prepare(DAG inverse) {
    for (Word i = 0; i < a_.count && a_[i].exponent - a_[0].exponent < places_; ++i, ++termsOfA_)
      row_.put(simpl(mul(a_[i].coefficient, inverse)));
    for (Word k = 1; k < b_.count && b_[k].exponent - b_[0].exponent < places_; ++k, ++termsOfB_)
      row_.put(simpl(mul(b_[k].coefficient, inverse)));
    return row_.finish();
  }
  DAG next() {
    if (ofA_ < termsOfA_ && a_[ofA_].exponent - a_[0].exponent == at_) sum_.add(row_[ofA_++], quotients_.one());
    for (std::size_t k = 0; k < termsOfB_; ++k) {
      const std::int32_t from = at_ - (b_[static_cast<Word>(k + 1)].exponent - b_[0].exponent);
      if (from < 0) break;
      sum_.subtract(row_[termsOfA_ + k], quotients_[from]);
    }
    ++at_;
    base_.assign(below_, row_.denominator());
    base_.multiply(below_, quotients_.denominator());
    return quotients_.append(sum_.take(), below_);
  }

 private:
  const Terms &a_, &b_;
  std::int32_t places_, at_ = 0;
  PrimeBase base_;
  FixedRow row_;  // the dividend, then the divisor without its first term
  GrowingRow quotients_;
  ProductSum sum_;
  SmoothNumber below_;
  std::size_t termsOfA_ = 0, termsOfB_ = 0;
  Word ofA_ = 0;
};

// Long division, each coefficient of the remainder being found when it comes to lead.
DAG rationalQuotient(DAG variable, const Terms& a, const Terms& b, std::int32_t d) {
  const std::int64_t v = b[0].exponent, start = a[0].exponent;
  Cut cut{std::int64_t{d} + v, a.orderAt};
  if (b.orderAt != never) cut.at = std::min(cut.at, start - v + b.orderAt);
  const std::int64_t end = std::min(cut.degree + 1, cut.at);
  // Quotient coefficients by the exponent of the remainder that they take away.
  const Row quotients(start, std::max<std::int64_t>(end - start, 0));
  DAG inverse = simpl(power(b[0].coefficient, -1));
  for (Word i = 0; i < a.count; ++i) cut.see(a[i].exponent);
  SeriesBuilder quotient(variable, 16);
  engine::Arena arena;
  const std::int64_t places = std::max<std::int64_t>(end - start, 0);
  const bool mayScale = places <= longestScaled;
  ScaledQuotient scaled(arena, a, b, mayScale ? static_cast<std::int32_t>(places) : 0);
  const bool isScaled = mayScale && scaled.prepare(inverse);
  Word ofA = 0;
  for (std::int64_t e = start; e < std::min(end, cut.at); ++e) {
    passWork(1);
    DAG q = isScaled ? scaled.next() : cons0;
    if (!isScaled) {
      RationalSum lead;
      if (ofA < a.count && a[ofA].exponent == e) lead.add(a[ofA++].coefficient, cons1);
      for (Word k = 1; k < b.count && e - (b[k].exponent - v) >= start; ++k) {
        DAG known = quotients[e - (b[k].exponent - v)];
        if (known != cons0) lead.add(consm1, known, b[k].coefficient);
      }
      q = simpl(mul(lead.total(), inverse));
    }
    if (isZeroImmediate(q)) continue;
    quotients[e] = q;
    quotient.add(q, boundedExponent(e - v));
    // The first exponent at which this one leaves something beyond the degree.
    const SeriesPair* beyond =
        std::upper_bound(&b[1], &b[0] + b.count, cut.degree - e + v,
                         [](std::int64_t most, const SeriesPair& p) { return most < p.exponent; });
    if (beyond != &b[0] + b.count) cut.see(e - v + beyond->exponent);
  }
  if (cut.at != never)
    quotient.add(order1, static_cast<std::int32_t>(std::min<std::int64_t>(cut.at - v, largestSeriesExponent)));
  quotients.giveBack();
  return simpl(quotient.finish());
}

std::int64_t wordsOf(DAG x) { return isImmediate(x) ? 1 : lengthOf(x); }

DAG generalQuotient(DAG variable, DAG a, DAG b, std::int32_t d) {
  const std::int32_t v = seriesPairs(b)[0].exponent;
  const std::int64_t degree = std::int64_t{d} + v;
  const auto kept = static_cast<std::int32_t>(std::min<std::int64_t>(degree, noTruncation));
  DAG inverse = simpl(new3(PROD, seriesPairs(b)[0].coefficient, consm1));
  SeriesBuilder quotient(variable, 16);
  DAG remainder = a;
  while (seriesPairCount(remainder) != 0) {
    const SeriesPair lead = seriesPairs(remainder)[0];
    passWork(objectSteps + 16 * wordsOf(lead.coefficient) * std::int64_t{seriesPairCount(b)});
    const std::int64_t e = std::int64_t{lead.exponent} - v;
    if (lead.coefficient == order1 || e > d) break;
    DAG q = productOfCoefficients(lead.coefficient, inverse);
    quotient.add(q, boundedExponent(e));
    DAG minus = simpl(NewPROD(consm1, normalized(q)));
    const Word more = seriesPairCount(b) - 1, left = seriesPairCount(remainder) - 1;
    DAG next = newSeries(variable, left + more);
    for (Word i = 0; i < left; ++i) seriesPairs(next)[i] = seriesPairs(remainder)[i + 1];
    for (Word i = 0; i < more; ++i) {
      const SeriesPair pair = seriesPairs(b)[i + 1];
      seriesPairs(next)[left + i] = {productOfCoefficients(minus, pair.coefficient),
                                     static_cast<std::int32_t>(e + pair.exponent)};
    }
    remainder = sortpol(next, kept);
  }
  if (seriesPairCount(remainder) != 0) {
    const std::int64_t e = std::int64_t{seriesPairs(remainder)[0].exponent} - v;
    quotient.add(order1, static_cast<std::int32_t>(std::min<std::int64_t>(e, largestSeriesExponent)));
  }
  return simpl(quotient.finish());
}

}  // namespace

DAG divpol(DAG a, DAG b, std::int32_t d) {
  b = withoutLeadingZeros(b);
  const Terms ta = termsOf(a), tb = termsOf(b);
  if (seriesPairCount(a) == 0) return simpl(zeroSeries(variableOf(a)));
  if (ta.count == 0) return simpl(orderTerm(variableOf(a), ta.orderAt - tb[0].exponent));
  const std::int64_t places = std::int64_t{d} + tb[0].exponent - ta[0].exponent;
  constexpr std::int64_t mostPlaces = 1 << 22;
  if (places < mostPlaces && hasDefaultTests() && areRational(ta) && areRational(tb))
    return rationalQuotient(variableOf(a), ta, tb, d);
  return generalQuotient(variableOf(a), a, b, d);
}

// ---- powers

DAG powerByLibrary(DAG power, DAG variable) {
  DAG result = evalsysf("series/power", simpl(new3(EXPSEQ, power, variable)));
  if (result != ini("FAIL") && !isTag(result, SERIES)) KernelException("series/power must return a series");
  updategen(result);
  return result;
}

namespace {

bool equals(DAG n, std::int32_t k) {
  if (isInteger(n)) return eq(n, k);
  return isFloatNumber(n) && isZero(add(n, immediate(-k)));
}

}  // namespace

DAG powpol(DAG a, DAG n, std::int32_t d, DAG base) {
  const Word count = seriesPairCount(a);
  if (count == 0 || (count == 1 && isNumber(seriesPairs(a)[0].coefficient) && isZero(seriesPairs(a)[0].coefficient))) {
    if (consneg(n) || isZero(n)) KernelException("division by zero series");
    return a;
  }
  if (equals(n, 2)) return mulpol(a, a, d);
  if (equals(n, 3)) return mulpol(mulpol(a, a, d), a, d);
  if (equals(n, 4)) {
    DAG square = mulpol(a, a, d);
    return mulpol(square, square, d);
  }
  return powerByLibrary(simpl(new3(PROD, base, n)), variableOf(a));
}

}  // namespace korel
