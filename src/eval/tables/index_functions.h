#pragma once
// Indexing functions: what stands between a table's index and its entries.
//
// The first field of a TABLE names one, or a LIST of several, of which the first has the first say and
// hands on to the rest. Five are built in; any other name `f` stands for the library procedure
// `index/f`, called with the list of indices and a table with the rest of the functions, and, for a
// store, with the list of the value.

#include "eval/tables/tables.h"
#include "store/dag.h"

namespace korel {

/// Lookup and store of the entry `index` of `table`, which has an indexing function.
/// Errors: "cannot assign non-zero to diagonal entry of antisymmetric", "cannot assign to the
/// off-diagonal elements of a diagonal array", "cannot assign to an identity matrix", those of the
/// bounds, "%1%2: missing system function", and whatever the library procedure raises.
FoundEntry lookUpByFunction(DAG index, DAG name, DAG table);
void storeByFunction(DAG index, DAG name, DAG table, DAG value);

/// The index under which the indexing functions `function` keep the entry `index`.
DAG storedIndex(DAG index, DAG function);

/// True for a LIST, not empty, whose members all name indexing functions.
bool isFunctionList(DAG x);

}  // namespace korel
