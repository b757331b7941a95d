#pragma once
// Truth of expressions, three-valued: `true`, `false`, `FAIL`, or the expression when undecided.

#include "store/dag.h"

namespace korel {

/// Truth of the evaluated expression `x`. Error: "invalid boolean expression".
DAG evalbool(DAG x);
/// `evalbool` of the condition's value.
DAG truthOf(DAG condition);
/// The same for a relation between immediates, locals and parameters that hold small integers, and names outside
/// procedures that hold them or texts, which runs nothing that could fail or be noticed; 0 for any other condition.
DAG plainTruthOf(DAG condition);

}  // namespace korel
