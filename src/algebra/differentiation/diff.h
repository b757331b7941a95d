#pragma once
// Symbolic derivatives.
//
// The kernel differentiates sums, products, powers, series, and the members of lists, sets and equations. Each
// function is the library's: `diff/NAME` is given the arguments and the variable. A call of which nothing is known
// stays as a call of `diff`.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The derivative of `e` by `x`, simplified. `key` is the EXPSEQ (e, x), simplified: what the result is remembered
/// under, and the arguments of the call that stays. Errors: "non-algebraic expressions cannot be differentiated",
/// "please use map to differentiate tables/arrays", "cannot differentiate series".
DAG diff(DAG e, DAG x, DAG key);

namespace builtin {
/// diff(e, x, y, ...): the derivative by x, of that the one by y, and so on.
DAG diff(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
