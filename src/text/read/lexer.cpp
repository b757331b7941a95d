#include "text/read/lexer.h"

#include <csetjmp>
#include <cstdlib>

#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/read/parser.h"

namespace korel {

int lexCharCount = 0;

namespace {

// ---- character classes

enum CharacterClass : unsigned char { letterClass = 1, digitClass = 2, spaceClass = 4 };

struct ClassTable {
  unsigned char classes[256] = {};
};
// Bytes with bit 7 set are letters, so that names may be written in any 8-bit alphabet.
constexpr ClassTable makeClassTable() {
  ClassTable table;
  for (int c = 0; c < 256; ++c) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 128) table.classes[c] = letterClass;
    else if (c >= '0' && c <= '9') table.classes[c] = digitClass;
    else if (c == ' ' || (c >= 9 && c <= 13)) table.classes[c] = spaceClass;
  }
  return table;
}
constexpr ClassTable classTable = makeClassTable();

// -1 and the internal values from 0x100 on have no class.
inline int classOf(int c) { return static_cast<unsigned>(c) < 256 ? classTable.classes[c] : 0; }
inline bool isSpace(int c) { return (classOf(c) & spaceClass) != 0; }
inline bool isDigit(int c) { return (classOf(c) & digitClass) != 0; }
inline bool isLetter(int c) { return (classOf(c) & letterClass) != 0; }
inline bool isWordCharacter(int c) { return (classOf(c) & (letterClass | digitClass)) != 0; }

// ---- the text of the token being read

// One buffer for all tokens: it only grows, so that a jump out of a quoted text loses nothing.
struct TokenText {
  char* characters = nullptr;
  std::size_t length = 0;
  std::size_t capacity = 0;

  void add(int c) {
    if (length + 1 >= capacity) grow();
    characters[length++] = static_cast<char>(c);
  }
  const char* finish() {
    if (capacity == 0) grow();
    characters[length] = 0;
    return characters;
  }
  void grow() {
    std::size_t wanted = capacity == 0 ? 256 : capacity / 2 * 3;
    char* larger = static_cast<char*>(std::realloc(characters, wanted));
    if (larger == nullptr) notimpl("not enough memory for text");
    characters = larger;
    capacity = wanted;
  }
};
TokenText tokenText;

// ---- the hooks of the running parse

struct ParseState {
  ParseHooks hooks = {};
  std::jmp_buf* leave = nullptr;  // the point in `ParseKorel` to which every failure jumps
  bool reporting = false;         // an error hook runs: a second error leaves at once
};
ParseState parse;

[[noreturn]] void leaveParse() { ::_longjmp(*parse.leave, 1); }

void parseErrorProcedure(const char* message) {
  if (!parse.reporting) {
    parse.reporting = true;
    parse.hooks.onError(lexCharCount, message);
  }
  leaveParse();
}

// ---- look-ahead

constexpr int noCharacter = -2;
int nextLexChar = noCharacter;  // the character that is looked at
int curLexChar = noCharacter;   // the one last consumed

void forgetLookAhead() { nextLexChar = noCharacter; }

constexpr int maxNestedParsers = 20;
struct LookAhead {
  int next, current;
};
LookAhead savedLookAhead[maxNestedParsers];
int nestedParsers = 0;

// ---- characters

// What an escape stands for that is text inside quotes and has no place outside them.
constexpr int escapedNewline = 0x100, escapedBackquote = 0x101, escapedDoubleQuote = 0x102;
inline bool isEscapedMark(int c) { return c >= escapedNewline && c <= escapedDoubleQuote; }
inline int plainCharacter(int c) {
  switch (c) {
    case escapedNewline: return '\n';
    case escapedBackquote: return '`';
    case escapedDoubleQuote: return '"';
    default: return c;
  }
}

int escapedCharacter(int c) {
  switch (c) {
    case 'a': return 7;
    case 'b': return 8;
    case 'e': return 27;
    case 'f': return 12;
    case 'n': return escapedNewline;
    case 'r': return 13;
    case 't': return 9;
    case 'v': return 11;
    case '`': return escapedBackquote;
    case '"': return escapedDoubleQuote;
    default: return c;
  }
}

int sourceChar() {
  ++lexCharCount;
  return parse.hooks.source.next(parse.hooks.source.closure);
}

int lexRawChar() {
  for (;;) {
    int c = sourceChar();
    if (c != '\\') return c;
    c = sourceChar();
    if (!isSpace(c)) return escapedCharacter(c);  // a backslash before white space joins
  }
}

/// The character of look-ahead, read if there is none yet.
inline int peekChar() {
  if (nextLexChar == noCharacter) nextLexChar = lexRawChar();
  return nextLexChar;
}

inline bool isEnd(int c) { return c == 0 || c == -1; }

/// Consumes one character. False at the end of the input, with the look-ahead empty.
inline bool lexGetChar() {
  curLexChar = peekChar();
  if (isEnd(curLexChar)) {
    forgetLookAhead();
    return false;
  }
  nextLexChar = lexRawChar();
  return true;
}

/// Consumes characters into the token text as long as `belongs` says so.
template <class Predicate>
inline void collectWhile(Predicate belongs) {
  while (belongs(nextLexChar)) {
    tokenText.add(nextLexChar);
    lexGetChar();
  }
}

/// Consumes the next character if it is `c`.
inline bool acceptChar(int c) {
  if (nextLexChar != c) return false;
  lexGetChar();
  return true;
}

// ---- tokens

Lexeme plainToken(int token, int character) { return {token, DAG(static_cast<Word>(character))}; }

/// The name of the token text.
Lexeme nameToken(int token) { return {token, naminstall(tokenText.finish())}; }

std::int32_t readExponent() {
  std::int32_t exponent = 0;
  lexGetChar();
  bool negative = nextLexChar == '-';
  if (negative || nextLexChar == '+') lexGetChar();
  while (isDigit(nextLexChar)) {
    std::int32_t digit = nextLexChar - '0';
    if (__builtin_mul_overflow(exponent, 10, &exponent) || __builtin_add_overflow(exponent, digit, &exponent))
      yyerror("exponent too large");
    lexGetChar();
  }
  return negative ? -exponent : exponent;
}

/// The integer of the digits in the token text: exact, four decimal digits to a digit of the
/// object.
DAG integerOfDigits() {
  const char* digits = tokenText.characters;
  std::size_t count = tokenText.length;
  if (count <= 10) {
    std::int64_t value = 0;
    for (std::size_t i = 0; i < count; ++i) value = 10 * value + (digits[i] - '0');
    return NewInteger(value);
  }
  if (count > static_cast<std::size_t>(maxDecimalDigits)) userror("object too large");
  Word length = static_cast<Word>((count + 3) / 4 + 1);
  DAG s = news(length);
  setHeader(s, INTPOS, length);
  std::size_t end = count;
  for (Word i = 1; i < length; ++i) {
    std::size_t begin = end > 4 ? end - 4 : 0;
    Word digit = 0;
    for (std::size_t k = begin; k < end; ++k) digit = 10 * digit + static_cast<Word>(digits[k] - '0');
    rawField(s, i) = digit;
    end = begin;
  }
  return s;
}

Lexeme readNumber() {
  Lexeme number{T_INTEGER, cons0, 1};
  bool zero = curLexChar == '0';
  if (zero) {
    while (nextLexChar == '0') {
      lexGetChar();
      ++number.digits;
    }
    if (isDigit(nextLexChar)) {
      lexGetChar();
      ++number.digits;
      zero = false;
    }
  }
  if (!zero) {
    tokenText.add(curLexChar);
    while (isDigit(nextLexChar)) {
      tokenText.add(nextLexChar);
      lexGetChar();
      ++number.digits;
    }
    number.value = integerOfDigits();
  }
  if (nextLexChar != 'e' && nextLexChar != 'E') return number;
  number.token = T_EXPINT;
  number.exponent = readExponent();
  return number;
}

Lexeme readWord() {
  tokenText.add(curLexChar);
  collectWhile(isWordCharacter);
  int token = KeyWordToToken(tokenText.finish());
  // quit(n) is a call, whose argument is the exit status.
  if (token == T_QUIT && nextLexChar == '(') token = 0;
  return nameToken(token == 0 ? T_NAME : token);
}

/// Behind `%`: a label's mark, a name of its own kind, or one of the ditto names.
Lexeme readPercent() {
  if (isDigit(nextLexChar)) return plainToken(T_LABEL, '%');
  tokenText.add('%');
  if (isLetter(nextLexChar) || nextLexChar == '?') {
    collectWhile([](int c) { return isWordCharacter(c) || c == '?'; });
  } else {
    for (int i = 0; i < 2 && acceptChar('%'); ++i) tokenText.add('%');
  }
  return nameToken(T_NAME);
}

Lexeme readTildeName() {
  tokenText.add('~');
  collectWhile([](int c) { return isWordCharacter(c) || c == '$'; });
  return nameToken(T_NAME);
}

/// A character that ends the name of a neutral operator.
bool endsNeutral(int c) {
  if (isSpace(c)) return true;
  switch (c) {
    case ';': case ':': case '\'': case '[': case '`': case ']': case '{': case '(': case '}': case ')': case '#':
    case '&': case '%': case '|':
      return true;
    default: return false;
  }
}

Lexeme readNeutral() {
  tokenText.add('&');
  if (isLetter(nextLexChar)) {
    collectWhile(isWordCharacter);
  } else if (!isDigit(nextLexChar)) {
    while (!isWordCharacter(nextLexChar) && !endsNeutral(nextLexChar)) {
      int c = plainCharacter(nextLexChar);
      if (!lexGetChar()) return plainToken(T_EOF, -1);
      tokenText.add(c);
    }
  }
  if (tokenText.length == 1) return plainToken(invalidNeutral, '&');
  return nameToken(tokenText.length == 2 && tokenText.characters[1] == '*' ? T_AMPSTAR : T_NEUTRAL);
}

/// Text between quotes of the kind `quote`, whose first has been consumed.
Lexeme readQuoted(int quote) {
  for (;;) {
    int next = nextLexChar;
    if (isEnd(next)) yyerror(nullptr);
    if (next == quote) {
      lexGetChar();
      if (acceptChar(quote)) {
        tokenText.add(quote);
        continue;
      }
      if (quote == '`') return nameToken(T_NAME);
      while (isSpace(nextLexChar)) lexGetChar();
      if (acceptChar('"')) continue;  // the strings join
      return {T_STRING, strinstall(tokenText.finish())};
    }
    if (next == '\n' && curLexChar != quote)
      parse.hooks.onWarning(lexCharCount, quote == '"' ? "incomplete string;  use \" to end the string"
                                                       : "incomplete quoted name;  use ` to end the name");
    tokenText.add(plainCharacter(next));
    lexGetChar();
  }
}

/// Behind a dot: how it stands between blanks decides what it may join.
Lexeme readDot(bool spaceBefore) {
  if (nextLexChar == '.') {
    while (acceptChar('.')) continue;
    return plainToken(T_DOTDOT, '.');
  }
  if (isSpace(nextLexChar)) return plainToken(spaceBefore ? T_SDOTS : T_DOTS, '.');
  return plainToken(spaceBefore ? T_SDOT : T_DOT, '.');
}

Lexeme fixedName(int token, const char* text) { return {token, naminstall(text)}; }
Lexeme relation(Word tagWord) { return {T_RELOP, DAG(tagWord)}; }

/// The token that starts with the mark `c`, already consumed.
Lexeme readMark(int c, bool spaceBefore) {
  switch (c) {
    case '!': return plainToken(T_BANG, c);
    case '"': return readQuoted('"');
    case '`': return readQuoted('`');
    case '$': return plainToken(T_DOLLAR, c);
    case '%': return readPercent();
    case '~': return readTildeName();
    case '&': return readNeutral();
    case '\'': return plainToken(T_QUOTE, c);
    case '(': return plainToken(T_LPAREN, c);
    case ')': return plainToken(T_RPAREN, c);
    case '*': return acceptChar('*') ? plainToken(T_CARET, '^') : plainToken(T_STAR, c);
    case '+': return plainToken(T_PLUS, c);
    case ',': return plainToken(T_COMMA, c);
    case '-': return acceptChar('>') ? plainToken(T_ARROW, '>') : plainToken(T_MINUS, c);
    case '.': return readDot(spaceBefore);
    case '/': return plainToken(T_SLASH, c);
    case ':':
      if (acceptChar('=')) return plainToken(T_ASSIGN, '=');
      if (acceptChar(':')) return fixedName(T_DCOLON, "::");
      if (acceptChar('-')) return plainToken(T_MEMBER, '-');
      return plainToken(T_COLON, c);
    case ';': return plainToken(T_SEMI, c);
    case '<':
      if (acceptChar('=')) return relation(LESSEQ);
      if (acceptChar('>')) return relation(INEQUAT);
      return plainToken(T_LT, c);
    case '=': return plainToken(T_EQ, c);
    case '>': return acceptChar('=') ? relation(swappedLessEqual) : plainToken(T_GT, c);
    case '@': return acceptChar('@') ? fixedName(T_ATAT, "@@") : fixedName(T_AT, "@");
    case '[': return plainToken(T_LBRACKET, c);
    case ']': return plainToken(T_RBRACKET, c);
    case '^': return plainToken(T_CARET, c);
    case '{': return plainToken(T_LBRACE, c);
    case '|': return acceptChar('|') ? plainToken(T_CONCAT, c) : plainToken(T_BAR, c);
    case '}': return plainToken(T_RBRACE, c);
    default: return plainToken(c, c);
  }
}

}  // namespace

Lexeme yylex() {
  tokenText.length = 0;
  for (;;) {
    bool spaceBefore = false;
    int c = peekChar();
    while (isSpace(c)) {
      lexGetChar();
      spaceBefore = true;
      c = nextLexChar;
    }
    if (!lexGetChar()) return plainToken(T_EOF, -1);
    if (c == '#') {
      while (nextLexChar != '\n')
        if (!lexGetChar()) return plainToken(T_EOF, -1);
      continue;
    }
    if (isLetter(c)) return readWord();
    if (isDigit(c)) return readNumber();
    if (isEscapedMark(c)) yyerror("syntax error, `\\` unexpected");
    return readMark(c, spaceBefore);
  }
}

void yyerror(const char* message) {
  parse.reporting = true;
  if (message == nullptr) {
    parse.hooks.onEof(lexCharCount);
  } else {
    parse.hooks.onError(lexCharCount, message);
  }
  leaveParse();
}

DAG IGetlabel(DAG n) {
  if (tagOf(n) != INTPOS || n == cons0) return DAG();
  return parse.hooks.onLabel(n);
}

void PushKorelParser() {
  if (nestedParsers >= maxNestedParsers) userror("parsers nested too deeply");
  savedLookAhead[nestedParsers++] = {nextLexChar, curLexChar};
}

void PopKorelParser() {
  if (nestedParsers == 0) userror("too many parsers popped from internal stack");
  const LookAhead& saved = savedLookAhead[--nestedParsers];
  nextLexChar = saved.next;
  curLexChar = saved.current;
}

void resetParserNesting() { nestedParsers = 0; }

DAG ParseKorel(const ParseHooks& hooks) {
  // The state of an outer parse survives: the handler of a numeric event that a literal raised may
  // itself parse.
  ParseState outer = parse;
  std::jmp_buf here;
  parse = {hooks, &here};
  lexCharCount = 0;
  forgetLookAhead();
  int depth = errorProcDepth();
  PushErrorProc(parseErrorProcedure);
  if (::_setjmp(here) == 0) {
    yyparse();
    PopErrorProc();
  } else {
    dropErrorProcs(depth);
    parsestat = DAG();
  }
  parse = outer;
  return parsestat;
}

}  // namespace korel
