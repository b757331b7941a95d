#include "hardware/hardware_forms.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "hardware/hardware_arrays.h"
#include "hardware/hardware_calls.h"
#include "hardware/hardware_functions.h"
#include "hardware/hardware_statements.h"
#include "hardware/hardware_value.h"
#include "hardware/interpreter.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

Word countOf(DAG call) { return isSequence(call[2]) ? memberCount(call[2]) : 1; }
DAG argumentOf(DAG call, Word i) { return isSequence(call[2]) ? call[2][i] : call[2]; }
void requireCount(DAG call, Word count) {
  if (countOf(call) != count) wrongHardwareArguments(call[1]);
}

// ---- sums and products

// Where the control variable of a sum stands while it runs; a name gets a place in the frame.
struct ControlVariable {
  double* place;
  double before;
  BoundVariable bound;
  bool isBound;
};

void openControl(ControlVariable& control, DAG variable) {
  control.isBound = false;
  if (HFStack != nullptr && isTag(variable, LOCAL)) {
    control.place = localPlace(variable);
  } else if (HFStack != nullptr && isTag(variable, PARAM)) {
    control.place = argumentPlace(variable);
  } else {
    int taken = HFStack == nullptr ? mostLocals : HFStack->nlocals;
    for (BoundVariable* b = HFStack == nullptr ? nullptr : HFStack->bound; b != nullptr; b = b->link) ++taken;
    if (!isName(variable) || taken >= mostLocals) KernelException("evalhf: cannot allocate control variable");
    control.bound = {variable, 0.0, HFStack->bound};
    HFStack->bound = &control.bound;
    control.place = &control.bound.value;
    control.isBound = true;
  }
  control.before = *control.place;
}
void closeControl(ControlVariable& control) {
  *control.place = control.before;
  if (control.isBound) HFStack->bound = control.bound.link;
}

struct Fold {
  double start;
  double (*step)(double total, double term);
};

// f(e, i = a..b): the terms from the lowest index on.
double foldOverRange(DAG call, Fold fold) {
  checkStack();
  requireCount(call, 2);
  DAG control = argumentOf(call, 2);
  if (!isTag(control, EQUATION) || !isTag(control[2], RANGE)) wrongHardwareArguments(call[1]);
  const double lowest = requireNumber(hfeval(control[2][1])), highest = requireNumber(hfeval(control[2][2]));
  ControlVariable variable;
  openControl(variable, control[1]);
  double total = fold.start;
  for (double i = lowest; i <= highest; i += 1.0) {
    countHardwareStep();
    *variable.place = i;
    total = fold.step(total, hfevalToNumeric(argumentOf(call, 1)));
  }
  closeControl(variable);
  return total;
}
double sumForm(DAG call) {
  return foldOverRange(call, {0.0, [](double total, double term) { return total + term; }});
}
double productForm(DAG call) {
  return foldOverRange(call, {1.0, [](double total, double term) { return total * term; }});
}

// ---- choices

double piecewiseForm(DAG call) {
  checkStack();
  const Word n = countOf(call);
  for (Word i = 1; i + 1 <= n; i += 2)
    if (hfboolean(argumentOf(call, i))) return hfeval(argumentOf(call, i + 1));
  return n % 2 == 1 ? hfeval(argumentOf(call, n)) : 0.0;
}

double ifForm(DAG call) {
  checkStack();
  requireCount(call, 3);
  return hfeval(argumentOf(call, hfboolean(argumentOf(call, 1)) ? 2 : 3));
}

double typeForm(DAG call) {
  requireCount(call, 2);
  return hfHasType(argumentOf(call, 1), argumentOf(call, 2)) ? 1.0 : 0.0;
}

// ---- what leaves the evaluator

// Values of the arguments from `first` on as expressions; texts stay.
DAG expressionsOf(DAG arguments, Word first) {
  DAG sequence = newl2(lengthOf(arguments) - first + 1, EXPSEQ);
  for (Word i = first; i < lengthOf(arguments); ++i)
    sequence[i - first + 1] = isTag(arguments[i], STRING) ? arguments[i] : expressionOf(hfeval(arguments[i]));
  return simpl(sequence);
}

// The built-in function, which may run procedures of the user: what was known of objects may be out of date then.
double runOutside(DAG function, DAG arguments) {
  eval(simpl(new3(FUNCTION, function, arguments)));
  ++hardwareEpoch;
  return 0.0;
}
double printForm(DAG call) { return runOutside(call[1], expressionsOf(asSequence(call[2]), 1)); }

double userinfoForm(DAG call) {
  DAG arguments = asSequence(call[2]);
  if (lengthOf(arguments) < 4) wrongHardwareArguments(call[1]);
  DAG values = expressionsOf(arguments, 3);
  DAG level = simpl(Newint(static_cast<std::int32_t>(hfevalToNumeric(arguments[1]))));
  return runOutside(call[1], simpl(newSequence({level, arguments[2], values})));
}

double timeForm(DAG call) {
  const double start = countOf(call) == 0 ? 0.0 : cptime();
  for (Word i = 1; i <= countOf(call); ++i) hfeval(argumentOf(call, i));
  return cptime() - start;
}

[[noreturn]] double errorForm(DAG call) { raiseHardwareError(call[2]); }

double returnForm(DAG call) {
  if (HFStack == nullptr || !HFStack->isWalked) KernelException("return out of context");
  HFReturn = hfeval(call[2]);
  jumpInHardware(hardwareReturn);
}

double evalhfForm(DAG call) {
  requireCount(call, 1);
  return hfeval(argumentOf(call, 1));
}

double arrayForm(DAG call) { return hfarray(call[2]); }

// A statement under the debugger's eye: TRACE(position, ..., statement).
double traceForm(DAG call) {
  requireCount(call, 3);
  return hfeval(argumentOf(call, 3));
}

struct FormRow {
  const char* name;
  HardwareForm form;
};
// In the order of `strcmp`.
constexpr FormRow forms[] = {
    // name             form
    {"ERROR",          errorForm},
    {"Product",        productForm},
    {"RETURN",         returnForm},
    {"Sum",            sumForm},
    {"TRACE",          traceForm},
    {"add",            sumForm},
    {"array",          arrayForm},
    {"evalhf",         evalhfForm},
    {"evalhf_polynom", evalhf_polynom},
    {"hfarray",        arrayForm},
    {"if",             ifForm},
    {"lprint",         printForm},
    {"mul",            productForm},
    {"piecewise",      piecewiseForm},
    {"print",          printForm},
    {"product",        productForm},
    {"sum",            sumForm},
    {"time",           timeForm},
    {"type",           typeForm},
    {"userinfo",       userinfoForm},
};

// ---- functions of numbers

double foldArguments(const HardwareFunction& f, DAG call) {
  const Word n = countOf(call);
  if (n == 0) wrongHardwareArguments(call[1]);
  double value = hfevalToNumeric(argumentOf(call, 1));
  for (Word i = 2; i <= n; ++i) value = f.two(value, hfevalToNumeric(argumentOf(call, i)));
  return value;
}

double applyFunction(const HardwareFunction& f, DAG call) {
  if (f.arity == HardwareArity::fold) return foldArguments(f, call);
  switch (countOf(call)) {
    case 1:
      if (f.one != nullptr) return f.one(hfevalToNumeric(argumentOf(call, 1)));
      break;
    case 2:
      if (f.two != nullptr) {
        const double a = hfevalToNumeric(argumentOf(call, 1));
        return f.two(a, hfevalToNumeric(argumentOf(call, 2)));
      }
      break;
    default: break;
  }
  wrongHardwareArguments(call[1]);
}

}  // namespace

void raiseHardwareError(DAG arguments) {
  arguments = asSequence(arguments);
  DAG sequence = CopyAlg(arguments);
  // A message may be a name as well.
  for (Word i = 1; i < lengthOf(arguments); ++i)
    if (!isTag(arguments[i], STRING) && !(i == 1 && isName(arguments[i])))
      sequence[i] = expressionOf(hfeval(arguments[i]));
  KorelException(simpl(sequence));
}

HardwareForm hardwareForm(const char* name) {
  auto before = [](const FormRow& row, const char* text) { return std::strcmp(row.name, text) < 0; };
  const FormRow* row = std::lower_bound(std::begin(forms), std::end(forms), name, before);
  return row != std::end(forms) && std::strcmp(row->name, name) == 0 ? row->form : nullptr;
}

double hfevalFunction(DAG call) {
  checkStack();
  countHardwareStep();
  DAG name = call[1];
  // A name may stand for another one, as f := sin.
  for (int steps = 0; isTag(name, NAME) && steps < 100; ++steps) {
    if (const HardwareFunction* f = hardwareFunction(textOf(name))) return applyFunction(*f, call);
    if (HardwareForm form = hardwareForm(textOf(name))) return form(call);
    name = name[1];
  }
  return hfevalfunc(call);
}

}  // namespace korel
