#include "hardware/constant_double.h"

#include <cmath>

#include "frame/environment.h"
#include "hardware/hardware_functions.h"
#include "hardware/hardware_power.h"
#include "hardware/special_functions.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool sumOf(DAG x, double& value) {
  value = 0.0;
  for (Word i = 1; i < lengthOf(x); i += 2) {
    double term, coefficient;
    if (!constantDouble(x[i], term) || !constantDouble(x[i + 1], coefficient)) return false;
    value += term * coefficient;
  }
  return true;
}

// The power where it is a finite number.
bool powerOf(DAG base, DAG exponent, double& value) {
  double b, e;
  if (!constantDouble(base, b) || !constantDouble(exponent, e)) return false;
  if (b == 0.0 ? e <= 0.0 : b < 0.0 && e != std::trunc(e)) return false;
  if (!std::isfinite(b) || !std::isfinite(e) || !std::isfinite(std::pow(b, e))) return false;
  value = hfpow(b, e);
  return true;
}

bool productOf(DAG x, double& value) {
  value = 1.0;
  for (Word i = 1; i < lengthOf(x); i += 2) {
    double factor;
    if (!powerOf(x[i], x[i + 1], factor)) return false;
    value *= factor;
  }
  return true;
}

bool functionOf(DAG x, double& value) {
  const HardwareFunction* f = isName(x[1]) ? hardwareFunction(textOf(x[1])) : nullptr;
  if (f == nullptr || f->arity != HardwareArity::fixed || f->one == nullptr) return false;
  double argument;
  if (!isSequence(x[2]) || memberCount(x[2]) != 1 || !constantDouble(x[2][1], argument)) return false;
  if ((f->one == hfsqrt && argument < 0) || (f->one == hflgamma && argument <= 0)) return false;
  value = f->one(argument);
  return std::isfinite(value);
}

}  // namespace

bool constantDouble(DAG x, double& value) {
  if (isNumeric(x)) {
    value = FloatValue(x);
    return true;
  }
  checkStack();
  switch (tagOf(x)) {
    case NAME: return x != ini("true") && x != ini("false") && hardwareConstant(textOf(x), value);
    case SUM: return sumOf(x, value);
    case PROD: return productOf(x, value);
    case POWER: return powerOf(x[1], x[2], value);
    case FUNCTION: return functionOf(x, value);
    default: return false;
  }
}

}  // namespace korel
