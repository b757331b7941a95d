#pragma once
// Complex numbers of two Reals, and the elementary functions on them with the branch cuts of the textbooks.
//
// Each part of a result has a small relative error of its own, as far as the arguments are exact: the formulas add no
// parts of unlike size (W. Kahan, "Branch cuts for complex elementary functions", 1987). A part that is 0 may have a
// sign, which tells the side of a cut on which the number lies. A zero without one lies on the side that the
// counter-clockwise continuation of the function tells.

#include "numbers/functions/elementary_reals.h"
#include "numbers/functions/real.h"

namespace korel {
namespace reals {

struct Complex {
  Real re, im;
  int reSide = 0, imSide = 0;  // the sign of a part that is 0; 0 for none

  Complex() = default;
  Complex(const Real& a) : re(a) {}  // NOLINT: reals are complex numbers
  Complex(int n) : re(n) {}          // NOLINT
  Complex(const Real& a, const Real& b) : re(a), im(b) {}
};

Complex operator+(const Complex& a, const Complex& b);
Complex operator-(const Complex& a, const Complex& b);
Complex operator-(Complex a);
Complex operator*(const Complex& a, const Complex& b);
Complex operator/(const Complex& a, const Complex& b);
Complex times(const Complex& a, const Real& b);
Complex scaled(const Complex& a, std::int64_t k);
inline bool isZero(const Complex& z) { return z.re.sign == 0 && z.im.sign == 0; }
/// i z and -i z.
Complex turnedLeft(const Complex& z);
Complex turnedRight(const Complex& z);
Real squaredSize(const Complex& z);
inline Real size(const Complex& z) { return sqrt(squaredSize(z)); }
Complex conjugateOf(Complex z);
/// `keep` for complex numbers.
Complex keep(const Complex& z, LimbMark& mark);

Complex sqrt(const Complex& z);
Complex exp(const Complex& z);
/// z isn't 0.
Complex ln(const Complex& z);
Complex sin(const Complex& z);
Complex cos(const Complex& z);
/// Not at a pole.
Complex tan(const Complex& z);
Complex sinh(const Complex& z);
Complex cosh(const Complex& z);
Complex tanh(const Complex& z);
Complex arcsin(const Complex& z);
Complex arccos(const Complex& z);
/// z isn't i or -i.
Complex arctan(const Complex& z);
Complex arcsinh(const Complex& z);
Complex arccosh(const Complex& z);
/// z isn't 1 or -1.
Complex arctanh(const Complex& z);
/// e^(w ln z) for z that isn't 0.
Complex power(const Complex& z, const Complex& w);

}  // namespace reals
}  // namespace korel
