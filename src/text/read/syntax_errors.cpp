#include "text/read/syntax_errors.h"

#include <cstdio>
#include <cstring>
#include <iterator>

#include "frame/errors.h"
#include "frame/output.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "text/read/input.h"
#include "text/read/tokens.h"

namespace korel {

namespace {

struct KeyWord {
  const char* text;
  int token;
};
// Sorted by text: the search halves the table.
constexpr KeyWord keyWords[] = {
    {"and", T_AND},
    {"break", T_BREAK},
    {"by", T_BY},
    {"catch", T_CATCH},
    {"description", T_DESCRIPTION},
    {"do", T_DO},
    {"done", T_QUIT},
    {"elif", T_ELIF},
    {"else", T_ELSE},
    {"end", T_END},
    {"error", T_ERROR},
    {"export", T_EXPORT},
    {"fi", T_FI},
    {"finally", T_FINALLY},
    {"for", T_FOR},
    {"from", T_FROM},
    {"global", T_GLOBAL},
    {"if", T_IF},
    {"in", T_IN},
    {"intersect", T_AT},
    {"local", T_LOCAL},
    {"minus", T_UNION},
    {"mod", T_MOD},
    {"module", T_MODULE},
    {"next", T_NEXT},
    {"not", T_NOT},
    {"od", T_OD},
    {"option", T_OPTION},
    {"options", T_OPTION},
    {"or", T_OR},
    {"proc", T_PROC},
    {"quit", T_QUIT},
    {"read", T_READ},
    {"return", T_RETURN},
    {"save", T_SAVE},
    {"stop", T_QUIT},
    {"then", T_THEN},
    {"to", T_TO},
    {"try", T_TRY},
    {"union", T_UNION},
    {"use", T_USE},
    {"while", T_WHILE},
};
static_assert(std::size(keyWords) == 42);

constexpr const char* unexpectedTexts[] = {
#define KOREL_TOKEN(token, unexpected) unexpected,
#include "text/read/tokens.def"
#undef KOREL_TOKEN
};
static_assert(std::size(unexpectedTexts) == namedTokenCount);

const char* controlCharacterName(int c) {
  switch (c) {
    case 7:
      return "`\\a` ";
    case 8:
      return "`\\b` ";
    case 27:
      return "`\\e` ";
    default:
      return "";
  }
}

// ---- the last error

char recordedText[256];
int recordedPosition = 0;
bool recorded = false;
bool inputEnded = false;

// ---- showing an error in a file

// A line of a buffer, a newline and the end.
using LineText = char[inputBufferSize + 2];

/// The unit's line up to its newline as it can be shown; true when a character had to be replaced.
bool copyShownLine(int unit, LineText& line) {
  bool replaced = false;
  int length = 0;
  for (; length < ibuffl[unit] && ibuff[unit][length] != '\n'; ++length) {
    unsigned char c = static_cast<unsigned char>(ibuff[unit][length]);
    bool shown = c == '\t' || (c >= 32 && c < 127);
    line[length] = shown ? static_cast<char>(c) : ' ';
    replaced = replaced || !shown;
  }
  line[length] = '\n';
  line[length + 1] = 0;
  return replaced;
}

/// Blanks up to the last character of the unexpected token, with the tabs of the line above, then the
/// caret. The lexer looks one character ahead, so that the token ends before the one last delivered.
void makeCaretLine(int unit, LineText& line) {
  int position = icharno[unit] < 1 ? 0 : icharno[unit] - 1;
  if (position > ibuffl[unit]) position = ibuffl[unit];
  for (int i = 0; i < position; ++i) line[i] = ibuff[unit][i] == '\t' ? '\t' : ' ';
  line[position] = '^';
  line[position + 1] = '\n';
  line[position + 2] = 0;
}

/// What the rest of the line is replaced by: an empty statement, so that reading goes on with the
/// next line.
void dropRestOfLine(int unit) {
  // A line longer than the buffer has more to come.
  int length = ibuffl[unit];
  while (!inputEnded && length > 0 && ibuff[unit][length - 1] != '\n') {
    if (igets(ibuff[unit], inputBufferSize - 1) == nullptr) break;
    length = static_cast<int>(std::strlen(ibuff[unit]));
    if (length > 0 && ibuff[unit][length - 1] == '\n') ++yyline[unit];
  }
  std::strcpy(ibuff[unit], ";\n");
  ibuffl[unit] = 2;
  icharno[unit] = -1;
  nextch2 = ';';
  if (!inputEnded) nextch = ';';
}

void reportInInput(int position, const char* message) {
  recordSyntaxError(position, message);
  int unit = r_unit0;
  char text[512];
  DAG shown;
  if (inputEnded) {
    std::snprintf(text, sizeof text, "on line %%1, %s", message);
    shown = strinstall(text);
  } else {
    std::snprintf(text, sizeof text, "on line %%1, syntax error, %s:", message);
    shown = naminstall(text);
  }
  sendStream("INTERFACE_EXCEPT", {cons0, shown, Newint(yyline[unit])});
  LineText line;
  bool replaced = copyShownLine(unit, line);
  Msendprint(line);
  makeCaretLine(unit, line);
  Msendprint(line);
  if (replaced) KernelWarning(3, "unprintable characters in input");
  CloseReadOnError(1);
  dropRestOfLine(unit);
}

}  // namespace

void dropTypedLine() {
  if (r_unit0 == 0 && ibuffl[0] > 0 && icharno[0] >= 0) dropRestOfLine(0);
}

int KeyWordToToken(const char* text) {
  // Every reserved word has 2 to 11 small letters: most names end the search here.
  if (text[0] < 'a' || text[0] > 'w' || text[1] == 0) return 0;
  std::size_t low = 0, high = std::size(keyWords);
  while (low < high) {
    std::size_t middle = (low + high) / 2;
    int order = std::strcmp(text, keyWords[middle].text);
    if (order == 0) return keyWords[middle].token;
    if (order < 0)
      high = middle;
    else
      low = middle + 1;
  }
  return 0;
}

const char* TokenToKeyWord(int token) {
  for (const KeyWord& row : keyWords)
    if (row.token == token) return row.text;
  return nullptr;
}

const char* unexpectedTokenText(int token) {
  static char text[64];
  if (token == invalidNeutral) return "invalid neutral operator";
  if (token >= firstNamedToken && token < tokenEnd && unexpectedTexts[token - firstNamedToken])
    return unexpectedTexts[token - firstNamedToken];
  if (const char* word = TokenToKeyWord(token))
    std::snprintf(text, sizeof text, "reserved word `%s` unexpected", word);
  else if (token < 32)
    std::snprintf(text, sizeof text, "control character %sunexpected", controlCharacterName(token));
  else if (token < 127)
    std::snprintf(text, sizeof text, "character `%c` unexpected", token);
  else
    return "symbol unexpected";
  return text;
}

void reportSyntaxError(int position, const char* message) { reportInInput(position, message); }

void reportEndOfInput(int position) {
  inputEnded = true;
  reportInInput(position, "unexpected end of input");
}

RecordedSyntaxError recordedSyntaxError() {
  return {recorded ? recordedText : nullptr, recordedPosition};
}

void clearSyntaxError() {
  recorded = false;
  inputEnded = false;
}

void recordSyntaxError(int position, const char* text) {
  std::snprintf(recordedText, sizeof recordedText, "%s", text);
  recordedPosition = position;
  recorded = true;
}

}  // namespace korel
