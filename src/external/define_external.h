#pragma once
// Binding a C function as a procedure of the language.

#include "frame/builtin_call.h"

namespace korel::builtin {

/// define_external(name, parameters and options...): a procedure that calls the function. docs/external.md tells the
/// forms. Errors: "function name expected", "no library file specified", "unknown option %1", "unknown option name %1",
/// "invalid library name %1", "invalid library value %1"; those of the description (external/type_tree.h), of the
/// compiler (external/compile_module.h) and of the libraries (external/libraries.h).
DAG define_external(const BuiltinCall& call);

}  // namespace korel::builtin
