#pragma once
// Kinds of objects that mostly hide behind a name: procedures, tables, rtables and modules.
//
// The tests are true for an object of the kind and for a name whose stored value is one.

#include "eval/evaluate/environment_variables.h"
#include "store/object_fields.h"

namespace korel {

/// What the name `x` holds; anything else as it is.
inline DAG storedValue(DAG x) { return isTag(x, NAME) ? valuenv(x, false) : x; }

inline bool NAMED_PROC(DAG x) { return isTag(storedValue(x), PROC); }
inline bool NAMED_TABLE(DAG x) { return isTag(storedValue(x), TABLE); }
inline bool NAMED_RTABLE(DAG x) { return isTag(storedValue(x), RTABLE); }
inline bool NAMED_MODULE(DAG x) { return isTag(storedValue(x), MODULE); }
/// A table of the array sort: one with bounds.
inline bool NAMED_ARRAY(DAG x) {
  DAG table = storedValue(x);
  return isTag(table, TABLE) && isArrayTable(table);
}

}  // namespace korel
