#pragma once
// The statement interpreter.

#include "frame/environment.h"
#include "store/allocator.h"
#include "store/dag.h"
#include "store/generations.h"

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
/// The field from which the running frame takes its next statement: that tells equal ones apart.
inline void standAt(const DAG& field) { Environment->frame->currentPlace = &field; }
/// Registers what the interpreter keeps alive; part of the start.
void initializeStatements();
/// Ends an empty statement inside the running one, so that the collector has its turn.
void collectInStatement();
/// The same in a long loop when its marks have been passed.
inline void collectInLoop() {
  // A statement that is still being simplified, before it runs, has no level of its own: the end of a
  // statement in there would release what it is made of.
  if ((cused > nextgcgen || evaluationLevel + 1 < gene[gcgen]) && evaluationLevel >= 2) [[unlikely]]
    collectInStatement();
}

}  // namespace korel
