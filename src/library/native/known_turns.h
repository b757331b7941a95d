#pragma once
// Quarter turns in the argument of a periodic function whose number isn't told but known to be whole: n Pi/2 for a name
// n that is assumed to be an integer.

#include "store/dag.h"

namespace korel {

/// x = count * Pi/2 + rest, or count * I Pi/2 + rest; `count` is 0 where x has no such part but for numbers.
struct QuarterTurns {
  DAG count, rest;
};
enum class TurnUnit : bool { real, imaginary };
QuarterTurns quarterTurnsIn(DAG x, TurnUnit unit);

/// The count as 2 k + r with r = 0 or 1: r and the sign (-1)^k. False where the parity isn't known.
bool halfTurnsOf(DAG count, int& r, DAG& sign);

}  // namespace korel
