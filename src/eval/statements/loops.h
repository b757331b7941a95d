#pragma once
// The `for` loops, and the ways out of and into statement sequences that a jump can take.

#include "store/dag.h"

namespace korel {

/// Runs a FOR of the counted kind, or one over a container. Gives the value of the last round's body.
DAG forfrom(DAG statement, int mode);
DAG forin(DAG statement, int mode);
/// Goes on behind `label`, a statement of `sequence` or of an `if` in it; gives the last value, or 0 without a label.
DAG evalgoto(DAG sequence, DAG label);
/// True when a loop body holds a `break`, `next` or `goto` of its own.
bool hasbrnext(DAG body);

}  // namespace korel
