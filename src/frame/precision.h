#pragma once
// `Digits` and `Rounding` of the running frame, as arithmetic reads and changes them.
//
// Both are words of the frame's block of environment variables. A routine that needs guard digits or a
// directed rounding changes the word for the time of its work: the change is undone on the normal way
// out, and when an error of any kind passes. A frame that shares its caller's block gets one
// of its own first, so that nothing is seen outside.

#include <cstdint>

#include "eval/evaluate/environment_variables.h"
#include "frame/environment.h"
#include "store/constants.h"
#include "store/dag.h"

namespace korel {

inline DAG environmentWord(EnvironmentWord word) { return Environment->frame->envVars[word]; }

/// `Digits` as arithmetic uses it; assignment has bounded it to an immediate.
inline std::int64_t precisionDigits() { return immediateValue(environmentWord(envDigits)); }
/// The same. Error when below 1: "Digits has to be an integer greater than 0".
std::int64_t requireDigits();

/// `Rounding` is -infinity.
inline bool roundsDown() { return environmentWord(envRounding) == consminf; }
/// The zero that a float sum of zero is: `consfm0` when rounding down, else `consf0`.
inline DAG roundedZero() { return roundsDown() ? consfm0 : consf0; }

/// A change that lasts until `restoreEnvironmentWord`. It lies on the stack of whoever makes it, and
/// the changes of one routine are undone in the opposite order.
struct EnvironmentChange {
  Frame* frame;  // its block may be another one by then
  EnvironmentWord word;
  DAG before;
};
void changeEnvironmentWord(EnvironmentChange& change, EnvironmentWord word, DAG value);
void restoreEnvironmentWord(EnvironmentChange& change);

/// Sets `Digits` for a while.
void setDigits(EnvironmentChange& change, std::int64_t digits);
inline void raiseDigits(EnvironmentChange& change, std::int64_t extra) {
  setDigits(change, precisionDigits() + extra);
}
inline void restoreDigits(EnvironmentChange& change) { restoreEnvironmentWord(change); }

/// The running frame's block, copied first when the caller's frame shares it.
DAG privateEnvironmentBlock();

}  // namespace korel
