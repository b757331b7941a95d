#pragma once
// Long operations of the kernel: how an interrupt or a time limit reaches what runs between statements.
//
// Statements ask for themselves (`TestInterrupt`, `checkTimeLimit`). A product of a million digits, a
// sequence of a million members or the printing of either asks here: it says how much it has done, and
// is cut short by the error "interrupted" or "time expired". Only operations whose state an error
// leaves in order may ask.

#include <cstdint>

namespace korel {

/// Steps that may pass until the next look; `passWork` counts them.
extern std::int64_t stepsToNextLook;
/// Looks whether the running operation has to end; false where an error has nowhere to go.
bool mustEndOperation();
/// Raises what `mustEndOperation` has found.
[[noreturn]] void endOperation();

/// Counts `steps`, each about a multiplication or two; true, after some 10^7 of them, when the caller
/// must clean up and call `endOperation`.
inline bool isTimeUp(std::int64_t steps) {
  return (stepsToNextLook -= steps) < 0 && mustEndOperation();
}
/// What an object that a recursive walk comes upon costs at least. A part that occurs twice in each of sixty
/// objects is met 2^60 times, without a statement in between.
constexpr int objectSteps = 50;
/// What a search through an expression counts as where there are many, one after the other: how long each
/// takes is known only when it has ended.
constexpr int searchSteps = 100000;
/// The same for a caller without anything to clean up.
inline void passWork(std::int64_t steps) {
  if (isTimeUp(steps)) endOperation();
}

}  // namespace korel
