#pragma once
// Names and sides: joined, listed, and bound; the two sides of a relation; the exports of a module.

#include "frame/builtin_call.h"

namespace korel::builtin {

/// cat(x...): names, strings and integers joined to a name, or a string when the first is one.
DAG cat(const BuiltinCall& call);
/// The operator `||` as a procedure: sides that are no texts are kept.
DAG catenate(const BuiltinCall& call);
/// anames(), anames(type), anames(environment): names with a value, in the order of the name table.
DAG anames(const BuiltinCall& call);
/// unames(): names without one.
DAG unames(const BuiltinCall& call);
DAG bind(const BuiltinCall& call);
DAG unbind(const BuiltinCall& call);
/// The sides of a relation, range or `::`.
DAG lhs(const BuiltinCall& call);
DAG rhs(const BuiltinCall& call);
/// exports(module): fresh global names of that spelling.
DAG exports(const BuiltinCall& call);

}  // namespace korel::builtin
