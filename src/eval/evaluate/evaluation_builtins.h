#pragma once
// The evaluator as the language calls it: values, names, truth, and what is assigned.

#include "frame/builtin_call.h"

namespace korel::builtin {

/// eval(x): full evaluation, also of the last name; eval(x, n): n levels; eval(x, equations): x at a point.
DAG eval(const BuiltinCall& call);
/// evalb(x): `true`, `false`, `FAIL`, or the relation that is undecided.
DAG evalb(const BuiltinCall& call);
/// evaln(x): the name that x stands for.
DAG evaln(const BuiltinCall& call);
/// assigned(x): whether the name, reference or call x has a value.
DAG assigned(const BuiltinCall& call);
/// `if`(condition, a, b) evaluates one of a and b; undecided, the call stays.
DAG if_(const BuiltinCall& call);

}  // namespace korel::builtin
