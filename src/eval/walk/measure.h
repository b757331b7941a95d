#pragma once
// Counts over a whole expression: how often a part occurs, and how long the expression is.
//
// A part that is shared counts once for each place where it stands, but is walked once; the counts are
// integers of the language and grow as large as they must.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// How often `y` occurs in `x`, in the walk and in the sense of `has`; an EXPSEQ `y` adds up the counts
/// of its members.
DAG numboccur(DAG x, DAG y);
/// The size of `x`: digits of an integer, characters of a name or string, otherwise the words of the
/// object and the sizes of its fields.
DAG length(DAG x);

namespace builtin {
/// numboccur(x, y): of a list or set y that doesn't occur as such, each member is counted.
DAG numboccur(const BuiltinCall& call);
/// length(x).
DAG length(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
