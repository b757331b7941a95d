#pragma once
// Numbers that know their error: what the special functions are computed with.
//
// A special::Real is a binary float of numbers/functions/real.h with a bound of how far the true value may lie from
// it; a
// `Complex` is two of them. Every operation adds what it loses, so that a result tells how many of its digits hold:
// cancellation, ill-conditioned arguments and series cut off all show in the bound. Who wants a value computes
// with some precision, looks at the bound, and computes again with more where it is too wide
// (`special_functions.cpp`). What is exact stays exact as far as the precision goes, integers above all.
//
// Space and precision are those of the floats: one session, one stack. Long loops give back what they don't need
// with a `Scratch`. A part that is 0 without error is an exact zero, which is how a real number stays real.

#include <algorithm>
#include <cstdint>

#include "library/native/special/bounds.h"
#include "numbers/functions/limbs.h"
#include "numbers/functions/real.h"
#include "store/dag.h"

namespace korel::special {

/// The working precision, in limbs and in decimal digits. Of the digits that whole limbs have, no more are worth
/// working for than the result is to have, some guard digits among them.
inline std::int64_t workLimbs() { return static_cast<std::int64_t>(reals::workingLimbs); }
extern double soughtDigits;
inline double workDigits() { return std::min(static_cast<double>(workLimbs()) * digitsPerLimb, soughtDigits); }
/// The same in bits.
inline std::int64_t workBits() { return static_cast<std::int64_t>(3.3219281 * workDigits()) + 1; }

struct Real {
  reals::Real middle;
  Bound error;

  Real() = default;
  Real(std::int64_t n) : middle(n) {}  // NOLINT: numbers mix with machine integers in formulas
  Real(int n) : middle(n) {}           // NOLINT
  Real(const reals::Real& m, Bound e) : middle(m), error(e) {}
};

struct Complex {
  Real re, im;

  Complex() = default;
  Complex(const Real& x) : re(x) {}   // NOLINT
  Complex(std::int64_t n) : re(n) {}  // NOLINT
  Complex(int n) : re(n) {}           // NOLINT
  Complex(const Real& x, const Real& y) : re(x), im(y) {}
};

/// The stack of limbs as it was when this was made: `keep` gives back everything taken since, except for the numbers
/// named, which move. May be repeated.
class Scratch {
 public:
  Scratch() : place_(limbPlace()) {}
  template <class... Numbers>
  void keep(Numbers&... numbers) const {
    Real* parts[2 * sizeof...(Numbers) + 1];
    int count = 0;
    (collect(numbers, parts, count), ...);
    keepParts(parts, count);
  }

 private:
  static void collect(Real& x, Real** parts, int& count) { parts[count++] = &x; }
  static void collect(Complex& z, Real** parts, int& count) {
    parts[count++] = &z.re;
    parts[count++] = &z.im;
  }
  void keepParts(Real** parts, int count) const;
  LimbPlace place_;
};

/// Space for n numbers, which are 0.
template <class Number>
Number* numberSpace(std::int64_t n) {
  static_assert(sizeof(Number) % sizeof(Limb) == 0);
  auto* numbers = reinterpret_cast<Number*>(limbSpace(static_cast<std::size_t>(n) * (sizeof(Number) / sizeof(Limb))));
  for (std::int64_t i = 0; i < n; ++i) numbers[i] = Number();
  return numbers;
}

// ---- numbers in

/// An integer, RATIONAL or finite float, to the working precision.
Real realOf(DAG number);
/// The same, and COMPLEX.
Complex complexOf(DAG number);
/// The exact value of a double.
inline Real realOfDouble(double x) { return {reals::realOfDouble(x), {}}; }
/// The middle as a double; infinite beyond its range.
double toDouble(const Real& x);

// ---- size

inline bool isExact(const Real& x) { return x.error.m == 0; }
inline bool isExactZero(const Real& x) { return x.middle.sign == 0 && x.error.m == 0; }
inline bool isExactZero(const Complex& z) { return isExactZero(z.re) && isExactZero(z.im); }
inline bool isReal(const Complex& z) { return isExactZero(z.im); }
Bound middleBound(const Real& x);
/// |x| is at most, and at least.
Bound upperBound(const Real& x);
Bound lowerBound(const Real& x);
Bound upperBound(const Complex& z);
Bound lowerBound(const Complex& z);
inline bool mayBeZero(const Real& x) { return lowerBound(x).m == 0; }
inline bool mayBeZero(const Complex& z) { return lowerBound(z).m == 0; }
/// Sign of the middle: -1, 0 or 1.
inline int signOf(const Real& x) { return x.middle.sign; }
inline bool isNegative(const Real& x) { return x.middle.sign < 0; }
/// How many limbs of the middle stand before the point, negative for small numbers: the middle is below 2^(64 top).
inline std::int64_t topOf(const Real& x) { return x.middle.sign == 0 ? INT64_MIN / 4 : (x.middle.exponent + 63) >> 6; }
inline std::int64_t topOf(const Complex& z) { return topOf(z.re) > topOf(z.im) ? topOf(z.re) : topOf(z.im); }
/// True when the value is an exact integer that a machine word holds, which goes to n.
bool isMachineInteger(const Real& x, std::int64_t& n);
inline bool isMachineInteger(const Complex& z, std::int64_t& n) { return isReal(z) && isMachineInteger(z.re, n); }
/// True when the value is an exact integer of any size.
bool isInteger(const Real& x);
/// The integer nearest to the middle, without error.
Real nearestInteger(const Real& x);

// ---- arithmetic

/// x with a wider error.
Real widened(Real x, Bound more);
Complex widened(Complex z, Bound more);
Real operator-(Real x);
Real operator+(const Real& a, const Real& b);
Real operator-(const Real& a, const Real& b);
Real operator*(const Real& a, const Real& b);
Real operator/(const Real& a, const Real& b);
/// By a machine integer, not 0 in a quotient.
Real operator*(const Real& a, std::int64_t n);
Real operator/(const Real& a, std::int64_t n);
inline Real operator*(const Real& a, int n) { return a * std::int64_t{n}; }
inline Real operator/(const Real& a, int n) { return a / std::int64_t{n}; }
Real sqrt(const Real& x);
inline Real absolute(Real x) {
  if (x.middle.sign < 0) x.middle.sign = 1;
  return x;
}
/// x / 2.
inline Real halved(Real x) {
  if (x.middle.sign != 0) --x.middle.exponent;
  x.error = x.error * Bound{0.5, 0};
  return x;
}
/// Limbs below 2^(64 lowest) dropped: terms of a sum need no more places than the sum.
Real cut(const Real& x, std::int64_t lowest);
Complex cut(const Complex& z, std::int64_t lowest);

Complex operator-(const Complex& z);
Complex operator+(const Complex& a, const Complex& b);
Complex operator-(const Complex& a, const Complex& b);
Complex operator*(const Complex& a, const Complex& b);
Complex operator/(const Complex& a, const Complex& b);
Complex operator*(const Complex& a, std::int64_t n);
Complex operator/(const Complex& a, std::int64_t n);
inline Complex operator*(const Complex& a, int n) { return a * std::int64_t{n}; }
inline Complex operator/(const Complex& a, int n) { return a / std::int64_t{n}; }
inline Complex operator*(const Complex& a, const Real& x) { return {a.re * x, a.im * x}; }
inline Complex operator/(const Complex& a, const Real& x) { return {a.re / x, a.im / x}; }
inline Complex operator*(const Real& x, const Complex& a) { return a * x; }
inline Complex operator+(const Complex& a, const Real& x) { return {a.re + x, a.im}; }
inline Complex operator-(const Complex& a, const Real& x) { return {a.re - x, a.im}; }
inline Complex operator+(const Complex& a, int n) { return {a.re + Real(n), a.im}; }
inline Complex operator-(const Complex& a, int n) { return {a.re - Real(n), a.im}; }
inline Complex conjugate(const Complex& z) { return {z.re, -z.im}; }
/// i z.
inline Complex timesI(const Complex& z) { return {-z.im, z.re}; }
Complex square(const Complex& z);
/// z^n for a machine integer n.
Complex integerPower(const Complex& z, std::int64_t n);

}  // namespace korel::special
