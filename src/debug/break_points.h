#pragma once
// Break points: wrappers around statements in the bodies of procedures, which stay until they are taken off.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// The procedure that `name` stands for: a NAME, a TABLEREF, or a MEMBER. Errors: "procedure name expected", "cannot
/// debug built-in functions", "cannot debug the debugger".
DAG debuggableProcedure(DAG name);
/// Whether `name` leads to `procedure`, or to one with the same body.
bool leadsTo(DAG name, DAG procedure);
/// Whether `name` is the debugger's procedure, or part of it.
bool isOfDebugger(DAG name);

/// A break point at statement `number`; `condition`, 0 for none, means parameters and locals of the procedure. One that
/// is there already gets the condition. Errors: "statement number out of range", "cannot set break point on a traced
/// statement".
void setBreakPoint(DAG name, std::int32_t number, DAG condition);
/// Takes it off. Errors: "no break point set at specified location", "statement number out of range".
void clearBreakPoint(DAG name, std::int32_t number);

}  // namespace korel
