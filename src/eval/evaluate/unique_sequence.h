#pragma once
// Evaluated sequences searched in the table of simplified objects before they are built.
//
// The indices of a table entry have mostly been seen before: the entry is kept under them. They stand in an
// array on the native stack, and an object is made only when the table holds none with these members
// (bench/programs/monomial_count.krl).

#include "store/dag.h"

namespace korel {

/// The members of EXPSEQ `s` evaluated and simplified, as `simpl(eval(s))` gives them: nested sequences spliced.
DAG evaluatedSequence(DAG s);

}  // namespace korel
