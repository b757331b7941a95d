#pragma once
// Calls of external code: what runs around them, and what keeps the kernel whole when they fail.
//
// While external code runs, `InExternalCall` is set: no collection takes place, so that objects which C holds stay
// where they are, and allocation is counted apart. What the call has left is put to the collector's account when it
// returns. Calls nest, by way of callbacks; each finds the static storage of its wrapper as it left it.
//
// A fault in external code is an error of the language. The handlers of the faults are installed at the first call and
// stay; a fault outside of external code goes to the handlers that were there before. They run on a stack of their
// own, so that a recursion of C that fills the ordinary one ends in its message too.

#include "frame/builtin_call.h"
#include "frame/errors.h"
#include "store/dag.h"

namespace korel {

/// Makes the static storage of a compiled wrapper known: it is a root of the collector, and nested calls of the wrapper
/// save it. `statics` is an array of MWrapperStatic (include/korelshlib.h) that ends with a null place; null: none.
/// A plain wrapper only converts: it runs no statement of the language and assigns nothing.
void registerWrapper(void* wrapper, const void* statics, bool isPlain);
/// Forgets all wrappers, before their libraries are closed.
void forgetWrappers();

/// What a procedure of `define_external` calls, read from its body once.
struct ExternalCode {
  DAG body{};
  void *wrapper = nullptr, *external = nullptr;
  bool returnsValue = false;
};

/// Calls external code, by its wrapper unless that is null, with an EXPSEQ of arguments; its value, or the empty
/// sequence when none is expected. Errors: those of the call, and those of a fault (`builtin::call_external`).
///
/// `frameless` is the call of the procedure when that has no frame, else null.
DAG CallExternal(const ExternalCode& code, DAG arguments, const FramelessCall* frameless = nullptr);

/// The code of a procedure whose wrapper is plain: nothing runs within the call that would miss the frame of one
/// (bench/external.sh). Null for any other, and in secure mode.
const ExternalCode* framelessCode(DAG procedure);

/// No external code is running any more: after a jump to the top.
void resetExternalCalls();
/// Part of the start.
void initializeExternalCalls();

namespace builtin {
/// call_external(wrapper, external, returnsValue, args): what the body of a procedure of `define_external` consists of.
/// Errors: "wrapper handle, external handle, and return flag expected", "`args` expected for fourth parameter of
/// call_external"; for a fault "Segmentation Violation occurred in external routine", "Bus Error occurred in external
/// routine", "Fatal Error occurred in external routine"; in secure mode "system calls are disabled".
DAG call_external(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
