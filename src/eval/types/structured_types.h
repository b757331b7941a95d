#pragma once
// Types that are calls or indexed names, and what they share with plain names.

#include "store/dag.h"

namespace korel {

/// `e` against the type head(args).
bool typeByCall(DAG e, DAG t);
/// `e` against the type head[args].
bool typeByIndexedName(DAG e, DAG t);
/// Every operand of `e`, in the normal view, matches `t`.
bool everyOperand(DAG e, DAG t);

/// A value that answers by a call: a PROC, or a `readlib` call that brings one.
bool isTypeProcedure(DAG value);
/// The answer of head(e, rest...), for the type that messages call `t`. `head` is evaluated as the head
/// of a call. False for parts of a procedure's body that are no values.
/// Error: "result from type `%1` must be true or false".
bool callTypeProcedure(DAG head, DAG e, DAG rest, DAG t);

[[noreturn]] void invalidType();

}  // namespace korel
