#pragma once
// The cases of the simplifier, one a file, for `simpl` to dispatch to.
//
// Each takes an object without the simplified bit, whose fields it may overwrite, and gives the
// canonical result: an immediate, an object already unique, or the value of `makeUnique`.

#include "eval/simplify/bindings.h"
#include "eval/simplify/unique_pairs.h"
#include "store/dag.h"

namespace korel {

DAG simplSum(DAG s);
DAG simplProduct(DAG s);
/// The same, for products of any factors: `simplProduct` settles most others before.
DAG generalProduct(DAG s);
/// The PROD `s` as a canonical term and its coefficient, when it is a number times small powers of names,
/// calls, sums and the like; a number stands as the term with coefficient 1. False leaves it to `simplProduct`,
/// with operands perhaps simplified.
bool plainProduct(DAG s, Pair& term);
DAG simplPower(DAG s);
/// `key` is that of `s` at entry, under which there is none; unknown while bindings are on.
DAG simplFunction(DAG s, Word key);
DAG simplLessThan(DAG s);
/// AND, OR and NOT, operands simplified here.
DAG simplbool(DAG s);
/// A SET, or the EXPSEQ of its members, which comes back sorted by signed word without duplicates.
DAG simplset(DAG s);
DAG simplUse(DAG s);

/// True for an operand that `simpl` would return as it is: a name may be bound while bindings are on.
inline bool isSettled(DAG x) { return isSimplified(x) && (!bindingsEnabled || isImmediate(x) || !hasTag(x, NAME)); }
/// A number, complex or not, that is neither infinite nor undefined.
inline bool isFiniteNumber(DAG x) { return (isNumeric(x) || hasTag(x, COMPLEX)) && !isInfinite(x) && !isUndefined(x); }
/// Simplifies fields `from`.. of `s` in place; true when one changed.
bool simplifyFields(DAG s, Word from = 1);
/// As `makeUnique`, for an object under whose key at entry there is none: searched for again only when it changed.
DAG finish(DAG s, Word key, bool changed);
/// A fresh object of the tag of `s` with its fields simplified, and pairs with coefficient 0 left out: a SUM or
/// PROD that stays as it is for now.
DAG simplifiedCopy(DAG s);
/// Sets the simplified bit without an entry in the table: the object is never shared.
inline DAG markSimplified(DAG s) {
  setSimplified(s);
  return s;
}

/// `x` simplified, or, when that raises an error that a trap may take, a call of `ERROR` that raises the
/// same when it is evaluated: what stands under a trap fails when it runs, not before.
DAG simplifyUnderTrap(DAG x);

/// Powers and products with 0, 1, infinite or undefined operands. `x` is a POWER or a PROD read at one
/// pair; gives `x` when no case applies.
DAG simpl01(DAG x);

/// `list` with each element times `factor`.
DAG mapToList(DAG list, DAG factor);

}  // namespace korel
