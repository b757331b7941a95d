#pragma once
// The debugger, which is a procedure of the library: how a program asks for it.

#include "frame/builtin_call.h"

namespace korel::builtin {

/// DEBUG(...): the debugger stops here at top level, inside a procedure at its next statement.
DAG DEBUG_(const BuiltinCall& call);

}  // namespace korel::builtin
