#include "numbers/events/numeric_events.h"

#include <cassert>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

int numericEventsEnabled = 1;

namespace {

// In code order; the index of the standard name is looked up while compiling.
struct EventRow {
  StandardName name;
  const char* error;  // one text everywhere, which a `catch` can name
};
constexpr EventRow events[] = {
    // name                error
    {"invalid_operation", "numeric exception: invalid operation"},
    {"division_by_zero",  "numeric exception: division by zero"},
    {"overflow",          "numeric exception: overflow"},
    {"underflow",         "numeric exception: underflow"},
    {"inexact",           "numeric exception: inexact"},
    {"real_to_complex",   "numeric exception: real to complex"},
};
static_assert(std::size(events) == numericEventCount);

int statusFlags[numericEventCount + 1];

bool isEventCode(int code) { return code >= 1 && code <= numericEventCount; }

// ---- what a handler may answer in the place of a default

enum class ValueKind { exact, floating, floatComplex, exactComplex, other };

ValueKind kindOf(DAG x) {
  if (isRationalNumber(x)) return ValueKind::exact;
  if (isExactInfinite(x) || isExactUndefined(x)) return ValueKind::exact;
  if (isFloatNumber(x)) return ValueKind::floating;
  if (isComplex(x)) return isFloatComplex(x) ? ValueKind::floatComplex : ValueKind::exactComplex;
  return ValueKind::other;
}

void recordLocation() {
  DAG running = Environment->frame->procName;
  DAG location = running ? simpl(running) : null;
  updategen(location);
  ini("NumericEventLocation")[1] = location;
}

DAG callHandler(DAG handler, DAG operation, DAG x, DAG y, DAG standard) {
  DAG arguments = operation;
  if (!isSequence(operation)) {
    DAG operands = y ? newSequence({x, y}) : newSequence({x});
    arguments = newSequence({operation, new2(LIST, operands), standard});
  }
  return simpl(eval(new3(FUNCTION, handler, arguments)));
}

void enableEvents(const char*) { numericEventsEnabled = 1; }

}  // namespace

DAG NumericEventName(int code) { return isEventCode(code) ? ini(events[code - 1].name) : DAG(); }

int NumericEventCode(DAG name) {
  for (int code = 1; code <= numericEventCount; ++code)
    if (name == NumericEventName(code)) return code;
  KernelException("invalid event name: `%1`", name);
}

void SetNumericStatusFlag(int code, int value) { statusFlags[code] = value; }
int GetNumericStatusFlag(int code) { return statusFlags[code]; }

DAG GetNumericEventHandler(int code) {
  DAG handlers = environmentWord(envNumericEventHandlers);
  return handlers ? handlers[code] : ini("default");
}

void SetNumericEventHandler(int code, DAG handler) {
  if (GetNumericEventHandler(code) == handler) return;
  // The entries may be shared with the caller's frame, or with an equal sequence elsewhere: a copy
  // takes the change.
  DAG block = privateEnvironmentBlock();
  DAG handlers = CopyAlg(block[envNumericEventHandlers]);
  updategen(handler);
  handlers[code] = handler;
  block[envNumericEventHandlers] = handlers;
  updategen(handlers);
  // What `evalf` remembers may depend on the handlers.
  DAG evalfProcedure = ini("evalf")[1];
  if (!isTag(evalfProcedure, PROC)) return;
  DAG remembered = rememberOf(evalfProcedure);
  if (isTag(remembered, HASHTAB)) clearhash(remembered, false);
}

DAG TriggerNumericEvent(int code, DAG operation, DAG x, DAG y, DAG standard, bool check) {
  assert(isEventCode(code));
  if (numericEventsEnabled == 0) return standard;
  SetNumericStatusFlag(code, 1);
  recordLocation();
  DAG handler = GetNumericEventHandler(code);
  if (handler == ini("default")) {
    if (code == overflowEvent || code == underflowEvent)
      return TriggerNumericEvent(inexactEvent, operation, x, y, standard, check);
    if (isSequence(operation)) standard = operation[3];
    if (code != divisionByZero) return standard;
    if (isFloatNumber(standard) || isFloatComplex(standard)) return standard;
    // An exact value has no infinity to go on with.
    handler = ini("exception");
  }
  if (handler == ini("exception")) KernelException(events[code - 1].error);

  DAG result = callHandler(handler, operation, x, y, standard);
  if (!check) return result;
  ValueKind kind = kindOf(result);
  if (kind == ValueKind::other || kind != kindOf(standard))
    KernelException("type of value returned by handler is wrong");
  return result;
}

DAG NonEventCall1(DAG (*f)(DAG), DAG x) {
  int before = numericEventsEnabled;
  PushStateKeeper(enableEvents, nullptr);
  numericEventsEnabled = 0;
  DAG result = f(x);
  numericEventsEnabled = before;
  PopErrorProc();
  return result;
}

DAG NonEventCall2(DAG (*f)(DAG, DAG), DAG x, DAG y) {
  int before = numericEventsEnabled;
  PushStateKeeper(enableEvents, nullptr);
  numericEventsEnabled = 0;
  DAG result = f(x, y);
  numericEventsEnabled = before;
  PopErrorProc();
  return result;
}

DAG DefaultOverflow(DAG sign) { return sign == cons1 ? consfinf : consfminf; }
DAG DefaultUnderflow(DAG sign) { return sign == cons1 ? consf0 : consfm0; }
DAG Default0() { return roundedZero(); }

}  // namespace korel
