#pragma once
// The plain walk of the hardware-float evaluator: an interpreter over the same objects that `eval` reads.
//
// Every value is a double, or an object in one (hardware_value.h). `%` of a running procedure belongs to its frame. A
// `return`, `break` or `next` jumps to the innermost call or loop. The machine (machine.h) gives the same results
// from compiled code; this walk serves for what is met once, and as what the machine is compared with.

#include "hardware/hardware_frame.h"
#include "store/dag.h"

namespace korel {

/// Value of an expression or statement.
double hfeval(DAG x);
/// The same; a reference is an error: "non-numeric expression in evalhf".
double hfevalToNumeric(DAG x);
/// An array. Error: "evalhf: a variable not assigned an array is indexed".
DAG hfevalToArray(DAG x);
/// A procedure. Error: "cannot evaluate procedure in evalhf".
DAG hfevalToProc(DAG x);
/// Truth. Error: "unable to evaluate boolean expression in evalhf".
bool hfboolean(DAG x);
bool truthOfNumber(double v);
/// x::t. Error: "unsupported type `%1` in evalhf".
bool hfHasType(DAG x, DAG type);

/// A type by its name: its test; null for one that holds of every value, which is not asked for.
struct HardwareType {
  const char* name;
  bool (*test)(double v);
};
/// The row of `type`, or null.
const HardwareType* hardwareType(DAG type);

/// Value of a FUNCTION.
double hfevalFunction(DAG call);
/// Value of an IF, FOR, ASSIGN, RETURN, BREAK, NEXT or ERROR.
double hfevalStatement(DAG statement);
/// The last value of a STATSEQ, or that of one statement.
double hfstat(DAG body);
/// Moves the values of `%`, `%%` and `%%%` on.
inline double shiftDitto(double value) {
  if (HFStack == nullptr) return value;
  double* ditto = HFStack->ditto;
  ditto[2] = ditto[1];
  ditto[1] = ditto[0];
  return ditto[0] = value;
}

/// Places of the running frame's variables. Errors: "function called with fewer arguments than expected", "evalhf
/// cannot use procname or args".
double* argumentPlace(DAG param);
double* localPlace(DAG local);

/// The double of a number: an integer, RATIONAL, FLOAT, or a COMPLEX whose imaginary part is zero. Error: "evalhf:
/// result is not a number".
double hfNumber(DAG x);

}  // namespace korel
