#pragma once
// `evalf`: expressions in floating point.
//
// Numbers become floats of `Digits` digits, constants and calls go to the procedures `evalf/...` of the
// library, and structures are mapped over. Values of constants and calls are kept, with the digits
// they were computed to, in the remember table of the built-in `evalf`.

#include <cstdint>

#include "numbers/float/float.h"
#include "store/dag.h"

namespace korel {

/// Value of the expression `x` at `Digits` digits; what has none stands.
DAG evalf(DAG x);
/// `evalf` of the value of `x` at `n` digits (positive). Error: "Digits cannot exceed %1" is
/// reported for an `n` above the limit, which then takes its place.
DAG binevalf(DAG x, std::int64_t n);

}  // namespace korel
