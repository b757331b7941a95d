#pragma once
// The profile of statements: how often each has run, and what it has cost.
//
// `InstrumentProcedure` wraps each statement S of a procedure f as TRACE(`TRACE/f`, k, S), where k is the number of the
// statement, negative at the first level of the body. The value of `TRACE/f` is an N by 3 array of 32-bit integers:
// calls, milliseconds of processor time, words used. Row 1 is the procedure, row k + 1 statement k. A traced statement
// runs as deep as without its wrapper, has the same value and leaves the same ditto values.

#include <cstdint>

#include "debug/statement_walk.h"
#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// `traceproc = true`: each procedure is instrumented when it is first entered.
extern bool traceAllMode;

/// Runs the traced statement `call`, in the place of a statement or of an expression.
/// Errors: "Nx3 trace vector and +/-statement number expected", "statement number out of range".
DAG runTraced(DAG call, int mode);

enum class Instrumentation { on, off };
/// Wraps every statement of the procedure that `name` stands for, or unwraps it. Break points are taken off. Errors:
/// those of `debuggableProcedure`.
void InstrumentProcedure(DAG name, Instrumentation mode);
/// The same, while `traceAllMode` is set, for a procedure that is about to run, unless it can't be.
void instrumentOnEntry(DAG name, DAG procedure);

/// The trace vector of `procedure` if it is traced, or 0; and its row of three numbers, from 0.
DAG traceVectorShown(DAG name, DAG procedure);
const std::int32_t* traceRow(DAG vector, std::int32_t row);

/// At the end of a run with `traceAllMode`: stores the trace vectors of library procedures with these. A failure is a
/// warning: "trace information could not be saved".
void SaveTraceInformation();

namespace builtin {
/// TRACE(v, k, S).
DAG TRACE(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
