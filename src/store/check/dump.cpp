#include "store/check/dump.h"

#include <cstdarg>
#include <cstring>

#include "store/allocator.h"
#include "store/check/verify.h"
#include "store/objects.h"
#include "store/reference_fields.h"

namespace korel {

namespace {

constexpr int maxLine = 400;
constexpr int maxShownText = 60;

// A line under construction: text beyond its end is dropped.
struct Line {
  char text[maxLine];
  int used = 0;

  [[gnu::format(printf, 2, 3)]] void add(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    int wanted = std::vsnprintf(text + used, maxLine - 1 - used, format, arguments);
    va_end(arguments);
    used = wanted < 0 ? used : used + wanted < maxLine - 2 ? used + wanted : maxLine - 2;
    text[used] = 0;
  }
};

struct Output {
  DumpSink sink;
  void* context;

  void put(Line& line) const {
    line.text[line.used] = '\n';
    line.text[line.used + 1] = 0;
    sink(context, line.text);
  }
};

// The words in front of and at the reference can be read.
bool isReadable(DAG x) {
  if (x == static_hfloat && isObject(x)) return true;
  return isObject(x) && (x.word & 3) == 0 && x.word >= lostorage + 4 && x.word < historage;
}

// How many words of the object can be read, whatever its header says.
Word readableLength(DAG s) {
  Word length = lengthOf(s);
  if (s == static_hfloat) return length < 3 ? length : 3;
  Word room = (historage - s.word) / 4;
  return length < room ? length : room;
}

void addText(Line& line, const char* text, Word size) {
  line.add("\"");
  for (Word i = 0; i < size && text[i] != 0; ++i) {
    if (i == maxShownText) {
      line.add("...");
      break;
    }
    unsigned char c = static_cast<unsigned char>(text[i]);
    if (c < ' ' || c == 127) line.add("\\%03o", c);
    else line.add("%c", c);
  }
  line.add("\"");
}

// Decimal digits of a heap integer, highest first, cut behind the first few words.
void addDigits(Line& line, DAG s, Word length) {
  if (tagOf(s) == INTNEG) line.add("-");
  constexpr Word shownWords = 12;
  Word shown = 0;
  for (Word i = length; i-- > 1;) {
    if (shown++ == shownWords) {
      line.add("... (%u words)", length - 1);
      return;
    }
    line.add(shown == 1 ? "%u" : "%04u", rawField(s, i));
  }
}

// What a reference refers to, in a few characters.
void addReference(Line& line, DAG x) {
  if (x == DAG()) {
    line.add("0");
    return;
  }
  if (isImmediate(x)) {
    line.add("%s%d", x == consm0 ? "-" : "", immediateValue(x));
    return;
  }
  line.add("0x%x", x.word);
  if (!isReadable(x)) {
    line.add(": not in the heap");
    return;
  }
  const char* tag = DagIDToName(headerWord(x) >> 26);
  Word length = readableLength(x);
  line.add(": %s", tag == nullptr ? "no tag" : tag);
  switch (tagOf(x)) {
    case NAME: case STRING:
      if (length > 3) {
        line.add(" ");
        addText(line, textOf(x), 4 * (length - 3));
      }
      break;
    case INTPOS: case INTNEG:
      line.add(" ");
      addDigits(line, x, length);
      break;
    case HFLOAT:
      if (length >= 3) line.add(" %.17g", hfloatValue(x));
      break;
    case LOCAL: case PARAM: case LEXICAL:
      if (length >= 2) line.add(" %d", static_cast<std::int32_t>(rawField(x, 1)));
      break;
    default: line.add(" length %u", lengthOf(x));
  }
}

// What bit 3 says, which depends on the tag.
const char* bit3Name(Tag tag) {
  switch (tag) {
    case HASH: case HASHTAB: return "raw keys";
    case NAME: case STRING: return "deferred";
    case FOR: return "has break";
    default: return "bit 3";
  }
}

void addControl(Line& line, DAG s) {
  Word control = controlWord(s);
  Word label = generationOf(s);
  if (label >= firstMarkLabel) line.add(", mark %u", label);
  else line.add(", generation %u%s", label, genc[label] == 0 ? " (released)" : "");
  if (Word count = (control >> 12) & 0x3ff; count != 0) line.add(", %u external uses", count);
  if (control & simplifiedBit) line.add(", simplified");
  if (control & protectedBit) line.add(", protected");
  if (control & tableBit) line.add(", %s", bit3Name(tagOf(s)));
  if (control & brnextKnown) line.add(", examined");
  if (control & 1) line.add(", FREE STORAGE");
  if (control & 0xfe0) line.add(", stray bits 0x%x", control & 0xfe0);
}

// What the first line of an object's dump tells whole.
bool isToldByItsLine(Tag tag) {
  return tag == INTPOS || tag == INTNEG || tag == HFLOAT || tag == LOCAL || tag == PARAM || tag == LEXICAL;
}

bool isReferenceField(DAG s, Word i) {
  if (tagOf(s) == ZPPOLY) {
    // Whether the coefficients are raw depends on two fields, which may be anything here.
    if (i <= 2) return true;
    return isReadable(s[1]) && isImmediate(s[2]) && !hasRawCoefficients(s);
  }
  ReferenceFields fields = referenceFields(s);
  if (i == fields.extra) return true;
  return i >= fields.first && i < fields.end && (i - fields.first) % fields.step == 0;
}

// Where an object stands in the one that refers to it; 0 at the top.
void dumpLevel(DAG x, Word field, int depth, int indent, const Output& output) {
  Line head;
  head.add("%*s", indent, "");
  if (field != 0) head.add("[%u] ", field);
  addReference(head, x);
  bool open = isReadable(x) && depth >= 0;
  if (open) addControl(head, x);
  output.put(head);
  if (!open || isToldByItsLine(tagOf(x))) return;

  Tag tag = tagOf(x);
  Word length = readableLength(x);
  if (length < lengthOf(x)) {
    Line line;
    line.add("%*s  length %u reaches out of the heap", indent, "", lengthOf(x));
    output.put(line);
  }
  Word end = (tag == NAME || tag == STRING) && length > 3 ? 3 : length;  // behind stands the text
  for (Word i = 1; i < end; ++i) {
    if (i > maxDumpFields) {
      Line line;
      line.add("%*s  ... %u more", indent, "", end - i);
      output.put(line);
      return;
    }
    if (isReferenceField(x, i)) {
      dumpLevel(x[i], i, depth - 1, indent + 2, output);
      continue;
    }
    Line line;
    line.add("%*s  [%u] raw %d (0x%x)", indent, "", i, static_cast<std::int32_t>(rawField(x, i)), rawField(x, i));
    output.put(line);
  }
}

}  // namespace

void dumpObject(DAG x, int depth, DumpSink sink, void* context) { dumpLevel(x, 0, depth, 0, Output{sink, context}); }

void dumpObject(DAG x, int depth, std::FILE* stream) {
  dumpObject(
      x, depth, [](void* file, const char* line) { std::fputs(line, static_cast<std::FILE*>(file)); }, stream);
}

void dump(DAG x) {
  dumpObject(x, 2, stderr);
  std::fflush(stderr);
}

}  // namespace korel
