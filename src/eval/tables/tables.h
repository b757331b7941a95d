#pragma once
// Tables and arrays: creation, lookup, storing and listing of entries.
//
// A TABLE holds the indexing function (`null` for none), the bounds (`false` for a table that is no
// array, a RANGE for one dimension, an EXPSEQ of ranges for several) and a HASHTAB of its entries, whose
// keys are simplified objects compared by word. It is changed in place: every name that holds it sees
// the change. A key is the EXPSEQ of the indices, or the index itself when there is only one.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

enum class TableKind { table, array };

/// A new table or array. `function` is 0 or an indexing function: a NAME or a LIST of names;
/// `arguments` an EXPSEQ of ranges and at most one list or set of initial values, which go through the
/// library procedure `index/FillInitVals`, or, without that, are stored here.
/// Errors: "non-integer ranges in array/table creation", "lower>upper bound in array/table creation",
/// "multiple initialization of table/array", "invalid parameters for creation of table or array",
/// "ranges cannot be specified for table definitions", "needs ranges or initialization list for building
/// arrays".
DAG maketable(DAG function, DAG arguments, TableKind kind = TableKind::table);

/// What a lookup finds. What a procedure of the library answered is not evaluated again.
struct FoundEntry {
  DAG value;  // the word `absent` for none
  bool byProcedure = false;
};
/// Lookup of the entry `index`, an EXPSEQ or a single index, of the table that `name` refers to. An indexing
/// function has its say (index_functions.h). Errors: on an array, those of `checkBounds`.
FoundEntry lookUpEntry(DAG index, DAG name, DAG table);
/// Stores the entry. Errors: the same, and "recursive assignment" for a value that holds the reference
/// name[index].
void assignEntry(DAG index, DAG name, DAG table, DAG value);

/// Stores `value` under `index` in what `name` holds, `container`, as its kind does; creates the table when
/// there is none, or has the procedure `index/newtable` see to it.
/// Errors: those of the kind, as "cannot assign to a list", "invalid left hand side of table reference",
/// "`index/newtable` not assigned a procedure".
void korelindex(DAG index, DAG name, DAG container, DAG value);

/// Removes the entry.
void removeEntry(DAG index, DAG table);

/// The key of `index`.
inline DAG tableKey(DAG index) { return isTag(index, EXPSEQ) && lengthOf(index) == 2 ? index[1] : index; }
/// Stores `value` under the key, past indexing functions and bounds.
void storeEntry(DAG key, DAG table, DAG value);
/// The same past all indexing functions. Errors: those of `checkBounds`.
DAG lookUpDirectly(DAG index, DAG table);
void storeDirectly(DAG index, DAG table, DAG value);
/// Whether every index of the key is an integer.
bool isIntegerKey(DAG key);
/// Checks integer indices against the bounds of an array; indices that are no integers pass, except in a
/// store. Errors: "integer indices required for array", "number of indices does not match
/// rank", "array index out of range".
enum class EntryUse { lookup, store };
void checkBounds(DAG key, DAG table, EntryUse use);

/// What is listed of each entry: a list of the indices, an equation of key and value, a list of the value.
enum class Listing { indices, pairs, entries };
/// As an EXPSEQ, in the table's order.
DAG indices(DAG table, Listing what);

namespace builtin {
/// table(function, values) and array(function, ranges, values), each part optional and in this order.
DAG table(const BuiltinCall& call);
DAG array(const BuiltinCall& call);
/// indices(t), entries(t): a list for each entry.
DAG indices(const BuiltinCall& call);
DAG entries(const BuiltinCall& call);
}  // namespace builtin

/// The TABLE that `x` is, or that it names; 0 when it names none.
DAG tableBehind(DAG x);

}  // namespace korel
