#pragma once
// Growing an object under construction.
//
// A list of n elements is built by n appends at an amortised cost of O(n) words, because the objects
// that have grown lately keep slack behind them. The slack is always a well-formed GARBAGE block, so
// that the heap can be walked at any time. Four objects at most have slack; the table of them belongs
// to one stretch of building and is forgotten before the store may reuse their addresses.

#include "store/dag.h"

namespace korel {

/// Adds one operand (two) at the end of `object`, which the caller alone refers to. Gives the object,
/// which may have moved.
DAG Append2(DAG object, DAG x);
DAG Append3(DAG object, DAG x, DAG y);

/// The objects most recently given slack, latest first; 0 ends the list.
constexpr int appendListLength = 4;
extern DAG apl[appendListLength];
/// Forgets them; their slack is left to the collector. Whoever sweeps the heap calls this first.
void forgetAppendSlack();

}  // namespace korel
