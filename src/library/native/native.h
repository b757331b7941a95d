#pragma once
// Native library procedures: procedures of the library whose work a function of this tree does.
//
// In the library such a procedure is an ordinary one, with parameters, types and a description, whose body calls the
// kernel's procedure `kernel/native`:
//
//   zip := proc(f, a::list, b::list) description "..."; `kernel/native`("zip", args) end proc:
//
// So it is found on first use, prints, saves and reads like any other, and a definition of the user's takes its
// place. The name is looked up in one table (native.def) at each call, which costs some ten nanoseconds.
// docs/native.md tells how to add one.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// A native function is given the evaluated arguments behind the name, in `arguments`, and the name of the procedure
/// that calls it as `self`. It answers with a value, simplified or not, or with `unevaluatedNative` for the call
/// as it stands, or shorter with 0. Arguments that its procedure's parameters don't check, it checks itself.
using NativeFunction = DAG (*)(const BuiltinCall& call);
/// 'self(arguments)': the call that stays.
DAG unevaluatedNative(const BuiltinCall& call);
/// What becomes of a call whose arguments aren't all of these types. It stays when those that are not may become
/// numbers later: names, calls, expressions with them. Else, and for too many or missing ones, an error tells what is
/// expected.
DAG openCall(const BuiltinCall& call, const DAG* types, Word count);
/// The same for one argument.
DAG openIntegerCall(const BuiltinCall& call, const char* type);

/// The function behind a procedure whose whole body is `kernel/native`("name", args), or null: within the frame of the
/// call the function runs at once, on the arguments of the frame, which need not be simplified as a sequence.
NativeFunction nativeBody(DAG procedure);
/// How a procedure without parameter types, locals and options whose whole body is `kernel/native`("name", args) may be
/// called without a frame. Only some functions are meant for that (native.cpp lists them).
enum class DirectCalls : unsigned char {
  none,
  pure,   // a function of its arguments, whose errors name the procedure: nobody misses the frame
  acting  // it reads or writes; an error in it makes the frame (frame/errors.h)
};
struct DirectNative {
  NativeFunction function = nullptr;
  DirectCalls calls = DirectCalls::none;
};
/// The function behind such a procedure, or null.
/// Most calls of `sin` and its like stand as they are, in each evaluation of what they are part of.
DirectNative directNative(DAG procedure);

/// The number that stands as the body of `kernel/native`, beside those of the table of built-ins.
constexpr int nativeBuiltin = 1000;
/// Gives the name its procedure; part of the start.
void initializeNative();

namespace builtin {
/// `kernel/native`(name, arguments...). Errors: "string expected for the name of a native procedure", "there is no
/// native procedure `%1`".
DAG native(const BuiltinCall& call);
}  // namespace builtin

namespace native {
#define KOREL_NATIVE(name, function) DAG function(const BuiltinCall& call);
#include "library/native/native.def"
#undef KOREL_NATIVE
}  // namespace native

}  // namespace korel
