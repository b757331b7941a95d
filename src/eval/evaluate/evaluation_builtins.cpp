#include "eval/evaluate/evaluation_builtins.h"

#include <limits>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/evaluate_at.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "eval/statements/statements.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

// ---- eval

namespace {

constexpr std::int64_t manyLevels = std::numeric_limits<std::int64_t>::max();

// An equation, or a list or set of nothing else.
bool isEquationList(DAG x) {
  if (isTag(x, EQUATION)) return true;
  if (!isTag(x, LIST) && !isTag(x, SET)) return false;
  for (Word i = 1; i < lengthOf(x[1]); ++i)
    if (!isTag(x[1][i], EQUATION)) return false;
  return true;
}

// `x` evaluated one level after the other, until nothing changes.
DAG evaluateLevels(DAG x, std::int64_t levels) {
  for (; levels > 0; --levels) {
    passWork(objectSteps);
    DAG next = simpl(mvalue(x));
    if (next == x) break;
    x = next;
  }
  return x;
}

}  // namespace

DAG builtin::eval(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 1) {
    DAG lastName;
    DAG once = simpl(korel::eval(call.arguments[1], &lastName));
    return simpl(korel::eval(once, &lastName));
  }
  if (n != 2) wrongParameters(call);
  DAG second = singleMember(simpl(korel::eval(call.arguments[2])));
  if (isEquationList(second)) {
    DAG equations = isTag(second, EQUATION) ? simpl(new2(EXPSEQ, second)) : second[1];
    return evalat(equations, simpl(korel::eval(call.arguments[1])));
  }
  if (!isInteger(second) || consneg(second) || isZero(second)) wrongParameters(call);
  return evaluateLevels(call.arguments[1], FitIntoLongLong(second) ? LongLongValue(second) : manyLevels);
}

// ---- names and truth

DAG builtin::evalb(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return evalbool(call.arguments[1]);
}

DAG builtin::evaln(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return simpl(evalname(call.arguments[1]));
}

DAG builtin::assigned(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG x = call.arguments[1];
  if (isTag(x, TABLEREF)) {
    // The entry is looked for in what the base stands for, not in the name that was written.
    DAG base = simpl(korel::eval(x[1]));
    if (base != x[1] && (isTag(base, NAME) || isTag(base, TABLEREF))) {
      x = CopyAlg(x);
      x[1] = base;
    }
  }
  DAG name = evalname(x);
  if (isTag(name, NAME)) return truth(valuenv(name, false) != name);
  if (isTag(name, TABLEREF) || isTag(name, FUNCTION)) {
    // Asked for its last name, an entry that is a procedure or table shows itself and not its reference.
    DAG lastName;
    DAG value = simpl(korel::eval(x, &lastName));
    if (value == simpl(name)) return truth(false);
    // An indexing function may answer with the reference to another place, which is empty as well.
    if (isTag(name, TABLEREF) && isTag(value, TABLEREF) && value[1] == name[1])
      return truth(simpl(korel::eval(value, &lastName)) != value);
    return truth(true);
  }
  wrongParameters(call);
}

DAG builtin::if_(const BuiltinCall& call) {
  if (argumentCount(call) != 3) wrongParameters(call);
  DAG args = call.arguments;
  if (args[2] == args[3]) return korel::eval(args[2]);
  DAG condition = singleMember(simpl(korel::eval(args[1])));
  DAG decided = evalbool(condition);
  if (decided == ini("true")) return korel::eval(args[2]);
  if (decided == ini("false") || decided == ini("FAIL")) return korel::eval(args[3]);
  // Undecided, the call outlives the frame that its other arguments may refer to.
  return simpl(newCall(call.self, {decided, evparloc(args[2]), evparloc(args[3])}));
}

}  // namespace korel
