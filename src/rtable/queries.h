#pragma once
// Questions about an rtable: its options, its size, and the view of `op`.

#include <cstdint>

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The options that make `r` again, as an EXPSEQ: data type, subtype (unless left out), storage, order, `readonly`,
/// attributes and, when asked for, the shape.
DAG GetRTableOptionList(DAG r, bool withSubtype, bool withShape);

/// Elements of the index space; those that are not zero, over the index space and in the storage.
std::int64_t wholeCountOf(DAG r);
std::int64_t nonZeroCount(DAG r);
std::int64_t nonZeroStoredCount(DAG r);

/// Operand `n` of the view of `op`, from 0, and their count. Error: "improper op or subscript selector".
DAG RTableOp(std::int64_t n, DAG r);
std::int64_t RTableNOps(DAG r);

namespace builtin {
DAG rtable_num_dims(const BuiltinCall& call);
/// rtable_num_elems(r), rtable_num_elems(r, selector): an integer.
DAG rtable_num_elems(const BuiltinCall& call);
/// The functions as an EXPSEQ.
DAG rtable_indfns(const BuiltinCall& call);
/// rtable_options(r), rtable_options(r, name or name = value, ...): the values that are asked for.
DAG rtable_options(const BuiltinCall& call);
DAG ArrayOptions(const BuiltinCall& call);
/// rtable_normalize_index(r, index...): each index as an integer, a range or a list of integers.
DAG rtable_normalize_index(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
