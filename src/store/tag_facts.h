#pragma once
// What is known of each tag, as data: the rows of tags.def by tag, and sets of tags.
//
// A walk that treats many kinds of objects alike asks for membership in a named set, which is a shift and
// a mask, in place of a switch of its own. What an object does beyond that stands in its own room
// (eval/structure/kinds.h).

#include <cstdint>
#include <initializer_list>
#include <iterator>

#include "store/dag.h"

namespace korel {

// ---- the rows

enum class LengthParity : std::uint8_t { any, odd, even };
enum class FieldsHold : std::uint8_t { all, raw, some };  // references, as tags.def tells them

struct TagFacts {
  const char* name;
  Word least, most;  // length in words
  LengthParity parity;
  FieldsHold fields;
  bool lasting;      // a simplified object is never written again
  const char* head;  // op(0, x), "" when that depends on x
};

inline constexpr TagFacts tagFacts[] = {
    {"", 1, maxLength, LengthParity::any, FieldsHold::raw, false, ""},  // under construction
#define KOREL_TAG(number, name, least, most, parity, fields, lasting, head) \
  {#name, least, most, LengthParity::parity, FieldsHold::fields, lastingIs_##lasting, head},
#define lastingIs_yes true
#define lastingIs_no false
#include "store/tags.def"
#undef lastingIs_yes
#undef lastingIs_no
#undef KOREL_TAG
};
static_assert(std::size(tagFacts) == tagCount + 1);

constexpr const TagFacts& factsOf(Tag tag) { return tagFacts[tagNumber(tag)]; }

// ---- sets

/// A set of tags: bit n stands for tag number n.
struct TagSet {
  std::uint64_t bits = 0;

  constexpr TagSet() = default;
  constexpr TagSet(std::initializer_list<Tag> tags) {
    for (Tag tag : tags) bits |= std::uint64_t{1} << tagNumber(tag);
  }
  constexpr bool contains(Tag tag) const { return ((bits >> tagNumber(tag)) & 1) != 0; }
  constexpr bool isEmpty() const { return bits == 0; }
  friend constexpr bool operator==(TagSet a, TagSet b) = default;
  friend constexpr TagSet operator|(TagSet a, TagSet b) { return fromBits(a.bits | b.bits); }
  friend constexpr TagSet operator&(TagSet a, TagSet b) { return fromBits(a.bits & b.bits); }
  friend constexpr TagSet operator-(TagSet a, TagSet b) { return fromBits(a.bits & ~b.bits); }
  static constexpr TagSet fromBits(std::uint64_t bits) {
    TagSet set;
    set.bits = bits;
    return set;
  }
};
/// All tags from `first` to `last`, in number order.
constexpr TagSet tagsBetween(Tag first, Tag last) {
  TagSet set;
  for (int n = tagNumber(first); n <= tagNumber(last); ++n) set.bits |= std::uint64_t{1} << n;
  return set;
}
/// The tags whose row satisfies `holds`.
template <class Test>
constexpr TagSet tagsWith(Test holds) {
  TagSet set;
  for (int n = 1; n <= tagCount; ++n)
    if (holds(tagFacts[n])) set.bits |= std::uint64_t{1} << n;
  return set;
}

inline constexpr TagSet integerTags = {INTNEG, INTPOS};
inline constexpr TagSet rationalTags = tagsBetween(INTNEG, RATIONAL);
inline constexpr TagSet floatTags = {FLOAT, HFLOAT};
inline constexpr TagSet realTags = tagsBetween(INTNEG, HFLOAT);
inline constexpr TagSet numberTags = realTags | TagSet{COMPLEX};
inline constexpr TagSet textTags = {STRING, NAME};
/// What stands for a word of the running frame, by its number.
inline constexpr TagSet frameReferenceTags = {LOCAL, PARAM, LEXICAL};
/// Pairs of a part and a numeric multiple.
inline constexpr TagSet pairTags = {SUM, PROD};
inline constexpr TagSet algebraicTags = tagsBetween(INTNEG, UNEVAL) - TagSet{STRING};
inline constexpr TagSet relationTags = tagsBetween(EQUATION, LESSTHAN);
inline constexpr TagSet booleanTags = {AND, NOT, OR};
/// Operators of two operands with a field each.
inline constexpr TagSet binaryTags = {DCOLON, CATENATE, POWER, EQUATION, INEQUAT, LESSEQ, LESSTHAN, AND, OR, RANGE};
inline constexpr TagSet collectionTags = {EXPSEQ, LIST, SET};
inline constexpr TagSet statementTags = tagsBetween(ASSIGN, USE);
/// The kernel's own records, which no expression holds.
inline constexpr TagSet internalTags = tagsBetween(BINARY, DEBUG);
/// Objects without a reference in them.
inline constexpr TagSet rawTags = tagsWith([](const TagFacts& row) { return row.fields == FieldsHold::raw; });
/// Objects that stay as they are once simplified.
inline constexpr TagSet lastingTags = tagsWith([](const TagFacts& row) { return row.lasting; });

/// `x`, which is not 0, is an immediate whose tag, or an object whose tag, is in the set.
inline bool isAmong(DAG x, TagSet set) { return set.contains(tagOf(x)); }

}  // namespace korel
