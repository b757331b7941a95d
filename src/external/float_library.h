#pragma once
// Float arithmetic by a library from outside.

#include "frame/builtin_call.h"

namespace korel::builtin {

/// MPFloat(name, arguments): attaches a float library. Error: "usage MPFloat(string,args)".
DAG MPFloat(const BuiltinCall& call);

}  // namespace korel::builtin
