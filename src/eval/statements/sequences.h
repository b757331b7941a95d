#pragma once
// The fast loops behind `seq`, `add`, `mul` and `$`.
//
// They run an expression for each value of a variable and build the result once, without the statement
// interpreter. The variable gets its value back afterwards, also after an error.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The values of `expression` for `variable` from `from` to `to` in steps of 1, as a sequence, or folded
/// into a sum or product. The variable (a NAME or TABLEREF) keeps its last value.
DAG seqforfrom(DAG variable, DAG from, DAG to, DAG expression);
DAG addmulforfrom(DAG variable, DAG from, DAG to, DAG expression, bool isAdd);
/// The same for the characters of a STRING or the operands of anything else.
DAG seqforin(DAG variable, DAG container, DAG expression);
DAG addmulforin(DAG variable, DAG container, DAG expression, bool isAdd);

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
