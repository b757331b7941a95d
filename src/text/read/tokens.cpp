#include "text/read/tokens.h"

#include <cstdio>
#include <cstring>
#include <iterator>

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
    case 7: return "`\\a` ";
    case 8: return "`\\b` ";
    case 27: return "`\\e` ";
    default: return "";
  }
}

}  // namespace

int KeyWordToToken(const char* text) {
  // Every reserved word has 2 to 11 small letters: most names end the search here.
  if (text[0] < 'a' || text[0] > 'w' || text[1] == 0) return 0;
  std::size_t low = 0, high = std::size(keyWords);
  while (low < high) {
    std::size_t middle = (low + high) / 2;
    int order = std::strcmp(text, keyWords[middle].text);
    if (order == 0) return keyWords[middle].token;
    if (order < 0) high = middle;
    else low = middle + 1;
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
  if (const char* word = TokenToKeyWord(token)) std::snprintf(text, sizeof text, "reserved word `%s` unexpected", word);
  else if (token < 32) std::snprintf(text, sizeof text, "control character %sunexpected", controlCharacterName(token));
  else if (token < 127) std::snprintf(text, sizeof text, "character `%c` unexpected", token);
  else return "symbol unexpected";
  return text;
}

}  // namespace korel
