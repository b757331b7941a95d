// The operators as procedures, set operations, and the creation and listing of tables.

#include "eval/arithmetic.h"
#include "eval/assign.h"
#include "eval/environment_variables.h"
#include "eval/evaluate.h"
#include "eval/evaluator_builtins.h"
#include "eval/procedures.h"
#include "eval/simplify.h"
#include "eval/statements.h"
#include "structure/tables.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

namespace {

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }

// Pairs (argument, 1) of a SUM or PROD.
DAG pairsWithOne(const BuiltinCall& call, Tag tag) {
  DAG args = call.arguments;
  DAG result = newl2(2 * argumentCount(call) + 1, tag);
  for (Word i = 1; i < lengthOf(args); ++i) {
    result[2 * i - 1] = args[i];
    result[2 * i] = cons1;
  }
  return simpl(result);
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

std::int32_t signedWord(DAG x) { return static_cast<std::int32_t>(x.word); }

// One pass over two sorted bodies; what is kept by where a member stands.
DAG mergeSets(DAG a, DAG b, bool onlyLeft, bool both, bool onlyRight) {
  DAG x = a[1], y = b[1];
  Word n = lengthOf(x), m = lengthOf(y);
  DAG out = newl2(n + m, EXPSEQ);
  Word at = 1, i = 1, k = 1;
  while (i < n || k < m) {
    if (k >= m || (i < n && signedWord(x[i]) < signedWord(y[k]))) {
      if (onlyLeft) out[at++] = x[i];
      ++i;
    } else if (i >= n || signedWord(y[k]) < signedWord(x[i])) {
      if (onlyRight) out[at++] = y[k];
      ++k;
    } else {
      if (both) out[at++] = x[i];
      ++i;
      ++k;
    }
  }
  shorten(out, n + m, at);
  return simpl(new2(SET, simpl(out)));
}

DAG setOperation(const BuiltinCall& call, bool onlyLeft, bool both, bool onlyRight) {
  Word n = argumentCount(call);
  if (n == 0) return emptyset;
  DAG folded = call.arguments[1];
  for (Word i = 1; i <= n; ++i)
    if (!isTag(call.arguments[i], SET)) return call.form;
  for (Word i = 2; i <= n; ++i)
    folded = mergeSets(folded, call.arguments[i], onlyLeft, both, onlyRight);
  return folded;
}

DAG tableOf(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG t = call.arguments[1];
  if (isTag(t, NAME)) t = valuenv(t, false);
  if (!isTag(t, TABLE)) wrongParameters(call);
  return t;
}

}  // namespace

DAG plusOperator(const BuiltinCall& call) { return pairsWithOne(call, SUM); }
DAG timesOperator(const BuiltinCall& call) { return pairsWithOne(call, PROD); }

DAG powerOperator(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  return simpl(new3(POWER, call.arguments[1], call.arguments[2]));
}

DAG equalOperator(const BuiltinCall& call) { return relation(call, EQUATION, false); }
DAG unequalOperator(const BuiltinCall& call) { return relation(call, INEQUAT, false); }
DAG lessOperator(const BuiltinCall& call) { return relation(call, LESSTHAN, false); }
DAG lessEqualOperator(const BuiltinCall& call) { return relation(call, LESSEQ, false); }
DAG greaterOperator(const BuiltinCall& call) { return relation(call, LESSTHAN, true); }
DAG greaterEqualOperator(const BuiltinCall& call) { return relation(call, LESSEQ, true); }

DAG andOperator(const BuiltinCall& call) { return connective(call, AND, ini("true")); }
DAG orOperator(const BuiltinCall& call) { return connective(call, OR, ini("false")); }
DAG notOperator(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG negated = simpl(new2(NOT, call.arguments[1]));
  return isImmediate(negated) ? negated : evalbool(negated);
}

DAG negateBuiltin(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return simpl(negate(call.arguments[1]));
}

DAG unionOperator(const BuiltinCall& call) { return setOperation(call, true, true, true); }
DAG intersectOperator(const BuiltinCall& call) { return setOperation(call, false, true, false); }
DAG minusOperator(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  return setOperation(call, true, false, false);
}

DAG tableBuiltin(const BuiltinCall& call) {
  DAG args = call.arguments;
  // The entries of a list of equations are stored one by one.
  if (argumentCount(call) == 1 && (isTag(args[1], LIST) || isTag(args[1], SET))) {
    DAG table = maketable(DAG(), null);
    DAG body = args[1][1];
    for (Word i = 1; i < lengthOf(body); ++i) {
      bool equation = isTag(body[i], EQUATION);
      DAG index = equation ? body[i][1] : immediate(static_cast<std::int32_t>(i));
      TableIndex(index, DAG(), table, equation ? body[i][2] : body[i]);
    }
    return table;
  }
  if (argumentCount(call) > 0 && isTag(args[1], NAME)) {
    DAG rest = argumentCount(call) > 1 ? copysub(args, 1, argumentCount(call) - 1) : null;
    return maketable(args[1], rest);
  }
  return maketable(DAG(), args);
}

DAG indicesBuiltin(const BuiltinCall& call) { return indices(tableOf(call), tableIndices); }
DAG entriesBuiltin(const BuiltinCall& call) { return indices(tableOf(call), tableEntries); }

}  // namespace korel
