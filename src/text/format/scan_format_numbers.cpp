// Numbers in the input of a scan.

#include "text/format/scan_format.h"

#include <cstdint>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "store/objects.h"

namespace korel {

namespace {

// The source, seen through the width of a conversion.
struct Window {
  ScanSource& source;
  int left;

  Window(ScanSource& s, int width) : source(s), left(width == 0 ? INT32_MAX : width) {}
  int next() {
    if (left == 0) return -1;
    const int c = source.next();
    if (c != -1) --left;
    return c;
  }
  void back(int c) {
    if (c == -1) return;
    ++left;
    source.back(c);
  }
};

// Takes digits while there are some; gives the character behind them, which has been taken.
int takeDigits(Window& in, int c, TextBuffer& text) {
  for (; isDigit(c); c = in.next()) text.append(static_cast<char>(c));
  return c;
}

// A sign, if there is one; gives the character behind it.
int takeSign(Window& in, bool& negative) {
  int c = in.next();
  negative = c == '-';
  return c == '-' || c == '+' ? in.next() : c;
}

// The integer at the head of a text, without a look at each character through the window; false for one of many digits,
// or none. Most calls of `sscanf` read one (bench/files.sh).
bool scanShortInteger(ScanSource& source, DAG& value) {
  constexpr int mostDigits = 9;
  const char* at = source.text;
  const bool negative = *at == '-';
  if (negative || *at == '+') ++at;
  const char* digits = at;
  std::int64_t x = 0;
  for (; isDigit(*at) && at - digits < mostDigits; ++at) x = 10 * x + (*at - '0');
  if (at == digits || isDigit(*at)) return false;
  source.count += at - source.text;
  source.text = at;
  value = simpl(NewInteger(negative ? -x : x));
  return true;
}

ScanOutcome scanDecimal(Window in) {
  bool negative;
  int c = takeSign(in, negative);
  TextBuffer digits;
  const int first = c;
  c = takeDigits(in, c, digits);
  in.back(c);
  if (digits.size() == 0) return notScanned(first);
  DAG x = integerOfDigits(digits.bytes(), digits.size());
  return scanned(simpl(negative ? negateint(x) : x));
}

// Octal and hexadecimal digits; "0x" may stand in front of the latter.
ScanOutcome scanInBase(Window in, int base) {
  bool negative;
  int c = takeSign(in, negative);
  const int first = c;
  int count = 0;
  if (base == 16 && c == '0') {
    c = in.next();
    count = 1;
    if (c == 'x' || c == 'X') c = in.next();
  }
  DAG value = cons0;
  for (;; c = in.next(), ++count) {
    const int digit = hexDigitValue(c);
    if (digit < 0 || digit >= base) break;
    value = addint(mulint(value, immediate(base)), immediate(digit));
  }
  in.back(c);
  if (count == 0) return notScanned(first);
  return scanned(simpl(negative && !isZeroImmediate(value) ? complint(value) : value));
}

ScanOutcome scanBits(Window in) {
  char digits[ieeeHexLength + 1];
  int n = 0;
  while (n < ieeeHexLength) {
    const int c = in.next();
    if (hexDigitValue(c) < 0) {
      in.back(c);
      if (n == 0) return notScanned(c);
      break;
    }
    digits[n++] = static_cast<char>(c);
  }
  digits[n] = 0;
  return scanned(simpl(NewHFloat(IEEEHexToHFloat(digits), false)));
}

// ---- floats

// Takes the rest of a word whose first letter has been read.
void takeRest(Window& in, const char* rest, const char* message) {
  for (; *rest != 0; ++rest)
    if (in.next() != *rest) userror(message);
}

ScanState takeFloat(Window in, TextBuffer& text) {
  bool negative;
  int c = takeSign(in, negative);
  if (negative) text.append('-');
  if (c == 'N') {
    takeRest(in, "aN", "`aN` expected after `N` in input for floating point format");
    text.append("NaN");
    return ScanState::done;
  }
  if (c == 'I') {
    takeRest(in, "nf", "`nf` expected after `I` in input for floating point format");
    text.append("Inf");
    return ScanState::done;
  }
  const int first = c;
  const std::size_t before = text.size();
  c = takeDigits(in, c, text);
  std::size_t digits = text.size() - before;
  if (c == '.') {
    text.append('.');
    c = takeDigits(in, in.next(), text);
    digits = text.size() - before - 1;
  }
  if (digits == 0) {
    in.back(c);
    return notScanned(first).state;
  }
  if (c == 'e' || c == 'E') {
    bool minus;
    text.append('e');
    c = takeSign(in, minus);
    if (minus) text.append('-');
    const std::size_t mark = text.size();
    c = takeDigits(in, c, text);
    if (text.size() == mark) {
      in.back(c);
      return ScanState::mismatch;
    }
  }
  in.back(c);
  return ScanState::done;
}

// The float of a text that `takeFloat` has left.
DAG floatOfText(TextBuffer& text) {
  const char* at = text.text();
  const bool negative = *at == '-';
  if (negative) ++at;
  if (*at == 'N') return newFLOAT(cons1, ini("undefined"));
  if (*at == 'I') return negative ? consfminf : consfinf;
  TextBuffer digits;
  std::int64_t places = 0;
  for (bool behindPoint = false; isDigit(*at) || *at == '.'; ++at) {
    if (*at == '.') {
      behindPoint = true;
      continue;
    }
    digits.append(*at);
    places += behindPoint;
  }
  DAG mantissa = integerOfDigits(digits.bytes(), digits.size());
  if (negative) mantissa = isZeroImmediate(mantissa) ? consm0 : negateint(mantissa);
  DAG exponent = NewInteger(-places);
  if (*at == 'e') {
    const bool minus = *++at == '-';
    if (minus) ++at;
    DAG power = integerOfDigits(at, text.size() - static_cast<std::size_t>(at - text.bytes()));
    exponent = addint(minus ? negateint(power) : power, exponent);
  }
  return evalf(simpl(newFLOAT(mantissa, exponent)));
}

}  // namespace

DAG integerOfDigits(const char* digits, std::size_t n) {
  while (n > 0 && *digits == '0') {
    ++digits;
    --n;
  }
  if (n <= 18) {
    std::int64_t value = 0;
    for (std::size_t i = 0; i < n; ++i) value = 10 * value + (digits[i] - '0');
    return NewInteger(value);
  }
  // Four decimal digits to a digit of the object.
  const std::size_t count = (n + 3) / 4;
  if (count > static_cast<std::size_t>(maxDigitCount)) KernelException("object too large");
  DAG x = newl2(static_cast<Word>(count + 1), INTPOS);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t end = n - 4 * i, begin = end > 4 ? end - 4 : 0;
    Word digit = 0;
    for (std::size_t k = begin; k < end; ++k) digit = 10 * digit + static_cast<Word>(digits[k] - '0');
    digitsOf(x)[i] = digit;
  }
  return x;
}

ScanState scanFloatText(ScanSource& source, int width, TextBuffer& text) {
  source.skipSpace();
  return takeFloat(Window(source, width), text);
}

ScanOutcome scanNumber(ScanSource& source, const ScanConversion& c) {
  if (source.skipSpace() == -1) return notScanned(-1);
  switch (c.code) {
    case 'd': case 'i': case 'u': {
      DAG value;
      if (source.text != nullptr && c.width == 0 && scanShortInteger(source, value)) return scanned(value);
      return scanDecimal(Window(source, c.width));
    }
    case 'o': return scanInBase(Window(source, c.width), 8);
    case 'x': case 'X': return scanInBase(Window(source, c.width), 16);
    case 'y': case 'Y': return scanBits(Window(source, c.width));
    default: break;
  }
  TextBuffer text;
  const ScanState state = scanFloatText(source, c.width, text);
  if (state != ScanState::done) return {state, DAG()};
  return scanned(simpl(floatOfText(text)));
}

}  // namespace korel
