#pragma once
// The rule for shared objects: whoever replaces fields copies the object at the first that differs.

#include "store/dag.h"
#include "store/objects.h"

namespace korel {

/// `x` with `valueOf(field)` in the place of its fields `from`, `from + step`, ...; `x` itself when none
/// changes, otherwise a fresh object, not simplified. Fields that are 0 or immediate stay.
template <class ValueOf>
[[gnu::always_inline]] inline DAG withFields(DAG x, Word from, Word step, ValueOf valueOf) {
  DAG result = x;
  for (Word i = from, n = lengthOf(x); i < n; i += step) {
    DAG field = x[i];
    if (!isObject(field)) continue;
    DAG value = valueOf(field);
    if (value == field) continue;
    if (result == x) result = CopyAlg(x);
    result[i] = value;
  }
  return result;
}

/// `x`, a call, a reference or another object of at least two fields, with other ones in place of the first two;
/// `x` itself when both are the same.
inline DAG withParts(DAG x, DAG first, DAG second) {
  if (first == x[1] && second == x[2]) return x;
  DAG changed = CopyAlg(x);
  changed[1] = first;
  changed[2] = second;
  return changed;
}

}  // namespace korel
