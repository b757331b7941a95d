#pragma once
// Ranges of real numbers between doubles, with bounds that are attained or not (`Range` in known.h). Every result holds
// all values that the operation can give: bounds are widened where a double can't hold them.

#include <cmath>

#include "library/assumptions/known.h"
#include "store/dag.h"

namespace korel {

constexpr Range allReals{-HUGE_VAL, HUGE_VAL};

/// A range that holds the real number `x`, which is finite; of the one point where a double can be it. A bound
/// that isn't 0 has the sign of `x`.
Range rangeAround(DAG x);
Range sum(Range a, Range b);
Range product(Range a, Range b);
/// The absolute values.
Range magnitude(Range a);
/// Where the largest and the smallest of two values lie.
Range largerOf(Range a, Range b);
Range smallerOf(Range a, Range b);
bool holdsNoInteger(Range a);

}  // namespace korel
