#pragma once
// From characters to tokens, and the frame in which a parse runs.
//
// `ParseKorel` binds lexer and grammar to a source of characters and to four more hooks, so that files and
// strings are read by the same code. `yylex` cuts one token; it looks one character ahead and never
// further. Every failure leaves by `yyerror`, which reports through the error hook and jumps back into
// `ParseKorel`: nothing between the two owns anything.
//
// Parses nest (`read` inside a file, `parse` inside a statement) but never overlap.

#include <cstdint>

#include "store/dag.h"
#include "text/read/tokens.h"

namespace korel {

/// Where characters come from: each call delivers the next one as 0 to 255, or -1 at the end.
struct CharacterSource {
  int (*next)(void* closure);
  void* closure;
};

struct ParseHooks {
  CharacterSource source;
  void (*onEof)(int position);
  void (*onError)(int position, const char* message);
  void (*onWarning)(int position, const char* message);
  DAG (*onLabel)(DAG n);  // the object that the label `%n` stands for, or 0
};

/// Parses one statement, with no character of an earlier parse in sight; 0 after an error.
DAG ParseKorel(const ParseHooks& hooks);
/// Save and restore the look-ahead around a nested parse. Errors: "parsers nested too deeply", "too
/// many parsers popped from internal stack".
void PushKorelParser();
void PopKorelParser();
/// Drops every saved look-ahead: the outermost reader starts over.
void resetParserNesting();
/// Raw characters read in the present parse, or in the last one: the position that errors are reported with.
extern int lexCharCount;

// ---- between lexer and grammar

/// A token with what belongs to it.
struct Lexeme {
  int token = noToken;
  DAG value;                  // an object, or a plain word: a character, the tag of a T_RELOP
  std::int32_t digits = 0;    // of a number literal, leading zeros included
  std::int32_t exponent = 0;  // of a T_EXPINT
};
/// The next token. At the end of the input T_EOF, as often as it is asked for.
Lexeme yylex();
/// For `>=`: the operands of a LESSEQ change places.
constexpr Word swappedLessEqual = ~Word{LESSEQ} + 1;
static_assert(swappedLessEqual == 0xa8000000u);

/// Reports `message`, or with null the end of the input, and leaves the parse.
[[noreturn]] void yyerror(const char* message);
/// What the label hook answers for the positive integer `n`, or 0.
DAG IGetlabel(DAG n);

}  // namespace korel
