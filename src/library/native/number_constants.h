#pragma once
// Constants that are sums of quotients of integers, in decimal.

#include "store/dag.h"

namespace korel {

/// exp(1) as a float of `Digits` digits. Its series costs far less than the exponential function.
DAG floatOfE();

}  // namespace korel
