#include "library/native/special/elliptic.h"

#include <cmath>

#include "library/native/special/elementary_balls.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

constexpr int mostSteps = 40;
// Each duplication divides the differences by 4.
constexpr int mostDuplications = 200000;

struct MeanSteps {
  Complex mean, squares;  // squares: sum of 2^(n - 1) (a(n) - b(n))^2/4 ... over the steps
};

// The means of a = 1 and b, Re b >= 0: roots in the right half plane are the right choice.
MeanSteps meanSteps(const Complex& b0, const Complex& modulusSquared) {
  Complex a(1), b = b0, sum = modulusSquared / 2;
  std::int64_t weight = 1;
  for (int step = 0; step < mostSteps; ++step) {
    const Complex difference = (a - b) / 2;
    const Bound apart = upperBound(difference);
    const Complex c = square(difference);
    if (apart < upperBound(a) * powerOfTenBound(-workDigits() / 2 - 2)) {
      // The next mean is off by less than c^2/a.
      const Bound rest = apart * apart / lowerBound(a) * boundOf(2);
      const Complex last = (a + b) / 2;
      sum = widened(sum + c * weight, apart * apart * boundOf(1e-3 * static_cast<double>(weight)));
      return {widened(last, rest), sum};
    }
    sum = sum + c * weight;
    const Complex next = (a + b) / 2;
    b = sqrt(a) * sqrt(b);
    a = next;
    weight *= 2;
  }
  return {unknown(), unknown()};
}

Complex complementOf(const Complex& k) { return (Complex(1) - k) * (k + 1); }

}  // namespace

Complex arithmeticGeometricMean(const Complex& a, const Complex& b) {
  const Complex ratio = b / a;
  return a * meanSteps(ratio, Complex(0)).mean;
}

Complex ellipticK(const Complex& k) { return Complex(pi()) / (meanSteps(sqrt(complementOf(k)), Complex(0)).mean * 2); }

Complex ellipticE(const Complex& k) {
  const Complex complement = complementOf(k);
  if (isExactZero(complement)) return 1;
  const MeanSteps steps = meanSteps(sqrt(complement), square(k));
  return Complex(pi()) / (steps.mean * 2) * (Complex(1) - steps.squares);
}

// ---- Carlson's integrals

namespace {

Bound smallEnough() { return powerOfTenBound(-workDigits() / 6 - 0.5); }

// RF(x, y, z), the integral of 1/2 ((t + x)(t + y)(t + z))^(-1/2) from 0 to infinity.
Complex carlsonF(Complex x, Complex y, Complex z) {
  const Scratch scratch;
  for (int step = 0; step < mostDuplications; ++step) {
    const Complex a = (x + y + z) / 3;
    const Complex dx = a - x, dy = a - y;
    const Bound size = larger(larger(upperBound(dx), upperBound(dy)), upperBound(a - z)) / lowerBound(a);
    if (size < smallEnough()) {
      const Complex u = dx / a, v = dy / a, w = -(u + v);
      const Complex e2 = u * v - square(w), e3 = u * v * w;
      const Complex sum = Complex(1) - e2 / 10 + e3 / 14 + square(e2) / 24 - e2 * e3 * 3 / 44;
      const Bound left = size * size * size * size * size * size;
      Complex value = sum / sqrt(a);
      const Bound error = left * upperBound(value);
      if (isReal(x) && isReal(y) && isReal(z)) return widened(value, error);
      return {widened(value.re, error), widened(value.im, error)};
    }
    const Complex rx = sqrt(x), ry = sqrt(y), rz = sqrt(z);
    const Complex lambda = rx * ry + rx * rz + ry * rz;
    x = (x + lambda) / 4;
    y = (y + lambda) / 4;
    z = (z + lambda) / 4;
    scratch.keep(x, y, z);
    if (isInfinite(size) && step > 8) break;
    passLimbWork(100);
  }
  return unknown();
}

// RC(1, 1 + e), the sum of (-e)^k/(2k + 1) continued: arctan(sqrt(e))/sqrt(e).
Complex carlsonC(const Complex& e) {
  if (isExactZero(e)) return 1;
  if (doubleOf(upperBound(e)) < 0.5) {
    const Complex upper[] = {Complex(Real(1) / 2), Complex(1)}, lower[] = {Complex(Real(3) / 2)};
    return hypergeometricSum(upper, 2, lower, 1, -e);
  }
  const Complex root = sqrt(e), turned = timesI(root);
  return -timesI(ln((Complex(1) + turned) / (Complex(1) - turned)) / root) / 2;
}

// RJ(x, y, z, p), the integral of 3/2 ((t + x)(t + y)(t + z))^(-1/2)/(t + p) from 0 to infinity.
Complex carlsonJ(Complex x, Complex y, Complex z, Complex p) {
  const bool real = isReal(x) && isReal(y) && isReal(z) && isReal(p);
  Complex delta = (p - x) * (p - y) * (p - z), sum(0), weight(1);
  const Scratch scratch;
  for (int step = 0; step < mostDuplications; ++step) {
    const Complex a = (x + y + z + p * 2) / 5;
    const Complex dx = a - x, dy = a - y, dz = a - z;
    const Bound size =
        larger(larger(upperBound(dx), upperBound(dy)), larger(upperBound(dz), upperBound(a - p))) / lowerBound(a);
    if (size < smallEnough()) {
      const Complex u = dx / a, v = dy / a, w = dz / a, q = -(u + v + w) / 2;
      const Complex e2 = u * v + u * w + v * w - square(q) * 3, product = u * v * w;
      const Complex e3 = product + e2 * q * 2 + square(q) * q * 4;
      const Complex e4 = (product * 2 + e2 * q + square(q) * q * 3) * q, e5 = product * square(q);
      const Complex series =
          Complex(1) - e2 * 3 / 14 + e3 / 6 + square(e2) * 9 / 88 - e4 * 3 / 22 - e2 * e3 * 9 / 52 + e5 * 3 / 26;
      const Complex last = weight * series / (a * sqrt(a));
      const Complex value = last + sum * 6;
      const Bound cube = size * size * size, error = cube * cube * upperBound(last) * boundOf(3);
      if (real) return widened(value, error);
      return {widened(value.re, error), widened(value.im, error)};
    }
    const Complex rx = sqrt(x), ry = sqrt(y), rz = sqrt(z), rp = sqrt(p);
    const Complex lambda = rx * ry + rx * rz + ry * rz;
    const Complex d = (rp + rx) * (rp + ry) * (rp + rz);
    sum = sum + weight / d * carlsonC(delta / square(d));
    delta = delta / 64;
    weight = weight / 4;
    x = (x + lambda) / 4;
    y = (y + lambda) / 4;
    z = (z + lambda) / 4;
    p = (p + lambda) / 4;
    scratch.keep(x, y, z, p, delta, sum, weight);
    if (isInfinite(size) && step > 8) break;
    passLimbWork(200);
  }
  return unknown();
}

}  // namespace

Complex ellipticPi(const Complex& n, const Complex& k) {
  const Complex complement = complementOf(k), p = Complex(1) - n;
  if (isExactZero(n)) return ellipticK(k);
  return ellipticK(k) + n * carlsonJ(Complex(0), complement, Complex(1), p) / 3;
}

Complex ellipticF(const Complex& z, const Complex& k) {
  return z * carlsonF(complementOf(z), complementOf(k * z), Complex(1));
}

Complex ellipticE(const Complex& z, const Complex& k) {
  const Complex x = complementOf(z), y = complementOf(k * z), one(1);
  if (isExactZero(complementOf(k))) return z;
  const Complex first = carlsonF(x, y, one);
  if (isExactZero(k)) return z * first;
  return z * (first - square(k * z) * carlsonJ(x, y, one, one) / 3);
}

Complex ellipticPi(const Complex& z, const Complex& n, const Complex& k) {
  const Complex x = complementOf(z), y = complementOf(k * z), one(1), squared = square(z);
  const Complex first = z * carlsonF(x, y, one);
  if (isExactZero(n)) return first;
  return first + n * z * squared * carlsonJ(x, y, one, one - n * squared) / 3;
}

}  // namespace korel::special
