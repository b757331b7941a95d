#pragma once
// Replacement of whole subexpressions, found by their word.

#include "store/dag.h"

namespace korel {

/// `x` with every subexpression that is the left side of an equation replaced by its right side, all
/// at once; not simplified. `equations` is an EXPSEQ of EQUATION. `x` itself when nothing matches.
DAG substituteInCopy(DAG equations, DAG x);
/// True when `x` holds `part`, by word.
bool holdsWord(DAG x, DAG part);
/// True when `x` holds a call of `head`.
bool hasCallTo(DAG x, DAG head);
/// True when `x` holds `part` outside of PROC and UNEVAL objects.
bool hasExceptInPROCorUNEVAL(DAG x, DAG part);

}  // namespace korel
