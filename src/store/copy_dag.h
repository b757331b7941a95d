#pragma once
// What the copier of structures (`CopyDAG`, objects.h) leaves to others.

#include "store/dag.h"

namespace korel {

/// How an rtable is copied: `copy` gives a new one, whose references went through its second argument.
/// Until this is registered an rtable stands for itself, like a name.
void registerRtableCopier(DAG (*copy)(DAG rtable, DAG (*copyReference)(DAG x)));

}  // namespace korel
