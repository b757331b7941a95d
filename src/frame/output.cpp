#include "frame/output.h"

#include <cstdarg>
#include <cstdio>

#include "eval/simplify/aliases.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "session/driver_state.h"
#include "session/interface.h"
#include "session/resource_limits.h"
#include "store/allocator.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/print/display.h"

namespace korel {

DriverState driver;

DAG callResultHandler(DAG x) { return driver.resultCB != nullptr ? driver.resultCB(currentContext(), x) : null; }

// ---- the streams

namespace {

/// What happens to a stream's arguments on their way out.
enum class Preparation : std::uint8_t { none, print, lprint, result, set, redirect, unconverted };

constexpr Preparation preparations[] = {
#define KOREL_STREAM(name, preparation) Preparation::preparation,
#include "frame/streams.def"
#undef KOREL_STREAM
    Preparation::none,  // of any other name
};

void refuseRedirection(bool redirects) {
  if (secureMode != 0 && redirects) KernelException("redirection is disabled");
}

/// Redirection hides in a first argument of the output streams.
void refuseHiddenRedirection(DAG arguments) {
  refuseRedirection(lengthOf(arguments) > 1 && isStreamCall(arguments[1], Stream::REDIRECT));
}

/// Sends a converted message and takes the reply over: a copy, since its objects are the handler's.
DAG sendAndCopy(DAG x) {
  DAG reply = callResultHandler(x);
  if (reply == null || isImmediate(reply)) return reply;
  if (reply) reply = CopyDAG(reply);
  if (!reply || reply == DAG(2)) KernelException("invalid data structure returned from user interface");
  return reply;
}

DAG sendStreamCall(DAG x) {
  DAG arguments = asSequence(x[2]);
  bool convert = true;
  switch (preparations[static_cast<int>(streamNamed(textOf(x[1])))]) {
    case Preparation::print:
      refuseHiddenRedirection(arguments);
      arguments = asSequence(prtprepro(arguments, DisplayOf::arguments));
      break;
    case Preparation::lprint: arguments = asSequence(lprtprepro(arguments)); break;
    case Preparation::result:
      if (!driver.resultsWanted) return null;
      refuseHiddenRedirection(arguments);
      arguments = asSequence(prtprepro(arguments, DisplayOf::result));
      // A sequence goes as its members.
      if (lengthOf(arguments) == 2 && isSequence(arguments[1])) arguments = arguments[1];
      break;
    case Preparation::set: setinterface(arguments, defaultNerinVariables); break;
    case Preparation::redirect: refuseRedirection(true); break;
    case Preparation::unconverted: convert = false; break;
    case Preparation::none: break;
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
    if (isStreamName(x[1])) return sendStreamCall(x);
  }
  DAG arguments = koreltonerin(asSequence(x));
  callResultHandler(newStreamCall(Stream::PRINT, arguments));
  return null;
}

DAG newStreamCall(Stream stream, DAG arguments) { return new3(FUNCTION, naminstall(streamName(stream)), arguments); }

DAG sendStream(Stream stream, std::initializer_list<DAG> arguments) {
  return switch2(newStreamCall(stream, newSequence(arguments)));
}

// ---- text

void Msendprint(const char* text) {
  if (driver.resultCB == nullptr) {
    std::fputs(text, stderr);  // nobody drives the kernel yet
    return;
  }
  callResultHandler(newStreamCall(Stream::CHAR, newSequence({strinstall(text)})));
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
  sendStream(Stream::STATUS, {NewInteger(wordsUsed()), NewInteger(totalmem), cpuSeconds(), cons0, NewInteger(incrgc),
                              NewInteger(wret), NewInteger(totalfree), NewInteger(totgcs)});
}

}  // namespace korel
