#pragma once
// The common operands read in place: immediates, locals and parameters of the running frame.
//
// Most operands of arithmetic, comparisons and calls are one of these, and `eval` on them is a look into
// the frame. The reading here avoids its call and its dispatch; whatever is not plain goes to `eval`
// (bench/programs/fibonacci.krl, loops.krl).

#include "eval/evaluate.h"
#include "frame/environment.h"
#include "store/constants.h"
#include "store/dag.h"

namespace korel {

/// Value of the LOCAL, PARAM or captured local `x` when that is stored as it evaluates; 0 when `eval` must
/// decide.
[[gnu::always_inline]] inline DAG plainValue(DAG x) {
  const Frame& frame = *Environment->frame;
  Word n = rawField(x, 1);
  DAG name;
  switch (tagOf(x)) {
    case PARAM:
      // Numbers below 1 are `nargs`, `args` and `procname`; as unsigned ones they are out of range.
      return n - 1 < lengthOf(frame.args) - 1 ? frame.args[n] : DAG();
    case LOCAL:
      if (n - 1 >= lengthOf(frame.locals) - 1) return DAG();
      name = frame.locals[n];
      break;
    case LEXICAL:
      // Captured parameters have numbers below 0.
      if (n - 1 >= maxLength || frame.proc == null || 2 * n >= lengthOf(frame.proc[8])) return DAG();
      name = frame.proc[8][2 * n];
      break;
    default: return DAG();
  }
  if (isImmediate(name) || !hasTag(name, NAME)) return DAG();
  DAG value = name[1];
  if (isImmediate(value)) return value;
  // A procedure or table hides behind its name.
  return value && !hasTag(value, PROC) && !hasTag(value, TABLE) ? value : DAG();
}
/// Whether `x` is of a tag that `plainValue` reads.
inline bool isFrameReference(Tag tag) { return tag == LOCAL || tag == PARAM || tag == LEXICAL; }

/// `eval(x)`.
[[gnu::always_inline]] inline DAG evalOperand(DAG x) {
  if (isImmediate(x)) return x;
  if (isFrameReference(tagOf(x)))
    if (DAG value = plainValue(x)) return value;
  return eval(x);
}

}  // namespace korel
