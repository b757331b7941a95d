// The arena of the balls, and numbers in and out of it.

#include <sys/mman.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "frame/errors.h"
#include "library/native/special/ball.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel::special {

std::int64_t workGroups = 4;

namespace {

// Address space is reserved once, and taken into use in growing steps.
constexpr std::size_t reservedBytes = std::size_t{1} << 36;
constexpr std::size_t firstStep = std::size_t{1} << 20;
// An evaluation that has used less leaves its memory for the next.
constexpr std::size_t keptBytes = std::size_t{1} << 23;

struct Arena {
  Group* base = nullptr;
  std::size_t used = 0, usable = 0;  // in groups
  std::size_t highest = 0;
};
Arena arena;

void reserveArena() {
  void* space = mmap(nullptr, reservedBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (space == MAP_FAILED) KernelException("object too large");
  arena.base = static_cast<Group*>(space);
}

void growArena(std::size_t groups) {
  if (arena.base == nullptr) reserveArena();
  std::size_t bytes = std::max(firstStep, 2 * arena.usable * sizeof(Group));
  while (bytes < groups * sizeof(Group)) bytes *= 2;
  if (bytes > reservedBytes || mprotect(arena.base, bytes, PROT_READ | PROT_WRITE) != 0)
    KernelException("object too large");
  arena.usable = bytes / sizeof(Group);
}

}  // namespace

void emptyArena() { arena.used = 0; }

void leaveArena() {
  arena.used = 0;
  if (arena.highest * sizeof(Group) > keptBytes) madvise(arena.base, arena.highest * sizeof(Group), MADV_DONTNEED);
  arena.highest = 0;
}

Group* allocateGroups(std::int64_t count) {
  const std::size_t end = arena.used + static_cast<std::size_t>(count);
  if (end > arena.usable) growArena(end);
  Group* groups = arena.base + arena.used;
  arena.used = end;
  arena.highest = std::max(arena.highest, end);
  return groups;
}

Scratch::Scratch() : mark_(static_cast<std::int64_t>(arena.used)) {}

// The numbers are copied above everything first, since they may lie in each other's way.
void Scratch::keepParts(Real** parts, int count) const {
  const Group* mark = arena.base + mark_;
  std::int64_t total = 0;
  for (int i = 0; i < count; ++i)
    if (parts[i]->count != 0 && parts[i]->groups >= mark) total += parts[i]->count;
  Group* copy = allocateGroups(total);
  std::int64_t at = 0;
  for (int i = 0; i < count; ++i) {
    Real& x = *parts[i];
    if (x.count == 0 || x.groups < mark) continue;
    std::memcpy(copy + at, x.groups, static_cast<std::size_t>(x.count) * sizeof(Group));
    x.groups = mark + at;
    at += x.count;
  }
  std::memmove(arena.base + mark_, copy, static_cast<std::size_t>(total) * sizeof(Group));
  arena.used = static_cast<std::size_t>(mark_ + total);
}

// ---- numbers in and out

Real::Real(std::int64_t n) {
  if (n == 0) return;
  negative = n < 0;
  std::uint64_t size = negative ? 0 - static_cast<std::uint64_t>(n) : static_cast<std::uint64_t>(n);
  count = size >= groupBase ? 2 : 1;
  Group* g = allocateGroups(count);
  g[0] = size % groupBase;
  if (count == 2) g[1] = size / groupBase;
  groups = g;
}

Real realOfDecimal(DAG mantissa, std::int64_t exponent) {
  Real x;
  if (isZero(mantissa)) return x;
  const std::int64_t low = ((exponent % 16) + 16) % 16;
  if (low != 0) mantissa = shift10p(mantissa, low);
  x.negative = consneg(mantissa);
  x.count = static_cast<std::int64_t>(groupCount(mantissa));
  Group* g = allocateGroups(x.count);
  packInteger(mantissa, g);
  x.count = static_cast<std::int64_t>(significantGroups(g, static_cast<std::size_t>(x.count)));
  x.exponent = (exponent - low) / 16;
  std::int64_t zeros = 0;
  while (zeros < x.count && g[zeros] == 0) ++zeros;
  x.groups = g + zeros;
  x.count -= zeros;
  x.exponent += zeros;
  return x;
}

Real realOf(DAG number) {
  if (isTag(number, HFLOAT)) number = HFloatToFloat(number);
  if (isTag(number, RATIONAL)) return realOfDecimal(number[1], 0) / realOfDecimal(number[2], 0);
  if (isSoftFloat(number)) return realOfDecimal(mantissaOf(number), exponentValue(exponentOf(number)));
  return realOfDecimal(number, 0);
}

Complex complexOf(DAG number) {
  if (!isComplex(number)) return realOf(number);
  return {lengthOf(number) == 2 ? Real() : realOf(number[1]), realOf(imaginaryPartOf(number))};
}

Real realOfDouble(double x) {
  if (x == 0 || !std::isfinite(x)) return {};
  int binary;
  const double half = std::frexp(x, &binary);
  Real m(static_cast<std::int64_t>(std::ldexp(half, 53)));
  binary -= 53;
  Real power = integerPower(Complex(2), std::abs(binary)).re;
  return binary >= 0 ? m * power : m / power;
}

Decimal decimalOf(const Real& x) {
  if (x.count == 0) return {cons0, 0};
  return {integerOfGroups(x.groups, static_cast<std::size_t>(x.count), x.negative ? INTNEG : INTPOS), 16 * x.exponent};
}

DAG roundedFloat(const Real& x) {
  const Decimal d = decimalOf(x);
  if (isZero(d.mantissa)) return consf0;
  return BuildFloat(d.mantissa, NewInteger(d.exponent));
}

double toDouble(const Real& x) {
  const Bound b = middleBound(x);
  const double size = doubleOf(b);
  return x.negative ? -size : size;
}

// ---- size

Bound middleBound(const Real& x) {
  if (x.count == 0) return {};
  double m = static_cast<double>(x.groups[x.count - 1]);
  if (x.count > 1) m += static_cast<double>(x.groups[x.count - 2]) / groupSize;
  return normalBound(m, x.exponent + x.count - 1);
}
Bound upperBound(const Real& x) {
  Bound b = middleBound(x);
  b.m *= roundingUp;
  return b + x.error;
}
Bound lowerBound(const Real& x) {
  Bound b = middleBound(x);
  if (x.error.m == 0) return {b.m / roundingUp, b.e};
  if (b < x.error || isInfinite(x.error)) return {};
  const std::int64_t apart = b.e - x.error.e;
  if (apart > 1) return {b.m * (1 - 1e-13), b.e};
  const double rest = b.m - x.error.m * (apart == 1 ? 1e-16 : 1);
  return rest <= b.m * 1e-13 ? Bound{} : normalBound(rest * (1 - 1e-13), b.e);
}
Bound upperBound(const Complex& z) { return upperBound(z.re) + upperBound(z.im); }
Bound lowerBound(const Complex& z) { return larger(lowerBound(z.re), lowerBound(z.im)); }

bool isMachineInteger(const Real& x, std::int64_t& n) {
  n = 0;
  if (x.error.m != 0 || x.exponent < 0) return false;
  if (x.count == 0) return true;
  if (x.count + x.exponent > 1) return false;
  n = static_cast<std::int64_t>(x.groups[0]);
  if (x.negative) n = -n;
  return true;
}

Real nearestInteger(const Real& x) {
  Real whole = x;
  whole.error = {};
  if (x.count == 0 || x.exponent >= 0) return whole;
  const std::int64_t fraction = -x.exponent;
  if (fraction > x.count) return {};
  const bool up = x.groups[fraction - 1] >= groupBase / 2;
  whole.groups = x.groups + fraction;
  whole.count = x.count - fraction;
  whole.exponent = 0;
  if (!up) return whole.count == 0 ? Real() : whole;
  return whole + Real(x.negative ? -1 : 1);
}

}  // namespace korel::special
