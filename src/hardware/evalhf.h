#pragma once
// `evalhf`: expressions and procedures run entirely in the machine's doubles, without building objects.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The double that `x` comes to, which may be a reference (hardware_value.h). Errors: those of what cannot run here,
/// as "unable to evaluate expression to hardware floats".
double fevalhf(DAG x);
/// The same as an expression: a float, an array or a procedure, simplified.
DAG evalhf(DAG x);

namespace builtin {
/// evalhf(x), its argument as it stands. The parts of a COMPLEX are evaluated one by one.
DAG evalhf(const BuiltinCall& call);
/// hfarray(ranges..., values): an array of doubles in the order of C.
DAG hfarray(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
