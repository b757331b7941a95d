#include "library/native/expected_arguments.h"

#include "frame/errors.h"
#include "library/native/native.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr TagSet notAlgebraic =
    TagSet{STRING, LIST, SET, RANGE, EQUATION, INEQUAT, LESSEQ, LESSTHAN, AND, OR, NOT, TABLE, RTABLE, PROC};

constexpr const char* algebraicExpected = "%1 expects an algebraic expression, but received %2";

}  // namespace

void wrongCount(const BuiltinCall& call, const char* message) {
  KernelException(message, call.self, immediate(static_cast<std::int32_t>(argumentCount(call))));
}

void requireAlgebraic(const BuiltinCall& call, DAG x) {
  if (isAmong(x, notAlgebraic)) KernelException(algebraicExpected, call.self, x);
}

DAG onlyArgument(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongCount(call, "%1 expects one argument, but received %2");
  requireAlgebraic(call, call.arguments[1]);
  return call.arguments[1];
}

// expectalgebraic(name, x, ...): the error of the procedure of that name where one of x, ... can be no number.
DAG native::expectalgebraic(const BuiltinCall& call) {
  const Word count = argumentCount(call);
  if (count < 1 || !isName(call.arguments[1])) wrongParameters(call);
  for (Word i = 2; i <= count; ++i) {
    if (!isAmong(call.arguments[i], notAlgebraic)) continue;
    DAG message = strinstall(algebraicExpected);
    KorelExceptionOf(call.arguments[1], new4(EXPSEQ, message, call.arguments[1], call.arguments[i]));
  }
  return null;
}

}  // namespace korel
