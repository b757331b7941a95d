#include "library/native/exact_expressions.h"

#include <cmath>
#include <cstring>
#include <numbers>
#include <numeric>
#include <vector>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/assumptions/known.h"
#include "library/native/elementary_rows.h"
#include "library/native/known_turns.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/primes/factorization.h"
#include "numbers/primes/natural.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

// ---- building

DAG quotientOf(int n, int d) {
  const int g = std::gcd(n, d);
  if (d == g) return immediate(n / g);
  return simpl(new3(RATIONAL, immediate(n / g), immediate(d / g)));
}
DAG sumOf(DAG a, DAG b) {
  DAG sum = newl2(5, SUM);
  sum[1] = a;
  sum[2] = cons1;
  sum[3] = b;
  sum[4] = cons1;
  return simpl(sum);
}
DAG productOf(DAG a, DAG b) {
  if (a == cons1) return b;
  if (b == cons1) return a;
  return simpl(NewPROD(a, b));
}
DAG negativeOf(DAG x) { return productOf(consm1, x); }
DAG powerOf(DAG base, DAG exponent) {
  if (exponent == cons1) return base;
  return simpl(new3(POWER, base, exponent));
}
DAG rootOf(DAG n) { return n == cons0 || n == cons1 ? n : powerOf(n, quotientOf(1, 2)); }

DAG floorOfNumber(DAG x) {
  DAG whole = simpl(mtrunc(x));
  return whole != x && consneg(x) ? simpl(add(whole, consm1)) : whole;
}
int moduloOf(DAG integer, int m) {
  DAG rest = simpl(rem(integer, immediate(m), nullptr));
  return (immediateValue(rest) + m) % m;
}

// ---- roots of numbers

namespace {

constexpr unsigned trialBound = 10000;
// In limbs: beyond, numbers are not divided by small primes, and beyond, the rest isn't tested for powers.
constexpr std::size_t longestTrial = 1000, longestPowerTest = 64;
// A rest of so many limbs takes some milliseconds to be factored.
constexpr std::size_t shortRest = 2;

// What leaves an n-th root of a natural number, and what stays below it.
struct RootParts {
  Natural outside, inside;
  unsigned common;  // the root of `inside` is an (n / common)-th one
  bool complete;    // false: stopped by an interrupt
};

Natural powerOfNatural(const Natural& x, unsigned k) {
  Natural r{1};
  for (unsigned i = 0; i < k; ++i) r = product(r, x);
  return r;
}

// Small primes, and of the rest all factors while it is short, or whether it is a power.
bool factorsForRoot(Natural rest, std::vector<PrimePower>& factors) {
  if (rest.size() > longestTrial) {
    factors.push_back({std::move(rest), 1});
    return true;
  }
  for (unsigned p = 2; p < trialBound && !(rest.size() == 1 && rest[0] < Limb{p} * p); p += p == 2 ? 1 : 2) {
    unsigned k = 0;
    while (residue(rest, p) == 0) {
      divideByLimb(rest, p);
      ++k;
    }
    if (k > 0) factors.push_back({naturalOfLimb(p), k});
  }
  if (rest.size() == 1 && rest[0] == 1) return true;
  if (rest.size() <= shortRest) {
    std::vector<PrimePower> others;
    if (!factorNatural(rest, others)) return false;
    for (PrimePower& factor : others) factors.push_back(std::move(factor));
    return true;
  }
  // All its prime factors are above the bound: its exponent is below its length over 13 bits.
  for (auto k = rest.size() > longestPowerTest ? 1 : static_cast<unsigned>(bitLength(rest) / 13); k > 1; --k) {
    Natural root = truncatedRootOf(rest, k);
    if (compareNaturals(powerOfNatural(root, k), rest) == 0) {
      factors.push_back({std::move(root), k});
      return true;
    }
  }
  factors.push_back({std::move(rest), 1});
  return true;
}

RootParts takeRoot(const Natural& m, unsigned n) {
  std::vector<PrimePower> factors;
  RootParts parts{{1}, {1}, n, true};
  parts.complete = factorsForRoot(m, factors);
  for (const PrimePower& factor : factors)
    if (factor.exponent % n != 0) parts.common = std::gcd(parts.common, factor.exponent % n);
  for (const PrimePower& factor : factors) {
    parts.outside = product(parts.outside, powerOfNatural(factor.prime, factor.exponent / n));
    parts.inside = product(parts.inside, powerOfNatural(factor.prime, factor.exponent % n / parts.common));
  }
  return parts;
}

struct RootOfInteger {
  DAG outside, inside;
  unsigned degree;
};
// No destructor is passed by an error: the vectors are gone when objects are made.
RootOfInteger partsOfRoot(DAG m, unsigned n) {
  RootOfInteger result;
  bool complete;
  {
    const RootParts parts = takeRoot(naturalOf(m), n);
    complete = parts.complete;
    result = {integerOf(parts.outside), integerOf(parts.inside), n / parts.common};
  }
  if (!complete) endOperation();
  return result;
}

// The n-th root of an integer m > 0 over q > 0.
DAG rootOfPositive(DAG m, DAG q, unsigned n) {
  RootOfInteger parts{m, cons1, 1};
  DAG root = n == 2 ? isqrt(m) : cons0;
  if (n == 2 && compint(mulint(root, root), m) == 0) parts.outside = root;
  else parts = partsOfRoot(m, n);
  DAG outside = simpl(parts.outside), inside = simpl(parts.inside);
  DAG value = q == cons1 ? outside : simpl(mul(outside, simpl(new3(RATIONAL, cons1, q))));
  if (inside == cons1) return value;
  return productOf(value, powerOf(inside, quotientOf(1, static_cast<int>(parts.degree))));
}

DAG rootOfRational(DAG x, unsigned n) {
  if (x == cons0) return x;
  DAG sign = cons1;
  if (consneg(x)) {
    sign = n == 2 ? sqrtm1 : powerOf(consm1, quotientOf(1, static_cast<int>(n)));
    x = simpl(negate(x));
  }
  if (isInteger(x)) return productOf(sign, rootOfPositive(x, cons1, n));
  // (p/q)^(1/n) = (p q^(n-1))^(1/n) / q
  DAG p = x[1];
  for (unsigned i = 1; i < n; ++i) p = simpl(mul(p, x[2]));
  return productOf(sign, rootOfPositive(p, x[2], n));
}

// The square root of a + b I where |a + b I| is rational, or 0.
DAG rootOfComplex(DAG x) {
  DAG a = lengthOf(x) == 3 ? x[1] : cons0, b = imaginaryPartOf(x);
  if (!isRationalNumber(a) || !isRationalNumber(b)) return DAG();
  DAG size = rootOfRational(simpl(add(mul(a, a), mul(b, b))), 2);
  if (!isRationalNumber(size)) return DAG();
  DAG half = quotientOf(1, 2);
  DAG re = rootOfRational(simpl(mul(half, simpl(add(size, a)))), 2);
  DAG im = rootOfRational(simpl(mul(half, simpl(add(size, simpl(negate(a)))))), 2);
  return sumOf(re, productOf(consneg(b) ? negativeOf(sqrtm1) : sqrtm1, im));
}

// Factors known to be positive, and even powers of real ones, leave a product; 0 when none does.
DAG rootOfProduct(DAG x, unsigned n) {
  DAG outside = cons1, inside = cons1, degree = quotientOf(1, static_cast<int>(n));
  bool any = false;
  for (Word i = 1, length = lengthOf(x); i < length; i += 2) {
    DAG base = x[i], exponent = x[i + 1], factor = powerOf(base, exponent);
    if (isRationalNumber(exponent) && isKnown(base, Property::positive)) {
      outside = productOf(outside, powerOf(base, simpl(mul(exponent, degree))));
      any = true;
    } else if (isInteger(exponent) && moduloOf(exponent, 2) == 0 && isKnown(base, Property::real)) {
      DAG size = isKnown(base, Property::nonpositive)   ? negativeOf(base)
                 : isKnown(base, Property::nonnegative) ? base
                                                        : simpl(new3(FUNCTION, ini("abs"), simpl(new2(EXPSEQ, base))));
      outside = productOf(outside, powerOf(size, simpl(mul(exponent, degree))));
      any = true;
    } else {
      inside = productOf(inside, factor);
    }
  }
  return any ? productOf(outside, inside == cons1 ? cons1 : powerOf(inside, degree)) : DAG();
}

}  // namespace

DAG exactRoot(DAG x, unsigned n) {
  DAG degree = quotientOf(1, static_cast<int>(n));
  if (isRationalNumber(x)) return rootOfRational(x, n);
  if (isComplex(x) && n == 2)
    if (DAG value = rootOfComplex(x)) return value;
  if (isExactMinusInfinity(x) && n == 2) return productOf(sqrtm1, ini("infinity"));
  if (isTag(x, SUM) && lengthOf(x) == 3 && isRationalNumber(x[2])) {
    // The size of a coefficient leaves, its sign stays.
    DAG size = absalg(x[2]), rest = consneg(x[2]) ? negativeOf(x[1]) : x[1];
    DAG inner = isTag(rest, PROD) ? rootOfProduct(rest, n) : DAG();
    return productOf(rootOfRational(simpl(size), n), inner ? inner : powerOf(rest, degree));
  }
  if (isTag(x, PROD))
    if (DAG value = rootOfProduct(x, n)) return value;
  if (isTag(x, FUNCTION) && isName(x[1]) && hasText(x[1], "exp") && isSequence(x[2]) && memberCount(x[2]) == 1 &&
      isKnown(x[2][1], Property::real)) {
    DAG part = productOf(degree, x[2][1]), value = exactAt(Elementary::exp, part);
    return value ? value : callOf(Elementary::exp, part);
  }
  return powerOf(x, degree);
}

DAG perfectPower(DAG m, int& k) {
  unsigned common = 0;
  bool complete;
  DAG base = m;
  {
    std::vector<PrimePower> factors;
    complete = factorsForRoot(naturalOf(m), factors);
    for (const PrimePower& factor : factors) common = std::gcd(common, factor.exponent);
    if (common > 1) {
      Natural root{1};
      for (const PrimePower& factor : factors)
        root = product(root, powerOfNatural(factor.prime, factor.exponent / common));
      base = integerOf(root);
    }
  }
  if (!complete) endOperation();
  k = common > 1 ? static_cast<int>(common) : 1;
  return simpl(base);
}

// ---- exp and ln

namespace {

bool isFunctionNamed(DAG x, const char* name) {
  return isTag(x, FUNCTION) && isName(x[1]) && hasText(x[1], name) && lengthOf(x) == 3 && isSequence(x[2]) &&
         memberCount(x[2]) == 1;
}
DAG operandOf(DAG call) { return call[2][1]; }

// y^(x / ln(y)) for a product with one factor ln(y), or 0.
DAG powerOfLogarithm(DAG term, DAG coefficient) {
  if (isFunctionNamed(term, "ln")) return powerOf(operandOf(term), coefficient);
  if (!isTag(term, PROD)) return DAG();
  DAG logarithm;
  for (Word i = 1, n = lengthOf(term); i < n; i += 2) {
    if (!isFunctionNamed(term[i], "ln")) continue;
    if (logarithm || term[i + 1] != cons1) return DAG();
    logarithm = term[i];
  }
  if (!logarithm) return DAG();
  DAG rest = productOf(coefficient, productOf(term, powerOf(logarithm, consm1)));
  return powerOf(operandOf(logarithm), rest);
}

// q of q I Pi, or 0.
DAG turnsOverI(DAG x) {
  if (!isTag(x, PROD) || lengthOf(x) != 5 || x[2] != cons1 || x[4] != cons1) return DAG();
  if (!isComplex(x[1]) || lengthOf(x[1]) != 2 || x[3] != ini("Pi")) return DAG();
  DAG q = imaginaryPartOf(x[1]);
  return isRationalNumber(q) ? q : DAG();
}

// e^(q I Pi).
DAG rootOfUnity(DAG q) {
  DAG angle = productOf(q, ini("Pi"));
  DAG c = exactAt(Elementary::cos, angle), s = exactAt(Elementary::sin, angle);
  const bool known = c && s && !isTag(c, FUNCTION) && !isTag(s, FUNCTION);
  auto hasCall = [](DAG x) { return isTag(x, FUNCTION) || (isTag(x, SUM) && isTag(x[1], FUNCTION)); };
  if (known && !hasCall(c) && !hasCall(s)) return sumOf(c, productOf(sqrtm1, s));
  // Half turns to -1 < q <= 1.
  DAG whole = floorOfNumber(simpl(mul(simpl(add(q, cons1)), quotientOf(1, 2))));
  DAG reduced = simpl(add(q, simpl(mul(immediate(-2), whole))));
  if (reduced == consm1) reduced = cons1;
  if (reduced == q) return DAG();
  return callOf(Elementary::exp, productOf(productOf(reduced, sqrtm1), ini("Pi")));
}

// e^x for x with n I Pi/2 in it, n an integer of known parity, or 0.
DAG expOfKnownTurns(DAG x) {
  const QuarterTurns turns = quarterTurnsIn(x, TurnUnit::imaginary);
  int r;
  DAG sign;
  if (!turns.count || !halfTurnsOf(turns.count, r, sign)) return DAG();
  DAG factor = r == 0 ? sign : productOf(sign, sqrtm1);
  if (turns.rest == cons0) return factor;
  DAG value = exactAt(Elementary::exp, turns.rest);
  return productOf(factor, value ? value : callOf(Elementary::exp, turns.rest));
}

}  // namespace

DAG exactExp(DAG x) {
  if (isFunctionNamed(x, "ln")) return operandOf(x);
  if (DAG turns = turnsOverI(x)) return rootOfUnity(turns);
  if (DAG value = expOfKnownTurns(x)) return value;
  if (isTag(x, PROD)) return powerOfLogarithm(x, cons1);
  if (!isTag(x, SUM)) return DAG();
  if (lengthOf(x) == 3) return powerOfLogarithm(x[1], x[2]);
  // Logarithms and quarter turns leave a sum as factors.
  DAG factor = cons1, rest = x;
  for (Word i = 1, n = lengthOf(x); i < n; i += 2) {
    DAG turns = x[i + 1] == cons1 ? turnsOverI(x[i]) : DAG();
    DAG power;
    if (turns && isInteger(simpl(mul(turns, immediate(2))))) power = rootOfUnity(turns);
    else if (isRationalNumber(x[i + 1]) && isFunctionNamed(x[i], "ln")) power = powerOf(operandOf(x[i]), x[i + 1]);
    if (!power) continue;
    factor = productOf(factor, power);
    rest = sumOf(rest, negativeOf(productOf(x[i + 1], x[i])));
  }
  if (factor == cons1) return DAG();
  const bool isFloat = isFloatValue(rest) && isFiniteNumber(rest);
  DAG value = rest == cons0 ? cons1 : isFloat ? simpl(floatAt(Elementary::exp, rest)) : exactAt(Elementary::exp, rest);
  return productOf(factor, value ? value : callOf(Elementary::exp, rest));
}

namespace {

DAG lnValueOrCall(DAG x) {
  DAG value = exactAt(Elementary::ln, x);
  return value ? value : callOf(Elementary::ln, x);
}

DAG lnOfPositive(DAG x) {
  int k = 1, m = 1;
  if (isInteger(x)) {
    DAG base = perfectPower(x, k);
    return k == 1 ? DAG() : productOf(immediate(k), callOf(Elementary::ln, base));
  }
  if (x[1] == cons1) return negativeOf(lnValueOrCall(x[2]));
  DAG p = perfectPower(x[1], k), q = perfectPower(x[2], m);
  const int common = std::gcd(k, m);
  if (common == 1) return DAG();
  DAG root = simpl(new3(RATIONAL, powerOf(p, immediate(k / common)), powerOf(q, immediate(m / common))));
  return productOf(immediate(common), callOf(Elementary::ln, root));
}

DAG halfTurn(DAG coefficient) { return productOf(productOf(coefficient, sqrtm1), ini("Pi")); }

// ln(base^exponent) as exponent ln(base), where the value is the principal one.
DAG lnOfPower(DAG base, DAG exponent) {
  const bool narrow = isRationalNumber(exponent) && compcon(absalg(exponent), cons1) < 0;
  if (!narrow && !(isKnown(base, Property::positive) && isKnown(exponent, Property::real))) return DAG();
  return productOf(exponent, lnValueOrCall(base));
}

}  // namespace

bool periodsIn(double value, double period, std::int32_t& count) {
  constexpr double most = 1e6, sure = 1e-6;
  const double periods = value / period, whole = std::round(periods);
  count = static_cast<std::int32_t>(std::fabs(periods) < most ? whole : 0);
  return std::fabs(periods) < most && std::fabs(std::fabs(periods - whole) - 0.5) > sure;
}

DAG exactLn(DAG x) {
  if (isRationalNumber(x) && !consneg(x)) return lnOfPositive(x);
  if (isComplex(x)) {
    if (lengthOf(x) != 2 || !isRationalNumber(imaginaryPartOf(x))) return DAG();
    DAG size = simpl(absalg(imaginaryPartOf(x)));
    DAG turn = halfTurn(quotientOf(consneg(imaginaryPartOf(x)) ? -1 : 1, 2));
    return size == cons1 ? turn : sumOf(lnValueOrCall(size), turn);
  }
  if (isFunctionNamed(x, "exp")) {
    DAG y = operandOf(x);
    if (isKnown(y, Property::real)) return y;
    if (!isComplex(y) || !isRationalNumber(imaginaryPartOf(y))) return DAG();
    std::int32_t turns;
    if (!periodsIn(FloatValue(imaginaryPartOf(y)), 2 * std::numbers::pi, turns)) return DAG();
    return turns == 0 ? y : sumOf(y, halfTurn(immediate(-2 * turns)));
  }
  if (isTag(x, POWER)) return lnOfPower(x[1], x[2]);
  if (isTag(x, PROD) && lengthOf(x) == 3) return lnOfPower(x[1], x[2]);
  if (isKnown(x, Property::negative)) return sumOf(lnValueOrCall(negativeOf(x)), halfTurn(cons1));
  return DAG();
}

}  // namespace korel
