#pragma once
// Evaluated arguments in a sequence that is not entered among the simplified objects.
//
// Most calls look at their arguments one by one, and the sequence dies with the call. Looking for its
// like, and entering it, would cost more than many a call does. Whoever keeps the sequence, or compares
// it by its word, passes it through `simpl` first, as any other new object; the members are simplified.

#include "eval/evaluate/operand.h"
#include "eval/simplify/simplify.h"
#include "store/dag.h"
#include "store/objects.h"

namespace korel {

struct LooseArguments {
  DAG sequence;
  bool own;  // made here: `releaseLoose` gives it back
};

/// A fresh copy of an EXPSEQ, for the most part of one or two members.
inline DAG looseCopy(DAG a) {
  Word n = lengthOf(a);
  DAG copy = news(n);
  headerWord(copy) = headerWord(a);
  for (Word i = 1; i < n; ++i) copy[i] = a[i];
  return copy;
}

/// The members of the EXPSEQ `a` evaluated and simplified, sequences spliced: `a` itself when none changes.
[[gnu::always_inline]] inline LooseArguments evalLooseArguments(DAG a) {
  DAG result = a;
  bool spliced = false;
  for (Word i = 1, n = lengthOf(a); i < n; ++i) {
    DAG argument = a[i];
    if (isImmediate(argument) || hasTag(argument, STRING)) continue;
    DAG value = simpl(evalOperand(argument));
    if (value == argument) continue;
    if (result == a) result = looseCopy(a);
    result[i] = value;
    spliced = spliced || (!isImmediate(value) && hasTag(value, EXPSEQ));
  }
  if (spliced) return {simpl(result), false};
  return {result, result != a};
}

/// The end of a call that doesn't hold on to its arguments, unless it has passed them through `simpl`.
inline void releaseLoose(const LooseArguments& arguments) {
  if (arguments.own && !isSimplified(arguments.sequence)) release(arguments.sequence, lengthOf(arguments.sequence));
}

}  // namespace korel
