#pragma once
// Numbers that know their error: what the special functions are computed with.
//
// A `Real` is a number of groups of 16 decimal digits with an exponent, and a bound of how far the true value may lie
// from it; a `Complex` is two of them. Every operation adds what it loses, so that a result tells how many of its
// digits hold: cancellation, ill-conditioned arguments and series cut off all show in the bound. Who wants a
// value computes with some precision, looks at the bound, and computes again with more where it is too wide
// (`special_functions.cpp`).
//
// The groups lie in an arena, a stack that is emptied when an evaluation begins. Long loops give back what they
// don't need with a `Scratch`. A part without groups and without error is an exact zero, which is how a real number
// stays real.

#include <cstdint>

#include "library/native/special/bounds.h"
#include "numbers/integer/integer_groups.h"
#include "store/dag.h"

namespace korel::special {

/// Groups that a result keeps.
extern std::int64_t workGroups;
inline std::int64_t workDigits() { return 16 * workGroups; }

struct Real {
  const Group* groups = nullptr;
  std::int64_t count = 0;  // groups, lowest first; the top one isn't 0
  std::int64_t exponent = 0;
  bool negative = false;
  Bound error;

  Real() = default;
  Real(std::int64_t n);  // NOLINT: numbers mix with machine integers in formulas
  Real(int n) : Real(std::int64_t{n}) {}  // NOLINT
};

struct Complex {
  Real re, im;

  Complex() = default;
  Complex(const Real& x) : re(x) {}          // NOLINT
  Complex(std::int64_t n) : re(n) {}         // NOLINT
  Complex(int n) : re(n) {}                  // NOLINT
  Complex(const Real& x, const Real& y) : re(x), im(y) {}
};

// ---- the arena

/// Gives all numbers back; part of the beginning of an evaluation.
void emptyArena();
/// As `emptyArena`, and the memory goes back to the system if it was much.
void leaveArena();
Group* allocateGroups(std::int64_t count);

/// The arena as it was when this was made: `keep` gives back everything made since, except for the numbers
/// named, which move.
class Scratch {
 public:
  Scratch();
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
  std::int64_t mark_;
};

// ---- numbers in and out

/// An integer, RATIONAL or finite float. A fraction is cut to the working precision.
Real realOf(DAG number);
/// The same, and COMPLEX.
Complex complexOf(DAG number);
/// The exact value of a double.
Real realOfDouble(double x);
/// The middle as a float, rounded to `Digits`.
DAG roundedFloat(const Real& x);
/// Middle as mantissa * 10^exponent.
struct Decimal {
  DAG mantissa;
  std::int64_t exponent;
};
Decimal decimalOf(const Real& x);
Real realOfDecimal(DAG mantissa, std::int64_t exponent);
/// The middle as a double; infinite beyond its range.
double toDouble(const Real& x);

// ---- size

inline bool isExactZero(const Real& x) { return x.count == 0 && x.error.m == 0; }
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
inline int signOf(const Real& x) { return x.count == 0 ? 0 : x.negative ? -1 : 1; }
/// True when the value is an exact integer that a machine word holds, which goes to n.
bool isMachineInteger(const Real& x, std::int64_t& n);
inline bool isMachineInteger(const Complex& z, std::int64_t& n) { return isReal(z) && isMachineInteger(z.re, n); }
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
/// By an integer below 10^16.
Real operator*(const Real& a, std::int64_t n);
Real operator/(const Real& a, std::int64_t n);
inline Real operator*(const Real& a, int n) { return a * std::int64_t{n}; }
inline Real operator/(const Real& a, int n) { return a / std::int64_t{n}; }
Real sqrt(const Real& x);
inline Real absolute(Real x) {
  x.negative = false;
  return x;
}
/// Groups below the weight of `lowest` dropped: terms of a sum need no more places than the sum.
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
