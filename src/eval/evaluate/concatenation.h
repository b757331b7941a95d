#pragma once
// Concatenation: `||`, `cat`, and the texts that they make.

#include "store/dag.h"

namespace korel {

/// A CATENATE of evaluated sides, joined where they can be: names and strings with names, strings, integers,
/// and sequences and ranges of those. Error: "range values must be integers or characters".
DAG concatenate(DAG left, DAG right);
/// The concatenation of names, strings and integers: a string when the first is one, else a name.
DAG korelCat(DAG parts);

}  // namespace korel
