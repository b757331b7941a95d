#include "numbers/functions/real.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korel {
namespace reals {

std::size_t workingLimbs = 3;

std::size_t limbsForDigits(std::int64_t digits) {
  return static_cast<std::size_t>(static_cast<double>(digits) * 3.3219280948873626 + 40) / 64 + 1;
}

namespace {

// The number of a row of n limbs, top limb maybe 0, that stands for row * 2^(exponent - 64 n); cut to `most` limbs.
Real normalized(int sign, Limb* row, std::size_t n, std::int64_t exponent, std::size_t most) {
  while (n > 0 && row[n - 1] == 0) {
    --n;
    exponent -= 64;
  }
  if (n == 0) return {};
  const auto shift = static_cast<unsigned>(__builtin_clzll(row[n - 1]));
  // One limb more than is kept comes along to give its bits.
  if (n > most + 1) {
    row += n - most - 1;
    n = most + 1;
  }
  if (shift != 0) shiftLimbsUp(row, row, n, shift);
  if (n > most) {
    row += n - most;
    n = most;
  }
  while (row[0] == 0) {
    ++row;
    --n;
  }
  Real r;
  r.sign = sign;
  r.exponent = exponent - shift;
  r.size = static_cast<std::uint32_t>(n);
  r.limbs = row;
  return r;
}

// The highest n limbs of x, with zeros below.
void loadTop(Limb* row, const Real& x, std::size_t n) {
  if (x.size >= n) {
    copyLimbs(row, x.limbs + x.size - n, n);
    return;
  }
  clearLimbs(row, n - x.size);
  copyLimbs(row + n - x.size, x.limbs, x.size);
}

// Writes x's limbs, moved down by `shift` bits, into a row of n limbs.
void loadShifted(Limb* row, const Real& x, std::size_t n, std::int64_t shift) {
  const auto whole = static_cast<std::size_t>(shift / 64);
  const auto bits = static_cast<unsigned>(shift % 64);
  clearLimbs(row, n);
  if (whole >= n) return;
  const std::size_t room = n - whole;
  // The limb below the room gives its upper bits to the lowest.
  if (x.size > room) {
    const Limb* from = x.limbs + x.size - room;
    shiftLimbsDown(row, from, room, bits);
    return;
  }
  Limb* to = row + room - x.size;
  shiftLimbsDown(to, x.limbs, x.size, bits);
  if (bits != 0 && x.size < room) to[-1] = x.limbs[0] << (64 - bits);
}

// a + b or a - b in magnitude, |a| >= |b|, with the sign of a.
Real combine(const Real& a, const Real& b, bool subtract) {
  const std::int64_t shift = a.exponent - b.exponent;
  const std::size_t working = workingLimbs + 1;
  if (shift > static_cast<std::int64_t>(working) * 64) return cut(a);
  // Short operands make short sums.
  const std::size_t needed = std::max<std::size_t>(a.size, (static_cast<std::size_t>(shift) + 63) / 64 + b.size);
  const std::size_t n = std::min(working, needed);
  Limb* row = limbSpace(2 * n + 1);
  Limb* other = row + n + 1;
  loadTop(row, a, n);
  loadShifted(other, b, n, shift);
  if (subtract) {
    subtractLimbs(row, row, other, n);
    row[n] = 0;
  } else {
    row[n] = addLimbs(row, row, other, n);
  }
  return normalized(a.sign, row, n + 1, a.exponent + 64, workingLimbs);
}

Real sumOf(const Real& a, const Real& b, int signOfB) {
  if (b.sign == 0) return cut(a);
  if (a.sign == 0) {
    Real r = cut(b);
    r.sign = signOfB;
    return r;
  }
  const int order = compareMagnitudes(a, b);
  const bool subtract = a.sign != signOfB;
  if (order == 0 && subtract) return {};
  if (order >= 0) return combine(a, b, subtract);
  Real r = combine(b, a, subtract);
  r.sign = signOfB;
  return r;
}

Limb magnitudeOf(std::int64_t n) { return n < 0 ? 0 - static_cast<Limb>(n) : static_cast<Limb>(n); }

}  // namespace

Real::Real(std::int64_t n) {
  if (n == 0) return;
  Limb* row = limbSpace(1);
  row[0] = magnitudeOf(n);
  *this = normalized(n < 0 ? -1 : 1, row, 1, 64, 1);
}

Real cut(Real x) {
  if (x.size > workingLimbs) {
    x.limbs += x.size - workingLimbs;
    x.size = static_cast<std::uint32_t>(workingLimbs);
  }
  return x;
}

Real keep(const Real& x, LimbMark& mark) {
  mark.release();
  if (x.size == 0) return x;
  Real r = x;
  Limb* row = limbSpace(x.size);
  copyLimbs(row, x.limbs, x.size);
  r.limbs = row;
  return r;
}
void keepAll(Real* x, std::size_t count, LimbMark& mark) {
  // By way of the top of the stack, above all of them.
  std::size_t all = 0;
  for (std::size_t i = 0; i < count; ++i) all += x[i].size;
  Limb* row = limbSpace(all);
  for (std::size_t i = 0; i < count; ++i) {
    if (x[i].size == 0) continue;
    copyLimbs(row, x[i].limbs, x[i].size);
    x[i].limbs = row;
    row += x[i].size;
  }
  mark.release();
  for (std::size_t i = 0; i < count; ++i) {
    if (x[i].size == 0) continue;
    row = limbSpace(x[i].size);
    copyLimbs(row, x[i].limbs, x[i].size);
    x[i].limbs = row;
  }
}

Real operator+(const Real& a, const Real& b) { return sumOf(a, b, b.sign); }
Real operator-(const Real& a, const Real& b) { return sumOf(a, b, -b.sign); }
Real operator-(Real a) {
  a.sign = -a.sign;
  return a;
}
Real absolute(Real a) {
  a.sign = a.sign == 0 ? 0 : 1;
  return a;
}
Real scaled(Real x, std::int64_t k) {
  x.exponent += k;
  return x;
}

Real operator*(const Real& a, const Real& b) {
  if (a.sign == 0 || b.sign == 0) return {};
  const std::size_t n = workingLimbs;
  const Real x = cut(a), y = cut(b);
  const int sign = a.sign * b.sign;
  if (x.size == n && y.size == n && n >= 4) {
    // A limb below those kept comes along, so that the top bit may be 0.
    Limb* row = limbSpace(n + 1);
    if (n > 90 || x.limbs == y.limbs) {
      LimbMark mark;
      Limb* whole = limbSpace(2 * n);
      multiplyLimbs(whole, x.limbs, n, y.limbs, n);
      copyLimbs(row, whole + n - 1, n + 1);
    } else {
      row[0] = 0;
      multiplyHigh(row + 1, x.limbs, y.limbs, n);
    }
    return normalized(sign, row, n + 1, a.exponent + b.exponent, n);
  }
  Limb* row = limbSpace(x.size + y.size);
  multiplyLimbs(row, x.limbs, x.size, y.limbs, y.size);
  return normalized(sign, row, x.size + y.size, a.exponent + b.exponent, n);
}

Real times(const Real& x, std::int64_t n) {
  if (x.sign == 0 || n == 0) return {};
  const Real a = cut(x);
  Limb* row = limbSpace(a.size + 1);
  row[a.size] = scaleLimbs(row, a.limbs, a.size, magnitudeOf(n));
  return normalized(n < 0 ? -x.sign : x.sign, row, a.size + 1, x.exponent + 64, workingLimbs);
}

Real dividedBy(const Real& x, std::int64_t n) {
  if (x.sign == 0) return {};
  // As many limbs below as keep the precision.
  const std::size_t length = workingLimbs + 1;
  Limb* row = limbSpace(length);
  loadTop(row, x, length);
  divideLimbs(row, row, length, magnitudeOf(n));
  return normalized(n < 0 ? -x.sign : x.sign, row, length, x.exponent, workingLimbs);
}

namespace {

// From this many limbs on Newton's iteration beats the school division and the root that rests on it.
constexpr std::size_t newtonFrom = 120;

// 1 / b by steps that double the precision: r + r (1 - b r).
Real inverse(const Real& b) {
  if (workingLimbs < newtonFrom) return Real(1) / b;
  LimbMark mark;
  Real r;
  {
    Precision half(workingLimbs / 2 + 1);
    r = inverse(cut(b));
  }
  return keep(r + r * (Real(1) - b * r), mark);
}

}  // namespace

Real operator/(const Real& a, const Real& b) {
  if (a.sign == 0) return {};
  const int sign = a.sign * b.sign;
  const std::size_t n = workingLimbs;
  if (b.size == 1) {
    Limb* row = limbSpace(n + 2);
    loadTop(row, a, n + 1);
    row[n + 1] = 0;
    // The divisor is 0.b: a whole limb more than the fraction says.
    divideLimbs(row, row, n + 1, b.limbs[0]);
    return normalized(sign, row, n + 1, a.exponent - b.exponent + 64, n);
  }
  if (b.size >= newtonFrom && n >= newtonFrom) {
    LimbMark mark;
    Real r;
    {
      // The quotient to half the limbs, and what it leaves of a.
      Precision half(n / 2 + 1);
      const Real i = inverse(cut(b));
      r = a * i;
      Precision whole(n + 1);
      const Real rest = a - b * r;
      Precision again(n / 2 + 2);
      const Real more = rest * i;
      Precision last(n);
      r = r + more;
    }
    r.sign = sign;
    return keep(r, mark);
  }
  const Real y = cut(b);
  const std::size_t nb = y.size, na = nb + n + 1;
  Limb* quotient = limbSpace(n + 2);
  {
    LimbMark mark;
    Limb* row = limbSpace(na);
    loadTop(row, a, na);
    quotient[n + 1] = quotientOfLimbs(quotient, row, na, y.limbs, nb);
  }
  return normalized(sign, quotient, n + 2, a.exponent - b.exponent + 64, n);
}

Real sqrt(const Real& x) {
  if (x.sign == 0) return {};
  // Exact squares of one limb come out exactly.
  if (x.size == 1 && x.limbs[0] << 11 == 0) {
    const int uneven = (x.exponent & 1) == 0 ? 1 : 0;
    const double m = std::ldexp(static_cast<double>(x.limbs[0] >> 11), uneven);
    const double root = std::sqrt(m);
    if (root == std::floor(root) && root * root == m) return scaled(realOfDouble(root), (x.exponent - 53 - uneven) / 2);
  }
  LimbMark mark;
  // 1 / sqrt(m) by Newton's steps from a double, m in [1/4, 1).
  const std::int64_t half = (x.exponent + 1) >> 1;
  const Real m = scaled(cut(x), -2 * half);
  const std::size_t n = workingLimbs;
  Real y = realOfDouble(1 / std::sqrt(doubleOf(m)));
  std::int64_t bits = 50;
  const std::int64_t wanted = static_cast<std::int64_t>(n) * 64;
  while (2 * bits < wanted) {
    bits = 2 * bits - 4;
    Precision p(std::min<std::size_t>(n, static_cast<std::size_t>(bits) / 64 + 1));
    y = y + scaled(y * (Real(1) - cut(m) * (y * y)), -1);
  }
  // The last step on the root itself: s + y (m - s^2) / 2.
  Precision p(n + 1);
  Real s;
  {
    Precision short_(n / 2 + 2);
    s = cut(m) * y;
  }
  const Real rest = m - s * s;
  Real more;
  {
    Precision short_(n / 2 + 2);
    more = scaled(rest * y, -1);
  }
  s = s + more;
  workingLimbs = n;
  return scaled(keep(cut(s), mark), half);
}

Real power(Real x, std::int64_t n) {
  Limb rest = magnitudeOf(n);
  Real r(1);
  for (; rest != 0; rest >>= 1) {
    if ((rest & 1) != 0) r = r * x;
    if (rest > 1) x = x * x;
  }
  return n < 0 ? Real(1) / r : r;
}

// ---- order and parts

int compareMagnitudes(const Real& a, const Real& b) {
  if (a.sign == 0 || b.sign == 0) return (a.sign != 0 ? 1 : 0) - (b.sign != 0 ? 1 : 0);
  if (a.exponent != b.exponent) return a.exponent < b.exponent ? -1 : 1;
  const std::size_t common = std::min(a.size, b.size);
  const int order = compareLimbs(a.limbs + a.size - common, b.limbs + b.size - common, common);
  if (order != 0 || a.size == b.size) return order;
  // Rows end in a limb that isn't 0, but for those cut from longer ones.
  const Real& longer = a.size > b.size ? a : b;
  for (std::size_t i = 0; i < longer.size - common; ++i)
    if (longer.limbs[i] != 0) return a.size > b.size ? 1 : -1;
  return 0;
}

int compare(const Real& a, const Real& b) {
  if (a.sign != b.sign) return a.sign < b.sign ? -1 : 1;
  return a.sign * compareMagnitudes(a, b);
}

namespace {

// |x| without its fraction; tells whether there was one.
Real truncated(const Real& x, bool& fraction) {
  fraction = false;
  if (x.sign == 0) return x;
  if (x.exponent <= 0) {
    fraction = true;
    return {};
  }
  const std::int64_t all = static_cast<std::int64_t>(x.size) * 64;
  if (x.exponent >= all) return absolute(x);
  Limb* row = limbSpace(x.size);
  copyLimbs(row, x.limbs, x.size);
  const auto drop = static_cast<std::size_t>(all - x.exponent);
  for (std::size_t i = 0; i < drop / 64; ++i) {
    fraction = fraction || row[i] != 0;
    row[i] = 0;
  }
  if (drop % 64 != 0) {
    const Limb mask = (Limb{1} << (drop % 64)) - 1;
    fraction = fraction || (row[drop / 64] & mask) != 0;
    row[drop / 64] &= ~mask;
  }
  return normalized(1, row, x.size, x.exponent, x.size);
}

}  // namespace

Real floorOf(const Real& x) {
  bool fraction;
  Real whole = truncated(x, fraction);
  if (x.sign >= 0) return whole;
  Precision p(std::max<std::size_t>(workingLimbs, x.size + 1));
  return -(fraction ? whole + Real(1) : whole);
}
Real nearest(const Real& x) {
  Precision p(std::max<std::size_t>(workingLimbs, x.size + 1));
  return floorOf(x + scaled(Real(1), -1));
}

std::int64_t wholeNumber(const Real& x) {
  if (x.sign == 0 || x.exponent <= 0) return 0;
  if (x.exponent > 63)
    return x.sign < 0 ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
  const auto value = static_cast<std::int64_t>(x.limbs[x.size - 1] >> (64 - x.exponent));
  return x.sign < 0 ? -value : value;
}

double doubleOf(const Real& x) {
  if (x.sign == 0) return 0;
  const double m = static_cast<double>(x.limbs[x.size - 1]);
  const std::int64_t e = std::clamp<std::int64_t>(x.exponent - 64, -100000, 100000);
  return x.sign * std::ldexp(m, static_cast<int>(e));
}

Real realOfDouble(double x) {
  if (x == 0) return {};
  int exponent;
  const double m = std::frexp(std::fabs(x), &exponent);
  Limb* row = limbSpace(1);
  row[0] = static_cast<Limb>(std::ldexp(m, 64));
  return normalized(x < 0 ? -1 : 1, row, 1, exponent, 1);
}

}  // namespace reals
}  // namespace korel
