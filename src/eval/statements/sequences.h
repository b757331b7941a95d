#pragma once
// The fast loops behind `seq`, `add`, `mul` and `$`.
//
// They run an expression for each value of a variable and build the result once, without the statement
// interpreter. The variable gets its value back afterwards, also after an error.

#include "frame/builtin_call.h"

namespace korel {

namespace builtin {
/// seq(e, i = a..b), seq(e, i = container). Error: "unable to execute seq".
DAG seq(const BuiltinCall& call);
/// add(e, i = a..b) and mul over a range or container. Errors: "unable to execute add" and "... mul".
DAG add(const BuiltinCall& call);
DAG mul(const BuiltinCall& call);
/// The operator `$`: f $ n, f $ i = a..b, $ a..b.
DAG dollar(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
