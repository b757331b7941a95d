#pragma once
// Binary floating-point numbers of any precision: what the numeric values of functions are computed with.
//
// A Real is sign * 0.LIMBS * 2^exponent with the top bit of the limbs set, or 0. It is a small value that is passed by
// copy; its limbs lie in the stack of numbers/functions/limbs.h and are never changed. Operations compute to the
// working precision, a count of limbs, and cut off what lies below: a result is off by less than two units of its last
// limb's last bit, so that relative errors of some 2^(1 - 64 n) add up. Operands may be longer or shorter.
//
//   RealSession session(digits);            // at the entry of a native procedure
//   Real x = realOf(number);
//   return floatOf(sqrt(x * x + Real(1)));  // rounded to Digits, once
//
// The rules: a session empties the stack, so that it must be the only one; and while it lasts nothing is evaluated and
// no error is raised but by the operations themselves (an interrupt, a time limit, no memory). Loops take a `LimbMark`
// a round, or `keep` what outlives one. A session has a guard of more than 40 bits beyond its digits: whoever knows
// that digits cancel takes a `Precision` with more.

#include <cstdint>

#include "numbers/functions/limbs.h"
#include "store/dag.h"

namespace korel {
namespace reals {

struct Real {
  int sign = 0;               // 1, 0, -1
  std::int64_t exponent = 0;  // 2^(exponent - 1) <= |x| < 2^exponent
  std::uint32_t size = 0;
  const Limb* limbs = nullptr;

  constexpr Real() = default;
  Real(int n) : Real(static_cast<std::int64_t>(n)) {}  // NOLINT: numbers mix with Reals
  Real(std::int64_t n);                                // NOLINT
};

/// The working precision in limbs.
extern std::size_t workingLimbs;
inline std::int64_t workingBits() { return static_cast<std::int64_t>(workingLimbs) * 64; }
/// Limbs for so many decimal digits, with a guard of 40 bits.
std::size_t limbsForDigits(std::int64_t digits);

/// Empties the stack and sets the precision for a result of `digits` decimal digits.
class RealSession {
 public:
  explicit RealSession(std::int64_t digits) {
    releaseAllLimbs();
    workingLimbs = limbsForDigits(digits);
  }
  ~RealSession() { releaseAllLimbs(); }
};
/// Another working precision for a while.
class Precision {
 public:
  explicit Precision(std::size_t limbs) : before_(workingLimbs) { workingLimbs = limbs; }
  ~Precision() { workingLimbs = before_; }
  Precision(const Precision&) = delete;
  Precision& operator=(const Precision&) = delete;

 private:
  std::size_t before_;
};
/// As many bits more than now.
inline std::size_t limbsWith(std::int64_t moreBits) {
  return workingLimbs + static_cast<std::size_t>(moreBits <= 0 ? 0 : (moreBits + 63) / 64);
}

// ---- arithmetic

Real operator+(const Real& a, const Real& b);
Real operator-(const Real& a, const Real& b);
Real operator*(const Real& a, const Real& b);
/// b isn't 0.
Real operator/(const Real& a, const Real& b);
Real operator-(Real a);
Real absolute(Real a);
inline Real square(const Real& a) { return a * a; }
/// x * n and x / n for a machine number n, n not 0 in the second; fast.
Real times(const Real& x, std::int64_t n);
Real dividedBy(const Real& x, std::int64_t n);
/// x * 2^k.
Real scaled(Real x, std::int64_t k);
/// x^n.
Real power(Real x, std::int64_t n);
/// The square root of x >= 0.
Real sqrt(const Real& x);
/// x cut down to the working precision.
Real cut(Real x);
/// Gives the mark's space back, but for x, or for `count` numbers, which are copied to its beginning.
Real keep(const Real& x, LimbMark& mark);
void keepAll(Real* x, std::size_t count, LimbMark& mark);

// ---- order and parts

/// -1, 0 or 1.
int compare(const Real& a, const Real& b);
int compareMagnitudes(const Real& a, const Real& b);
inline bool operator<(const Real& a, const Real& b) { return compare(a, b) < 0; }
inline bool operator>(const Real& a, const Real& b) { return compare(a, b) > 0; }
inline bool operator<=(const Real& a, const Real& b) { return compare(a, b) <= 0; }
inline bool operator>=(const Real& a, const Real& b) { return compare(a, b) >= 0; }
inline bool isZero(const Real& x) { return x.sign == 0; }
/// The greatest integer not above x, and the integer nearest to it.
Real floorOf(const Real& x);
Real nearest(const Real& x);
/// The value of an integer Real that fits; the ends of the range beyond it.
std::int64_t wholeNumber(const Real& x);
/// The double nearest to x, 0 or infinite where it is out of range.
double doubleOf(const Real& x);
Real realOfDouble(double x);
/// |x| is below 2^-bits times |y|.
inline bool isNegligible(const Real& x, const Real& y) {
  return x.sign == 0 || (y.sign != 0 && x.exponent < y.exponent - workingBits());
}

// ---- from and to objects

/// An integer, RATIONAL or finite float to the working precision; integers that fit are exact. Nothing but a finite
/// number is passed. An exponent of ten beyond 2^40 is taken as that.
Real realOf(DAG number);
/// The integer of a row of n limbs, lowest first, with a sign.
Real realOfRow(int sign, const Limb* row, std::size_t n);
/// mantissa * 10^exponent with some ten digits more than `Digits`; digits that were cut off leave a last digit that
/// isn't 0 or 5, so that the number rounds as x does.
struct Decimal {
  DAG mantissa;
  std::int64_t exponent;
};
Decimal decimalOf(const Real& x);
/// The float nearest to x under `Digits` and `Rounding`; numeric events as for any float, whose handlers may run: it is
/// the last use of a session. For two floats, take two decimals first.
DAG floatOf(const Real& x);
/// The exact integer of an integer Real below 2^(2^31).
DAG integerOf(const Real& x);

// ---- constants to the working precision, kept at the highest one met

Real pi();
Real lnTwo();
Real lnTen();
Real eulerGamma();
Real catalanConstant();

}  // namespace reals
}  // namespace korel
