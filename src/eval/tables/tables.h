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

/// Lookup (value 0) or store of the entry `index`, an EXPSEQ or a single index, of the table that `name`
/// refers to: the entry, or the word `absent`. An indexing function has its say (index_functions.h).
/// Errors: "recursive assignment" for a value that holds the reference name[index], and, on an array,
/// those of `checkBounds`.
DAG TableIndex(DAG index, DAG name, DAG table, DAG value = DAG());

/// Stores `value` under `index` in what `name` holds, `container`; creates the table when there is none,
/// or has the procedure `index/newtable` see to it.
/// Errors: "cannot assign to a list", "cannot assign to a set", "cannot assign to an expression
/// sequence", "invalid left hand side of table reference", "`index/newtable` not assigned a procedure".
DAG korelindex(DAG index, DAG name, DAG container, DAG value);

/// Removes the entry.
void removeEntry(DAG index, DAG table);

/// The key of `index`.
inline DAG tableKey(DAG index) {
  return isObject(index) && hasTag(index, EXPSEQ) && lengthOf(index) == 2 ? index[1] : index;
}
/// Stores `value` under the key, past indexing functions and bounds.
void storeEntry(DAG key, DAG table, DAG value);
/// Lookup or store past all indexing functions. Errors: those of `checkBounds`.
DAG directEntry(DAG index, DAG table, DAG value);
/// Whether every index of the key is an integer.
bool isIntegerKey(DAG key);
/// Checks integer indices against the bounds of an array; indices that are no integers pass, except
/// when `storing`. Errors: "integer indices required for array", "number of indices does not match
/// rank", "array index out of range".
void checkBounds(DAG key, DAG table, bool storing);

enum class Listing { indices, pairs, entries };
/// Indices, entries, or equations of both, in the table's order, as an EXPSEQ.
DAG indices(DAG table, Listing what);

/// Set when an indexing function of the library made the last lookup's result.
extern bool IndexFcnUsed;

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
