#pragma once
// Freezing: names in place of what a routine for rational expressions can't look into.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// An expression with its frozen parts, and the equations that bring them back (an EXPSEQ, `null` when nothing was
/// frozen).
struct Frozen {
  DAG expression;
  DAG thaw;
};
/// `x` with a name for each part that is no sum, product, integer power, number or name; equal parts have one name.
/// Of a power with a fraction p/q as exponent the q-th root is the part. With `ofPart` other than null parts are
/// taken through it first, and all roots of a name, and itself, become powers of one.
Frozen freeze(DAG x, DAG (*ofPart)(DAG part) = nullptr);
/// `x` with the frozen parts in their places.
DAG thaw(DAG x, DAG equations);

namespace builtin {
/// frontend(f, [arguments] [, rules]): the value of f on the frozen arguments, thawed. `rules` is a list of a set of
/// types, whose objects are looked into, and a set of expressions that stay.
DAG frontend(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
