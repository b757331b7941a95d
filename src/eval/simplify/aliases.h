#pragma once
// Aliases and macros: names that stand for other expressions in what is typed and shown.
//
// Two sequences of equal length hold them: entry i of `AliasToKorel` is a = b, which is applied to
// every statement that comes in, and entry i of `KorelToAlias` is b = a, applied to all that goes out.
// A macro works on the way in alone: its way back is an equation of two empty sequences.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// `x` with every part that is the left side of an equation of `table` replaced by its right side, all
/// at once; not simplified. `table` is `AliasToKorel` or `KorelToAlias`.
DAG subsalias(DAG table, DAG x);
/// A statement as it came in, simplified: its aliases and macros are expanded, and a call of `macro` is
/// carried out. A call of `alias` stays as typed, so that it can name what it changes.
DAG expandAliases(DAG statement);

/// Adds, replaces or (for a = a) removes each of `equations`, an EXPSEQ; gives the list of its kind.
/// An alias may not touch constants unless `allowAny`. Nothing changes when an equation is refused:
/// "equations expected", "use interface(imaginaryunit=...) to set the imaginary unit",
/// "aliases cannot be numeric or string constants".
DAG addalias(DAG equations, bool allowAny, bool isAlias);
/// The aliases, or the macros, in force: an EXPSEQ of a = b.
DAG retalias(bool isAlias);

namespace builtin {
/// alias(a = b, ...), macro(a = b, ...): the list afterwards.
DAG alias(const BuiltinCall& call);
DAG macro(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
