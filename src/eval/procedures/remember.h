#pragma once
// Remember tables: the results a procedure keeps by its arguments.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// Absence, as table searches report it.
constexpr DAG absent{Word{2}};

/// The stamp of an entry that has none, and the age that any entry has.
constexpr std::int64_t timeless = -1;

/// The value that `procedure` (or the procedure a name holds) remembers for `arguments`, or `absent`.
/// An entry stored with a stamp must be at least as young as `age`.
DAG srchpc(DAG procedure, DAG arguments, std::int64_t age = timeless);
/// Stores `value` for `arguments`, together with the stamp.
/// Error: "ineffective remember" when there is no procedure.
void pcinsert(DAG procedure, DAG arguments, DAG value, std::int64_t stamp = timeless);
/// What the result of an indexed call f[index](arguments) is kept under: index::arguments.
DAG indexedKey(DAG index, DAG arguments);

}  // namespace korel
