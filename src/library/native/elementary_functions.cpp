// The elementary functions of real numbers, at any number of digits.
//
// Arguments are reduced by Pi and ln 10. Exponential and sine are Taylor series of an argument halved many times, in
// which about sqrt(N) of the N terms cost a full product (D. M. Smith, "Efficient multiple-precision evaluation of
// elementary functions", 1989). Logarithm and arc tangent invert them: each step multiplies the number of correct
// places by five (R. P. Brent, "Fast multiple-precision evaluation of elementary functions", 1976).

#include <algorithm>
#include <cmath>
#include <utility>

#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/fixed_point.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_space.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

namespace {

constexpr std::int64_t guardPlaces = 10;
// Exponents of 10 that a float can hold have ten digits; arguments of that size end in an overflow.
constexpr std::int64_t largestExponent = 11;
// A larger argument would take this many digits of Pi.
constexpr std::int64_t longestReduction = 10000000;

std::int64_t wantedDigits() { return requireDigits() + guardPlaces; }

// ---- series

// How the argument of a series is halved, and what that takes at p places.
struct Halving {
  int halvings;
  std::int64_t places;  // with guard places for the doubling back
  std::int64_t terms;
};
// `perTerm` powers of the argument go into each term.
Halving halvingFor(std::int64_t p, int perTerm) {
  const double bits = static_cast<double>(p) * 3.32193;
  const int halvings = static_cast<int>(std::sqrt(bits / perTerm)) + 4;
  const std::int64_t places = (p + static_cast<std::int64_t>(halvings * 0.31) + 8 + 3) / 4 * 4;
  // Terms until x^k / k! falls below the last place, for x = 2^-halvings.
  double size = 0;
  std::int64_t k = 1;
  for (; size < static_cast<double>(places) * 3.32193 + 4; ++k) size += halvings + std::log2(static_cast<double>(k));
  return {halvings, places, k / perTerm + 2};
}

// Powers 0 to `count` of y at p places, in an EXPSEQ counted from 1.
DAG powersOf(DAG y, Word count, std::int64_t p) {
  DAG powers = newl2(count + 2, EXPSEQ);
  powers[1] = powerOfTen(p);
  for (Word i = 1; i <= count; ++i) powers[i + 1] = i == 1 ? y : fixedProduct(powers[i], y, p);
  return powers;
}

// sum of y^k / (d(1)...d(k)) for k < terms. Within a block the terms lie one division apart, and the blocks
// one product.
DAG taylorSum(DAG y, std::int64_t terms, std::int64_t (*divisor)(std::int64_t k), std::int64_t p) {
  const auto block = static_cast<Word>(std::sqrt(static_cast<double>(terms))) + 1;
  DAG powers = powersOf(y, block, p);
  DAG value = cons0;
  for (std::int64_t base = (terms / block) * block; base >= 0; base -= block) {
    DAG lifted = isZero(value) ? cons0 : fixedProduct(value, powers[block + 1], p);
    discard(value);
    value = lifted;
    for (Word j = block; j-- > 0;) {
      DAG divided = dividedBy(value, NewInteger(divisor(base + j + 1)));
      DAG next = isZero(divided) ? CopyAlg(powers[j + 1]) : addint(divided, powers[j + 1]);
      discard(value, divided, next);
      discard(divided, next);
      value = next;
      passWork(p / 4 + 10);
    }
  }
  return value;
}

DAG doubled(DAG x) { return addint(x, x); }

// e^x for |x| below 2, at p places.
DAG fixedExp(DAG x, std::int64_t p) {
  const Halving h = halvingFor(p, 1);
  const std::int64_t q = h.places;
  DAG y = dividedBy(shift10p(x, q - p), powint(immediate(2), h.halvings));
  DAG value = taylorSum(
      y, h.terms, [](std::int64_t k) { return k; }, q);
  for (int i = 0; i < h.halvings; ++i) {
    DAG square = fixedProduct(value, value, q);
    discard(value);
    value = square;
    passWork(p);
  }
  return shift10p(value, p - q);
}

struct SineCosine {
  DAG sine, cosine;
};
// Sine and cosine of x, |x| below 2, at p places.
SineCosine fixedSineCosine(DAG x, std::int64_t p) {
  const Halving h = halvingFor(p, 2);
  const std::int64_t q = h.places;
  DAG y = dividedBy(shift10p(x, q - p), powint(immediate(2), h.halvings));
  DAG series = taylorSum(
      complint(fixedProduct(y, y, q)), h.terms, [](std::int64_t k) { return 2 * k * (2 * k + 1); }, q);
  DAG one = powerOfTen(q);
  DAG sine = fixedProduct(y, series, q);
  DAG cosine = isqrt(difference(powerOfTen(2 * q), mulint(sine, sine)));
  for (int i = 0; i < h.halvings; ++i) {
    DAG nextCosine = difference(one, doubled(fixedProduct(sine, sine, q)));
    sine = doubled(fixedProduct(sine, cosine, q));
    cosine = nextCosine;
    passWork(p);
  }
  return {shift10p(sine, p - q), shift10p(cosine, p - q)};
}

// From this many places on a double starts the iteration.
constexpr std::int64_t doublePlaces = 13;

// ln x for x in 0.3 .. 3.2, at p places: y + ln(x / e^y), of which two terms of 2 artanh((x - e^y) / (x + e^y)).
DAG fixedLn(DAG x, std::int64_t p) {
  if (p <= doublePlaces) return fixedDouble(std::log(leadingDouble(x, p)), p);
  const std::int64_t q = std::max(p / 5 + 4, doublePlaces);
  DAG y = shift10p(fixedLn(shift10p(x, q - p), q), p - q);
  DAG e = fixedExp(y, p);
  DAG t = fixedQuotient(difference(x, e), addint(x, e), p);
  DAG cube = fixedProduct(fixedProduct(t, t, p), t, p);
  return addint(y, doubled(addint(t, dividedBy(cube, immediate(3)))));
}

// arctan x for |x| <= 1, at p places: y + arctan((x - tan y) / (1 + x tan y)).
DAG fixedArctan(DAG x, std::int64_t p) {
  if (p <= doublePlaces)
    return fixedDouble(std::atan(std::copysign(leadingDouble(absalg(x), p), consneg(x) ? -1.0 : 1.0)), p);
  const std::int64_t q = std::max(p / 5 + 4, doublePlaces);
  DAG y = shift10p(fixedArctan(shift10p(x, q - p), q), p - q);
  const SineCosine at = fixedSineCosine(y, p);
  DAG t = fixedQuotient(difference(fixedProduct(x, at.cosine, p), at.sine),
                        addint(at.cosine, fixedProduct(x, at.sine, p)), p);
  DAG cube = fixedProduct(fixedProduct(t, t, p), t, p);
  return addint(y, difference(t, dividedBy(cube, immediate(3))));
}

// ---- functions of numbers as they come, to `digits` significant digits

// Nearest integer to a / b, b > 0.
DAG nearestMultiple(DAG a, DAG b) {
  DAG half = dividedBy(b, immediate(2));
  return dividedBy(consneg(a) ? difference(a, half) : addint(a, half), b);
}

// 1 moved by less than the last digit wanted, for functions that only just differ from 1.
Exact nearOne(int direction, std::int64_t digits) {
  return decimal(addint(powerOfTen(digits + 3), immediate(direction)), -digits - 3);
}

Exact expOf(const Exact& x, std::int64_t digits) {
  if (isZero(x)) return decimal(cons1, 0);
  const std::int64_t size = magnitude(x);
  const int direction = isNegative(x) ? -1 : 1;
  if (size > largestExponent + 2) return decimal(cons1, direction * std::int64_t{1000000000000});
  if (size < -digits - 2) return nearOne(direction, digits);
  const std::int64_t p = digits + std::max<std::int64_t>(size, 0) + 4;
  DAG all = fixed(x, p), unit = fixedLn10(p), k = nearestMultiple(all, unit);
  DAG rest = difference(all, mulint(k, unit));
  return decimal(fixedExp(rest, p), LongLongValue(addint(k, NewInteger(-p))));
}

// The power of ten nearest to x > 0 by the logarithm.
std::int64_t nearestPowerOfTen(const Exact& x) {
  const std::int64_t size = magnitude(x);
  const double lead = IntegerToDouble(fixed(x, 17 - size));
  return size - 17 + std::llround(std::log10(lead));
}

Exact lnOf(Exact x, std::int64_t digits) {
  const std::int64_t k = nearestPowerOfTen(x);
  std::int64_t p = digits + ilength(NewInteger(k)) + 4;
  if (k == 0) {
    // Beside 1 the leading places of the result are zeros.
    const Exact apart = plus(x, -1);
    if (isZero(apart)) return decimal(cons0, 0);
    const std::int64_t size = magnitude(apart);
    if (size < -digits - 1) return apart;
    p += std::max<std::int64_t>(-size, 0) + 2;
  }
  x.exponent -= k;
  DAG value = fixedLn(fixed(x, p), p);
  if (k != 0) value = addint(value, mulint(NewInteger(k), fixedLn10(p)));
  return decimal(value, -p);
}

struct Reduced {
  SineCosine at;  // of x less a multiple of Pi/2
  int quarter;    // the multiple modulo 4
  std::int64_t p;
};

// Reduces x, not 0, by multiples of Pi/2: near one of them as many places more as cancel.
Reduced reduceByPi(const Exact& x, std::int64_t digits) {
  const std::int64_t size = magnitude(x), whole = std::max<std::int64_t>(size, 0);
  if (size > longestReduction) KernelException("object too large");
  std::int64_t p = digits + std::abs(size) + 4;
  for (;;) {
    DAG all = fixed(x, p), pi = fixedPi(p);
    DAG k = nearestMultiple(all, dividedBy(pi, immediate(2)));
    DAG rest = difference(all, dividedBy(mulint(k, pi), immediate(2)));
    const std::int64_t known = ilength(rest) - whole - 2;
    if (known >= digits) return {fixedSineCosine(rest, p), immediateValue(imod(k, immediate(4), false)), p};
    p += digits - known + 4;
  }
}

// Powers of x below the first leave the digits wanted alone.
bool isTiny(const Exact& x, std::int64_t digits) { return 2 * magnitude(x) < -digits - 4; }

Exact sinOf(const Exact& x, std::int64_t digits) {
  if (isZero(x) || isTiny(x, digits)) return x;
  const Reduced r = reduceByPi(x, digits);
  DAG value = r.quarter % 2 == 0 ? r.at.sine : r.at.cosine;
  return decimal(r.quarter >= 2 ? complint(value) : value, -r.p);
}
Exact cosOf(const Exact& x, std::int64_t digits) {
  if (isZero(x)) return decimal(cons1, 0);
  if (isTiny(x, digits)) return nearOne(-1, digits);
  const Reduced r = reduceByPi(x, digits);
  DAG value = r.quarter % 2 == 0 ? r.at.cosine : r.at.sine;
  return decimal(r.quarter == 1 || r.quarter == 2 ? complint(value) : value, -r.p);
}
Exact tanOf(const Exact& x, std::int64_t digits) {
  if (isZero(x) || isTiny(x, digits)) return x;
  const Reduced r = reduceByPi(x, digits);
  const bool turned = r.quarter % 2 != 0;
  const Exact value =
      product(decimal(turned ? r.at.cosine : r.at.sine, 0), reciprocal(decimal(turned ? r.at.sine : r.at.cosine, 0)));
  return turned ? negated(value) : value;
}

Exact halfPi(int direction, std::int64_t digits) {
  DAG value = dividedBy(fixedPi(digits + 4), immediate(2));
  return decimal(direction < 0 ? complint(value) : value, -digits - 4);
}

Exact arctanOf(const Exact& x, std::int64_t digits) {
  if (isZero(x) || isTiny(x, digits)) return x;
  const std::int64_t size = magnitude(x);
  const int direction = isNegative(x) ? -1 : 1;
  if (size > digits + 4) return halfPi(direction, digits);
  const Exact excess = plus(direction < 0 ? negated(x) : x, -1);
  if (isNegative(excess) || isZero(excess)) {
    const std::int64_t p = digits + std::max<std::int64_t>(-size, 0) + 4;
    return decimal(fixedArctan(fixed(x, p), p), -p);
  }
  const std::int64_t p = digits + 4;
  DAG complement = fixedArctan(fixed(reciprocal(x), p), p);
  return decimal(difference(fixed(halfPi(direction, digits), p), complement), -p);
}

// The angle of the point (x, y), not the origin.
Exact angleOf(const Exact& y, const Exact& x, std::int64_t digits) {
  const int side = isNegative(y) ? -1 : 1;
  if (isZero(x)) return halfPi(side, digits);
  const Exact angle = arctanOf(product(y, reciprocal(x)), digits);
  if (!isNegative(x)) return angle;
  const std::int64_t p = digits + 4;
  DAG pi = fixedPi(p);
  return decimal(addint(fixed(angle, p), side < 0 ? complint(pi) : pi), -p);
}

// sqrt(1 - x^2) for |x| <= 1.
Exact complementOf(const Exact& x, std::int64_t digits) {
  DAG n = x.exponent >= 0 ? shift10p(x.numerator, x.exponent) : x.numerator;
  DAG d = x.exponent >= 0 ? x.denominator : shift10p(x.denominator, -x.exponent);
  DAG square = mulint(addint(d, n), difference(d, n));
  if (isZero(square)) return decimal(cons0, 0);
  const std::int64_t places = std::max<std::int64_t>(digits + 4 - ilength(square) / 2, 0);
  return {isqrt(shift10p(square, 2 * places)), d, -places};
}

bool isBeyondOne(const Exact& x) {
  const Exact excess = plus(isNegative(x) ? negated(x) : x, -1);
  return !isNegative(excess) && !isZero(excess);
}

// ---- what the language is given

Exact numberArgument(const BuiltinCall& call, Word i) {
  if (argumentCount(call) < i || !isNumeric(call.arguments[i])) wrongParameters(call);
  DAG x = call.arguments[i];
  if (isTag(x, HFLOAT)) x = HFloatToFloat(x);
  if (isSoftFloat(x) && isSingular(x)) wrongParameters(call);
  return exactOf(x);
}

// An argument that lies within a bound; far inside it without a look at its places.
Exact argumentUpToOne(const BuiltinCall& call) {
  const Exact x = numberArgument(call, 1);
  if (!isZero(x) && magnitude(x) >= 0 && (magnitude(x) > 2 || isBeyondOne(x))) wrongParameters(call);
  return x;
}

DAG apply(const BuiltinCall& call, Exact (*f)(const Exact& x, std::int64_t digits)) {
  return rounded(f(numberArgument(call, 1), wantedDigits()));
}

}  // namespace

DAG native::evalfExp(const BuiltinCall& call) { return apply(call, expOf); }
DAG native::evalfSin(const BuiltinCall& call) { return apply(call, sinOf); }
DAG native::evalfCos(const BuiltinCall& call) { return apply(call, cosOf); }
DAG native::evalfTan(const BuiltinCall& call) { return apply(call, tanOf); }

// ln |x| for an x that isn't 0.
DAG native::evalfLn(const BuiltinCall& call) {
  const Exact x = numberArgument(call, 1);
  if (isZero(x)) wrongParameters(call);
  return rounded(lnOf(isNegative(x) ? negated(x) : x, wantedDigits()));
}

// arctan(x), or arctan(y, x) for a point that isn't the origin.
DAG native::evalfArctan(const BuiltinCall& call) {
  const Exact y = numberArgument(call, 1);
  if (argumentCount(call) == 1) return rounded(arctanOf(y, wantedDigits()));
  const Exact x = numberArgument(call, 2);
  if (isZero(x) && isZero(y)) wrongParameters(call);
  return rounded(angleOf(y, x, wantedDigits()));
}

DAG native::evalfArcsin(const BuiltinCall& call) {
  const Exact x = argumentUpToOne(call);
  const std::int64_t digits = wantedDigits();
  if (isZero(x) || isTiny(x, digits)) return rounded(x);
  return rounded(angleOf(x, complementOf(x, digits), digits));
}
DAG native::evalfArccos(const BuiltinCall& call) {
  const Exact x = argumentUpToOne(call);
  const std::int64_t digits = wantedDigits();
  if (isZero(x) || isTiny(x, 2 * digits)) return rounded(halfPi(1, digits));
  return rounded(angleOf(complementOf(x, digits), x, digits));
}

// |x|^y for an x that isn't 0: e^(y ln |x|), the logarithm with as many more digits as its product has before
// the point.
DAG native::evalfPower(const BuiltinCall& call) {
  const Exact x = numberArgument(call, 1), y = numberArgument(call, 2);
  if (isZero(x)) wrongParameters(call);
  const std::int64_t digits = wantedDigits();
  if (isZero(y)) return rounded(decimal(cons1, 0));
  const std::int64_t more = std::clamp<std::int64_t>(magnitude(y), 0, digits + 100) + largestExponent;
  return rounded(expOf(product(lnOf(isNegative(x) ? negated(x) : x, digits + more), y), digits));
}

}  // namespace korel
