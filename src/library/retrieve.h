#pragma once
// Names whose value may still be in the library.

#include "store/dag.h"

namespace korel {

/// Asks the library for a value of `name`, once: clears the deferred bit. Until a library is attached
/// there is nothing to find.
void RetrieveName(DAG name);

}  // namespace korel
