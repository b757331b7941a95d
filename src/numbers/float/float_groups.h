#pragma once
// Mantissas of sums, products, quotients and roots, worked out on groups and rounded before they become objects.
//
// A long operation packs its operands, works on groups (numbers/integer/integer_groups.h), and cuts what comes out
// down to the digits asked for: the rounded mantissa is the only object made. What lies below those digits
// is looked at as far as the rounding needs it. Operands are integers in either form. Short of events, which
// are the callers' part, each result is the exact one rounded once under `Rounding`.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// A rounded value: mantissa * 10^exponent. The mantissa is fresh.
struct RoundedMantissa {
  DAG mantissa;
  std::int64_t exponent;
  bool inexact;  // a digit that isn't zero has been cut off
};

/// a * 10^ea + b * 10^eb to at most `digits` digits. Neither is zero; a sum of zero has the mantissa 0.
RoundedMantissa roundedSum(DAG a, std::int64_t ea, DAG b, std::int64_t eb, std::int64_t digits);
/// a * b to at most `digits` digits. Neither is zero.
RoundedMantissa roundedProduct(DAG a, DAG b, std::int64_t digits);
/// a / b to just `digits` digits. Neither is zero.
RoundedMantissa roundedQuotient(DAG a, DAG b, std::int64_t digits);
/// The root of a * 10^exponent, a > 0, to just `digits` digits.
RoundedMantissa roundedRoot(DAG a, std::int64_t exponent, std::int64_t digits);

/// Whether a magnitude of this sign grows by one in its last digit when digits behind it are cut off:
/// `half` is the first of them, `tail` tells whether a later one isn't zero, `odd` whether the last digit
/// kept is odd.
bool roundsAway(Tag sign, Word half, bool tail, bool odd);

}  // namespace korel
