#pragma once
// Greatest common divisors of expressions by remainder sequences: slow, but for any coefficients that divide.

#include "store/dag.h"

namespace korel {

/// The greatest common divisor of two expanded polynomials over the integers, by primitive remainder sequences in one
/// variable after the other (Knuth, vol. 2, 4.6.1, algorithm E).
DAG gcdByRemainders(DAG a, DAG b);

}  // namespace korel
