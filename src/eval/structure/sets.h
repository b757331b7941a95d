#pragma once
// Sets, whose members stand in the ascending order of their words, taken as signed numbers.
//
// The order is that of addresses, so that it differs between runs; what it buys is that every operation
// is one walk over two sequences. A result that equals an operand shares the operand's sequence.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

DAG setunion(DAG a, DAG b);
DAG setinters(DAG a, DAG b);
/// The members of `a` that are none of `b`; `a` itself when that is all of them.
DAG setdiff(DAG a, DAG b);
/// True when `x` is a member of the SET `s`.
bool setmember(DAG s, DAG x);
/// Place of `x` in the sorted EXPSEQ `members`, 0 when it isn't there.
Word setPosition(DAG members, DAG x);
/// The EXPSEQ `s` with its members in ascending order, in a copy unless they are already and none
/// occurs twice. Equal ones stay. Anything else is an internal error.
DAG setsort(DAG s);

namespace builtin {
/// `union`, `intersect`, `minus` as calls: of sets the value, folded from the left; unevaluated when an
/// argument may yet become a set; the common failure for one that never does (`IsNotSet`).
DAG unionOperator(const BuiltinCall& call);
DAG intersectOperator(const BuiltinCall& call);
DAG minusOperator(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
