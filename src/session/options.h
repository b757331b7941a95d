#pragma once
// The kernel's switches: what each one sets, and what they leave for the start files.

namespace korel {

/// The library directories, separated by commas; becomes `libname`.
extern char libraryText[256];

/// Takes the library directory from the environment: "%s/lib" of `KOREL`, or of its default place.
/// Null on success, else a message.
const char* findLibrary();
/// Reads the switches of a command line, each into its setting. Null on success, else the message
/// of the one that failed. A directory that does not exist raises an error.
const char* readOptions(int argc, char** argv);

/// The switches as `mgetopt` takes them: letters, those with a value followed by a colon.
extern const char* const optionLetters;

/// What `-c` and `-i` gave, in order.
struct StartEntry {
  const char* text;
  char letter;  // 'c' statement text, 'i' file name
};
extern const StartEntry* startList;
extern int startListLength;

}  // namespace korel
