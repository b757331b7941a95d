#include "eval/procedures/calls.h"

#include <algorithm>

#include "builtins/builtins.h"
#include "debug/call_profile.h"
#include "debug/debugger.h"
#include "debug/statement_trace.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/evaluate/loose_arguments.h"
#include "eval/evaluate/named_kinds.h"
#include "eval/evaluate/operand.h"
#include "eval/procedures/procedure_frame.h"
#include "eval/procedures/procedures.h"
#include "eval/procedures/remember.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/depth.h"
#include "eval/statements/loops.h"
#include "eval/statements/statements.h"
#include "eval/types/types.h"
#include "external/call_external.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/output.h"
#include "frame/streams.h"
#include "frame/trace_messages.h"
#include "frame/traceback.h"
#include "library/library_calls.h"
#include "library/native/native.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// The print level of a procedure with the option `trace`: everything in and below it is shown.
constexpr std::int32_t tracedPrintLevel = 214748364;

bool beginsWith(DAG options, DAG name) { return lengthOf(options) > 1 && options[1] == name; }
bool isExternalWrapper(DAG proc) { return beginsWith(optionsOf(proc), ini("call_external")); }
bool isBuiltin(DAG proc) { return isBuiltinProcedure(proc) && beginsWith(optionsOf(proc), ini("builtin")); }
// A call of it has nothing to look up and nothing to store.
bool isPlain(DAG proc) { return optionsOf(proc) == null && rememberOf(proc) == null; }
bool isPlainExternal(DAG proc) { return isExternalWrapper(proc) && rememberOf(proc) == null; }

// ---- finding the procedure

struct Callee {
  DAG procedure;  // a PROC, or what the head evaluated to
  DAG name;       // for messages and `procname`
  DAG index;      // EXPSEQ of an indexed call, or 0
};

// The name of a call whose head has none: of `readlib(n)`, n; otherwise `unknown`.
DAG nameOfHead(DAG value, DAG head) {
  if (isNameOrIndexed(value)) return value;
  if (isNameOrIndexed(head)) return head;
  if (isCallOf(head, ini("readlib")) && isSequence(head[2]) && lengthOf(head[2]) > 1) {
    DAG n = head[2][1];
    if (isTag(n, UNEVAL)) n = n[1];
    if (isNameOrIndexed(n)) return n;
  }
  return ini("unknown");
}

// The name that the head of a call stands for, when that holds a procedure as it is to be run: a name whose
// procedure has no captured names, or a local of the running frame; or 0.
[[gnu::always_inline]] inline DAG nameOfPlainCallee(DAG head) {
  if (isImmediate(head)) return DAG();
  // An environment variable of the fixed kind has no value of its own, and one of the open kind perhaps
  // another one in this frame.
  if (hasTag(head, NAME))
    return isTag(head[1], PROC) && lexicalsOf(head[1]) == null && !isOpenEnvironmentName(head) ? head : DAG();
  if (!hasTag(head, LOCAL)) return DAG();
  DAG locals = Environment->frame->locals;
  Word n = rawField(head, 1);
  if (n - 1 >= lengthOf(locals) - 1) return DAG();
  DAG name = locals[n];
  return hasTag(name, NAME) && isTag(name[1], PROC) ? name : DAG();
}

// In f[i](a) the index belongs to the call when a base inside is a procedure.
void lookInside(Callee& callee, DAG reference) {
  for (DAG base = reference; isTag(base, TABLEREF); base = base[1]) {
    DAG stored = storedValue(storedValue(base[1]));
    if (!isTag(stored, PROC)) continue;
    callee = {stored, reference, reference[2]};
    return;
  }
}

Callee findCallee(DAG head) {
  if (DAG name = nameOfPlainCallee(head)) return {name[1], name, DAG()};
  DAG lastName;
  DAG value = eval(head, &lastName);
  if (isTag(value, NAME)) {
    DAG stored = valuenv(value, false);
    if (isTag(stored, PROC)) {
      lastName = value;
      value = stored;
    }
  }
  Callee callee{value, lastName ? lastName : nameOfHead(value, head), DAG()};
  lookInside(callee, value);
  return callee;
}

// ---- arguments

// How argument i reaches parameter i.
enum class Passing { value, name, unevaluated };
Passing passingOf(DAG proc, Word i) {
  if (i >= lengthOf(paramsOf(proc))) return Passing::value;
  DAG declaration = paramsOf(proc)[i];
  if (!isTag(declaration, DCOLON)) return Passing::value;
  DAG type = declaration[2];
  if (isTag(type, FUNCTION)) type = type[1];
  if (type == ini("evaln")) return Passing::name;
  if (declaration[2] == ini("uneval")) return Passing::unevaluated;
  return Passing::value;
}

DAG evalArguments(DAG proc, DAG a) {
  if (!isTag(a, EXPSEQ)) return simpl(new2(EXPSEQ, simpl(eval(a))));
  DAG result = a;
  bool plain = lengthOf(paramsOf(proc)) == 1;
  if (lengthOf(a) == 2 && (plain || passingOf(proc, 1) == Passing::value))
    return isImmediate(a[1]) ? simpl(a) : singleSequence(simpl(evalOperand(a[1])));
  for (Word i = 1, n = lengthOf(a); i < n; ++i) {
    DAG argument = a[i];
    DAG value;
    switch (plain ? Passing::value : passingOf(proc, i)) {
      case Passing::value:
        if (isImmediate(argument)) continue;
        value = simpl(evalOperand(argument));
        break;
      case Passing::name: value = simpl(evalname(argument)); break;
      case Passing::unevaluated: value = simpl(evparloc(argument)); break;
    }
    if (value == argument) continue;
    if (result == a) result = CopyAlg(a);
    result[i] = value;
  }
  DAG unique = simpl(result);
  // The copy belongs to nobody when the same arguments were there before, or were spliced.
  if (unique != result && result != a) release(result, lengthOf(result));
  return unique;
}

inline bool hasTypes(DAG declarations) {
  for (Word i = 1, n = lengthOf(declarations); i < n; ++i)
    if (hasTag(declarations[i], DCOLON)) return true;
  return false;
}

// ---- tracing and remember tables

DAG rememberKey(const Callee& callee, DAG arguments) {
  return callee.index ? indexedKey(callee.index, arguments) : arguments;
}

bool callerIsTraced() {
  DAG proc = Environment->frame->proc;
  return isTag(proc, PROC) && hasOption(proc, ini("trace"));
}

DAG remembered(const Callee& callee, DAG arguments) {
  if (!isTag(rememberOf(callee.procedure), HASHTAB)) return absent;
  DAG value = srchpc(callee.procedure, rememberKey(callee, arguments));
  if (value == absent) return value;
  bool traced =
      hasOption(callee.procedure, ini("trace")) || (showsRememberedCalls(*Environment->frame) && !callerIsTraced());
  if (traced) sendDebug(debugRemembered, callee.name, arguments, value, Environment->frame->procName);
  return value;
}

bool isInert(DAG x) { return lengthOf(x) == 4 && isMember(ini("inert"), x[3]); }

// A call of a stream is sent as it is, and the front end's reply is its value.
DAG sendToFrontEnd(DAG stream, DAG arguments) {
  DAG reply = switch2(new3(FUNCTION, stream, simpl(asSequence(arguments))));
  if (!reply) return null;
  if (isTag(reply, ERROR)) KorelException(simpl(reply[1]));
  return nerintokorel(reply);
}

// A call whose head stands for `value`, which is no procedure.
DAG evalWithoutProcedure(DAG x, DAG value) {
  DAG arguments = simpl(eval(x[2]));
  if (isStreamName(value)) return sendToFrontEnd(value, arguments);
  if (isNameOrIndexed(value)) return withParts(x, value, arguments);
  return evalsysf("evalapply", simpl(newSequence({simpl(value), simpl(new2(LIST, arguments))})));
}

DAG runProcedure(const Callee& callee, DAG arguments, DAG key);
DAG runPlain(DAG proc, DAG name, DAG a);

// What is told of a call before it runs.
[[gnu::noinline]] void observeEntry(DAG proc, DAG name) {
  prtprof(true, name, evaluationLevel);
  if (traceAllMode) instrumentOnEntry(name, proc);
}
inline bool isObserved() { return (optprofile | static_cast<int>(traceAllMode)) != 0; }

// The function that stands for the whole procedure, while nobody looks at calls.
inline DirectNative directFunction(DAG proc) {
  DAG body = bodyOf(proc);
  if (isImmediate(body) || !hasTag(body, FUNCTION)) return {};
  if (isObserved() || showsCalls(*Environment->frame)) return {};
  return directNative(proc);
}

// A call without a frame of what may change the values of names.
template <class Run>
[[gnu::always_inline]] inline DAG runFrameless(const LooseArguments& loose, Run run) {
  stepEvaluationClock();
  DAG value = run(loose.sequence);
  stepEvaluationClock();
  releaseLoose(loose);
  return value;
}

// A call without a frame of a function that reads or writes (bench/files.sh, lines of a file).
DAG runActing(NativeFunction function, DAG proc, DAG name, DAG x) {
  const LooseArguments loose = evalLooseArguments(x[2]);
  return runFrameless(loose, [=](DAG arguments) {
    const FramelessCall call{name, arguments, proc};
    PushFramelessCall(call);
    DAG value = function({arguments, name, x});
    PopErrorProc();
    return value;
  });
}

// A call without a frame of a function of the arguments. When it stands as it is, it is the same object.
DAG runPure(NativeFunction function, DAG name, DAG x) {
  DAG a = x[2], arguments = a;
  if (lengthOf(a) != 2) {
    arguments = simpl(eval(a));
    if (!isSequence(arguments)) arguments = simpl(new2(EXPSEQ, arguments));
  } else if (!isImmediate(a[1])) {
    DAG value = simpl(evalOperand(a[1]));
    if (value != a[1]) arguments = singleSequence(value);
  }
  if (DAG value = function({arguments, name, x})) return value;
  return arguments == a && name == x[1] ? x : new3(FUNCTION, name, arguments);
}

DAG runDirect(DirectNative native, DAG proc, DAG name, DAG x) {
  if (native.calls == DirectCalls::pure) return runPure(native.function, name, x);
  return runActing(native.function, proc, name, x);
}

// Evaluating the arguments has given the procedure a value to remember.
DAG runUnlessRemembered(const Callee& callee, DAG arguments) {
  arguments = simpl(arguments);
  DAG value = remembered(callee, arguments);
  return value != absent ? value : runProcedure(callee, arguments, arguments);
}

// External code whose wrapper only converts, without a frame; 0 when it is to be called as others are.
DAG runPlainExternal(DAG proc, DAG name, DAG x) {
  if (isObserved() || (stepLevel | evalTimeLimit | pollWanted) != 0 || showsCalls(*Environment->frame)) return DAG();
  const ExternalCode* found = framelessCode(proc);
  if (found == nullptr) return DAG();
  const ExternalCode code = *found;
  const LooseArguments loose = evalLooseArguments(x[2]);
  if (rememberOf(proc) != null) [[unlikely]]
    return runUnlessRemembered({proc, name, DAG()}, loose.sequence);
  return runFrameless(loose, [&](DAG arguments) {
    const FramelessCall call{name, arguments, proc};
    return CallExternal(code, arguments, &call);
  });
}

[[gnu::noinline]] DAG evalOtherCall(DAG x) {
  DAG head = x[1], a = x[2];
  if (isTag(head, UNEVAL)) return withParts(x, eval(head), eval(a));
  Callee callee = findCallee(head);
  if (isInert(x)) return withParts(x, isNameOrIndexed(callee.name) ? callee.name : head, simpl(eval(a)));
  DAG proc = callee.procedure;
  if (!isTag(proc, PROC)) return evalWithoutProcedure(x, proc);
  if (isBuiltin(proc)) {
    if (lengthOf(optionsOf(proc)) > 2 && hasOption(proc, ini("trace")))
      sendDebug(debugBuiltin, callee.name, evparloc(a));
    return callBuiltin(immediateValue(bodyOf(proc)), x, callee.name);
  }
  if ((isPlain(proc) || isPlainExternal(proc)) && !callee.index && isTag(a, EXPSEQ)) {
    if (DirectNative native = directFunction(proc); native.function != nullptr)
      return runDirect(native, proc, callee.name, x);
    return runPlain(proc, callee.name, a);
  }
  DAG arguments = evalArguments(proc, a);
  DAG value = remembered(callee, arguments);
  if (value != absent) return value;
  return runProcedure(callee, arguments, rememberKey(callee, arguments));
}

}  // namespace

DAG evalFunction(DAG x) {
  checkStack();
  DAG name = nameOfPlainCallee(x[1]);
  if (name && lengthOf(x) == 3 && isTag(x[2], EXPSEQ)) {
    // Most calls are of a procedure without options, on plain arguments.
    DAG proc = name[1];
    if (isPlain(proc)) {
      if (DirectNative native = directFunction(proc); native.function != nullptr)
        return runDirect(native, proc, name, x);
      return runPlain(proc, name, x[2]);
    }
    if (isBuiltin(proc) && lengthOf(optionsOf(proc)) == 2) return callBuiltin(immediateValue(bodyOf(proc)), x, name);
    if (isPlainExternal(proc)) {  // bench/external.sh
      if (DAG value = runPlainExternal(proc, name, x)) return value;
      return runPlain(proc, name, x[2]);
    }
  }
  return evalOtherCall(x);
}

// ---- the frame of a call

namespace {

// A type evaln(t) or name(t): the argument is a name, and its value of the type t.
bool isTypeOfNamed(DAG type) {
  return (isCallOf(type, ini("evaln")) || isCallOf(type, ini("name"))) && lengthOf(type[2]) == 2;
}

void checkParameter(DAG declaration, DAG argument, Word position, DAG name) {
  DAG declared = declaration[2];
  if (declared == ini("evaln") || declared == ini("uneval")) return;
  evaluationLevel += procedureLevels;
  declared = simpl(declared);
  const bool byName = isTypeOfNamed(declared) && isNameOrIndexed(argument);
  const bool matches = byName ? type(mvalue(argument), declared[2][1]) : type(argument, declared);
  evaluationLevel -= procedureLevels;
  if (matches) return;
  DAG parameter = simpl(newLocalName(textOf(declaredName(declaration))));
  prtprof(false, name, evaluationLevel);
  DAG shown = byName ? new3(ASSIGN, argument, mvalue(argument)) : argument;
  KernelException("%1 expects its %-2 argument, %3, to be of type %4, but received %5", name,
                  immediate(static_cast<std::int32_t>(position)), parameter, declared, shown);
}

void checkParameters(DAG proc, DAG arguments, DAG name) {
  DAG declarations = paramsOf(proc);
  const Word n = std::min(lengthOf(declarations), lengthOf(arguments));
  for (Word i = 1; i < n; ++i)
    if (isTag(declarations[i], DCOLON)) checkParameter(declarations[i], arguments[i], i, name);
}

// A fresh instance of one declared local: a name distinct from every other, typed at level 2 only.
DAG freshLocal(DAG declaration, DAG attribute) {
  bool typed = isTag(declaration, DCOLON);
  DAG name = CopyAlg(typed ? declaration[1] : declaration);
  name[1] = DAG();
  name[2] = attribute;
  if (!typed || optASSERT < 2) return name;
  DAG instance = CopyAlg(declaration);
  instance[1] = name;
  return instance;
}

}  // namespace

DAG freshLocals(DAG declarations, DAG attribute) {
  Word n = lengthOf(declarations);
  if (n == 1) return null;
  DAG locals = newl2(n, EXPSEQ);
  for (Word i = n - 1; i >= 1; --i) locals[i] = freshLocal(declarations[i], attribute);
  return locals;
}

void releaseLocals(DAG locals) {
  if (locals == null) return;
  for (Word i = 1, n = lengthOf(locals); i < n; ++i) {
    DAG entry = locals[i];
    if (isTag(entry, DCOLON)) {
      if (!isSimplified(entry[1])) release(entry[1], lengthOf(entry[1]));
      continue;
    }
    // A name that no result refers to has never been through the simplifier.
    if (!isSimplified(entry)) release(entry, lengthOf(entry));
  }
  release(locals, lengthOf(locals));
}

static inline std::int32_t globalPrintLevel() {
  DAG level = ini("printlevel")[1];
  return level && isImmediate(level) ? immediateValue(level) : 1;
}

std::int32_t framePrintLevel(DAG procedure) {
  std::int32_t value = globalPrintLevel();
  if (optionsOf(procedure) != null && !isExternalWrapper(procedure) && hasOption(procedure, ini("trace")))
    value = tracedPrintLevel;
  return value;
}

namespace {

// What one call keeps over the jumps that can arrive in it. The constructor writes each field of the frame
// once: to clear the record before it is filled would be a tenth of a short call (bench/programs/fibonacci.krl).
struct CallState {
  EnvironmentBlock block;
  Frame frame;
  EnvironmentBlock* previous;
  bool traced;

  [[gnu::always_inline]] CallState(DAG proc, DAG name, DAG arguments, std::int32_t printLevel)
      : frame{
            .previousFrame = Environment->frame,
            .printLevel = printLevel,
            .locals = localsOf(proc) == null ? null : freshLocals(localsOf(proc), null),
            .args = arguments,
            .procName = name,
            .proc = proc,
            .currentStatement = bodyOf(proc),
            .currentPlace = &bodyOf(proc),
            .ditto1 = null,
            .ditto2 = null,
            .ditto3 = null,
            .inCondition = ini("false"),
            .envVars = Environment->frame->envVars,
        } {
    stepEvaluationClock();
  }
};

[[gnu::always_inline]] inline void leaveFrame(CallState& call, bool keepEnvironment) {
  DAG block = call.frame.envVars;
  RestoreEnvironment(call.previous);
  stepEvaluationClock();  // environment variables may have values again
  if (!keepEnvironment && block != Environment->frame->envVars) release(block, lengthOf(block));
}

DAG runGoto(CallState& call) {
  DAG label = funret[2][1];
  DAG value = evalgoto(bodyOf(call.frame.proc), label);
  if (!value) KernelException("goto to an undefined or unreachable label");
  return value;
}

bool isGoto(DAG x) { return isCallOf(x, ini("goto")) && isSequence(x[2]) && lengthOf(x[2]) > 1; }

// Whether the body, one call of a built-in, may run at once: nothing comes before that statement, and its value isn't
// shown.
bool runsAtOnce(const Frame& frame) { return (stepLevel | evalTimeLimit | pollWanted) == 0 && !showsValues(frame); }

// External code has a body of one call (bench/external.sh).
DAG runExternalBody(const Frame& frame) {
  DAG body = bodyOf(frame.proc);
  const bool isUsual = isCallOf(body, ini("call_external")) && isTag(body[1][1], PROC) && isBuiltin(body[1][1]);
  if (!isUsual || !runsAtOnce(frame)) return evalstat(body, modeInner);
  ++evaluationLevel;
  return callBuiltin(immediateValue(bodyOf(body[1][1])), body, body[1]);
}

// So has a procedure of the library whose work a function of the kernel does (bench/files.sh, lines of a file).
DAG runNativeBody(NativeFunction function, const Frame& frame) {
  ++evaluationLevel;
  stepEvaluationClock();
  DAG value = function({frame.args, frame.procName, bodyOf(frame.proc)});
  if (!value) value = new3(FUNCTION, frame.procName, frame.args);
  value = singleMember(simpl(value));
  stepEvaluationClock();
  return value;
}

inline DAG runStatements(const Frame& frame) {
  // Either has a body of one call; most bodies are something else (bench/programs/fibonacci.krl).
  DAG body = bodyOf(frame.proc);
  if (isImmediate(body) || !hasTag(body, FUNCTION)) [[likely]]
    return evalstat(body, modeInner);
  if (isExternalWrapper(frame.proc)) return runExternalBody(frame);
  if (NativeFunction function = nativeBody(frame.proc); function != nullptr && runsAtOnce(frame))
    return runNativeBody(function, frame);
  return evalstat(body, modeInner);
}

DAG runBody(CallState& call) {
  std::jmp_buf buffer;
  std::int32_t entryLevel = evaluationLevel;
  call.previous = enterEnvironment(call.block, buffer);
  call.block.frame = &call.frame;
  int code = ::_setjmp(buffer);
  if (code == 0) {
    if (call.traced) [[unlikely]]
      sendDebug(debugEnter, call.frame.procName, call.frame.args = simpl(call.frame.args));
    evaluationLevel += procedureLevels;
    return runStatements(call.frame);
  }
  Environment = &call.block;
  switch (code) {
    case jumpReturn: evaluationLevel = entryLevel + procedureLevels; return isGoto(funret) ? runGoto(call) : funret;
    case jumpBreak: RestoreEnvironment(call.previous); KernelException("break or next outside do loop");
    case jumpError: {
      bool innermost = recordTraceLevel(call.frame);
      if (!innermost) releaseLocals(call.frame.locals);
      DAG caller = callerName(call.frame);
      leaveFrame(call, innermost);
      prtprof(false, call.frame.procName, evaluationLevel);
      if (SpecialError != noSpecialError) EnterDebugger();
      if (call.traced) sendDebug(debugErrorExit, call.frame.procName, ini("lasterror")[1], caller);
      jumpOut(jumpError);
    }
    default:
      RestoreEnvironment(call.previous);
      if (code == jumpStop) jumpOut(jumpStop);
      return null;
  }
}

// Runs the body in a frame of its own, up to the point where an error in what follows goes to the caller.
inline DAG runInFrame(CallState& call) {
  call.traced = showsCalls(call.frame);
  DAG result = runBody(call);
  call.block.jumpBuffer = call.previous->jumpBuffer;
  if (call.frame.locals != null) releaseLocals(call.frame.locals);
  return result;
}

// What is told of a call that has run.
[[gnu::noinline]] void observeExit(const CallState& call, DAG result) {
  if (call.traced) sendDebug(debugExit, call.frame.procName, result, callerName(call.frame));
  if (optprofile != 0) prtprof(false, call.frame.procName, evaluationLevel);
}

[[gnu::always_inline]] inline DAG finishCall(CallState& call, DAG result) {
  leaveFrame(call, false);
  if ((static_cast<int>(call.traced) | optprofile) != 0) [[unlikely]]
    observeExit(call, result);
  updategen(result);
  return result;
}

DAG runProcedure(const Callee& callee, DAG arguments, DAG key) {
  checkStack();
  DAG proc = callee.procedure;
  if (isObserved()) [[unlikely]]
    observeEntry(proc, callee.name);
  if (lengthOf(paramsOf(proc)) > 1) checkParameters(proc, arguments, callee.name);
  if (bodyOf(proc) == InertProc) {
    prtprof(false, callee.name, evaluationLevel);
    return simpl(new3(FUNCTION, callee.name, arguments));
  }
  CallState call(proc, callee.name, arguments, framePrintLevel(proc));
  DAG result = runInFrame(call);
  if (!isExternalWrapper(proc) && hasOption(proc, ini("remember"))) pcinsert(proc, key, result = simpl(result));
  return finishCall(call, result);
}

// The call of a procedure without remembered values, and without options or of external code.
DAG runPlain(DAG proc, DAG name, DAG a) {
  const bool typed = hasTypes(paramsOf(proc));
  LooseArguments loose = typed ? LooseArguments{evalArguments(proc, a), false} : evalLooseArguments(a);
  DAG arguments = loose.sequence;
  if (rememberOf(proc) != null) [[unlikely]]
    return runUnlessRemembered({proc, name, DAG()}, arguments);
  if (bodyOf(proc) == InertProc) [[unlikely]]
    return runProcedure({proc, name, DAG()}, simpl(arguments), null);
  if (isObserved()) [[unlikely]]
    observeEntry(proc, name);
  if (typed) checkParameters(proc, arguments, name);
  CallState call(proc, name, arguments, globalPrintLevel());
  DAG result = runInFrame(call);
  // Who has asked for the arguments as a whole has simplified them.
  releaseLoose(loose);
  return finishCall(call, result);
}

}  // namespace

DAG evalfunc(DAG proc, DAG arguments, DAG name) {
  const bool isIndexed = isTag(name, TABLEREF) && isName(name[1]) && NAMED_PROC(name[1]);
  const Callee callee{proc, name, isIndexed ? name[2] : DAG()};
  return runProcedure(callee, arguments, rememberKey(callee, arguments));
}

}  // namespace korel
