// The formats by which rtables are scanned: dimensions, options, and the code of the elements.

#include <cstring>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "files/formatted_rtables.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "numbers/integer/integer.h"
#include "rtable/create.h"
#include "rtable/rtable_object.h"
#include "store/append.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/read/source.h"

namespace korel {

namespace {

constexpr std::ptrdiff_t longestSpecification = 255;

[[noreturn]] void invalidCharacter(const char* message, char c) { KernelException(message, characterText(c)); }
void requireMore(const char* at) {
  if (*at == 0) userror("unclosed table format dimension/option sequence");
}
void skipBlanks(const char*& at) {
  while (isSpace(*at)) ++at;
}

// ---- dimensions

bool endsDimension(char c) { return c == ',' || c == ';' || c == '}' || isSpace(c); }

DAG readSigned(const char*& at) {
  const bool negative = *at == '-';
  if (negative) ++at;
  const int value = readFormatInteger(at);
  return NewInteger(negative ? -std::int64_t{value} : value);
}
bool beginsInteger(const char* at) { return isDigit(*at) || (*at == '-' && isDigit(at[1])); }

DAG rangeOf(DAG from, DAG to) { return simpl(new3(RANGE, from, to)); }

DAG starArgument(FormatArguments& arguments) { return arguments.next("insufficient parameters for `*` format"); }

// The end of a range whose `..` is read.
DAG readRangeEnd(const char*& at, FormatArguments& arguments) {
  DAG end;
  if (*at == '*') {
    ++at;
    end = starArgument(arguments);
    if (!isInteger(end)) userror("integer expected for `*` format");
  } else {
    requireMore(at);
    if (!beginsInteger(at)) invalidCharacter("invalid character `%1` after `..` in format", *at);
    end = readSigned(at);
  }
  requireMore(at);
  if (!endsDimension(*at)) invalidCharacter("invalid character `%1` after range in format", *at);
  return end;
}

DAG readDimension(const char*& at, FormatArguments& arguments) {
  DAG first;
  if (*at == '*') {
    ++at;
    first = starArgument(arguments);
    const bool isRange = isTag(first, RANGE) && isInteger(first[1]) && isInteger(first[2]);
    if (!isInteger(first) && !isRange) userror("integer or integer range expected for `*` format");
    if (isRange) return first;
  } else {
    if (!beginsInteger(at)) invalidCharacter("invalid character `%1` in dimension section of format", *at);
    first = readSigned(at);
  }
  requireMore(at);
  if (at[0] == '.' && at[1] == '.') {
    at += 2;
    return rangeOf(first, readRangeEnd(at, arguments));
  }
  if (!endsDimension(*at)) invalidCharacter("invalid character `%1` after integer in format", *at);
  return rangeOf(cons1, first);
}

DAG readDimensions(const char*& at, FormatArguments& arguments) {
  DAG ranges = new1(EXPSEQ);
  for (;;) {
    skipBlanks(at);
    requireMore(at);
    if (*at == ';' || *at == '}') return ranges;
    if (*at == ',' && lengthOf(ranges) > 1) {
      ++at;
      skipBlanks(at);
      requireMore(at);
    }
    ranges = Append2(ranges, readDimension(at, arguments));
  }
}

// ---- the whole format

void readOptionText(const char*& at, TableFormat& format) {
  if (*at == ';') ++at;
  for (; *at != '}'; ++at) {
    requireMore(at);
    format.options.append(*at);
  }
  ++at;
}

void readElementCode(const char*& at, ScanConversion& element) {
  if (*at == 0) userror("format code expected for table format");
  element.width = readFormatInteger(at);
  if (!readModifiers(at, element.complex) || *at == 0) userror("element format code expected for table format");
  if (*at == '{') userror("recursive rtable scan format");
  if (std::strchr("diuoxXeEfgGyYascm[", *at) == nullptr)
    KernelException("unknown table format code `%1`", characterText(*at));
  if (!readScanCode(at, element)) userror("element format code expected for table format");
}

}  // namespace

ScanOutcome ScanRTable(ScanSource& source, const char*& at, FormatArguments& arguments) {
  TableFormat format;
  const char* begin = at;
  format.ranges = readDimensions(at, arguments);
  readOptionText(at, format);
  if (at - begin > longestSpecification) userror("format specification too long");
  readElementCode(at, format.element);
  return readRTable(source, format);
}

// ---- options

namespace {

// The text between the parenthesis at `at` and the one that closes it, where `at` stands afterwards.
DAG readParenthesised(const char*& at, const char* missing, char option) {
  if (*at != '(') userror(missing);
  char open[64];
  int depth = 0;
  TextBuffer text;
  for (;; ++at) {
    if (*at == 0) KernelException("missing closing `)` for `%1` option", characterText(option));
    const char closing = *at == '(' ? ')' : *at == '[' ? ']' : 0;
    if (closing != 0) {
      if (depth == 64) KernelException("mismatched parentheses in `%1` option", characterText(option));
      open[depth++] = closing;
    } else if (*at == ')' || *at == ']') {
      if (open[--depth] != *at) KernelException("mismatched parentheses in `%1` option", characterText(option));
      if (depth == 0) break;
    }
    if (depth > 1 || closing == 0) text.append(*at);
  }
  DAG x = nerintokorel(parsestring(text.text(), true));
  return simpl(eval(simpl(x)));
}

int readSize(const char*& at) {
  ++at;
  const int size = readFormatInteger(at);
  --at;
  return size;
}

DAG namedSize(const char* name, int size) {
  return simpl(new3(TABLEREF, naminstall(name), new2(EXPSEQ, immediate(size))));
}

void readFloatSize(const char*& at, TableOptions& o) {
  const int size = readSize(at);
  if (size != 8) KernelException("invalid float size `%1` for `f` option", NewInteger(size));
  o.datatype = namedSize("float", size);
}
void readComplexSize(const char*& at, TableOptions& o) {
  const int size = readSize(at);
  if (size != 8) KernelException("invalid complex size `%1` for `c` option", NewInteger(size));
  o.datatype = namedSize("complex", size);
}
void readIntegerSize(const char*& at, TableOptions& o) {
  if (!isDigit(at[1])) {
    const char text[2] = {at[1], 0};
    KernelException("digit expected after `i` option but received `%1`", strinstall(text));
  }
  o.datatype = namedSize("integer", *++at - '0');
}

void readBand(const char*& at, TableOptions& o) {
  if (at[1] != '+' && at[1] != '-') userror("`+` or `-` expected after `b` (band matrix) formatting option");
  o.band = *++at;
  if (*++at != '(') KernelException("`(` expected after `b%1` scanning option", characterText(o.band));
  const char* end = std::strchr(at, ')');
  if (end == nullptr) KernelException("`)` expected at end of `b%1` scanning option", characterText(o.band));
  DAG widths = new1(EXPSEQ);
  for (++at; at != end;) {
    skipBlanks(at);
    if (!isDigit(*at)) KernelException("`)` expected at end of `b%1` scanning option", characterText(o.band));
    widths = Append2(widths, NewInteger(readFormatInteger(at)));
    skipBlanks(at);
    if (*at == ',') ++at;
  }
  o.bandWidths = simpl(widths);
}

void readDelimiters(const char*& at, TableOptions& o) {
  constexpr int most = sizeof o.delimiters - 1;
  if (*++at != '(') userror("`(` expected after `d` scanning option");
  int n = 0;
  bool hasSpace = false;
  for (++at; *at != ')'; ++at) {
    if (*at == 0) userror("`)` expected at end of `d` scanning option");
    if (n == most)
      KernelException("at most %1 delimiters can be specified for the `d` scanning option", immediate(most));
    hasSpace = hasSpace || isSpace(*at);
    o.delimiters[n++] = *at;
  }
  o.delimiters[n] = 0;
  if (hasSpace && n > 1) userror("whitespace must be the one and only delimiter for the `d` scanning option");
}

}  // namespace

TableOptions readTableOptions(const char* at) {
  TableOptions o;
  for (; *at != 0; ++at) switch (*at) {
      case ' ': break;
      case 'a': o.array = true; break;
      case 'b': readBand(at, o); break;
      case 'c': readComplexSize(at, o); break;
      case 'C': case 'F': o.order = *at; break;
      case 'd': readDelimiters(at, o); break;
      case 'e': o.entries = true; break;
      case 'h': o.hardware = true; break;
      case 'v': o.vector = true; break;
      case 'f': readFloatSize(at, o); break;
      case 'i': readIntegerSize(at, o); break;
      case 'l': case 'u': o.triangle = *at; break;
      case 'r': o.readOnly = true; break;
      case 't': o.transposed = true; break;
      case 's': o.storage = readParenthesised(++at, "(storage) expected for `s` option", 's'); break;
      case 'x': o.functions = readParenthesised(++at, "(indfns) expected for `x` option", 'x'); break;
      case 'y': o.datatype = readParenthesised(++at, "(datatype) expected for `y` option", 'y'); break;
      default: KernelException("unknown rtable scanning option: `%1`", characterText(*at));
    }
  return o;
}

// ---- the rtable

namespace {

DAG createRTable(DAG arguments) {
  DAG self = ini("rtable");
  return builtin::rtable({arguments, self, new3(FUNCTION, self, arguments)});
}

DAG option(const char* name, DAG value) { return simpl(new3(EQUATION, naminstall(name), value)); }

bool readsFloats(char code) { return code != 0 && std::strchr("eEfgGyY", code) != nullptr; }

DAG datatypeFor(const TableOptions& o, const ScanConversion& element) {
  if (o.datatype) return o.datatype;
  if (readsFloats(element.code)) return namedSize(element.complex.form == ComplexForm::none ? "float" : "complex", 8);
  return o.hardware && element.code != 0 && std::strchr("diuoxX", element.code) != nullptr ? namedSize("integer", 4)
                                                                                           : DAG();
}

bool allBeginAtOne(DAG ranges) {
  return everyMember(ranges, [](DAG range) { return range[1] == cons1; });
}

DAG subtypeFor(const TableFormat& format, const TableOptions& o) {
  const Word n = lengthOf(format.ranges) - 1;
  const bool plain = !o.array && allBeginAtOne(format.ranges);
  if (o.vector || (plain && n == 1))
    return simpl(new3(TABLEREF, naminstall("Vector"), new2(EXPSEQ, naminstall("column"))));
  return naminstall(plain && n == 2 ? "Matrix" : "Array");
}

// The shape that a triangle or band has, which is the name of its storage as well; 0 for none.
DAG shapeFor(const TableOptions& o) {
  if (o.triangle != 0)
    return simpl(
        new3(TABLEREF, naminstall("triangular"), new2(EXPSEQ, naminstall(o.triangle == 'l' ? "lower" : "upper"))));
  if (o.band == 0) return DAG();
  DAG widths = o.bandWidths && lengthOf(o.bandWidths) > 1 ? o.bandWidths : new2(EXPSEQ, cons1);
  return simpl(new3(TABLEREF, naminstall("band"), widths));
}

DAG appendAll(DAG arguments, DAG members) {
  for (Word i = 1; i < lengthOf(members); ++i) arguments = Append2(arguments, members[i]);
  return arguments;
}

DAG argumentsFor(const TableFormat& format, const TableOptions& o) {
  DAG arguments = new1(EXPSEQ);
  DAG shape = shapeFor(o);
  if (o.functions) arguments = appendAll(arguments, asSequence(o.functions));
  else if (shape) arguments = Append2(arguments, shape);
  arguments = appendAll(arguments, format.ranges);
  if (DAG datatype = datatypeFor(o, format.element)) arguments = Append2(arguments, option("datatype", datatype));
  DAG storage = o.storage ? o.storage : shape;
  if (storage) arguments = Append2(arguments, option("storage", storage));
  if (o.order != 0)
    arguments = Append2(arguments, option("order", naminstall(o.order == 'C' ? "C_order" : "Fortran_order")));
  return Append2(arguments, option("subtype", subtypeFor(format, o)));
}

}  // namespace

DAG newScannedRTable(const TableFormat& format, const TableOptions& options) {
  const Word n = lengthOf(format.ranges) - 1;
  if (n == 0) {
    userror(options.vector ? "number of elements must be specified for `v` scanning option"
                           : "dimensions and/or elements must be specified");
  }
  if (options.vector && n != 1) userror("scanned rtable is not one-dimensional");
  if ((options.band != 0 || options.triangle != 0) && n != 2) userror("scanned rtable is not two-dimensional");
  bool failed;
  DAG r = KernelTrapError(createRTable, simpl(argumentsFor(format, options)), failed);
  if (failed || !isTag(r, RTABLE)) userror("could not create rtable in scanf");
  return r;
}

DAG newHardwareArray(const void* values, std::int64_t n) {
  DAG arguments = newSequence({rangeOf(cons1, NewInteger(n)), option("datatype", namedSize("float", 8)),
                               option("subtype", naminstall("Array"))});
  DAG r = createRTable(simpl(arguments));
  if (n > 0) std::memcpy(dataOf(r), values, static_cast<std::size_t>(n) * sizeof(double));
  return r;
}

}  // namespace korel
