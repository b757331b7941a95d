#include "library/native/special/gamma_taylor.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "library/native/special/elementary_balls.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

// ---- coefficients d(k) of 1/gamma(1 + x) = sum d(k) x^k

// Outside the stack of limbs: rows of binary places, lowest limb first, for k >= 1; d(0) = 1. All are below 1.
struct Table {
  Limb* rows = nullptr;
  signed char* signs = nullptr;
  std::int64_t* sizes = nullptr;  // of the terms from k on none reaches 2^sizes[k]
  std::int64_t count = 0, limbs = 0;
  Bound error;  // of each
};
Table table;

// Precision for which coefficients are kept, and how many values by another way pay for a table, a limb of it.
constexpr std::int64_t longestRows = 64, valuesPerLimb = 3;
std::int64_t valuesAsked = 0;

// x in fixed point, without its sign: less than a unit of the last place is cut off.
void fixedRow(Limb* row, const reals::Real& x, std::size_t n) {
  clearLimbs(row, n);
  const auto down = static_cast<std::size_t>(-x.exponent);
  if (x.sign == 0 || down / 64 >= n) return;
  const std::size_t room = n - down / 64, used = std::min<std::size_t>(room, x.size);
  const unsigned bits = down % 64;
  copyLimbs(row + room - used, x.limbs + x.size - used, used);
  Limb* lowest = row + room - used;
  const Limb below = bits != 0 && used < room ? lowest[0] << (64 - bits) : 0;
  shiftLimbsDown(lowest, lowest, used, bits);
  if (used < room) lowest[-1] = below;
}

// How many terms are enough for `bits` binary places at |x| <= 1/2. By Cauchy's bound on a circle of radius R, where
// |1/gamma(z)| is at most 1.13 e^(Pi R/2) (R + 1)^(R + 1/2).
std::int64_t termsFor(std::int64_t bits) {
  const double wanted = static_cast<double>(bits + 2) * std::numbers::ln2;
  double fewest = INFINITY;
  for (double radius = 1; radius < static_cast<double>(bits); radius *= 1.1) {
    const double size = 0.13 + std::numbers::pi / 2 * radius + (radius + 0.5) * std::log(radius + 1);
    fewest = std::min(fewest, (size + wanted) / std::log(2 * radius));
  }
  return static_cast<std::int64_t>(fewest) + 2;
}

// c(k) = d(k - 1), from the logarithm of gamma: (k - 1) c(k) = gamma c(k - 1) - zeta(2) c(k - 2) + zeta(3) c(k - 3) ...
void coefficients(Real* c, std::int64_t last) {
  auto* zeta = numberSpace<Real>(last + 1);
  zeta[1] = eulerGamma();
  for (std::int64_t k = 2; k <= last; ++k) zeta[k] = riemannZeta(Complex(k)).re;
  c[1] = 1;
  for (std::int64_t k = 2; k <= last; ++k) {
    Real sum;
    const Scratch scratch;
    for (std::int64_t i = 1; i < k; ++i) {
      const Real term = cut(zeta[i] * c[k - i], -workLimbs() - 1);
      sum = i % 2 == 0 ? sum - term : sum + term;
      scratch.keep(sum);
    }
    c[k] = sum / (k - 1);
    scratch.keep(c[k]);
    passLimbWork(static_cast<std::size_t>(k * workLimbs() * workLimbs()));
  }
}

void computeTable(std::int64_t limbs) {
  const std::int64_t n = termsFor(64 * limbs);
  const reals::Precision longer(static_cast<std::size_t>(limbs + 1));
  auto* c = numberSpace<Real>(n + 2);
  coefficients(c, n + 1);
  const auto width = static_cast<std::size_t>(limbs), count = static_cast<std::size_t>(n);
  auto* rows = static_cast<Limb*>(std::malloc(count * width * sizeof(Limb)));
  auto* signs = static_cast<signed char*>(std::malloc(count));
  auto* sizes = static_cast<std::int64_t*>(std::malloc((count + 1) * sizeof(std::int64_t)));
  if (rows == nullptr || signs == nullptr || sizes == nullptr) {
    std::free(rows);
    std::free(signs);
    std::free(sizes);
    return;
  }
  Bound error;
  sizes[n] = -64 * limbs - 1;
  for (std::int64_t k = n - 1; k >= 1; --k) {
    const Real& d = c[k + 1];
    fixedRow(rows + static_cast<std::size_t>(k) * width, d.middle, width);
    signs[k] = static_cast<signed char>(d.middle.sign);
    error = larger(error, d.error);
    sizes[k] = std::max(sizes[k + 1], d.middle.sign == 0 ? sizes[n] : d.middle.exponent - k);
  }
  std::free(table.rows);
  std::free(table.signs);
  std::free(table.sizes);
  table = {rows, signs, sizes, n, limbs, error + powerOfTwoBound(-64 * limbs)};
}

// Whether there are coefficients for the working precision.
bool isReady() {
  const std::int64_t limbs = workLimbs() + 1;
  if (limbs <= table.limbs) return true;
  if (limbs > longestRows || ++valuesAsked < valuesPerLimb * limbs) return false;
  valuesAsked = 0;
  const Scratch scratch;
  computeTable(limbs + limbs / 8);
  scratch.keep();
  return limbs <= table.limbs;
}

// ---- the sum

// sum += d, both with signs, n limbs; their true sum is below 1.
void addSigned(Limb* sum, int& sign, const Limb* d, int signOfD, std::size_t n) {
  if (sign == signOfD) {
    addLimbs(sum, sum, d, n);
  } else if (compareLimbs(sum, d, n) >= 0) {
    subtractLimbs(sum, sum, d, n);
  } else {
    subtractLimbs(sum, d, sum, n);
    sign = signOfD;
  }
}

// 1/gamma(1 + x) for a middle of x in [-1/2, 1/2].
Real reciprocalBesideOne(const Real& x) {
  const auto n = static_cast<std::size_t>(workLimbs() + 1), width = static_cast<std::size_t>(table.limbs);
  const std::int64_t places = -64 * static_cast<std::int64_t>(n);
  const Bound unit = powerOfTwoBound(places);
  Limb *factor = limbSpace(n), *sum = limbSpace(n);
  fixedRow(factor, x.middle, n);
  clearLimbs(sum, n);
  std::int64_t k = table.count;
  while (k > 1 && table.sizes[k - 1] < places) --k;
  int sign = 1;
  std::size_t used = 0;  // limbs of the sum that aren't 0, from the lowest
  const auto terms = static_cast<double>(k);
  while (--k >= 1) {
    // Horner's rule: sum = d(k) + x sum, of the upper limbs of x as many as the sum has.
    if (used > 0) multiplyHigh(sum, sum, factor + n - used, used);
    sign *= x.middle.sign;
    addSigned(sum, sign, table.rows + static_cast<std::size_t>(k + 1) * width - n, table.signs[k], n);
    used = significantLimbs(sum, n);
  }
  multiplyHigh(sum, sum, factor, n);
  sign *= x.middle.sign;
  reals::Real rest = reals::realOfRow(sign, sum, n);
  rest.exponent += places;
  // Each step loses some units of the last place, of which the next keeps half; so does what the coefficients are off
  // by. The terms left out are below one unit each. The derivative is below 1.5.
  const Bound error =
      unit * boundOf(16 + terms + static_cast<double>(table.count)) + table.error * boundOf(2) + x.error * boundOf(1.5);
  return widened(Real(1) + Real(rest, {}), error);
}

}  // namespace

bool reciprocalGammaByTaylor(const Complex& z, Real& value) {
  if (!isReal(z)) return false;
  const double size = toDouble(z.re), most = 40 + 4 * static_cast<double>(workLimbs());
  if (!(std::abs(size) < most) || !(doubleOf(z.re.error) < 0.01) || !isReady()) return false;
  const Real whole = nearestInteger(z.re), x = z.re - whole;
  const std::int64_t n = reals::wholeNumber(whole.middle);
  // gamma(1 + x) = gamma(z) / ((1 + x) ... (z - 1)), or times z (z + 1) ... x
  const Real beside = reciprocalBesideOne(x);
  if (n == 1) value = beside;
  else if (n > 1) value = beside / risingProduct(Complex(z.re - Real(n - 1)), n - 1).re;
  else value = beside * risingProduct(z, 1 - n).re;
  return true;
}

}  // namespace korel::special
