// Making floats: range checks, rounding to `Digits`, and the exact value of a float.

#include <limits>

#include "frame/precision.h"
#include "numbers/float/float.h"
#include "numbers/float/float_rounding.h"
#include "store/objects.h"

namespace korel {

namespace {

DAG overflowed(StandardName operation, DAG m, DAG e) {
  return TriggerNumericEvent(overflowEvent, ini(operation), m, e, DefaultOverflow(signOf(m)), true);
}

DAG underflowed(StandardName operation, DAG m, DAG e) {
  return TriggerNumericEvent(underflowEvent, ini(operation), m, e, DefaultUnderflow(signOf(m)),
                             true);
}

bool isAboveRange(DAG e) { return !isImmediate(e) && tagOf(e) == INTPOS && compint(e, cons_maxfloatexp) > 0; }
bool isBelowRange(DAG e) { return !isImmediate(e) && tagOf(e) == INTNEG && compint(e, cons_minfloatexp) > 0; }

}  // namespace

DAG newFLOAT(DAG m, DAG e) {
  // An immediate exponent and the longest mantissa stay inside a word together: no check.
  if (isImmediate(e)) return new3(FLOAT, m, e);
  if (!isInteger(e)) return new3(FLOAT, m, e);
  if (isAboveRange(e)) return overflowed("Float", m, e);
  if (isBelowRange(e)) return underflowed("Float", m, e);
  if (isInteger(m) && exponentValue(e) + ilength(m) > std::numeric_limits<std::int32_t>::max())
    return overflowed("Float", m, e);
  return new3(FLOAT, m, e);
}

DAG BuildFloat(DAG m, DAG e) {
  std::int64_t digits = requireDigits();
  if (!isInteger(e)) return newFLOAT(m, e);
  DAG mantissa = m, exponent = e;
  const bool flagged = GetNumericStatusFlag(inexactEvent) != 0;
  bool inexact = false;
  for (;;) {
    std::int64_t length = ilength(mantissa);
    if (length <= digits) {
      DAG result = newFLOAT(mantissa, exponent);
      return inexact ? inexactResult(new3(FLOAT, m, e), DAG(), result) : result;
    }
    // The digits are looked at only while the flag is clear.
    if (!flagged && !inexact) inexact = hasNonzeroTail(mantissa, length - digits);
    if (isAboveRange(exponent)) return overflowed("evalf", mantissa, exponent);
    if (isBelowRange(exponent)) return underflowed("evalf", mantissa, exponent);
    // Comes round a second time when a carry has made the mantissa a digit longer.
    mantissa = times10p(mantissa, digits - length);
    exponent = addint(exponent, NewInteger(length - digits));
  }
}

DAG floatrat(DAG x) {
  DAG m = mantissaOf(x), e = exponentOf(x);
  if (isZeroMantissa(m)) return cons0;
  std::int64_t exponent = exponentValue(e);
  if (exponent >= 0) return exponent == 0 ? m : times10p(m, exponent);
  DAG power = times10p(cons1, -exponent), parts[2];
  if (!isInteger(power)) return power;
  gcdsimpl(m, power, parts);
  return parts[1] == cons1 ? parts[0] : new3(RATIONAL, parts[0], parts[1]);
}

}  // namespace korel
