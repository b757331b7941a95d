#pragma once
// Procedures of the library that the kernel calls by name.
//
// Much of the mathematics is written in the language, in procedures such as `evalf/sin`. The kernel
// finds one by joining a base and a suffix, loads it when need be, and evaluates the call.

#include "store/dag.h"

namespace korel {

/// Value of the call `base``suffix`(arguments); `arguments` is an EXPSEQ, or one argument.
/// Error: "%1%2: missing system function".
DAG evalsysf(const char* base, const char* suffix, DAG arguments);
/// The same, with `null` when there is no such procedure.
DAG evalextf(const char* base, const char* suffix, DAG arguments);
/// The same with the head of a call as suffix: a NAME, or a TABLEREF, whose index stays in the called
/// name.
DAG evalextf(const char* base, DAG head, DAG arguments);
/// `evalsysf` for the function name `function`: a NAME, or a TABLEREF, whose index stays in the called
/// name. Error: "name expected for external function".
DAG EvalSystemFunction(const char* prefix, DAG function, DAG form, DAG arguments);
/// The name `base``suffix` when it has a value, loaded from the library if need be; else `null`.
DAG retrieve(const char* base, const char* suffix);

/// Asks each of `directories`, a text or an EXPSEQ of texts, for a file with the value of the name
/// `text`; false when none has it. Errors: "invalid entry %1 in libname", "readlib file name would be
/// longer than %1 characters".
bool readFromDirectories(const char* text, DAG directories);

/// Reads the member `name` of the directory `entry` of `libname`; true when there is one.
/// Null until a library is attached: then every search ends without success.
using LibraryReader = bool (*)(DAG entry, const char* name);
extern LibraryReader libraryReader;

/// Names that no library directory holds, latest first, closed by a 0.
constexpr int notinlibLength = 100;
extern DAG notinlib[notinlibLength];

}  // namespace korel
