#include "algebra/series/scaled_rows.h"

#include <algorithm>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_columns.h"
#include "store/objects.h"

namespace korel {

// ---- sums of products

void ProductSum::reserve(std::size_t columns) {
  if (columns <= room_) return;
  const std::size_t room = 2 * columns;
  for (Side& side : sides_) {
    auto* longer = arena_.makeZero<Wide>(room);
    if (side.used != 0) std::copy_n(side.columns, side.used, longer);
    arena_.free(side.columns);
    side.columns = longer;
  }
  arena_.free(total_);
  total_ = arena_.make<Group>(2 * room);
  room_ = room;
}

void ProductSum::addColumns(const ScaledNumber& a, const ScaledNumber& b, bool negative) {
  const ScaledNumber& shorter = a.count < b.count ? a : b;
  const ScaledNumber& longer = a.count < b.count ? b : a;
  if (shorter.count == 0) return;
  constexpr std::size_t spare = 3;  // for carries
  passGroupWork(shorter.count * longer.count / 4 + 1);
  reserve(shorter.count + longer.count + spare);
  load_ += shorter.count;
  if (load_ > longestColumn - 2) {
    carry();
    load_ = shorter.count;
  }
  Side& side = sides_[negative ? 1 : 0];
  side.used = std::max(side.used, shorter.count + longer.count - 1);
  for (std::size_t i = 0; i < shorter.count; ++i) {
    Wide* column = side.columns + i;
    const Group factor = shorter.groups[i];
    for (std::size_t j = 0; j < longer.count; ++j) column[j] += Wide{factor} * longer.groups[j];
  }
}

void ProductSum::add(std::int64_t weight, const ScaledNumber& a, const ScaledNumber& b) {
  if (weight == 0 || a.count == 0) return;
  if (a.count >= weightedRoom_) {
    arena_.free(weighted_);
    weightedRoom_ = 2 * a.count + 8;
    weighted_ = arena_.make<Group>(weightedRoom_);
  }
  ScaledNumber scaled;
  scaled.groups = weighted_;
  weighted_[a.count] = scaleGroups(weighted_, a.groups, a.count, static_cast<Group>(weight < 0 ? -weight : weight));
  scaled.count = significantGroups(weighted_, a.count + 1);
  addColumns(scaled, b, (weight < 0) != (a.negative != b.negative));
}

// Leaves a group in each column.
void ProductSum::carry() {
  for (Side& side : sides_) {
    ColumnCarry carried;
    std::size_t i = 0;
    for (; i < side.used || carried.carry() != 0; ++i) side.columns[i] = carried.put(side.columns[i]);
    side.used = i;
  }
}

// The sum of a side in groups; its columns are empty then.
std::size_t ProductSum::takeSide(Side& side, Group* groups) {
  ColumnCarry carried;
  std::size_t i = 0;
  for (; i < side.used || carried.carry() != 0; ++i) groups[i] = carried.put(i < side.used ? side.columns[i] : 0);
  std::memset(side.columns, 0, side.used * sizeof(Wide));
  side.used = 0;
  return significantGroups(groups, i);
}

ScaledNumber ProductSum::take() {
  ScaledNumber result;
  Group* parts[] = {total_, total_ + room_};
  std::size_t counts[2] = {};
  for (int k = 0; k < 2; ++k)
    if (sides_[k].used != 0) counts[k] = takeSide(sides_[k], parts[k]);
  load_ = 0;
  int order = counts[0] != counts[1] ? (counts[0] < counts[1] ? -1 : 1) : compareGroups(parts[0], parts[1], counts[0]);
  const int more = order < 0 ? 1 : 0;
  result.negative = order < 0;
  result.groups = parts[more];
  result.count = counts[more];
  if (counts[1 - more] == 0) return result;
  subtractGroups(result.groups, result.groups, result.count, parts[1 - more], counts[1 - more]);
  result.count = significantGroups(result.groups, result.count);
  return result;
}

// ---- rows

DAG reducedQuotient(const PrimeBase& base, ScaledNumber& sum, const SmoothNumber& denominator, SmoothNumber& left) {
  if (sum.count == 0) return cons0;
  passWork(static_cast<std::int64_t>(sum.count) * (denominator.isOne() ? 1 : 8) + denominator.used);
  if (!denominator.isOne()) sum.count = base.takeOut(sum.groups, sum.count, denominator, left);
  else base.assign(left, denominator);
  for (int i = 0; i < denominator.used; ++i) left.exponents[i] = denominator.exponents[i] - left.exponents[i];
  left.used = denominator.used;
  left.trim();
  DAG numerator = simpl(integerOfGroups(sum.groups, sum.count, sum.negative ? INTNEG : INTPOS));
  DAG below = base.numberOf(left);
  return below == cons1 ? numerator : simpl(new3(RATIONAL, numerator, below));
}

DAG productCoefficient(const PrimeBase& base, ScaledNumber& sum, const SmoothNumber& below, const SmoothNumber& above,
                       SmoothNumber& left) {
  base.forEachFactor(above, [&](Group factor) {
    divideGroupsBy(sum.groups, sum.groups, sum.count, factor);
    sum.count = significantGroups(sum.groups, sum.count);
  });
  return reducedQuotient(base, sum, below, left);
}

bool FixedRow::finish() {
  denominator_ = base_.one();
  denominators_ = arena_.makeZero<SmoothNumber>(count_);
  for (std::size_t i = 0; i < count_; ++i) {
    if (isInteger(values_[i])) continue;
    passWork(base_.count());
    SmoothNumber& own = denominators_[i] = base_.one();
    if (!base_.factor(values_[i][2], own)) return false;
    joinDenominator(denominator_, i);
  }
  const std::size_t factors = base_.groupsOf(denominator_);
  SmoothNumber missing = base_.one();
  for (std::size_t i = 0; i < count_; ++i) {
    DAG value = values_[i], numerator = isInteger(value) ? value : value[1];
    ScaledNumber& x = numbers_[i] = {};
    if (numerator == cons0) continue;
    x.negative = consneg(numerator);
    x.count = groupCount(numerator);
    x.room = x.count + factors + 1;
    x.groups = arena_.make<Group>(x.room);
    passWork(static_cast<std::int64_t>(x.room) * static_cast<std::int64_t>(factors + 1));
    packInteger(numerator, x.groups);
    base_.assign(missing, denominator_);
    base_.divide(missing, denominators_[i]);
    base_.forEachFactor(missing, [&](Group factor) {
      if (Group top = scaleGroups(x.groups, x.groups, x.count, factor); top != 0) x.groups[x.count++] = top;
    });
  }
  return true;
}

void FixedRow::joinDenominator(SmoothNumber& x, std::size_t i) const {
  const SmoothNumber& own = denominators_[i];
  for (int p = 0; p < own.used; ++p) x.exponents[p] = std::max(x.exponents[p], own.exponents[p]);
  x.used = std::max(x.used, own.used);
}

GrowingRow::GrowingRow(engine::Arena& arena, const PrimeBase& base, std::size_t count)
    : arena_(arena),
      base_(base),
      numbers_(arena.makeZero<ScaledNumber>(count + 1)),
      denominator_(base.one()),
      left_(base.one()),
      grown_(base.one()) {
  appendSmall(true);
}

void GrowingRow::scale(ScaledNumber& x, Group factor) {
  const Group top = scaleGroups(x.groups, x.groups, x.count, factor);
  if (top == 0) return;
  if (x.count == x.room) {
    x.room += x.room / 2 + 2;
    x.groups = arena_.grow(x.groups, x.room);
  }
  x.groups[x.count++] = top;
}

ScaledNumber& GrowingRow::current(ScaledNumber& x) {
  if (x.version == factorCount_) return x;
  if (x.count != 0) {
    Group product = 1;
    for (std::size_t i = x.version; i < factorCount_; ++i) {
      if (Wide{product} * factors_[i] >= groupBase) {
        scale(x, product);
        product = 1;
      }
      product *= factors_[i];
    }
    scale(x, product);
  }
  x.version = factorCount_;
  return x;
}

void GrowingRow::put(const Group* groups, std::size_t n, bool negative) {
  ScaledNumber& x = numbers_[used_++];
  x.count = n;
  x.room = n + 2;
  x.groups = n == 0 ? nullptr : arena_.make<Group>(x.room);
  x.negative = negative;
  x.version = factorCount_;
  std::copy_n(groups, n, x.groups);
}

void GrowingRow::appendSmall(bool one) {
  const Group single = 1;
  put(&single, one ? 1 : 0, false);
  numbers_[used_ - 1].version = 0;
}

DAG GrowingRow::append(ScaledNumber sum, const SmoothNumber& denominator) {
  DAG value = reducedQuotient(base_, sum, denominator, left_);
  if (value == cons0) {
    put(nullptr, 0, false);
    return value;
  }
  // The denominator grows by what it lacks of this one's, and the numerator by what this one's lacks of it.
  base_.assign(grown_, left_);
  for (int i = 0; i < left_.used; ++i)
    grown_.exponents[i] = std::max(left_.exponents[i] - denominator_.exponents[i], 0);
  grown_.trim();
  base_.multiply(denominator_, grown_);
  base_.forEachFactor(grown_, [&](Group factor) {
    if (factorCount_ == factorRoom_) {
      factorRoom_ = 2 * factorRoom_ + 16;
      factors_ = arena_.grow(factors_, factorRoom_);
    }
    factors_[factorCount_++] = factor;
  });
  put(sum.groups, sum.count, sum.negative);
  base_.assign(grown_, denominator_);
  base_.divide(grown_, left_);
  base_.forEachFactor(grown_, [&](Group factor) { scale(numbers_[used_ - 1], factor); });
  return value;
}

// ---- products

namespace {

// A polynomial's value at a power of the base, `width` groups to a coefficient.
struct PackedValue {
  Group* groups;
  std::size_t count;
  bool negative;
};

PackedValue valueOf(engine::Arena& arena, const ScaledNumber* a, std::size_t n, std::size_t width) {
  // Positive and negative coefficients apart: their difference has the sign of the last.
  Group* sides[] = {arena.makeZero<Group>(n * width), arena.makeZero<Group>(n * width)};
  bool negative = false;
  for (std::size_t i = 0; i < n; ++i) {
    if (a[i].count == 0) continue;
    negative = a[i].negative;
    std::copy_n(a[i].groups, a[i].count, sides[negative ? 1 : 0] + i * width);
  }
  Group* value = sides[negative ? 1 : 0];
  subtractGroups(value, value, n * width, sides[negative ? 0 : 1], n * width);
  arena.free(sides[negative ? 0 : 1]);
  return {value, significantGroups(value, n * width), negative};
}

// The coefficients of a value, each below half the power of the base in magnitude.
void readCoefficients(engine::Arena& arena, const PackedValue& value, std::size_t width, ScaledNumber* result,
                      std::size_t count) {
  bool carry = false;
  for (std::size_t k = 0; k < count; ++k) {
    ScaledNumber& x = result[k];
    x.groups = arena.makeZero<Group>(width);
    passGroupWork(width);
    if (k * width < value.count)
      std::copy_n(value.groups + k * width, std::min(width, value.count - k * width), x.groups);
    for (std::size_t i = 0; carry && i < width; ++i) {
      carry = ++x.groups[i] == groupBase;
      if (carry) x.groups[i] = 0;
    }
    const bool isAbove = x.groups[width - 1] >= groupBase / 2;
    if (isAbove) {
      Group borrow = 0;
      for (std::size_t i = 0; i < width; ++i) {
        const Group group = x.groups[i] + borrow;
        x.groups[i] = group == 0 ? 0 : groupBase - group;
        borrow = group == 0 ? 0 : 1;
      }
      carry = true;
    }
    x.negative = isAbove != value.negative;
    x.count = significantGroups(x.groups, width);
  }
}

struct RowSize {
  std::size_t terms = 0, groups = 0;  // terms that aren't 0; groups of the longest
  Group top = 0;                      // leading group of the largest, rounded up
  double total = 0;                   // groups of all
};
RowSize sizeOf(const ScaledNumber* a, std::size_t n) {
  RowSize size;
  for (std::size_t i = 0; i < n; ++i) {
    if (a[i].count == 0) continue;
    ++size.terms;
    size.total += static_cast<double>(a[i].count);
    if (a[i].count < size.groups) continue;
    const Group top = a[i].groups[a[i].count - 1] + 1;
    size.top = a[i].count > size.groups ? top : std::max(size.top, top);
    size.groups = a[i].count;
  }
  return size;
}

}  // namespace

ScaledNumber* lowProduct(engine::Arena& arena, const ScaledNumber* a, std::size_t na, const ScaledNumber* b,
                         std::size_t nb, std::size_t count) {
  auto* result = arena.makeZero<ScaledNumber>(count);
  const RowSize x = sizeOf(a, na), y = sizeOf(b, nb);
  if (x.terms == 0 || y.terms == 0) return result;
  const Wide leading = Wide{x.top} * y.top;
  const std::size_t terms = std::min(x.terms, y.terms);
  const bool isShort = leading / (groupBase / 2) < groupBase / terms;
  const std::size_t width = x.groups + y.groups + (isShort ? 0 : 1);
  // Products of single groups in the one way; in the other a group of a long product costs as much as these.
  constexpr double productsForGroup = 160;
  const double share = count < na + nb - 1 ? 0.5 : 1;
  const double longer = static_cast<double>(std::max(na, nb) * width);
  if (share * x.total * y.total < productsForGroup * longer) {
    ProductSum sum(arena);
    for (std::size_t k = 0; k < count; ++k) {
      for (std::size_t i = k < nb ? 0 : k - nb + 1; i < na && i <= k; ++i) sum.add(a[i], b[k - i]);
      const ScaledNumber total = sum.take();
      result[k] = total;
      result[k].groups = arena.make<Group>(total.count + 1);
      std::copy_n(total.groups, total.count, result[k].groups);
    }
    return result;
  }
  const PackedValue p = valueOf(arena, a, na, width);
  const PackedValue q = a == b ? p : valueOf(arena, b, nb, width);
  PackedValue product{arena.make<Group>(p.count + q.count), p.count + q.count, p.negative != q.negative};
  multiplyGroups(product.groups, p.groups, p.count, q.groups, q.count);
  readCoefficients(arena, product, width, result, count);
  return result;
}

}  // namespace korel
