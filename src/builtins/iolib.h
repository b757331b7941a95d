#pragma once
// The numbered operations of input and output, as the library's procedures call them.

#include "frame/builtin_call.h"

namespace korel::builtin {

/// iolib(n, arguments...): operation n. Error: "march is disabled" for the archive tool in secure mode.
DAG iolib(const BuiltinCall& call);

}  // namespace korel::builtin
