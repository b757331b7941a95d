#pragma once
// Numeric events: what happens when arithmetic has no ordinary result.
//
// Six events follow the exceptions of IEEE 754. Each has a sticky status flag and a handler, which is
// the name `default` (the prescribed value), the name `exception` (an error) or a procedure of the
// language. Handlers belong to the environment variables: a change ends with the procedure that made
// it. Flags live as long as the kernel.

#include "store/dag.h"

namespace korel {

enum NumericEventNumber : int {
  invalidOperation = 1,
  divisionByZero = 2,
  overflowEvent = 3,
  underflowEvent = 4,
  inexactEvent = 5,
  realToComplex = 6,
};
constexpr int numericEventCount = 6;

/// While it is 0 no event has any effect and every default is the result.
extern int numericEventsEnabled;

/// Result of `operation` on `x` and `y` (0: none) after event `code`, where `standard` is what the IEEE
/// model prescribes. With `check` a handler's value must be of the kind of `standard`. An EXPSEQ as
/// `operation` is a ready argument sequence (operation, operands, default) for the handler.
/// Errors: "numeric exception: " and the name of the event in words, "type of value returned by handler is wrong".
DAG TriggerNumericEvent(int code, DAG operation, DAG x, DAG y, DAG standard, bool check);

/// The standard name of an event, or 0.
DAG NumericEventName(int code);
/// Error: "invalid event name: `%1`".
int NumericEventCode(DAG name);

void SetNumericStatusFlag(int code, int value);
int GetNumericStatusFlag(int code);

/// Handler of `code` in the running frame: `default`, `exception` or a PROC.
DAG GetNumericEventHandler(int code);
void SetNumericEventHandler(int code, DAG handler);

/// f(x) and f(x, y) with events switched off, also when an error passes.
DAG NonEventCall1(DAG (*f)(DAG), DAG x);
DAG NonEventCall2(DAG (*f)(DAG, DAG), DAG x, DAG y);

/// Float infinity and float zero of the sign of `sign`: positive for the integer 1.
DAG DefaultOverflow(DAG sign);
DAG DefaultUnderflow(DAG sign);
/// The float zero that `Rounding` prescribes.
DAG Default0();

// ---- float arithmetic with infinities and undefined values (numbers/events/trap_tables.cpp)

/// Each gives the result of a + b, a * b, a / b, a ^ b when an operand is special, or 0: the caller
/// goes on by its ordinary path.
DAG TrapFSUM(DAG a, DAG b);
DAG TrapFPROD(DAG a, DAG b);
DAG TrapFDIV(DAG a, DAG b);
DAG TrapFPOWER(DAG a, DAG b);
/// In a SUM or PROD that holds a FLOAT, the exact special values become floats. `x`, changed in place,
/// or 0 when nothing changed (the caller goes on with what it has).
DAG TransformSEQ2F(DAG x);

}  // namespace korel
