#include "algebra/polynomials/degree.h"

#include "algebra/polynomials/indeterminates.h"
#include "eval/simplify/simplify.h"
#include "eval/walk/has.h"
#include "frame/environment.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

struct Question {
  DAG variables;  // one, or an EXPSEQ of them
  DegreeEnd end;
};

DAG degreeOf(const Question& question, DAG p);

// A negative power of a variable itself counts; one of a larger base is no polynomial, but has a low degree.
DAG degreeOfProduct(const Question& question, DAG p) {
  DAG sum = cons0;
  for (Word i = 1; i < lengthOf(p); i += 2) {
    DAG base = p[i], exponent = p[i + 1];
    bool isVariable = isMember(base, question.variables);
    if (!isVariable && !hasany(base, question.variables)) continue;
    if (!isInteger(exponent)) return ini("FAIL");
    if (!isVariable && consneg(exponent) && question.end == DegreeEnd::high) return ini("FAIL");
    DAG degree = degreeOf(question, base);
    if (!isInteger(degree)) return degree;
    sum = add(sum, mul(degree, exponent));
  }
  return simpl(sum);
}

DAG degreeOfSum(const Question& question, DAG p) {
  DAG best{};
  for (Word i = 1; i < lengthOf(p); i += 2) {
    DAG degree = degreeOf(question, p[i]);
    if (degree == ini("FAIL")) return degree;
    if (!best) {
      best = degree;
      continue;
    }
    int order = compcon(degree, best);
    if (question.end == DegreeEnd::high ? order > 0 : order < 0) best = degree;
  }
  return best ? best : cons0;
}

DAG degreeOf(const Question& question, DAG p) {
  if (isMember(p, question.variables)) return cons1;
  if (isNumber(p)) return !isZero(p) ? cons0 : question.end == DegreeEnd::high ? consminf : ini("infinity");
  checkStack();
  switch (tagOf(p)) {
    case NAME: case STRING: case TABLEREF: return cons0;
    case DCOLON: return degreeOf(question, p[1]);
    case PROD: return degreeOfProduct(question, p);
    case SUM: return degreeOfSum(question, p);
    default: return hasany(p, question.variables) ? ini("FAIL") : cons0;
  }
}

DAG degreeBuiltin(const BuiltinCall& call, DegreeEnd end) {
  if (argumentCount(call) < 1 || argumentCount(call) > 2) wrongParameters(call);
  DAG p = call.arguments[1];
  return degree(p, variablesArgument(call, 2, p), end);
}

}  // namespace

DAG degree(DAG p, DAG x, DegreeEnd end) { return degreeOf({singleMember(x), end}, p); }

DAG variablesArgument(const BuiltinCall& call, Word which, DAG p) {
  if (argumentCount(call) < which) return indetsSequence(p);
  DAG x = call.arguments[which];
  if (isTag(x, LIST) || isTag(x, SET)) x = x[1];
  if (isNumber(x)) wrongParameters(call);
  return asSequence(x);
}

DAG builtin::degree(const BuiltinCall& call) { return degreeBuiltin(call, DegreeEnd::high); }
DAG builtin::ldegree(const BuiltinCall& call) { return degreeBuiltin(call, DegreeEnd::low); }

}  // namespace korel
