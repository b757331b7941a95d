// The two forms of an integer, and the way between them and machine integers.

#include "numbers/integer/integer.h"

#include <cstring>

#include "frame/errors.h"
#include "store/objects.h"

namespace korel {

namespace {

constexpr std::int64_t immediateLimit = std::int64_t{1} << 30;  // first magnitude that doesn't fit
constexpr const char* tooLarge = "integer too large in context";

/// Writes the lowest `count` digits of `magnitude`.
void writeDigits(DAG s, std::uint64_t magnitude, int count) {
  Word* digit = digitsOf(s);
  for (int i = 0; i < count; ++i) {
    digit[i] = static_cast<Word>(magnitude % BASE);
    magnitude /= BASE;
  }
}

std::uint64_t magnitudeOf(std::int64_t value) {
  return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

/// Digits of a magnitude that takes the long form: three below 10^12, never fewer.
int longDigitCount(std::uint64_t magnitude) {
  return magnitude < 1000000000000u ? 3 : magnitude < 10000000000000000u ? 4 : 5;
}

/// Magnitude of a heap integer of at most 4 digits.
std::uint64_t shortMagnitude(DAG heap) {
  assert(digitCount(heap) <= 4);
  const Word* digit = digitsOf(heap);
  std::uint64_t magnitude = 0;
  for (Word i = digitCount(heap); i-- > 0;) magnitude = magnitude * BASE + digit[i];
  return magnitude;
}

/// Value of a heap integer when it lies in -2^63 .. 2^63-1.
bool readHeap(DAG heap, std::int64_t& value) {
  const bool negative = hasTag(heap, INTNEG);
  if (digitCount(heap) <= 4) {
    auto magnitude = static_cast<std::int64_t>(shortMagnitude(heap));
    value = negative ? -magnitude : magnitude;
    return true;
  }
  if (digitCount(heap) > 5) return false;
  const Word* digit = digitsOf(heap);
  unsigned __int128 magnitude = 0;  // five digits reach 10^20, beyond 64 bits
  for (Word i = digitCount(heap); i-- > 0;) magnitude = magnitude * BASE + digit[i];
  if (magnitude > (static_cast<unsigned __int128>(1) << 63) - (negative ? 0 : 1)) return false;
  auto low = static_cast<std::uint64_t>(magnitude);
  value = static_cast<std::int64_t>(negative ? 0 - low : low);
  return true;
}

bool readWord(DAG heap, std::int32_t& value) {
  std::int64_t wide;
  if (digitCount(heap) > 3 || !readHeap(heap, wide)) return false;
  value = static_cast<std::int32_t>(wide);
  return wide == value;
}

}  // namespace

void initializeIntegers() { KaraBuffer = DAG(); }

// ---- making integers

DAG NewHeapInteger(std::int32_t value) { return NewIntegerInPlace(value, news(4)); }

DAG NewIntegerInPlace(std::int32_t value, DAG r) {
  if (fitsImmediate(value)) return immediate(value);
  setHeader(r, value < 0 ? INTNEG : INTPOS, 4);
  writeDigits(r, magnitudeOf(value), 3);
  return r;
}

DAG NewLongInteger(std::int64_t value) {
  return NewLongLongIntegerInPlace(value, news(longDigitCount(magnitudeOf(value)) + 1));
}

DAG NewLongLongIntegerInPlace(std::int64_t value, DAG r) {
  if (fitsImmediate(value)) return immediate(static_cast<std::int32_t>(value));
  int count = longDigitCount(magnitudeOf(value));
  setHeader(r, value < 0 ? INTNEG : INTPOS, count + 1);
  writeDigits(r, magnitudeOf(value), count);
  return r;
}

DAG NewSoftInt(DAG immediateInteger) {
  std::uint64_t magnitude = magnitudeOf(immediateValue(immediateInteger));
  int count = magnitude >= 100000000 ? 3 : magnitude >= 10000 ? 2 : 1;
  DAG s = news(count + 1);
  setHeader(s, static_cast<std::int32_t>(immediateInteger.word) < 0 ? INTNEG : INTPOS, count + 1);
  writeDigits(s, magnitude, count);
  return s;
}

DAG CopyIntoSoftInt(DAG space, DAG x) {
  if (isImmediate(x)) {
    std::uint64_t magnitude = magnitudeOf(immediateValue(x));
    int count = magnitude >= 100000000 ? 3 : magnitude >= 10000 ? 2 : 1;
    setHeader(space, magnitude != 0 && immediateValue(x) < 0 ? INTNEG : INTPOS, count + 1);
    writeDigits(space, magnitude, count);
  } else {
    std::memmove(&space[0], &x[0], std::size_t{lengthOf(x)} * sizeof(Word));
  }
  controlWord(space) = genpat;
  return space;
}

// ---- shape

DAG MakeImmediate(DAG x) {
  if (isImmediate(x) || lengthOf(x) > 4 || lengthOf(x) < 2) return x;
  auto magnitude = static_cast<std::int64_t>(shortMagnitude(x));
  if (magnitude >= immediateLimit) return x;
  return immediate(static_cast<std::int32_t>(hasTag(x, INTNEG) ? -magnitude : magnitude));
}

bool FitIntoImmediate(DAG heap) {
  if (lengthOf(heap) != 4) return lengthOf(heap) < 4;
  return shortMagnitude(heap) < static_cast<std::uint64_t>(immediateLimit);
}

bool FitIntoWord(DAG x) {
  std::int32_t value;
  return isImmediate(x) || readWord(x, value);
}

bool readLongLong(DAG x, std::int64_t& value) {
  if (!isImmediate(x)) return readHeap(x, value);
  value = immediateValue(x);
  return true;
}

bool FitIntoLongLong(DAG x) {
  std::int64_t value;
  return isImmediate(x) || readHeap(x, value);
}

bool VerifyInteger(DAG x) {
  if (isImmediate(x)) return x != consm0;
  if (!isObject(x) || (tagOf(x) != INTPOS && tagOf(x) != INTNEG)) return false;
  if (lengthOf(x) < 4 || FitIntoImmediate(x)) return false;
  const Word* digit = digitsOf(x);
  for (Word i = 0; i < digitCount(x); ++i)
    if (digit[i] >= static_cast<Word>(BASE)) return false;
  return digit[digitCount(x) - 1] != 0;
}

// ---- values

std::int32_t IntegerValue(DAG x) {
  if (isImmediate(x)) return immediateValue(x);
  std::int32_t value;
  if (lengthOf(x) != 4 || !readWord(x, value)) KernelException(tooLarge);
  return value;
}

std::int32_t SoftIntValue(DAG heap) {
  std::int32_t value;
  if (!readWord(heap, value)) KernelException(tooLarge);
  return value;
}

std::int64_t LongLongValue(DAG x) {
  if (isImmediate(x)) return immediateValue(x);
  std::int64_t value;
  if (!readHeap(x, value)) KernelException(tooLarge);
  return value;
}

bool SoftIntEqual(DAG heap, std::int32_t value) {
  std::int32_t own;
  return readWord(heap, own) && own == value;
}

std::int64_t SoftIntLength(DAG heap) {
  Word count = digitCount(heap);
  return std::int64_t{4} * (count - 1) + decimalLength(digitsOf(heap)[count - 1]);
}

std::int64_t ilength(DAG x) {
  if (!isImmediate(x)) return SoftIntLength(x);
  std::uint64_t magnitude = magnitudeOf(immediateValue(x));
  int length = 0;
  while (length < 10 && magnitude >= static_cast<std::uint64_t>(pow10[length])) ++length;
  return length;
}

// ---- sign

DAG negateint(DAG x) {
  if (isImmediate(x)) return immediate(-immediateValue(x));
  headerWord(x) ^= INTPOS | INTNEG;
  return x;
}

DAG complint(DAG x) { return isImmediate(x) ? immediate(-immediateValue(x)) : negateint(CopyAlg(x)); }

}  // namespace korel
