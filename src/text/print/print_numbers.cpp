// Numbers: integers digit by digit, fractions, floats of both kinds, complex numbers.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "session/interface.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

// ---- decimal digits

// The decimal digits of an integer's magnitude, four at a time from a heap integer's words, without
// a copy of the text.
class DecimalDigits {
 public:
  explicit DecimalDigits(DAG x) {
    if (isImmediate(x)) {
      std::uint32_t magnitude = static_cast<std::uint32_t>(std::abs(immediateValue(x)));
      do {
        small_[--smallStart_] = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
      } while (magnitude != 0);
      count_ = smallEnd - smallStart_;
      return;
    }
    heap_ = x;
    top_ = lengthOf(x) - 1;
    while (top_ > 1 && rawField(x, top_) == 0) --top_;
    Word digit = top_ >= 1 ? rawField(x, top_) : 0;
    topDigits_ = digit == 0 ? 1 : decimalLength(digit);
    count_ = topDigits_ + 4 * (static_cast<std::int64_t>(top_) - 1);
    if (top_ == 0) count_ = 1;
  }

  std::int64_t count() const { return count_; }

  /// Sends the digits; with `point` at least 0 a point behind so many of them.
  void emit(std::int64_t point = -1) const {
    std::int64_t sent = 0;
    auto sendOne = [&](char c) {
      if (sent++ == point) EmitChar('.');
      EmitChar(c);
    };
    if (!heap_ || top_ == 0) {
      if (heap_) sendOne('0');
      for (int i = smallStart_; i < smallEnd; ++i) sendOne(small_[i]);
    } else {
      sendDigits(rawField(heap_, top_), topDigits_, sendOne);
      for (Word i = top_ - 1; i >= 1; --i) sendDigits(rawField(heap_, i), 4, sendOne);
    }
    if (sent == point) EmitChar('.');
  }

 private:
  template <class Send>
  static void sendDigits(Word digit, int places, Send& send) {
    constexpr Word divisor[5] = {1, 1, 10, 100, 1000};
    for (Word unit = divisor[places]; unit != 0; unit /= 10) send(static_cast<char>('0' + digit / unit % 10));
  }

  static constexpr int smallEnd = 12;
  char small_[smallEnd] = {};
  int smallStart_ = smallEnd;
  DAG heap_;
  Word top_ = 0;
  int topDigits_ = 0;
  std::int64_t count_ = 0;
};

// A line may end between digits. Only program text marks that, so that the parts are read as one number.
void emitMagnitude(DAG integer) {
  DecimalDigits digits(integer);
  BreakBeforeWord(digits.count());
  const int marked = printAttributes ? 1 : 0;
  printAtomic += marked;
  digits.emit();
  printAtomic -= marked;
}

void emitSigned(DAG integer) {
  if (IsNegative(integer)) EmitChar('-');
  emitMagnitude(integer);
}

// ---- floats

// m times 10^e is .mmm times 10^(digits + e).
void emitScientific(const DecimalDigits& mantissa, bool negative, DAG exponent) {
  DAG power = addint(NewInteger(mantissa.count()), exponent);
  DecimalDigits powerDigits(power);
  bool minus = IsNegative(power);
  BreakBeforeWord(negative + 2 + mantissa.count() + minus + powerDigits.count());
  ++printAtomic;
  if (negative) EmitChar('-');
  mantissa.emit(0);
  EmitChar('e');
  if (minus) EmitChar('-');
  powerDigits.emit();
  --printAtomic;
}

// The digits of m with a point before the last -e of them.
void emitPlain(const DecimalDigits& mantissa, bool negative, std::int64_t exponent) {
  BreakBeforeWord(negative + 1 + mantissa.count());
  ++printAtomic;
  if (negative) EmitChar('-');
  mantissa.emit(mantissa.count() + exponent);
  --printAtomic;
}

void emitSingularFloat(DAG mantissa, DAG exponent) {
  if (exponent == ini("infinity")) {
    EmitToken(IsNegative(mantissa) ? "Float(-infinity)" : "Float(infinity)");
  } else if (exponent == ini("undefined")) {
    EmitToken("Float(");
    if (mantissa != cons1) {
      printObject(mantissa, bindsNothing);
      EmitChar(',');
    }
    EmitToken("undefined");
    EmitChar(')');
  } else {
    KernelException("invalid float structure");
  }
}

void emitFloat(DAG x, bool withSign) {
  DAG mantissa = x[1], exponent = x[2];
  if (!exponent || !mantissa || !isInteger(mantissa)) KernelException("invalid float structure");
  if (isName(exponent)) {
    emitSingularFloat(mantissa, exponent);
    return;
  }
  if (!isInteger(exponent)) KernelException("invalid float structure");
  bool negative = withSign && IsNegative(mantissa);
  DecimalDigits digits(mantissa);
  std::int64_t e = isImmediate(exponent) ? immediateValue(exponent) : 1;
  if (!isImmediate(exponent) || e > 0 || e < -digits.count()) {
    emitScientific(digits, negative, exponent);
  } else {
    emitPlain(digits, negative, e);
  }
}

void emitHFloat(double x) {
  if (std::isnan(x)) {
    EmitToken("Float(undefined)");
    return;
  }
  if (std::isinf(x)) {
    EmitToken(x < 0 ? "Float(-infinity)" : "Float(infinity)");
    return;
  }
  char text[40];
  std::snprintf(text, sizeof text - 3, "%0.*g", 15, x);
  // The text must read as a float: it has a point or gets one.
  if (std::strchr(text, '.') == nullptr) {
    if (char* exponent = std::strchr(text, 'e')) {
      std::memmove(exponent + 2, exponent, std::strlen(exponent) + 1);
      exponent[0] = '.';
      exponent[1] = '0';
    } else {
      std::strcat(text, ".");
    }
  }
  EmitToken(text);
}

// ---- complex numbers

// Minus infinity, in a complex number: a SUM of one pair with the coefficient -1.
bool isNegated(DAG part) { return isTag(part, SUM) && lengthOf(part) == 3 && part[2] == consm1; }

// The imaginary part without its sign, and the unit.
void emitImaginaryMagnitude(DAG part) {
  if (part != cons1 && part != consm1) {
    printMagnitude(part);
    EmitChar('*');
  }
  EmitToken(defaultNerinVariables.imaginaryunit);
}

}  // namespace

void printInteger(DAG x, int min, int) {
  bool negative = hasTag(x, INTNEG);
  bool parenthesised = negative && min >= bindsSeries;
  if (parenthesised) EmitChar('(');
  if (negative) EmitChar('-');
  emitMagnitude(x);
  if (parenthesised) EmitChar(')');
}

void printRational(DAG x, int min, int) {
  bool parenthesised = min >= bindsSeries && IsNegative(x);
  if (parenthesised) EmitChar('(');
  printObject(x[1], bindsNothing);
  EmitChar('/');
  printObject(x[2], bindsNothing);
  if (parenthesised) EmitChar(')');
}

void printFloat(DAG x, int, int) { emitFloat(x, true); }

void printHFloat(DAG x, int, int) { emitHFloat(hfloatValue(x)); }

void printMagnitude(DAG number) {
  if (isImmediate(number)) {
    emitMagnitude(number);
    return;
  }
  switch (tagOf(number)) {
    case INTNEG: case INTPOS: emitMagnitude(number); break;
    case RATIONAL:
      emitMagnitude(number[1]);
      EmitChar('/');
      emitSigned(number[2]);
      break;
    case FLOAT: emitFloat(number, !IsNegative(number)); break;
    case HFLOAT: {
      double value = hfloatValue(number);
      emitHFloat(IsNegative(number) ? -value : value);
      break;
    }
    case SUM:
      // Minus infinity as a part of a complex number.
      if (isNegated(number)) {
        printObject(number[1], bindsProduct);
        break;
      }
      [[fallthrough]];
    default: printObject(number, bindsProduct);
  }
}

void printComplex(DAG x, int, int) {
  Word parts = lengthOf(x) - 1;
  DAG imaginary = x[parts];
  if (printAttributes) {
    EmitToken("Complex");
    EmitChar('(');
    for (Word i = 1; i <= parts; ++i) {
      if (i > 1) EmitChar(',');
      printObject(x[i], bindsNothing);
    }
    EmitChar(')');
    return;
  }
  if (parts == 2) printObject(x[1], bindsNothing);
  if (IsNegative(imaginary) || isNegated(imaginary)) {
    EmitChar('-');
  } else if (parts == 2) {
    EmitChar('+');
  }
  emitImaginaryMagnitude(imaginary);
}

}  // namespace korel
