#pragma once
// Expansion: products over sums multiplied out.
//
// Small products are multiplied out term by term here, so that their terms stand in the order of the factors. From
// some hundred products of terms on, and for higher powers, the work goes to the library's `expand/bigprod` and
// `expand/bigpow`; calls, powers with a symbolic exponent and operators go to its procedures of their name.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// `x` with all products over sums multiplied out, simplified. Remembered, unless floats are about.
/// Errors: those of the library; "object too large".
DAG expand(DAG x);
/// Product of two sums, or single terms, multiplied out; the terms are themselves expanded. Simplified.
DAG exprod(DAG a, DAG b);
/// The same term by term whatever the length, for operands that are nothing for the engine.
DAG productByTerms(DAG a, DAG b);
/// Product where one operand or both may be a LIST: a list takes the other factor into each member. Not simplified.
DAG exlistprod(DAG a, DAG b);

namespace builtin {
/// expand(x, e...): the expressions e stay as they are.
DAG expand(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
