#include "debug/stopped_frames.h"

#include <csetjmp>

#include "debug/break_points.h"
#include "debug/debugger.h"
#include "debug/listing.h"
#include "debug/statement_walk.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "library/native/native.h"
#include "numbers/integer/integer.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/print/convert_text.h"
#include "text/read/source.h"

namespace korel {

namespace {

// The frame below which the calls of the dialogue begin: of the dialogue, or of a command that it has given.
bool beginsDialogue(const Frame& frame) {
  DAG name = frame.procName;
  return name && isText(name) && (hasText(name, "debugger") || hasText(name, "debugger/value"));
}

DAG listOf(std::initializer_list<DAG> members) { return simpl(new2(LIST, simpl(newSequence(members)))); }

}  // namespace

Frame* stoppedFrame(std::int64_t k) {
  Frame* frame = Environment->frame;
  while (frame != nullptr && !beginsDialogue(*frame)) frame = frame->previousFrame;
  if (frame != nullptr) frame = frame->previousFrame;
  for (; frame != nullptr && k > 0; --k) frame = frame->previousFrame;
  return frame;
}

// ---- commands

namespace {

bool isAssignment(DAG x) { return isTag(x, ASSIGN) && !isSequence(x[1]); }

// Gives parameter `n` of `frame` another argument.
void replaceArgument(Frame& frame, Word n, DAG value) {
  if (n < 1 || n > memberCount(frame.args)) KernelException("the parameter has no argument");
  DAG args = CopyAlg(simpl(frame.args));
  args[n] = value;
  frame.args = simpl(args);
  updategens(frame.args);
  stepEvaluationClock();
}

DAG runStatement(Frame& frame, DAG statement) {
  if (isAssignment(statement) && isTag(statement[1], PARAM)) {
    const auto n = static_cast<std::int32_t>(rawField(statement[1], 1));
    if (n > 0 && !isNameOrIndexed(simpl(eval(statement[1])))) {
      DAG value = singleMember(simpl(eval(statement[2])));
      replaceArgument(frame, static_cast<Word>(n), value);
      return value;
    }
  }
  return evalstat(statement, modeParse);
}

}  // namespace

DAG evaluateIn(Frame& frame, const char* text) {
  DAG statement = parsestring(text, true);
  if (!statement || statement == null) return null;
  statement = nerintokorel(statement);
  if (isDefinition(frame.proc)) statement = SimplifyMaybeBind(simplfnc(statement, frame.proc, null), false);
  const DAG running = frame.currentStatement;
  const DAG* const place = frame.currentPlace;
  std::jmp_buf buffer;
  EnvironmentBlock block;
  EnvironmentBlock* previous = enterEnvironment(block, buffer);
  block.frame = &frame;
  const int code = ::_setjmp(buffer);
  if (code != 0) {
    Environment = &block;
    RestoreEnvironment(previous);
    frame.currentStatement = running;
    frame.currentPlace = place;
    // The jump would end the procedure of the library that has called.
    if (code == jumpReturn || code == jumpBreak) KernelException("return, break, or next out of context");
    jumpOut(static_cast<JumpCode>(code));
  }
  DAG value = runStatement(frame, statement);
  RestoreEnvironment(previous);
  frame.currentStatement = running;
  frame.currentPlace = place;
  updategens(value);
  // Until the dialogue puts them back, the ditto values are those of commands.
  if (&frame == stoppedFrame(0) && value != null) {
    frame.ditto3 = frame.ditto2;
    frame.ditto2 = frame.ditto1;
    frame.ditto1 = value;
    stepEvaluationClock();
  }
  return value;
}

// ---- what the library asks for

namespace {

Frame& frameAt(const BuiltinCall& call) {
  if (argumentCount(call) < 1 || !isImmediate(call.arguments[1])) wrongParameters(call);
  Frame* frame = stoppedFrame(immediateValue(call.arguments[1]));
  if (frame == nullptr) KernelException("there is no call %1", call.arguments[1]);
  return *frame;
}

DAG variable(DAG declaration, DAG value) {
  return listOf(
      {ConvertToString(declaredName(declaration)), simpl(new2(LIST, simpl(asSequence(value ? value : null))))});
}

}  // namespace

DAG native::debuggerValue(const BuiltinCall& call) {
  if (argumentCount(call) != 2 || !isText(call.arguments[2])) wrongParameters(call);
  return evaluateIn(frameAt(call), textOf(call.arguments[2]));
}

DAG native::debuggerCalls(const BuiltinCall&) {
  DAG calls = null;
  Frame* frame = stoppedFrame(0);
  for (Frame* f = frame; f != nullptr; f = f->previousFrame) {
    StatementPlace place;
    const DAG definition = isDefinition(f->proc) ? f->proc : DAG();
    const DAG statement = f == frame && currentStatement ? currentStatement : f->currentStatement;
    const DAG* field = f == frame && currentField != nullptr ? currentField : f->currentPlace;
    const bool found = definition && statement && placeOfStatement(definition, statement, field, place);
    DAG name = f->previousFrame == nullptr ? null : f->procName;
    DAG text = found                            ? statementLine(definition, place)
               : statement && statement != null ? ConvertToString(statementName(definition, statement))
                                                : strinstall("");
    DAG args = simpl(new2(LIST, f->args ? simpl(f->args) : null));
    calls = newSequence({calls, listOf({ConvertToString(name), immediate(found ? place.number : 0), text, args})});
    calls = simpl(calls);
  }
  return new2(LIST, calls);
}

DAG native::debuggerVariables(const BuiltinCall& call) {
  Frame& frame = frameAt(call);
  if (!isDefinition(frame.proc)) return emptylist;
  DAG variables = null;
  if (isTag(frame.proc, PROC)) {
    DAG parameters = paramsOf(frame.proc), args = simpl(frame.args);
    for (Word i = 1; i < lengthOf(parameters); ++i)
      variables = simpl(newSequence({variables, variable(parameters[i], i < lengthOf(args) ? args[i] : DAG())}));
  }
  DAG locals = localsOf(frame.proc);
  for (Word i = 1; i < lengthOf(locals) && i < lengthOf(frame.locals); ++i)
    variables = simpl(newSequence({variables, variable(locals[i], declaredName(frame.locals[i])[1])}));
  return new2(LIST, variables);
}

DAG native::debuggerText(const BuiltinCall& call) {
  if (call.arguments == null) return strinstall("");
  return FormattedConvertToString("%a", new2(EXPSEQ, call.arguments));
}

// The list [DEBUGWATCH, name, value...]: its members are not to be evaluated.
DAG native::debuggerAssignment(const BuiltinCall& call) {
  if (argumentCount(call) != 1 || !isTag(call.arguments[1], LIST)) wrongParameters(call);
  DAG report = call.arguments[1][1];
  if (memberCount(report) < 2) wrongParameters(call);
  DAG values = simpl(copydel(report, 0, 2));
  DAG text = FormattedConvertToString("%a := ", report[2]);
  return values == null ? text : FormattedConvertToString("%s%a", newSequence({text, singleMember(values)}));
}

DAG native::debuggerNesting(const BuiltinCall& call) {
  if (argumentCount(call) != 2 || !isImmediate(call.arguments[2])) wrongParameters(call);
  DAG procedure = debuggableProcedure(call.arguments[1]);
  StatementPlace place;
  const bool found = placeOfNumber(procedure, immediateValue(call.arguments[2]), place);
  return immediate(found ? place.depth : 0);
}

namespace {

// Collects the break points of a procedure: a visitor of the walk.
struct BreakPoints {
  DAG procedure;
  DAG found = null;
  std::int32_t count = 0;

  bool enter(const StatementPlace& place) {
    if (!isBreakPoint(place.wrapped())) return true;
    DAG condition = conditionOf(place.wrapped());
    DAG text = condition == null ? null : ConvertToString(statementName(procedure, singleMember(condition)));
    found = simpl(newSequence({found, listOf({immediate(place.number), text})}));
    return true;
  }
  bool part(const StatementPlace&, const StatementPart&) { return true; }
  void leave(const StatementPlace&) {}
};

}  // namespace

DAG native::debuggerBreaks(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  BreakPoints breaks{debuggableProcedure(call.arguments[1])};
  walkBody(breaks, breaks.procedure, procBody, 0);
  return new2(LIST, breaks.found);
}

}  // namespace korel
