#pragma once
// The fast loops behind `seq`, `add`, `mul` and `$`.
//
// They run an expression for each value of a variable and build the result once, without the statement
// interpreter. The variable gets its value back afterwards, also after an error.

#include "eval/builtins.h"
#include "store/dag.h"

namespace korel {

/// seq(e, i = a..b), seq(e, i = container). Error: "unable to execute seq".
DAG seq(const BuiltinCall& call);
/// add(e, i = a..b) and mul over a range or container. Errors: "unable to execute add" and "... mul".
DAG addBuiltin(const BuiltinCall& call);
DAG mulBuiltin(const BuiltinCall& call);
/// The operator `$`: f $ n, f $ i = a..b, $ a..b.
DAG dollar(const BuiltinCall& call);

}  // namespace korel
