#pragma once
// Replacement of whole subexpressions, found by their word.
//
// All equations apply at once, to the expression as it was: a replacement is not looked at again. What
// doesn't change is shared with the original, and a shared part is replaced once. Operands here are
// those of storage, so that 2*b is no part of a + 2*b, and numbers, names and their likes have none.

#include "frame/builtin_call.h"
#include "store/dag.h"
#include "store/reference_fields.h"

namespace korel {

/// `x` with the left sides of `equations` (one EQUATION, or an EXPSEQ) replaced, simplified but not
/// evaluated. `x` itself when nothing matches. Errors: "equations expected in subs", "invalid
/// substitution in proc".
DAG subs(DAG equations, DAG x);
/// The worker, `equations` being an EXPSEQ of EQUATION: what changes in a simplified object is
/// simplified on the way up.
DAG subs1(DAG equations, DAG x);
/// The same without simplification, but for the procedures in `x` that are already in their final form:
/// for raw objects, and for callers that simplify in their own way.
DAG substituteInCopy(DAG equations, DAG x);

/// A substitution that is under way; and those `fields` of `x` as it leaves them, in a copy when one changes: for
/// kinds of objects with a rule of their own (kinds.h).
struct Substitution;
DAG substituteFields(Substitution& substitution, DAG x, const ReferenceFields& fields);
/// The same for one part, as the walk leaves it.
DAG substitutePart(Substitution& substitution, DAG part);

/// True when `after` can stand where `before` stood in a declaration of a procedure: a name for a name,
/// a string for a string, sides alike in a typed name or an option with a value.
bool isSameDeclaration(DAG before, DAG after);

namespace builtin {
/// subs(e1, e2, ..., x): equations, or lists and sets of them.
DAG subs(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
