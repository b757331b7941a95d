#pragma once
// Attributes: what an object carries beside its value.
//
// Names and strings keep them in their type field, lists, sets, floats, calls and indexed names in an
// additional last field, procedures and module definitions among their options. An attribute is part of
// the object: two objects that differ in it are different objects, except for a name, which is changed
// in place.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The attribute of `x`, or `null`. Of a procedure or definition: the options, a single one as itself.
DAG AttributesOf(DAG x);

namespace builtin {
/// attributes(x): the attribute of x, `null` for none.
DAG attributes(const BuiltinCall& call);
/// setattribute(x, a...): x with the attribute a, or without any when none is given.
/// Errors: "an Environment variable cannot be protected", "module attributes can only be queried".
DAG setattribute(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
