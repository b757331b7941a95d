#pragma once
// Built-ins of the evaluator itself: evaluation and its control, names, operands, errors, input and
// output of values, and the operators as procedures.

#include "frame/builtin_call.h"

namespace korel {

// ---- evaluation
namespace builtin {
DAG ASSERT(const BuiltinCall& call);
DAG eval(const BuiltinCall& call);
DAG evalb(const BuiltinCall& call);
DAG evaln(const BuiltinCall& call);
DAG assigned(const BuiltinCall& call);
DAG if_(const BuiltinCall& call);
DAG traperror(const BuiltinCall& call);
DAG parse(const BuiltinCall& call);

// ---- control
DAG RETURN_(const BuiltinCall& call);
DAG ERROR_(const BuiltinCall& call);
DAG goto_(const BuiltinCall& call);
DAG quit(const BuiltinCall& call);
DAG userinfo(const BuiltinCall& call);

// ---- names and operands
DAG cat(const BuiltinCall& call);
DAG catenate(const BuiltinCall& call);  // `||`
DAG anames(const BuiltinCall& call);
DAG unames(const BuiltinCall& call);
DAG bind(const BuiltinCall& call);
DAG unbind(const BuiltinCall& call);
DAG lhs(const BuiltinCall& call);
DAG rhs(const BuiltinCall& call);
DAG exports(const BuiltinCall& call);

// ---- output
DAG print(const BuiltinCall& call);
DAG lprint(const BuiltinCall& call);
DAG streamcall(const BuiltinCall& call);
DAG callback(const BuiltinCall& call);

// ---- operators as procedures (operator_builtins.cpp)
DAG plusOperator(const BuiltinCall& call);
DAG timesOperator(const BuiltinCall& call);
DAG powerOperator(const BuiltinCall& call);
DAG equalOperator(const BuiltinCall& call);
DAG unequalOperator(const BuiltinCall& call);
DAG lessOperator(const BuiltinCall& call);
DAG lessEqualOperator(const BuiltinCall& call);
DAG greaterOperator(const BuiltinCall& call);
DAG greaterEqualOperator(const BuiltinCall& call);
DAG andOperator(const BuiltinCall& call);
DAG orOperator(const BuiltinCall& call);
DAG notOperator(const BuiltinCall& call);
DAG negate(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
