#pragma once
// Short help at the terminal: what `?name` shows.

namespace korel {

/// Writes how to begin when `line` holds no word, and the switches of the program for `korel`; null then. For any other
/// word, the statement that shows its page in the library's help. Its text stays valid until the next call.
const char* showHelp(const char* line);

}  // namespace korel
