#pragma once
// Commands of the operating system.

#include "frame/builtin_call.h"

namespace korel::builtin {

/// system(text...): runs the joined texts by the shell; gives the exit status.
/// Errors: "system takes only arguments of type string", "system calls are disabled".
DAG system_(const BuiltinCall& call);

}  // namespace korel::builtin
