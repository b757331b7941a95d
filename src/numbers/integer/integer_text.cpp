// Integers as decimal text and as doubles.

#include "numbers/integer/integer.h"

#include <charconv>
#include <cstring>
#include <limits>

#include "frame/errors.h"
#include "numbers/integer/integer_functions.h"
#include "store/objects.h"

namespace korel {

namespace {

/// The four characters of each digit of base 10000.
struct DigitTexts {
  char text[10000][4];
};
constexpr DigitTexts makeDigitTexts() {
  DigitTexts table{};
  for (int i = 0; i < 10000; ++i) {
    table.text[i][0] = static_cast<char>('0' + i / 1000);
    table.text[i][1] = static_cast<char>('0' + i / 100 % 10);
    table.text[i][2] = static_cast<char>('0' + i / 10 % 10);
    table.text[i][3] = static_cast<char>('0' + i % 10);
  }
  return table;
}
const DigitTexts digitTexts = makeDigitTexts();

char* writeMagnitude(const Word* digit, Word count, char* out) {
  int leading = decimalLength(digit[count - 1]);
  std::memcpy(out, digitTexts.text[digit[count - 1]] + 4 - leading, static_cast<std::size_t>(leading));
  out += leading;
  for (Word i = count - 1; i-- > 0; out += 4) std::memcpy(out, digitTexts.text[digit[i]], 4);
  return out;
}

}  // namespace

char* writeDecimal(DAG x, char* out) {
  if (isImmediate(x)) {
    if (x == consm0) *out++ = '-';
    return std::to_chars(out, out + 12, immediateValue(x)).ptr;
  }
  if (hasTag(x, INTNEG)) *out++ = '-';
  if (isHeapZero(x)) {
    *out++ = '0';
    return out;
  }
  return writeMagnitude(digitsOf(x), digitCount(x), out);
}

DAG KorelIntToStr(DAG x) {
  // An immediate has at most ten digits; a zero has one, which `ilength` doesn't count.
  std::int64_t characters = (isImmediate(x) ? 10 : SoftIntLength(x) + 1) + 1;
  Word space = textLength(static_cast<std::uint64_t>(characters));
  DAG s = newl2(space, NAME);
  char* end = writeDecimal(x, textOf(s));
  *end = '\0';
  Word length = textLength(static_cast<std::uint64_t>(end - textOf(s)));
  if (length != space) shorten(s, space, length);
  return s;
}

double IntegerToDouble(DAG x) {
  if (isImmediate(x)) return immediateValue(x);
  const Word* digit = digitsOf(x);
  Word count = digitCount(x);
  double value;
  if (count <= 4) {
    // Sums below 2^53 are exact; the last one rounds once.
    value = digit[0] + (count > 1 ? 10000.0 * digit[1] : 0);
    if (count > 2) value += 1.0e8 * (digit[2] + (count > 3 ? 10000.0 * digit[3] : 0));
  } else if (SoftIntLength(x) > 307) {
    value = std::numeric_limits<double>::infinity();
  } else {
    char text[310];
    std::from_chars(text, writeMagnitude(digit, count, text), value);
  }
  return hasTag(x, INTNEG) ? -value : value;
}

double SoftIntFloatApprox(DAG x, Word i) {
  Word length = lengthOf(x);
  if (i < 1) notimpl("FloatApprox1");
  if (i > length) notimpl("FloatApprox2");
  if (length < 2) notimpl("FloatApprox3");
  // Five digits from the top fill a double; those below word i count as parts of its digit.
  double value = 0;
  for (Word k = length, taken = 0; k-- > 1 && taken < 5; ++taken) {
    std::int64_t place = std::int64_t{k} - i;
    double digit = rawField(x, k);
    if (place >= 0) {
      for (; place > 6; place -= 6) digit *= powBASE[6];
      value += digit * powBASE[place];
    } else if (place >= -6) {
      value += digit * ipowBASE[-place];
    }
  }
  return value;
}

double FloatApprox(DAG x, Word i) { return SoftIntFloatApprox(x, i); }

}  // namespace korel
