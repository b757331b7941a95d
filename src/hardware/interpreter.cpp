#include "hardware/interpreter.h"

#include <cmath>
#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "hardware/hardware_arrays.h"
#include "hardware/hardware_cache.h"
#include "hardware/hardware_functions.h"
#include "hardware/hardware_power.h"
#include "hardware/hardware_value.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer_functions.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

[[noreturn]] void refuseExpression() { KernelException("unable to evaluate expression to hardware floats"); }

// ---- variables

constexpr std::int32_t argumentCountParam = 0;

// `%`, `%%` and `%%%` of the running frame, 0 to 2; or -1.
int dittoOf(DAG name) {
  if (textOf(name)[0] != '%') return -1;
  return name == ini("%") ? 0 : name == ini("%%") ? 1 : name == ini("%%%") ? 2 : -1;
}

// The double of what a variable stands for outside the evaluator's frames; `x` is the name itself, or 0.
double valueOfVariable(DAG x, DAG value) {
  if (isName(value) && value == x) KernelException("cannot handle unevaluated name `%1` in evalhf", value);
  return hfeval(isSimplified(value) ? value : simpl(value));
}

double valueOfName(DAG x) {
  checkStack();
  if (HFStack != nullptr) {
    for (BoundVariable* bound = HFStack->bound; bound != nullptr; bound = bound->link)
      if (bound->name == x) return bound->value;
    if (int ditto = dittoOf(x); ditto >= 0) return HFStack->ditto[ditto];
  }
  double constant;
  if (hardwareConstant(textOf(x), constant)) return constant;
  return valueOfVariable(x, valuenv(x, true));
}

double valueOfParam(DAG x) {
  if (HFStack == nullptr) return valueOfVariable(DAG(), eval(x));
  if (static_cast<std::int32_t>(rawField(x, 1)) == argumentCountParam) return HFStack->nargs;
  return *argumentPlace(x);
}

// ---- arithmetic

double valueOfSum(DAG x) {
  checkStack();
  double sum = 0.0;
  for (Word i = 1, n = lengthOf(x); i < n; i += 2) {
    double term = hfevalToNumeric(x[i]);
    if (x[i + 1] != cons1) term *= hfevalToNumeric(x[i + 1]);
    sum = i == 1 ? term : sum + term;
  }
  return sum;
}

double valueOfProduct(DAG x) {
  checkStack();
  double product = 1.0;
  for (Word i = 1, n = lengthOf(x); i < n; i += 2) {
    const double base = hfevalToNumeric(x[i]);
    if (x[i + 1] == cons1) {
      product *= base;
    } else if (x[i + 1] == consm1) {
      if (base == 0.0) KernelException("division by zero");
      product /= base;
    } else {
      product *= hfpow(base, hfevalToNumeric(x[i + 1]));
    }
  }
  return product;
}

double valueOfPower(DAG x) {
  checkStack();
  const double base = hfevalToNumeric(x[1]);
  return hfpow(base, hfevalToNumeric(x[2]));
}

double valueOfComplex(DAG x) {
  DAG imaginary = x[lengthOf(x) - 1];
  const bool isZero = isZeroImmediate(imaginary) || isFloatZero(imaginary) ||
                      (isTag(imaginary, HFLOAT) && hfloatValue(imaginary) == 0.0);
  if (!isZero) KernelException("evalhf: result is not a number");
  return lengthOf(x) == 2 ? 0.0 : hfevalToNumeric(x[1]);
}

double valueOfElement(DAG x) {
  checkStack();
  DAG array = hfevalToArray(x[1]);
  return *hfarrayref(array, x[2]);
}

double valueOfSequence(DAG x) {
  if (lengthOf(x) == 1) return 0.0;
  if (lengthOf(x) == 2) return hfeval(x[1]);
  KernelException("cannot evaluate sequences in evalhf");
}

double valueOfCondition(DAG x) {
  checkStack();
  return hfboolean(x) ? 1.0 : 0.0;
}

}  // namespace

double* argumentPlace(DAG param) {
  const auto n = static_cast<std::int32_t>(rawField(param, 1));
  if (n <= 0) KernelException("evalhf cannot use procname or args");
  if (n > HFStack->nargs) KernelException("function called with fewer arguments than expected");
  return &HFStack->args[n - 1];
}

double* localPlace(DAG local) { return &HFStack->locals[rawField(local, 1) - 1]; }

double hfNumber(DAG x) {
  if (isImmediate(x)) return immediateValue(x);
  double value;
  if (findCachedNumber(x, value)) return value;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: value = IntegerToDouble(x); break;
    case RATIONAL: value = IntegerToDouble(x[1]) / IntegerToDouble(x[2]); break;
    case FLOAT: value = SoftwareToHardwareFloat(x); break;
    default: value = valueOfComplex(x); break;
  }
  if (fp_class_d(value) == signallingNaN) KernelException("evalhf: result is not a number");
  cacheNumber(x, value);
  return value;
}

double hfeval(DAG x) {
  if (isImmediate(x)) return immediateValue(x);
  switch (tagOf(x)) {
    case HFLOAT: return hfloatValue(x);
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case COMPLEX: return hfNumber(x);
    case NAME: return valueOfName(x);
    case LOCAL: return HFStack != nullptr ? *localPlace(x) : valueOfVariable(DAG(), eval(x));
    case PARAM: return valueOfParam(x);
    case LEXICAL: KernelException("lexical scoping is not supported in evalhf");
    case SUM: return valueOfSum(x);
    case PROD: return valueOfProduct(x);
    case POWER: return valueOfPower(x);
    case DCOLON: return hfeval(x[1]);
    case TABLEREF: return valueOfElement(x);
    case FUNCTION: return hfevalFunction(x);
    case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT: case OR: return valueOfCondition(x);
    case EXPSEQ: return valueOfSequence(x);
    case TABLE: return hfloadarray(x);
    case RTABLE: return hfloadrtable(x);
    case PROC: return referenceTo(x, procedureMark);
    case ASSIGN: case IF: case FOR: case RETURN: case BREAK: case NEXT: case ERROR: return hfevalStatement(x);
    default: refuseExpression();
  }
}

double hfevalToNumeric(DAG x) {
  if (isImmediate(x)) return immediateValue(x);
  return requireNumber(hfeval(x));
}

DAG hfevalToArray(DAG x) { return hfarraydes(hfeval(x)); }
DAG hfevalToProc(DAG x) { return procedureOf(hfeval(x)); }

// ---- truth

bool truthOfNumber(double v) {
  if (v == 1.0) return true;
  if (v == 0.0) return false;
  KernelException("unable to evaluate boolean expression in evalhf");
}

namespace {

bool isWholeNumber(double v) { return !isReferenceValue(v) && std::floor(v) == v; }
bool hasParity(double v, double parity) { return isWholeNumber(v) && std::fabs(std::fmod(v, 2.0)) == parity; }

constexpr HardwareType hardwareTypes[] = {
    // name        test
    {"rational",  nullptr},
    {"float",     nullptr},
    {"numeric",   nullptr},
    {"integer",   isWholeNumber},
    {"odd",       [](double v) { return hasParity(v, 1.0); }},
    {"even",      [](double v) { return hasParity(v, 0.0); }},
    {"hfarray",   isArrayValue},
    {"array",     isArrayValue},
    {"rtable",    isArrayValue},
    {"procedure", isProcedureValue},
    {"undefined", [](double v) { return !isReferenceValue(v) && std::isnan(v); }},
};

bool relationHolds(DAG x) {
  const double a = hfeval(x[1]), b = hfeval(x[2]);
  switch (tagOf(x)) {
    case EQUATION: return a == b;
    case INEQUAT: return a != b;
    case LESSEQ: return a <= b;
    default: return a < b;
  }
}

}  // namespace

const HardwareType* hardwareType(DAG type) {
  if (!isName(type)) return nullptr;
  for (const HardwareType& row : hardwareTypes)
    if (hasText(type, row.name)) return &row;
  return nullptr;
}

bool hfHasType(DAG x, DAG type) {
  const HardwareType* row = hardwareType(type);
  if (row == nullptr) KernelException("unsupported type `%1` in evalhf", type);
  return row->test == nullptr || row->test(hfeval(x));
}

bool hfboolean(DAG x) {
  if (isImmediate(x)) {
    if (x == cons1) return true;
    if (x == cons0) return false;
    KernelException("unable to evaluate boolean expression in evalhf");
  }
  switch (tagOf(x)) {
    case NOT: checkStack(); return !hfboolean(x[1]);
    case AND: checkStack(); return hfboolean(x[1]) && hfboolean(x[2]);
    case OR: checkStack(); return hfboolean(x[1]) || hfboolean(x[2]);
    case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: checkStack(); return relationHolds(x);
    case DCOLON: return hfHasType(x[1], x[2]);
    default: return truthOfNumber(hfevalToNumeric(x));
  }
}

}  // namespace korel
