// The arithmetic of balls: sums, products, quotients and roots of groups, and what each loses.

#include <algorithm>
#include <cstring>

#include "library/native/special/ball.h"

namespace korel::special {

namespace {

// One unit of the group of that exponent.
Bound unit(std::int64_t exponent) { return {1, exponent}; }

// The number of `count` groups, with zeros above and below them taken off, groups that the error makes worthless
// dropped, and no more than the working precision kept.
Real settled(const Group* groups, std::int64_t count, std::int64_t exponent, bool negative, Bound error) {
  Real x;
  while (count > 0 && groups[count - 1] == 0) --count;
  std::int64_t drop = std::max<std::int64_t>(count - workGroups, 0);
  if (error.m != 0 && !isInfinite(error)) drop = std::max(drop, std::min(count, error.e - 1 - exponent));
  if (isInfinite(error)) drop = std::max<std::int64_t>(count - 1, 0);
  if (drop > 0) {
    bool lost = false;
    for (std::int64_t i = 0; i < drop && !lost; ++i) lost = groups[i] != 0;
    groups += drop;
    count -= drop;
    exponent += drop;
    if (lost) error += unit(exponent);
  }
  while (count > 0 && groups[0] == 0) ++groups, --count, ++exponent;
  x.error = error;
  if (count == 0) return x;
  x.groups = groups;
  x.count = count;
  x.exponent = exponent;
  x.negative = negative;
  return x;
}

// Groups of x from exponent `bottom` on, n of them, into `to`; true when something below was cut off.
bool alignTo(Group* to, std::int64_t n, std::int64_t bottom, const Real& x) {
  std::fill(to, to + n, 0);
  const std::int64_t shift = x.exponent - bottom;
  const std::int64_t skip = std::max<std::int64_t>(-shift, 0);
  if (skip >= x.count) return true;
  std::copy(x.groups + skip, x.groups + x.count, to + std::max<std::int64_t>(shift, 0));
  return skip > 0;
}

}  // namespace

Real widened(Real x, Bound more) {
  if (more.m == 0) return x;
  return settled(x.groups, x.count, x.exponent, x.negative, x.error + more);
}
Complex widened(Complex z, Bound more) { return {widened(z.re, more), isReal(z) ? z.im : widened(z.im, more)}; }

Real operator-(Real x) {
  x.negative = !x.negative;
  return x;
}

Real operator+(const Real& a, const Real& b) {
  const Bound error = a.error + b.error;
  if (a.count == 0) return settled(b.groups, b.count, b.exponent, b.negative, error);
  if (b.count == 0) return settled(a.groups, a.count, a.exponent, a.negative, error);
  const std::int64_t top = std::max(a.exponent + a.count, b.exponent + b.count) + 1;
  const std::int64_t bottom = std::max(std::min(a.exponent, b.exponent), top - workGroups - 2);
  const std::int64_t n = top - bottom;
  const auto size = static_cast<std::size_t>(n);
  Group* x = allocateGroups(n);
  Group* y = allocateGroups(n);
  Bound lost;
  if (alignTo(x, n, bottom, a)) lost += unit(bottom);
  if (alignTo(y, n, bottom, b)) lost += unit(bottom);
  if (a.negative == b.negative) {
    addGroups(x, x, size, y, size);
    return settled(x, n, bottom, a.negative, error + lost);
  }
  const bool less = compareGroups(x, y, size) < 0;
  if (less) subtractGroups(x, y, size, x, size);
  else subtractGroups(x, x, size, y, size);
  return settled(x, n, bottom, less ? b.negative : a.negative, error + lost);
}
Real operator-(const Real& a, const Real& b) { return a + -b; }

namespace {

// What errors of the factors make of the product.
Bound productError(const Real& a, const Real& b) {
  Bound error;
  if (a.error.m != 0) error += a.error * upperBound(b);
  if (b.error.m != 0) error += middleBound(a) * b.error;
  return error;
}

}  // namespace

Real operator*(const Real& a, const Real& b) {
  if (isExactZero(a) || isExactZero(b)) return {};
  Bound error = productError(a, b);
  if (a.count == 0 || b.count == 0) return settled(nullptr, 0, 0, false, error);
  const std::int64_t n = a.count + b.count;
  Group* r = allocateGroups(n);
  const auto na = static_cast<std::size_t>(a.count), nb = static_cast<std::size_t>(b.count);
  const std::int64_t exponent = a.exponent + b.exponent;
  const bool negative = a.negative != b.negative;
  const std::int64_t first = n - workGroups - 3;
  constexpr std::int64_t longOperand = 200;
  if (first <= 0 || std::min(a.count, b.count) > longOperand) {
    multiplyGroups(r, a.groups, na, b.groups, nb);
    return settled(r, n, exponent, negative, error);
  }
  highProduct(r, a.groups, na, b.groups, nb, static_cast<std::size_t>(first));
  error += normalBound(static_cast<double>(std::min(a.count, b.count) + 1), exponent + first + 1);
  return settled(r + first, n - first, exponent + first, negative, error);
}

Real operator*(const Real& a, std::int64_t n) {
  if (n == 0 || isExactZero(a)) return {};
  const std::int64_t size = n < 0 ? -n : n;
  const Bound error = a.error.m == 0 ? Bound() : a.error * boundOf(static_cast<double>(size));
  if (a.count == 0) return settled(nullptr, 0, 0, false, error);
  Group* r = allocateGroups(a.count + 1);
  r[a.count] = scaleGroups(r, a.groups, static_cast<std::size_t>(a.count), static_cast<Group>(size));
  return settled(r, a.count + 1, a.exponent, a.negative != (n < 0), error);
}

Real operator/(const Real& a, std::int64_t n) {
  if (isExactZero(a)) return {};
  const std::int64_t size = n < 0 ? -n : n;
  Bound error = a.error.m == 0 ? Bound() : a.error / boundOf(static_cast<double>(size) / 1.0000000000001);
  if (a.count == 0) return settled(nullptr, 0, 0, false, error);
  // No more places than the error leaves.
  std::int64_t more = std::max<std::int64_t>(workGroups + 1 - a.count, 0);
  if (error.m != 0) more = std::clamp<std::int64_t>(a.exponent - error.e + 1, 0, more);
  Group* r = allocateGroups(a.count + more);
  std::fill(r, r + more, 0);
  std::copy(a.groups, a.groups + a.count, r + more);
  if (divideGroupsBy(r, r, static_cast<std::size_t>(a.count + more), static_cast<Group>(size)) != 0)
    error += unit(a.exponent - more);
  return settled(r, a.count + more, a.exponent - more, a.negative != (n < 0), error);
}

Real operator/(const Real& a, const Real& b) {
  if (isExactZero(a)) return {};
  const Bound below = lowerBound(b);
  Bound error;
  if (a.error.m != 0) error += a.error / below;
  if (b.error.m != 0 || below.m == 0) error += middleBound(a) / middleBound(b) * b.error / below;
  if (below.m == 0) error = Bound{1, 0} / Bound{};
  if (a.count == 0 || b.count == 0) return settled(nullptr, 0, 0, false, error);
  // The dividend gets as many groups as make a quotient of the working precision.
  const std::int64_t n = b.count + workGroups;
  Group* dividend = allocateGroups(n);
  const std::int64_t bottom = a.exponent + a.count - n;
  alignTo(dividend, n, bottom, a);
  Group* quotient = allocateGroups(workGroups + 1);
  quotientOfGroups(quotient, dividend, static_cast<std::size_t>(n), b.groups, static_cast<std::size_t>(b.count));
  const std::int64_t exponent = bottom - b.exponent;
  // A divisor of one group begins with a group of any size, which magnifies what was cut off the dividend.
  const bool cutOff = a.count > n;
  error += Bound{cutOff ? 2.0 : 1.0, exponent + (cutOff && b.count == 1 ? 1 : 0)};
  return settled(quotient, workGroups + 1, exponent, a.negative != b.negative, error);
}

Real sqrt(const Real& x) {
  if (isExactZero(x)) return {};
  if (x.count == 0 || x.negative || mayBeZero(x)) {
    // All that is known is a bound.
    const Bound up = upperBound(x);
    return settled(nullptr, 0, 0, false, powerOfTenBound(log10Of(up) / 2 + 1e-9));
  }
  // An even exponent, and a top group of a hundredth of the base or more, by squares of powers of ten.
  const bool odd = ((x.exponent + x.count) & 1) != 0;
  Group scale = 1;
  std::int64_t rootScale = odd ? 100000000 : 1;
  while (x.groups[x.count - 1] * scale < groupBase / 100) scale *= 100, rootScale *= 10;
  const std::int64_t half = workGroups + 1, n = 2 * half;
  Group* a = allocateGroups(n);
  const std::int64_t bottom = x.exponent + x.count - n;
  bool lost = alignTo(a, n, bottom, x);
  scaleGroups(a, a, static_cast<std::size_t>(n), scale);
  Group* s = allocateGroups(half);
  lost = rootOfGroups(s, a, static_cast<std::size_t>(half)) || lost;
  const std::int64_t rootExponent = (bottom + (odd ? 1 : 0)) / 2;
  Bound error;
  if (lost) error = {2, rootExponent};
  const Real root = settled(s, half, rootExponent, false, error) / rootScale;
  return widened(root, x.error / lowerBound(root));
}

Real cut(const Real& x, std::int64_t lowest) {
  const std::int64_t drop = lowest - x.exponent;
  if (x.count == 0 || drop <= 0) return x;
  const std::int64_t kept = std::max<std::int64_t>(x.count - drop, 0);
  Bound error = x.error + unit(lowest);
  if (kept == 0) return settled(nullptr, 0, 0, false, error);
  return settled(x.groups + drop, kept, lowest, x.negative, error);
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
