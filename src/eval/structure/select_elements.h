#pragma once
// The operands that a predicate holds for: `select`, `remove`, and both in one pass.
//
// The predicate is any function that answers `true` or `false`. `type`, `has` and `hastype` are tested
// directly, without the making of a call, and a type that the tag decides by a look at the tag.

#include "frame/builtin_call.h"
#include "store/dag.h"
#include "store/tag_facts.h"

namespace korel {

/// The predicate f(x, extra...) with what is known about it.
struct Predicate {
  DAG f, extra;  // `extra` an EXPSEQ
  enum Way { call, byTag, byType, byHas, byHastype } way;
  TagSet tags;  // of `byTag`
};
/// Error: "incorrect number of extra arguments in select" for a direct test without its one argument.
Predicate makePredicate(DAG f, DAG extra);
/// Error: "selecting function must return true or false".
bool holdsFor(const Predicate& predicate, DAG x);

/// Workers of `MapFunction`: `x` when the Predicate `state` holds for it (doesn't hold), or `null`.
DAG mselect(DAG x, void* state);
DAG mremove(DAG x, void* state);
/// EXPSEQ of two: what the predicate holds for, and what it doesn't. The predicate is asked once of each
/// operand.
DAG SelectRemove(const Predicate& predicate, DAG x);

namespace builtin {
/// select(f, x, extra...), remove(f, x, extra...), selectremove(f, x, extra...).
DAG select(const BuiltinCall& call);
DAG remove(const BuiltinCall& call);
DAG selectremove(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
