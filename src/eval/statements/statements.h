#pragma once
// The statement interpreter, and the truth of boolean expressions.

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
DAG evalst2(DAG statement, int mode);
/// Registers what the interpreter keeps alive; part of the start.
void initializeStatements();
/// Gives the collector its chance in a long loop when its marks have been passed.
void collectInLoop();

/// The depth at which the debugger stops before the next statement, 0 for none, and what it is told then.
extern std::int32_t stepLevel;
extern DAG debugArgs;

/// Stores `value` in `target`, which `evalname` has left a name, TABLEREF, DCOLON, MEMBER or call.
DAG assign(DAG target, DAG value);
/// `true`, `false`, `FAIL`, or the expression when undecided.
DAG evalbool(DAG x);
/// `evalbool` of the condition's value.
DAG truthOf(DAG condition);
/// The same for a relation between immediates, locals and parameters that hold small integers, which
/// runs nothing that could fail or be noticed; 0 for any other condition.
DAG plainTruthOf(DAG condition);
DAG forfrom(DAG statement, int mode);
DAG forin(DAG statement, int mode);
DAG evalgoto(DAG sequence, DAG label);
/// True when a loop body holds a `break`, `next` or `goto` of its own.
bool hasbrnext(DAG body);
/// Catch expression `a` matches the message `b`: an empty one, a prefix, or a sequence with a match.
bool CatchPrefix(DAG a, DAG b);

}  // namespace korel
