#include "debug/debugger.h"

#include <csetjmp>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

#include "debug/break_points.h"
#include "debug/statement_trace.h"
#include "debug/statement_walk.h"
#include "debug/watches.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/statements/boolean.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "session/driver_state.h"
#include "store/collect/collector.h"
#include "store/names.h"
#include "store/tag_facts.h"
#include "text/read/input.h"
#include "text/read/source.h"

namespace korel {

std::int32_t stepLevel = 0;
DAG debugArgs = null;
bool debuggerActive = false;
std::int32_t savedStepLevel = 0;
DAG lastLastError, lastLastException, currentStatement;
const DAG* currentField = nullptr;

namespace {

bool commandRuns = false;       // a command of the dialogue is being evaluated
bool interruptPending = false;  // `debugopts(interrupt)` has ended a dialogue: nothing stops until the top
bool signalPending = false;     // a signal has asked for the dialogue
DAG wrapperRunning;             // the break point or trace whose statement runs, or 0

}  // namespace

bool interruptsWait() { return debuggerActive && !commandRuns; }

void interruptFromDebugger() {
  noteInterrupted();
  interruptPending = debuggerActive;
  debuggerActive = false;
}

// ---- where a program stops

void armStop(std::int32_t depth, DAG arguments) {
  stepLevel = depth;
  debugArgs = arguments;
  updategens(arguments);
}

void stopAt(DAG s) {
  if (evaluationLevel > stepLevel || isTag(s, STATSEQ) || s == null) return;
  if (interruptsWait()) {  // the dialogue's own statements
    stepLevel = 0;
    return;
  }
  // The `DEBUG` of a break point is no place to stop at, nor is the body of a module.
  const bool guards = wrapperRunning && isBreakPoint(wrapperRunning) && wrapperRunning[1] == s;
  if (guards || isTag(Environment->frame->proc, MODDEF)) return;
  // Of a traced statement only the whole.
  if (wrapperRunning && isTraced(wrapperRunning) && wrapperRunning[2][3] == s) return;
  stepLevel = 0;
  if (evaluationLevel < firstInnerDepth) return;
  DAG arguments = debugArgs;
  debugArgs = null;
  debugger(arguments);
}

DAG enterWrapper(DAG wrapper) {
  DAG before = wrapperRunning;
  wrapperRunning = wrapper;
  return before;
}

DAG runBreakPoint(DAG breakPoint, int mode) {
  DAG before = enterWrapper(breakPoint);
  // It is no level of its own: what it guards runs as deep as without it.
  --evaluationLevel;
  evalstat(breakPoint[1], mode);
  DAG value = evalstat(breakPoint[2], mode);
  ++evaluationLevel;
  wrapperRunning = before;
  return value;
}

// ---- the error names

namespace {

DAG valueOfName(StandardName name) {
  DAG value = ini(name)[1];
  return value ? value : null;
}
void restoreName(StandardName name, DAG value) { ini(name)[1] = value == null ? DAG() : value; }

struct ErrorNames {
  DAG error = valueOfName("lasterror"), exception = valueOfName("lastexception");
  void restore() const {
    restoreName("lasterror", error);
    restoreName("lastexception", exception);
  }
};

// ---- conditions

bool isBooleanForm(DAG x) {
  constexpr TagSet forms = {AND, OR, NOT, EQUATION, INEQUAT, LESSTHAN, LESSEQ};
  if (isImmediate(x)) return false;
  return isAmong(x, forms) || x == ini("true") || x == ini("false");
}

bool isCondition(DAG arguments) {
  return isSequence(arguments) && memberCount(arguments) == 1 && isBooleanForm(arguments[1]);
}

// Whether a condition holds; one that fails doesn't, and nothing is left of its error.
bool holds(DAG condition) {
  const ErrorNames names;
  bool failed = false;
  DAG truth = KernelTrapError([](DAG x) { return evalbool(simpl(eval(x))); }, condition, failed);
  if (failed && SpecialError != noSpecialError) jumpOut(jumpError);
  names.restore();
  return !failed && truth == ini("true");
}

}  // namespace

namespace {

// The arguments of a `DEBUG` whose errors are the program's no affair; 0 when it fails or its condition doesn't hold.
DAG conditionToStop(DAG arguments) {
  const ErrorNames names;
  bool failed = false;
  DAG value = KernelTrapError(
      [](DAG x) {
        DAG evaluated = simpl(eval(x));
        const bool stops = !isBooleanForm(singleMember(evaluated)) || evalbool(singleMember(evaluated)) == ini("true");
        return stops ? evaluated : ini("false");
      },
      arguments, failed);
  if (failed && SpecialError != noSpecialError) jumpOut(jumpError);
  names.restore();
  return failed || value == ini("false") ? DAG() : simpl(asSequence(value));
}

}  // namespace

DAG builtin::DEBUG_(const BuiltinCall& call) {
  DAG arguments = call.arguments;
  const bool guards = wrapperRunning && isBreakPoint(wrapperRunning) && wrapperRunning[1] == call.form;
  if (memberCount(arguments) == 1 && (guards || isBooleanForm(arguments[1]))) {
    arguments = conditionToStop(arguments);
    if (!arguments) return null;
  } else {
    arguments = simpl(asSequence(simpl(korel::eval(arguments))));
  }
  if (Environment->frame->previousFrame == nullptr) debugger(arguments);
  else armStop(evaluationLevel, arguments);
  return null;
}

// ---- the dialogue

namespace {

// What the dialogue puts back, in an object that every collection leaves alone.
enum SavedField : Word { savedDitto1 = 1, savedDitto2, savedDitto3, savedError, savedException, savedPrintLevel };

struct Dialogue {
  EnvironmentBlock block;
  EnvironmentBlock* previous;
  Frame* frame;
  DAG saved;
  DAG outerStatement;  // of the dialogue around this one
  const DAG* outerField;
  DAG wrapper;
  bool outerActive, outerCommand;
  std::int32_t number;
};

DAG firstStatement(DAG s) {
  while (isTag(s, STATSEQ) && lengthOf(s) > 1) s = s[1];
  return simpl(s);
}

void begin(Dialogue& d) {
  Frame& frame = *Environment->frame;
  d.frame = &frame;
  d.outerActive = debuggerActive;
  d.outerCommand = commandRuns;
  d.outerStatement = currentStatement;
  d.outerField = currentField;
  d.wrapper = wrapperRunning;
  evalTimeLimit = 0;
  debuggerActive = true;
  commandRuns = false;
  currentStatement = firstStatement(frame.currentStatement);
  currentField = frame.currentPlace;
  wrapperRunning = DAG();
  d.saved = newSequence({frame.ditto1, frame.ditto2, frame.ditto3, valueOfName("lasterror"),
                         valueOfName("lastexception"), valueOfName("printlevel"), currentStatement});
  ProtectFromGC(d.saved);
  lastLastError = ini("lasterror")[1];
  lastLastException = ini("lastexception")[1];
  ini("printlevel")[1] = cons0;
}

// Everything as it was, but for what goes on behind the dialogue.
void end(Dialogue& d, bool keepErrors) {
  Frame& frame = *d.frame;
  frame.ditto1 = d.saved[savedDitto1];
  frame.ditto2 = d.saved[savedDitto2];
  frame.ditto3 = d.saved[savedDitto3];
  if (!keepErrors) {
    restoreName("lasterror", d.saved[savedError]);
    restoreName("lastexception", d.saved[savedException]);
  }
  restoreName("printlevel", d.saved[savedPrintLevel]);
  for (Word i = savedDitto1; i <= savedPrintLevel; ++i) updategens(d.saved[i]);
  stepEvaluationClock();
  AllowGC(d.saved);
  currentStatement = d.outerStatement;
  currentField = d.outerField;
  wrapperRunning = d.wrapper;
  debuggerActive = d.outerActive && !interruptPending;
  commandRuns = d.outerCommand;
}

// Finds the number of the current statement; false when it has none.
bool locate(Dialogue& d) {
  StatementPlace place;
  if (!placeOfStatement(d.frame->proc, currentStatement, currentField, place)) return false;
  d.number = place.number;
  return true;
}

// What the dialogue is called with: quoted, since a call evaluates its arguments.
DAG quotedArguments(DAG value, DAG info) {
  DAG all = simpl(newSequence({value, info}));
  DAG quoted = CopyAlg(all);
  for (Word i = 1, n = lengthOf(quoted); i < n; ++i)
    if (!isImmediate(quoted[i])) quoted[i] = new2(UNEVAL, quoted[i]);
  return simpl(quoted);
}

// The plain kind of statement: the only one at which a stop is made.
constexpr std::int32_t plainKind = 0;

DAG infoOf(const Dialogue& d) {
  if (d.frame->previousFrame == nullptr) return null;
  DAG name = nameOfProcedure(*d.frame);
  DAG info = newSequence({naminstall("DEBUGINFO"), name, immediate(d.number), immediate(plainKind)});
  return simpl(new2(LIST, simpl(info)));
}

// The value of a command among the variables of the frame, or the exception that it raised.
DAG valueOfCommand(const Dialogue& d, DAG command) {
  if (isTag(d.frame->proc, PROC)) command = SimplifyMaybeBind(simplfnc(command, d.frame->proc, null), false);
  commandRuns = true;
  bool failed = false;
  DAG value = KernelTrapError([](DAG x) { return simpl(eval(x)); }, command, failed);
  commandRuns = false;
  if (failed) value = valueOfName("lastexception");
  updategens(value);
  return simpl(asSequence(value));
}

// Commands, until one lets the program go on. False when `interrupt` has ended the dialogue.
bool converse(Dialogue& d, DAG value) {
  for (bool first = true;; first = false) {
    if (d.frame->previousFrame != nullptr && first && !locate(d)) return true;
    DAG arguments = quotedArguments(value, infoOf(d));
    stepLevel = 0;
    debugArgs = null;
    DAG command = evalextf("debugger", arguments);
    if (interruptPending) return false;
    if (command == null) return true;
    value = valueOfCommand(d, command);
    if (interruptPending) return false;
    // An interrupt of the command, or its stack, are its own affair.
    SpecialError = noSpecialError;
  }
}

}  // namespace

void debugger(DAG arguments) {
  if (isCondition(arguments)) {
    if (!holds(arguments[1])) return;
    arguments = Environment->frame->ditto1;
  }
  if (isTag(Environment->frame->proc, MODDEF)) return;
  // Another value than a procedure would be a command again and again.
  const DAG dialogue = retrieve("debugger");
  if (dialogue == null || !isTag(dialogue[1], PROC)) return;
  Dialogue d;
  begin(d);
  std::jmp_buf buffer;
  d.previous = enterEnvironment(d.block, buffer);
  const int code = ::_setjmp(buffer);
  if (code != 0) {
    Environment = &d.block;
    end(d, code == jumpError && SpecialError == noSpecialError);
    RestoreEnvironment(d.previous);
    jumpOut(static_cast<JumpCode>(code));
  }
  const bool goesOn = converse(d, arguments);
  end(d, false);
  RestoreEnvironment(d.previous);
  if (!goesOn) jumpOut(jumpError);
  stepLevel = savedStepLevel;
}

DAG nameOfProcedure(const Frame& frame) {
  if (!isTag(frame.proc, PROC)) return DAG();
  if (frame.procName && leadsTo(frame.procName, frame.proc)) return frame.procName;
  char text[32];
  std::snprintf(text, sizeof text, "unknown/%lX", static_cast<unsigned long>(frame.proc.word));
  DAG name = naminstall(text);
  controlWord(name) &= ~deferredBit;  // nothing of the library
  if (name[1] != frame.proc) assign(name, frame.proc);
  return name;
}

// ---- errors

namespace {

// The texts at the beginning of `lasterror`.
DAG errorMessage() {
  DAG value = ini("lasterror")[1];
  if (!value) return strinstall("unknown error");
  DAG members = asSequence(value);
  Word n = 1;
  while (n < lengthOf(members) && isText(members[n])) ++n;
  if (n == 1) return strinstall("unknown error");
  DAG texts = copysub(members, 0, n - 1);
  for (Word i = 1; i < n; ++i) texts[i] = strinstall(textOf(texts[i]));
  return singleMember(simpl(texts));
}

// Each evaluation of the driver is a trap of its own, which doesn't count here.
bool isTrapped() {
  return trapSet > driver.depth || SpecialError == computationInterrupted || SpecialError == assertionFailed;
}

}  // namespace

void EnterDebugger() {
  if (!errorTable && !signalPending) return;
  if (interruptPending || SpecialError == internalError || SpecialError == stackOverflow) return;
  DAG message = errorMessage();
  if (!signalPending && (debuggerActive || !stopsAtError(message, isTrapped()))) return;
  if (r_unit0 != 0) {
    CloseReadOnError(stoppedByStatement);
    return;
  }
  SpecialError = noSpecialError;
  signalPending = false;
  stepLevel = 0;
  DAG report = simpl(new2(LIST, simpl(newSequence({naminstall("DEBUGERROR"), message}))));
  debugger(simpl(newSequence({report})));
}

volatile std::sig_atomic_t debuggerWanted = 0;

void enterDebuggerSoon() {
  debuggerWanted = 1;
  pollInterruptSoon();
}

void DropEverythingAndEnterDebugger() {
  if (evaluationLevel < firstInnerDepth) return;
  debuggerWanted = 0;
  if (debuggerActive) return;
  // Input 0 is the terminal from now on; where there is none it stays what it was.
  const int terminal = open("/dev/tty", O_RDWR);
  if (terminal < 0) return;
  if (terminal != STDIN_FILENO) {
    dup2(terminal, STDIN_FILENO);
    close(terminal);
  }
  signalPending = true;
  EnterDebugger();
  signalPending = false;
}

// ---- start and reset

void initializeDebugger() {
  for (DAG* root : {&debugArgs, &lastLastError, &lastLastException, &currentStatement, &wrapperRunning})
    registerRoot(root);
  debugArgs = null;
  initializeWatches();
}

void ResetDebugger() {
  stepLevel = 0;
  debugArgs = null;
  debuggerActive = commandRuns = interruptPending = signalPending = false;
  debuggerWanted = 0;
  currentStatement = wrapperRunning = DAG();
  currentField = nullptr;
}

void CleanUpDebugger() {
  ResetDebugger();
  savedStepLevel = 0;
  traceAllMode = false;
  watchTable = errorTable = lastLastError = lastLastException = DAG();
}

}  // namespace korel
