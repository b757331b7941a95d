#include "eval/statements/control_builtins.h"

#include <cstdio>

#include "debug/debugger.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "eval/statements/statements.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "session/driver.h"
#include "session/reset_hooks.h"
#include "store/constants.h"
#include "store/long_string.h"
#include "store/names.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"
#include "text/read/source.h"

namespace korel {

// ---- jumps

DAG builtin::RETURN_(const BuiltinCall& call) { jumpOutWith(jumpReturn, singleMember(call.arguments)); }

DAG builtin::goto_(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  jumpOutWith(jumpReturn, unevaluatedCall(call));
}

// ---- failures

DAG builtin::ERROR_(const BuiltinCall& call) {
  // With an attribute, an error of the kernel's own that has waited until its trap runs.
  if (lengthOf(call.form) == 4 && argumentCount(call) != 0 && isTag(call.arguments[1], STRING))
    raiseKernelException(textOf(call.arguments[1]), &call.arguments[1] + 1, static_cast<int>(argumentCount(call)) - 1);
  KorelException(argumentCount(call) == 0 ? naminstall("") : call.arguments);
}

DAG builtin::traperror(const BuiltinCall& call) {
  DAG value = korel::traperror(singleMember(call.arguments));
  // Special errors go on: they cannot be trapped.
  if (SpecialError != noSpecialError) {
    EnterDebugger();
    jumpOut(jumpError);
  }
  return value;
}

namespace {

// The text has a mark for each parameter.
[[noreturn]] void raiseAssertion(DAG parameters) {
  char* text = AppendStringToString(NewLongString(), "assertion failed");
  Word count = memberCount(parameters);
  for (Word k = 1; k <= count; ++k) {
    char mark[16];
    std::snprintf(mark, sizeof mark, ", %%%u", static_cast<unsigned>(k));
    text = AppendStringToString(text, mark);
  }
  DAG exception = newl2(count + 2, EXPSEQ);
  exception[1] = StringToMString(text);
  for (Word k = 1; k <= count; ++k) exception[k + 1] = parameters[k];
  SpecialError = assertionFailed;
  KorelException(exception);
}

}  // namespace

DAG builtin::ASSERT(const BuiltinCall& call) {
  if (optASSERT == 0) return null;
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  DAG condition = evalbool(singleMember(simpl(korel::eval(call.arguments[1]))));
  if (condition == ini("true")) return null;
  if (condition != ini("false")) KernelException("first argument of ASSERT should evaluate to true/false");
  DAG parameters = n > 1 ? simpl(korel::eval(copysub(call.arguments, 1, n - 1))) : null;
  raiseAssertion(parameters);
}

// ---- the end, and what a text says

DAG builtin::quit(const BuiltinCall& call) {
  Word n = argumentCount(call);
  DAG status = cons0;
  if (n > 1) wrongParameters(call);
  if (n == 1) {
    status = call.arguments[1];
    if (!isImmediate(status) || immediateValue(status) < 0 || immediateValue(status) > 255)
      KernelException("argument to `%1` must be from 0 to 255", call.self);
  }
  runHooks(HookMoment::stop);
  sendstatus();
  return switch2(newCall(call.self, {status}));
}

DAG builtin::parse(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0 || !isText(call.arguments[1])) wrongParameters(call);
  bool statement = false, terminator = true;
  for (Word i = 2; i <= n; ++i) {
    DAG option = call.arguments[i];
    if (isName(option) && hasText(option, "statement")) statement = true;
    else if (isName(option) && hasText(option, "nosemicolon")) terminator = false;
    else wrongParameters(call);
  }
  DAG parsed = parsestring(textOf(call.arguments[1]), terminator);
  if (!parsed) return null;
  DAG x = nerintokorel(parsed);
  bool isStatement = isAmong(x, statementTags);
  if (statement) return evalstat(x, modeParse);
  if (isStatement) KernelException("invalid expression");
  return simpl(evparloc(x));
}

}  // namespace korel
