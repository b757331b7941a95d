#pragma once
// `debugopts`: the one built-in through which the dialogue, and a person, drive the debugger.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel::builtin {

/// debugopts(option, ...), each a name or name = value; the values asked for, in order. The condition of a break point
/// stays as it is written. Errors: "invalid argument for debugopts", "unrecognized option name for debugopts", and
/// those of each option.
DAG debugopts(const BuiltinCall& call);

}  // namespace korel::builtin
