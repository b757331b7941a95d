#pragma once
// Sums and products searched in the table of simplified objects before they are built.
//
// Most terms and monomials that arise have been seen before. Their pairs stand in an array of the caller's,
// on the native stack, and an object is made only when the table holds none with these pairs
// (bench/programs/symbolic_sum.krl).

#include "numbers/arithmetic.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/pairs.h"

namespace korel {

/// The unique object of `tag` (SUM or PROD) with these pairs, in whatever order it was made first.
///
/// The pairs are what the simplifier would leave: simplified, no two with the same term, `count` > 0, and
/// not a single one with coefficient 1.
DAG uniquePairs(Tag tag, const Pair* pairs, Word count);

/// For each of `count` words, `step` words apart, the number of the first equal one (its own when it is the first),
/// as an immediate in an EXPSEQ whose fields count from 1. What stands for a word 0 means nothing.
DAG firstOccurrences(const DAG* words, Word count, Word step);

/// A name that stands for itself in sums and products: not `infinity`, `undefined` or `FAIL`.
inline bool isPlainName(DAG name) { return name != ini("infinity") && name != ini("undefined") && name != ini("FAIL"); }

}  // namespace korel
