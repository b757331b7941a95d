#pragma once
// Long operands packed into groups of four digits: base 10^16 in 64-bit words.
//
// A product of digits uses 27 of a machine multiplication's 128 bits, a product of groups 107 of them,
// and sums of a million such products still fit in 128 bits. So the long operations pack their operands
// (a linear cost), work on groups, and unpack the result. Decimal text, shifts and comparisons stay on
// the digits.
//
// Everything here works on plain arrays of canonical groups, lowest first, whose length is given; high
// groups may be zero. Results don't overlap operands unless a line says so. Scratch comes from the
// system and goes back before the return, or before the error of an interrupt or a time limit, which
// cuts any of the long operations short.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "frame/interrupts.h"
#include "store/dag.h"

namespace korel {

using Group = std::uint64_t;
using Wide = unsigned __int128;
constexpr Group groupBase = 10000000000000000u;
constexpr std::size_t digitsPerGroup = 4;
constexpr std::size_t groupsFor(std::size_t digits) { return (digits + digitsPerGroup - 1) / digitsPerGroup; }

/// Scratch groups: a few on the stack, more from the system. A system without memory is the error
/// "object too large", or `missing` for an optional space. Spaces in use form a chain, since an error
/// passes over their destructors: who raises one gives all of them back by `releaseAll`. Nothing that
/// works on groups calls anything else, so that all belong to the operation that fails.
class GroupSpace {
 public:
  enum Need { required, optional };
  explicit GroupSpace(std::size_t count, Need need = required);
  ~GroupSpace() {
    if (groups_ != own_) std::free(groups_);
    innermost_ = outer_;
  }
  GroupSpace(const GroupSpace&) = delete;
  GroupSpace& operator=(const GroupSpace&) = delete;
  bool missing() const { return groups_ == nullptr; }
  operator Group*() const { return groups_; }  // NOLINT: reads as an array

  static void releaseAll();

 private:
  static constexpr std::size_t ownCount = 80;
  static GroupSpace* innermost_;
  GroupSpace* outer_;
  Group* groups_;
  Group own_[ownCount];
};

/// Counts the work of an operation on groups, in single steps; an interrupt or a time limit ends it.
inline void passGroupWork(std::size_t steps) {
  if (!isTimeUp(static_cast<std::int64_t>(steps))) return;
  GroupSpace::releaseAll();
  endOperation();
}

/// Packs n digits into `groupsFor(n)` groups.
void packGroups(const Word* digits, std::size_t n, Group* groups);
/// Groups of the magnitude of an integer in either form, and how many they are.
inline std::size_t groupCount(DAG x) { return isImmediate(x) ? 1 : groupsFor(lengthOf(x) - 1); }
void packInteger(DAG x, Group* groups);
/// The canonical integer of n groups: an immediate, or a fresh object without a word to spare, so that
/// the free lists don't fill with tails.
DAG integerOfGroups(const Group* groups, std::size_t n, Tag sign);
/// Writes the n lowest digits of the groups; all further digits are zero.
void unpackGroups(const Group* groups, Word* digits, std::size_t n);

/// Count without the zero groups on top.
inline std::size_t significantGroups(const Group* a, std::size_t n) {
  while (n > 0 && a[n - 1] == 0) --n;
  return n;
}
int compareGroups(const Group* a, const Group* b, std::size_t n);
/// r = a + b with na >= nb; gives the carry. r may be a or b.
Group addGroups(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb);
/// r = a - b with na >= nb; gives the borrow. r may be a or b.
Group subtractGroups(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb);
/// r = a * factor + carry, factor and carry below 10^16; gives the group that comes out. r may be a.
Group scaleGroups(Group* r, const Group* a, std::size_t n, Group factor, Group carry = 0);
/// r = a / divisor; gives the remainder. r may be a.
Group divideGroupsBy(Group* r, const Group* a, std::size_t n, Group divisor);

/// r = a * b, na + nb groups; neither count is 0. The same array twice makes a square.
void multiplyGroups(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb);
/// The same by the school method, in columns of 128 bits; one operand has 1,500 groups at most.
void schoolProduct(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb);
/// The groups of a product from place `first` on, without what the columns below would carry into them:
/// that is less than min(na, nb) + 1 units of group `first` + 1. The groups of r below are left alone.
void highProduct(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb, std::size_t first);

/// q = a / b, and the remainder in the nb lowest groups of a (the rest of a becomes zero). b's top group
/// isn't zero, na >= nb, q has na - nb + 1 groups.
void divideGroups(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb);
/// q = a / b for the same operands, without the remainder, which costs half for short ones; tells whether
/// there is one. What was in a is lost.
bool quotientOfGroups(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb);

/// s = the truncated root of a, 2n groups, whose top one is at least a hundredth of the base. Tells
/// whether there is a remainder. What was in a is lost.
bool rootOfGroups(Group* s, Group* a, std::size_t n);

// ---- single groups

/// A quotient by a group, or by the base, and what is left.
struct GroupQuotient {
  Group quotient, rest;
};

/// A divisor with what stands in for division by it (Moeller and Granlund, "Improved division by
/// invariant integers", algorithm 4).
class GroupDivisor {
 public:
  constexpr explicit GroupDivisor(Group divisor)
      : shift_(__builtin_clzll(divisor)),
        normal_(divisor << shift_),
        reciprocal_(static_cast<Group>((Wide{~normal_} << 64 | ~Group{0}) / normal_)) {}
  /// Quotient and rest of x, which is below divisor * 2^64.
  constexpr GroupQuotient split(Wide x) const {
    x <<= shift_;
    auto high = static_cast<Group>(x >> 64), low = static_cast<Group>(x);
    Wide estimate = Wide{reciprocal_} * high + x;
    Group quotient = static_cast<Group>(estimate >> 64) + 1;
    Group rest = low - quotient * normal_;
    // Either way as likely: a mask in place of a branch. The second correction is rare.
    Group over = Group{0} - static_cast<Group>(rest > static_cast<Group>(estimate));
    quotient += over;
    rest += over & normal_;
    if (__builtin_expect(rest >= normal_, 0)) {
      ++quotient;
      rest -= normal_;
    }
    return {quotient, rest >> shift_};
  }

 private:
  int shift_;
  Group normal_, reciprocal_;  // 2^128 / normal, rounded down, less 2^64
};

/// The same for a divisor known to the compiler, which keeps its parts out of memory.
template <Group base>
inline GroupQuotient splitBy(Wide x) {
  constexpr GroupDivisor divisor(base);
  return divisor.split(x);
}
inline GroupQuotient splitGroup(Wide x) { return splitBy<groupBase>(x); }
/// The product of two integers of one group each, sign aside, as two groups.
inline void multiplySingles(DAG a, DAG b, Group* product) {
  Group x, y;
  packInteger(a, &x);
  packInteger(b, &y);
  GroupQuotient parts = splitGroup(Wide{x} * y);
  product[0] = parts.rest;
  product[1] = parts.quotient;
}

/// Takes the lowest place in base `base` off a sum, which keeps the quotient.
template <Group base>
inline Group takeLowest(Wide& sum) {
  // The part above 64 bits first, so that the rest meets the bound of `splitBy`.
  auto high = static_cast<Group>(sum >> 64);
  Group above = high / base;
  GroupQuotient parts = splitBy<base>(Wide{high - above * base} << 64 | static_cast<Group>(sum));
  sum = Wide{above} << 64 | parts.quotient;
  return parts.rest;
}

}  // namespace korel
