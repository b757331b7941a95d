#pragma once
// What long evaluations have met: composite objects and their values, as long as no name is given one.
//
// Outside procedures the value of a name is evaluated again at each use, and evaluation walks a tree. Values
// that are built from one another share their parts: after n statements the tree may have 2^n nodes. Some
// thousand objects into an evaluation the next ones are remembered, and not entered twice.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// Moves on whenever a name, a table entry or `%` may come to have another value, and before and behind each
/// procedure and built-in function, which need not give the same again.
extern std::uint64_t evaluationClock;
inline void stepEvaluationClock() { ++evaluationClock; }

extern std::uint64_t rememberingSince;  // the time for which values are remembered; 0 at first
DAG rememberedValue(DAG x);
/// The value of the composite object `x`, which may be `x`, when it is known; else 0.
inline DAG knownValue(DAG x) { return evaluationClock == rememberingSince ? rememberedValue(x) : DAG(); }
/// `value` has come out of an evaluation of `x` that began at the time `since`. Gives the value, simplified when
/// it is remembered: it may become a part of several objects then.
DAG noteValue(DAG x, DAG value, std::uint64_t since);

/// To be called once, at the start of the evaluator.
void initializeKnownValues();

}  // namespace korel
