#pragma once
// The statement interpreter.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// What happens with a statement's value.
enum StatementMode : int {
  modeSilent = -1,  // ended by `:`, or inside such a statement
  modeShow = 0,     // ended by `;` at top level
  modeInner = 1,    // inside a body
  modeParse = 2,    // on behalf of `parse` or `callback`: ditto values stay
};

/// Runs one statement, one level deeper, with the collector's bookkeeping after it; gives its value.
DAG evalstat(DAG statement, int mode);
/// Registers what the interpreter keeps alive; part of the start.
void initializeStatements();
/// Gives the collector its chance in a long loop when its marks have been passed.
void collectInLoop();

/// The depth at which the debugger stops before the next statement, 0 for none, and what it is told then.
extern std::int32_t stepLevel;
extern DAG debugArgs;

}  // namespace korel
