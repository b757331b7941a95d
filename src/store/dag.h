#pragma once
// References and the layout of objects.
//
// Every value, expression, statement and table is an object of 32-bit words; a `DAG` is one word
// that refers to it. A word is 0 (no object), an immediate integer (low bit 1), or the address of an
// object's header word. The word before the header is the control word, which is no part of the
// object's length:
//
//   s[-1]  control word: generation label and flags       controlWord(s)
//   s[0]   header: tag in bits 31..26, length in 25..0     tagOf(s), lengthOf(s)
//   s[1]   first field, a reference unless its row in the catalogue says raw: then rawField(s, 1)
//
// Everything here is inline and branch-poor: these are the tests of every hot path.

#include <cassert>
#include <cstdint>

namespace korel {

using Word = std::uint32_t;

/// One reference word. Compares by word, converts to nothing, and is passed in a register.
struct DAG {
  Word word = 0;

  constexpr DAG() = default;
  explicit constexpr DAG(Word w) : word(w) {}
  explicit constexpr operator bool() const { return word != 0; }
  friend constexpr bool operator==(DAG a, DAG b) = default;

  /// Field `index` of the object (a reference; raw fields are read by `rawField`).
  DAG& operator[](std::int64_t index) const { return reinterpret_cast<DAG*>(static_cast<std::uintptr_t>(word))[index]; }
};
static_assert(sizeof(DAG) == 4);

constexpr Word lengthMask = 0x03ffffff;
constexpr Word tagMask = ~lengthMask;
constexpr Word maxLength = 0x03ffffff;

/// The 58 tags as header constants: the tag's number shifted left by 26, length 0.
enum Tag : Word {
  NOTAG = 0,
#define KOREL_TAG(number, name, ...) name = Word{number} << 26,
#include "store/tags.def"
#undef KOREL_TAG
};
constexpr int tagCount = 58;

constexpr int tagNumber(Tag tag) { return static_cast<int>(Word{tag} >> 26); }
constexpr Tag tagFromNumber(int number) { return static_cast<Tag>(static_cast<Word>(number) << 26); }

// ---- immediate integers

constexpr std::int32_t maxImmediate = 1073741823;
/// The negative zero: a second immediate form of 0, never -2^30.
constexpr DAG consm0{0x80000001u};

constexpr bool isImmediate(DAG x) { return (x.word & 1) != 0; }
/// Reference to an object (not 0, not an immediate).
constexpr bool isObject(DAG x) { return x.word != 0 && (x.word & 1) == 0; }
/// The immediate of `value`, which must fit (|value| <= maxImmediate).
constexpr DAG immediate(std::int32_t value) { return DAG((static_cast<Word>(value) << 1) | 1); }
/// Value of an immediate; the negative zero reads as 0.
constexpr std::int32_t immediateValue(DAG x) { return x == consm0 ? 0 : static_cast<std::int32_t>(x.word) >> 1; }

// ---- headers and fields

inline Word& headerWord(DAG s) { return s[0].word; }
inline Word& controlWord(DAG s) { return s[-1].word; }
/// Field `index` as the plain number it holds.
inline Word& rawField(DAG s, std::int64_t index) { return s[index].word; }

/// The one rule for a reference's tag: an immediate reads as INTPOS or INTNEG by its sign bit.
inline Tag tagOf(DAG x) {
  if (isImmediate(x)) return static_cast<std::int32_t>(x.word) >= 0 ? INTPOS : INTNEG;
  return static_cast<Tag>(headerWord(x) & tagMask);
}
/// Length in words, header included; `s` is not an immediate.
inline Word lengthOf(DAG s) { return headerWord(s) & lengthMask; }
inline void setHeader(DAG s, Tag tag, Word length) { headerWord(s) = tag | length; }

/// An immediate reads as the integer it is; `x` is not 0.
inline bool hasTag(DAG x, Tag tag) { return tagOf(x) == tag; }
/// The same for any word: 0 and immediates are no object of any tag.
inline bool isTag(DAG x, Tag tag) { return isObject(x) && static_cast<Tag>(headerWord(x) & tagMask) == tag; }
/// Immediate or heap integer.
inline bool isInteger(DAG x) { return isImmediate(x) || headerWord(x) < (INTPOS | lengthMask) + 1; }
/// Integer or RATIONAL.
inline bool isRationalNumber(DAG x) { return isImmediate(x) || headerWord(x) < (RATIONAL | lengthMask) + 1; }
/// Immediate, or tag up to HFLOAT: every number but a COMPLEX.
inline bool isNumeric(DAG x) { return isImmediate(x) || headerWord(x) < (HFLOAT | lengthMask) + 1; }

/// Characters of a NAME or STRING, zero-terminated.
inline char* textOf(DAG nameOrString) { return reinterpret_cast<char*>(&nameOrString[3]); }

// ---- control word

constexpr Word simplifiedBit = 2;
constexpr Word protectedBit = 4;
constexpr Word tableBit = 8;      // HASHTAB, HASH: keys are raw numbers
constexpr Word deferredBit = 8;   // NAME, STRING: the library has not been asked yet
constexpr Word hasBrnext = 8;     // FOR: the body holds a `break`, `next` or `goto`
constexpr Word brnextKnown = 16;  // FOR: the body has been examined
constexpr Word tenuredBit = 32;   // reached by a collection: short ones take it as alive (collector.h)
constexpr int generationShift = 22;

inline bool isSimplified(DAG s) { return isImmediate(s) || (controlWord(s) & simplifiedBit) != 0; }
/// From now on `s` may be taken for unchanging. Its fields may have been written since a collection
/// reached it, so that the next one looks at them.
inline void setSimplified(DAG s) { controlWord(s) = (controlWord(s) | simplifiedBit) & ~tenuredBit; }
inline Word generationOf(DAG s) { return controlWord(s) >> generationShift; }

}  // namespace korel
