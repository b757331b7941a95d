// Integers and floats in formats.
//
// A float is printed from the decimal digits of its mantissa, so that no digit is lost on the way through a double;
// only hardware floats go through the C library, which prints exactly what they are.

#include "text/format/print_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer_functions.h"
#include "store/vocabulary.h"
#include "text/format/text_buffer.h"

namespace korel {

namespace {

// ---- signs and padding

char signOf(const PrintConversion& c, bool negative) { return negative ? '-' : c.sign; }

// What stands in front of and behind `length` characters of digits. Zeros stand between sign and digits.
struct Padding {
  std::int64_t blanks, zeros, behind;
};
Padding paddingOf(const PrintConversion& c, std::int64_t length, bool mayFillZeros) {
  const std::int64_t rest = std::max<std::int64_t>(c.width - length, 0);
  if (c.left) return {0, 0, rest};
  if (c.zero && mayFillZeros) return {0, rest, 0};
  return {rest, 0, 0};
}
void openPadding(PrintTarget& out, const Padding& padding, char sign) {
  out.fill(' ', padding.blanks);
  if (sign != 0) out.put(sign);
  out.fill('0', padding.zeros);
}

// A word such as "Inf", which no zeros fill up.
void printSigned(PrintTarget& out, const PrintConversion& c, char sign, const char* word) {
  const auto length = static_cast<std::int64_t>(std::strlen(word));
  Padding padding = paddingOf(c, length + (sign != 0), false);
  openPadding(out, padding, sign);
  out.put(word, std::strlen(word));
  out.fill(' ', padding.behind);
}

// ---- complex numbers

struct ComplexParts {
  DAG real, imaginary;
};
ComplexParts partsOf(DAG x) {
  if (!isComplex(x)) return {x, cons0};
  return {lengthOf(x) == 2 ? cons0 : x[1], imaginaryPartOf(x)};
}

// Both parts by `print`, as the modifier asks.
void printParts(PrintTarget& out, const PrintConversion& c, const ComplexParts& parts,
                void (*print)(PrintTarget&, const PrintConversion&, DAG)) {
  print(out, c, parts.real);
  PrintConversion second = c;
  if (c.complex.form == ComplexForm::separated) out.put(c.complex.separator);
  else second.sign = '+';
  print(out, second, parts.imaginary);
  if (c.complex.form == ComplexForm::withUnit) out.put(imaginaryUnitText(), std::strlen(imaginaryUnitText()));
}

// ---- integers

int baseOf(char code) { return code == 'o' ? 8 : code == 'x' || code == 'X' ? 16 : 10; }

void printIntegerDigits(PrintTarget& out, const PrintConversion& c, bool negative, const char* digits, std::size_t n) {
  const char sign = signOf(c, negative);
  const auto count = static_cast<std::int64_t>(n);
  const std::int64_t filled = std::max<std::int64_t>(count, c.precision);
  Padding padding = paddingOf(c, filled + (sign != 0), c.precision < 0);
  openPadding(out, padding, sign);
  out.fill('0', filled - count);
  out.put(digits, n);
  out.fill(' ', padding.behind);
}

void printInteger(PrintTarget& out, const PrintConversion& c, DAG x) {
  if (!isInteger(x)) userror("integer expected for integer format");
  if (isImmediate(x)) {
    char digits[16];
    char* end = std::to_chars(digits, std::end(digits), std::abs(immediateValue(x)), baseOf(c.code)).ptr;
    if (c.code == 'X') std::transform(digits, end, digits, [](char d) { return d >= 'a' ? char(d - 'a' + 'A') : d; });
    printIntegerDigits(out, c, immediateValue(x) < 0, digits, static_cast<std::size_t>(end - digits));
    return;
  }
  // A long integer is decimal whatever the code.
  TextBuffer text;
  char* digits = text.reserve(static_cast<std::size_t>(ilength(x)) + 2);
  char* end = writeDecimal(x, digits);
  const bool negative = hasTag(x, INTNEG);
  printIntegerDigits(out, c, negative, digits + negative, static_cast<std::size_t>(end - digits) - negative);
}

// ---- decimal digits of floats

// The number 0.d[0]d[1]d[2]... times 10^point; zero has no digits and the point 1.
struct Decimal {
  bool negative;
  char* digits;
  std::int64_t count, point;

  char digit(std::int64_t place) const { return place >= 0 && place < count ? digits[place] : '0'; }
  void dropTrailingZeros() {
    while (count > 0 && digits[count - 1] == '0') --count;
  }
};

// Leaves the first `kept` digits, rounded half up by the first one dropped. A carry out of the top moves the point.
void roundDigits(Decimal& d, std::int64_t kept) {
  if (kept >= d.count) return;
  const bool up = kept >= 0 && d.digits[kept] >= '5';
  d.count = std::max<std::int64_t>(kept, 0);
  if (!up) return;
  std::int64_t place = d.count;
  while (place > 0 && d.digits[place - 1] == '9') d.digits[--place] = '0';
  if (place > 0) {
    ++d.digits[place - 1];
    return;
  }
  d.digits[0] = '1';
  d.count = std::max<std::int64_t>(d.count, 1);
  ++d.point;
}

Decimal decimalOf(DAG mantissa, std::int64_t exponent, TextBuffer& space) {
  const bool negative = hasTag(mantissa, INTNEG);
  if (isZeroImmediate(mantissa)) return {negative, space.reserve(2), 0, 1};
  char* text = space.reserve(static_cast<std::size_t>(ilength(mantissa)) + 2);
  const std::int64_t count = writeDecimal(mantissa, text) - text - negative;
  return {negative, text + negative, count, count + exponent};
}

void printPointForm(PrintTarget& out, const PrintConversion& c, const Decimal& d, std::int64_t places) {
  const char sign = signOf(c, d.negative);
  const std::int64_t whole = std::max<std::int64_t>(d.point, 1);
  Padding padding = paddingOf(c, (sign != 0) + whole + (places > 0 ? 1 + places : 0), true);
  openPadding(out, padding, sign);
  const std::int64_t written = std::clamp<std::int64_t>(d.count, 0, std::max<std::int64_t>(d.point, 0));
  out.put(d.digits, static_cast<std::size_t>(written));
  out.fill('0', whole - written);
  if (places > 0) {
    out.put('.');
    const std::int64_t shown = std::min(places, std::max<std::int64_t>(d.count - d.point, 0));
    for (std::int64_t i = 0; i < shown; ++i) out.put(d.digit(d.point + i));
    out.fill('0', places - shown);
  }
  out.fill(' ', padding.behind);
}

void printExponentForm(PrintTarget& out, const PrintConversion& c, const Decimal& d, std::int64_t places, char mark) {
  char exponent[24];
  const auto length = std::snprintf(exponent, sizeof exponent, "%c%+03ld", mark, static_cast<long>(d.point - 1));
  const char sign = signOf(c, d.negative);
  Padding padding = paddingOf(c, (sign != 0) + 1 + (places > 0 ? 1 + places : 0) + length, true);
  openPadding(out, padding, sign);
  out.put(d.digit(0));
  if (places > 0) {
    out.put('.');
    const std::int64_t shown = std::clamp<std::int64_t>(d.count - 1, 0, places);
    out.put(d.digits + 1, static_cast<std::size_t>(shown));
    out.fill('0', places - shown);
  }
  out.put(exponent, static_cast<std::size_t>(length));
  out.fill(' ', padding.behind);
}

// The shorter of the two forms, to so many significant digits.
void printGeneralForm(PrintTarget& out, const PrintConversion& c, Decimal& d, std::int64_t significant) {
  significant = std::max<std::int64_t>(significant, 1);
  roundDigits(d, significant);
  d.dropTrailingZeros();
  if (d.count == 0) d.point = 1;
  const std::int64_t exponent = d.point - 1;
  if (exponent < -4 || exponent >= significant)
    printExponentForm(out, c, d, std::max<std::int64_t>(d.count - 1, 0), static_cast<char>(c.code - 2));
  else printPointForm(out, c, d, std::max<std::int64_t>(d.count - d.point, 0));
}

void printDecimal(PrintTarget& out, const PrintConversion& c, Decimal d) {
  constexpr std::int64_t usualPrecision = 6;
  const std::int64_t precision = c.precision < 0 ? usualPrecision : c.precision;
  switch (c.code) {
    case 'e': case 'E': roundDigits(d, precision + 1); return printExponentForm(out, c, d, precision, c.code);
    case 'f': roundDigits(d, d.point + precision); return printPointForm(out, c, d, precision);
    default: return printGeneralForm(out, c, d, precision);
  }
}

// ---- one real number

void printDoubleBits(PrintTarget& out, const PrintConversion& c, double x) {
  char digits[ieeeHexLength + 1];
  HFloatToIEEEHex(x, c.code == 'Y', digits);
  printPadded(out, c, digits, ieeeHexLength);
}

// The C library's conversions keep to this width and precision.
constexpr int librarySize = 60;

void printDouble(PrintTarget& out, const PrintConversion& c, double x) {
  if (std::isnan(x)) return printSigned(out, c, c.sign, "NaN");
  if (std::isinf(x)) return printSigned(out, c, signOf(c, x < 0), "Inf");
  if (c.width >= librarySize || c.precision >= librarySize) {
    DAG soft = HardwareToSoftwareFloat(x);
    TextBuffer space;
    return printDecimal(out, c, decimalOf(mantissaOf(soft), exponentValue(exponentOf(soft)), space));
  }
  char format[16], text[512];
  int n = 0;
  format[n++] = '%';
  if (c.left) format[n++] = '-';
  if (c.zero && !c.left) format[n++] = '0';
  if (c.sign != 0) format[n++] = c.sign;
  std::snprintf(format + n, sizeof format - static_cast<std::size_t>(n), "*.*%c", c.code);
  const int precision = c.precision < 0 ? 6 : c.precision;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  const int length = std::snprintf(text, sizeof text, format, c.width, precision, x);
#pragma GCC diagnostic pop
  out.put(text, static_cast<std::size_t>(length));
}

[[noreturn]] void refuseNumber() { userror("number expected for floating point format"); }

// The value of `x` as a number: itself, or what `evalf` makes of it.
DAG numericValue(DAG x) {
  if (isInteger(x) || isTag(x, HFLOAT) || isComplex(x)) return x;
  return simpl(evalf(x));
}

void printReal(PrintTarget& out, const PrintConversion& c, DAG x) {
  const bool bits = c.code == 'y' || c.code == 'Y';
  // The double nearest to a fraction is no matter of `Digits`.
  if (!bits || !isNumeric(x)) x = numericValue(x);
  if (!isNumeric(x)) refuseNumber();
  if (bits) return printDoubleBits(out, c, FloatValue(x));
  if (isTag(x, HFLOAT)) return printDouble(out, c, hfloatValue(x));
  TextBuffer space;
  if (isInteger(x)) return printDecimal(out, c, decimalOf(x, 0, space));
  if (isFloatUndefined(x)) return printSigned(out, c, c.sign, "NaN");
  if (isFloatInfinity(x)) return printSigned(out, c, signOf(c, hasTag(mantissaOf(x), INTNEG)), "Inf");
  if (!isFiniteFloat(x)) refuseNumber();
  printDecimal(out, c, decimalOf(mantissaOf(x), exponentValue(exponentOf(x)), space));
}

}  // namespace

void printIntegerBy(PrintTarget& out, const PrintConversion& c, DAG x) {
  if (c.complex.form == ComplexForm::none) return printInteger(out, c, x);
  if (!isInteger(x) && !isComplex(x)) userror("integer expected for integer format");
  printParts(out, c, partsOf(x), printInteger);
}

void printFloatBy(PrintTarget& out, const PrintConversion& c, DAG x) {
  if (c.complex.form == ComplexForm::none) return printReal(out, c, x);
  x = numericValue(x);
  if (!isNumber(x)) refuseNumber();
  printParts(out, c, partsOf(x), printReal);
}

}  // namespace korel
