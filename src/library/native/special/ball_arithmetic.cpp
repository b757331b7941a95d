// The arithmetic of balls: operations on the middles, and what each loses.

#include "library/native/special/ball.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/float/hardware_float.h"
#include "store/objects.h"

namespace korel::special {

double soughtDigits = HUGE_VAL;

namespace {

// How far a middle may be off that was cut to the working precision, a few units of its last bit.
Bound cutError(const reals::Real& x) { return powerOfTwoBound(x.exponent - reals::workingBits() + 3); }

// A number without the limbs that its error makes worthless.
Real settled(reals::Real middle, Bound error) {
  if (error.m == 0 || middle.sign == 0) return {middle, error};
  if (isInfinite(error)) return {{}, error};
  // What lies below a 2^64th of the error.
  const std::int64_t wanted = middle.exponent - 64 * (error.e - 1);
  if (wanted <= 0) return {{}, error + powerOfTwoBound(middle.exponent)};
  const std::int64_t limbs = (wanted + 63) / 64;
  if (static_cast<std::int64_t>(middle.size) > limbs) {
    middle.limbs += middle.size - limbs;
    middle.size = static_cast<std::uint32_t>(limbs);
    error += powerOfTwoBound(middle.exponent - 64 * limbs);
  }
  return {middle, error};
}

}  // namespace

void Scratch::keepParts(Real** parts, int count) const {
  auto copyToTop = [=] {
    for (int i = 0; i < count; ++i) {
      reals::Real& x = parts[i]->middle;
      if (x.size == 0) continue;
      Limb* row = limbSpace(x.size);
      copyLimbs(row, x.limbs, x.size);
      x.limbs = row;
    }
  };
  // By way of the top of the stack, above all of them.
  copyToTop();
  returnToPlace(place_);
  copyToTop();
}

namespace {

Real realOfInteger(DAG n) {
  const reals::Real middle = reals::realOf(n);
  if (middle.size <= reals::workingLimbs) return {middle, {}};
  return {reals::cut(middle), cutError(middle)};
}

// Exponents of ten beyond this are too many for the middle: such a float is 0 or infinite for all we know.
constexpr std::int64_t farthestExponent = std::int64_t{1} << 40;

}  // namespace

Real realOf(DAG number) {
  if (isTag(number, HFLOAT)) number = HFloatToFloat(number);
  if (isTag(number, RATIONAL)) return realOfInteger(number[1]) / realOfInteger(number[2]);
  if (!isSoftFloat(number)) return realOfInteger(number);
  const Real mantissa = realOfInteger(mantissaOf(number));
  if (isExactZero(mantissa)) return mantissa;
  const std::int64_t exponent = std::clamp(exponentValue(exponentOf(number)), -farthestExponent, farthestExponent);
  const Real five = integerPower(Complex(5), std::abs(exponent)).re;
  Real x = exponent < 0 ? mantissa / five : mantissa * five;
  x.middle.exponent += exponent;
  x.error = x.error * powerOfTwoBound(exponent);
  return x;
}

Complex complexOf(DAG number) {
  if (!isComplex(number)) return realOf(number);
  return {lengthOf(number) == 2 ? Real() : realOf(number[1]), realOf(imaginaryPartOf(number))};
}

double toDouble(const Real& x) {
  const double size = doubleOf(middleBound(x));
  return isNegative(x) ? -size : size;
}

// ---- size

Bound middleBound(const Real& x) {
  if (x.middle.sign == 0) return {};
  const std::int64_t e = x.middle.exponent;
  const auto top = static_cast<double>(x.middle.limbs[x.middle.size - 1]);
  return normalBound(top * powerOfTwo((e & 63) - 64), e >> 6);
}
Bound upperBound(const Real& x) {
  Bound b = middleBound(x);
  b.m *= roundingUp;
  return b + x.error;
}
Bound lowerBound(const Real& x) {
  Bound b = middleBound(x);
  if (x.error.m == 0) return {b.m / roundingUp, b.e};
  if (b < x.error || isInfinite(x.error)) return {};
  const std::int64_t apart = b.e - x.error.e;
  if (apart > 1) return {b.m * (1 - 1e-13), b.e};
  const double rest = b.m - x.error.m * (apart == 1 ? powerOfTwo(-64) : 1);
  return rest <= b.m * 1e-13 ? Bound{} : normalBound(rest * (1 - 1e-13), b.e);
}
Bound upperBound(const Complex& z) { return upperBound(z.re) + upperBound(z.im); }
Bound lowerBound(const Complex& z) { return larger(lowerBound(z.re), lowerBound(z.im)); }

bool isMachineInteger(const Real& x, std::int64_t& n) {
  n = 0;
  if (!isExact(x)) return false;
  if (x.middle.sign == 0) return true;
  if (x.middle.exponent <= 0 || x.middle.exponent > 53 || x.middle.size > 1) return false;
  n = reals::wholeNumber(x.middle);
  return reals::compare(reals::Real(n), x.middle) == 0;
}
bool isInteger(const Real& x) {
  if (!isExact(x)) return false;
  return x.middle.sign == 0 || reals::compare(reals::floorOf(x.middle), x.middle) == 0;
}

Real nearestInteger(const Real& x) { return {reals::nearest(x.middle), {}}; }

// ---- real

Real widened(Real x, Bound more) { return more.m == 0 ? x : settled(x.middle, x.error + more); }
Complex widened(Complex z, Bound more) { return {widened(z.re, more), isReal(z) ? z.im : widened(z.im, more)}; }

Real operator-(Real x) {
  x.middle.sign = -x.middle.sign;
  return x;
}

namespace {

// The place of the lowest bit that is set, for x other than 0: x is a multiple of 2^place.
std::int64_t lowestPlace(const reals::Real& x) {
  std::uint32_t zeros = 0;
  while (x.limbs[zeros] == 0) ++zeros;
  return x.exponent - 64 * static_cast<std::int64_t>(x.size - zeros) + __builtin_ctzll(x.limbs[zeros]);
}
// Where all bits of a sum fit, it is exact.
bool isExactSum(const reals::Real& a, const reals::Real& b) {
  const std::int64_t top = std::max(a.exponent, b.exponent) + 1;
  return top - std::min(lowestPlace(a), lowestPlace(b)) <= reals::workingBits();
}

}  // namespace

Real operator+(const Real& a, const Real& b) {
  const Bound error = a.error + b.error;
  if (a.middle.sign == 0) return settled(b.middle, error);
  if (b.middle.sign == 0) return settled(a.middle, error);
  const reals::Real sum = a.middle + b.middle;
  if (sum.sign == 0 || isExactSum(a.middle, b.middle)) return settled(sum, error);
  const std::int64_t top = std::max(a.middle.exponent, b.middle.exponent);
  return settled(sum, error + powerOfTwoBound(top - reals::workingBits() - 62) + cutError(sum));
}
Real operator-(const Real& a, const Real& b) { return a + -b; }

Real operator*(const Real& a, const Real& b) {
  if (isExactZero(a) || isExactZero(b)) return {};
  Bound error;
  if (!isExact(a)) error += a.error * upperBound(b);
  if (!isExact(b)) error += middleBound(a) * b.error * Bound{roundingUp, 0};
  if (a.middle.sign == 0 || b.middle.sign == 0) return settled({}, error);
  const reals::Real product = a.middle * b.middle;
  if (a.middle.size + b.middle.size > reals::workingLimbs) error += cutError(product);
  return settled(product, error);
}

Real operator*(const Real& a, std::int64_t n) {
  if (n == 0 || isExactZero(a)) return {};
  Bound error = isExact(a) ? Bound() : a.error * boundOf(std::abs(static_cast<double>(n)));
  const reals::Real product = reals::times(a.middle, n);
  if (product.sign != 0 && a.middle.size + 1 > reals::workingLimbs) error += cutError(product);
  return settled(product, error);
}

namespace {

// Whether a quotient is more than an approximation: shorter than the precision, and its product with b is a.
bool isExactQuotient(const reals::Real& quotient, const reals::Real& b, const reals::Real& a) {
  return quotient.size + b.size <= reals::workingLimbs && reals::compare(quotient * b, a) == 0;
}

}  // namespace

Real operator/(const Real& a, std::int64_t n) {
  if (isExactZero(a)) return {};
  const Bound below = {std::abs(static_cast<double>(n)) / roundingUp, 0};
  Bound error = isExact(a) ? Bound() : a.error / normalBound(below.m, 0);
  if (a.middle.sign == 0) return settled({}, error);
  const reals::Real quotient = reals::dividedBy(a.middle, n);
  if (!isExact(a) || !isExactQuotient(quotient, reals::Real(n), a.middle)) error += cutError(quotient);
  return settled(quotient, error);
}

Real operator/(const Real& a, const Real& b) {
  if (isExactZero(a)) return {};
  const Bound below = lowerBound(b);
  if (below.m == 0) return {{}, infiniteBound()};
  Bound error;
  if (!isExact(a)) error += a.error / below;
  if (!isExact(b)) error += upperBound(a) / below * b.error / below;
  if (a.middle.sign == 0) return settled({}, error);
  const reals::Real quotient = a.middle / b.middle;
  if (!isExact(a) || !isExact(b) || !isExactQuotient(quotient, b.middle, a.middle)) error += cutError(quotient);
  return settled(quotient, error);
}

Real sqrt(const Real& x) {
  if (isExactZero(x)) return {};
  const Bound below = lowerBound(x);
  // All that is known beside 0 is a bound.
  if (below.m == 0 || isNegative(x)) return settled({}, powerOfTenBound(log10Of(upperBound(x)) / 2 + 1e-9));
  const reals::Real root = reals::sqrt(x.middle);
  if (isExact(x) && 2 * root.size <= reals::workingLimbs && reals::compare(root * root, x.middle) == 0)
    return {root, {}};
  const Real result = settled(root, cutError(root));
  return isExact(x) ? result : widened(result, x.error / lowerBound(result));
}

Real cut(const Real& x, std::int64_t lowest) {
  const std::int64_t bits = x.middle.exponent - 64 * lowest;
  if (x.middle.sign == 0) return x;
  if (bits <= 0) return {{}, x.error + powerOfTwoBound(x.middle.exponent)};
  const std::int64_t limbs = (bits + 63) / 64, drop = static_cast<std::int64_t>(x.middle.size) - limbs;
  if (drop <= 0) return x;
  Real r = x;
  r.middle.limbs += drop;
  r.middle.size = static_cast<std::uint32_t>(limbs);
  r.error = x.error + powerOfTwoBound(x.middle.exponent - 64 * limbs);
  return r;
}
Complex cut(const Complex& z, std::int64_t lowest) { return {cut(z.re, lowest), cut(z.im, lowest)}; }

// ---- complex

Complex operator-(const Complex& z) { return {-z.re, -z.im}; }
Complex operator+(const Complex& a, const Complex& b) { return {a.re + b.re, a.im + b.im}; }
Complex operator-(const Complex& a, const Complex& b) { return {a.re - b.re, a.im - b.im}; }
Complex operator*(const Complex& a, const Complex& b) {
  if (isReal(a)) return {a.re * b.re, isReal(b) ? Real() : a.re * b.im};
  if (isReal(b)) return {a.re * b.re, a.im * b.re};
  if (isExactZero(a.re)) return {-(a.im * b.im), a.im * b.re};
  if (isExactZero(b.re)) return {-(a.im * b.im), a.re * b.im};
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
Complex square(const Complex& z) {
  if (isReal(z)) return z.re * z.re;
  return {(z.re - z.im) * (z.re + z.im), z.re * z.im * 2};
}
Complex operator/(const Complex& a, const Complex& b) {
  if (isReal(b)) return {a.re / b.re, isReal(a) ? Real() : a.im / b.re};
  if (isExactZero(b.re)) return {a.im / b.im, -(a.re / b.im)};
  const Real norm = b.re * b.re + b.im * b.im;
  return a * conjugate(b) / norm;
}
Complex operator*(const Complex& a, std::int64_t n) { return {a.re * n, a.im * n}; }
Complex operator/(const Complex& a, std::int64_t n) { return {a.re / n, a.im / n}; }

Complex integerPower(const Complex& z, std::int64_t n) {
  if (n < 0) return Complex(1) / integerPower(z, -n);
  Complex result(1), power = z;
  bool begun = false;
  for (; n > 0; n >>= 1) {
    if (n & 1) {
      result = begun ? result * power : power;
      begun = true;
    }
    if (n > 1) power = square(power);
  }
  return result;
}

}  // namespace korel::special
