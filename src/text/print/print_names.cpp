// Names and strings: when they are quoted, and how.

#include <cctype>
#include <cstring>

#include "text/print/print_object.h"
#include "text/read/tokens.h"

namespace korel {

namespace {

bool isLetter(unsigned char c) { return std::isalpha(c) != 0; }
bool isAlphanumeric(unsigned char c) { return std::isalnum(c) != 0; }

// True when all `length` characters at `text` are alphanumeric or stand in `others`.
bool consistsOf(const char* text, std::size_t length, const char* others) {
  for (std::size_t i = 0; i < length; ++i) {
    auto c = static_cast<unsigned char>(text[i]);
    if (!isAlphanumeric(c) && (c == 0 || std::strchr(others, c) == nullptr)) return false;
  }
  return true;
}

constexpr std::size_t longestKeyword = 11;  // description

bool isKeyword(const char* text, std::size_t length) {
  if (length > longestKeyword) return false;
  char word[longestKeyword + 1];
  std::memcpy(word, text, length);
  word[length] = '\0';
  return KeyWordToToken(word) != 0;
}

bool isWord(const char* text, std::size_t length, const char* others) {
  auto first = static_cast<unsigned char>(text[0]);
  return length != 0 && (isLetter(first) || first == '_') && consistsOf(text + 1, length - 1, others) &&
         !isKeyword(text, length);
}

bool needsQuotes(const char* text, std::size_t length) {
  if (length == 0) return true;
  if (isWord(text, length, "_%")) return false;
  if (text[0] == '%') return !consistsOf(text + 1, length - 1, "_%$?");
  if (text[0] == '~') return length == 1 || !consistsOf(text + 1, length - 1, "$_");
  return true;
}

// Length of `text` without the run of tildes at its end, which is no part of how a name prints; the
// whole length when there are control characters or blanks in it, or nothing but tildes.
std::size_t lengthBeforeTildes(const char* text) {
  std::size_t length = 0;
  for (; text[length] != '\0'; ++length)
    if (static_cast<unsigned char>(text[length]) < 33) return std::strlen(text);
  std::size_t end = length;
  while (end > 0 && text[end - 1] == '~') --end;
  return end == 0 ? length : end;
}

// Letter of the escape that stands for `c` in quoted text, or 0.
char escapeOf(char c) {
  switch (c) {
    case '\a': return 'a';
    case '\b': return 'b';
    case 27: return 'e';
    case '\f': return 'f';
    case '\n': return 'n';
    case '\r': return 'r';
    case '\t': return 't';
    case '\v': return 'v';
    case '\\': return '\\';
    default: return 0;
  }
}

void printQuoted(const char* text, std::size_t length, char quote) {
  std::int64_t printed = 2;
  for (std::size_t i = 0; i < length; ++i)
    printed += text[i] == quote || escapeOf(text[i]) != 0 ? 2 : beginsCharacter(text[i]);
  BreakBeforeWord(printed);
  ++printAtomic;
  EmitChar(quote);
  for (std::size_t i = 0; i < length; ++i) {
    char escape = text[i] == quote ? quote : escapeOf(text[i]);
    if (escape != 0) {
      EmitEscape(escape);
    } else {
      EmitChar(static_cast<unsigned char>(text[i]));
    }
  }
  EmitChar(quote);
  --printAtomic;
}

// The value `modulename` = m of an attribute, or 0.
DAG moduleOfAttribute(DAG attribute) {
  auto moduleOf = [](DAG entry) {
    bool matches = isTag(entry, EQUATION) && isName(entry[1]) && hasText(entry[1], "modulename");
    return matches ? entry[2] : DAG();
  };
  if (!isSequence(attribute)) return moduleOf(attribute);
  for (Word i = 1, n = lengthOf(attribute); i < n; ++i)
    if (DAG module = moduleOf(attribute[i])) return module;
  return DAG();
}

}  // namespace

bool NeedsQuotes(const char* text) { return needsQuotes(text, std::strlen(text)); }

char* StripTilde(char* text) {
  char* end = text + lengthBeforeTildes(text);
  if (*end == '\0') return nullptr;
  *end = '\0';
  return end;
}

void printText(DAG nameOrString) {
  bool isString = hasTag(nameOrString, STRING);
  const char* text = textOf(nameOrString);
  std::size_t length = isString || printAttributes ? std::strlen(text) : lengthBeforeTildes(text);
  bool quoted = isString && printStyle < quoteNothing;
  // Program text reads back whole: a reader takes most names with a percent sign or a tilde for more than
  // one token.
  if (!quoted && (printStyle < printDepth || mProcPrint))
    quoted = printAttributes ? !isWord(text, length, "_") : needsQuotes(text, length);
  if (quoted) {
    printQuoted(text, length, isString ? '"' : '`');
  } else {
    // A tilde at the end stays with its name.
    BreakBeforeWord(characterCount(text, printTildes ? std::strlen(text) : length));
    ++printAtomic;
    for (std::size_t i = 0; text[i] != '\0' && (i < length || printTildes); ++i)
      EmitChar(static_cast<unsigned char>(text[i]));
    --printAtomic;
    return;
  }
  if (printTildes && text[length] != '\0') EmitToken(text + length);
}

void printString(DAG x, int, int) { printText(x); }

void printName(DAG x, int, int own) {
  if (printAttributes) {
    if (DAG module = moduleOfAttribute(x[2])) {
      printObject(module, own);
      EmitToken(":-");
    }
  }
  printText(x);
}

}  // namespace korel
