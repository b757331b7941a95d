#include "session/driver.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "eval/statements/statements.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "frame/trace_messages.h"
#include "frame/traceback.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "session/driver_state.h"
#include "session/evaluator_start.h"
#include "session/interface.h"
#include "session/kernelopts.h"
#include "session/options.h"
#include "session/reset_hooks.h"
#include "session/statement_reader.h"
#include "store/allocator.h"
#include "store/check/verify.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/read/input.h"
#include "text/read/source.h"

namespace korel {

// ---- starting the store

namespace {

bool firstRun = false;   // the banner hasn't been sent
bool needsInit = false;  // the start files haven't been read

DAG waitingStatement;  // while the start files run; a root of the collector

std::jmp_buf startBuffer;  // where errors land before there is a statement
char startMessage[1024 + 8];

void keepStartMessage(const char* message) {
  std::snprintf(startMessage, sizeof startMessage, "korel: %s", message);
  PopErrorProc();
  ::_longjmp(startBuffer, 1);
}

/// Runs `work` with errors turned into a message. Null, or the message of `work` or the error.
const char* withStartErrors(const char* (*work)(void*), void* data) {
  int procsOutside = errorProcDepth();
  int code = _setjmp(startBuffer);
  if (code == 0) {
    PushErrorProc(keepStartMessage);
    const char* message = work(data);
    PopErrorProc();
    return message;
  }
  if (code == jumpError) {  // a special error: no error procedure has seen it
    dropErrorProcs(procsOutside);
    DAG text = ini("lasterror")[1];
    std::snprintf(startMessage, sizeof startMessage, "korel: %s", textOf(text));
  }
  return startMessage;
}

/// The outermost block and frame, as they are between statements.
void resetTopLevel(std::jmp_buf& buffer) {
  IniEnv = EnvironmentBlock{&buffer, 1, &TopLevelStack, 0};
  evaluationLevel = 1;
  Environment = &IniEnv;
}

void dropTables() {
  runHooks(HookMoment::throwAway);
  for (DAG* table : {&simpltab, &aliastab, &nametab, &strtab, &AllIniNames}) {
    if (!*table) continue;
    dropIndex(*table);
    release(*table, lengthOf(*table));
    *table = DAG();
  }
}

/// What the driver keeps of the top frame; its block of environment variables is `initialize`'s.
void fillTopFrame() {
  TopLevelStack.printLevel = 1;
  for (DAG* field :
       {&TopLevelStack.locals, &TopLevelStack.args, &TopLevelStack.procName, &TopLevelStack.proc,
        &TopLevelStack.currentStatement, &TopLevelStack.ditto1, &TopLevelStack.ditto2, &TopLevelStack.ditto3})
    *field = null;
  TopLevelStack.inCondition = ini("false");
}

/// What happens once a process.
void initialize_once() {
  registerRoot(&waitingStatement);
  initializeTraceback();
  initializeEvaluator();
  initializeIntegers();
  InitializeIEEEMath();
  EnableVerifyAll();
  initio();
}

const char* buildStore(void* again) {
  initialize(libraryText);
  fillTopFrame();
  if (again == nullptr) initialize_once();
  return nullptr;
}

/// Builds all tables and shared objects; `again` after a restart. Null, or a message.
const char* startStore(bool again) {
  resetTopLevel(startBuffer);
  if (again) {
    TopLevelStack = Frame{};
    dropTables();
  }
  nametab = newhashtab(512);
  strtab = newhashtab(512);
  strtabCount = 0;
  controlWord(nametab) |= tableBit;
  controlWord(strtab) |= tableBit;
  const char* message = withStartErrors(buildStore, again ? &needsInit : nullptr);
  IniEnv.jumpBuffer = nullptr;
  keepMemoryReserve();
  runHooks(HookMoment::initialised);
  needsInit = true;
  return message;
}

struct CommandLine {
  int argc;
  char** argv;
};

}  // namespace

const char* InitializeKorel(int argc, char** argv) {
  recordStackBounds();
  if (const char* message = findLibrary()) return message;
  CommandLine line{argc, argv};
  const char* message = withStartErrors(
      [](void* data) {
        auto* given = static_cast<CommandLine*>(data);
        return readOptions(given->argc, given->argv);
      },
      &line);
  if (message != nullptr) return message;
  message = startStore(false);
  firstRun = true;
  return message;
}

// ---- start banner and start files

namespace {

constexpr const char* banner = "Korel 6.01 - algebra kernel";

void sendStartMessage() { callResultHandler(newStreamCall(Stream::START, null)); }

void greet() {
  sendStartMessage();
  sendDebug(debugBanner, strinstall(banner));
  RememberKernelOpts();
  RememberInterface();
  firstRun = false;
}

void readStartFile(const char* directory, const char* file) {
  char name[1024];
  if (directory == nullptr) return;
  int length = std::snprintf(name, sizeof name, "%s/%s", directory, file);
  if (length < static_cast<int>(sizeof name)) ReadSourceFile(name, true, true);
}

const StartEntry* currentEntry;

/// One entry of the start list. An error in it is reported and the next one follows: each runs like
/// a statement of its own.
DAG runStartEntry() {
  if (currentEntry->letter == 'i') return ReadSourceOrDotMFile(currentEntry->text, true, true);
  DAG statement = parsestring(currentEntry->text, true);
  return statement ? evalstat(nerintokorel(statement), modeSilent) : null;
}

void readStartFiles() {
  needsInit = false;
  ResetKernelOpts();
  ResetInterface();
  runHooks(HookMoment::startFiles);
  if (optnoinit == 0) {
    readStartFile(firstlibname, "init");
    readStartFile(std::getenv("HOME"), ".korelinit");
  }
  for (int i = 0; i < startListLength; ++i) {
    currentEntry = &startList[i];
    ReadStatement(runStartEntry, nullptr, nullptr, nullptr);
  }
}

// ---- one statement

/// What a frame runs: a statement, or a reader when there is one.
struct Task {
  DAG statement;
  DAG (*reader)();
  bool show;
  bool copy;
};

DAG evaluateStatement(const Task& task) {
  if (firstRun || needsInit) {
    // Statements of the start files end, and collect, before this one has begun.
    waitingStatement = task.statement;
    if (firstRun) greet();
    if (needsInit) readStartFiles();
    waitingStatement = DAG();
    // What the start has made lasts; what statements make from here on does not.
    endOfStatement(evaluationLevel + 1);
  }
  DAG x = task.statement;
  if (!x) return DAG();
  if (driver.depth == 1) {
    if (x == ini("restart")) RestartKorel();
    if (x == ini("tracelast")) {
      TraceBack(3);
      return x;
    }
  }
  driver.copyReplies = task.copy;
  if (task.copy) {
    x = CopyDAG(x);
    if (x == DAG(2)) KernelException("invalid data structure received from user interface");
  }
  return evalstat(nerintokorel(x), task.show ? modeShow : modeSilent);
}

DAG runTask(const Task& task) { return task.reader != nullptr ? task.reader() : evaluateStatement(task); }

void reportError() {
  RecordTraceBackState();
  switch (SpecialError) {
    case computationInterrupted: sendDebug(debugInterrupt, null); break;
    case internalError: sendDebug(debugSystemError, ini("lasterror")[1]); break;
    default: TraceBack(Environment->frame->printLevel);
  }
}

/// An error whose text arises here has left no trace of procedures.
void reportMisplacedJump(const char* message) {
  FillInLastErrorAndException(message);
  ErrorLevel = 0;
  reportError();
}

/// Tells whoever drives the kernel what ended the statement.
void reportJump(int code) {
  switch (code) {
    case jumpToTop: sendDebug(debugSystemError, strinstall("at top level")); break;
    case jumpReturn: reportMisplacedJump("return out of context"); break;
    case jumpBreak: reportMisplacedJump("break or next not in loop"); break;
    case jumpError: reportError(); break;
    case jumpStop:
      callResultHandler(newStreamCall(Stream::STOP, newSequence({immediate(driver.exitCode)})));
      driver.stopped = true;
      break;
    default: notimpl("EvaluateDAG");
  }
}

/// Runs the task in the block that the caller has made innermost and whose jump buffer `buffer` is.
DAG runInFrame(std::jmp_buf& buffer, const Task& task) {
  EnvironmentBlock* const block = Environment;
  const std::int32_t level = evaluationLevel;
  const int depth = ++driver.depth;
  const int procs = errorProcDepth();
  const std::int32_t traps = trapSet;
  const bool copied = driver.copyReplies;
  volatile int failures = 0;
  DAG result;
  int code = _setjmp(buffer);
  if (code == 0) {
    // The frame is a trap: what was registered outside it is not touched by errors that end here.
    trapSet = traps + 1;
    result = runTask(task);
  } else {
    // A stop comes from any depth and passes the frames between.
    Environment = block;
    evaluationLevel = level;
    driver.depth = depth;
    trapSet = traps;
    dropErrorProcs(procs);
    // A report that fails lands here again, and is given up.
    failures = failures + 1;
    if (failures <= 2) reportJump(code);
    result = task.reader != nullptr ? null : DAG();
  }
  trapSet = traps;
  driver.copyReplies = copied;
  driver.depth = depth - 1;
  return result;
}

// ---- depth

void growContexts() {
  if (driver.depth < driver.contextCapacity) return;
  constexpr int step = 10;
  int capacity = driver.contextCapacity + step;
  auto* grown = static_cast<void**>(std::realloc(driver.contexts, static_cast<std::size_t>(capacity) * sizeof(void*)));
  if (grown == nullptr) notimpl("EvaluateDAG");
  driver.contexts = grown;
  driver.contextCapacity = capacity;
}

DAG noReply(void*, DAG) { return null; }
int noInterrupt(void*) { return 0; }

/// After a restart, from inside the statement that asked for it.
void startAgain() {
  driver.depth = 0;
  const char* message = startStore(true);
  if (message != nullptr) {
    sendDebug(debugSystemError, strinstall(message));
  } else {
    sendStartMessage();
  }
}

bool hostKnowsEnd = false;

DAG sendEnd() {
  callResultHandler(newStreamCall(Stream::DONE, null));
  hostKnowsEnd = true;
  return null;
}

/// Tells the host that the statement is done. Sending may fail, as when memory is short: it has a frame of its own, as
/// that of the statement is gone, and is tried again once the failure has been reported.
void reportEnd() {
  hostKnowsEnd = false;
  for (int attempts = 2; attempts > 0 && !hostKnowsEnd; --attempts)
    runInFrame(driver.topLevel, {DAG(), sendEnd, false, false});
}

DAG runOutermost(const Task& task, ResultHandler resultCB, InterruptHandler interruptCB) {
  EnvironmentBlock* const outside = Environment;
  const std::int32_t levelOutside = evaluationLevel;
  SpecialError = noSpecialError;
  recordStackBounds();
  driver.resultCB = resultCB != nullptr ? resultCB : noReply;
  driver.interruptCB = interruptCB != nullptr ? interruptCB : noInterrupt;
  DAG result;
  if (_setjmp(driver.restart) != 0) {
    startAgain();
    EvaluateDAG(DAG(), resultCB, interruptCB, task.show, 0, driver.contexts[0]);
  } else {
    resetTopLevel(driver.topLevel);
    runHooks(HookMoment::everyStatement);
    driver.resultsWanted = task.show;
    result = runInFrame(driver.topLevel, task);
    if (memoryRanOut) collectBetweenStatements();
    if (task.reader == nullptr) reportEnd();
  }
  // Between statements an error has nowhere to go.
  IniEnv.jumpBuffer = nullptr;
  driver.resultCB = nullptr;
  driver.interruptCB = nullptr;
  RestoreEnvironment(outside);
  evaluationLevel = levelOutside;
  return result;
}

DAG runNested(const Task& task) {
  std::jmp_buf buffer;
  EnvironmentBlock block;
  EnvironmentBlock* previous = enterEnvironment(block, buffer);
  DAG result = runInFrame(buffer, task);
  RestoreEnvironment(previous);
  return result;
}

DAG runTaskAtDepth(const Task& task, ResultHandler resultCB, InterruptHandler interruptCB, void* context) {
  growContexts();
  if (context == nullptr && driver.depth > 0) context = driver.contexts[driver.depth - 1];
  driver.contexts[driver.depth] = context;
  return driver.depth == 0 ? runOutermost(task, resultCB, interruptCB) : runNested(task);
}

}  // namespace

DAG EvaluateDAG(DAG dag, ResultHandler resultCB, InterruptHandler interruptCB, int showResults, int copy,
                void* context) {
  if (driver.depth == 0) driver.stopped = false;
  return runTaskAtDepth({dag, nullptr, showResults != 0, copy != 0}, resultCB, interruptCB, context);
}

DAG ReadStatement(DAG (*reader)(), ResultHandler resultCB, InterruptHandler interruptCB, void* context) {
  return runTaskAtDepth({DAG(), reader, driver.resultsWanted, false}, resultCB, interruptCB, context);
}

// ---- restart and stop

const char* RestartKorel() {
  runHooks(HookMoment::restart);
  if (driver.depth > 0) ::_longjmp(driver.restart, 1);
  return startStore(true);
}

bool kernelStopped(int& exitCode) {
  if (driver.stopped) exitCode = driver.exitCode;
  return driver.stopped;
}

void CleanUpBeforeExit() { runHooks(HookMoment::exitProcess); }

void Exit(int code) {
  CleanUpBeforeExit();
  std::exit(code);
}

}  // namespace korel
