#pragma once
// Bounds of errors and of sizes: numbers of double precision with an exponent that doesn't overflow.
//
// A bound is m * 10^(16e) with 1 <= m < 10^16, or 0, or infinite. Every operation rounds away from zero by more than
// a double loses, so that a bound computed from upper bounds is one again.

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace korel::special {

constexpr double groupSize = 1e16;
constexpr double roundingUp = 1 + 1e-14;

struct Bound {
  double m = 0;
  std::int64_t e = 0;
};

inline Bound normalBound(double m, std::int64_t e) {
  if (m == 0) return {};
  if (!std::isfinite(m)) return {std::numeric_limits<double>::infinity(), 0};
  while (m >= groupSize) m /= groupSize, ++e;
  while (m < 1) m *= groupSize, --e;
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
  const double small = apart > 2 ? 1e-16 : b.m * std::pow(groupSize, static_cast<double>(-apart));
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
/// The decimal logarithm, for estimates.
inline double log10Of(Bound a) {
  if (a.m == 0) return -std::numeric_limits<double>::infinity();
  return std::log10(a.m) + 16.0 * static_cast<double>(a.e);
}
/// 10^x.
inline Bound powerOfTenBound(double x) {
  const double whole = std::floor(x / 16);
  return normalBound(std::pow(10.0, x - 16 * whole) * roundingUp, static_cast<std::int64_t>(whole));
}
/// The bound as a double, infinite or 0 where it leaves that range.
inline double doubleOf(Bound a) {
  if (a.m == 0 || isInfinite(a)) return a.m;
  return a.e > 18 ? std::numeric_limits<double>::infinity() : a.e < -20 ? 0 : a.m * std::pow(groupSize, static_cast<double>(a.e));
}

}  // namespace korel::special
