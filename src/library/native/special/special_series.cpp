#include "library/native/special/special_series.h"

#include <algorithm>
#include <cmath>

#include "library/native/special/elementary_balls.h"

namespace korel::special {

bool hopeless = false;

double argumentPlaces = 0;

Complex knownInteger(const Complex& z) {
  const Real whole = nearestInteger(z.re);
  const Bound apart = upperBound(z.re - whole) + upperBound(z.im);
  return apart < powerOfTenBound(-argumentPlaces) * boundOf(0.5) ? Complex(whole) : z;
}

Complex unknown() { return widened(Real(), infiniteBound()); }
Complex giveUp() {
  hopeless = true;
  return unknown();
}

namespace {

// Terms beyond which a series is too long.
constexpr std::int64_t mostTerms = 3000000;

// What the ratios of all further terms are bounded by: factors (|a| + k)/(b + k), which fall towards 1, and 1/(b + k).
class RatioBound {
 public:
  RatioBound(const Complex* a, int p, const Complex* b, int q, const Complex& z)
      : p_(p), q_(q), z_(upperBound(absolute(z))) {
    for (int i = 0; i < p; ++i) upper_[i] = doubleOf(upperBound(a[i]));
    for (int i = 0; i < q; ++i) {
      const double re = toDouble(b[i].re);
      lower_[i] = re > 0 ? re * (1 - 1e-9) : -doubleOf(upperBound(b[i]));
    }
    lower_[q_++] = 1;
  }
  double after(std::int64_t k) const {
    const auto n = static_cast<double>(k);
    Bound ratio = z_;
    for (int i = 0; i < q_; ++i) {
      const double below = lower_[i] + n;
      if (below <= 0) return 2;
      ratio = ratio * boundOf(i < p_ ? std::max(1.0, (upper_[i] + n) / below) : 1 / below);
    }
    return doubleOf(ratio);
  }

 private:
  static constexpr int most = 32;
  int p_, q_;
  Bound z_;
  double upper_[most], lower_[most + 1];
};

}  // namespace

namespace {

// Whether the sum of real numbers may go without a bound for each step: parameters are exact and short, or positive.
bool isPlain(const Complex& x) {
  if (!isReal(x)) return false;
  return isExact(x.re) ? x.re.middle.size <= 2 || signOf(x.re) > 0 : signOf(x.re) > 0 && !mayBeZero(x.re);
}
Bound relativeError(const Real& x) { return isExact(x) ? Bound() : x.error / lowerBound(x); }

// A parameter m/2^s whose sums with the number of a term are machine numbers.
struct ShortParameter {
  std::int64_t m = 0;
  int s = 0;
};
bool isShort(const Real& x, ShortParameter& p) {
  constexpr int mostPlaces = 8, mostBits = 20;
  p = {};
  if (!isExact(x)) return false;
  if (x.middle.sign == 0) return true;
  if (x.middle.size > 1 || x.middle.exponent > mostBits || x.middle.exponent < -mostPlaces) return false;
  // The place of the lowest bit behind the point.
  p.s = std::max(0, 64 - __builtin_ctzll(x.middle.limbs[0]) - static_cast<int>(x.middle.exponent));
  if (p.s > mostPlaces) return false;
  reals::Real scaled = x.middle;
  scaled.exponent += p.s;
  p.m = reals::wholeNumber(scaled);
  return true;
}

// The factors of a term that are machine numbers, as one quotient times a power of two.
class ShortFactors {
 public:
  ShortFactors(const Complex* a, int p, const Complex* b, int q) : p_(p), q_(q) {
    all_ = p + q <= most;
    for (int i = 0; i < p + q && all_; ++i) all_ = isShort(i < p ? a[i].re : b[i - p].re, parameters_[i]);
    for (int i = 0; i < p + q && all_; ++i) shift_ += i < p ? -parameters_[i].s : parameters_[i].s;
  }
  /// Whether term k + 1 over term k is z numerator/denominator 2^shift in machine numbers.
  bool at(std::int64_t k, std::int64_t& numerator, std::int64_t& denominator) const {
    if (!all_) return false;
    numerator = 1, denominator = k + 1;
    bool fits = true;
    for (int i = 0; i < p_ + q_ && fits; ++i) {
      std::int64_t& product = i < p_ ? numerator : denominator;
      const std::int64_t factor = parameters_[i].m + (k << parameters_[i].s);
      fits = !__builtin_mul_overflow(product, factor, &product);
    }
    return fits && denominator != 0;
  }
  std::int64_t shift() const { return shift_; }

 private:
  static constexpr int most = 8;
  ShortParameter parameters_[most];
  int p_, q_;
  bool all_;
  std::int64_t shift_ = 0;
};

// The sum for real numbers, in plain floats: a term is off by the relative errors of all steps before it. Terms that
// have become small are cut, as far as the sum allows.
Complex realSum(const Complex* a, int p, const Complex* b, int q, const Real& z) {
  const auto full = static_cast<std::int64_t>(reals::workingLimbs);
  Bound input = relativeError(z);
  for (int i = 0; i < p; ++i) input += relativeError(a[i].re);
  for (int i = 0; i < q; ++i) input += relativeError(b[i].re);
  const RatioBound ratios(a, p, b, q, z);
  const ShortFactors factors(a, p, b, q);
  const Bound steps = boundOf(4.0 * (p + q) + 8);
  Bound relative, error;
  const Scratch scratch;
  Real term(1), sum(1);
  std::int64_t top = 1, limbs = full;
  for (std::int64_t k = 0; k < mostTerms; ++k) {
    {
      const reals::Precision shorter(static_cast<std::size_t>(limbs));
      if (std::int64_t above, below; factors.at(k, above, below)) {
        term.middle = reals::dividedBy(reals::times(term.middle * z.middle, above), below);
        if (term.middle.sign != 0) term.middle.exponent += factors.shift();
      } else {
        reals::Real numerator = z.middle, denominator(k + 1);
        for (int i = 0; i < p; ++i) numerator = numerator * (a[i].re.middle + reals::Real(k));
        for (int i = 0; i < q; ++i) denominator = denominator * (b[i].re.middle + reals::Real(k));
        term.middle = term.middle * numerator / denominator;
      }
    }
    if (term.middle.sign == 0) break;
    relative += input + steps * powerOfTwoBound(3 - 64 * limbs);
    error += middleBound(term) * relative;
    sum.middle = sum.middle + term.middle;
    top = std::max({top, term.middle.exponent, sum.middle.exponent});
    limbs = std::clamp<std::int64_t>(full + 1 - ((top - term.middle.exponent) >> 6), 1, full);
    error += powerOfTwoBound(top - 64 * full + 2);
    if ((k & 15) == 15) {
      scratch.keep(term, sum);
      passLimbWork(static_cast<std::size_t>(32 * limbs * (p + q + 2)));
    }
    if (top - term.middle.exponent < workBits()) continue;
    const double ratio = ratios.after(k + 1);
    if (ratio < 0.9999) {
      error += (middleBound(term) * boundOf(1.01)) * boundOf(ratio / (1 - ratio));
      break;
    }
  }
  return widened(sum, error);
}

}  // namespace

Complex hypergeometricSum(const Complex* a, int p, const Complex* b, int q, const Complex& z) {
  Complex term(1), sum(1);
  if (isExactZero(z)) return sum;
  if (isReal(z) && !mayBeZero(z.re) && doubleOf(relativeError(z.re)) < 1e-15 && std::all_of(a, a + p, isPlain) &&
      std::all_of(b, b + q, isPlain))
    return realSum(a, p, b, q, z.re);
  const RatioBound ratios(a, p, b, q, z);
  const Scratch scratch;
  std::int64_t top = 1;
  for (std::int64_t k = 0; k < mostTerms; ++k) {
    Complex numerator = z, denominator(k + 1);
    for (int i = 0; i < p; ++i) numerator = numerator * (a[i] + Real(k));
    for (int i = 0; i < q; ++i) denominator = denominator * (b[i] + Real(k));
    term = term * numerator / denominator;
    if (isExactZero(term)) return sum;
    top = std::max(top, topOf(term));
    term = cut(term, top - workLimbs() - 1);
    sum = sum + term;
    scratch.keep(term, sum);
    passLimbWork(20);
    if (topOf(term) > top - workLimbs()) continue;
    const double ratio = ratios.after(k + 1);
    if (ratio < 0.9999) return widened(sum, upperBound(term) * boundOf(ratio / (1 - ratio)));
  }
  return giveUp();
}

// The bounds are those of F. W. J. Olver, "On the asymptotic solution of second-order differential equations having an
// irregular singularity of rank one", 1965, for all arguments up to Pi.
Complex asymptoticSum(const Complex& a1, const Complex& a2, const Complex& w, bool& reached) {
  reached = false;
  const double size = doubleOf(lowerBound(w));
  const double sigma = doubleOf(upperBound(Complex(1) - a1 - a2)) / size;
  if (!(sigma < 0.5)) return unknown();
  const double alpha = 1 / (1 - sigma), apart = sigma * (1 + sigma / 4) * alpha * alpha;
  const double rho = doubleOf(upperBound(a1 * a2 * 2 - a1 - a2 + 1)) / 2 + apart;
  const double exponent = 2 * alpha * rho * 1.6 * (1 + sigma) * (1 + sigma) / size;
  if (!(exponent < 300)) return unknown();
  const double factor = 2 * alpha * std::exp(exponent);
  const double parameters = 1 + doubleOf(upperBound(a1)) + doubleOf(upperBound(a2));
  Complex term(1), sum(1);
  const Complex inverse = Complex(-1) / w;
  const Bound small = powerOfTenBound(-workDigits());
  const Scratch scratch;
  for (std::int64_t k = 0; k < mostTerms; ++k) {
    const Complex next = cut(term * (a1 + Real(k)) * (a2 + Real(k)) * inverse / (k + 1), -workLimbs() - 1);
    if (isExactZero(next)) {
      reached = true;
      return sum;
    }
    const auto n = static_cast<double>(k + 1);
    const double shape = (2 * std::sqrt(n + 2) + 2 * sigma * n) * std::exp(std::min(3 * sigma * sigma * n, 300.0));
    const bool falls = upperBound(next) < upperBound(term);
    const bool isSmall = upperBound(next) < small;
    if (isSmall || (!falls && n > parameters)) {
      reached = isSmall;
      const Bound left = upperBound(next) * boundOf(factor * shape);
      sum = widened(sum, left);
      // On the negative axis there is more than the series shows, off the real line.
      if (isReal(w) && isNegative(w.re)) sum.im = widened(sum.im, left);
      return sum;
    }
    term = next;
    sum = sum + term;
    scratch.keep(term, sum);
    passLimbWork(20);
  }
  return giveUp();
}

bool isAsymptotic(const Complex& w) {
  const Bound size = lowerBound(w);
  // The smallest term is about e^-|w|.
  return doubleOf(size) * 0.4342 > workDigits() + 3;
}

}  // namespace korel::special
