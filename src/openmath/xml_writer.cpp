// Expressions as XML.

#include <cstdlib>
#include <cstring>

#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "openmath/openmath.h"
#include "store/vocabulary.h"
#include "text/format/format_reading.h"
#include "text/format/text_buffer.h"

namespace korel {

bool beginsXmlName(int c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool continuesXmlName(int c) { return beginsXmlName(c) || isDigit(c) || c == '.' || c == '-'; }

namespace {

struct Writer {
  Sink sink;
  void* closure;
  int flags;

  void put(char c) const { sink(closure, static_cast<unsigned char>(c)); }
  void put(const char* text) const { sendText(text, sink, closure); }
  bool has(XmlWriterFlag flag) const { return (flags & flag) != 0; }
};

const char* entityOf(char c) {
  switch (c) {
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '&': return "&amp;";
    case '"': return "&quot;";
    case '\'': return "&apos;";
    default: return nullptr;
  }
}

void writeText(const Writer& w, const char* text) {
  for (; *text != 0; ++text) {
    const char* entity = w.has(xmlWriteEntities) ? entityOf(*text) : nullptr;
    if (entity != nullptr) w.put(entity);
    else w.put(*text);
  }
}

bool hasSpace(const char* text) {
  while (*text != 0 && !isSpace(static_cast<unsigned char>(*text))) ++text;
  return *text != 0;
}

void writeString(const Writer& w, const char* text) {
  const bool quoted = w.has(xmlQuoteSpaced) && hasSpace(text);
  if (quoted) w.put('"');
  writeText(w, text);
  if (quoted) w.put('"');
}

void writeInteger(const Writer& w, DAG x) {
  TextBuffer space;
  char* digits = space.reserve(static_cast<std::size_t>(ilength(x)) + 4);
  *writeDecimal(x == consm0 ? cons0 : x, digits) = 0;
  w.put(digits);
}

bool isXmlName(const char* text) {
  if (!beginsXmlName(*text)) return false;
  while (*text != 0 && continuesXmlName(*text)) ++text;
  return *text == 0;
}

void writeAttribute(const Writer& w, DAG attribute) {
  const bool isNamed = isTag(attribute, EQUATION) && isTag(attribute[1], STRING) && isXmlName(textOf(attribute[1]));
  if (!isNamed || (!isTag(attribute[2], STRING) && !isInteger(attribute[2]))) userror("invalid attribute");
  w.put(' ');
  w.put(textOf(attribute[1]));
  w.put('=');
  DAG value = attribute[2];
  const bool bare = isInteger(value) && w.has(xmlBareIntegers);
  if (!bare) w.put('"');
  if (isInteger(value)) writeInteger(w, value);
  else writeText(w, textOf(value));
  if (!bare) w.put('"');
}

void write(const Writer& w, DAG x);

void writeElement(const Writer& w, DAG call) {
  const char* name = textOf(call[1]);
  if (std::strncmp(name, "OM_", 3) == 0) name += 3;
  if (!isXmlName(name)) userror("invalid function name");
  w.put('<');
  w.put(name);
  if (lengthOf(call) > 3) {
    DAG attributes = asSequence(call[3]);
    for (Word i = 1; i < lengthOf(attributes); ++i) writeAttribute(w, attributes[i]);
  }
  DAG children = asSequence(call[2]);
  if (lengthOf(children) == 1) return w.put("/>");
  w.put('>');
  for (Word i = 1; i < lengthOf(children); ++i) {
    w.put(' ');
    write(w, children[i]);
  }
  w.put(" </");
  w.put(name);
  w.put('>');
}

// What encloses the text of a call whose one argument is a string.
void writeEnclosed(const Writer& w, DAG call, const char* before, const char* after, const char* message) {
  DAG arguments = asSequence(call[2]);
  if (lengthOf(arguments) != 2 || !isTag(arguments[1], STRING)) userror(message);
  w.put(before);
  w.put(textOf(arguments[1]));
  w.put(after);
}

void writeCall(const Writer& w, DAG call) {
  constexpr const char* special = "SPECIAL_";
  if (!isName(call[1])) userror("named function expected");
  const char* name = textOf(call[1]);
  if (std::strcmp(name, "COMMENT") == 0)
    return writeEnclosed(w, call, "<!--", "-->", "string argument expected for COMMENT");
  if (std::strcmp(name, "CDATA") == 0)
    return writeEnclosed(w, call, "<![CDATA[", "]]>", "string argument expected for CDATA");
  if (std::strncmp(name, special, std::strlen(special)) != 0) return writeElement(w, call);
  TextBuffer opening;
  opening.append("<!");
  opening.append(name + std::strlen(special));
  opening.append(' ');
  writeEnclosed(w, call, opening.text(), ">", "string argument expected for SPECIAL");
}

void write(const Writer& w, DAG x) {
  checkStack();
  if (isInteger(x)) return writeInteger(w, x);
  if (isTag(x, STRING)) return writeString(w, textOf(x));
  if (isTag(x, FUNCTION)) return writeCall(w, x);
  userror("integer, string, or function call expected");
}

}  // namespace

void PrintOpenMath(DAG x, Sink sink, void* closure, int flags) { write({sink, closure, flags}, x); }

}  // namespace korel
