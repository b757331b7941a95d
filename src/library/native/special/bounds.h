#pragma once
// Bounds of errors and of sizes: numbers of double precision with an exponent that doesn't overflow.
//
// A bound is m * 2^(64e) with 1 <= m < 2^64, or 0, or infinite. Every operation rounds away from zero by more than
// a double loses, so that a bound computed from upper bounds is one again.

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace korel::special {

constexpr double limbSize = 18446744073709551616.0;
constexpr double roundingUp = 1 + 1e-14;

struct Bound {
  double m = 0;
  std::int64_t e = 0;
};

inline Bound normalBound(double m, std::int64_t e) {
  if (m == 0) return {};
  if (!std::isfinite(m)) return {std::numeric_limits<double>::infinity(), 0};
  while (m >= limbSize) m /= limbSize, ++e;
  while (m < 1) m *= limbSize, --e;
  return {m, e};
}
inline Bound boundOf(double x) { return normalBound(x * roundingUp, 0); }
inline bool isInfinite(Bound a) { return std::isinf(a.m); }

inline bool operator<(Bound a, Bound b) {
  if (a.m == 0 || isInfinite(b)) return b.m != 0 && !isInfinite(a);
  if (b.m == 0 || isInfinite(a)) return false;
  return a.e != b.e ? a.e < b.e : a.m < b.m;
}
inline Bound operator+(Bound a, Bound b) {
  if (isInfinite(a) || b.m == 0) return a;
  if (isInfinite(b) || a.m == 0) return b;
  if (a.e < b.e) std::swap(a, b);
  const std::int64_t apart = a.e - b.e;
  const double small = apart > 2 ? 1e-16 : std::ldexp(b.m, static_cast<int>(-64 * apart));
  return normalBound((a.m + small) * roundingUp, a.e);
}
inline Bound operator*(Bound a, Bound b) {
  if (a.m == 0 || b.m == 0) return {};
  return normalBound(a.m * b.m * roundingUp, a.e + b.e);
}
/// a / b for a lower bound b; infinite for 0.
inline Bound operator/(Bound a, Bound b) {
  if (a.m == 0) return {};
  if (b.m == 0) return {std::numeric_limits<double>::infinity(), 0};
  return normalBound(a.m / b.m * roundingUp, a.e - b.e);
}
inline Bound& operator+=(Bound& a, Bound b) { return a = a + b; }
inline Bound larger(Bound a, Bound b) { return a < b ? b : a; }
constexpr double digitsPerLimb = 19.265919722494797;
/// The decimal logarithm, for estimates.
inline double log10Of(Bound a) {
  if (a.m == 0) return -std::numeric_limits<double>::infinity();
  return std::log10(a.m) + digitsPerLimb * static_cast<double>(a.e);
}
/// 10^x, 2^k.
inline Bound powerOfTenBound(double x) {
  const double whole = std::floor(x / digitsPerLimb);
  return normalBound(std::pow(10.0, x - digitsPerLimb * whole) * (1 + 1e-9), static_cast<std::int64_t>(whole));
}
inline Bound powerOfTwoBound(std::int64_t k) { return {std::ldexp(1.0, static_cast<int>(k & 63)), k >> 6}; }
inline Bound infiniteBound() { return {std::numeric_limits<double>::infinity(), 0}; }
/// The bound as a double, infinite or 0 where it leaves that range.
inline double doubleOf(Bound a) {
  if (a.m == 0 || isInfinite(a)) return a.m;
  if (a.e > 15) return std::numeric_limits<double>::infinity();
  return a.e < -16 ? 0 : std::ldexp(a.m, static_cast<int>(64 * a.e));
}

}  // namespace korel::special
