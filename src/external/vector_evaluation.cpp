#include <cstdarg>

#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/named_kinds.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/statements/statements.h"
#include "external/addresses.h"
#include "external/vector_functions.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "frame/output_builtins.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/vocabulary.h"
#include "text/read/source.h"

namespace korel {

namespace vector {

// ---- memory

void* alloc(std::size_t bytes) { return newNativeBlock(bytes); }

void dispose(void* block) {
  DAG x = holderOfNative(block);
  // A simplified object is shared by all who know its value.
  if (isObject(x) && !isSimplified(x)) release(x, lengthOf(x));
}

M_BOOL allowGC(ALGEB x) {
  DAG object = holderOfNative(x);
  return isObject(object) && AllowGC(object);
}
void protectFromGC(ALGEB x) {
  DAG object = holderOfNative(x);
  if (isObject(object)) ProtectFromGC(object);
}

// ---- names

M_BOOL isName(ALGEB x) { return korel::isName(fromC(x)); }
M_BOOL isAssignedName(ALGEB reference) {
  DAG x = fromC(reference);
  return isNameOrIndexed(x) && valueOf(reference) != x;
}
M_BOOL isUnassignedName(ALGEB reference) {
  DAG x = fromC(reference);
  return isNameOrIndexed(x) && valueOf(reference) == x;
}

ALGEB assign(ALGEB name, ALGEB value) { return toC(korel::assign(fromC(name), simpl(fromC(value)))); }
ALGEB assignIndexed(ALGEB name, ALGEB value, M_INT count, const M_INT* index) {
  DAG target = simpl(new3(TABLEREF, fromC(name), indexSequence(count, index)));
  return toC(korel::assign(target, simpl(fromC(value))));
}

ALGEB toKorelName(const char* text, M_BOOL global) {
  return toC(global ? naminstall(text) : simpl(newLocalName(text)));
}

// ---- evaluation

// A name that the caller has made for this call is handed on as it stands, so that the procedure can assign to it.
namespace {

bool isLocalName(DAG x) {
  if (!korel::isName(x)) return false;
  PairAddress pair = srchname(textOf(x));
  return pair == notFound || pairValue(pair) != x;
}

}  // namespace

ALGEB evalKorelProc(ALGEB procedure, int count, ...) {
  DAG arguments = newl2(static_cast<Word>(count) + 1, EXPSEQ);
  std::va_list list;
  va_start(list, count);
  for (int i = 1; i <= count; ++i) {
    DAG x = simpl(fromC(va_arg(list, ALGEB)));
    arguments[i] = isLocalName(x) ? new2(UNEVAL, x) : x;
  }
  va_end(list);
  DAG value = simpl(eval(simpl(new3(FUNCTION, fromC(procedure), arguments))));
  updategen(value);
  return toC(value);
}

ALGEB evalKorelStatement(const char* statement) {
  DAG parsed = parsestring(statement, true);
  if (!parsed || parsed == null) return toC(null);
  DAG value = simpl(evalstat(evparloc(nerintokorel(parsed)), modeParse));
  updategen(value);
  return toC(value);
}

ALGEB simplify(ALGEB x) { return toC(simpl(fromC(x))); }

// ---- failures

void error(const char* message, ...) {
  constexpr int mostParameters = 9;
  DAG parameters[mostParameters + 1];
  const int marks = countMarks(message);
  const int count = marks < 0 || marks > mostParameters ? mostParameters : marks;
  std::va_list list;
  va_start(list, message);
  for (int i = 0; i < count && marks >= 0; ++i) parameters[i] = fromC(va_arg(list, ALGEB));
  va_end(list);
  raiseKernelException(message, parameters, marks < 0 ? 0 : count);
}

namespace {

// The function under a trap: the trap hands on one word only.
struct TrappedCall {
  ALGEB (*function)(void* data);
  void* data;
};
TrappedCall trappedCall;

DAG runTrapped(DAG) {
  TrappedCall call = trappedCall;
  return fromC(call.function(call.data));
}

}  // namespace

ALGEB extTraperror(ALGEB (*function)(void* data), void* data, M_BOOL* failed) {
  trappedCall = {function, data};
  bool hasFailed = false;
  ExternalCall* call = innermostCall;
  DAG value = KernelTrapError(runTrapped, DAG(), hasFailed);
  innermostCall = call;
  if (failed != nullptr) *failed = hasFailed;
  return toC(value);
}

ALGEB userinfo(int level, ALGEB name, const char* message) {
  DAG subject = fromC(name);
  if (!isNameOrIndexed(subject) && !isTag(subject, SET)) userror("bad userinfo name or statement");
  if (message == nullptr) userror("bad userinfo name or statement");
  DAG arguments = new4(EXPSEQ, immediate(level), subject, strinstall(message));
  return toC(builtin::userinfo({arguments, ini("userinfo"), DAG()}));
}

// ---- sequences and what has no kind of its own

M_BOOL isNULL(ALGEB x) { return isEmptySequence(fromC(x)); }
M_BOOL isProcedure(ALGEB x) { return isTag(valueOf(x), PROC); }
ALGEB toKorelNULL() { return toC(null); }
ALGEB toKorelNULLPointer() { return toC(cons0); }

ALGEB toKorelExpressionSequence(int count, ...) {
  DAG sequence = newl2(static_cast<Word>(count) + 1, EXPSEQ);
  std::va_list list;
  va_start(list, count);
  for (int i = 1; i <= count; ++i) sequence[i] = simpl(fromC(va_arg(list, ALGEB)));
  va_end(list);
  return toC(simpl(sequence));
}

M_INT numArgs(ALGEB sequence) {
  if (const ExternalCall* call = callWithBlock(sequence)) return memberCount(call->arguments);
  DAG x = fromC(sequence);
  return isSequence(x) ? memberCount(x) : 1;
}

}  // namespace vector

}  // namespace korel
