#pragma once
// Values that the library holds: asked for when a name is first used, and by `readlib`.
//
// A fresh name carries the deferred bit until the library has been asked for its value. A procedure that the
// kernel calls by name is asked for at each call; names that no directory holds are remembered as missed.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// Asks the library for a value of `name`, once: clears the deferred bit. Until a library is attached
/// there is nothing to find.
void RetrieveName(DAG name);
/// Marks every name without value and attributes, so that a new library is asked for it.
void deferNames();
/// The name `base``suffix` when it has a value, loaded from the library if need be; else `null`.
DAG nameInLibrary(const char* base, const char* suffix);

/// Asks each of `directories`, a text or an EXPSEQ of texts, for a file with the value of the name
/// `text`; false when none has it. Errors: "invalid entry %1 in libname", "readlib file name would be
/// longer than %1 characters".
bool readFromDirectories(const char* text, DAG directories);

/// Reads `<entry>/<file>.m`, where `entry` is a member of `libname`; true when that assigned names.
/// Null until a library is attached: then every search ends without success.
using LibraryReader = bool (*)(DAG entry, const char* path);
extern LibraryReader libraryReader;

/// Names that no library directory holds, latest first, closed by a 0.
constexpr int notinlibLength = 100;
extern DAG notinlib[notinlibLength];

namespace builtin {
/// readlib(name) asks the directories of `libname`, readlib(name, directory...) those given, for a value
/// of the name; gives the value. Obsolescent: names are asked for on first use. Errors: "libname is not
/// assigned\n", "could not find `%1` in the library", "could not find `%1`", "ineffective readlib of `%1`".
DAG readlib(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
