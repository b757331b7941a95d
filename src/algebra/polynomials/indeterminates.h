#pragma once
// What an expression is an expression in: names, indexed names, and calls that aren't constant.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The indeterminates of `x` as a SET. Errors: "invalid argument for indets".
DAG indets(DAG x);
/// The parts of `x` that match `type`, as a SET; what matches is not searched itself, but for the arguments of calls.
/// Error: "unbound local or parameter in indets".
DAG indets(DAG x, DAG type);
/// The indeterminates as an EXPSEQ, in the order of the set.
DAG indetsSequence(DAG x);
/// `x` holds a part that matches `type`.
bool hasIndeterminate(DAG x, DAG type);

namespace builtin {
/// indets(x [, type]).
DAG indets(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
