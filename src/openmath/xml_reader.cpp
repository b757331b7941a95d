// XML as expressions: one element after the other, by recursive descent over single characters.

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "openmath/openmath.h"
#include "store/append.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/format/format_reading.h"
#include "text/format/scan_format.h"
#include "text/format/text_buffer.h"

namespace korel {

namespace {

constexpr int endOfInput = -1;

// The reading under way. Plain data: a failure jumps past it.
struct Reader {
  int (*get)(void* context);
  XmlFailure failed;
  void* context;
  int flags;
  int c = 0;  // the character looked at
  int line = 1;
  TextBuffer text{};  // of the content, value or special form in progress
  TextBuffer name{};
  std::jmp_buf stop{};

  bool has(XmlReaderFlag flag) const { return (flags & flag) != 0; }
};

[[noreturn]] void fail(Reader& r, const char* message) {
  char text[160];
  std::snprintf(text, sizeof text, "%s on line %ld", message, static_cast<long>(r.line));
  r.failed(r.context, r.line, text);
  ::_longjmp(r.stop, 1);
}

int next(Reader& r) {
  if (r.c == endOfInput) return endOfInput;
  if (r.c == '\n') ++r.line;
  r.c = r.get(r.context);
  if (r.c == 0) r.c = endOfInput;
  return r.c;
}
void requireMore(Reader& r, const char* message) {
  if (r.c == endOfInput) fail(r, message);
}
// Passes over white space; `message` is the failure of an end there.
void skip(Reader& r, const char* message) {
  while (isSpace(r.c)) next(r);
  requireMore(r, message);
}

constexpr const char* endInTag = "end of input in tag";
constexpr const char* endInElement = "end of input in element";

// ---- values

bool takeEntity(const char*& at, char& character) {
  struct Entity {
    std::string_view text;
    char character;
  };
  constexpr Entity entities[] = {{"lt;", '<'}, {"gt;", '>'}, {"amp;", '&'}, {"quot;", '"'}, {"apos;", '\''}};
  for (const Entity& entity : entities)
    if (std::strncmp(at + 1, entity.text.data(), entity.text.size()) == 0) {
      character = entity.character;
      at += 1 + entity.text.size();
      return true;
    }
  return false;
}

// In place: each entity becomes its character. What an entity gives is not looked at again.
void decodeEntities(TextBuffer& text) {
  const char* at = text.text();
  char* to = text.bytes();
  char character;
  while (*at != 0) *to++ = *at == '&' && takeEntity(at, character) ? character : *at++;
  text.setSize(static_cast<std::size_t>(to - text.bytes()));
}

bool readsAsInteger(const char* text) {
  if (*text == '-') ++text;
  if (!isDigit(*text)) return false;
  while (isDigit(*text)) ++text;
  return *text == 0;
}

// The value of the text in progress, a STRING or an integer.
DAG valueOfText(Reader& r, TextBuffer& text) {
  if (r.has(xmlReadEntities)) decodeEntities(text);
  if (!r.has(xmlIntegers) || !readsAsInteger(text.text())) return text.string();
  const char* digits = text.text();
  const bool negative = *digits == '-';
  DAG x = integerOfDigits(digits + negative, text.size() - negative);
  return simpl(negative ? negateint(x) : x);
}

// ---- special forms, behind `<!`

// The text up to `ending`, which is taken.
DAG textBefore(Reader& r, std::string_view ending, const char* message) {
  r.text.clear();
  for (;; next(r)) {
    requireMore(r, message);
    r.text.append(static_cast<char>(r.c));
    if (!r.text.view().ends_with(ending)) continue;
    r.text.setSize(r.text.size() - ending.size());
    next(r);
    return r.text.string();
  }
}

DAG callOf(const char* head, DAG argument) { return new3(FUNCTION, naminstall(head), new2(EXPSEQ, argument)); }

// Takes characters that are known; false at the first other one.
bool takes(Reader& r, const char* known) {
  for (; *known != 0; ++known, next(r))
    if (r.c != static_cast<unsigned char>(*known)) return false;
  return true;
}

DAG readNamedForm(Reader& r) {
  r.name.clear();
  r.name.append("SPECIAL_");
  for (; continuesXmlName(r.c); next(r)) r.name.append(static_cast<char>(r.c));
  skip(r, "end of input in special tag");
  DAG head = naminstall(r.name.text());
  if (r.c == '>') {
    next(r);
    return new3(FUNCTION, head, null);
  }
  r.text.clear();
  for (int depth = 0; r.c != '>' || depth > 0; next(r)) {
    requireMore(r, "end of input in special tag");
    if (r.c == '<') ++depth;
    if (r.c == '>') --depth;
    r.text.append(static_cast<char>(r.c));
  }
  next(r);
  return new3(FUNCTION, head, new2(EXPSEQ, r.text.string()));
}

DAG readSpecial(Reader& r) {
  if (r.c == '-') {
    if (!takes(r, "--")) fail(r, "unrecognized special tag");
    return callOf("COMMENT", textBefore(r, "-->", "end of input in comment"));
  }
  if (r.c == '[') {
    if (!takes(r, "[CDATA[")) fail(r, "unrecognized special tag");
    return callOf("CDATA", textBefore(r, "]]>", "end of input in CDATA section"));
  }
  if (beginsXmlName(r.c) && r.c != '_') return readNamedForm(r);
  requireMore(r, "end of input in special tag");
  fail(r, "unrecognized special tag");
}

// ---- tags

// A name of an element, which the reader marks by a prefix.
DAG readTagName(Reader& r) {
  requireMore(r, endInTag);
  if (!beginsXmlName(r.c)) fail(r, "invalid first character of tag name");
  r.name.clear();
  r.name.append("OM_");
  for (; continuesXmlName(r.c); next(r)) r.name.append(static_cast<char>(r.c));
  return naminstall(r.name.text());
}

DAG readQuotedValue(Reader& r) {
  const int quote = r.c;
  for (next(r); r.c != quote; next(r)) {
    requireMore(r, endInTag);
    r.text.append(static_cast<char>(r.c));
  }
  next(r);
  return valueOfText(r, r.text);
}

// A `/` belongs to the value unless `>` follows; then it ends the element, and `closes` is set.
DAG readBareValue(Reader& r, bool& closes) {
  while (r.c != endOfInput && !isSpace(r.c) && r.c != '>') {
    if (r.c == '/') {
      closes = next(r) == '>';
      if (closes) break;
      r.text.append('/');
      continue;
    }
    r.text.append(static_cast<char>(r.c));
    next(r);
  }
  return valueOfText(r, r.text);
}

DAG readAttribute(Reader& r, bool& closes) {
  if (!beginsXmlName(r.c)) fail(r, "invalid first character of attribute name");
  r.name.clear();
  for (; continuesXmlName(r.c); next(r)) r.name.append(static_cast<char>(r.c));
  DAG name = strinstall(r.name.text());
  skip(r, endInTag);
  if (r.c != '=') fail(r, "`=` expected after attribute name");
  next(r);
  skip(r, endInTag);
  r.text.clear();
  const bool quoted = r.c == '"' || r.c == '\'';
  return new3(EQUATION, name, quoted ? readQuotedValue(r) : readBareValue(r, closes));
}

struct Opening {
  DAG name;
  DAG attributes;  // EXPSEQ
  bool isClosed;   // it ends in `/>`
};

// The rest of a tag whose name comes next, up to its `>`, which is taken.
Opening readOpening(Reader& r) {
  Opening opening{readTagName(r), new1(EXPSEQ), false};
  for (;;) {
    skip(r, endInTag);
    if (r.c == '>') break;
    if (r.c == '/') {
      next(r);
      requireMore(r, endInTag);
      if (r.c != '>') fail(r, "invalid first character of attribute name");
      opening.isClosed = true;
      break;
    }
    opening.attributes = Append2(opening.attributes, readAttribute(r, opening.isClosed));
    if (opening.isClosed) break;
  }
  next(r);
  return opening;
}

// ---- elements

// Takes text up to a `<` or the end; what it is worth goes to `children`.
void readContent(Reader& r, DAG& children) {
  r.text.clear();
  if (!r.has(xmlKeepSpace)) skip(r, endInElement);
  for (; r.c != '<'; next(r)) {
    requireMore(r, endInElement);
    r.text.append(static_cast<char>(r.c));
  }
  if (!r.has(xmlKeepSpace)) {
    std::size_t n = r.text.size();
    while (n > 0 && isSpace(static_cast<unsigned char>(r.text.bytes()[n - 1]))) --n;
    r.text.setSize(n);
  }
  if (r.text.size() > 0) children = Append2(children, valueOfText(r, r.text));
}

void readClosing(Reader& r, DAG name) {
  if (readTagName(r) != name) fail(r, "tag mismatch");
  skip(r, endInTag);
  if (r.c != '>') fail(r, "`>` expected at end of closing tag");
}

DAG readElement(Reader& r);

DAG readChildren(Reader& r, DAG name) {
  DAG children = new1(EXPSEQ);
  for (;;) {
    readContent(r, children);
    next(r);
    if (r.c == '/') {
      next(r);
      readClosing(r, name);
      return children;
    }
    children = Append2(children, readElement(r));
  }
}

// What follows a `<`. The character behind it is looked at only where more has to come.
DAG readElement(Reader& r) {
  checkStack();
  if (r.c == '!') {
    next(r);
    return readSpecial(r);
  }
  if (r.c == '/') fail(r, "tag mismatch");
  Opening opening = readOpening(r);
  DAG children = null;
  if (!opening.isClosed) {
    children = readChildren(r, opening.name);
    next(r);
  }
  if (lengthOf(opening.attributes) == 1) return new3(FUNCTION, opening.name, children);
  DAG attributes = lengthOf(opening.attributes) == 2 ? opening.attributes[1] : opening.attributes;
  return new4(FUNCTION, opening.name, children, attributes);
}

int getFromStandardInput(void*) { return std::getchar(); }
void reportFailure(void*, int line, const char* message) { std::fprintf(stderr, "XML(%d): %s\n", line, message); }

}  // namespace

DAG ParseOpenMath(int (*get)(void* context), void (*unget)(void* context, int c), XmlFailure failed, int flags,
                  void* context) {
  Reader r{get != nullptr ? get : getFromStandardInput, failed != nullptr ? failed : reportFailure, context, flags};
  if (::_setjmp(r.stop) != 0) return DAG();
  next(r);
  while (isSpace(r.c)) next(r);
  requireMore(r, "end of input in place of an element");
  if (r.c != '<') fail(r, "`<` expected");
  next(r);
  DAG x = readElement(r);
  if (unget != nullptr && r.c != endOfInput) unget(context, r.c);
  return simpl(x);
}

}  // namespace korel
