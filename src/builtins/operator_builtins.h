#pragma once
// The arithmetic, relational and boolean operators as procedures.

#include "frame/builtin_call.h"

namespace korel::builtin {

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

}  // namespace korel::builtin
