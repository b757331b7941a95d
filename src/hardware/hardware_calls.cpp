#include "hardware/hardware_calls.h"

#include <algorithm>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/procedures.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "hardware/hardware_arrays.h"
#include "hardware/hardware_value.h"
#include "hardware/interpreter.h"
#include "hardware/machine.h"
#include "numbers/integer/integer.h"
#include "rtable/rtable_kind.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

bool hardwareCompiles = true;

namespace {

// ---- the procedure

DAG procedureBehind(DAG head) {
  switch (tagOf(head)) {
    case LEXICAL: KernelException("lexical scoping is not supported in evalhf");
    case LOCAL: case PARAM:
      if (HFStack != nullptr) return hfevalToProc(head);
      break;
    case NAME:
      if (isTag(head[1], PROC) && !isEnvironmentName(head)) return head[1];
      break;
    default: break;
  }
  DAG value = eval(head);
  if (isName(value)) value = valuenv(value, true);
  if (!isTag(value, PROC)) KernelException("unable to evaluate function `%1` in evalhf", head);
  return value;
}

// ---- arguments

// What the operand of `var` stands for, as far as it's no variable of a frame.
DAG containerBehind(DAG x) {
  if (HFStack != nullptr && (isTag(x, LOCAL) || isTag(x, PARAM))) return DAG();
  if (!isAmong(x, TagSet{NAME, LOCAL, PARAM, LEXICAL, TABLE, RTABLE})) return DAG();
  DAG value = eval(x);
  if (isName(value)) value = valuenv(value, true);
  return isTag(value, TABLE) || isTag(value, RTABLE) ? value : DAG();
}

}  // namespace

bool isVarForm(DAG x) {
  return isTag(x, FUNCTION) && isName(x[1]) && hasText(x[1], "var") && isSequence(x[2]) && memberCount(x[2]) == 1;
}

DAG calleeOf(DAG head) {
  DAG procedure = procedureBehind(head);
  if (hasOption(procedure, ini("builtin")))
    KernelException("unable to evaluate built-in function `%1` in evalhf", head);
  if (lexicalsOf(procedure) != null) KernelException("lexical scoping is not supported in evalhf");
  if (rememberOf(procedure) != null || hasOption(procedure, ini("remember")))
    KernelException("remember tables are not supported in evalhf");
  return procedure;
}

void checkCallLimits(DAG procedure, Word count) {
  if (count > mostArguments) KernelException("evalhf: more than %1 arguments", immediate(mostArguments));
  if (memberCount(localsOf(procedure)) > mostLocals)
    KernelException("evalhf: more than %1 locals", immediate(mostLocals));
}

PassedArgument passArgument(DAG x) {
  if (!isVarForm(x)) return {hfeval(x), DAG()};
  DAG container = containerBehind(x[2][1]);
  if (!container) return {hfeval(x[2][1]), DAG()};
  return {hfeval(container), IsHFArrayRTable(container) ? DAG() : container};
}

void writeBackArguments(const PassedArgument* arguments, Word count) {
  for (Word i = 0; i < count; ++i)
    if (isWrittenBack(arguments[i]) && isArrayValue(arguments[i].value))
      writeBackArray(referredObject(arguments[i].value), arguments[i].writeTo);
}

double walkProcedure(DAG procedure, double* arguments, int count) {
  double locals[mostLocals] = {};
  HardwareFrame frame{
      {},      HFStack, arguments, locals, count, procedure, static_cast<int>(memberCount(localsOf(procedure))),
      nullptr, true};
  std::jmp_buf buffer;
  std::jmp_buf* outer = HFjumpbuffer;
  HFjumpbuffer = &buffer;
  HFStack = &frame;
  double result = 0.0;
  switch (::_setjmp(buffer)) {
    case 0: result = hfstat(bodyOf(procedure)); break;
    case hardwareReturn: result = HFReturn; break;
    case hardwareBreak: KernelException("break outside for loop in evalhf");
    default: KernelException("next outside for loop in evalhf");
  }
  HFjumpbuffer = outer;
  HFStack = frame.link;
  return result;
}

double hfevalfunc(DAG call) {
  checkStack();
  DAG procedure = calleeOf(call[1]), operands = call[2];
  const Word count = isSequence(operands) ? memberCount(operands) : 1;
  checkCallLimits(procedure, count);
  PassedArgument passed[mostArguments];
  double arguments[mostArguments];
  bool writesBack = false;
  for (Word i = 0; i < count; ++i) {
    passed[i] = passArgument(isSequence(operands) ? operands[i + 1] : operands);
    arguments[i] = passed[i].value;
    writesBack |= isWrittenBack(passed[i]);
  }
  const double result = runProcedure(procedure, arguments, static_cast<int>(count));
  if (writesBack) writeBackArguments(passed, count);
  return result;
}

}  // namespace korel
