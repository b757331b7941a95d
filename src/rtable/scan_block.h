#pragma once
// One walk over a part of an rtable for several questions at once: sums, extremes, counts, and procedures of the user.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel::builtin {

/// rtable_scanblock(r, [ranges], f1, f2, ...): the answers, in the order of the functions. The ranges are those of the
/// first dimensions; the others are scanned whole. Each function is one of `Average`, `Sum`, `NonZeroAverage`,
/// `NonZeroSum`, `Maximum`, `Minimum`, `NonZeroMaximum`, `NonZeroMinimum`, `HasZero`, `HasNonZero`, `NonZeros`, or a
/// procedure that is called with an element and a local name, whose value is the answer; when it gives `false` its
/// scan ends. Errors: "too few arguments", "rtable expected", "list of ranges expected", "range expected for each
/// dimension", "integer range expected for each dimension", "range out of bounds", "inverted range", "invalid scan
/// function %1", "unrecognized scan function %1".
DAG rtable_scanblock(const BuiltinCall& call);

}  // namespace korel::builtin
