#pragma once
// The rule for shared objects: whoever replaces fields copies the object at the first that differs.
//
// An object that nothing changes is given back itself. A copy is fresh and not simplified.

#include "store/dag.h"
#include "store/objects.h"
#include "store/reference_fields.h"

namespace korel {

/// `x` until one of its fields is set to another value; from then on a copy of `x`.
struct CopyOnChange {
  DAG original;
  DAG result;

  explicit CopyOnChange(DAG x) : original(x), result(x) {}
  [[gnu::always_inline]] void set(Word i, DAG value) {
    if (value == result[i]) return;
    if (result == original) result = CopyAlg(original);
    result[i] = value;
  }
  bool changed() const { return result != original; }
};

/// `x` with `valueOf(field)` in the place of those `fields` that aren't 0, the extra one first.
template <class ValueOf>
[[gnu::always_inline]] inline DAG withFields(DAG x, ReferenceFields fields, ValueOf valueOf) {
  CopyOnChange copy(x);
  if (fields.extra != 0 && x[fields.extra]) copy.set(fields.extra, valueOf(x[fields.extra]));
  for (Word i = fields.first; i < fields.end; i += fields.step)
    if (DAG field = x[i])
      if (DAG value = valueOf(field); value != field) copy.set(i, value);
  return copy.result;
}

/// The same for all references that `x` holds.
template <class ValueOf>
inline DAG withReferences(DAG x, ValueOf valueOf) {
  return withFields(x, referenceFields(x), valueOf);
}

/// The same for the fields `from`, `from + step`, ...: the members of a sequence, the terms of a sum.
template <class ValueOf>
[[gnu::always_inline]] inline DAG withFields(DAG x, Word from, Word step, ValueOf valueOf) {
  return withFields(x, ReferenceFields{from, lengthOf(x), step}, valueOf);
}

/// `x`, a call, a reference or another object of at least two fields, with other ones in place of the first two.
inline DAG withParts(DAG x, DAG first, DAG second) {
  CopyOnChange copy(x);
  copy.set(1, first);
  copy.set(2, second);
  return copy.result;
}

/// `x` with `value` as field `i`.
inline DAG withField(DAG x, Word i, DAG value) {
  CopyOnChange copy(x);
  copy.set(i, value);
  return copy.result;
}

}  // namespace korel
