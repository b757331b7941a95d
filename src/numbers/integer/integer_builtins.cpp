#include "numbers/integer/integer_builtins.h"

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// What could still become an integer: the call then stays as it is.
bool isSymbolic(DAG x) { return !isNumber(x) && !hasTag(x, STRING); }

// Quotient and remainder share all but which of them is the value.
DAG divide(const BuiltinCall& call, bool wantsQuotient) {
  Word n = argumentCount(call);
  if (n < 2 || n > 3) wrongParameters(call);
  DAG a = call.arguments[1], b = call.arguments[2];
  if (!isInteger(a) || !isInteger(b)) {
    if (isSymbolic(a) || isSymbolic(b)) return unevaluatedCall(call);
    wrongParameters(call);
  }
  if (n == 3 && !isNameOrIndexed(call.arguments[3])) wrongParameters(call);
  if (n == 2 && isImmediate(a) && isImmediate(b) && !isZeroImmediate(b)) {
    const std::int32_t x = immediateValue(a), y = immediateValue(b);
    return immediate(wantsQuotient ? x / y : x % y);
  }
  DAG q;
  DAG r = simpl(rem(a, b, &q));
  q = simpl(q);
  if (n == 3) assign(evalname(call.arguments[3]), wantsQuotient ? r : q);
  return wantsQuotient ? q : r;
}

}  // namespace

DAG builtin::igcd(const BuiltinCall& call) {
  DAG folded = cons0;
  for (Word i = 1; i < lengthOf(call.arguments); ++i) {
    DAG x = call.arguments[i];
    if (!isInteger(x)) {
      if (isSymbolic(x)) return unevaluatedCall(call);
      wrongParameters(call);
    }
    folded = simpl(korel::igcd(folded, x));
  }
  return folded;
}

DAG builtin::iquo(const BuiltinCall& call) { return divide(call, true); }
DAG builtin::irem(const BuiltinCall& call) { return divide(call, false); }

DAG builtin::isqrt(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG n = call.arguments[1];
  if (isInteger(n)) return simpl(korel::isqrt(n));
  if (isSymbolic(n)) return unevaluatedCall(call);
  wrongParameters(call);
}

DAG builtin::icontent(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return simpl(korel::icontent(call.arguments[1]));
}

}  // namespace korel
