#include "frame/output.h"

#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "session/driver_state.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "session/interface.h"
#include "session/resource_limits.h"
#include "numbers/integer/integer.h"
#include "store/allocator.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "eval/simplify/aliases.h"
#include "store/vocabulary.h"
#include "text/print/display.h"

namespace korel {

DriverState driver;

namespace {
/// What the client gave for the evaluation under way, or for the one that is about to begin or end.
void* currentContext() { return driver.contexts[driver.depth > 0 ? driver.depth - 1 : 0]; }
}  // namespace

DAG callResultHandler(DAG x) {
  return driver.resultCB != nullptr ? driver.resultCB(currentContext(), x) : null;
}

// ---- interrupts

std::uint8_t interruptCounter = 0;
// Set when a question has been asked for, which a signal handler may do at any time.
volatile std::sig_atomic_t pollWanted = 0;

void pollInterruptSoon() { pollWanted = 1; }

bool askForInterrupt() {
  interruptCounter = 0;
  pollWanted = 0;
  return driver.interruptCB != nullptr && driver.interruptCB(currentContext()) != 0;
}

void jumpback() {
  SpecialError = computationInterrupted;
  KernelException("interrupted");
}

// ---- the streams

namespace {

/// What happens to a stream's arguments on their way out.
enum class Preparation : std::uint8_t { none, print, lprint, result, set, redirect, unconverted };

struct StreamRow {
  const char* name;
  Preparation preparation;
};
constexpr StreamRow streamRows[] = {
    // name               arguments
    {"INTERFACE_PRINT", Preparation::print},       {"INTERFACE_LPRINT", Preparation::lprint},
    {"INTERFACE_RESULT", Preparation::result},     {"INTERFACE_SET", Preparation::set},
    {"INTERFACE_REDIRECT", Preparation::redirect}, {"INTERFACE_WARN", Preparation::unconverted},
};

Preparation preparationOf(const char* stream) {
  for (const StreamRow& row : streamRows)
    if (std::strcmp(row.name, stream) == 0) return row.preparation;
  return Preparation::none;
}

bool isCallOf(DAG x, const char* name) {
  return isObject(x) && hasTag(x, FUNCTION) && hasTag(x[1], NAME) &&
         std::strcmp(textOf(x[1]), name) == 0;
}


void refuseRedirection(bool redirects) {
  if (secureMode != 0 && redirects) KernelException("redirection is disabled");
}

/// Redirection hides in a first argument of the output streams.
void refuseHiddenRedirection(DAG arguments) {
  refuseRedirection(lengthOf(arguments) > 1 && isCallOf(arguments[1], "INTERFACE_REDIRECT"));
}

/// Sends a converted message and takes the reply over: a copy, since its objects are the handler's.
DAG sendAndCopy(DAG x) {
  DAG reply = callResultHandler(x);
  if (reply == null || isImmediate(reply)) return reply;
  if (reply) reply = CopyDAG(reply);
  if (!reply || reply == DAG(2))
    KernelException("invalid data structure returned from user interface");
  return reply;
}

DAG sendStreamCall(DAG x) {
  DAG arguments = asSequence(x[2]);
  bool convert = true;
  switch (preparationOf(textOf(x[1]))) {
    case Preparation::print:
      refuseHiddenRedirection(arguments);
      arguments = asSequence(prtprepro(arguments, DisplayOf::arguments));
      break;
    case Preparation::lprint:
      arguments = asSequence(lprtprepro(arguments));
      break;
    case Preparation::result:
      if (!driver.resultsWanted) return null;
      refuseHiddenRedirection(arguments);
      arguments = asSequence(prtprepro(arguments, DisplayOf::result));
      // A sequence goes as its members.
      if (lengthOf(arguments) == 2 && isSequence(arguments[1])) arguments = arguments[1];
      break;
    case Preparation::set:
      setinterface(arguments, defaultNerinVariables);
      break;
    case Preparation::redirect:
      refuseRedirection(true);
      break;
    case Preparation::unconverted:
      convert = false;
      break;
    case Preparation::none:
      break;
  }
  pollInterruptSoon();
  DAG message = arguments == x[2] ? x : new3(FUNCTION, x[1], arguments);
  return sendAndCopy(convert ? koreltonerin(message) : message);
}

/// Leaves the evaluation for the outermost level, which reports the exit code.
[[noreturn]] void stopKernel(DAG code) {
  driver.exitCode = code && isInteger(code) ? IntegerValue(code) : 0;
  if (driver.depth == 0) Exit(driver.exitCode);
  ::_longjmp(driver.topLevel, jumpStop);
}

}  // namespace

DAG switch2(DAG x) {
  if (isObject(x) && hasTag(x, STOP)) stopKernel(DAG());
  if (isObject(x) && hasTag(x, DEBUG)) {
    callResultHandler(koreltonerin(DebugToNerin(x)));
    return x;
  }
  if (isObject(x) && hasTag(x, FUNCTION) && hasTag(x[1], NAME)) {
    if (x[1] == ini("stop") || x[1] == ini("done") || x[1] == ini("quit")) {
      DAG arguments = asSequence(x[2]);
      stopKernel(lengthOf(arguments) > 1 ? arguments[1] : DAG());
    }
    if (std::strncmp(textOf(x[1]), "INTERFACE_", 10) == 0) return sendStreamCall(x);
  }
  DAG arguments = koreltonerin(asSequence(x));
  callResultHandler(new3(FUNCTION, naminstall("INTERFACE_PRINT"), arguments));
  return null;
}

DAG sendStream(const char* stream, std::initializer_list<DAG> arguments) {
  return switch2(newCall(naminstall(stream), arguments));
}

// ---- text

void Msendprint(const char* text) {
  if (driver.resultCB == nullptr) {
    std::fputs(text, stderr);  // nobody drives the kernel yet
    return;
  }
  callResultHandler(newCall(naminstall("INTERFACE_CHAR"), {strinstall(text)}));
}

int Msendflush() { return 1; }

void Printf2(const char* format, ...) {
  char text[1024];
  std::va_list values;
  va_start(values, format);
  std::vsnprintf(text, sizeof text, format, values);
  va_end(values);
  Msendprint(text);
}

// ---- the way in and out

DAG koreltonerin(DAG x) { return subsalias(KorelToAlias, x); }

DAG nerintokorel(DAG x) {
  DAG statement = SimplifyMaybeBind(x, true);
  return isObject(statement) ? expandAliases(statement) : statement;
}

void sendstatus() {
  sendStream("INTERFACE_STATUS",
             {NewInteger(wordsUsed()), NewInteger(totalmem), cpuSeconds(), cons0,
              NewInteger(incrgc), NewInteger(wret), NewInteger(totalfree), NewInteger(totgcs)});
}

}  // namespace korel
