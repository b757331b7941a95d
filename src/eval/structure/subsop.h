#pragma once
// Replacement of operands by their position, in the view of `op`.
//
// The object is taken apart into a raw copy in which every operand has a place of its own, the new
// operands are put there, and `simpl` makes the result: a place is left by putting the empty sequence
// where members stand, and all replacements of one call count in the object as it was.

#include <cstdint>

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// `x` with operand `i` replaced; negative positions count from the end, 0 is the head of a call or
/// reference and the variable of a series. Errors: "improper op or subscript selector", and what the
/// kind of object refuses.
DAG subsop(std::int64_t i, DAG replacement, DAG x);
/// The same at a nested position, one level down for each member of the LIST `positions`.
/// Error: "integer expected in op list".
DAG subsoplist(DAG positions, DAG replacement, DAG x);

/// An object taken apart: `parts` is raw and belongs to nobody else. What a kind does with it stands in its row
/// (kinds.h).
struct TakenApart {
  DAG original;
  DAG parts;
};

namespace builtin {
/// subsop(p1 = e1, p2 = e2, ..., x): positions are integers, or lists of them.
DAG subsop(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
