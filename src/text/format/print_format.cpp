#include "text/format/print_format.h"

#include <cstring>
#include <iterator>

#include "files/formatted_rtables.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/output.h"
#include "library/records/records.h"
#include "openmath/openmath.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/format/text_buffer.h"
#include "text/print/printer.h"

namespace korel {

void PrintTarget::fill(char c, std::int64_t n) {
  for (std::int64_t i = 0; i < n; ++i) {
    if (i % 65536 == 65535) passWork(65536);
    put(c);
  }
}

void printPadded(PrintTarget& out, const PrintConversion& c, const char* text, std::size_t n) {
  const std::int64_t padding = c.width - static_cast<std::int64_t>(n);
  if (!c.left) out.fill(' ', padding);
  out.put(text, n);
  if (c.left) out.fill(' ', padding);
}

// ---- codes that take any text or object

namespace {

void printText(PrintTarget& out, const PrintConversion& c, DAG x) {
  if (!isText(x)) userror("string expected for string format");
  std::size_t n = std::strlen(textOf(x));
  if (c.precision >= 0 && n > static_cast<std::size_t>(c.precision)) n = static_cast<std::size_t>(c.precision);
  printPadded(out, c, textOf(x), n);
}

void printCharacter(PrintTarget& out, const PrintConversion& c, DAG x) {
  char character;
  if (isText(x)) {
    if (!isCharacter(x)) userror("string of length 1 expected for character format");
    character = textOf(x)[0];
  } else {
    if (!isImmediate(x)) userror("string or integer expected for character format");
    character = static_cast<char>(immediateValue(x));
  }
  printPadded(out, c, &character, 1);
}

bool isNonNegativeNumber(DAG x) {
  if (!isNumeric(x)) return false;
  if (isInteger(x)) return !hasTag(x, INTNEG);
  return isTag(x, HFLOAT) ? !(hfloatValue(x) < 0) : !hasTag(x[1], INTNEG);
}

void printAlgebraic(PrintTarget& out, const PrintConversion& c, DAG x) {
  TextBuffer text;
  if (c.sign != 0 && isNonNegativeNumber(x)) text.append(c.sign);
  const bool bare = c.code == 'A' || c.code == 'Q';
  PrintKorelList(asSequence(koreltonerin(x)), TextBufferSink, raisePrintError, 0, &text, bare ? printBare : 0, ", ");
  printPadded(out, c, text.bytes(), text.size());
}

bool putRecordByte(void* textBuffer, int byte) {
  TextBufferSink(textBuffer, byte);
  return true;
}
void raiseRecordFailure(void*, const char* text) { userror(text); }

void printRecord(PrintTarget& out, const PrintConversion& c, DAG x) {
  TextBuffer text;
  PrintDotM(x, putRecordByte, raiseRecordFailure, 0, 0, nullptr, &text);
  printPadded(out, c, text.bytes(), text.size());
}

// What stands before a part that is no XML has gone out when the error is raised.
void printXml(PrintTarget& out, const PrintConversion& c, DAG x) {
  auto put = [](void* target, int byte) { static_cast<PrintTarget*>(target)->put(byte); };
  PrintOpenMath(x, put, &out, c.width);
}

}  // namespace

// ---- one conversion

namespace {

struct CodeRow {
  const char* codes;
  const char* missing;  // the error when the argument is
  bool byElement;       // of an rtable
  void (*print)(PrintTarget& out, const PrintConversion& c, DAG x);
};
constexpr CodeRow codeRows[] = {
    // codes     missing                                                by element  print
    {"diuoxX", "insufficient parameters for integer format",           true,       printIntegerBy},
    {"eEfgG",  "insufficient parameters for floating point format",    true,       printFloatBy},
    {"yY",     "insufficient parameters for floating point format",    true,       printFloatBy},
    {"s",      "insufficient parameters for string format",            true,       printText},
    {"c",      "insufficient parameters for character format",         true,       printCharacter},
    {"aA",     "insufficient parameters for algebraic format",         true,       printAlgebraic},
    {"m",      "insufficient parameters for algebraic format",         false,      printRecord},
    {"M",      "insufficient parameters for algebraic format",         false,      printXml},
};

const CodeRow* rowOf(char code) {
  for (const CodeRow& row : codeRows)
    if (code != 0 && std::strchr(row.codes, code) != nullptr) return &row;
  return nullptr;
}

void addOptions(PrintConversion& c, int& n, const char* text, std::size_t length) {
  if (static_cast<std::size_t>(n) + length > longestOptions) userror("format option sequence too long");
  std::memcpy(c.options + n, text, length);
  n += static_cast<int>(length);
}

constexpr const char* noParameterForStar = "insufficient parameters for `*` format";

// The text behind `{`, up to `}`, where `at` stands afterwards.
void readOptions(const char*& at, PrintConversion& c, FormatArguments& arguments) {
  int n = 0;
  for (++at; *at != '}'; ++at) {
    if (*at == 0) userror("unclosed format option sequence");
    if (*at != '*') {
      addOptions(c, n, at, 1);
      continue;
    }
    DAG text = arguments.next(noParameterForStar);
    if (!isText(text)) userror("string expected for `*` format");
    addOptions(c, n, textOf(text), std::strlen(textOf(text)));
  }
  c.options[n] = 0;
}

void readFlags(const char*& at, PrintConversion& c, FormatArguments& arguments) {
  for (;; ++at) switch (*at) {
      case '+': case ' ':
        if (c.sign != 0) userror("duplicate `+` or ` ` flag in format");
        c.sign = *at;
        break;
      case '-':
        if (c.left) userror("duplicate `-` flag in format");
        c.left = true;
        break;
      case '0':
        if (c.zero) userror("duplicate `0` flag in format");
        c.zero = true;
        break;
      case '{': readOptions(at, c, arguments); break;
      default: return;
    }
}

int starValue(DAG x) {
  if (!isImmediate(x)) userror("integer overflow in format specification");
  return immediateValue(x);
}

void readWidth(const char*& at, PrintConversion& c, FormatArguments& arguments) {
  if (*at != '*') {
    c.width = readFormatInteger(at);
    return;
  }
  ++at;
  DAG x = arguments.next(noParameterForStar);
  if (!isInteger(x)) userror("integer expected for `*` in format");
  c.width = starValue(x);
  if (c.width >= 0) return;
  if (c.left) userror("both `-` flag and negative width specified");
  c.left = true;
  c.width = -c.width;
}

void readPrecision(const char*& at, PrintConversion& c, FormatArguments& arguments) {
  if (*at != '.') return;
  if (*++at != '*') {
    c.precision = readFormatInteger(at);
    return;
  }
  ++at;
  DAG x = arguments.next("insufficient parameters for `.*` format");
  if (!isInteger(x) || hasTag(x, INTNEG)) userror("positive integer expected for `.*` in format");
  c.precision = starValue(x);
}

// All arguments that are left, as one sequence.
void printRest(PrintTarget& out, const PrintConversion& c, FormatArguments& arguments) {
  const Word from = arguments.used;
  if (arguments.atEnd()) return;
  DAG rest = copysub(arguments.sequence, from, lengthOf(arguments.sequence) - 1 - from);
  arguments.used = lengthOf(arguments.sequence) - 1;
  printAlgebraic(out, c, rest);
}

// The conversion whose text begins at `at`, behind its `%`. False when the format ends within it.
bool printConversion(PrintTarget& out, const char*& at, FormatArguments& arguments) {
  PrintConversion c;
  readFlags(at, c, arguments);
  readWidth(at, c, arguments);
  readPrecision(at, c, arguments);
  if (!readModifiers(at, c.complex) || *at == 0) return false;
  c.code = *at++;
  if (c.code == '%') {
    out.put('%');
    return true;
  }
  if (c.code == 'q' || c.code == 'Q') {
    printRest(out, c, arguments);
    return true;
  }
  const CodeRow* row = rowOf(c.code);
  if (row == nullptr) unknownFormatCode(c.code);
  DAG x = arguments.next(row->missing);
  if (row->byElement && isTag(x, RTABLE)) FormatRTable(out, c, x);
  else row->print(out, c, x);
  return true;
}

}  // namespace

void printValue(PrintTarget& out, const PrintConversion& c, DAG x) { rowOf(c.code)->print(out, c, x); }

std::int64_t DoPrintF(Sink sink, void* closure, const char* format, DAG arguments, Word first) {
  PrintTarget out{sink, closure};
  FormatArguments rest{arguments, first - 1};
  while (*format != 0) {
    if (*format != '%') out.put(*format++);
    else if (!printConversion(out, ++format, rest)) break;
  }
  return out.count;
}

}  // namespace korel
