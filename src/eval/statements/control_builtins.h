#pragma once
// Built-ins that act on the run of statements: jumps, failures and their trap, assertions, the end, and a
// statement from a text.

#include "frame/builtin_call.h"

namespace korel::builtin {

/// RETURN(x): the running procedure ends with the value x.
DAG RETURN_(const BuiltinCall& call);
/// goto(label): the running procedure goes on behind the label.
DAG goto_(const BuiltinCall& call);
/// ERROR(message, parameters...) raises an error.
DAG ERROR_(const BuiltinCall& call);
/// traperror(x, ...): the value, or the text of the error that its evaluation raises.
DAG traperror(const BuiltinCall& call);
/// ASSERT(condition, parameters...): unless assertions are off, an error that no trap catches when the condition
/// is false. Error: "first argument of ASSERT should evaluate to true/false".
DAG ASSERT(const BuiltinCall& call);
/// quit(), quit(status) and the other names of it. Error: "argument to `%1` must be from 0 to 255".
DAG quit(const BuiltinCall& call);
/// parse(text, options...): the expression that the text stands for, or with `statement` the value of the
/// statement. Error: "invalid expression".
DAG parse(const BuiltinCall& call);

}  // namespace korel::builtin
