#pragma once
// Does an expression hold another one?
//
// The search goes over the parts that storage holds (part_walk.h), and over coefficients and exponents
// only where a number is sought. It evaluates nothing, and raises no error; those for several objects may
// be ended by an interrupt.

#include "eval/walk/part_walk.h"
#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// `y` occurs in `x`, by word. A single pair, as 2*b, also occurs as a pair of a longer sum or product,
/// and a number as a coefficient or exponent.
bool has(DAG x, DAG y);
/// `y`, or a member of `y` when that is an EXPSEQ, LIST or SET, occurs in `x`.
bool hasany(DAG x, DAG y);
/// The same for the left sides of `equations`, an EXPSEQ of EQUATION.
bool hasLeftSide(DAG x, DAG equations);
/// `has`, but not inside of procedures, module definitions, tables and quotes.
bool hasExceptInPROCorUNEVAL(DAG x, DAG y);
/// `has`, but of an indexed name only the name is searched, not the indices.
bool hasOutsideIndices(DAG x, DAG y);
/// `x` holds an object with this tag; coefficients and exponents count.
bool hasid(DAG x, Tag tag);
/// The same for a float of either kind.
bool hasfloat(DAG x);
/// `x` holds a parameter, local or lexical reference.
bool hasparloc(DAG x);
/// The same outside of the procedures, module definitions and tables in `x`.
bool hasparlocExceptInPROC(DAG x);
/// `x` holds what a frame gives a meaning: such a reference, a member, a procedure or module definition, or
/// one of the names %, %% and %%%.
bool refersToFrame(DAG x);
/// `x` holds a call of `head`.
bool hasCallTo(DAG x, DAG head);

namespace builtin {
/// has(x, y): y, or a member of a list or set y.
DAG has(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
