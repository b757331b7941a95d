#include "library/assumptions/ranges.h"

#include <algorithm>
#include <cfloat>

#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "store/objects.h"

namespace korel {

namespace {

struct Bound {
  double value;
  bool open;
};

// One bound of a result that came out as `value`, which the sign of `error` tells to be inexact or not. A bound that
// moved outward isn't attained.
Bound lowBound(double value, double error, bool open) {
  if (value == HUGE_VAL) return {DBL_MAX, true};  // an overflow: what is above is still above that
  if (error == 0 || !std::isfinite(value)) return {value, open};
  return {std::nextafter(value, -HUGE_VAL), true};
}
Bound highBound(double value, double error, bool open) {
  if (value == -HUGE_VAL) return {-DBL_MAX, true};
  if (error == 0 || !std::isfinite(value)) return {value, open};
  return {std::nextafter(value, HUGE_VAL), true};
}

// What the double sum of two numbers lacks (Knuth, vol. 2, 4.2.2, theorem B).
double sumError(double a, double b) {
  const double s = a + b;
  if (!std::isfinite(s)) return 0;
  const double t = s - a;
  return (a - (s - t)) + (b - t);
}

struct Corner {
  double value, error;
  bool open;
};
// a zero that is attained makes the product 0, and attained, whatever the other bound is
Corner corner(double a, bool aOpen, double b, bool bOpen) {
  if (a == 0 || b == 0) {
    const bool attained = (a == 0 && !aOpen) || (b == 0 && !bOpen);
    return {0, 0, !attained};
  }
  const double p = a * b;
  // Below this the error of the product may itself get lost.
  const bool tiny = std::fabs(p) < 1e-280;
  return {p, tiny ? 1.0 : std::isfinite(p) ? std::fma(a, b, -p) : 0.0, aOpen || bOpen};
}

}  // namespace

Range rangeAround(DAG x) {
  if (isImmediate(x)) return {static_cast<double>(immediateValue(x)), static_cast<double>(immediateValue(x))};
  if (isTag(x, HFLOAT)) return {hfloatValue(x), hfloatValue(x)};
  if (isZero(x)) return {0, 0};
  const bool negative = consneg(x);
  const double v = std::fabs(FloatValue(x));
  // The conversion is good to a few units in the last place.
  double low = v * (1 - 8 * DBL_EPSILON), high = v * (1 + 8 * DBL_EPSILON) + DBL_MIN;
  if (v < 1e-300) low = 0;
  if (!(v < HUGE_VAL)) low = DBL_MAX, high = HUGE_VAL;
  return negative ? Range{-high, -low, true, true} : Range{low, high, true, true};
}

Range sum(Range a, Range b) {
  const Bound low = lowBound(a.low + b.low, sumError(a.low, b.low), a.lowOpen || b.lowOpen);
  const Bound high = highBound(a.high + b.high, sumError(a.high, b.high), a.highOpen || b.highOpen);
  return {low.value, high.value, low.open, high.open};
}

Range product(Range a, Range b) {
  const Corner corners[] = {corner(a.low, a.lowOpen, b.low, b.lowOpen), corner(a.low, a.lowOpen, b.high, b.highOpen),
                            corner(a.high, a.highOpen, b.low, b.lowOpen),
                            corner(a.high, a.highOpen, b.high, b.highOpen)};
  Bound low{HUGE_VAL, true}, high{-HUGE_VAL, true};
  for (const Corner& c : corners) {
    const Bound l = lowBound(c.value, c.error, c.open), h = highBound(c.value, c.error, c.open);
    if (l.value < low.value || (l.value == low.value && !l.open)) low = l;
    if (h.value > high.value || (h.value == high.value && !h.open)) high = h;
  }
  // Rounding outward must not lose the sign of a product.
  auto positive = [](Range r) { return r.low > 0 || (r.low == 0 && r.lowOpen); };
  auto negative = [](Range r) { return r.high < 0 || (r.high == 0 && r.highOpen); };
  if ((positive(a) && positive(b)) || (negative(a) && negative(b)))
    if (low.value <= 0) low = {0, true};
  if ((positive(a) && negative(b)) || (negative(a) && positive(b)))
    if (high.value >= 0) high = {0, true};
  if ((a.low >= 0 && b.low >= 0) || (a.high <= 0 && b.high <= 0))
    if (low.value < 0) low = {0, false};
  if ((a.low >= 0 && b.high <= 0) || (a.high <= 0 && b.low >= 0))
    if (high.value > 0) high = {0, false};
  return {low.value, high.value, low.open, high.open};
}

Range magnitude(Range a) {
  if (a.low >= 0) return a;
  const Range mirrored{-a.high, -a.low, a.highOpen, a.lowOpen};
  if (a.high <= 0) return mirrored;
  const Range larger = largerOf(a, mirrored);
  return {0, larger.high, false, larger.highOpen};
}

Range largerOf(Range a, Range b) {
  Range r = a;
  if (b.low > a.low || (b.low == a.low && b.lowOpen)) r.low = b.low, r.lowOpen = b.lowOpen;
  if (b.high > a.high || (b.high == a.high && !b.highOpen)) r.high = b.high, r.highOpen = b.highOpen;
  return r;
}

Range smallerOf(Range a, Range b) {
  Range r = a;
  if (b.low < a.low || (b.low == a.low && !b.lowOpen)) r.low = b.low, r.lowOpen = b.lowOpen;
  if (b.high < a.high || (b.high == a.high && b.highOpen)) r.high = b.high, r.highOpen = b.highOpen;
  return r;
}

bool holdsNoInteger(Range a) {
  if (!std::isfinite(a.low) || !std::isfinite(a.high)) return false;
  const double first = std::ceil(a.low) + (a.lowOpen && std::ceil(a.low) == a.low ? 1 : 0);
  return first > a.high || (first == a.high && a.highOpen);
}

}  // namespace korel
