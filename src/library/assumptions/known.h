#pragma once
// What is known about the value of an expression: whether it is real, an integer, positive, and so on.
//
// Facts come from numbers, from the constants Pi, Catalan and gamma, from names under assumption (assumed_name.h), and
// from what sums, products, powers and the common functions make of the facts about their operands. `isKnown` is sound
// and not complete: false says that nothing was found, not that the property fails. It evaluates nothing, allocates
// nothing and looks at some hundred parts at most; an expression whose first part is a name without assumptions is
// answered in some nanoseconds.
//
// An infinity and `undefined` have no property. A call that raises an error for some values (1/x at 0) is judged by the
// values that it has.

#include <cstdint>

#include "store/dag.h"

namespace korel {

enum class Property : std::uint8_t {
  real,
  rational,
  integer,
  even,
  odd,
  prime,
  positive,
  negative,
  nonnegative,
  nonpositive,
  nonzero,
  imaginary,  // a real multiple of I; 0 is one
};

/// True when `x` has the property, whatever values its names take within their assumptions. Any object may be asked.
bool isKnown(DAG x, Property property);
/// True when `x` is sure not to have the property: the answer `false` of `is`.
bool isExcluded(DAG x, Property property);

/// The facts themselves, for callers that want more than one.
enum Fact : std::uint16_t {
  isRealFact = 1,
  isRationalFact = 2,
  isIntegerFact = 4,
  isEvenFact = 8,
  isOddFact = 16,
  isNonzeroFact = 32,
  isImaginaryFact = 64,
  isPrimeFact = 128,
};
/// Bounds of a real value; a bound that is open isn't attained. Without a bound it is an infinity.
struct Range {
  double low, high;
  bool lowOpen = false, highOpen = false;
};
struct Facts {
  std::uint16_t flags = 0;  // of Fact
  Range range;              // all reals unless `isRealFact`

  bool has(Fact fact) const { return (flags & fact) != 0; }
  bool isPositive() const { return has(isRealFact) && (range.low > 0 || (range.low == 0 && range.lowOpen)); }
  bool isNegative() const { return has(isRealFact) && (range.high < 0 || (range.high == 0 && range.highOpen)); }
  bool isNonnegative() const { return has(isRealFact) && range.low >= 0; }
  bool isNonpositive() const { return has(isRealFact) && range.high <= 0; }
};
Facts factsAbout(DAG x);

}  // namespace korel
