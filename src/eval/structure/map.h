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

struct OperandWalk {
  OperandWorker worker;
  void* state;
  /// In a selection a result of `null` leaves the sum, product or table; in a mapping it is a value.
  enum Purpose { mapping, selection } purpose;

  DAG operator()(DAG operand) const { return worker(operand, state); }
};

/// `x` with each operand replaced by the worker's result; numbers, names, procedures and their likes are
/// one operand. Errors: "procs, params, locals, lexicals, and modules cannot be mapped", those of the kind
/// (kinds.h), and what the worker raises.
DAG MapFunction(const OperandWalk& walk, DAG x);

/// What kinds build their walks of: the members of an EXPSEQ, simplified and without what became empty; and
/// fields of `x` in a raw copy, words of 0 left alone.
DAG mapSequence(const OperandWalk& walk, DAG sequence);
DAG mapFields(const OperandWalk& walk, DAG x, Word from, Word end, Word step);

/// The value of the call f(x, extra...), or of f(y, x, extra...) when `y` is not 0. x is a value and not
/// evaluated again; `extra` (an EXPSEQ) is, in each call.
DAG applyTo(DAG f, DAG y, DAG x, DAG extra);

namespace builtin {
/// map(f, x, extra...), map2(f, y, x, extra...).
DAG map(const BuiltinCall& call);
DAG map2(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
