#pragma once
// Calls in the hardware-float evaluator that are no functions of numbers: sums, piecewise, output, arrays.

#include "store/dag.h"

namespace korel {

using HardwareForm = double (*)(DAG call);
/// The form with this name, or null.
HardwareForm hardwareForm(const char* name);

/// evalhf_polynom(a, x, re, im). Errors: "evalhf_polynom: third argument must be var array", "evalhf_polynom: fourth
/// argument must be var array", "evalhf_polynom: invalid array dimensions" and those of the search.
double evalhf_polynom(DAG call);

}  // namespace korel
