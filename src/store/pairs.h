#pragma once
// The pairs of a SUM or PROD.
//
//   s[0]    s[1]  s[2]         s[3]  s[4]
//   header  term  coefficient  term  coefficient ...    of a SUM
//           base  exponent     base  exponent ...       of a PROD

#include "store/dag.h"

namespace korel {

/// (term, coefficient) of a SUM, or (base, exponent) of a PROD.
struct Pair {
  DAG term, coefficient;
};
inline Pair* pairsOf(DAG s) { return reinterpret_cast<Pair*>(&s[1]); }
inline Word pairCount(DAG s) { return (lengthOf(s) - 1) / 2; }

}  // namespace korel
