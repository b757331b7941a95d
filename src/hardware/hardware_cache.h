#pragma once
// Doubles of the numbers in a program, by their objects: conversions are done once for a loop.
//
// The slot of an object follows from its address. The cache is valid within one evaluation, as long as no code of the
// user has run and nothing has been collected in between.

#include "store/dag.h"

namespace korel {

bool findCachedNumber(DAG x, double& value);
void cacheNumber(DAG x, double value);
void clearNumberCache();

}  // namespace korel
