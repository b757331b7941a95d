#pragma once
// Remember tables: the results a procedure keeps by its arguments.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// Absence, as table searches report it.
constexpr DAG absent{Word{2}};

/// The value that `procedure` (or the procedure a name holds) remembers for `arguments`, or `absent`.
/// With an age other than -1, an entry stored with a stamp must be at least as young.
DAG srchpc(DAG procedure, DAG arguments, std::int64_t age);
/// Stores `value` for `arguments`; with a stamp other than -1 together with it.
/// Error: "ineffective remember" when there is no procedure.
void pcinsert(DAG procedure, DAG arguments, DAG value, std::int64_t stamp);

}  // namespace korel
