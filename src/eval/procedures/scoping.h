#pragma once
// Scoping: which names of a procedure's body are its own, which belong to a procedure around it, and which
// become implicit locals.
//
// When `simpl` meets a raw PROC or MODDEF, the names of its body become positions, once: PARAM n, LOCAL n, or
// LEXICAL n for a name of an enclosing procedure. Assigned names without a declaration become locals, with a
// warning. A running procedure then reads its frame by number.

#include "store/dag.h"

namespace korel {

/// One procedure or module definition that is being simplified, and the one around it.
struct ProcedureRecord {
  DAG procedure;
  ProcedureRecord* link;
};
extern ProcedureRecord* procSimplStack;

/// `declaration` without its type.
inline DAG declaredName(DAG declaration) { return isTag(declaration, DCOLON) ? declaration[1] : declaration; }

/// Adds lexical pairs to `proc` for the names of enclosing scopes that `x` uses.
void ScopeVariables(DAG x, DAG proc);
/// Appends the names that `statement` assigns without a declaration to the locals of `proc`. Names that `bindings`,
/// an EXPSEQ of equations, replaces are left out.
void DetermLocals(DAG statement, DAG proc, DAG nameForMessages, DAG bindings);
/// `x` with declared names replaced by PARAM, LOCAL or LEXICAL, in copies where it must.
DAG simplfnc(DAG x, DAG proc, DAG bindings);

/// Where `name` is declared in `proc`: PARAM, LOCAL or LEXICAL, or the name itself.
DAG lookupDeclaredName(DAG name, DAG proc);
/// Whether `proc` declares `name`, as global or otherwise.
bool isDeclaredIn(DAG proc, DAG name);
/// Adds the pair (name, binding) to the lexical table of `proc`; gives the LEXICAL for it.
DAG addLexicalPair(DAG proc, DAG name, DAG binding);
/// The LEXICAL of `proc` for `binding`, with a new pair unless there is one.
DAG lexicalFor(DAG proc, DAG name, DAG binding);

}  // namespace korel
