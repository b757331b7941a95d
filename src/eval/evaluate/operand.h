#pragma once
// The common operands read in place: immediates, locals and parameters of the running frame.
//
// Most operands of arithmetic, comparisons and calls are one of these, and `eval` on them is a look into
// the frame. The reading here avoids its call and its dispatch; whatever is not plain goes to `eval`
// (bench/programs/fibonacci.krl, loops.krl).

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "frame/environment.h"
#include "store/object_fields.h"

namespace korel {

/// What stands in the running frame for `x`, of the tag LOCAL or LEXICAL: the name instance, in most cases; 0 when
/// `x` is of another tag or refers beyond the frame.
[[gnu::always_inline]] inline DAG frameInstance(DAG x) {
  const Frame& frame = *Environment->frame;
  const Word n = rawField(x, 1);
  switch (tagOf(x)) {
    case LOCAL: return n - 1 < lengthOf(frame.locals) - 1 ? frame.locals[n] : DAG();
    case LEXICAL:
      // Captured parameters have numbers below 0.
      if (n - 1 >= maxLength || frame.proc == null || 2 * n >= lengthOf(lexicalsOf(frame.proc))) return DAG();
      return lexicalsOf(frame.proc)[2 * n];
    default: return DAG();
  }
}

/// Value of the LOCAL, PARAM or captured local `x` when that is stored as it evaluates; 0 when `eval` must
/// decide.
[[gnu::always_inline]] inline DAG plainValue(DAG x) {
  if (tagOf(x) == PARAM) {
    // Numbers below 1 are `nargs`, `args` and `procname`; as unsigned ones they are out of range.
    DAG arguments = Environment->frame->args;
    const Word n = rawField(x, 1);
    return n - 1 < lengthOf(arguments) - 1 ? arguments[n] : DAG();
  }
  DAG name = frameInstance(x);
  if (!isObject(name) || !hasTag(name, NAME)) return DAG();
  DAG value = name[1];
  if (isImmediate(value)) return value;
  // A procedure or table hides behind its name.
  return value && !hasTag(value, PROC) && !hasTag(value, TABLE) ? value : DAG();
}
/// A tag that `plainValue` reads, one of `frameReferenceTags`. A comparison of neighbours takes less than the set
/// (bench/programs/long_loop.krl).
inline bool isFrameReference(Tag tag) { return tag == LOCAL || tag == PARAM || tag == LEXICAL; }

/// The value of the NAME `x` when that is a small integer or a text, which evaluates to itself; 0 when `eval` must
/// decide (bench/files.sh, lines of a file).
[[gnu::always_inline]] inline DAG constantOfName(DAG x) {
  DAG value = x[1];
  if (!value || !(isImmediate(value) || hasTag(value, STRING))) return DAG();
  return isEnvironmentName(x) || (controlWord(x) & deferredBit) != 0 ? DAG() : value;
}

/// `eval(x)`.
[[gnu::always_inline]] inline DAG evalOperand(DAG x) {
  if (isImmediate(x)) return x;
  if (isFrameReference(tagOf(x)))
    if (DAG value = plainValue(x)) return value;
  return eval(x);
}

}  // namespace korel
