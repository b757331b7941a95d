#pragma once
// What the operations on floats share when they round: the digits that go, and the event for them.

#include <cstdint>

#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/dag.h"
#include "store/standard_names.h"

namespace korel {

/// Sign of a mantissa: the negative zero counts as negative.
inline bool isNegativeMantissa(DAG m) { return tagOf(m) == INTNEG; }

/// True when one of the `k` lowest decimal digits of `m` is not zero.
inline bool hasNonzeroTail(DAG m, std::int64_t k) {
  if (!isImmediate(m)) return SoftIntTrailingNonZeroes(m, k);
  if (k <= 0) return false;
  std::int32_t value = immediateValue(m);
  return k < 10 ? value % pow10[k] != 0 : value != 0;
}

/// `q` is truncated and something was cut off behind it: moves a last digit of 0 or 5 away from zero,
/// so that rounding `q` to fewer digits sees neither an exact value nor a tie that isn't one. `q` is
/// fresh and not zero.
inline DAG markTruncated(DAG q) {
  if (isImmediate(q)) {
    std::int32_t value = immediateValue(q);
    return value % 5 != 0 ? q : Newint(value < 0 ? value - 1 : value + 1);
  }
  // The lowest digit is at most 9995 here: nothing carries.
  if (rawField(q, 1) % 5 == 0) ++rawField(q, 1);
  return q;
}

/// A finite real number as numerator / denominator * 10^exponent, exactly; the denominator is positive.
struct DecimalFraction {
  DAG numerator, denominator;
  std::int64_t exponent;
};
/// `x` is an integer, a RATIONAL or a finite FLOAT.
inline DecimalFraction decimalFraction(DAG x) {
  if (isInteger(x)) return {x, cons1, 0};
  if (hasTag(x, RATIONAL)) return {x[1], x[2], 0};
  return {mantissaOf(x), cons1, exponentValue(exponentOf(x))};
}

/// Event 5 for a rounded result, raised only while the flag is clear.
inline DAG inexactResult(DAG x, DAG y, DAG result) {
  return TriggerNumericEvent(inexactEvent, ini("evalf"), x, y, result, true);
}

/// Sign of a default for an overflow or underflow: 1 or -1.
inline DAG signOf(DAG mantissa) { return isNegativeMantissa(mantissa) ? consm1 : cons1; }

}  // namespace korel
