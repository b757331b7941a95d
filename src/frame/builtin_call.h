#pragma once
// What a built-in procedure is given, and its two ways out besides a value.
//
// A built-in is a plain function in the namespace `builtin`, named as the language names it, declared in the
// header of its subject and entered in the table (builtins/builtins.h). Where the name is a keyword it ends
// in `_`. Kernel code that needs the work done calls the function behind it.

#include "store/dag.h"

namespace korel {

struct BuiltinCall {
  DAG arguments;  // EXPSEQ
  DAG self;       // the name called: a NAME, or a TABLEREF for an indexed call
  DAG form;       // the FUNCTION object, with its arguments as they stand
};
using BuiltinFunction = DAG (*)(const BuiltinCall& call);

inline Word argumentCount(const BuiltinCall& call) { return lengthOf(call.arguments) - 1; }
/// The call itself, with the arguments that the built-in was given: an answer that leaves it as it is.
DAG unevaluatedCall(const BuiltinCall& call);
/// The common failure: "wrong number (or type) of parameters in function %1".
[[noreturn]] void wrongParameters(const BuiltinCall& call);

}  // namespace korel
