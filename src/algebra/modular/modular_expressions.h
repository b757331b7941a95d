#pragma once
// Expressions modulo an integer: the built-ins `modp` and `mods`, and the operator `mod`, which is one of them by the
// environment variable of that name.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// x with its numbers reduced modulo m > 0, to 0 .. m-1 or, where `symmetric`, to (-m/2, m/2].
///
/// Calls of functions go to the library procedure `mod/f` with the modulus as last argument, and stay where there is
/// none. Errors: "invalid argument for modp or mods", "the modular inverse does not exist".
DAG mod(DAG x, DAG m, bool symmetric);

namespace builtin {
/// modp(x, m), mods(x, m): while they run, `mod` means the same.
DAG modp(const BuiltinCall& call);
DAG mods(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
