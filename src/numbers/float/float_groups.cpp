#include "numbers/float/float_groups.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "frame/environment_block.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_groups.h"
#include "store/constants.h"
#include "store/standard_names.h"

namespace korel {

namespace {

constexpr std::int64_t groupDecimals = 16;

constexpr std::array<Group, groupDecimals + 1> groupPower = [] {
  std::array<Group, groupDecimals + 1> power{1};
  for (std::size_t k = 1; k < power.size(); ++k) power[k] = 10 * power[k - 1];
  return power;
}();

/// Division by 10^k at entry k - 1.
template <std::size_t... k>
constexpr std::array<GroupDivisor, sizeof...(k)> powerDivisors(std::index_sequence<k...>) {
  return {GroupDivisor(groupPower[k + 1])...};
}
constexpr auto powerDivisor = powerDivisors(std::make_index_sequence<groupDecimals>());

/// Decimal digits of n groups, the top one not zero.
std::int64_t decimalLength(const Group* a, std::size_t n) {
  std::int64_t length = groupDecimals * static_cast<std::int64_t>(n - 1) + 1;
  for (std::int64_t k = 1; a[n - 1] >= groupPower[k]; ++k) ++length;
  return length;
}

bool hasNonzeroGroup(const Group* a, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i)
    if (a[i] != 0) return true;
  return false;
}

/// r = a / 10^k rounded down, for 0 < k <= 16: count groups, from count + 1 of a or, when not `more`, from
/// as many.
void cutDecimals(Group* r, const Group* a, std::size_t count, std::int64_t k, bool more) {
  if (k == groupDecimals) {
    std::memcpy(r, a + 1, count * sizeof(Group));
    return;
  }
  const GroupDivisor& by = powerDivisor[static_cast<std::size_t>(k - 1)];
  const Group unit = groupPower[groupDecimals - k];
  Group kept = by.split(a[0]).quotient;
  for (std::size_t i = 0; i + 1 < count + (more ? 1 : 0); ++i) {
    GroupQuotient parts = by.split(a[i + 1]);
    r[i] = kept + parts.rest * unit;
    kept = parts.quotient;
  }
  if (!more) r[count - 1] = kept;
}

/// The integer of n groups, the top one not zero, rounded to `digits` digits, for a value between it and
/// its successor: strictly so when `more` is set, in which case there are more than `digits` digits. The
/// exponent of the result counts the digits cut off.
RoundedMantissa roundGroups(const Group* a, std::size_t n, Tag sign, std::int64_t digits, bool more) {
  const std::int64_t cut = decimalLength(a, n) - digits;
  if (cut <= 0) return {integerOfGroups(a, n, sign), 0, false};
  // The group that holds the first digit cut off, and the decimals that go of it, 1 to 16.
  const auto at = static_cast<std::size_t>((cut - 1) / groupDecimals);
  const std::int64_t decimals = cut - groupDecimals * static_cast<std::int64_t>(at);
  const auto count = static_cast<std::size_t>((digits + groupDecimals - 1) / groupDecimals);
  GroupSpace r(count + 1);
  cutDecimals(r, a + at, count, decimals, n - at > count);
  const Group lost = a[at] % groupPower[decimals];
  const Group half = lost / groupPower[decimals - 1];
  const bool tail = more || lost != half * groupPower[decimals - 1] || hasNonzeroGroup(a, at);
  std::int64_t exponent = cut;
  if (roundsAway(sign, static_cast<Word>(half), tail, (r[0] & 1) != 0)) {
    const Group one = 1;
    r[count] = addGroups(r, r, count, &one, 1);
    // A carry out of the top digit leaves a power of ten, a digit too long.
    const std::int64_t top = digits - groupDecimals * static_cast<std::int64_t>(count - 1);
    if (r[count] != 0 || r[count - 1] == groupPower[top]) {
      r[count] = 0;
      r[count - 1] = groupPower[top - 1];
      ++exponent;
    }
  }
  return {integerOfGroups(r, count, sign), exponent, half != 0 || tail};
}

std::size_t groupsForDecimals(std::int64_t decimals) {
  return static_cast<std::size_t>((decimals + groupDecimals - 1) / groupDecimals);
}

Tag productSign(DAG a, DAG b) { return tagOf(a) == tagOf(b) ? INTPOS : INTNEG; }

// Groups of the shorter operand, measured with bench/float_bench.cpp: below, half of a product's columns
// are had for less than a whole product by the faster methods.
constexpr std::size_t longestHighProduct = 500;

/// The groups of a * b from place `from` + 1 on, the lowest two of which are there to tell that what the
/// columns below carry changes nothing above them: false when it might.
bool highProductDecides(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb, std::size_t from) {
  highProduct(r, a, na, b, nb, from);
  // The error is below so many units of the lower guard group.
  const Wide error = std::min(na, nb) + 2;
  const Wide guard = Wide{r[from + 2]} * groupBase + r[from + 1];
  return guard != 0 && guard + error < Wide{groupBase} * groupBase;
}

}  // namespace

bool roundsAway(Tag sign, Word half, bool tail, bool odd) {
  DAG rounding = environmentWord(envRounding);
  if (rounding == ini("nearest")) return half > 5 || (half == 5 && (tail || odd));
  bool directed = rounding == ini("infinity") ? sign == INTPOS : isTag(rounding, SUM) ? sign == INTNEG : false;
  return directed && (half != 0 || tail);
}

RoundedMantissa roundedSum(DAG a, std::int64_t ea, DAG b, std::int64_t eb, std::int64_t digits) {
  if (ea < eb) {
    std::swap(a, b);
    std::swap(ea, eb);
  }
  // The operand with the larger exponent is shifted up to the other's.
  const std::int64_t shift = ea - eb;
  const auto whole = static_cast<std::size_t>(shift / groupDecimals);
  const std::size_t na = groupCount(a), nb = groupCount(b);
  std::size_t n = std::max(whole + na + 1, nb) + 1;
  GroupSpace space(n + nb);
  Group *x = space, *y = space + n;
  std::memset(x, 0, n * sizeof(Group));
  packInteger(a, x + whole);
  packInteger(b, y);
  if (std::int64_t part = shift % groupDecimals)
    x[whole + na] = scaleGroups(x + whole, x + whole, na, groupPower[part]);
  Tag sign = tagOf(a);
  if (sign == tagOf(b)) {
    addGroups(x, x, n, y, nb);
  } else {
    const std::size_t have = significantGroups(x, n);
    if (have > nb || (have == nb && compareGroups(x, y, nb) >= 0)) {
      subtractGroups(x, x, n, y, nb);
    } else {
      subtractGroups(x, y, nb, x, have);
      sign = tagOf(b);
    }
  }
  n = significantGroups(x, n);
  if (n == 0) return {cons0, eb, false};
  RoundedMantissa r = roundGroups(x, n, sign, digits, false);
  r.exponent += eb;
  return r;
}

RoundedMantissa roundedProduct(DAG a, DAG b, std::int64_t digits) {
  const Tag sign = productSign(a, b);
  std::size_t na = groupCount(a), nb = groupCount(b);
  if (na == 1 && nb == 1) {
    Group product[2];
    multiplySingles(a, b, product);
    return roundGroups(product, product[1] != 0 ? 2 : 1, sign, digits, false);
  }
  const bool square = a == b;
  GroupSpace x(na + (square ? 0 : nb) + na + nb);
  Group *y = square ? x : x + na, *product = y + nb;
  packInteger(a, x);
  if (!square) packInteger(b, y);
  // The digits that are cut off at least begin in the third group behind `from`.
  const std::int64_t cut = groupDecimals * static_cast<std::int64_t>(na + nb - 2) + 1 - digits;
  const std::int64_t from = (cut - 1) / groupDecimals - 3;
  if (from > 1 && std::min(na, nb) < longestHighProduct &&
      highProductDecides(product, x, na, y, nb, static_cast<std::size_t>(from))) {
    const Group* leading = product + from + 1;
    const std::size_t n = significantGroups(leading, na + nb - static_cast<std::size_t>(from) - 1);
    RoundedMantissa r = roundGroups(leading, n, sign, digits, true);
    r.exponent += groupDecimals * (from + 1);
    return r;
  }
  multiplyGroups(product, x, na, y, nb);
  return roundGroups(product, significantGroups(product, na + nb), sign, digits, false);
}

RoundedMantissa roundedQuotient(DAG a, DAG b, std::int64_t digits) {
  // Whole groups in front of or off the dividend, so that the quotient has a digit more than asked for.
  const std::int64_t wanted = digits + 1 - ilength(a) + ilength(b);
  const std::int64_t shift = wanted > 0 ? (wanted + groupDecimals - 1) / groupDecimals : wanted / groupDecimals;
  const std::size_t whole = groupCount(a), nb = groupCount(b);
  const std::size_t na = static_cast<std::size_t>(static_cast<std::int64_t>(whole) + shift);
  const std::size_t nq = na - nb + 1, zeros = shift > 0 ? static_cast<std::size_t>(shift) : 0;
  GroupSpace space(std::max(na, whole) + nb + nq);
  Group *x = space, *y = space + std::max(na, whole), *q = y + nb;
  packInteger(a, x + zeros);
  packInteger(b, y);
  bool more = false;
  if (zeros != 0) {
    std::memset(x, 0, zeros * sizeof(Group));
  } else if (shift < 0) {
    more = hasNonzeroGroup(x, static_cast<std::size_t>(-shift));
    x += -shift;
  }
  more |= quotientOfGroups(q, x, na, y, nb);
  RoundedMantissa r = roundGroups(q, significantGroups(q, nq), productSign(a, b), digits, more);
  r.exponent -= groupDecimals * shift;
  return r;
}

RoundedMantissa roundedRoot(DAG a, std::int64_t exponent, std::int64_t digits) {
  // Times a power of ten that leaves an even exponent and 2n whole groups, the last of which may lack a
  // decimal: the root has n whole groups.
  const std::int64_t length = ilength(a);
  const std::size_t count = groupCount(a);
  const std::size_t n = std::max(groupsForDecimals(digits + 1), count / 2 + 1);
  std::int64_t shift = 2 * groupDecimals * static_cast<std::int64_t>(n) - length;
  if ((exponent - shift) % 2 != 0) --shift;
  const auto whole = static_cast<std::size_t>(shift / groupDecimals);
  GroupSpace x(3 * n);
  Group* root = x + 2 * n;
  std::memset(x, 0, 2 * n * sizeof(Group));
  packInteger(a, x + whole);
  Group top = scaleGroups(x + whole, x + whole, count, groupPower[shift % groupDecimals]);
  if (whole + count < 2 * n) x[whole + count] = top;
  const bool more = rootOfGroups(root, x, n);
  RoundedMantissa r = roundGroups(root, n, INTPOS, digits, more);
  r.exponent += (exponent - shift) / 2;
  return r;
}

}  // namespace korel
