#pragma once
// Rational expressions in lowest terms.
//
// A rational expression becomes a numeric factor times a product of powers over another one, neither of which is
// multiplied out further than the sum of fractions asks. Common factors are found by the library's `normal/gcd`. What
// is no rational expression stands for a name meanwhile (frontend.h).

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// Numerator and denominator in lowest terms. Error: "invalid arguments to normal/numden".
void numden(DAG x, DAG& numerator, DAG& denominator);
DAG numer(DAG x);
DAG denom(DAG x);
/// The normal form: a quotient in lowest terms, 0 for what is zero as a rational expression; with `expanded` both parts
/// multiplied out. Lists, sets, equations and the like part by part. Error: "invalid arguments to normal".
DAG enormal(DAG x, bool expanded);

namespace builtin {
DAG numer(const BuiltinCall& call);
DAG denom(const BuiltinCall& call);
/// normal(x [, expanded]).
DAG normal(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
