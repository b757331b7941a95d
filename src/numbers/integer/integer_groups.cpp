#include "numbers/integer/integer_groups.h"

#include <algorithm>
#include <cstring>

#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_columns.h"
#include "numbers/integer/integer_transform.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

namespace {

// Cut-overs in groups of the shorter operand, measured with bench/integer_bench.cpp.
constexpr std::size_t karatsubaGroups = 100;
constexpr std::size_t karatsubaSquareGroups = 150;
constexpr std::size_t transformGroups = 320;
constexpr std::size_t transformSquareGroups = 400;

}  // namespace

GroupSpace* GroupSpace::innermost_ = nullptr;

GroupSpace::GroupSpace(std::size_t count, Need need) : outer_(innermost_), groups_(own_) {
  innermost_ = this;
  if (count <= ownCount) return;
  groups_ = static_cast<Group*>(std::malloc(count * sizeof(Group)));
  if (groups_ != nullptr || need == optional) return;
  releaseAll();
  KernelException("object too large");
}

void GroupSpace::releaseAll() {
  for (GroupSpace* space = innermost_; space != nullptr; space = space->outer_)
    if (space->groups_ != space->own_) std::free(space->groups_);
  innermost_ = nullptr;
}

// ---- packing

void packGroups(const Word* digits, std::size_t n, Group* groups) {
  std::size_t whole = n / digitsPerGroup;
  for (std::size_t i = 0; i < whole; ++i, digits += digitsPerGroup) {
    Group low = digits[0] + Group{digits[1]} * BASE, high = digits[2] + Group{digits[3]} * BASE;
    groups[i] = low + high * (BASE * BASE);
  }
  if (std::size_t rest = n % digitsPerGroup) {
    Group last = 0;
    while (rest-- > 0) last = last * BASE + digits[rest];
    groups[whole] = last;
  }
}

void unpackGroups(const Group* groups, Word* digits, std::size_t n) {
  std::size_t whole = n / digitsPerGroup;
  for (std::size_t i = 0; i < whole; ++i, digits += digitsPerGroup) {
    auto low = static_cast<Word>(groups[i] % (BASE * BASE));
    auto high = static_cast<Word>(groups[i] / (BASE * BASE));
    digits[0] = low % BASE;
    digits[1] = low / BASE;
    digits[2] = high % BASE;
    digits[3] = high / BASE;
  }
  if (std::size_t rest = n % digitsPerGroup) {
    Group last = groups[whole];
    for (std::size_t i = 0; i < rest; ++i, last /= BASE) digits[i] = static_cast<Word>(last % BASE);
  }
}

void packInteger(DAG x, Group* groups) {
  if (!isImmediate(x)) {
    packGroups(digitsOf(x), digitCount(x), groups);
    return;
  }
  std::int64_t value = immediateValue(x);
  groups[0] = static_cast<Group>(value < 0 ? -value : value);
}

DAG integerOfGroups(const Group* groups, std::size_t n, Tag sign) {
  n = significantGroups(groups, n);
  if (n == 0) return cons0;
  Group top = groups[n - 1];
  if (n == 1 && top < Group{1} << 30) {
    auto value = static_cast<std::int32_t>(top);
    return immediate(sign == INTNEG ? -value : value);
  }
  std::size_t count = digitsPerGroup * (n - 1) + 1;
  for (; top >= static_cast<Group>(BASE); top /= BASE) ++count;
  DAG r = news(static_cast<Word>(count + 1));
  unpackGroups(groups, digitsOf(r), count);
  setHeader(r, sign, static_cast<Word>(count + 1));
  return r;
}

// ---- linear operations

int compareGroups(const Group* a, const Group* b, std::size_t n) {
  while (n-- > 0)
    if (a[n] != b[n]) return a[n] < b[n] ? -1 : 1;
  return 0;
}

Group addGroups(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb) {
  Group carry = 0;
  std::size_t i = 0;
  for (; i < nb; ++i) {
    Group sum = a[i] + b[i] + carry;
    carry = sum >= groupBase;
    r[i] = sum - (carry != 0 ? groupBase : 0);
  }
  for (; i < na && carry != 0; ++i) {
    Group sum = a[i] + 1;
    carry = sum == groupBase;
    r[i] = carry != 0 ? 0 : sum;
  }
  if (r != a && i < na) std::memmove(r + i, a + i, (na - i) * sizeof(Group));
  return carry;
}

Group subtractGroups(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb) {
  Group borrow = 0;
  std::size_t i = 0;
  for (; i < nb; ++i) {
    Group difference = a[i] - b[i] - borrow;
    borrow = difference >> 63;
    r[i] = difference + (borrow != 0 ? groupBase : 0);
  }
  for (; i < na && borrow != 0; ++i) {
    borrow = a[i] == 0;
    r[i] = borrow != 0 ? groupBase - 1 : a[i] - 1;
  }
  if (r != a && i < na) std::memmove(r + i, a + i, (na - i) * sizeof(Group));
  return borrow;
}

Group scaleGroups(Group* r, const Group* a, std::size_t n, Group factor, Group carry) {
  // The products are split each by itself; only a carry of 0 or 1 links the steps.
  Group above = carry, one = 0;
  for (std::size_t i = 0; i < n; ++i) {
    GroupQuotient parts = splitGroup(Wide{a[i]} * factor);
    Group sum = parts.rest + above + one;
    one = sum >= groupBase;
    r[i] = sum - (one != 0 ? groupBase : 0);
    above = parts.quotient;
  }
  return above + one;
}

Group divideGroupsBy(Group* r, const Group* a, std::size_t n, Group divisor) {
  const GroupDivisor by(divisor);
  Group rest = 0;
  for (std::size_t i = n; i-- > 0;) {
    GroupQuotient parts = by.split(Wide{rest} * groupBase + a[i]);
    r[i] = parts.quotient;
    rest = parts.rest;
  }
  return rest;
}

// ---- school products, column by column

namespace {

void squareColumns(Group* r, const Group* a, std::size_t n, std::size_t from) {
  ColumnCarry column;
  for (std::size_t k = from; k < 2 * n - 1; ++k) {
    std::size_t first = k < n ? 0 : k - n + 1;
    r[k] = column.put(symmetricSum(a + first, a + (k - first), k - 2 * first + 1));
  }
  r[2 * n - 1] = column.carry();
}

void productColumns(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb, std::size_t from) {
  if (a == b && na == nb && na > 2) {
    squareColumns(r, a, na, from);
    return;
  }
  if (na < nb) {
    std::swap(a, b);
    std::swap(na, nb);
  }
  assert(nb <= longestColumn);
  ColumnCarry column;
  for (std::size_t k = from; k < na + nb - 1; ++k) {
    std::size_t lowB = k < na ? 0 : k - na + 1;
    std::size_t highB = std::min(k, nb - 1);
    r[k] = column.put(columnSum(b + lowB, a + (k - lowB), highB - lowB + 1));
  }
  r[na + nb - 1] = column.carry();
}

}  // namespace

void schoolProduct(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb) {
  passGroupWork(na * nb);
  productColumns(r, a, na, b, nb, 0);
}

void highProduct(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb, std::size_t first) {
  passGroupWork(na * nb);
  productColumns(r, a, na, b, nb, first);
}

// ---- Karatsuba with differences: a1*b0 + a0*b1 = a1*b1 + a0*b0 - (a1 - a0) * (b1 - b0)

namespace {

/// r = |a0 - a1| over h groups, where a1 has n - h; true when a1 is the larger.
bool absoluteDifference(Group* r, const Group* a0, const Group* a1, std::size_t h, std::size_t high) {
  std::size_t s0 = significantGroups(a0, h), s1 = significantGroups(a1, high);
  bool less = s0 != s1 ? s0 < s1 : compareGroups(a0, a1, s0) < 0;
  if (less) subtractGroups(r, a1, s1, a0, s0);
  else subtractGroups(r, a0, s0, a1, s1);
  std::size_t done = less ? s1 : s0;
  std::memset(r + done, 0, (h - done) * sizeof(Group));
  return less;
}

/// m = low + top + sign * m over n groups, of which top has `count`, n or n - 2; gives the carry.
template <int sign>
std::int64_t middleSum(Group* m, const Group* low, const Group* top, std::size_t n, std::size_t count) {
  constexpr auto base = static_cast<std::int64_t>(groupBase);
  std::int64_t carry = 0;
  auto put = [&](std::size_t i, Group sum) {
    std::int64_t value = static_cast<std::int64_t>(sum) + sign * static_cast<std::int64_t>(m[i]) + carry;
    carry = static_cast<std::int64_t>(value >= base) + static_cast<std::int64_t>(value >= 2 * base) -
            static_cast<std::int64_t>(value < 0);  // random: no branches
    m[i] = static_cast<Group>(value - carry * base);
  };
  for (std::size_t i = 0; i < count; ++i) put(i, low[i] + top[i]);
  for (std::size_t i = count; i < n; ++i) put(i, low[i]);
  return carry;
}

/// r = a * b, n groups each; `scratch` has 2n + 2 * bits of n groups or more.
void karatsuba(Group* r, const Group* a, const Group* b, std::size_t n, Group* scratch) {
  bool square = a == b;
  if (n < (square ? karatsubaSquareGroups : karatsubaGroups)) {
    schoolProduct(r, a, n, b, n);
    return;
  }
  std::size_t h = (n + 1) / 2, high = n - h;
  Group* middle = scratch;
  Group* next = scratch + 2 * h;
  bool negative = absoluteDifference(r, a, a + h, h, high);
  if (square) {
    karatsuba(middle, r, r, h, next);
    negative = false;
  } else {
    negative ^= absoluteDifference(r + h, b, b + h, h, high);
    karatsuba(middle, r, r + h, h, next);
  }
  karatsuba(r, a, b, h, next);
  karatsuba(r + 2 * h, a + h, b + h, high, next);

  std::int64_t carry = negative ? middleSum<1>(middle, r, r + 2 * h, 2 * h, 2 * high)
                                : middleSum<-1>(middle, r, r + 2 * h, 2 * h, 2 * high);
  // A carry of the middle part lies at r + 3h, which high products of an odd n may lack: it is 0 then.
  Group above = addGroups(r + h, r + h, 2 * n - h, middle, std::min(2 * h, 2 * n - h));
  assert(above == 0 && carry >= 0);
  (void)above;
  if (carry > 0) {
    auto extra = static_cast<Group>(carry);
    addGroups(r + 3 * h, r + 3 * h, 2 * n - 3 * h, &extra, 1);
  }
}

void karatsubaProduct(Group* r, const Group* a, const Group* b, std::size_t n) {
  GroupSpace scratch(2 * n + 256);
  karatsuba(r, a, b, n, scratch);
}

/// r = a * b with na > nb: blocks of the longer operand of nb groups, added up.
void blockProduct(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb, std::size_t block) {
  GroupSpace part(block + nb);
  std::memset(r, 0, (na + nb) * sizeof(Group));
  for (std::size_t at = 0; at < na; at += block) {
    std::size_t length = std::min(block, na - at);
    multiplyGroups(part, a + at, length, b, nb);
    addGroups(r + at, r + at, na + nb - at, part, length + nb);
  }
}

}  // namespace

void multiplyGroups(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb) {
  if (na < nb) {
    std::swap(a, b);
    std::swap(na, nb);
  }
  if (nb == 1) {
    passGroupWork(na);
    r[na] = scaleGroups(r, a, na, b[0]);
    return;
  }
  bool square = a == b && na == nb;
  if (nb < (square ? karatsubaSquareGroups : karatsubaGroups)) {
    schoolProduct(r, a, na, b, nb);
  } else if (nb >= (square ? transformSquareGroups : transformGroups)) {
    // A long operand against a much longer one: pieces, whose transforms stay in the cache.
    if (na > 4 * nb && na > 16 * transformGroups) blockProduct(r, a, na, b, nb, 2 * nb);
    else if (!transformProduct(r, a, na, b, nb))
      na == nb ? karatsubaProduct(r, a, b, nb) : blockProduct(r, a, na, b, nb, nb);
  } else if (na == nb) {
    karatsubaProduct(r, a, b, nb);
  } else {
    blockProduct(r, a, na, b, nb, nb);
  }
}

}  // namespace korel
