#pragma once
// Built-ins that reach out of the evaluator: to the library by `readlib`, to the shell, to the
// debugger, and to a float library.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

namespace builtin {
/// readlib(name) asks the directories of `libname`, readlib(name, directory...) those given, for a value
/// of the name; gives the value. Obsolescent: names are asked for on first use. Errors: "libname is not
/// assigned\n", "could not find `%1` in the library", "could not find `%1`", "ineffective readlib of `%1`".
DAG readlib(const BuiltinCall& call);
/// system(text...): runs the joined texts by the shell; gives the exit status.
/// Errors: "system takes only arguments of type string", "system calls are disabled".
DAG system_(const BuiltinCall& call);
/// MPFloat(name, arguments): attaches a float library. Error: "usage MPFloat(string,args)".
DAG MPFloat(const BuiltinCall& call);
/// DEBUG(...): the debugger stops here at top level, inside a procedure at its next statement.
DAG DEBUG_(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
