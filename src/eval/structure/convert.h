#pragma once
// Conversions: each form is a procedure of the library.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

namespace builtin {
/// convert(x, form, extra...): the value of `convert/form`(x, extra...). Error: "%1%2: missing system
/// function" when there is none.
DAG convert(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
