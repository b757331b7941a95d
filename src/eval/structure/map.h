#pragma once
// A function applied to each operand, in the view of `op`: `map`, and the walk that `select` and
// `remove` share with it.
//
// The original is never touched: results go into a copy, which is simplified at the end. In long lists
// the collector gets its turn between two calls.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// What is done with one operand; `state` is the caller's.
using OperandWorker = DAG (*)(DAG operand, void* state);

/// How a walk over operands differs between its callers.
struct OperandWalk {
  OperandWorker worker;
  void* state;
  bool drops;              // a result of `null` leaves the sum, product or table; in `map` it is a value
  const char* rtableText;  // the failure for an rtable, with its name as parameter
};

/// `x` with each operand replaced by the worker's result; numbers, names, procedures and their likes are
/// one operand. Errors: "procs, params, locals, lexicals, and modules cannot be mapped", the rtable
/// text, "invalid map onto ZPPOLY", and what the worker raises.
DAG MapFunction(const OperandWalk& walk, DAG x);

/// The text for the tags that no walk over operands takes.
[[noreturn]] void cannotBeMapped();
/// `x` is one operand for these walks.
bool isMappedWhole(DAG x);

/// The value of the call f(x, extra...), or of f(y, x, extra...) when `y` is not 0. x is a value and not
/// evaluated again; `extra` (an EXPSEQ) is, in each call.
DAG applyTo(DAG f, DAG y, DAG x, DAG extra);

namespace builtin {
/// map(f, x, extra...), map2(f, y, x, extra...).
DAG map(const BuiltinCall& call);
DAG map2(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
