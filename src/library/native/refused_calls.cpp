// Errors that helpers of the library raise in the name of the procedure that a person called, and calls that stay since
// their operands may become numbers later.

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/types/types.h"
#include "frame/errors.h"
#include "library/native/native.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

/// A call, an expression with a name that isn't a constant, or a list with one of these: it may become a number.
bool isOpen(DAG x) {
  if (isTag(x, LIST)) {
    for (Word i = 1; i < lengthOf(x[1]); ++i)
      if (isOpen(x[1][i])) return true;
    return false;
  }
  return isTag(x, FUNCTION) || (type(x, ini("algebraic")) && !type(x, ini("constant")));
}

/// The name of parameter i of the procedure, or 0.
DAG parameterName(DAG procedure, Word i) {
  DAG value = isName(procedure) ? mvalue(procedure) : procedure;
  if (!isTag(value, PROC) || i >= lengthOf(paramsOf(value))) return DAG();
  DAG declared = paramsOf(value)[i];
  return isTag(declared, DCOLON) ? declared[1] : declared;
}

[[noreturn]] void refuseKind(DAG procedure, Word i, DAG kind, DAG argument) {
  DAG position = immediate(static_cast<std::int32_t>(i));
  if (DAG name = parameterName(procedure, i))
    KernelException("%1 expects its %-2 argument, %3, to be of type %4, but received %5", procedure, position, name,
                    kind, argument);
  KernelException("%1 expects its %-2 argument to be of type %3, but received %4", procedure, position, kind, argument);
}

}  // namespace

DAG openCall(const BuiltinCall& call, const DAG* kinds, Word count) {
  const Word given = argumentCount(call);
  if (given > count && count == 1)
    KernelException("%1 expects one argument, but received %2", call.self, immediate(static_cast<std::int32_t>(given)));
  if (given > count)
    KernelException("%1 expects at most %2 arguments, but received %3", call.self,
                    immediate(static_cast<std::int32_t>(count)), immediate(static_cast<std::int32_t>(given)));
  bool open = false;
  for (Word i = 1; i <= given; ++i) {
    DAG x = call.arguments[i];
    if (type(x, kinds[i - 1])) continue;
    if (!isOpen(x)) refuseKind(call.self, i, kinds[i - 1], x);
    open = true;
  }
  if (open) return simpl(new3(FUNCTION, call.self, call.arguments));
  KernelException("%1 uses a %-2 argument, %3, which is missing", call.self,
                  immediate(static_cast<std::int32_t>(given + 1)), parameterName(call.self, given + 1));
}

DAG openIntegerCall(const BuiltinCall& call, const char* kind) {
  DAG only = naminstall(kind);
  return openCall(call, &only, 1);
}

// refuse(name, message, parameter, ...): the error `message` as raised by the procedure of that name.
DAG native::refuse(const BuiltinCall& call) {
  if (argumentCount(call) < 2 || !isName(call.arguments[1])) wrongParameters(call);
  KorelExceptionOf(call.arguments[1], copydel(call.arguments, 0, 1));
}

// opencall([type, ...], argument, ...): what becomes of a call whose arguments aren't all of these types (openCall).
DAG native::opencall(const BuiltinCall& call) {
  if (argumentCount(call) < 1 || !isTag(call.arguments[1], LIST)) wrongParameters(call);
  DAG kinds = call.arguments[1][1];
  BuiltinCall rest = call;
  rest.arguments = simpl(copydel(call.arguments, 0, 1));
  return openCall(rest, &kinds[1], lengthOf(kinds) - 1);
}

}  // namespace korel
