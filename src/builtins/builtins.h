#pragma once
// The built-in procedures: one table, in number order.
//
// A built-in is a plain function named as the language names it, declared in the header of its
// subject. It is given its arguments as an EXPSEQ, as its row says, and `self`, the name it was called by.
// It answers with its value, or with `unevaluatedCall` when the call stays as it is.

#include <cstdint>

#include "store/dag.h"

namespace korel {

struct BuiltinCall {
  DAG arguments;  // EXPSEQ
  DAG self;       // the name called: a NAME, or a TABLEREF for an indexed call
  DAG form;       // the FUNCTION object, with its arguments as they stand
};
using BuiltinFunction = DAG (*)(const BuiltinCall& call);

/// How the arguments reach a built-in.
enum class Arguments : std::uint8_t {
  simplified,   // evaluated, the sequence simplified as well
  members,      // evaluated, in a sequence that only its members are simplified of: nothing may keep it
  unevaluated,  // as they stand
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

inline Word argumentCount(const BuiltinCall& call) { return lengthOf(call.arguments) - 1; }
/// The call itself, with the arguments that the built-in was given: an answer that leaves it as it is.
DAG unevaluatedCall(const BuiltinCall& call);
/// The common failure: "wrong number (or type) of parameters in function %1".
[[noreturn]] void wrongParameters(const BuiltinCall& call);

}  // namespace korel
