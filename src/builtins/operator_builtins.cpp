#include "builtins/operator_builtins.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/statements/boolean.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

namespace {

// Pairs (argument, 1) of a SUM or PROD.
DAG pairsWithOne(const BuiltinCall& call, Tag tag) {
  DAG args = call.arguments;
  DAG result = newl2(2 * argumentCount(call) + 1, tag);
  for (Word i = 1; i < lengthOf(args); ++i) {
    result[2 * i - 1] = args[i];
    result[2 * i] = cons1;
  }
  return simpl(withListsAdded(result));
}

DAG relation(const BuiltinCall& call, Tag tag, bool swapped) {
  if (argumentCount(call) != 2) wrongParameters(call);
  DAG a = call.arguments[1], b = call.arguments[2];
  return simpl(swapped ? new3(tag, b, a) : new3(tag, a, b));
}

DAG connective(const BuiltinCall& call, Tag tag, DAG neutral) {
  DAG args = call.arguments;
  Word n = argumentCount(call);
  if (n == 0) return neutral;
  DAG folded = args[1];
  for (Word i = 2; i <= n; ++i) folded = simpl(new3(tag, folded, args[i]));
  return isImmediate(folded) ? folded : evalbool(folded);
}

}  // namespace

DAG builtin::plusOperator(const BuiltinCall& call) { return pairsWithOne(call, SUM); }
DAG builtin::timesOperator(const BuiltinCall& call) { return pairsWithOne(call, PROD); }

DAG builtin::powerOperator(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  return simpl(new3(POWER, call.arguments[1], call.arguments[2]));
}

DAG builtin::equalOperator(const BuiltinCall& call) { return relation(call, EQUATION, false); }
DAG builtin::unequalOperator(const BuiltinCall& call) { return relation(call, INEQUAT, false); }
DAG builtin::lessOperator(const BuiltinCall& call) { return relation(call, LESSTHAN, false); }
DAG builtin::lessEqualOperator(const BuiltinCall& call) { return relation(call, LESSEQ, false); }
DAG builtin::greaterOperator(const BuiltinCall& call) { return relation(call, LESSTHAN, true); }
DAG builtin::greaterEqualOperator(const BuiltinCall& call) { return relation(call, LESSEQ, true); }

DAG builtin::andOperator(const BuiltinCall& call) { return connective(call, AND, ini("true")); }
DAG builtin::orOperator(const BuiltinCall& call) { return connective(call, OR, ini("false")); }
DAG builtin::notOperator(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG negated = simpl(new2(NOT, call.arguments[1]));
  return isImmediate(negated) ? negated : evalbool(negated);
}

DAG builtin::negate(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return simpl(korel::negate(call.arguments[1]));
}

}  // namespace korel
