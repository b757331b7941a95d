#pragma once
// Growable text: what the lexer collects quoted texts in, and what the printer prints names and
// strings to.
//
// The value used everywhere is the address of the characters, so that it reads as plain
// zero-terminated text. The word just before the characters leads to a small record of capacity and
// length; every append may move the text and answers with its new address. The text lives in the
// system heap: whoever owns one over a call that can raise registers its disposal.

#include <cstddef>

#include "store/dag.h"

namespace korel {

/// A new empty text. Exhausted memory, here and in the appends, is the internal error
/// "not enough memory for text".
char* NewLongString();
/// Appends one character (not 0); gives the text's new address.
char* AppendToString(char* text, int c);
/// Appends `tail`, which may not lie inside `text`; gives the text's new address.
char* AppendStringToString(char* text, const char* tail);
/// Number of characters.
std::size_t LongStringLength(const char* text);
/// Gives the storage back. Nothing for a null pointer.
void DisposeString(char* text);
/// The unique NAME of the text, which is disposed of.
DAG StringToName(char* text);
/// The unique STRING of the text, which is disposed of.
DAG StringToMString(char* text);

}  // namespace korel
