#pragma once
// The `try` statement.

#include "store/dag.h"

namespace korel {

/// Runs a TRY: the body, the first catch clause whose text is a prefix of an error's message, and the
/// `finally` part on every way out but a special error.
DAG tryStatement(DAG statement, int mode);
/// Catch expression `a` matches the message `b`: an empty one, a prefix, or a sequence with a match.
bool CatchPrefix(DAG a, DAG b);

}  // namespace korel
