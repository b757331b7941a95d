#pragma once
// The simplifier: every new object goes through `simpl`, which returns the one canonical object or
// immediate for its value.
//
// Two equal simplified objects are one object, so that equality is a comparison of words. `simpl`
// overwrites the fields of what it is given unless that carries the simplified bit; objects already
// simplified return at once. Errors unwind and leave at most unsimplified objects half rewritten,
// which nobody else can see.

#include <cstdint>

#include "eval/simplify/bindings.h"
#include "store/dag.h"

namespace korel {

DAG simplifyObject(DAG x);
/// The unique canonical object of `x`.
inline DAG simpl(DAG x) {
  // Most of what comes is settled: an immediate, or simplified before (a name may be bound meanwhile).
  if (isImmediate(x) || !x || (isSimplified(x) && !bindingsEnabled)) return x;
  return simplifyObject(x);
}
/// The two steps of `prefetchUnique`, for whoever has something to do between: the first gives the key for the second.
Word prefetchBucket(DAG s);
void prefetchChain(Word key);
/// Brings on its way into the cache what `simpl` will look at to find the equal of `s`, a number or other object
/// whose fields are simplified.
inline void prefetchUnique(DAG s) { prefetchChain(prefetchBucket(s)); }
/// The unique EXPSEQ of one member. Nothing is made when there is one: calls and table entries ask for
/// the same few again and again.
DAG singleSequence(DAG member);
/// The unique integer of this value, and the unique FLOAT of a mantissa, which isn't 0, and an exponent. Nothing is
/// made when there is one either (bench/external.sh).
DAG uniqueInteger(std::int64_t value);
DAG uniqueFloat(std::int64_t mantissa, std::int32_t exponent);
/// `simpl` with name bindings on or off, put back on the way out.
DAG SimplifyMaybeBind(DAG x, bool bind);
/// A SUM of evaluated terms with all its lists added into the first, not simplified; other objects as they are. The
/// simplifier leaves lists apart that may evaluate to longer ones.
DAG withListsAdded(DAG sum);
/// Drops active bindings, as after an error.
void ResetSimplifier();
void CleanUpSimplifier();

/// The end of a case of `simpl`: the member of the table with the content of `s`, or `s` itself,
/// entered and marked as simplified.
DAG makeUnique(DAG s);

}  // namespace korel
