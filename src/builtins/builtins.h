#pragma once
// The built-in procedures: one table, in number order.
//
// A built-in is a plain function named as the language names it, declared in the header of its
// subject. It is given its arguments as an EXPSEQ, as its row says, and `self`, the name it was called by.
// It answers with its value, or with `unevaluatedCall` when the call stays as it is.

#include <cstdint>

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// How the arguments reach a built-in.
enum class Arguments : std::uint8_t {
  simplified,   // evaluated, the sequence simplified as well
  members,      // evaluated, in a sequence that only its members are simplified of: nothing may keep it
  unevaluated,  // as they stand
  neverCalled,  // the number has no operation, for good
};
struct Builtin {
  const char* name;
  Arguments arguments;
  BuiltinFunction function;  // null: the operation isn't there
};
/// Row of built-in `number` (78 to 257).
const Builtin& builtinRow(int number);

/// Runs built-in `number` on the call `form`, whose arguments are not yet evaluated.
DAG callBuiltin(int number, DAG form, DAG self);

}  // namespace korel
