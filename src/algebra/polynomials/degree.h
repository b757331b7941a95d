#pragma once
// Degrees of an expression seen as a polynomial.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

enum class DegreeEnd { low, high };
/// Degree or low degree of `p` in `x`, a variable or an EXPSEQ of them (the total degree): an integer, -infinity or
/// infinity for zero, FAIL for what is no polynomial. Nothing is expanded, so that terms may cancel.
DAG degree(DAG p, DAG x, DegreeEnd end = DegreeEnd::high);

namespace builtin {
/// degree(p [, x]), ldegree(p [, x]): x a variable, a list or a set of them; all indeterminates by default.
DAG degree(const BuiltinCall& call);
DAG ldegree(const BuiltinCall& call);
}  // namespace builtin

/// The EXPSEQ of variables that the argument `which` of a built-in tells, as a list, a set or itself; the
/// indeterminates of `p` where there is no such argument.
DAG variablesArgument(const BuiltinCall& call, Word which, DAG p);

}  // namespace korel
