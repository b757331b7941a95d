#pragma once
// The normal view: any object as a list of operands, as `op` and `nops` show it.
//
// The view differs from storage: the pairs of a SUM are terms, SUM(x, 2) is a product of two factors,
// a LIST's operands are those of its sequence. Everything that takes expressions apart goes through it.

#include <cstdint>

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// x is a SUM of at least 2 pairs.
bool addition(DAG x);
/// x is a SUM of exactly one pair, or a PROD of at least 2.
bool multiplication(DAG x);
/// Term `i` of a SUM with its coefficient; x itself when x is no SUM of 2 pairs or more.
DAG mterm(std::int64_t i, DAG x);
/// Factor `i` of a product: of a SUM of one pair the coefficient comes first.
DAG fact(std::int64_t i, DAG x);

/// Count of operands.
std::int64_t numterms(DAG x);
/// Operand `i` (from 1), or for 0 the head or the name that tells the kind.
/// Error: "improper op or subscript selector".
DAG op1(std::int64_t i, DAG x);
/// Operands i to j as a sequence, a single one as itself, the head in front from 0 on; negative positions
/// count from the end. The whole of an object that holds a sequence is that sequence, not copied.
/// Error: "improper op or subscript selector".
DAG op(std::int64_t i, std::int64_t j, DAG x);
/// Walks down one level for each position of the LIST `positions`; the last may be a range. Errors:
/// "integer expected in op list", "integer or integer range expected in op list", those of `op`.
DAG oplist(DAG positions, DAG x);
/// A RANGE of integers.
bool isIntegerRange(DAG x);
[[noreturn]] void improperSelector();
/// The number of an operand, as an integer object tells it. Too long a one is an improper selector.
std::int64_t operandPosition(DAG integer);

// ---- built-ins
namespace builtin {
/// op(x), op(i, x), op(i..j, x), op([i, j, ...], x).
DAG op(const BuiltinCall& call);
/// nops(x): the count of operands.
DAG nops(const BuiltinCall& call);
/// member(x, list or set), member(x, list or set, 'p'): the position goes to p. Anything else: the call.
DAG member(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
