#pragma once
// Exact integers of any size: the two forms, and what everything else rests on.
//
// An integer is an immediate word (magnitude below 2^30) or a heap object of tag INTPOS or INTNEG
// that holds the magnitude in digits of base 10000, least significant first:
//
//   s[0] header   s[1] lowest digit   ...   s[length-1] highest digit, not 0
//
// The canonical form of a value is the immediate when it fits. Heap objects with a small value, a heap
// zero (one digit 0) and extended columns (see integer_karatsuba.h) occur inside these routines and
// never leave them. The negative zero `consm0` is read as zero and never comes out of `addint` or
// `mulint`. Nothing here simplifies or shares: the results are immediates or fresh heap objects.
//
// `r`, where it is a last parameter, is optional result space: an object of the caller that is large
// enough. A routine given `r` may still return an immediate; callers use the returned word.

#include <array>
#include <cstdint>

#include "store/dag.h"

namespace korel {

constexpr std::int32_t BASE = 10000;
/// Digits of the longest object, and the decimal digits that they hold.
constexpr std::int64_t maxDigitCount = 67108862;
constexpr std::int64_t maxDecimalDigits = 4 * maxDigitCount;

// ---- tables of powers

inline constexpr std::int32_t pow10[10] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
/// powBASE[k] = 10000^k and ipowBASE[k] = 1 / 10000^k.
inline constexpr std::array<double, 7> powBASE = [] {
  std::array<double, 7> power{1.0};
  for (int k = 1; k < 7; ++k) power[k] = power[k - 1] * 10000.0;
  return power;
}();
inline constexpr std::array<double, 7> ipowBASE = [] {
  std::array<double, 7> power{};
  for (int k = 0; k < 7; ++k) power[k] = 1.0 / powBASE[k];
  return power;
}();

/// Scratch of the multiplication: a BINARY object that outlives it and grows on demand; a root of the
/// collector. 0 until first used.
extern DAG KaraBuffer;

/// Part of the start: forgets the scratch of an earlier heap.
void initializeIntegers();

// ---- digits

/// The digits of a heap integer, lowest first.
inline Word* digitsOf(DAG heap) { return &headerWord(heap) + 1; }
/// Digits of base 10000 in a heap integer.
inline Word digitCount(DAG heap) { return lengthOf(heap) - 1; }
/// True for a heap integer whose magnitude is 0: a working form only.
inline bool isHeapZero(DAG heap) { return lengthOf(heap) == 2 && rawField(heap, 1) == 0; }
/// True for a zero immediate of either sign.
constexpr bool isZeroImmediate(DAG x) { return x.word == 1 || x == consm0; }

// ---- making integers

constexpr bool fitsImmediate(std::int64_t value) { return value <= maxImmediate && value >= -maxImmediate; }
DAG NewHeapInteger(std::int32_t value);
inline DAG Newint(std::int32_t value) { return fitsImmediate(value) ? immediate(value) : NewHeapInteger(value); }
DAG NewIntegerInPlace(std::int32_t value, DAG r);
/// The heap form of a value that no immediate holds.
DAG NewLongInteger(std::int64_t value);
inline DAG NewInteger(std::int64_t value) {
  return fitsImmediate(value) ? immediate(static_cast<std::int32_t>(value)) : NewLongInteger(value);
}
/// As `NewInteger`; `r` has room for 6 words.
DAG NewLongLongIntegerInPlace(std::int64_t value, DAG r);
/// Heap form of an immediate, 1 to 3 digits; `consm0` gives a zero of tag INTNEG.
DAG NewSoftInt(DAG immediateInteger);
/// Writes the heap form of `x` (either form) into `space`, labelled as of now; gives `space`.
DAG CopyIntoSoftInt(DAG space, DAG x);
/// Words that `CopyIntoSoftInt` needs for `x`: 4 for every immediate.
inline Word softIntLengthBound(DAG x) { return isImmediate(x) ? 4 : lengthOf(x); }

// ---- shape

/// The immediate of the same value when there is one, else `x` itself, whose storage stays.
DAG MakeImmediate(DAG x);
bool FitIntoImmediate(DAG heap);
bool FitIntoWord(DAG x);      // -2^31 .. 2^31 - 1
bool FitIntoLongLong(DAG x);  // -2^63 .. 2^63 - 1
/// The value of integer `x`, when it fits; false and nothing else otherwise.
bool readLongLong(DAG x, std::int64_t& value);
/// True when `x` is an integer in canonical form.
bool VerifyInteger(DAG x);

// ---- values. Error of the first three: "integer too large in context"

/// Value of a heap integer of length 4 (an immediate is read as well).
std::int32_t IntegerValue(DAG x);
std::int32_t SoftIntValue(DAG heap);
std::int64_t LongLongValue(DAG x);
/// True when the heap integer equals `value`.
bool SoftIntEqual(DAG heap, std::int32_t value);
/// Decimal digits of a heap integer's magnitude.
std::int64_t SoftIntLength(DAG heap);
/// Decimal digits of the magnitude; 0 for zero.
std::int64_t ilength(DAG x);
/// Decimal digits of a digit of base 10000: 0 for 0.
constexpr int decimalLength(Word digit) {
  return digit >= 1000 ? 4 : digit >= 100 ? 3 : digit >= 10 ? 2 : digit >= 1 ? 1 : 0;
}

// ---- sign

/// -x in place: a heap integer changes its tag.
DAG negateint(DAG x);
/// -x as a fresh object.
DAG complint(DAG x);

// ---- addition

/// a + b. `r`: max of the lengths (4 for an immediate) + 1 words; may be an operand.
DAG addint(DAG a, DAG b, DAG r = DAG());
/// Sum of a non-zero immediate and a heap integer. `r`: the heap operand's length + 1 words.
DAG addMixed(DAG small, DAG heap, DAG r = DAG());
/// Sum of heap integers in `r` (max length + 1 words), which may be an operand; not made immediate.
DAG SoftIntAdd(DAG a, DAG b, DAG r);

// ---- order

/// Order of the magnitudes, -1, 0 or 1: signs are ignored.
int compint(DAG a, DAG b);
int SoftIntCompare(DAG a, DAG b);

// ---- multiplication

/// a * b. `r`: length a + length b - 1 words (4 for an immediate); may be b.
DAG mulint(DAG a, DAG b, DAG r = DAG());
/// Product of heap integers in `r`, which may be b; not made immediate.
DAG SoftIntMultiply(DAG a, DAG b, DAG r);
/// The same for operands that aren't zero: chooses the method by the lengths.
DAG KarMulInt(DAG a, DAG b, DAG r);

// ---- extended columns to digits

/// In place: carries signed 32-bit columns over into digits, strips zeros from the top. The object may
/// grow by as many digits as the top column carries: the caller has left room.
DAG SoftIntNormalize(DAG heap);
/// `SoftIntNormalize`, then `MakeImmediate`.
DAG normalmpi(DAG x);

}  // namespace korel
