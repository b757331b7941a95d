#include "library/assumptions/known.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>

#include "library/assumptions/assumed_name.h"
#include "library/assumptions/ranges.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr std::uint16_t wholeFacts = isRealFact | isRationalFact | isIntegerFact;

/// How many more parts a question may look at.
using Budget = int;
constexpr Budget wholeBudget = 300;

Facts about(DAG x, Budget& budget);

Facts nothing() { return {0, allReals}; }
Facts realIn(Range range, unsigned flags = isRealFact) {
  if (range.low > 0 || range.high < 0 || (range.low == 0 && range.lowOpen) || (range.high == 0 && range.highOpen))
    flags |= isNonzeroFact;
  return {static_cast<std::uint16_t>(flags), range};
}

// ---- numbers and constants

bool isEvenInteger(DAG n) { return isImmediate(n) ? immediateValue(n) % 2 == 0 : digitsOf(n)[0] % 2 == 0; }

Facts aboutNumber(DAG x) {
  if (isTag(x, COMPLEX)) {
    if (isInfinite(x) || isUndefined(x)) return nothing();
    unsigned flags = isZero(x[lengthOf(x) - 1]) ? 0u : unsigned{isNonzeroFact};
    if (lengthOf(x) == 2) flags |= isImaginaryFact;
    return {static_cast<std::uint16_t>(flags), allReals};
  }
  if (isInfinite(x) || isUndefined(x)) return nothing();
  unsigned flags = isRealFact;
  if (isZero(x)) flags |= isImaginaryFact;
  if (isInteger(x)) flags |= wholeFacts | (isEvenInteger(x) ? isEvenFact : isOddFact);
  if (isTag(x, RATIONAL)) flags |= isRationalFact;
  return realIn(rangeAround(x), flags);
}

Facts aboutName(DAG x) {
  if (DAG fields = assumptionOf(x)) {
    Range range{hfloatValue(fields[assumedLowBound]), hfloatValue(fields[assumedHighBound]),
                fields[assumedLowOpen] == cons1, fields[assumedHighOpen] == cons1};
    return realIn(range, static_cast<unsigned>(immediateValue(fields[assumedFlags])));
  }
  if (x == ini("Pi")) return realIn({3.1415926535, 3.1415926536});
  if (x == ini("gamma")) return realIn({0.5772156649, 0.577215665});
  if (x == ini("Catalan")) return realIn({0.9159655941, 0.9159655942});
  return nothing();
}

// ---- sums, products, powers

Facts sumOf(const Facts& a, const Facts& b) {
  unsigned both = a.flags & b.flags;
  unsigned flags = both & (wholeFacts | isImaginaryFact);
  if (a.has(isEvenFact) || a.has(isOddFact))
    if (b.has(isEvenFact) || b.has(isOddFact)) flags |= a.has(isEvenFact) == b.has(isEvenFact) ? isEvenFact : isOddFact;
  if ((flags & isRealFact) == 0) return {static_cast<std::uint16_t>(flags), allReals};
  if ((flags & isOddFact) != 0) flags |= isNonzeroFact;
  return realIn(sum(a.range, b.range), flags);
}

Facts productOf(const Facts& a, const Facts& b) {
  unsigned both = a.flags & b.flags;
  unsigned flags = both & (wholeFacts | isNonzeroFact);
  const bool aReal = a.has(isRealFact), bReal = b.has(isRealFact);
  const bool aImaginary = a.has(isImaginaryFact), bImaginary = b.has(isImaginaryFact);
  if (aImaginary && bImaginary) flags |= isRealFact;
  if ((aReal && bImaginary) || (aImaginary && bReal)) flags |= isImaginaryFact;
  if ((flags & isIntegerFact) != 0) {
    if (a.has(isEvenFact) || b.has(isEvenFact)) flags |= isEvenFact;
    if ((both & isOddFact) != 0) flags |= isOddFact;
  }
  if (!aReal || !bReal) return {static_cast<std::uint16_t>(flags), allReals};
  return realIn(product(a.range, b.range), flags);
}

// base^n for an integer n that isn't 0 and whose parity is known.
Facts wholePower(const Facts& base, bool even, bool negative, bool isOne) {
  if (isOne) return base;
  unsigned flags = base.flags & (isRealFact | isRationalFact | isNonzeroFact);
  if (!negative) flags |= base.flags & (isIntegerFact | isEvenFact | isOddFact);
  else if (!base.has(isNonzeroFact)) flags &= ~unsigned{isNonzeroFact};
  if (base.has(isImaginaryFact)) flags |= even ? isRealFact : isImaginaryFact;
  if (!base.has(isRealFact)) return {static_cast<std::uint16_t>(flags), allReals};
  // Of the sizes only the bound 1 survives without arithmetic, and signs do.
  Range range = allReals;
  if (even || base.isNonnegative()) {
    range = {0, HUGE_VAL, base.has(isNonzeroFact) || negative, false};
    const bool large = base.range.low >= 1 || (even && base.range.high <= -1);
    const bool small = base.range.high <= 1 && base.range.low >= (even ? -1.0 : 0.0);
    if (large && !negative) range.low = 1, range.lowOpen = base.range.low > 1 || base.range.lowOpen;
    if (large && negative) range.high = 1;
    if (small && !negative) range.high = 1, range.highOpen = base.range.highOpen && (!even || base.range.lowOpen);
    if (small && negative) range.low = 1, range.lowOpen = false;
  } else if (base.isNonpositive()) {
    range = {-HUGE_VAL, 0, false, base.has(isNonzeroFact) || negative};
  }
  return realIn(range, flags);
}

Facts powerOf(DAG base, DAG exponent, Budget& budget) {
  const Facts b = about(base, budget);
  if (isInteger(exponent) && !isZero(exponent))
    return wholePower(b, isEvenInteger(exponent), consneg(exponent), exponent == cons1);
  if (b.flags == 0) return nothing();
  const Facts e = about(exponent, budget);
  const unsigned nonzero = b.flags & isNonzeroFact;
  if (e.has(isRealFact) && (b.isPositive() || (b.isNonnegative() && e.isPositive()))) {
    unsigned flags = isRealFact;
    if (e.has(isIntegerFact)) {
      if (b.has(isRationalFact)) flags |= isRationalFact;
      if (b.has(isIntegerFact) && e.isNonnegative()) flags |= wholeFacts;
    }
    return realIn({0, HUGE_VAL, b.isPositive(), false}, flags);
  }
  if (e.has(isIntegerFact) && b.has(isRealFact) && (nonzero != 0 || e.isPositive())) {
    unsigned flags = isRealFact | nonzero | (b.flags & isRationalFact);
    if (e.isNonnegative()) flags |= b.flags & isIntegerFact;
    if (e.has(isEvenFact)) return realIn({0, HUGE_VAL, nonzero != 0, false}, flags);
    return realIn(allReals, flags);
  }
  return {static_cast<std::uint16_t>(nonzero), allReals};
}

// ---- functions

constexpr Range positiveReals{0, HUGE_VAL, true, false};

Facts ifReal(const Facts& a, Range range, unsigned flags = isRealFact) {
  return a.has(isRealFact) ? realIn(range, flags) : nothing();
}

Facts exponentialOf(const Facts& a) {
  if (!a.has(isRealFact)) return {isNonzeroFact, allReals};
  Range range = positiveReals;
  if (a.range.low >= 0) range = {1, HUGE_VAL, a.range.lowOpen || a.range.low > 0, false};
  if (a.range.high <= 0) range = {0, 1, true, a.range.highOpen || a.range.high < 0};
  return realIn(range);
}
Facts logarithmOf(const Facts& a) {
  if (!a.isPositive()) return nothing();
  Range range = allReals;
  if (a.range.low >= 1) range = {0, HUGE_VAL, a.range.low > 1 || a.range.lowOpen, false};
  if (a.range.high <= 1) range = {-HUGE_VAL, 0, false, a.range.high < 1 || a.range.highOpen};
  return realIn(range);
}
Facts magnitudeOf(const Facts& a) {
  unsigned flags = isRealFact | (a.flags & (isNonzeroFact | isEvenFact | isOddFact | isIntegerFact | isRationalFact));
  if (!a.has(isRealFact)) return realIn({0, HUGE_VAL, a.has(isNonzeroFact), false}, flags);
  Range range = magnitude(a.range);
  if (range.low == 0 && a.has(isNonzeroFact)) range.lowOpen = true;
  return realIn(range, flags);
}
Facts signOf(const Facts& a) {
  if (a.isPositive()) return realIn({1, 1}, wholeFacts);
  if (a.isNegative()) return realIn({-1, -1}, wholeFacts);
  return ifReal(a, {a.isNonnegative() ? 0.0 : -1.0, a.isNonpositive() ? 0.0 : 1.0}, wholeFacts);
}
Facts wholePartOf(const Facts& a) {
  if (a.has(isIntegerFact)) return a;
  return ifReal(a, {std::floor(a.range.low), std::ceil(a.range.high)}, wholeFacts);
}
Facts fractionOf(const Facts& a) {
  return ifReal(
      a, {a.isNonnegative() ? 0.0 : -1.0, a.isNonpositive() ? 0.0 : 1.0, !a.isNonnegative(), !a.isNonpositive()});
}
Facts oddFunctionOf(const Facts& a) {  // real, with the sign of its argument
  if (!a.has(isRealFact)) return nothing();
  Range range = allReals;
  if (a.isNonnegative()) range = {0, HUGE_VAL, a.isPositive(), false};
  if (a.isNonpositive()) range = {-HUGE_VAL, 0, false, a.isNegative()};
  return realIn(range, isRealFact | (a.flags & isNonzeroFact));
}
Facts factorialOf(const Facts& a) {
  if (a.has(isIntegerFact) && a.isNonnegative()) return realIn({1, HUGE_VAL}, wholeFacts);
  return a.isNonnegative() ? realIn(positiveReals) : nothing();
}
Facts rootOf(const Facts& a) {
  if (a.isNonnegative()) return realIn({0, HUGE_VAL, a.isPositive(), false});
  if (a.isNonpositive()) return {static_cast<std::uint16_t>(isImaginaryFact | (a.flags & isNonzeroFact)), allReals};
  return {static_cast<std::uint16_t>(a.flags & isNonzeroFact), allReals};
}

struct FunctionRow {
  const char* name;
  Facts (*facts)(const Facts& argument);
};
constexpr FunctionRow functionRows[] = {
    {"abs", magnitudeOf},
    {"arctan", oddFunctionOf},
    {"arcsinh", oddFunctionOf},
    {"argument",
     [](const Facts&) {
       return realIn({-3.15, 3.15});
     }},
    {"ceil", wholePartOf},
    {"conjugate", [](const Facts& a) { return a; }},
    {"cos",
     [](const Facts& a) {
       return ifReal(a, {-1, 1});
     }},
    {"cosh",
     [](const Facts& a) {
       return ifReal(a, {1, HUGE_VAL});
     }},
    {"erf", oddFunctionOf},
    {"erfc",
     [](const Facts& a) {
       return ifReal(a, {0, 2, true, true});
     }},
    {"exp", exponentialOf},
    {"factorial", factorialOf},
    {"floor", wholePartOf},
    {"frac", fractionOf},
    {"GAMMA", [](const Facts& a) { return a.isPositive() ? realIn(positiveReals) : nothing(); }},
    {"Im",
     [](const Facts& a) {
       return a.has(isRealFact) ? realIn({0, 0}, wholeFacts | isEvenFact) : realIn(allReals);
     }},
    {"ln", logarithmOf},
    {"Re", [](const Facts& a) { return a.has(isRealFact) ? a : realIn(allReals); }},
    {"round", wholePartOf},
    {"sech",
     [](const Facts& a) {
       return ifReal(a, {0, 1, true, false});
     }},
    {"signum", signOf},
    {"sin",
     [](const Facts& a) {
       return ifReal(a, {-1, 1});
     }},
    {"sinh", oddFunctionOf},
    {"sqrt", rootOf},
    {"tanh",
     [](const Facts& a) {
       return ifReal(a, {-1, 1, true, true});
     }},
    {"trunc", wholePartOf},
};

Facts aboutLargest(DAG arguments, bool largest, Budget& budget) {
  Facts all = about(arguments[1], budget);
  for (Word i = 2; i < lengthOf(arguments) && all.has(isRealFact); ++i) {
    const Facts next = about(arguments[i], budget);
    const unsigned flags = all.flags & next.flags & wholeFacts;
    all = realIn(largest ? largerOf(all.range, next.range) : smallerOf(all.range, next.range), flags);
  }
  return all.has(isRealFact) ? all : nothing();
}

Facts aboutCall(DAG x, Budget& budget) {
  DAG head = x[1], arguments = x[2];
  if (!isTag(head, NAME) || !isTag(arguments, EXPSEQ) || lengthOf(arguments) < 2) return nothing();
  if (head == ini("max") || head == ini("min")) return aboutLargest(arguments, head == ini("max"), budget);
  if (lengthOf(arguments) != 2) return nothing();
  for (const FunctionRow& row : functionRows)
    if (hasText(head, row.name)) return row.facts(about(arguments[1], budget));
  return nothing();
}

// ---- any expression

Facts aboutSum(DAG x, Budget& budget) {
  Facts all = {static_cast<std::uint16_t>(wholeFacts | isEvenFact | isImaginaryFact), {0, 0}};
  for (Word i = 1; i < lengthOf(x) && (all.flags & (isRealFact | isImaginaryFact)) != 0; i += 2)
    all = sumOf(all, productOf(about(x[i], budget), aboutNumber(x[i + 1])));
  return all;
}

Facts aboutProduct(DAG x, Budget& budget) {
  Facts all = {static_cast<std::uint16_t>(wholeFacts | isOddFact | isNonzeroFact), {1, 1}};
  for (Word i = 1; i < lengthOf(x) && all.flags != 0; i += 2) all = productOf(all, powerOf(x[i], x[i + 1], budget));
  return all;
}

Facts about(DAG x, Budget& budget) {
  if (!x || --budget < 0) return nothing();
  if (isNumber(x)) return aboutNumber(x);
  switch (tagOf(x)) {
    case NAME: return aboutName(x);
    case SUM: return aboutSum(x, budget);
    case PROD: return aboutProduct(x, budget);
    case POWER: return powerOf(x[1], x[2], budget);
    case FUNCTION: return aboutCall(x, budget);
    default: return nothing();
  }
}

bool holds(const Facts& f, Property property) {
  switch (property) {
    case Property::real: return f.has(isRealFact);
    case Property::rational: return f.has(isRationalFact);
    case Property::integer: return f.has(isIntegerFact);
    case Property::even: return f.has(isEvenFact);
    case Property::odd: return f.has(isOddFact);
    case Property::prime: return f.has(isPrimeFact);
    case Property::positive: return f.isPositive();
    case Property::negative: return f.isNegative();
    case Property::nonnegative: return f.isNonnegative();
    case Property::nonpositive: return f.isNonpositive();
    case Property::nonzero: return f.has(isNonzeroFact);
    case Property::imaginary: return f.has(isImaginaryFact);
  }
  return false;
}

bool fails(const Facts& f, Property property) {
  const bool imaginaryOnly = f.has(isImaginaryFact) && f.has(isNonzeroFact);  // and so not real
  const bool noWhole = f.has(isRealFact) && holdsNoInteger(f.range);
  switch (property) {
    case Property::real: return imaginaryOnly;
    case Property::rational: return imaginaryOnly;
    case Property::integer: return imaginaryOnly || noWhole;
    case Property::even: return imaginaryOnly || noWhole || f.has(isOddFact);
    case Property::odd: return imaginaryOnly || noWhole || f.has(isEvenFact);
    case Property::prime: return imaginaryOnly || noWhole || (f.has(isRealFact) && f.range.high < 2);
    case Property::positive: return imaginaryOnly || f.isNonpositive();
    case Property::negative: return imaginaryOnly || f.isNonnegative();
    case Property::nonnegative: return imaginaryOnly || f.isNegative();
    case Property::nonpositive: return imaginaryOnly || f.isPositive();
    case Property::nonzero: return f.has(isRealFact) && f.range.low == 0 && f.range.high == 0;
    case Property::imaginary: return f.has(isRealFact) && f.has(isNonzeroFact);
  }
  return false;
}

}  // namespace

Facts factsAbout(DAG x) {
  Budget budget = wholeBudget;
  return about(x, budget);
}

bool isKnown(DAG x, Property property) { return holds(factsAbout(x), property); }
bool isExcluded(DAG x, Property property) { return fails(factsAbout(x), property); }

}  // namespace korel
