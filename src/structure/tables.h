#pragma once
// Tables: creation, lookup and storing of entries.
//
// A TABLE holds the indexing function (`null` for none), the bounds (`false` for a table that is no
// array) and a HASHTAB of its entries, whose keys are simplified objects compared by word.

#include "store/dag.h"

namespace korel {

/// An empty table or array. `function` is 0 or an indexing function, `arguments` ranges and initial
/// values.
DAG maketable(DAG function, DAG arguments);
/// Lookup (value 0) or store of entry `index` of the table that `name` refers to: the entry, or the
/// word 2 for none. Error on a store: "recursive assignment".
DAG TableIndex(DAG index, DAG name, DAG table, DAG value = DAG());
/// Stores `value` under `index` in what `name` holds, `container`; creates the table when there is none.
DAG korelindex(DAG index, DAG name, DAG container, DAG value);
/// Stores `value` under the simplified object `key`, past any indexing function. More buckets are made
/// when the chains have grown long.
void storeEntry(DAG key, DAG table, DAG value);
/// Removes the entry.
void removeEntry(DAG index, DAG table);

enum IndicesMode : int { tableIndices = -1, tablePairs = 0, tableEntries = 1 };
/// Indices, entries, or equations of both, in the table's order, as an EXPSEQ.
DAG indices(DAG table, int mode);

/// Set when an indexing function of the library made the last lookup's result.
extern bool IndexFcnUsed;

}  // namespace korel
