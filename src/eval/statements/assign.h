#pragma once
// Storing values: into names, table entries, list members, module members and remember tables.

#include "store/constants.h"
#include "store/dag.h"

namespace korel {

/// Stores `value` in `target`, which `evalname` has left a NAME, TABLEREF, DCOLON, MEMBER, or a call for an entry of a
/// remember table. A name assigned to itself becomes unassigned. Gives the value.
DAG assign(DAG target, DAG value);
/// Stores a number, string or name in an entry under `target` as it stands in the statement: no reference to
/// the entry is made on the way. False when that is not what it is.
bool assignPlainEntry(DAG target, DAG value);
/// Stores a number or string in the name that stands in the statement, as long as no rule of its own is in the way; the
/// caller has passed the value through the barrier. False when that is not what it is.
bool assignPlainName(DAG name, DAG v);
/// A name for which `assign` has no rules of its own, as it has for environment variables and the error names:
/// its value may be stored directly while it is open.
bool isOrdinaryName(DAG target);
/// An ordinary name without attributes that could protect it, and not to be asked of the library first.
inline bool isOpenName(DAG name) { return name[2] == null && (controlWord(name) & deferredBit) == 0; }
/// True for attributes that hold `protected`.
bool isProtected(DAG attributes);

}  // namespace korel
