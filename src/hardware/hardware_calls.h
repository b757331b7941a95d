#pragma once
// Calls of procedures in the hardware-float evaluator.

#include "hardware/hardware_frame.h"
#include "store/dag.h"

namespace korel {

/// Value of a call whose head is none of the known functions. Errors: "too many levels of recursion", "unable to
/// evaluate function `%1` in evalhf", "unable to evaluate built-in function `%1` in evalhf", "lexical scoping is not
/// supported in evalhf", "remember tables are not supported in evalhf", "evalhf: more than %1 arguments", "evalhf:
/// more than %1 locals", and those of the body.
double hfevalfunc(DAG call);

/// The procedure that `head` stands for in a call, checked for what cannot run here.
DAG calleeOf(DAG head);
/// Checks what a call of `procedure` with `count` arguments needs. Errors: those of the limits.
void checkCallLimits(DAG procedure, Word count);

/// An argument, and the table or rtable that `var` has it written back to, or 0.
struct PassedArgument {
  double value;
  DAG writeTo;
};
PassedArgument passArgument(DAG x);
/// var(x).
bool isVarForm(DAG x);
/// After a call: arrays that were passed by `var` from a table or another rtable get their elements back.
void writeBackArguments(const PassedArgument* arguments, Word count);
inline bool isWrittenBack(const PassedArgument& argument) { return static_cast<bool>(argument.writeTo); }

/// Whether procedures are compiled; the tests turn it off to compare.
extern bool hardwareCompiles;
/// Runs `procedure` in the plain walk on `arguments`, which belong to the call from now on.
double walkProcedure(DAG procedure, double* arguments, int count);

}  // namespace korel
