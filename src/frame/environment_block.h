#pragma once
// The block of environment variables of a frame: its words, and how the kernel reads and changes them.
//
// A block is an EXPSEQ. A frame shares its caller's block until it assigns a variable; it then gets a block of its
// own. The names behind the words are told in eval/evaluate/environment_variables.h.
//
// Arithmetic reads `Digits` and `Rounding` here. A routine that needs guard digits or a directed rounding changes
// the word for the time of its work: the change is undone on the normal way out, and when an error of any kind
// passes. Nothing of it is seen outside.

#include <cstdint>

#include "frame/environment.h"
#include "store/constants.h"
#include "store/dag.h"

namespace korel {

/// Words of the block; behind them stand the names and values of the open kind.
enum EnvironmentWord : int {
  envDigits = 1,
  envUseHardwareFloats,
  envRounding,
  envOrder,
  envMod,
  envTestzero,
  envNormalizer,
  envNewtable,
  envNumericEventHandlers,
  envFirstOpen,
};
constexpr int environmentBlockLength = 10;

/// What `Digits` may be at most.
constexpr std::int64_t largestDigits = 268435448;

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
inline void raiseDigits(EnvironmentChange& change, std::int64_t extra) { setDigits(change, precisionDigits() + extra); }
inline void restoreDigits(EnvironmentChange& change) { restoreEnvironmentWord(change); }

/// The running frame's block, copied first when the caller's frame shares it.
DAG privateEnvironmentBlock();

}  // namespace korel
