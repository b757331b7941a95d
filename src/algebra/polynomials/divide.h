#pragma once
// Exact division of polynomials over the integers.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// Whether `b` divides `a` over the integers; the quotient, expanded, through `quotient`, which stays as it is when
/// not. Remembered, unless floats are about. Errors: "division by zero", "invalid arguments to divide: %1, %2".
bool divide(DAG a, DAG b, DAG& quotient);
/// The same without memory and without a look at contents.
bool divideZ(DAG a, DAG b, DAG& quotient);
/// The same by long division whatever the length, for operands that are nothing for the engine.
bool divideByTerms(DAG a, DAG b, DAG& quotient);

namespace builtin {
/// divide(a, b [, 'q']).
DAG divide(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
