#pragma once
// Procedures and modules: from the parser's raw objects to their final form, and running definitions.
//
// When `simpl` meets a raw PROC, the names of its body become positions, once: PARAM n, LOCAL n, or
// LEXICAL n for a name of an enclosing procedure. Assigned names without a declaration become locals,
// with a warning. A running procedure then reads its frame by number.

#include "store/dag.h"

namespace korel {

/// One procedure or module definition that is being simplified, and the one around it.
struct ProcedureRecord {
  DAG procedure;
  ProcedureRecord* link;
};
extern ProcedureRecord* procSimplStack;
/// The name that an assignment is about to give to the object being simplified, or 0.
extern DAG assignedProcName;

// ---- scoping (scoping.cpp)
/// Adds lexical pairs to `proc` for the names of enclosing scopes that `x` uses.
void ScopeVariables(DAG x, DAG proc);
/// Appends the names that `statement` assigns without a declaration to the locals of `proc`.
void DetermLocals(DAG statement, DAG proc, DAG nameForMessages, DAG bindings);
/// Where `name` is declared in `proc`: PARAM, LOCAL or LEXICAL, or the name itself.
DAG lookupDeclaredName(DAG name, DAG proc);
/// The reference for `name` in the scopes outside, the name itself when it is global there, or 0.
DAG searchEnclosingScopes(ProcedureRecord* scope, DAG name);
/// Adds the pair (name, binding) to the lexical table of `proc`; gives the LEXICAL for it.
DAG addLexicalPair(DAG proc, DAG name, DAG binding);
/// The LEXICAL of `proc` for `binding`, with a new pair unless there is one.
DAG lexicalFor(DAG proc, DAG name, DAG binding);

/// `x` with declared names replaced by PARAM, LOCAL or LEXICAL, in copies where it must.
DAG simplfnc(DAG x, DAG proc, DAG bindings);

/// `declaration` without its type.
inline DAG declaredName(DAG declaration) {
  return !isImmediate(declaration) && hasTag(declaration, DCOLON) ? declaration[1] : declaration;
}
/// True when option `name` is among the options of a PROC or MODDEF.
bool hasOption(DAG procedure, DAG name);
/// True when sequence `s` has `x` as a member.
bool hasMember(DAG s, DAG x);

// ---- modules
DAG EvaluateModuleDefinition(DAG definition, DAG name);
void AddModuleToAllModules(DAG module);
void UnloadModules();
void RunLoadFunction(DAG module, const char* kind);
/// The export instance of `name`, or 0.
DAG exportInstance(DAG module, DAG name);
/// The same. Errors: "module does not export `%1`" and its named form.
DAG MemberInstance(DAG module, DAG name);
/// The value of `modulename = value` among attributes, or 0.
DAG ModuleNameAttr(DAG attributes);

/// True for an object of the tag, or a name whose stored value is one.
bool isNamed(DAG x, Tag tag);
inline bool NAMED_PROC(DAG x) { return isNamed(x, PROC); }
inline bool NAMED_TABLE(DAG x) { return isNamed(x, TABLE); }
inline bool NAMED_RTABLE(DAG x) { return isNamed(x, RTABLE); }
inline bool NAMED_MODULE(DAG x) { return isNamed(x, MODULE); }
/// A table of the array sort: one with bounds.
bool NAMED_ARRAY(DAG x);

}  // namespace korel
