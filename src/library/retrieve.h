#pragma once
// Values that the library is asked for by text: the procedures that the kernel calls, and what `readlib` wants.
//
// A procedure that the kernel calls by name is asked for at each call; names that no directory holds are remembered
// as missed. What a name needs on its first use is fetched by `RetrieveName` (library/repository/lookup.h).

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// Marks every name without value and attributes, so that a new library is asked for it.
void deferNames();
/// The name `base``suffix` when it has a value, or a file of the library for it; else `null`.
DAG nameInLibrary(const char* base, const char* suffix);

/// Asks each of `directories`, a text or an EXPSEQ of texts, for a file with the value of the name
/// `text`; false when none has it. Errors: "invalid entry %1 in libname", "readlib file name would be
/// longer than %1 characters".
bool readFromDirectories(const char* text, DAG directories);

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
