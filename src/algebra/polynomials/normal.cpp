#include "algebra/polynomials/normal.h"

#include "algebra/float_context.h"
#include "algebra/polynomial_types.h"
#include "algebra/polynomials/expand.h"
#include "algebra/polynomials/fractions.h"
#include "algebra/polynomials/frontend.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr TagSet structures = TagSet{LIST, SET, EXPSEQ, RANGE} | relationTags;

bool isRational(DAG x) { return typol(PolynomialForm::rationalFunction, x, DAG(), anyCoefficient); }

// The parts of a call are brought to normal form before the call is frozen.
DAG normalPart(DAG part) {
  if (!isTag(part, FUNCTION)) return part;
  DAG arguments = enormal(asSequence(part[2]), false);
  return arguments == part[2] ? part : simpl(withField(part, 2, asSequence(arguments)));
}

// The fraction of `x` with its non-rational parts frozen.
struct FrozenFraction {
  Fraction fraction;
  DAG thaw;
};
FrozenFraction frozenFraction(DAG x) {
  Frozen frozen = freeze(x, normalPart);
  if (!isRational(frozen.expression)) KernelException("invalid arguments to normal/numden");
  return {fractionInLowestTerms(frozen.expression), frozen.thaw};
}

}  // namespace

void numden(DAG x, DAG& numerator, DAG& denominator) {
  FrozenFraction frozen = frozenFraction(x);
  numerator = thaw(numeratorOf(frozen.fraction), frozen.thaw);
  denominator = thaw(denominatorOf(frozen.fraction), frozen.thaw);
}

DAG numer(DAG x) {
  DAG numerator, denominator;
  numden(x, numerator, denominator);
  return numerator;
}

DAG denom(DAG x) {
  DAG numerator, denominator;
  numden(x, numerator, denominator);
  return denominator;
}

namespace {

DAG normalExpression(DAG x, bool expanded) {
  FrozenFraction frozen = frozenFraction(x);
  if (!expanded) return thaw(quotientOf(frozen.fraction), frozen.thaw);
  DAG n = expand(numeratorOf(frozen.fraction)), d = expand(denominatorOf(frozen.fraction));
  DAG quotient = d == cons1 ? n : evalsysf("normal/expanded", newSequence({n, d}));
  return thaw(quotient, frozen.thaw);
}

DAG normalByTag(DAG x, bool expanded) {
  if (isNumber(x) || isText(x) || isTag(x, TABLEREF)) return x;
  if (tagOf(x) >= RTABLE) KernelException("invalid arguments to normal");
  if (isTag(x, LIST) || isTag(x, SET)) {
    DAG members = enormal(x[1], expanded);
    return members == x[1] ? x : simpl(withField(x, 1, asSequence(members)));
  }
  if (isAmong(x, structures)) {
    DAG result = withFields(x, 1, 1, [=](DAG field) { return enormal(field, expanded); });
    return result == x ? x : simpl(result);
  }
  switch (tagOf(x)) {
    case SERIES: {
      DAG result = withFields(x, referenceFields(x), [=](DAG field) { return enormal(field, expanded); });
      return result == x ? x : simpl(result);
    }
    case SUM: case PROD: case POWER: return normalExpression(x, expanded);
    case FUNCTION: return normalPart(x);
    default: return x;
  }
}

}  // namespace

DAG enormal(DAG x, bool expanded) {
  if (isImmediate(x) || tagOf(x) <= NAME) return x;
  checkStack();
  const bool remembers = !expanded && !isTag(x, EXPSEQ);
  if (remembers)
    if (DAG known = recall(Remembering::normal, x); known != absent) return known;
  DAG result = normalByTag(x, expanded);
  if (remembers) memorize(Remembering::normal, x, result);
  return result;
}

DAG builtin::numer(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return inFloatContextOf(call.arguments, [&] { return korel::numer(call.arguments[1]); });
}
DAG builtin::denom(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return inFloatContextOf(call.arguments, [&] { return korel::denom(call.arguments[1]); });
}

DAG builtin::normal(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n < 1 || n > 2) wrongParameters(call);
  if (n == 2 && !(isName(call.arguments[2]) && hasText(call.arguments[2], "expanded"))) wrongParameters(call);
  return inFloatContextOf(call.arguments, [&] { return enormal(call.arguments[1], n == 2); });
}

}  // namespace korel
