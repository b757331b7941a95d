#pragma once
// The `save` statement: assignments written as source text that reads back.

#include "store/dag.h"

namespace korel {

/// Runs a SAVE. Errors: "save is disabled", "last argument to save must be a file or library name",
/// "must specify names to save when saving to a text file", "save can only save names".
DAG saveStatement(DAG statement);

}  // namespace korel
