#pragma once
// What a program says to the front end: values, reports, and stream calls.

#include "frame/builtin_call.h"

namespace korel::builtin {

/// print(x...), lprint(x...): shows the values, the latter as one line of text. Value `null`.
DAG print(const BuiltinCall& call);
DAG lprint(const BuiltinCall& call);
/// userinfo(level, names, x...): shows the x when `infolevel` of one of the names, or of `all`, is as high as
/// the level. `names` is a name, an indexed name or a set of those; none of them is evaluated.
DAG userinfo(const BuiltinCall& call);
/// streamcall(INTERFACE_...(x...)): the front end's answer. The call may be quoted.
DAG streamcall(const BuiltinCall& call);
/// callback(x...): the value of the statement with which the front end answers.
DAG callback(const BuiltinCall& call);

}  // namespace korel::builtin
