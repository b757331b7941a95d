#pragma once
// The evaluator: an expression's value.
//
// `eval` does not simplify; whoever keeps or compares a result calls `simpl` on it. An unchanged
// object is returned as the same word, and the first changed operand makes a copy.

#include "frame/environment.h"
#include "store/dag.h"

namespace korel {

/// Value of `x`. With `lastName` the name the value came from is stored there, and a name's value is
/// given even if it is a procedure, table or module.
DAG eval(DAG x, DAG* lastName = nullptr);
/// The name that `x` stands for; its value is not evaluated.
DAG evalname(DAG x);
/// `x` with parameters, locals and lexicals replaced by what they stand for in the current frame.
DAG evparloc(DAG x);
/// The same for what was quoted, mostly a value, whose shared parts are met once.
DAG unquoted(DAG x);
/// One level of evaluation.
DAG mvalue(DAG x);
/// As `evalname` and `evparloc`, with types kept at assertion level 2.
DAG TypedName(DAG x);
DAG TypedLocal(DAG x);

}  // namespace korel
