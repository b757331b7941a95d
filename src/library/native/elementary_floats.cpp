// Float values of the elementary functions: what an argument has to be read to, and how a result is put together.

#include <algorithm>
#include <cmath>
#include <iterator>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "library/native/elementary_rows.h"
#include "library/native/exact_expressions.h"
#include "library/native/native.h"
#include "library/native/number_constants.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

using reals::Complex;
using reals::Precision;
using reals::Real;
using reals::RealSession;
using reals::workingLimbs;

namespace {

// Pi/2 - arctan z
Complex arccotOf(const Complex& z) {
  // The angle of the point (z, 1): no digits cancel for large z.
  if (z.im.sign == 0) return {reals::angle(Real(1), z.re), Real()};
  const Complex inverse = reals::arctan(Complex(1) / z);
  return z.re.sign < 0 ? Complex(reals::pi()) + inverse : inverse;
}

constexpr ElementaryRow rows[] = {
    // name     value            of 1/z inverted  care             parity        at infinity  at -infinity
    {"exp", reals::exp, false, false, Care::whole, Parity::none, "infinity", "0"},
    {"ln", reals::ln, false, false, Care::besideOne, Parity::none, "infinity", nullptr},
    {"sqrt", reals::sqrt, false, false, Care::none, Parity::none, "infinity", nullptr},
    {"sin", reals::sin, false, false, Care::byPi, Parity::odd, "undefined", "undefined"},
    {"cos", reals::cos, false, false, Care::byPi, Parity::even, "undefined", "undefined"},
    {"tan", reals::tan, false, false, Care::byPi, Parity::odd, "undefined", "undefined"},
    {"cot", reals::tan, false, true, Care::byPi, Parity::odd, "undefined", "undefined"},
    {"sec", reals::cos, false, true, Care::byPi, Parity::even, "undefined", "undefined"},
    {"csc", reals::sin, false, true, Care::byPi, Parity::odd, "undefined", "undefined"},
    {"sinh", reals::sinh, false, false, Care::whole, Parity::odd, "infinity", "-infinity"},
    {"cosh", reals::cosh, false, false, Care::whole, Parity::even, "infinity", "infinity"},
    {"tanh", reals::tanh, false, false, Care::whole, Parity::odd, "1", "-1"},
    {"coth", reals::tanh, false, true, Care::whole, Parity::odd, "1", "-1"},
    {"sech", reals::cosh, false, true, Care::whole, Parity::even, "0", "0"},
    {"csch", reals::sinh, false, true, Care::whole, Parity::odd, "0", "0"},
    {"arcsin", reals::arcsin, false, false, Care::besideOne, Parity::odd, nullptr, nullptr},
    {"arccos", reals::arccos, false, false, Care::besideOne, Parity::none, nullptr, nullptr},
    {"arctan", reals::arctan, false, false, Care::none, Parity::odd, "Pi/2", "-Pi/2"},
    {"arccot", arccotOf, false, false, Care::none, Parity::none, "0", "Pi"},
    {"arcsec", reals::arccos, true, false, Care::besideOne, Parity::none, "Pi/2", "Pi/2"},
    {"arccsc", reals::arcsin, true, false, Care::besideOne, Parity::odd, "0", "0"},
    {"arcsinh", reals::arcsinh, false, false, Care::none, Parity::odd, "infinity", "-infinity"},
    {"arccosh", reals::arccosh, false, false, Care::besideOne, Parity::none, "infinity", nullptr},
    {"arctanh", reals::arctanh, false, false, Care::besideOne, Parity::odd, nullptr, nullptr},
    {"arccoth", reals::arctanh, true, false, Care::besideOne, Parity::odd, "0", "0"},
    {"arcsech", reals::arccosh, true, false, Care::besideOne, Parity::none, nullptr, nullptr},
    {"arccsch", reals::arcsinh, true, false, Care::none, Parity::odd, "0", "0"},
};
static_assert(std::size(rows) == static_cast<std::size_t>(Elementary::count));

bool isFinitePart(DAG x) {
  if (!isNumeric(x)) return false;
  if (isTag(x, HFLOAT)) return std::isfinite(FloatValue(x));
  return !isSoftFloat(x) || !isSingular(x);
}

DAG realPartOf(DAG x) { return isComplex(x) ? (lengthOf(x) == 3 ? x[1] : cons0) : x; }
DAG imaginaryOf(DAG x) { return isComplex(x) ? imaginaryPartOf(x) : cons0; }

// The sign of a float zero, 0 for an exact one.
int sideOfZero(DAG part) {
  if (isTag(part, HFLOAT)) part = HFloatToFloat(part);
  if (!isSoftFloat(part)) return 0;
  return tagOf(mantissaOf(part)) == INTNEG ? -1 : 1;
}

// A real part of a number, read to `more` limbs than the working precision, or its reciprocal.
Real readPart(DAG part, std::size_t more) {
  Precision p(workingLimbs + more);
  return reals::realOf(part);
}
Complex readNumber(DAG x, std::size_t more, bool reciprocal) {
  DAG re = realPartOf(x), im = imaginaryOf(x);
  Complex z(readPart(re, more), readPart(im, more));
  if (z.re.sign == 0) z.reSide = sideOfZero(re);
  if (z.im.sign == 0) z.imSide = isComplex(x) ? sideOfZero(im) : 0;
  if (!reciprocal) return z;
  Precision p(workingLimbs + more);
  Complex r = Complex(1) / z;
  r.reSide = z.reSide;
  r.imSide = -z.imSide;
  return r;
}

// How many bits of the argument cancel in what the function depends on; -1 when all that have been read do.
std::int64_t bitsLost(const ElementaryRow& row, const Complex& z, std::size_t limbs) {
  const std::int64_t read = static_cast<std::int64_t>(limbs) * 64;
  auto lostIn = [&](const Real& whole, const Real& rest) {
    return rest.sign == 0 || whole.exponent - rest.exponent > read - 2 ? -1 : whole.exponent - rest.exponent;
  };
  Precision p(limbs);
  switch (row.care) {
    case Care::none: return 0;
    case Care::whole: {
      const Real& part = z.re.sign != 0 && (z.im.sign == 0 || z.re.exponent > z.im.exponent) ? z.re : z.im;
      // Sines of imaginary parts.
      const std::int64_t other = z.im.sign != 0 ? reals::bitsBesidePi(z.im) : 0;
      return other < 0 ? -1 : std::max(other, std::clamp<std::int64_t>(part.exponent, 0, 64));
    }
    case Care::byPi: {
      if (z.re.sign == 0) return 0;
      const std::int64_t lost = reals::bitsBesidePi(z.re);
      return lost < 0 ? -1 : std::max(lost, std::clamp<std::int64_t>(z.im.sign != 0 ? z.im.exponent : 0, 0, 64));
    }
    case Care::besideOne: {
      if (z.im.sign == 0 || row.value != static_cast<Complex (*)(const Complex&)>(reals::ln)) {
        const Real a = reals::absolute(z.re);
        if (a.sign == 0 || a.exponent < 0 || a.exponent > 1) return 0;
        return lostIn(Real(1), a - Real(1));
      }
      const std::int64_t larger = std::max(z.re.sign != 0 ? z.re.exponent : z.im.exponent, z.im.exponent);
      if (larger < 0 || larger > 1) return 0;
      return lostIn(Real(1), reals::squaredSize(z) - Real(1));
    }
  }
  return 0;
}

// Exactly on the unit circle, or exactly 1 or -1.
bool isOnUnit(DAG x) {
  DAG re = realPartOf(x), im = imaginaryOf(x);
  auto exact = [](DAG part) {
    if (isTag(part, HFLOAT)) part = HFloatToFloat(part);
    return isSoftFloat(part) ? simpl(floatrat(part)) : part;
  };
  re = exact(re);
  im = exact(im);
  return simpl(add(mul(re, re), mul(im, im))) == cons1;
}

// The real part of a number, or of its reciprocal, and the square of its size differ from 1 by 2^-bits at least where
// they differ: they are quotients of integers of no more than that length.
std::int64_t separationBits(DAG x) {
  std::int64_t digits = 0;
  for (DAG part : {realPartOf(x), imaginaryOf(x)}) {
    if (isTag(part, HFLOAT)) part = HFloatToFloat(part);
    if (isSoftFloat(part)) digits += ilength(mantissaOf(part)) + std::abs(exponentValue(exponentOf(part)));
    else if (isTag(part, RATIONAL)) digits += ilength(part[1]) + ilength(part[2]);
    else digits += ilength(part);
  }
  return 128 + 14 * digits;
}
// In limbs: what an argument is read to at most.
constexpr std::size_t longestRead = 1 << 18;

DAG floatResult(const Complex& z, bool real) {
  if (real && z.im.sign == 0) return reals::floatOf(z.re);
  const reals::Decimal a = reals::decimalOf(z.re), b = reals::decimalOf(z.im);
  DAG im = BuildFloat(b.mantissa, NewInteger(b.exponent));
  if (z.re.sign == 0 && real) return new2(COMPLEX, im);
  return new3(COMPLEX, BuildFloat(a.mantissa, NewInteger(a.exponent)), im);
}

// Exactly 1 or -1; floats are compared with all their digits.
bool isUnit(DAG part) {
  const double size = std::fabs(FloatValue(part));
  if (size < 0.5 || size > 2) return false;
  if (isTag(part, HFLOAT)) part = HFloatToFloat(part);
  if (isSoftFloat(part)) part = simpl(floatrat(part));
  return part == cons1 || part == consm1;
}

// Whether the value at the number is a division by zero, exactly.
bool isPole(Elementary f, DAG x) {
  switch (f) {
    case Elementary::ln: case Elementary::cot: case Elementary::csc: case Elementary::coth: case Elementary::csch:
    case Elementary::arcsec: case Elementary::arccsc: case Elementary::arcsech: case Elementary::arccsch:
      return isZero(x);
    case Elementary::arctanh: case Elementary::arccoth: return isZero(imaginaryOf(x)) && isUnit(realPartOf(x));
    case Elementary::arctan: case Elementary::arccot:
      return isComplex(x) && isZero(realPartOf(x)) && isUnit(imaginaryOf(x));
    default: return false;
  }
}

DAG floatPole(Elementary f, DAG x) {
  bool negative = f == Elementary::ln;
  if (f != Elementary::ln) negative = consneg(realPartOf(x)) || sideOfZero(realPartOf(x)) < 0;
  return poleOf(nameOf(f), x, negative ? consfminf : consfinf);
}

}  // namespace

const ElementaryRow& rowOf(Elementary f) { return rows[static_cast<std::size_t>(f)]; }
DAG nameOf(Elementary f) { return naminstall(rowOf(f).name); }
DAG callOf(Elementary f, DAG x) { return simpl(new3(FUNCTION, nameOf(f), simpl(new2(EXPSEQ, x)))); }

bool isFiniteNumber(DAG x) {
  if (isComplex(x)) return isFinitePart(realPartOf(x)) && isFinitePart(imaginaryOf(x));
  return isFinitePart(x);
}
bool isFloatValue(DAG x) { return isFloatNumber(x) || isFloatComplex(x); }

DAG poleOf(DAG name, DAG x, DAG standard) {
  return TriggerNumericEvent(divisionByZero, name, x, DAG(), standard, true);
}

DAG floatAt(Elementary f, DAG x) {
  const ElementaryRow& row = rowOf(f);
  if (isPole(f, x)) return floatPole(f, x);
  const std::int64_t digits = requireDigits();
  // The kernel's root rounds its argument first.
  if (f == Elementary::sqrt && !isComplex(x) && !consneg(x)) {
    DAG whole = isTag(x, HFLOAT) ? x : isSoftFloat(x) ? mantissaOf(x) : x;
    if (isTag(whole, HFLOAT) || (isInteger(whole) && ilength(whole) <= digits)) return evalfsqrt(x);
  }
  // A constant: one series of rational numbers.
  if (f == Elementary::exp && x == cons1) return floatOfE();
  RealSession session(digits);
  std::size_t more = 0;
  Complex z = readNumber(x, more, row.ofReciprocal);
  const Real& angle = row.care == Care::whole ? z.im : z.re;
  if ((row.care == Care::byPi || row.care == Care::whole) && angle.exponent > reals::longestReduction)
    KernelException("the argument of %1 is too large to be reduced by Pi", nameOf(f));
  if (row.care != Care::none) {
    bool exactOne = false;
    for (;;) {
      const std::int64_t lost = bitsLost(row, z, workingLimbs + more);
      if (lost >= 0 && lost <= static_cast<std::int64_t>(more) * 64) break;
      if (lost < 0 && row.care == Care::besideOne) {
        exactOne = !exactOne && isOnUnit(x);
        // Where the digits tell that two numbers differ at all, they do so within the bound.
        if (exactOne || static_cast<std::int64_t>(workingLimbs + more) * 64 > separationBits(x)) break;
      }
      if (workingLimbs + more > longestRead) KernelException("the argument of %1 is too close to a pole", nameOf(f));
      more = lost < 0 ? 2 * more + workingLimbs : static_cast<std::size_t>(lost + 63) / 64;
      z = readNumber(x, more, row.ofReciprocal);
    }
    // What isn't read exactly must not look as if it lay on the circle, and the other way round.
    if (exactOne && f == Elementary::ln && z.im.sign != 0) {
      const Real turn = reals::angle(z.im, z.re);
      return floatResult(Complex(Real(), turn), false);
    }
  }
  Complex value = row.value(z);
  if (row.inverted) value = Complex(1) / value;
  return floatResult(value, !isComplex(x));
}

DAG floatAngle(DAG y, DAG x) {
  RealSession session(requireDigits());
  const Real a = reals::realOf(y), b = reals::realOf(x);
  return reals::floatOf(reals::angle(a, b));
}

DAG floatLogarithm(DAG x, DAG b) {
  if (isZero(x)) return poleOf(naminstall("log"), x, consfminf);
  const std::int64_t digits = requireDigits();
  RealSession session(digits);
  std::size_t more = 1;
  const ElementaryRow& row = rowOf(Elementary::ln);
  Complex values[2];
  for (int i = 0; i < 2; ++i) {
    DAG number = i == 0 ? x : b;
    Complex z = readNumber(number, more, false);
    for (;;) {
      const std::int64_t lost = bitsLost(row, z, workingLimbs + more);
      if ((lost >= 0 && lost <= static_cast<std::int64_t>(more) * 64) || (lost < 0 && isOnUnit(number))) break;
      more = lost < 0 ? 2 * more + workingLimbs : static_cast<std::size_t>(lost + 63) / 64;
      z = readNumber(number, more, false);
    }
    values[i] = reals::ln(z);
  }
  return floatResult(values[0] / values[1], !isComplex(x) && !isComplex(b));
}

namespace {

// A real number as the rational equal to it, or 0 where that would be long.
DAG shortRational(DAG x) {
  if (isTag(x, HFLOAT)) x = HFloatToFloat(x);
  if (isRationalNumber(x)) return x;
  if (!isSoftFloat(x) || std::abs(exponentValue(exponentOf(x))) > 1000) return DAG();
  return simpl(floatrat(x));
}
bool isExactRoot(DAG x, DAG y) { return !isFloatComplex(x) && !isComplex(y); }

// By how many half turns, modulo 2, x^y is turned from the positive axis where x lies on an axis or midway between two
// and y is real; 0 elsewhere.
DAG turnsOfPower(DAG x, DAG y) {
  DAG re = realPartOf(x), im = imaginaryOf(x);
  if (isComplex(y)) return DAG();
  DAG exponent = shortRational(y);
  if (!exponent) return DAG();
  int eighths;
  if (isZero(im)) eighths = consneg(re) ? (sideOfZero(im) < 0 ? -4 : 4) : 0;
  else if (isZero(re)) eighths = consneg(im) ? -2 : 2;
  else if (isFloatValue(x) || compcon(absalg(re), absalg(im)) != 0) return DAG();
  else eighths = (consneg(re) ? 3 : 1) * (consneg(im) ? -1 : 1);
  DAG turns = simpl(mul(exponent, quotientOf(eighths, 4)));
  DAG whole = floorOfNumber(simpl(mul(turns, quotientOf(1, 2))));
  return simpl(add(turns, simpl(mul(whole, immediate(-2)))));
}

}  // namespace

DAG floatPower(DAG x, DAG y) {
  RealSession session(requireDigits());
  // As many bits more as the product y ln x has before the point, and ln x as many as x lies beside 1.
  std::size_t more = 2;
  const ElementaryRow& row = rowOf(Elementary::ln);
  Complex z = readNumber(x, more, false);
  for (;;) {
    const std::int64_t lost = bitsLost(row, z, workingLimbs + more);
    if ((lost >= 0 && lost + 64 <= static_cast<std::int64_t>(more) * 64) || (lost < 0 && isOnUnit(x))) break;
    more = lost < 0 ? 2 * more + workingLimbs : static_cast<std::size_t>(lost + 127) / 64;
    z = readNumber(x, more, false);
  }
  const bool real = !isComplex(x) && !isComplex(y);
  const Complex w = readNumber(y, 2, false);
  if (real && z.re.sign > 0) return reals::floatOf(reals::power(z.re, w.re));
  DAG turns = turnsOfPower(x, y);
  if (!turns) return floatResult(reals::power(z, w), false);
  Real size;
  {
    Precision p(workingLimbs + more);
    size = z.im.sign == 0 ? z.re : z.re.sign == 0 ? z.im : reals::size(z);
  }
  size = reals::power(size, w.re);
  // Quarter turns are exact.
  DAG quarters = simpl(mul(turns, immediate(2)));
  Real s, c;
  if (isInteger(quarters)) {
    const int k = moduloOf(quarters, 4);
    if (k % 2 == 0) c = Real(k == 0 ? 1 : -1);
    else s = Real(k == 1 ? 1 : -1);
  } else {
    Precision p(workingLimbs + 1);
    reals::sineCosine(reals::realOf(turns) * reals::pi(), &s, &c);
  }
  return floatResult(Complex(size * c, size * s), real || isExactRoot(x, y));
}

}  // namespace korel
