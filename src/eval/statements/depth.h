#pragma once
// Levels of evaluation: how much deeper the parts of a construct run, and down to which depth things are shown.
//
// A statement runs one level below what holds it. Four levels are worth one step of `printlevel`
// (`shownDepth`), so that a step shows a procedure's statements, or those of some nested branches.

#include <cstdint>

#include "frame/environment.h"

namespace korel {

constexpr std::int32_t branchLevels = 3;      // the parts of `if` and `try`, and a loop's rounds
constexpr std::int32_t procedureLevels = 19;  // a procedure's body, and the checks of its parameters

/// Whether the value of a statement at the present depth is shown.
inline bool showsValues(const Frame& frame) { return evaluationLevel < shownDepth(frame) + 6; }
/// Whether a loop over a container shows what it assigns to its variable.
inline bool showsMembers(const Frame& frame) { return evaluationLevel < shownDepth(frame); }
/// Whether a call at the present depth is traced: one that runs, and one answered from a remember table.
inline bool showsCalls(const Frame& frame) { return evaluationLevel + 14 < shownDepth(frame); }
inline bool showsRememberedCalls(const Frame& frame) { return evaluationLevel + 34 < shownDepth(frame); }

}  // namespace korel
