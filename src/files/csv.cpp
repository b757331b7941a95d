// Rows of fields as text: comma-separated values, and numbers in columns.
//
// A field that reads as a number is one, a quoted field always is a text. Quotes inside a quoted field are doubled. The
// separator " " stands for any run of blanks, as between columns.

#include <cstdio>
#include <cstring>
#include <string_view>

#include "eval/simplify/simplify.h"
#include "files/members.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/format/format_reading.h"
#include "text/format/scan_format.h"
#include "text/format/text_buffer.h"
#include "text/print/printer.h"

namespace korel {

namespace {

// ---- numbers

// A text that may be a number: sign, digits, point, digits, exponent.
struct NumberText {
  std::string_view whole, fraction, exponent;  // the digits of each part; the exponent with its sign
  bool negative = false, isFloat = false;
};

std::string_view takeDigits(std::string_view& rest) {
  std::size_t n = 0;
  while (n < rest.size() && isDigit(rest[n])) ++n;
  std::string_view digits = rest.substr(0, n);
  rest.remove_prefix(n);
  return digits;
}

bool readNumber(std::string_view rest, NumberText& number) {
  if (!rest.empty() && (rest[0] == '-' || rest[0] == '+')) {
    number.negative = rest[0] == '-';
    rest.remove_prefix(1);
  }
  number.whole = takeDigits(rest);
  if (!rest.empty() && rest[0] == '.') {
    rest.remove_prefix(1);
    number.fraction = takeDigits(rest);
    number.isFloat = true;
  }
  if (number.whole.empty() && number.fraction.empty()) return false;
  if (!rest.empty() && (rest[0] == 'e' || rest[0] == 'E')) {
    constexpr std::size_t longestExponent = 12;
    number.exponent = rest.substr(1);
    rest.remove_prefix(1);
    if (!rest.empty() && (rest[0] == '-' || rest[0] == '+')) rest.remove_prefix(1);
    if (takeDigits(rest).empty() || number.exponent.size() > longestExponent) return false;
    number.isFloat = true;
  }
  return rest.empty();
}

std::int64_t exponentOfText(std::string_view text) {
  std::int64_t value = 0;
  for (char c : text)
    if (isDigit(c)) value = 10 * value + (c - '0');
  return !text.empty() && text[0] == '-' ? -value : value;
}

// The integer of two runs of digits, one behind the other.
DAG joinedDigits(std::string_view high, std::string_view low) {
  constexpr std::size_t fitsWord = 18;
  if (high.size() + low.size() > fitsWord) {
    TextBuffer digits;
    digits.append(high);
    digits.append(low);
    return integerOfDigits(digits.bytes(), digits.size());
  }
  std::int64_t value = 0;
  for (char c : high) value = 10 * value + (c - '0');
  for (char c : low) value = 10 * value + (c - '0');
  return NewInteger(value);
}

DAG valueOfNumber(const NumberText& number) {
  DAG mantissa = joinedDigits(number.whole, number.fraction);
  if (number.negative) mantissa = isZeroImmediate(mantissa) && number.isFloat ? consm0 : negateint(mantissa);
  if (!number.isFloat) return simpl(mantissa);
  const std::int64_t places = static_cast<std::int64_t>(number.fraction.size());
  return simpl(newFLOAT(mantissa, NewInteger(exponentOfText(number.exponent) - places)));
}

// ---- reading

struct RowReader {
  const char* at;
  char separator;
  bool textOnly;
  TextBuffer field;

  bool isBlankSeparated() const { return separator == ' '; }
  bool endsField(char c) const {
    return c == separator || c == '\n' || c == 0 || (isBlankSeparated() && isSpace(static_cast<unsigned char>(c)));
  }
  void skipBlanks() {
    while (*at != '\n' && isSpace(static_cast<unsigned char>(*at))) ++at;
  }

  DAG quoted() {
    field.clear();
    for (++at; *at != '"' || at[1] == '"'; ++at) {
      if (*at == 0) KernelException("end of text in a quoted field");
      if (*at == '"') ++at;
      field.append(*at);
    }
    ++at;
    if (*at == '\r' && at[1] == '\n') ++at;
    if (!endsField(*at)) KernelException("separator expected behind a quoted field");
    return field.string();
  }
  DAG plain() {
    const char* begin = at;
    while (!endsField(*at)) ++at;
    std::string_view text(begin, static_cast<std::size_t>(at - begin));
    if (!text.empty() && text.back() == '\r' && *at != separator) text.remove_suffix(1);
    NumberText number;
    if (!textOnly && !text.empty() && readNumber(text, number)) return valueOfNumber(number);
    field.clear();
    field.append(text);
    return field.string();
  }

  // The next row; its line end is taken.
  DAG row() {
    Members fields;
    for (;;) {
      if (isBlankSeparated()) skipBlanks();
      if (isBlankSeparated() && (*at == '\n' || *at == 0)) break;
      fields.append(*at == '"' ? quoted() : plain());
      if (*at != separator) {
        if (isBlankSeparated() && *at != '\n' && *at != 0) continue;
        break;
      }
      ++at;
    }
    if (*at == '\n') ++at;
    return fields.list();
  }
};

[[noreturn]] void expectText(DAG x) { KernelException("string expected, but received %1", x); }

char separatorOf(const BuiltinCall& call, Word k) {
  if (argumentCount(call) < k) return ',';
  DAG x = call.arguments[k];
  if (!isCharacter(x) || textOf(x)[0] == '"' || textOf(x)[0] == '\n')
    KernelException("one character expected as separator, but received %1", x);
  return textOf(x)[0];
}

// ---- writing

bool needsQuotes(const char* text, char separator) {
  NumberText number;
  if (readNumber(text, number)) return true;
  for (const char* at = text; *at != 0; ++at) {
    const bool special = *at == separator || *at == '"' || *at == '\n' || *at == '\r';
    if (special || (separator == ' ' && isSpace(static_cast<unsigned char>(*at)))) return true;
  }
  return *text == 0 && separator == ' ';
}

// A float as other programs read it, without a digit more than it has: 1.5, 2., 2.e-10.
void appendFloat(TextBuffer& out, DAG x) {
  TextBuffer space;
  char* digits = space.reserve(static_cast<std::size_t>(ilength(mantissaOf(x))) + 4);
  std::string_view text(digits, static_cast<std::size_t>(writeDecimal(mantissaOf(x), digits) - digits));
  if (text[0] == '-') {
    out.append('-');
    text.remove_prefix(1);
  } else if (mantissaOf(x) == consm0) {
    out.append('-');
  }
  const std::int64_t exponent = exponentValue(exponentOf(x)), n = static_cast<std::int64_t>(text.size());
  constexpr std::int64_t mostZeros = 6;
  if (exponent <= 0 && exponent > -n) {
    out.append(text.substr(0, static_cast<std::size_t>(n + exponent)));
    out.append('.');
    out.append(text.substr(static_cast<std::size_t>(n + exponent)));
  } else if (exponent <= -n && exponent >= -n - mostZeros) {
    out.append("0.");
    for (std::int64_t i = exponent; i < -n; ++i) out.append('0');
    out.append(text);
  } else {
    char mark[24];
    out.append(text.substr(0, 1));
    out.append('.');
    out.append(text.substr(1));
    std::snprintf(mark, sizeof mark, "e%ld", static_cast<long>(exponent + n - 1));
    out.append(mark);
  }
}

void appendField(TextBuffer& out, DAG x, char separator) {
  if (isInteger(x)) {
    char* digits = out.reserve(static_cast<std::size_t>(ilength(x)) + 4);
    out.setSize(out.size() + static_cast<std::size_t>(writeDecimal(x, digits) - digits));
    return;
  }
  if (isTag(x, HFLOAT)) x = HFloatToFloat(x);
  if (isFiniteFloat(x)) return appendFloat(out, x);
  TextBuffer text;
  if (isText(x)) text.append(textOf(x));
  else PrintKorel(x, TextBufferSink, raisePrintError, 0, &text, 0);
  if (!needsQuotes(text.text(), separator)) return out.append(text.view());
  out.append('"');
  for (const char* at = text.text(); *at != 0; ++at) {
    if (*at == '"') out.append('"');
    out.append(*at);
  }
  out.append('"');
}

}  // namespace

DAG native::csvrows(const BuiltinCall& call) {
  if (argumentCount(call) < 1) wrongParameters(call);
  if (!isText(call.arguments[1])) expectText(call.arguments[1]);
  RowReader reader{textOf(call.arguments[1]), separatorOf(call, 2), argumentCount(call) > 2, {}};
  Members rows;
  while (*reader.at != 0) {
    passWork(100);
    rows.append(reader.row());
  }
  return rows.list();
}

DAG native::csvtext(const BuiltinCall& call) {
  if (argumentCount(call) < 1 || !isTag(call.arguments[1], LIST)) wrongParameters(call);
  const char separator = separatorOf(call, 2);
  TextBuffer out;
  DAG rows = call.arguments[1][1];
  for (Word i = 1; i < lengthOf(rows); ++i) {
    if (!isTag(rows[i], LIST)) KernelException("list of lists expected, but received %1", rows[i]);
    passWork(100);
    DAG fields = rows[i][1];
    for (Word k = 1; k < lengthOf(fields); ++k) {
      if (k > 1) out.append(separator);
      appendField(out, fields[k], separator);
    }
    out.append('\n');
  }
  return out.string();
}

}  // namespace korel
