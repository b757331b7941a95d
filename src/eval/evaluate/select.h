#pragma once
// Selection: the value of an indexed reference b[i].

#include "store/dag.h"

namespace korel {

/// Value of the TABLEREF `x`, by the kind of its base; the rebuilt reference when nothing is selected.
DAG evalTableReference(DAG x, DAG* lastName);
/// What stands at `x` as stored: the reference itself when there is nothing.
DAG selectStored(DAG x);
/// Member of an EXPSEQ, LIST or SET by an index (an integer, counted from the end when negative, or a
/// range, for a part of the same kind), or 0. A longer index selects in the member selected.
/// Error: "invalid subscript selector".
DAG select_list(DAG container, DAG index);
/// The same for the characters of a STRING.
DAG select_string(DAG string, DAG index);

}  // namespace korel
