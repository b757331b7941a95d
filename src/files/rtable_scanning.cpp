// Rtables read by a format.

#include <charconv>
#include <cstdlib>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "files/formatted_rtables.h"
#include "files/rtable_layout.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/offsets.h"
#include "rtable/stored_positions.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

struct Reading {
  ScanSource& source;
  const ScanConversion& element;
  TableOptions options;
  DAG r;
  bool plainDoubles;  // elements go into the block as they are
  bool isFirst = true;
};

constexpr const char* inputEnded = "end of input encountered while reading rtable";

[[noreturn]] void refuse(Reading& in) {
  const int c = in.source.peek();
  if (c == -1) userror(inputEnded);
  KernelException("invalid character `%1` encountered while reading %2", characterText(c), naminstall("rtable"));
}

bool isDelimiter(const Reading& in, int c) { return c > 0 && std::strchr(in.options.delimiters, c) != nullptr; }

// Between two elements: white space, and a delimiter where there are some and no line has ended.
void passDelimiter(Reading& in) {
  if (in.options.delimiters[0] == 0 || isSpace(in.options.delimiters[0])) return;
  bool newLine = false;
  int c = in.source.next();
  for (; isSpace(c); c = in.source.next()) newLine = newLine || c == '\n';
  if (isDelimiter(in, c)) return;
  in.source.back(c);
  if (!newLine) refuse(in);
}

// The text up to the next delimiter or line end.
DAG delimitedText(Reading& in) {
  TextBuffer text;
  in.source.skipSpace();
  int c = in.source.next();
  for (; c != -1 && c != '\n' && !isDelimiter(in, c); c = in.source.next()) text.append(static_cast<char>(c));
  in.source.back(c);
  if (c == -1 && text.size() == 0) userror(inputEnded);
  std::size_t n = text.size();
  while (n > 0 && isSpace(text.bytes()[n - 1])) --n;
  text.setSize(n);
  return text.string();
}

bool readsDouble(char code) { return code != 0 && std::strchr("eEfgG", code) != nullptr; }

// The double nearest the text of a float; infinite or 0 where it is out of range.
double doubleOfText(TextBuffer& text) {
  double x = 0;
  const std::string_view digits = text.view();
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), x);
  const bool isRead = error == std::errc() && end == digits.data() + digits.size();
  return isRead ? x : std::strtod(text.text(), nullptr);
}

double doubleOf(Reading& in) {
  TextBuffer text;
  if (scanFloatText(in.source, in.element.width, text) != ScanState::done) refuse(in);
  return doubleOfText(text);
}

DAG valueOfElement(Reading& in) {
  if (in.element.code == 's' && in.options.delimiters[0] != 0) return delimitedText(in);
  const bool isReal = in.element.complex.form == ComplexForm::none;
  if (readsDouble(in.element.code) && isReal && datatypeOf(in.r) != dataDag)
    return simpl(NewHFloat(doubleOf(in), false));
  ScanOutcome outcome = scanValue(in.source, in.element);
  if (outcome.state != ScanState::done) refuse(in);
  return outcome.value;
}

void readElement(Reading& in, const std::int32_t* index) {
  passWork(objectSteps);
  if (!in.isFirst) passDelimiter(in);
  in.isFirst = false;
  if (in.plainDoubles) {
    RawElement raw;
    raw.real = doubleOf(in);
    storeRaw(in.r, offsetOf(in.r, index), raw);
    return;
  }
  DAG value = valueOfElement(in);
  if (!lacksCell(in.r, index) || !isZeroValue(value)) assignElement(in.r, index, value);
}

// Entries: an index, then its value.
void readEntries(Reading& in) {
  ScanConversion integer;
  integer.code = 'd';
  const Word n = dimensionsOf(in.r);
  while (in.source.skipSpace() != -1) {
    std::int32_t index[maxDimensions];
    for (Word k = 0; k < n; ++k) {
      if (!in.isFirst) passDelimiter(in);
      in.isFirst = false;
      ScanOutcome outcome = scanNumber(in.source, integer);
      if (outcome.state != ScanState::done) {
        if (k == 0) return;
        refuse(in);
      }
      std::int64_t place = 0;
      if (!readLongLong(outcome.value, place) || !isWithinBounds(in.r, k, place))
        KernelException("%1 index out of range", naminstall("Array"));
      index[k] = static_cast<std::int32_t>(place);
    }
    readElement(in, index);
  }
}

}  // namespace

ScanOutcome readRTable(ScanSource& source, TableFormat& format) {
  Reading in{source, format.element, readTableOptions(format.options.text()), DAG(), false};
  in.r = newScannedRTable(format, in.options);
  if (source.skipSpace() == -1 && extentOf(in.r, 0) > 0) return notScanned(-1);
  in.plainDoubles = readsDouble(format.element.code) && format.element.complex.form == ComplexForm::none &&
                    datatypeOf(in.r) == dataFloat64 && storageOf(in.r) == storageRectangular &&
                    functionCount(in.r) == 0;
  if (in.options.entries) {
    readEntries(in);
  } else if (in.options.band != 0) {
    forEachOnDiagonals(in.r, in.options.band == '-', [&](const std::int32_t* index, bool) { readElement(in, index); });
  } else {
    const bool triangle = in.options.triangle != 0;
    forEachInRows(in.r, in.options.transposed, [&](const std::int32_t* index, Word) {
      if (!triangle || isStoredPosition(in.r, index)) readElement(in, index);
    });
  }
  if (in.options.readOnly) updateFlag(in.r, rtableReadOnly, 1);
  return scanned(in.r);
}

DAG ScanHFArray(ScanSource& source, char code, int limit) {
  if (code == 0 || std::strchr("efgx", code) == nullptr) userror("e, f, g, or x expected for %h format");
  TextBuffer values;  // the bytes of the doubles
  for (int n = 0; limit == 0 || n < limit; ++n) {
    double x;
    if (code == 'x') {
      ScanConversion bits;
      bits.code = 'y';
      ScanOutcome outcome = scanNumber(source, bits);
      if (outcome.state != ScanState::done) break;
      x = hfloatValue(outcome.value);
    } else {
      TextBuffer text;
      if (scanFloatText(source, 0, text) != ScanState::done) break;
      x = doubleOfText(text);
    }
    values.append(std::string_view(reinterpret_cast<const char*>(&x), sizeof x));
  }
  const auto n = static_cast<std::int64_t>(values.size() / sizeof(double));
  return newHardwareArray(values.bytes(), n);
}

}  // namespace korel
