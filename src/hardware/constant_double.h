#pragma once
// Doubles of constant expressions, for whoever stores them: without errors, and without code of the user.

#include "store/dag.h"

namespace korel {

/// The double of a number, of a name such as `Pi`, and of sums, products, powers and known functions of these. False
/// for anything else, and where the evaluation would meet an error or leave the numbers.
bool constantDouble(DAG x, double& value);

}  // namespace korel
