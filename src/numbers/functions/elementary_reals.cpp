#include "numbers/functions/elementary_reals.h"

#include <algorithm>
#include <cmath>

#include "frame/errors.h"

namespace korel {
namespace reals {

namespace {

// ---- Taylor series of fixed-point numbers: rows of n limbs behind the point

// Which series: the k-th coefficient is the one before it divided by `factor(k)`.
struct Series {
  std::int64_t (*factor)(std::int64_t k);
  bool alternating;
};
constexpr Series exponentialSeries = {[](std::int64_t k) { return k; }, false};
constexpr Series sineSeries = {[](std::int64_t k) { return 2 * k * (2 * k + 1); }, true};
constexpr Series hyperbolicSeries = {[](std::int64_t k) { return 2 * k * (2 * k + 1); }, false};
constexpr Series cosineSeries = {[](std::int64_t k) { return (2 * k - 1) * 2 * k; }, true};
// 2 (1 - cos y) / y^2 in powers of y^2.
constexpr Series versineSeries = {[](std::int64_t k) { return (2 * k + 1) * (2 * k + 2); }, true};

// Terms until one falls below 2^-bits, for an argument below 2^-size.
std::int64_t termsFor(const Series& series, std::int64_t bits, std::int64_t size) {
  double sum = 0;
  std::int64_t k = 1;
  for (; sum < static_cast<double>(bits) + 2; ++k)
    sum += static_cast<double>(size) + std::log2(static_cast<double>(series.factor(k)));
  return k;
}

// A sum in progress: n limbs behind the point and two before it, negative numbers as complements.
struct Accumulator {
  Limb* row;
  std::size_t n;

  bool isNegative() const { return row[n + 1] >> 63 != 0; }
  void add(const Limb* power, Limb c) {
    const Limb carry = power == nullptr ? c : addScaled(row, power, n, c);
    row[n] += carry;
    row[n + 1] += row[n] < carry ? 1 : 0;
  }
  void subtract(const Limb* power, Limb c) {
    const Limb borrow = subtractScaled(row, power, n, c), before = row[n];
    row[n] -= borrow;
    row[n + 1] -= before < borrow ? 1 : 0;
  }
  void divide(Limb d) {
    const bool negative = isNegative();
    if (negative) negateLimbs(row, row, n + 2);
    divideLimbs(row, row, n + 2, d);
    if (negative) negateLimbs(row, row, n + 2);
  }
  // Times a fraction; not for negative sums.
  void multiply(const Limb* power, Limb* scratch) {
    const Limb whole = row[n], above = row[n + 1];
    multiplyHigh(scratch, row, power, n);
    copyLimbs(row, scratch, n);
    row[n] = whole == 0 ? 0 : addScaled(row, power, n, whole);
    row[n + 1] = above == 0 ? 0 : addScaled(row + 1, power, n, above);
  }
};

// The sum of `terms` terms at z, a row of n limbs: n limbs behind the point and one before it.
Limb* seriesSum(const Series& series, const Limb* z, std::size_t n, std::int64_t terms) {
  Limb* sum = limbSpace(n + 2);
  clearLimbs(sum, n + 2);
  LimbMark mark;
  // An even number of powers, so that each block of an alternating series begins with a positive term.
  const auto block =
      std::max<std::int64_t>(2, static_cast<std::int64_t>(std::sqrt(static_cast<double>(terms)) / 2) * 2);
  Limb* powers = limbSpace(static_cast<std::size_t>(block + 1) * n);
  auto power = [&](std::int64_t j) { return powers + static_cast<std::size_t>(j) * n; };
  copyLimbs(power(1), z, n);
  for (std::int64_t j = 2; j <= block && j < terms + 1; ++j)
    multiplyHigh(power(j), j % 2 == 0 ? power(j / 2) : power(j - 1), j % 2 == 0 ? power(j / 2) : power(1), n);
  Limb* scratch = limbSpace(n);
  Accumulator all{sum, n};
  // Coefficients are integers over a common denominator, which is divided out when they outgrow a limb.
  Limb c = 1;
  for (std::int64_t k = terms - 1; k >= 0; --k) {
    const std::int64_t j = k % block;
    if (j == 0) all.add(nullptr, c);
    else if (series.alternating && j % 2 != 0) all.subtract(power(j), c);
    else all.add(power(j), c);
    if (k == 0) break;
    const DoubleLimb next = DoubleLimb{c} * static_cast<Limb>(series.factor(k));
    if (next >> 63 != 0) {
      all.divide(c);
      c = static_cast<Limb>(series.factor(k));
    } else {
      c = static_cast<Limb>(next);
    }
    if (j == 0) all.multiply(power(block), scratch);
    passLimbWork(n);
  }
  all.divide(c);
  return sum;
}

// The row of n limbs behind the point of x, 0 <= x < 1.
Limb* fixedRow(const Real& x, std::size_t n) {
  Limb* row = limbSpace(n);
  clearLimbs(row, n);
  if (x.sign == 0) return row;
  const std::int64_t down = -x.exponent;
  const auto whole = static_cast<std::size_t>(down / 64);
  if (whole >= n) return row;
  const std::size_t room = n - whole, common = std::min<std::size_t>(room, x.size);
  copyLimbs(row + room - common, x.limbs + x.size - common, common);
  shiftLimbsDown(row, row, room, static_cast<unsigned>(down % 64));
  return row;
}

// row * 2^-(64 n), with `above` limbs more before the point.
Real realOfFixed(Limb* row, std::size_t n, std::size_t above) {
  std::size_t length = n + above;
  while (length > 0 && row[length - 1] == 0) --length;
  if (length == 0) return {};
  const auto shift = static_cast<unsigned>(__builtin_clzll(row[length - 1]));
  shiftLimbsUp(row, row, length, shift);
  Real r;
  r.sign = 1;
  r.exponent = (static_cast<std::int64_t>(length) - static_cast<std::int64_t>(n)) * 64 - shift;
  r.size = static_cast<std::uint32_t>(length);
  r.limbs = row;
  return r;
}

// How often an argument is halved: with as many more terms each, the products balance.
std::int64_t halvingsFor(std::int64_t bits, double factor) {
  return static_cast<std::int64_t>(factor * std::sqrt(static_cast<double>(bits))) + 2;
}

// e^x - 1 for 0 <= x < 0.7, as a row of n limbs behind the point.
Limb* fixedExpMinusOne(const Real& x, std::size_t n) {
  Limb* value = limbSpace(n);
  LimbMark mark;
  const std::int64_t bits = static_cast<std::int64_t>(n) * 64;
  const std::int64_t halvings =
      std::max<std::int64_t>(0, halvingsFor(bits, 0.9) + std::min<std::int64_t>(x.exponent, 0));
  const Real y = scaled(x, -halvings);
  const Limb* z = fixedRow(y, n);
  Limb* sum =
      seriesSum(exponentialSeries, z, n, termsFor(exponentialSeries, bits, -std::min<std::int64_t>(y.exponent, 0)));
  // The whole part of the sum is 1.
  Limb* next = limbSpace(n);
  copyLimbs(value, sum, n);
  for (std::int64_t i = 0; i < halvings; ++i) {
    // (1 + f)^2 = 1 + 2 f + f^2
    multiplyHigh(next, value, value, n);
    addLimbs(value, value, value, n);
    addLimbs(value, value, next, n);
    passLimbWork(n);
  }
  return value;
}

// 1 moved by less than the last bit, for functions that only just differ from it.
Real beside(int direction) {
  Limb* row = limbSpace(workingLimbs);
  const std::size_t n = workingLimbs;
  for (std::size_t i = 0; i < n; ++i) row[i] = direction < 0 ? ~Limb{0} : 0;
  if (direction > 0) {
    row[n - 1] |= Limb{1} << 63;
    row[0] |= 1;
  }
  Real r;
  r.sign = 1;
  r.size = static_cast<std::uint32_t>(n);
  r.exponent = direction < 0 ? 0 : 1;
  r.limbs = row;
  return r;
}

std::size_t fixedLimbs(std::int64_t bits) { return static_cast<std::size_t>((bits + 63) / 64); }

// x + x^2/2 + ... term by term, for small x.
Real smallExpMinusOne(const Real& x) {
  Real term = cut(x), sum = term;
  for (std::int64_t k = 2; !isNegligible(term, sum); ++k) {
    term = dividedBy(term * x, k);
    sum = sum + term;
  }
  return sum;
}

}  // namespace

Real exp(const Real& x) {
  if (x.sign == 0) return Real(1);
  if (x.exponent > 45) {
    Real r(1);
    r.exponent = x.sign * outOfRange;
    return r;
  }
  if (x.exponent < 1 - workingBits()) return beside(x.sign);
  LimbMark mark;
  // Each squaring doubles what is off.
  const std::size_t n = fixedLimbs(workingBits() + halvingsFor(workingBits(), 0.9) + 16);
  std::int64_t k = 0;
  Real rest;
  {
    Precision p(n + (x.exponent > 0 ? 1 : 0));
    k = static_cast<std::int64_t>(std::floor(doubleOf(x) / 0.6931471805599453));
    rest = k == 0 ? x : x - times(lnTwo(), k);
    // The double may be off by one beside a multiple.
    if (rest.sign < 0) {
      --k;
      rest = rest + lnTwo();
    }
    if (rest.exponent > 0 || compare(rest, lnTwo()) >= 0) {
      ++k;
      rest = rest - lnTwo();
      if (rest.sign < 0) rest = Real();
    }
  }
  Limb* f = fixedExpMinusOne(rest, n);
  Limb* row = limbSpace(n + 1);
  copyLimbs(row, f, n);
  row[n] = 1;
  return scaled(keep(cut(realOfFixed(row, n, 1)), mark), k);
}

Real expMinusOne(const Real& x) {
  if (x.sign == 0) return x;
  if (x.exponent > 0) return exp(x) - Real(1);
  LimbMark mark;
  if (-8 * x.exponent > workingBits()) return keep(smallExpMinusOne(x), mark);
  Real r;
  {
    Precision p(limbsWith(2 - x.exponent));
    r = exp(x) - Real(1);
  }
  return keep(cut(r), mark);
}

namespace {

// ---- logarithm

// 2 artanh(u) by its series, for small u.
Real smallLn(const Real& u) {
  const Real square = u * u;
  Real power = cut(u), sum = power;
  for (std::int64_t k = 3; !isNegligible(power, sum); k += 2) {
    power = power * square;
    sum = sum + dividedBy(power, k);
  }
  return scaled(sum, 1);
}

// ln m for m in 0.7 .. 1.42 to `bits` bits behind the point, seven times as many as one step before.
Real lnNearOne(const Real& m, std::int64_t bits) {
  if (bits <= 50) return realOfDouble(std::log(doubleOf(m)));
  LimbMark mark;
  const Real y = lnNearOne(m, bits / 7 + 4);
  Real value;
  {
    Precision p(fixedLimbs(bits + 10));
    const Real e = exp(y), c = cut(m), difference = c - e;
    // The correction itself needs fewer bits.
    Precision q(fixedLimbs(bits - bits / 7 + 74));
    const Real w = difference / (c + e), square = w * w;
    const Real series = w * (Real(1) + square * (dividedBy(Real(1), 3) + dividedBy(square, 5)));
    Precision r(fixedLimbs(bits + 10));
    value = y + scaled(series, 1);
  }
  return keep(value, mark);
}

}  // namespace

Real lnOnePlus(const Real& x) {
  if (x.sign == 0) return x;
  if (x.exponent > -2) return ln(Real(1) + x);
  LimbMark mark;
  if (-16 * x.exponent > workingBits()) return keep(smallLn(x / (Real(2) + x)), mark);
  Real r;
  {
    Precision p(limbsWith(2 - x.exponent));
    r = lnNearOne(Real(1) + x, workingBits());
  }
  return keep(cut(r), mark);
}

Real ln(const Real& x) {
  LimbMark mark;
  std::int64_t k = x.exponent;
  Real m = scaled(x, -k);
  if (doubleOf(m) < 0.70710678) {
    m = scaled(m, 1);
    --k;
  }
  if (k == 0) {
    Real apart;
    {
      Precision p(std::max<std::size_t>(workingLimbs, x.size));
      apart = x - Real(1);
    }
    // Beside 1 the leading bits of the logarithm are zeros.
    if (apart.exponent <= -2 || apart.sign == 0) return keep(lnOnePlus(apart), mark);
    return keep(cut(lnNearOne(m, workingBits())), mark);
  }
  return keep(cut(lnNearOne(m, workingBits()) + times(lnTwo(), k)), mark);
}

Real power(const Real& x, const Real& y) {
  if (y.sign == 0) return Real(1);
  LimbMark mark;
  Real r;
  {
    // As many bits more as stand before the point of the product.
    Precision p(limbsWith(std::clamp<std::int64_t>(y.exponent, 0, 100) + 44));
    r = exp(ln(absolute(x)) * y);
  }
  return keep(cut(r), mark);
}

// ---- sine and cosine

namespace {

// An integer Real modulo 4.
int modulo4(const Real& k) {
  if (k.sign == 0 || k.exponent <= 0) return 0;
  const std::int64_t all = static_cast<std::int64_t>(k.size) * 64;
  // The bits of weight 1 and 2 stand all - exponent places above the lowest.
  const std::int64_t place = all - k.exponent;
  auto bit = [&](std::int64_t i) -> int {
    return i < 0 || i >= all ? 0 : static_cast<int>(k.limbs[i / 64] >> (i % 64) & 1);
  };
  const int low = bit(place) + 2 * bit(place + 1);
  return k.sign < 0 ? (4 - low) % 4 : low;
}

struct Reduced {
  Real rest;    // |rest| <= Pi/4, to the working precision
  int quarter;  // x is the rest and so many times Pi/2, modulo 4
};

Reduced reduceByPi(const Real& x) {
  if (x.exponent < 0) return {x, 0};
  if (x.exponent > longestReduction) {
    releaseAllLimbs();
    KernelException("object too large");
  }
  for (std::int64_t more = x.exponent + 4;;) {
    Real k, rest;
    {
      Precision p(limbsWith(more));
      const Real half = scaled(pi(), -1);
      {
        Precision q(fixedLimbs(x.exponent + 64));
        k = nearest(cut(x) / cut(half));
      }
      rest = x - k * half;
    }
    const std::int64_t lost = x.exponent - rest.exponent;
    if (rest.sign != 0 && lost <= more - 2) return {rest, modulo4(k)};
    more = rest.sign == 0 ? 2 * more + 64 : lost + 64;
  }
}

// Both functions of 0 < t <= Pi/4.
void smallSineCosine(const Real& t, Real* sine, Real* cosine) {
  const std::int64_t bits = workingBits();
  const std::int64_t least = halvingsFor(bits, 0.8);
  if (-t.exponent >= least) {
    // Short series without halving.
    LimbMark mark;
    Real results[2];
    std::size_t count = 0;
    if (-2 * t.exponent > bits + 8) {
      if (sine != nullptr) results[count++] = cut(t);
      if (cosine != nullptr) results[count++] = 2 * t.exponent > 4 - bits ? Real(1) - scaled(t * t, -1) : beside(-1);
    } else {
      const std::size_t n = fixedLimbs(bits + 16);
      const Real square = t * t;
      const Limb* z = fixedRow(square, n);
      if (sine != nullptr)
        results[count++] =
            t * cut(realOfFixed(seriesSum(sineSeries, z, n, termsFor(sineSeries, bits + 16, -square.exponent)), n, 1));
      if (cosine != nullptr)
        results[count++] =
            cut(realOfFixed(seriesSum(cosineSeries, z, n, termsFor(cosineSeries, bits + 16, -square.exponent)), n, 1));
    }
    keepAll(results, count, mark);
    if (sine != nullptr) *sine = results[0];
    if (cosine != nullptr) *cosine = results[count - 1];
    return;
  }
  // v = 2 - 2 cos y for the halved y; each doubling makes v (4 - v) of it.
  LimbMark mark;
  const std::int64_t halvings = least + t.exponent;
  const std::size_t n = fixedLimbs(bits + 2 * least + 16);
  Real y, square;
  {
    Precision p(n);
    y = scaled(t, -halvings);
    square = y * y;
  }
  const Limb* z = fixedRow(square, n);
  Limb* sum =
      seriesSum(versineSeries, z, n, termsFor(versineSeries, static_cast<std::int64_t>(n) * 64, -square.exponent));
  Limb* v = limbSpace(n);
  Limb* next = limbSpace(n);
  // The sum lies just below 1, or is 1.
  if (sum[n] != 0) copyLimbs(v, z, n);
  else multiplyHigh(v, sum, z, n);
  for (std::int64_t i = 0; i < halvings; ++i) {
    multiplyHigh(next, v, v, n);
    shiftLimbsUp(v, v, n, 2);
    subtractLimbs(v, v, next, n);
    passLimbWork(n);
  }
  const Real w = realOfFixed(v, n, 0);
  Real results[2];
  std::size_t count = 0;
  if (sine != nullptr) results[count++] = sqrt(w - scaled(w * w, -2));
  if (cosine != nullptr) results[count++] = Real(1) - scaled(w, -1);
  keepAll(results, count, mark);
  if (sine != nullptr) *sine = results[0];
  if (cosine != nullptr) *cosine = results[count - 1];
}

}  // namespace

std::int64_t bitsBesidePi(const Real& x) {
  if (x.sign == 0 || x.exponent < 0) return 0;
  if (x.exponent > longestReduction) return 0;
  LimbMark mark;
  // To as many limbs as x has.
  const std::int64_t known = workingBits();
  if (x.exponent > known - 64) return x.exponent + 64;
  const Real half = scaled(pi(), -1), rest = x - nearest(x / half) * half;
  const std::int64_t lost = rest.sign == 0 ? known : x.exponent - rest.exponent;
  return lost > known - 4 ? -1 : lost;
}

void sineCosine(const Real& x, Real* sine, Real* cosine) {
  if (x.sign == 0) {
    if (sine != nullptr) *sine = Real();
    if (cosine != nullptr) *cosine = Real(1);
    return;
  }
  LimbMark mark;
  const Reduced r = reduceByPi(x);
  const bool turned = r.quarter % 2 != 0;
  Real s, c;
  smallSineCosine(absolute(r.rest), (turned ? cosine : sine) != nullptr ? &s : nullptr,
                  (turned ? sine : cosine) != nullptr ? &c : nullptr);
  s.sign *= r.rest.sign;
  Real results[2] = {turned ? c : s, turned ? s : c};
  if (r.quarter >= 2) results[0].sign = -results[0].sign;
  if (r.quarter == 1 || r.quarter == 2) results[1].sign = -results[1].sign;
  keepAll(results, 2, mark);
  if (sine != nullptr) *sine = results[0];
  if (cosine != nullptr) *cosine = results[1];
}

// ---- arc tangent

namespace {

Real smallArctan(const Real& x) {
  const Real square = -(x * x);
  Real power = cut(x), sum = power;
  for (std::int64_t k = 3; !isNegligible(power, sum); k += 2) {
    power = power * square;
    sum = sum + dividedBy(power, k);
  }
  return sum;
}

// arctan x for |x| <= 1 to `bits` bits behind the point.
Real arctanNewton(const Real& x, std::int64_t bits) {
  if (bits <= 50) return realOfDouble(std::atan(doubleOf(x)));
  LimbMark mark;
  const Real y = arctanNewton(x, bits / 7 + 4);
  Real value;
  {
    Precision p(fixedLimbs(bits + 10));
    Real s, c;
    sineCosine(y, &s, &c);
    const Real a = cut(x), difference = a * c - s, sum = c + a * s;
    Precision q(fixedLimbs(bits - bits / 7 + 74));
    const Real w = difference / sum, square = w * w;
    const Real series = w * (Real(1) - square * (dividedBy(Real(1), 3) - dividedBy(square, 5)));
    Precision r(fixedLimbs(bits + 10));
    value = y + series;
  }
  return keep(value, mark);
}

}  // namespace

Real arctan(const Real& x) {
  if (x.sign == 0) return x;
  LimbMark mark;
  if (x.exponent > 0 && compareMagnitudes(x, Real(1)) > 0) {
    const Real half = scaled(pi(), -1), rest = arctan(Real(1) / absolute(x));
    Real r = half - rest;
    r.sign = x.sign;
    return keep(r, mark);
  }
  if (-16 * x.exponent > workingBits()) return keep(smallArctan(x), mark);
  Real r;
  {
    Precision p(limbsWith(2 - x.exponent));
    r = arctanNewton(x, workingBits());
  }
  return keep(cut(r), mark);
}

Real angle(const Real& y, const Real& x) {
  LimbMark mark;
  if (x.sign == 0) {
    Real r = scaled(pi(), -1);
    r.sign = y.sign;
    return r;
  }
  if (y.sign == 0) return x.sign < 0 ? pi() : Real();
  Real r = arctan(absolute(y) / absolute(x));
  if (x.sign < 0) r = pi() - r;
  r.sign = y.sign;
  return keep(r, mark);
}

// ---- hyperbolic functions

void hyperbolicSineCosine(const Real& x, Real* sine, Real* cosine) {
  LimbMark mark;
  Real results[2];
  const std::int64_t bits = workingBits();
  if (x.exponent <= -halvingsFor(bits, 0.8) || x.sign == 0) {
    const std::size_t n = fixedLimbs(bits + 16);
    const Real square = x * x;
    const Limb* z = fixedRow(square, n);
    const std::int64_t terms = x.sign == 0 ? 1 : termsFor(hyperbolicSeries, bits + 16, -square.exponent);
    results[0] = x * cut(realOfFixed(seriesSum(hyperbolicSeries, z, n, terms), n, 1));
    if (cosine != nullptr)
      results[1] = x.sign == 0                 ? Real(1)
                   : 2 * x.exponent < 4 - bits ? beside(1)
                                               : sqrt(Real(1) + results[0] * results[0]);
  } else {
    Precision p(limbsWith(2 - x.exponent));
    const Real e = exp(absolute(x)), i = Real(1) / e;
    results[0] = scaled(e - i, -1);
    results[0].sign *= x.sign;
    results[1] = scaled(e + i, -1);
  }
  results[0] = cut(results[0]);
  results[1] = cut(results[1]);
  keepAll(results, 2, mark);
  if (sine != nullptr) *sine = results[0];
  if (cosine != nullptr) *cosine = results[1];
}

Real tanh(const Real& x) {
  if (x.sign == 0) return x;
  LimbMark mark;
  // Beyond this it differs from 1 by less than the last bit.
  if (x.exponent > 62 || std::fabs(doubleOf(x)) > 0.35 * static_cast<double>(workingBits()) + 10) {
    Real r = beside(-1);
    r.sign = x.sign;
    return keep(r, mark);
  }
  Real s, c;
  hyperbolicSineCosine(x, &s, &c);
  return keep(s / c, mark);
}

// ln(x + sqrt(1 + x^2)) = ln(1 + (x + x^2 / (1 + sqrt(1 + x^2)))) for x > 0
Real arcsinh(const Real& x) {
  if (x.sign == 0) return x;
  LimbMark mark;
  const Real a = absolute(x), square = a * a, root = sqrt(Real(1) + square);
  Real r = lnOnePlus(a + square / (Real(1) + root));
  r.sign = x.sign;
  return keep(r, mark);
}

}  // namespace reals
}  // namespace korel
