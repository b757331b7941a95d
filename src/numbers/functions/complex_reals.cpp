#include "numbers/functions/complex_reals.h"

#include <algorithm>

namespace korel {
namespace reals {

namespace {

// Part of a sign: that of the part, or of its zero, or `otherwise`.
int sideOf(const Real& part, int zeroSide, int otherwise) {
  return part.sign != 0 ? part.sign : zeroSide != 0 ? zeroSide : otherwise;
}

// |a|^2 - 1 to full relative precision.
Real squaredSizeLessOne(const Complex& z) {
  for (std::size_t more = 0;;) {
    Precision p(workingLimbs + more);
    const Real a = absolute(z.re), b = absolute(z.im);
    // The operands are exact, so are sums and products of twice their length.
    const std::size_t longest = std::max<std::size_t>(z.re.size, z.im.size);
    const Real value = (a * a - Real(1)) + b * b;
    const std::int64_t lost = value.sign == 0 ? workingBits() : -value.exponent;
    if (lost <= static_cast<std::int64_t>(more) * 64) return value;
    // Nothing is left of exact squares.
    if (value.sign == 0 && workingLimbs > 2 * longest + 2) return value;
    more = value.sign == 0 ? 2 * more + longest + 2 : static_cast<std::size_t>(lost) / 64 + 1;
  }
}

Real sumOfProducts(const Real& a, const Real& b, const Real& c, const Real& d) { return a * b + c * d; }

}  // namespace

Complex operator+(const Complex& a, const Complex& b) { return {a.re + b.re, a.im + b.im}; }
Complex operator-(const Complex& a, const Complex& b) { return {a.re - b.re, a.im - b.im}; }
Complex operator-(Complex a) {
  a.re.sign = -a.re.sign;
  a.im.sign = -a.im.sign;
  a.reSide = -a.reSide;
  a.imSide = -a.imSide;
  return a;
}
Complex operator*(const Complex& a, const Complex& b) {
  if (a.im.sign == 0) return times(b, a.re);
  if (b.im.sign == 0) return times(a, b.re);
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
Complex operator/(const Complex& a, const Complex& b) {
  if (b.im.sign == 0) return {a.re / b.re, a.im / b.re};
  const Real n = squaredSize(b);
  return {(a.re * b.re + a.im * b.im) / n, (a.im * b.re - a.re * b.im) / n};
}
Complex times(const Complex& a, const Real& b) { return {a.re * b, a.im * b}; }
Complex scaled(const Complex& a, std::int64_t k) {
  Complex r = a;
  r.re.exponent += k;
  r.im.exponent += k;
  return r;
}
Complex turnedLeft(const Complex& z) {
  Complex r(-z.im, z.re);
  r.reSide = -z.imSide;
  r.imSide = z.reSide;
  return r;
}
Complex turnedRight(const Complex& z) {
  Complex r(z.im, -z.re);
  r.reSide = z.imSide;
  r.imSide = -z.reSide;
  return r;
}
Real squaredSize(const Complex& z) { return z.re * z.re + z.im * z.im; }
Complex conjugateOf(Complex z) {
  z.im.sign = -z.im.sign;
  z.imSide = -z.imSide;
  return z;
}
Complex keep(const Complex& z, LimbMark& mark) {
  Real parts[2] = {z.re, z.im};
  keepAll(parts, 2, mark);
  return {parts[0], parts[1]};
}

// ---- powers and logarithms

Complex sqrt(const Complex& z) {
  if (z.im.sign == 0) {
    if (z.re.sign >= 0) return {sqrt(z.re), Real()};
    Real root = sqrt(-z.re);
    root.sign = sideOf(z.im, z.imSide, 1);
    return {Real(), root};
  }
  LimbMark mark;
  // The larger part first; the other one by the product of both.
  const Real r = sqrt(scaled(size(z) + absolute(z.re), -1));
  Real other = scaled(absolute(z.im) / r, -1);
  Complex value = z.re.sign >= 0 ? Complex(r, other) : Complex(other, r);
  value.im.sign = z.im.sign;
  return keep(value, mark);
}

Complex exp(const Complex& z) {
  if (z.im.sign == 0) return {exp(z.re), Real()};
  LimbMark mark;
  Real s, c;
  sineCosine(z.im, &s, &c);
  if (z.re.sign == 0) return keep(Complex(c, s), mark);
  return keep(times(Complex(c, s), exp(z.re)), mark);
}

Complex ln(const Complex& z) {
  LimbMark mark;
  if (z.im.sign == 0) {
    Complex value(ln(absolute(z.re)), Real());
    if (z.re.sign < 0) {
      value.im = pi();
      value.im.sign = sideOf(z.im, z.imSide, 1);
    }
    return keep(value, mark);
  }
  const std::int64_t larger = std::max(z.re.sign != 0 ? z.re.exponent : z.im.exponent, z.im.exponent);
  Complex value;
  if (larger >= -1 && larger <= 2) {
    const Real apart = squaredSizeLessOne(z);
    value.re = scaled(apart.exponent > -1 && apart.sign < 0 ? ln(Real(1) + apart) : lnOnePlus(apart), -1);
  } else {
    value.re = scaled(ln(squaredSize(z)), -1);
  }
  value.im = angle(z.im, z.re);
  return keep(value, mark);
}

Complex power(const Complex& z, const Complex& w) {
  LimbMark mark;
  Complex r;
  {
    const std::int64_t size = std::max({w.re.sign != 0 ? w.re.exponent : 0, w.im.sign != 0 ? w.im.exponent : 0});
    Precision p(limbsWith(std::clamp<std::int64_t>(size, 0, 100) + 70));
    r = exp(w * ln(z));
  }
  return keep(r, mark);
}

// ---- circular and hyperbolic functions

Complex sin(const Complex& z) {
  if (z.im.sign == 0) return {sin(z.re), Real()};
  LimbMark mark;
  Real s, c, sh, ch;
  sineCosine(z.re, &s, &c);
  hyperbolicSineCosine(z.im, &sh, &ch);
  return keep(Complex(s * ch, c * sh), mark);
}
Complex cos(const Complex& z) {
  if (z.im.sign == 0) return {cos(z.re), Real()};
  LimbMark mark;
  Real s, c, sh, ch;
  sineCosine(z.re, &s, &c);
  hyperbolicSineCosine(z.im, &sh, &ch);
  return keep(Complex(c * ch, -(s * sh)), mark);
}
// (sin a cos a + i sinh b cosh b) / (cos^2 a + sinh^2 b)
Complex tan(const Complex& z) {
  LimbMark mark;
  Real s, c, sh, ch;
  sineCosine(z.re, &s, &c);
  if (z.im.sign == 0) return keep(Complex(s / c, Real()), mark);
  // Far from the real axis it is i, all but for a real part that vanishes.
  hyperbolicSineCosine(z.im, &sh, &ch);
  const Real d = sumOfProducts(c, c, sh, sh);
  return keep(Complex(s * c / d, sh * ch / d), mark);
}
Complex sinh(const Complex& z) { return turnedRight(sin(turnedLeft(z))); }
Complex cosh(const Complex& z) { return cos(turnedLeft(z)); }
Complex tanh(const Complex& z) { return turnedRight(tan(turnedLeft(z))); }

// ---- their inverses

namespace {

// z + n and n - z with the sides of z.
Complex plusOne(const Complex& z, int n) {
  const std::size_t all = std::max<std::size_t>(workingLimbs, z.re.size);
  Complex r = z;
  {
    // Beside the point -n all bits of the sum count.
    Precision p(z.re.exponent >= 0 && z.re.exponent <= 1 ? all + 1 : workingLimbs);
    r.re = z.re + Real(n);
  }
  r.reSide = 0;
  return r;
}
Complex oneMinus(const Complex& z) { return plusOne(-z, 1); }

// A real argument outside -1 .. 1 lies on a cut: below the upper one, above the lower one.
Complex withSides(Complex z) {
  if (z.im.sign == 0 && z.imSide == 0) z.imSide = z.re.sign > 0 ? -1 : 1;
  return z;
}

// A real part of 0 where the cut lies on the imaginary axis: right of its upper part, left of the lower one, so that
// the turned number is as `withSides` says.
bool isBetween(const Complex& z) { return z.im.sign == 0 && compareMagnitudes(z.re, Real(1)) <= 0; }

}  // namespace

Complex arcsin(const Complex& z0) {
  const Complex z = withSides(z0);
  if (isZero(z)) return z0;
  LimbMark mark;
  const Complex p = sqrt(oneMinus(z)), q = sqrt(plusOne(z, 1));
  Complex r;
  // On the imaginary axis the real part is 0.
  if (z.re.sign != 0) {
    const Real across = p.re * q.re - p.im * q.im;
    r.re = across.sign == 0 ? angle(z.re, Real()) : arctan(z.re / across);
  }
  if (!isBetween(z)) r.im = arcsinh(p.re * q.im - p.im * q.re);
  return keep(r, mark);
}

Complex arccos(const Complex& z0) {
  const Complex z = withSides(z0);
  LimbMark mark;
  const Complex p = sqrt(oneMinus(z)), q = sqrt(plusOne(z, 1));
  Complex r;
  if (p.re.sign != 0) r.re = scaled(angle(p.re, q.re), 1);
  if (!isBetween(z)) r.im = arcsinh(q.re * p.im - q.im * p.re);
  return keep(r, mark);
}

Complex arccosh(const Complex& z) {
  LimbMark mark;
  const Complex p = sqrt(plusOne(z, -1)), q = sqrt(plusOne(z, 1));
  Complex r;
  r.re = arcsinh(p.re * q.re + p.im * q.im);
  if (p.im.sign != 0) r.im = scaled(angle(p.im, q.re), 1);
  return keep(r, mark);
}

Complex arcsinh(const Complex& z) {
  if (z.im.sign == 0) return {arcsinh(z.re), Real()};
  return turnedLeft(arcsin(turnedRight(z)));
}

Complex arctanh(const Complex& z0) {
  const Complex z = withSides(z0);
  if (isZero(z)) return z0;
  LimbMark mark;
  const Complex below = oneMinus(z);
  const Real square = z.im * z.im;
  Complex r;
  if (z.re.sign != 0) {
    // ln(1 + 4 a / ((1 - a)^2 + b^2)) / 4 for a > 0
    const Complex near = z.re.sign > 0 ? below : plusOne(z, 1);
    const Real d = near.re * near.re + square;
    r.re = scaled(lnOnePlus(scaled(absolute(z.re), 2) / d), -2);
    r.re.sign = z.re.sign;
  }
  if (z.im.sign != 0) {
    const Real across = below.re * plusOne(z, 1).re - square;
    r.im = scaled(angle(scaled(z.im, 1), across), -1);
  } else if (compareMagnitudes(z.re, Real(1)) > 0) {
    r.im = scaled(pi(), -1);
    r.im.sign = z.imSide;
  }
  return keep(r, mark);
}

Complex arctan(const Complex& z) {
  if (z.im.sign == 0) return {arctan(z.re), Real()};
  return turnedRight(arctanh(turnedLeft(z)));
}

}  // namespace reals
}  // namespace korel
