#include "text/format/scan_format.h"

#include <array>
#include <cstring>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "files/formatted_rtables.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "library/records/records.h"
#include "numbers/complex/complex.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/integer/integer.h"
#include "openmath/openmath.h"
#include "store/append.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"
#include "text/read/source.h"

namespace korel {

int ScanSource::skipSpace() {
  int c = next();
  while (isSpace(c)) c = next();
  back(c);
  return c;
}

// ---- text

namespace {

ScanOutcome scanCharacters(ScanSource& source, const ScanConversion& c) {
  const int wanted = c.width == 0 ? 1 : c.width;
  TextBuffer text;
  for (int i = 0; i < wanted; ++i) {
    const int character = source.next();
    if (character == -1) return {ScanState::ended, DAG()};
    text.append(static_cast<char>(character));
  }
  return scanned(text.string());
}

// The characters that `isWanted` takes, up to the width; at least one.
template <class Test>
ScanOutcome scanRun(ScanSource& source, int width, TextBuffer& text, Test isWanted) {
  for (int i = 0; width == 0 || i < width; ++i) {
    const int c = source.next();
    if (c == -1 || !isWanted(c)) {
      source.back(c);
      if (i == 0) return notScanned(c);
      break;
    }
    text.append(static_cast<char>(c));
  }
  return scanned(DAG());
}

ScanOutcome scanWord(ScanSource& source, const ScanConversion& c, TextBuffer& text) {
  source.skipSpace();
  return scanRun(source, c.width, text, [](int character) { return !isSpace(character); });
}

ScanOutcome scanText(ScanSource& source, const ScanConversion& c) {
  TextBuffer text;
  ScanOutcome outcome = scanWord(source, c, text);
  return outcome.state == ScanState::done ? scanned(text.string()) : outcome;
}

ScanOutcome scanSet(ScanSource& source, const ScanConversion& c) {
  TextBuffer text;
  ScanOutcome outcome = scanRun(source, c.width, text, [&c](int character) { return c.wanted[character & 255]; });
  return outcome.state == ScanState::done ? scanned(text.string()) : outcome;
}

// ---- objects

ScanOutcome scanExpression(ScanSource& source, const ScanConversion& c) {
  TextBuffer text;
  ScanOutcome outcome = scanWord(source, c, text);
  if (outcome.state != ScanState::done) return outcome;
  DAG x = nerintokorel(parsestring(text.text(), true));
  if (isAmong(x, statementTags)) KernelException("invalid expression");
  return scanned(simpl(x));
}

struct RecordFailure {
  ScanSource* source;
  TextBuffer* message;
};
int nextOfRecord(void* failure) { return static_cast<RecordFailure*>(failure)->source->next(); }
void keepRecordEnd(void* failure, long) {
  static_cast<RecordFailure*>(failure)->message->append("unexpected end of input");
}
void keepRecordFailure(void* failure, long, const char* text) {
  static_cast<RecordFailure*>(failure)->message->append(text);
}
void ignoreRecordWarning(void*, long, const char*) {}

ScanOutcome scanRecord(ScanSource& source, const ScanConversion&) {
  if (source.skipSpace() == -1) return notScanned(-1);
  TextBuffer message;
  RecordFailure failure{&source, &message};
  DAG x = ParseDotM(nextOfRecord, keepRecordEnd, keepRecordFailure, ignoreRecordWarning, 0, nullptr, &failure);
  if (!x) userror(message.text());
  return scanned(simpl(x));
}

struct XmlInput {
  ScanSource* source;
  TextBuffer* message;
};
int nextOfXml(void* input) { return static_cast<XmlInput*>(input)->source->next(); }
void backToXml(void* input, int c) { static_cast<XmlInput*>(input)->source->back(c); }
void keepXmlFailure(void* input, int, const char* text) { static_cast<XmlInput*>(input)->message->append(text); }

ScanOutcome scanXml(ScanSource& source, const ScanConversion& c) {
  if (source.skipSpace() == -1) return notScanned(-1);
  TextBuffer message;
  XmlInput input{&source, &message};
  DAG x = ParseOpenMath(nextOfXml, backToXml, keepXmlFailure, c.width, &input);
  if (!x) userror(message.text());
  return scanned(x);
}

ScanOutcome scanPercent(ScanSource& source, const ScanConversion&) {
  const int character = source.skipSpace();
  if (character != '%') return notScanned(character);
  source.next();
  return scanned(DAG());
}

ScanOutcome scanCount(ScanSource& source, const ScanConversion&) { return scanned(NewInteger(source.count)); }

// ---- complex numbers

struct CodeRow {
  const char* codes;
  bool hasParts;  // numbers, which a complex form reads two of
  ScanOutcome (*scan)(ScanSource& source, const ScanConversion& c);
};
constexpr CodeRow codeRows[] = {
    // codes      parts  scan
    {"diuoxX",    true,  scanNumber},
    {"eEfgGyY",   true,  scanNumber},
    {"aA",        true,  scanExpression},
    {"c",         false, scanCharacters},
    {"s",         false, scanText},
    {"[",         false, scanSet},
    {"m",         false, scanRecord},
    {"M",         false, scanXml},
    {"n",         false, scanCount},
    {"%",         false, scanPercent},
};

// The row of each character: a scan of many short values looks one up for each (bench/files.sh).
constexpr auto rowsByCode = [] {
  std::array<const CodeRow*, 256> rows{};
  for (const CodeRow& row : codeRows)
    for (const char* code = row.codes; *code != 0; ++code) rows[static_cast<unsigned char>(*code)] = &row;
  return rows;
}();

const CodeRow& rowOf(char code) {
  const CodeRow* row = rowsByCode[static_cast<unsigned char>(code)];
  if (row == nullptr) unknownFormatCode(code);
  return *row;
}

[[noreturn]] void partMissing() { userror("numeric components expected in input for complex format"); }
[[noreturn]] void textMissing(const char* text) {
  KernelException("`%1` expected in input for complex format", strinstall(text));
}

DAG complexOf(DAG real, DAG imaginary) {
  if (!isNumeric(real) || !isNumeric(imaginary)) partMissing();
  if (isFloatNumber(real) != isFloatNumber(imaginary)) {
    real = simpl(evalf(real));
    imaginary = simpl(evalf(imaginary));
  }
  return complexNormalForm(new3(COMPLEX, real, imaginary));
}

// The real part has been read.
DAG scanImaginaryPart(ScanSource& source, const ScanConversion& c, const CodeRow& row) {
  const bool withUnit = c.complex.form == ComplexForm::withUnit;
  const int separator = source.skipSpace();
  if (!withUnit) {
    if (isSpace(c.complex.separator)) {
      if (separator == -1) textMissing(textOf(characterText(c.complex.separator)));
    } else if (separator != static_cast<unsigned char>(c.complex.separator)) {
      textMissing(textOf(characterText(c.complex.separator)));
    } else {
      source.next();
    }
  } else if (separator != '+' && separator != '-') {
    partMissing();
  }
  ScanOutcome part = row.scan(source, c);
  if (part.state != ScanState::done) partMissing();
  if (withUnit)
    for (const char* unit = imaginaryUnitText(); *unit != 0; ++unit) {
      const int character = source.next();
      if (character == static_cast<unsigned char>(*unit)) continue;
      source.back(character);
      textMissing(imaginaryUnitText());
    }
  return part.value;
}

}  // namespace

ScanOutcome scanValue(ScanSource& source, const ScanConversion& c) {
  const CodeRow& row = rowOf(c.code);
  const bool isComplexCode = row.hasParts && c.complex.form != ComplexForm::none;
  // With the unit, an expression holds both parts.
  if (!isComplexCode) return row.scan(source, c);
  if (row.scan == scanExpression && c.complex.form == ComplexForm::withUnit) {
    ScanOutcome whole = row.scan(source, c);
    if (whole.state == ScanState::done && !isNumber(whole.value)) partMissing();
    return whole;
  }
  ScanOutcome real = row.scan(source, c);
  if (real.state != ScanState::done) return real;
  return scanned(complexOf(real.value, scanImaginaryPart(source, c, row)));
}

// ---- the format

namespace {

// The characters of a set, behind its `[`. A `]` that comes first belongs to it.
bool readSet(const char*& at, ScanConversion& c) {
  bool excluded = *at == '^';
  if (excluded) ++at;
  std::memset(c.wanted, excluded, sizeof c.wanted);
  for (bool first = true; first || *at != ']'; first = false) {
    if (*at == 0) return false;
    unsigned char low = static_cast<unsigned char>(*at++), high = low;
    if (*at == '-' && at[1] != ']' && at[1] != 0) {
      high = static_cast<unsigned char>(at[1]);
      at += 2;
    }
    for (int k = low; k <= high; ++k) c.wanted[k] = !excluded;
  }
  ++at;
  return true;
}

struct Scan {
  ScanSource& source;
  FormatArguments arguments;
  DAG first, values;  // the value as long as there is one, then all of them
  bool hasRead;       // a conversion is done

  void add(DAG value) {
    if (!first) first = value;
    else values = values ? Append2(values, value) : newSequence({first, value});
  }
  DAG sequence() const { return values ? simpl(values) : first ? singleSequence(first) : null; }
};

// The conversion at `at`, behind its `%`: what came of it, or `ended` when the format ends within it.
ScanState scanConversion(Scan& scan, const char*& at) {
  ScanConversion c;
  if (*at == '*') {
    c.dropped = true;
    ++at;
  }
  c.width = readFormatInteger(at);
  if (*at == 0 || !readScanCode(at, c)) return ScanState::mismatch;
  ScanOutcome outcome;
  if (c.code == '{') outcome = ScanRTable(scan.source, at, scan.arguments);
  else if (c.code == 'h') outcome = scanned(ScanHFArray(scan.source, *at == 0 ? 0 : *at++, c.width));
  else outcome = scanValue(scan.source, c);
  if (outcome.state != ScanState::done) return outcome.state;
  if (c.code != 'n') scan.hasRead = true;
  if (!c.dropped && outcome.value) scan.add(outcome.value);
  return ScanState::done;
}

// One character of the format, which must be in the input.
ScanState scanLiteral(Scan& scan, char wanted) {
  if (isSpace(wanted)) {
    scan.source.skipSpace();
    return ScanState::done;
  }
  const int c = scan.source.next();
  if (c == static_cast<unsigned char>(wanted)) return ScanState::done;
  scan.source.back(c);
  return notScanned(c).state;
}

}  // namespace

bool readScanCode(const char*& at, ScanConversion& c) {
  if (!readModifiers(at, c.complex) || *at == 0) return false;
  c.code = *at++;
  return c.code != '[' || readSet(at, c);
}

ScanResult DoScanF(ScanSource& source, const char* format, DAG arguments, Word first) {
  Scan scan{source, {arguments, first - 1}, {}, {}, false};
  ScanState state = ScanState::done;
  while (*format != 0 && state == ScanState::done) {
    if (*format == '%') state = scanConversion(scan, ++format);
    else state = scanLiteral(scan, *format++);
  }
  return {scan.sequence(), state == ScanState::ended && !scan.hasRead};
}

}  // namespace korel
