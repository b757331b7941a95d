#include "library/native/special/hypergeometric_values.h"

#include <algorithm>
#include <cmath>

#include "library/native/special/bessel.h"
#include "library/native/special/elementary_balls.h"
#include "library/native/special/hypergeometric_at_one.h"
#include "library/native/special/hypergeometric_path.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

constexpr double seriesRadius = 0.75;
constexpr double longestSeries = 100000;

double sizeOf(const Complex& z) { return std::hypot(toDouble(z.re), toDouble(z.im)); }

bool endsSeries(const Complex* a, int p) {
  return std::any_of(a, a + p, [](const Complex& x) { return isPole(x); });
}

// ---- 2F1 along a path, from Taylor series of its differential equation

struct Point {
  Complex value, derivative;
};
struct Parameters {
  Complex a, b, c;
};

// Value and derivative at z0 + h from those at z0; |h| is at most a quarter of the distance from z0 to 0 and 1, so
// that the
// errors of the terms fall as well.
Point step(const Parameters& f, const Complex& z0, const Complex& h, const Point& at) {
  const Complex lead = z0 * (Complex(1) - z0), slope = Complex(1) - z0 * 2;
  const Complex base = f.c - (f.a + f.b + 1) * z0;
  // Each product of complex numbers widens the error of a term, so that there is one a term.
  const Complex share = h / lead, twice = h * share, constant = base * share, linear = slope * share;
  Complex before = at.value, now = at.derivative * h;  // u(k) h^k and the next
  Complex value = before + now, derivative = now;
  const double parameters = 2 * (sizeOf(f.a) + sizeOf(f.b) + sizeOf(f.c)) + 8;
  const Scratch scratch;
  for (std::int64_t k = 0;; ++k) {
    const Complex next =
        ((f.a + Real(k)) * (f.b + Real(k)) * twice * before - (linear * k + constant) * (k + 1) * now) /
        ((k + 2) * (k + 1));
    before = now;
    now = next;
    value = value + now;
    derivative = derivative + now * (k + 2);
    scratch.keep(before, now, value, derivative);
    passLimbWork(50);
    const Bound left = larger(upperBound(before), upperBound(now)) * boundOf(4 * static_cast<double>(k + 2));
    // As the terms fall, their errors come to the fore in the end.
    const bool isKnown = !mayBeZero(before) || !mayBeZero(now);
    if (static_cast<double>(k) > parameters &&
        (!isKnown || left < upperBound(value) * powerOfTenBound(-workDigits() - 1)))
      return {widened(value, left), widened(derivative, left) / h};
    if (k > 1000000) return {giveUp(), unknown()};
  }
}

// From `at` at z0 straight on to z1.
Point walk(const Parameters& f, Complex z0, const Complex& z1, Point at) {
  for (int steps = 0; steps < 5000; ++steps) {
    const Complex rest = z1 - z0;
    if (isExactZero(rest)) return at;
    const double reach = 0.25 * std::min(sizeOf(z0), sizeOf(Complex(1) - z0)), length = sizeOf(rest);
    if (length <= reach * 1.05) return step(f, z0, rest, at);
    // A short number as the share of the way, so that the points between are short as well.
    Complex h = rest * realOfDouble(static_cast<float>(reach / length));
    h.re.error = h.im.error = {};
    at = step(f, z0, h, at);
    z0 = z0 + h;
    z0.re.error = z0.im.error = {};
  }
  return {giveUp(), unknown()};
}

Point startAt(const Parameters& f, const Complex& z) {
  const Complex upper[] = {f.a, f.b}, lower[] = {f.c}, upper1[] = {f.a + 1, f.b + 1}, lower1[] = {f.c + 1};
  return {hypergeometricSum(upper, 2, lower, 1, z), f.a * f.b / f.c * hypergeometricSum(upper1, 2, lower1, 1, z)};
}

// Around 1 on the side of z; the cut itself belongs to the lower one.
Complex alongPath(const Parameters& f, const Complex& z) {
  const double re = toDouble(z.re), im = toDouble(z.im);
  const double size = std::hypot(re, im);
  if (size < 1 || std::abs(std::atan2(im, re)) > 0.6) {
    const Real share = realOfDouble(size < 512 ? std::floor(512 / size) / 1024 : 0.5 / size);
    Complex start = z * share;
    start.re.error = start.im.error = {};
    return walk(f, start, z, startAt(f, start)).value;
  }
  const Real side(im > 0 ? 1 : -1);
  const Complex first(Real(1) / 4, side * 3 / 8), second(Real(5) / 4, side * 3 / 4);
  Point at = walk(f, first, second, startAt(f, first));
  return walk(f, second, z, at).value;
}

// Near 1 from the two functions at 1 - z, unless the excess c - a - b of the powers there is close to an integer.
bool besideOne(const Parameters& f, const Complex& z, Complex& value) {
  const Complex rest = Complex(1) - z, excess = f.c - f.a - f.b, one(1);
  if (!(sizeOf(rest) < 0.25) || sizeOf(excess - nearestInteger(excess.re)) < 0.01) return false;
  const Complex upper[] = {f.a, f.b}, lower[] = {one - excess}, upper1[] = {f.c - f.a, f.c - f.b};
  const Complex lower1[] = {excess + 1};
  const Complex first =
      gamma(excess) * reciprocalGamma(knownInteger(upper1[0])) * reciprocalGamma(knownInteger(upper1[1]));
  const Complex second = gamma(-excess) * reciprocalGamma(f.a) * reciprocalGamma(f.b);
  value = gamma(f.c) * (first * hypergeometricSum(upper, 2, lower, 1, rest) +
                        second * power(rest, excess) * hypergeometricSum(upper1, 2, lower1, 1, rest));
  return true;
}

Complex gauss(const Parameters& f, const Complex& z) {
  const Complex upper[] = {f.a, f.b}, lower[] = {f.c};
  const double size = sizeOf(z);
  if (size <= seriesRadius) return hypergeometricSum(upper, 2, lower, 1, z);
  if (isExactZero(z - 1)) {
    const Complex excess = knownInteger(f.c - f.a - f.b);
    if (!(toDouble(excess.re) > 0)) return giveUp();
    return gamma(f.c) * gamma(excess) * reciprocalGamma(knownInteger(f.c - f.a)) *
           reciprocalGamma(knownInteger(f.c - f.b));
  }
  if (signOf(z.re) < 0) {
    // Pfaff: (1 - z)^-a 2F1(a, c - b; c; z/(z - 1))
    Complex inner = z / (z - 1);
    const Parameters turned{f.a, f.c - f.b, f.c};
    if (isExactZero(turned.b)) return power(Complex(1) - z, -f.a);
    return power(Complex(1) - z, -f.a) * gauss(turned, inner);
  }
  if (!std::isfinite(size)) return giveUp();
  Complex value;
  return besideOne(f, z, value) ? value : alongPath(f, z);
}

// 1F1(a; b; z) for large z from its two asymptotic parts, U(a, b, z) and e^z U(b - a, b, -z).
bool largeKummer(const Complex& a, const Complex& b, const Complex& z, Complex& value) {
  if (!isAsymptotic(z)) return false;
  bool first, second;
  const Complex falling = asymptoticSum(a, a - b + 1, z, first);
  if (!first) return false;
  const Complex growing = asymptoticSum(b - a, Complex(1) - a, -z, second);
  if (!second) return false;
  // -z comes from z by half a turn towards the positive axis.
  const int side = isNegative(z.im) ? -1 : 1;
  const Complex turn = cosPi(a) + timesI(sinPi(a)) * side, log = ln(z);
  const Complex low = turn * exp(-(a * log)) * falling * reciprocalGamma(b - a);
  const Complex high = exp(z + (a - b) * log) * growing * reciprocalGamma(a);
  value = gamma(b) * (low + high);
  // On either side of the axis the same real number is the mean of two conjugates.
  if (isReal(a) && isReal(b) && isReal(z)) value = value.re;
  return true;
}

// 0F1(; b; z) for large z, a function of Bessel of 2 sqrt(z).
bool largeBessel(const Complex& b, const Complex& z, Complex& value) {
  const bool oscillates = isReal(z) && isNegative(z.re);
  const Complex root = sqrt(oscillates ? -z : z);
  if (!isAsymptotic(root * 4)) return false;
  const Complex order = b - 1;
  value = oscillates ? besselJ(order, root * 2) : besselI(order, root * 2);
  value = gamma(b) * exp(-(order * ln(root))) * value;
  return true;
}

// 2F0(a, b; z), which is w^a U(a, a - b + 1, w) for w = -1/z.
Complex tricomi(const Complex& a, const Complex& b, const Complex& z) {
  const Complex w = Complex(-1) / z;
  if (isAsymptotic(w)) {
    bool reached;
    const Complex sum = asymptoticSum(a, b, w, reached);
    if (reached) return sum;
  }
  const Complex c = a - b + 1;
  std::int64_t n;
  if (isMachineInteger(c, n) || !(sizeOf(w) < longestSeries)) return giveUp();
  const Complex upper[] = {a}, lower[] = {c}, upper1[] = {b}, lower1[] = {Complex(2) - c};
  const Complex first = gamma(Complex(1) - c) * reciprocalGamma(b) * hypergeometricSum(upper, 1, lower, 1, w);
  const Complex second = gamma(c - 1) * reciprocalGamma(a) * hypergeometricSum(upper1, 1, lower1, 1, w);
  return power(w, a) * first + power(w, b) * second;
}

}  // namespace

Complex hypergeometric(const Complex* a, int p, const Complex* b, int q, const Complex& z) {
  if (isExactZero(z)) return 1;
  const double size = sizeOf(z);
  if (endsSeries(a, p)) return hypergeometricSum(a, p, b, q, z);
  Complex value;
  if (p == 1 && q == 1 && largeKummer(a[0], b[0], z, value)) return value;
  if (p == 0 && q == 1 && largeBessel(b[0], z, value)) return value;
  // Kummer: on the left the terms of e^z 1F1(b - a; b; -z) don't cancel.
  if (p == 1 && q == 1 && signOf(z.re) < 0 && size > 10 && size < longestSeries) {
    const Complex other[] = {b[0] - a[0]};
    return exp(z) * hypergeometricSum(other, 1, b, 1, -z);
  }
  // The terms grow as long as their ratio z/k^(q + 1 - p) is above 1.
  if (p <= q) return std::pow(size, 1.0 / (q + 1 - p)) < longestSeries ? hypergeometricSum(a, p, b, q, z) : giveUp();
  if (p == 1) return power(Complex(1) - z, -a[0]);
  if (p == 2 && q == 1) return gauss({a[0], a[1], b[0]}, z);
  if (p == q + 1 && size <= seriesRadius) return hypergeometricSum(a, p, b, q, z);
  if (p == q + 1 && isExactZero(z - 1)) return hypergeometricAtOne(a, b, q);
  if (p == q + 1) return hypergeometricAlongPath(a, b, q, z);
  if (p == 2 && q == 0) return tricomi(a[0], a[1], z);
  return giveUp();
}

// ---- orthogonal polynomials

namespace {

constexpr std::int64_t largestDegree = 1000000;

// True for degrees 0, 1, 2, ... that the recurrence takes.
bool isDegree(const Complex& n, std::int64_t& degree) {
  return isMachineInteger(n, degree) && degree >= 0 && degree <= largestDegree;
}

// p(k + 1) from p(k) and p(k - 1) by `next`, up to p(n).
template <class Next>
Complex recurrence(std::int64_t n, const Complex& zeroth, const Complex& first, Next next) {
  if (n == 0) return zeroth;
  Complex before = zeroth, now = first;
  const Scratch scratch;
  for (std::int64_t k = 1; k < n; ++k) {
    const Complex after = next(k, now, before);
    before = now;
    now = after;
    scratch.keep(before, now);
    passLimbWork(50);
  }
  return now;
}

Complex half(const Complex& x) { return (Complex(1) - x) / 2; }
// 2F1(a, b; c; (1 - x)/2), which is cut along x < -1.
Complex atHalf(const Complex& a, const Complex& b, const Complex& c, const Complex& x) {
  const Complex upper[] = {a, b}, lower[] = {c};
  return hypergeometric(upper, 2, lower, 1, half(x));
}
// Whether gamma(sum)/gamma(n + 1) is 0: the functions of degrees -1, -2, ... vanish.
bool isFactorZero(const Complex& n, const Complex& sum) { return isPole(n + 1) && !isPole(knownInteger(sum)); }
// binomial(n + a, n)
Complex shiftedBinomial(const Complex& n, const Complex& a) {
  return gamma(knownInteger(n + a + 1)) * reciprocalGamma(n + 1) * reciprocalGamma(a + 1);
}

}  // namespace

namespace {

// Degrees up to this one come from their recurrences.
constexpr std::int64_t smallDegree = 60;

// P_n(cos t) of a real degree n by the expansion of Stieltjes for large n sin t. What it leaves out is below twice the
// next term without its cosine (G. Szegoe, "Orthogonal polynomials", theorem 8.21.5).
bool stieltjesSum(const Real& n, const Real& x, Real& value) {
  const Real sine = sqrt((Real(1) - x) * (x + Real(1)));
  const double size = toDouble(n);
  if (mayBeZero(sine) || !(toDouble(sine) * 2 * size * 0.4342 > workDigits() + 3)) return false;
  const Real twice = n * 2;
  const Complex step = Complex(sine, -x) / (sine * 2);  // e^(it)/(2i sin t)
  const Real angle = argument(Complex(x, sine));
  const Complex factor = exp(timesI(Complex(angle * (twice + Real(1)) / 2 - pi() / 4)));
  Complex term = factor, sum = factor;
  const Bound small = powerOfTenBound(-workDigits());
  const Scratch scratch;
  for (std::int64_t m = 1; static_cast<double>(m) < 4 * size; ++m) {
    const std::int64_t odd = 2 * m - 1;
    const Complex next = term * step * (odd * odd) / ((twice + Real(2 * m + 1)) * (2 * m));
    const Bound left = upperBound(absolute(next)) * boundOf(2);
    if (!(upperBound(absolute(next)) < upperBound(absolute(term)))) return false;
    if (left < small) {
      const Real ratio = (gamma(Complex(n + Real(1))) * reciprocalGamma(Complex(n + Real(3) / 2))).re;
      value = widened(sum.re, left) * ratio * sqrt(Real(2) / (pi() * sine));
      return true;
    }
    term = next;
    sum = sum + term;
    scratch.keep(term, sum);
    passLimbWork(50);
  }
  return false;
}

// P_n(x) of a high degree for a real x >= 0: by a sum of positive terms beyond 1, before it by the expansion or, near
// 1, the sum at 1.
Complex highLegendre(std::int64_t n, const Real& x) {
  const Complex degree(n), one[] = {Complex(1)};
  const Real above = x + Real(1), below = x - Real(1);
  if (signOf(below) > 0) {
    const Complex upper[] = {-degree, -degree};
    return integerPower(Complex(halved(above)), n) * hypergeometricSum(upper, 2, one, 1, Complex(below / above));
  }
  Real value;
  if (stieltjesSum(Real(n), x, value)) return value;
  const Complex upper[] = {-degree, degree + 1};
  return hypergeometricSum(upper, 2, one, 1, -halved(below));
}

// The exponential of the angle whose cosine is x: x + i sqrt(1 - x^2), or one beyond 1.
Complex turnOf(const Complex& x) {
  const Complex square = (Complex(1) - x) * (x + 1);
  if (isReal(square) && signOf(square.re) < 0) {
    const Real root = sqrt(-square.re);
    return isNegative(x.re) ? x.re - root : x.re + root;
  }
  return x + timesI(sqrt(square));
}

}  // namespace

Complex legendreP(const Complex& n, const Complex& x) {
  std::int64_t degree;
  if (isDegree(-n - 1, degree)) return legendreP(-n - 1, x);
  if (!isDegree(n, degree)) {
    // The same function for -n - 1.
    const bool isLeft = toDouble(n.re) < -0.5;
    Real value;
    if (isReal(n) && isReal(x) && std::abs(toDouble(n.re)) > smallDegree && std::abs(toDouble(x.re)) < 1 &&
        stieltjesSum(isLeft ? -n.re - Real(1) : n.re, x.re, value))
      return value;
    return atHalf(-n, n + 1, Complex(1), x);
  }
  if (degree > smallDegree && isReal(x)) {
    if (isExactZero(x) && degree % 2 == 1) return 0;
    const Complex value = highLegendre(degree, absolute(x.re));
    return isNegative(x.re) && degree % 2 == 1 ? -value : value;
  }
  return recurrence(degree, Complex(1), x, [&](std::int64_t k, const Complex& now, const Complex& before) {
    return (x * now * (2 * k + 1) - before * k) / (k + 1);
  });
}

Complex chebyshevT(const Complex& n, const Complex& x) {
  std::int64_t degree;
  if (isDegree(-n, degree) && degree > 0) return chebyshevT(-n, x);
  if (!isDegree(n, degree)) return atHalf(-n, n, Complex(Real(1) / 2), x);
  if (degree > smallDegree) {
    const Complex w = integerPower(turnOf(x), degree), value = (w + Complex(1) / w) / 2;
    return isReal(x) ? Complex(value.re) : value;
  }
  return recurrence(degree, Complex(1), x,
                    [&](std::int64_t, const Complex& now, const Complex& before) { return x * now * 2 - before; });
}

Complex chebyshevU(const Complex& n, const Complex& x) {
  std::int64_t degree;
  if (isDegree(-n - 2, degree)) return -chebyshevU(-n - 2, x);
  if (isExactZero(n + 1)) return 0;
  if (!isDegree(n, degree)) return (n + 1) * atHalf(-n, n + Real(2), Complex(Real(3) / 2), x);
  if (isExactZero((x - 1) * (x + 1))) return isNegative(x.re) && degree % 2 == 1 ? -(n + 1) : n + 1;
  if (degree > smallDegree) {
    const Complex turn = turnOf(x), w = integerPower(turn, degree + 1), one(1);
    const Complex value = (w - one / w) / (turn - one / turn);
    return isReal(x) ? Complex(value.re) : value;
  }
  return recurrence(degree, Complex(1), x * 2,
                    [&](std::int64_t, const Complex& now, const Complex& before) { return x * now * 2 - before; });
}

Complex hermiteH(const Complex& n, const Complex& x) {
  std::int64_t degree;
  if (isDegree(n, degree))
    return recurrence(degree, Complex(1), x * 2, [&](std::int64_t k, const Complex& now, const Complex& before) {
      return (x * now - before * k) * 2;
    });
  const Complex halfN = n / 2, x2 = square(x), a = -halfN, b = Complex(Real(1) / 2) - halfN;
  if (signOf(x.re) > 0 && isAsymptotic(x2)) {
    // (2x)^n 2F0(-n/2, (1 - n)/2; -1/x^2)
    bool reached;
    const Complex sum = asymptoticSum(a, b, x2, reached);
    if (reached) return power(x * 2, n) * sum;
  }
  const Complex upper[] = {a}, lower[] = {Complex(Real(1) / 2)}, upper1[] = {b}, lower1[] = {Complex(Real(3) / 2)};
  const Complex even = reciprocalGamma(b) * hypergeometric(upper, 1, lower, 1, x2);
  const Complex odd = x * 2 * reciprocalGamma(a) * hypergeometric(upper1, 1, lower1, 1, x2);
  return power(Complex(2), n) * sqrt(pi()) * (even - odd);
}

Complex laguerreL(const Complex& n, const Complex& a, const Complex& x) {
  std::int64_t degree;
  if (isDegree(n, degree) && (degree <= smallDegree || isPole(a + 1)))
    return recurrence(degree, Complex(1), a + 1 - x, [&](std::int64_t k, const Complex& now, const Complex& before) {
      return ((a - x + Real(2 * k + 1)) * now - (a + Real(k)) * before) / (k + 1);
    });
  if (isFactorZero(n, n + a + 1)) return 0;
  const Complex upper[] = {-n}, lower[] = {a + 1};
  return shiftedBinomial(n, a) * hypergeometric(upper, 1, lower, 1, x);
}

Complex gegenbauerC(const Complex& n, const Complex& a, const Complex& x) {
  std::int64_t degree;
  if (isDegree(n, degree))
    return recurrence(degree, Complex(1), a * x * 2, [&](std::int64_t k, const Complex& now, const Complex& before) {
      return (x * now * (a + Real(k)) * 2 - (a * 2 + Real(k - 1)) * before) / (k + 1);
    });
  const Complex twice = a * 2;
  const Complex sum = knownInteger(twice + n);
  if (isFactorZero(n, sum)) return 0;
  std::int64_t whole;
  // gamma(n + 2 a)/gamma(n + 1) is a product then, at the poles of both as well.
  if (isMachineInteger(twice, whole) && whole > 0 && whole < 1000)
    return risingProduct(n + 1, whole - 1) * reciprocalGamma(twice) * atHalf(-n, sum, a + Complex(Real(1) / 2), x);
  return gamma(sum) * reciprocalGamma(n + 1) * reciprocalGamma(twice) * atHalf(-n, sum, a + Complex(Real(1) / 2), x);
}

Complex jacobiP(const Complex& n, const Complex& a, const Complex& b, const Complex& x) {
  std::int64_t degree;
  if (isFactorZero(n, n + a + 1)) return 0;
  if (!isDegree(n, degree)) return shiftedBinomial(n, a) * atHalf(-n, knownInteger(a + b + n + 1), a + 1, x);
  // The finite sum of binomial(n + a, n - k) binomial(n + b, k) ((x - 1)/2)^k ((x + 1)/2)^(n - k) holds for all a
  // and b.
  if (degree > smallDegree && !isPole(a + 1) && !isPole(b + 1)) {
    if (isExactZero(x) && degree % 2 == 1 && isExactZero(a - b)) return 0;
    if (isNegative(x.re)) {
      const Complex value = jacobiP(n, b, a, -x);
      return degree % 2 == 0 ? value : -value;
    }
    return shiftedBinomial(n, a) * atHalf(-n, knownInteger(a + b + n + 1), a + 1, x);
  }
  const Complex first = (a + 1) + (a + b + Real(2)) * (x - 1) / 2;
  if (degree <= 1) return degree == 0 ? Complex(1) : first;
  const Complex low = (x - 1) / 2, high = (x + 1) / 2;
  Complex sum(0);
  const Scratch scratch;
  for (std::int64_t k = 0; k <= degree; ++k) {
    Complex left(1), right(1);
    for (std::int64_t i = 1; i <= degree - k; ++i) left = left * (a + Real(k + i)) / i;
    for (std::int64_t i = 1; i <= k; ++i) right = right * (b + Real(degree - k + i)) / i;
    sum = sum + left * right * integerPower(low, k) * integerPower(high, degree - k);
    scratch.keep(sum);
    passLimbWork(static_cast<std::size_t>(50 * degree));
  }
  return sum;
}

}  // namespace korel::special
