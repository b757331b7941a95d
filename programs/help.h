#pragma once
// Short help at the terminal: what `?name` shows.

namespace korel {

/// Writes what is known about the word that `line` begins with: a topic, a reserved word, or a name
/// of the session. Without a word: how the terminal is used.
void showHelp(const char* line);

}  // namespace korel
