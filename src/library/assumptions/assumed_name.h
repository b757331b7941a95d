#pragma once
// Names under assumption.
//
// `assume(x > 0)` makes x stand for a new name `x~`, an instance outside the table of names, which carries what is
// assumed as its attribute:
//
//   assumed(x, flags, low, lowOpen, high, highOpen, lowBound, highBound)
//
// x is the name that a person types; flags are bits of Fact (known.h); low and high are the bounds as they were given,
// an infinity where there is none; lowOpen and highOpen are 0 or 1; lowBound and highBound are HFLOATs below and above
// them. Whoever assigns x anew, or takes its value back, ends the assumption for what he types from then on; what was
// made of `x~` before keeps it, and stays true.

#include "store/dag.h"

namespace korel {

enum AssumedField : Word {
  assumedOrigin = 1,
  assumedFlags,
  assumedLow,
  assumedLowOpen,
  assumedHigh,
  assumedHighOpen,
  assumedLowBound,
  assumedHighBound,
};
constexpr Word assumedLength = 9;

/// The fields of the assumption that the name `x` carries, an EXPSEQ of `assumedLength` words; 0 without one.
DAG assumptionOf(DAG x);
/// The names under assumption in `x`, an EXPSEQ, in the order in which they are met.
DAG assumedNamesIn(DAG x);
/// Whether a name has ever been put under assumption since the start.
bool assumptionsWereMade();

}  // namespace korel
