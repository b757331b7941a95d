#pragma once
// Type checking: does an expression match a type?
//
// A type is an ordinary object. A built-in name tests by the table of type_names.h, another name by the
// procedure or type that the library holds under `type/` and the name; a set is a choice; a list, an
// equation, a power and so on match part by part; a call is a structured type (structured_types.cpp);
// numbers and strings match themselves.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// True when `e` matches the type `t`. Errors: "testing against an invalid type", "type `%1` does not
/// exist", "result from type `%1` must be true or false", "too many patterns for typematch".
bool type(DAG e, DAG t);
/// True when `e` or a part of it matches `t`. Part means what the object is stored with: terms and
/// coefficients of a sum, head and arguments of a call, a procedure's body.
bool hastype(DAG e, DAG t);

namespace builtin {
/// The built-ins. `typeBuiltin` evaluates its arguments itself: without a type the answer is `false`.
DAG type(const BuiltinCall& call);
DAG hastype(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
