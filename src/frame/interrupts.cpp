#include "frame/interrupts.h"

#include <cstdlib>
#include <limits>
#include <sys/resource.h>

#include "debug/debugger.h"
#include "eval/evaluate/evalf.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/types/type_match.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "session/driver_state.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

// ---- interrupts

std::uint8_t interruptCounter = 0;
// Set when a question has been asked for, which a signal handler may do at any time.
volatile std::sig_atomic_t pollWanted = 0;

void pollInterruptSoon() { pollWanted = 1; }

bool askForInterrupt() {
  interruptCounter = 0;
  pollWanted = SpecialError == computationInterrupted;
  return driver.interruptCB != nullptr && driver.interruptCB(currentContext()) != 0;
}

// Statements look at `pollWanted` alone, which stays set while the error is on its way up.
void noteInterrupted() {
  SpecialError = computationInterrupted;
  pollInterruptSoon();
}

void jumpback() {
  if (interruptsWait()) return;
  noteInterrupted();
  KernelException("interrupted");
}

// ---- processor time

std::int32_t evalTimeLimit = 0;

namespace {

constexpr std::int32_t noLimit = std::numeric_limits<std::int32_t>::max();

DAG secondsAsFloat(double seconds) {
  auto thousandths = static_cast<std::int64_t>(seconds * 1000);
  return simpl(newFLOAT(simpl(NewInteger(thousandths)), immediate(-3)));
}

std::int32_t limitFrom(double seconds) {
  double hundredths = (cptime() + seconds) * 100;
  return hundredths >= noLimit ? noLimit : static_cast<std::int32_t>(hundredths);
}

}  // namespace

double cptime() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) * 1e-6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

bool isTimeExpired() { return evalTimeLimit != 0 && cptime() * 100 > evalTimeLimit; }

void checkTimeLimitInForce() {
  if (isTimeExpired()) raiseTimeExpired();
}

void raiseTimeExpired() {
  evalTimeLimit = 0;
  SpecialError = timeExpired;
  KernelException("time expired");
}

// ---- long operations

namespace {
// Some ten milliseconds; a look costs a call of the driver's handler and one of the system.
constexpr std::int64_t stepsBetweenLooks = 10000000;
}  // namespace

std::int64_t stepsToNextLook = stepsBetweenLooks;

bool mustEndOperation() {
  stepsToNextLook = stepsBetweenLooks;
  if (SpecialError != noSpecialError || collecting) return false;
  if (Environment == nullptr || Environment->jumpBuffer == nullptr) return false;
  pollInterruptSoon();
  if (TestInterrupt() && !interruptsWait()) noteInterrupted();
  else if (isTimeExpired()) SpecialError = timeExpired;
  return SpecialError != noSpecialError;
}

void endOperation() {
  if (SpecialError == timeExpired) raiseTimeExpired();
  jumpback();
  std::abort();  // it has raised an error
}

// ---- built-ins

DAG builtin::time(const BuiltinCall& call) {
  double start = argumentCount(call) == 0 ? 0.0 : cptime();
  for (Word i = 1; i < lengthOf(call.arguments); ++i) simpl(korel::eval(call.arguments[i]));
  return secondsAsFloat(cptime() - start);
}

DAG builtin::timelimit(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  if (evalTimeLimit != 0) KernelException("timelimit already active");
  clearLastError();
  DAG t = call.arguments[1];
  if (t == consm1) {
    evalTimeLimit = noLimit;
  } else {
    DAG seconds = simpl(korel::evalf(simpl(korel::eval(t))));
    if (!isNumeric(seconds)) wrongParameters(call);
    double limit = FloatValue(seconds);
    if (!(limit >= 0)) wrongParameters(call);
    evalTimeLimit = limitFrom(limit);
  }
  DAG value = korel::traperror(call.arguments[2]);
  evalTimeLimit = 0;
  if (SpecialError == timeExpired) {
    SpecialError = noSpecialError;
    ResetTypematch();
  }
  if (ini("lasterror")[1]) {
    EnterDebugger();
    jumpOut(jumpError);
  }
  return value;
}

}  // namespace korel
