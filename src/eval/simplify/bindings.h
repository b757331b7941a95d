#pragma once
// Name bindings in force while objects are simplified: `use`, `bind`, and the imaginary unit.
//
// A chain of records on the native stack, each with an EXPSEQ of equations name = replacement, is
// searched when bindings are on, which they are for what the parser delivered. The outermost record is
// the global sequence that `bind` extends; its last entry is the name `I` = the imaginary unit.

#include "store/dag.h"

namespace korel {

struct BindingRecord {
  DAG equations;  // EXPSEQ of EQUATION
  BindingRecord* link;
};
extern BindingRecord* useSimplStack;
extern bool bindingsEnabled;
/// The built-in EXPSEQ of equations behind all records.
extern DAG globalBindings;

/// What `name` is bound to, followed as far as that goes, or 0. Always 0 while bindings are off.
DAG lookupBinding(DAG name);
/// All binding equations, the innermost first, as an EXPSEQ.
DAG allBindings();
/// The binding of an operator's name, or 0; one test when nothing but the imaginary unit is bound.
DAG operatorBinding(DAG operatorName);
/// True when some binding beside the imaginary unit is in force.
bool hasUserBindings();
/// The call of a binding, simplified.
DAG callBinding(DAG function, DAG a);
DAG callBinding(DAG function, DAG a, DAG b);

/// Turns the binding list of a `use` into an EXPSEQ of equations. Errors as documented in the source.
DAG expandBindings(DAG list);
/// The names that the binding list of a `use` binds, an EXPSEQ; raises no error, whatever stands in the list.
DAG boundNames(DAG list);
/// Simplified arguments of the raw call of `bind` or `unbind`: the names that are to be bound, or no longer,
/// stand for themselves.
DAG simplBindingArguments(DAG call);
/// The built-ins `bind` and `unbind`: the current list as equations.
DAG AppendToWithBindings(DAG list);
DAG RemoveFromWithBindings(DAG names);

}  // namespace korel
