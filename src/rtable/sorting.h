#pragma once
// Sorting: the elements of a Vector or Array of one dimension, and the entries of Nag sparse storage by their indices.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// A new rectangular rtable with the elements in the order that `order` names, 0 for none: by value for numbers, by
/// text for names and strings, else by word. Integers and floats of the hardware are sorted as machine numbers, by
/// value; complex ones stay as they are unless a procedure decides. Errors: "only Vectors or 1D Arrays can be sorted",
/// "invalid arguments to sort", "sort: 2nd argument must be a boolean valued function".
DAG SortRTable(DAG r, DAG order);

namespace builtin {
/// rtable_sort_indices(r), rtable_sort_indices(r, row or column): orders the entries of `r`, which is the answer.
DAG rtable_sort_indices(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
