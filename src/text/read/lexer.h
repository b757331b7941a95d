#pragma once
// From characters to tokens, and the frame in which a parse runs.
//
// `ParseKorel` binds lexer and grammar to a source of characters by five hooks, so that files and
// strings are read by the same code. `yylex` cuts one token and leaves its value in `yylval`; it looks
// one character ahead and never further. Every failure leaves by `yyerror`, which reports through the
// error hook and jumps back into `ParseKorel`: nothing between the two owns anything.
//
// Parses nest (`read` inside a file, `parse` inside a statement) but never overlap.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// Delivers the next character as 0 to 255, or -1 at the end of the input.
using CharacterSource = int (*)();
using EndOfInputHandler = void (*)(int position);
using SyntaxErrorHandler = void (*)(int position, const char* message);
using SyntaxWarningHandler = void (*)(int position, const char* message);
/// The object that the label `%n` stands for, or 0.
using LabelResolver = DAG (*)(DAG n);

/// Parses one statement; gives `parsestat`, 0 after an error. A null hook selects a default that reads
/// standard input, reports on standard error (warnings: standard output), and knows no label. `reset`
/// drops a character that the last parse has looked at.
DAG ParseKorel(CharacterSource source, EndOfInputHandler onEof, SyntaxErrorHandler onError,
               SyntaxWarningHandler onWarning, LabelResolver onLabel, bool reset);
/// Forgets the character of look-ahead.
void ResetKorelParser();
/// Save and restore the look-ahead around a nested parse. Errors: "parsers nested too deeply", "too
/// many parsers popped from internal stack".
void PushKorelParser();
void PopKorelParser();
/// Drops every saved look-ahead: the outermost reader starts over.
void resetParserNesting();

// ---- between lexer and grammar

/// The next token. At the end of the input T_EOF, as often as it is asked for.
int yylex();
/// Value of the last token: an object, or a plain word (a character, the tag of a T_RELOP).
extern DAG yylval;
/// For `>=`: the operands of a LESSEQ change places.
constexpr Word swappedLessEqual = ~Word{LESSEQ} + 1;
static_assert(swappedLessEqual == 0xa8000000u);
/// Digits of the last integer literal, leading zeros included, and the exponent of the last literal
/// that had one. The next literal overwrites both.
extern std::int32_t lenint, eexpon;
/// The token that the grammar is looking at; -1 when it has not asked for one.
extern int yychar;
/// Raw characters read in the present parse: the position that errors are reported with.
extern int lexCharCount;
extern int nextLexChar, curLexChar;  // look-ahead (-2: none) and the character last consumed
extern bool lexAtEof;                // the input ended inside a quoted text

/// Reports `message` and leaves the parse. "syntax error" stands for the text of the token in `yychar`;
/// null: the end of the input.
[[noreturn]] void yyerror(const char* message);
/// Reports and returns.
void yywarning(const char* message);
/// What the label hook answers for the positive integer `n`, or 0.
DAG IGetlabel(DAG n);

}  // namespace korel
