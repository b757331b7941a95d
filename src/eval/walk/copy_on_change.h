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

}  // namespace korel
