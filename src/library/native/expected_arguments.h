#pragma once
// What functions of numbers expect: how many arguments, and of which kind. The errors name the function that was
// called.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The error `message` about the count of arguments: %1 stands for the function, %2 for the count.
[[noreturn]] void wrongCount(const BuiltinCall& call, const char* message);
/// An error for what no function of numbers has a value for: text, collections, relations, ranges, procedures.
void requireAlgebraic(const BuiltinCall& call, DAG x);
/// The only argument, of a kind that may be a number.
DAG onlyArgument(const BuiltinCall& call);

}  // namespace korel
