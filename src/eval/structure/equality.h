#pragma once
// Deep equality of what is not unique: tables, procedures and `try` statements.
//
// Simplified objects are equal when they are one object. These are not shared even when alike, and are
// compared by what they hold.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The same structure and the same entries; of a procedure, field by field.
bool Equal(DAG a, DAG b);
/// The same shape: of tables the indexing function and the bounds.
bool EqualStructure(DAG a, DAG b);
/// The same contents; of algebraic objects, that `a = b` is true.
/// Error: "cannot handle tables with indexing functions".
bool EqualEntries(DAG a, DAG b);
/// The walk through procedures and statements: the same word, or the same kind with equal parts. Names and
/// other objects with raw words are one object when they are equal.
bool deeplyEqual(DAG a, DAG b);

namespace builtin {
/// EqualEntries(a, b), EqualStructure(a, b): a name stands for the table or procedure that it holds.
DAG EqualEntries(const BuiltinCall& call);
DAG EqualStructure(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
