#pragma once
// The tokens of the language, its reserved words, and what an error says of a token in a wrong place.
//
// A token is an integer: below 256 a raw character, above it one of the named tokens. Rows and error
// texts stand in tokens.def.

namespace korel {

enum Token : int {
  noToken = -1,
  /// A neutral operator without a name: `&` before white space, a digit or a bracket.
  invalidNeutral = 32,
  firstNamedTokenMinusOne = 256,
#define KOREL_TOKEN(token, unexpected) token,
#include "text/read/tokens.def"
#undef KOREL_TOKEN
  tokenEnd,
};
constexpr int firstNamedToken = firstNamedTokenMinusOne + 1;
constexpr int namedTokenCount = tokenEnd - firstNamedToken;
static_assert(namedTokenCount == 79);

/// The token of a reserved word; 0 for every other text.
int KeyWordToToken(const char* text);
/// The first reserved word, in alphabetical order, with that token; null for none.
const char* TokenToKeyWord(int token);
/// The error for a token that no rule has a place for. The text stays valid until the next call.
const char* unexpectedTokenText(int token);

}  // namespace korel
