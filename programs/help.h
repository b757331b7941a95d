#pragma once
// Short help at the terminal: what `?name` shows.

namespace korel {

/// Writes what is known about the word that `line` begins with: a topic or a reserved word; without a word, how
/// the terminal is used. Null; or, for the name of a procedure, the statement that shows the help of the library. Its
/// text stays valid until the next call.
const char* showHelp(const char* line);

}  // namespace korel
