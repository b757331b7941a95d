#include "frame/errors.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "debug/debugger.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/output.h"
#include "frame/traceback.h"
#include "numbers/integer/integer_groups.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

std::int32_t SpecialError = noSpecialError;
std::int32_t trapSet = 0;
std::uintptr_t errorProcParam = 0;
int errorProcCount = 0;

// ---- error procedures

namespace {

struct ErrorRecord {
  ErrorProcedure call;
  std::int32_t trapSet;  // active traps when it was registered
  bool running;          // its own failure must not call it again
  bool keepsState;       // special errors call it too
  std::uintptr_t parameter;
  const FramelessCall* frameless;  // null: the record belongs to none
  ErrorRecord* below;
};
ErrorRecord* procStack = nullptr;
// Every `if` registers a procedure for its condition: records are used again.
ErrorRecord* spareRecords = nullptr;

void pushRecord(ErrorProcedure f, std::uintptr_t parameter, bool keepsState = false,
                const FramelessCall* frameless = nullptr) {
  ErrorRecord* record = spareRecords;
  if (record != nullptr) {
    spareRecords = record->below;
  } else {
    record = static_cast<ErrorRecord*>(std::malloc(sizeof(ErrorRecord)));
    if (record == nullptr) notimpl("PushErrorProc");
  }
  *record = {f, trapSet, false, keepsState, parameter, frameless, procStack};
  procStack = record;
  ++errorProcCount;
}

constexpr const char* misplacedJump = "return, break, or next out of context";

/// Calls the error procedure registered last, which is gone afterwards. A special error calls none but
/// those that keep state.
void runLastErrorProc(const char* message) {
  ErrorRecord* record = procStack;
  if (!record->running && (SpecialError == noSpecialError || record->keepsState)) {
    record->running = true;
    errorProcParam = record->parameter;
    record->call(message);
  }
  if (procStack == record) PopErrorProc();
}

/// Calls the error procedures that belong to the active trap, or all of them outside of traps.
/// Those of levels around the trap stay for errors that leave it.
void runErrorProcs(const char* message) {
  while (procStack != nullptr && procStack->trapSet >= trapSet) runLastErrorProc(message);
}

}  // namespace

void PushErrorProc(ErrorProcedure f) { pushRecord(f, 0); }
void PushParamErrorProc(ErrorProcedure f, DAG parameter) { pushRecord(f, parameter.word); }
void PushParamErrorProc(ErrorProcedure f, void* parameter) {
  pushRecord(f, reinterpret_cast<std::uintptr_t>(parameter));
}
void PushStateKeeper(ErrorProcedure f, void* parameter, const FramelessCall* frameless) {
  pushRecord(f, reinterpret_cast<std::uintptr_t>(parameter), true, frameless);
}

void PushFramelessCall(const FramelessCall& call) {
  pushRecord([](const char*) {}, 0, false, &call);
}

void PopErrorProc() {
  ErrorRecord* record = procStack;
  if (record == nullptr) notimpl("PopErrorProc");
  procStack = record->below;
  --errorProcCount;
  record->below = spareRecords;
  spareRecords = record;
}

bool hasErrorProc() { return procStack != nullptr; }
int errorProcDepth() { return errorProcCount; }
void dropErrorProcs(int depth) {
  while (errorProcCount > depth) PopErrorProc();
}

// ---- message marks

int countMarks(const char* text) {
  int marks = 0;
  for (const char* at = text; *at != '\0'; ++at) {
    if (*at != '%') continue;
    ++at;
    if (*at == '0') return -1;
    if (*at >= '1' && *at <= '9') {
      ++marks;
    } else if (*at == '-' && at[1] >= '0' && at[1] <= '9') {
      ++marks;
      ++at;
    } else if (*at == '\0') {
      break;
    }
  }
  return marks;
}

const char* withoutMarks(const char* text) {
  if (std::strchr(text, '%') == nullptr) return text;
  DAG doubled = newl2(textLength(static_cast<Word>(2 * std::strlen(text))), BINARY);
  char* to = textOf(doubled);
  for (; *text != '\0'; ++text) {
    *to++ = *text;
    if (*text == '%') *to++ = '%';
  }
  *to = '\0';
  return textOf(doubled);
}

namespace {

/// How many places the parameters of `text` take: one a mark; with %0 all that were given.
Word parameterPlaces(const char* text, const DAG* parameters, int count) {
  int marks = countMarks(text);
  if (marks >= 0) return static_cast<Word>(marks);
  Word places = 0;
  for (int i = 0; i < count && parameters[i]; ++i)
    places += isSequence(parameters[i]) && memberCount(parameters[i]) > 0 ? memberCount(parameters[i]) : 1;
  return places;
}

/// Fills `places` fields of `target` from `at` on. A sequence spreads over as many as it has
/// members; a place that nothing fills holds an empty quoted sequence, so that positions stay
/// right.
void placeParameters(DAG target, Word at, Word places, const DAG* parameters, int count) {
  Word end = at + places;
  for (int i = 0; i < count && at < end && parameters[i]; ++i) {
    DAG parameter = parameters[i];
    if (!isSequence(parameter)) {
      target[at++] = parameter;
    } else if (memberCount(parameter) == 0) {
      target[at++] = new2(UNEVAL, null);
    } else {
      for (Word k = 1; k <= memberCount(parameter) && at < end; ++k) target[at++] = parameter[k];
    }
  }
  while (at < end) target[at++] = new2(UNEVAL, null);
}


/// The first entry of an exception: who raised it.
DAG raisingProcedure() {
  DAG name = Environment->frame != nullptr ? Environment->frame->procName : null;
  return !name || name == null ? cons0 : name;
}

// The innermost frameless call of the innermost block, or null.
const FramelessCall* framelessCall() {
  ErrorRecord* record = procStack;
  for (int n = errorProcCount - Environment->errorProcs; n > 0; --n, record = record->below)
    if (record->frameless != nullptr) return record->frameless;
  return nullptr;
}

// The frame that a frameless call would have, from the moment on when an error is raised in it.
struct FailingFrame {
  Frame frame;
  EnvironmentBlock block;
  EnvironmentBlock* previous;
};

bool enterFramelessCall(FailingFrame& failing) {
  const FramelessCall* call = framelessCall();
  if (call == nullptr) return false;
  failing.frame = *Environment->frame;
  failing.frame.previousFrame = Environment->frame;
  failing.frame.locals = null;
  failing.frame.args = call->arguments;
  failing.frame.procName = call->name;
  failing.frame.proc = call->procedure;
  failing.frame.currentStatement = bodyOf(call->procedure);
  failing.frame.currentPlace = &bodyOf(call->procedure);
  failing.previous = Environment;
  Environment->depth = evaluationLevel;
  failing.block = *Environment;
  failing.block.frame = &failing.frame;
  Environment = &failing.block;
  return true;
}

void leaveFailingFrame(FailingFrame& failing) {
  recordTraceLevel(failing.frame);
  RestoreEnvironment(failing.previous);
}

void keepInName(DAG name, DAG value) {
  updategens(value);
  stepEvaluationClock();
  name[1] = value;
}

// Raises `exception`, whose first member is filled in here: `procedure`, or with 0 the one that is running.
[[noreturn]] void raiseException(DAG exception, DAG value, DAG procedure = DAG()) {
  FailingFrame failing;
  const bool isFrameless = enterFramelessCall(failing);
  exception[1] = procedure ? procedure : raisingProcedure();
  ResetSimplifier();
  // The error may have come of an object too large for the result of an operation on groups.
  GroupSpace::releaseAll();
  const char* message = textOf(exception[2]);
  runErrorProcs(message);
  keepInName(ini("lasterror"), exception == value ? exception[2] : singleMember(value));
  keepInName(ini("lastexception"), exception);
  if (Environment->jumpBuffer == nullptr) {
    std::fprintf(stderr, "Serious error, probable cause: %s\n", message);
    switch2(new1(STOP));
    std::abort();  // nobody took the STOP
  }
  EnterDebugger();
  ErrorLevel = 0;
  if (isFrameless) leaveFailingFrame(failing);
  jumpOut(jumpError);
}

}  // namespace

void runErrorProcsOfBlock(JumpCode code) {
  DAG exception = ini("lastexception")[1];
  const char* message = code == jumpError && isSequence(exception) ? textOf(exception[2]) : misplacedJump;
  while (errorProcCount > Environment->errorProcs) runLastErrorProc(message);
}

void raiseKernelException(const char* text, const DAG* parameters, int count) {
  if (Environment == nullptr) {
    // No objects exist yet; at start-up an error procedure takes the message and jumps.
    if (procStack != nullptr) procStack->call(text);
    std::fprintf(stderr, "%s", text);
    std::exit(1);
  }
  if (text == nullptr) KorelException(null);
  Word places = parameterPlaces(text, parameters, count);
  DAG exception = newl2(places + 3, EXPSEQ);
  exception[2] = strinstall(text);
  placeParameters(exception, 3, places, parameters, count);
  raiseException(exception, exception);
}

void KorelException(DAG arguments) { KorelExceptionOf(DAG(), arguments); }

void KorelExceptionOf(DAG procedure, DAG arguments) {
  if (arguments == null) {
    DAG last = ini("lastexception")[1];
    arguments = isSequence(last) ? copydel(last, 0, 1) : strinstall("unspecified error");
  }
  DAG exception = isSequence(arguments) ? space_insert(arguments, 0, 1) : new3(EXPSEQ, DAG(), arguments);
  DAG message = exception[2];
  if (!hasTag(message, NAME) && !hasTag(message, STRING)) {
    exception = space_insert(exception, 1, 1);
    exception[2] = strinstall("%0");
  } else if (lengthOf(exception) > 3 && countMarks(textOf(message)) == 0) {
    // The parameters would be lost without a mark.
    Word characters = static_cast<Word>(std::strlen(textOf(message)));
    DAG scratch = newl2(textLength(characters + 4), BINARY);
    std::strcpy(textOf(scratch), textOf(message));
    std::strcat(textOf(scratch), ", %0");
    exception[2] = strinstall(textOf(scratch));
  } else if (hasTag(message, NAME)) {
    exception[2] = strinstall(textOf(message));
  }
  raiseException(exception, arguments, procedure);
}

void userror(const char* text) { KernelException(text); }

void notimpl(const char* text) {
  SpecialError = internalError;
  KernelException(text);
}

// ---- messages with a printf conversion

namespace {

struct Conversion {
  const char* begin;  // the percent sign
  const char* end;    // behind the conversion letter
};

/// The first conversion of `format`; "%%" is none. Both ends equal when there is none.
Conversion firstConversion(const char* format) {
  const char* at = format;
  while (*at != '\0') {
    if (*at != '%') {
      ++at;
    } else if (at[1] == '%') {
      at += 2;
    } else {
      const char* end = at + 1;
      end += std::strspn(end, "-+ #0123456789.hlqjzt");
      if (*end != '\0') ++end;
      return {at, end};
    }
  }
  return {at, at};
}

const char* asPartOfMessage(const char* value) { return withoutMarks(value); }
long asPartOfMessage(long value) { return value; }

template <class Value>
[[noreturn]] void raiseFormatted(const char* format, Value value) {
  // The text can be as long as a file name: it is built in the store, which an error cannot leak.
  auto formatted = [&value](const char* pattern) {
    int characters = std::snprintf(nullptr, 0, pattern, value);
    DAG buffer = newl2(textLength(static_cast<Word>(characters)), BINARY);
    std::snprintf(textOf(buffer), static_cast<std::size_t>(characters) + 1, pattern, value);
    return buffer;
  };
  if (Environment == nullptr || hasErrorProc()) {
    if (Environment != nullptr) {
      value = asPartOfMessage(value);
      KernelException(textOf(formatted(format)));
    }
    static char text[1024];
    std::snprintf(text, sizeof text, format, value);
    KernelException(text);
  }
  Conversion conversion = firstConversion(format);
  std::size_t before = static_cast<std::size_t>(conversion.begin - format);
  std::size_t length = static_cast<std::size_t>(conversion.end - conversion.begin);
  DAG pattern = newl2(textLength(static_cast<Word>(length)), BINARY);
  std::memcpy(textOf(pattern), conversion.begin, length);
  DAG parameter = strinstall(textOf(formatted(textOf(pattern))));
  DAG text = newl2(textLength(static_cast<Word>(std::strlen(format) + 2)), BINARY);
  std::memcpy(textOf(text), format, before);
  std::strcpy(textOf(text) + before, length != 0 ? "%1" : "");
  std::strcat(textOf(text), conversion.end);
  KernelException(textOf(text), parameter);
}

}  // namespace

void _userror2(const char* format, const char* value) { raiseFormatted(format, value); }
void _userror2(const char* format, long value) { raiseFormatted(format, value); }

// ---- warnings

void sendKernelWarning(int level, const char* text, const DAG* parameters, int count) {
  Word places = parameterPlaces(text, parameters, count);
  DAG sequence = newl2(places + 3, EXPSEQ);
  sequence[1] = immediate(level);
  sequence[2] = strinstall(text);
  placeParameters(sequence, 3, places, parameters, count);
  switch2(newStreamCall(Stream::WARN, sequence));
}

// ---- the last error, and traps

DAG FillInLastErrorAndException(const char* message) {
  DAG name = naminstall(message);
  keepInName(ini("lasterror"), name);
  keepInName(ini("lastexception"), new3(EXPSEQ, raisingProcedure(), strinstall(message)));
  return name;
}

void clearLastError() {
  ini("lasterror")[1] = DAG();
  ini("lastexception")[1] = DAG();
}

DAG KernelTrapError(DAG (*f)(DAG), DAG argument, bool& failed) {
  std::jmp_buf buffer;
  EnvironmentBlock block;
  int procsOutside = errorProcDepth();
  EnvironmentBlock* previous = enterEnvironment(block, buffer);
  ++trapSet;
  int code = _setjmp(buffer);
  if (code == 0) {
    DAG value = f(argument);
    --trapSet;
    clearLastError();
    RestoreEnvironment(previous);
    failed = false;
    return singleMember(value);
  }
  --trapSet;
  RestoreEnvironment(previous);
  dropErrorProcs(procsOutside);
  failed = true;
  switch (code) {
    case jumpError:
      if (SpecialError == noSpecialError) forgetTraceLevels();
      return singleMember(simpl(ini("lasterror")[1]));
    case jumpReturn: case jumpBreak: return FillInLastErrorAndException(misplacedJump);
    default: return null;
  }
}

DAG traperror(DAG x) {
  bool failed;
  return KernelTrapError([](DAG argument) { return simpl(eval(argument)); }, x, failed);
}

}  // namespace korel
