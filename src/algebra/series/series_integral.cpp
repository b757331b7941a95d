// Integrals of series, term by term.

#include "algebra/series/expansion.h"
#include "algebra/series/series_object.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/walk/has.h"
#include "numbers/arithmetic.h"
#include "store/generations.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG integralByLibrary(DAG e, DAG x) {
  DAG value = simpl(eval(simpl(newCall(ini("int"), {e, x}))));
  updategen(value);
  return value;
}

// The coefficients depend on x, the variable doesn't.
DAG integralOfCoefficients(DAG s, DAG x) {
  DAG result = CopyAlg(s);
  for (Word i = 0; i < seriesPairCount(s); ++i)
    if (s[2 + 2 * i] != order1) result[2 + 2 * i] = integralByLibrary(s[2 + 2 * i], x);
  return simpl(result);
}

bool coefficientsHold(DAG s, DAG x) {
  for (Word i = 0; i < seriesPairCount(s); ++i)
    if (has(seriesPairs(s)[i].coefficient, x)) return true;
  return false;
}

// x, or x + c.
bool isShifted(DAG variable, DAG x) { return variable == x || !has(simpl(new5(SUM, variable, cons1, x, consm1)), x); }

DAG integralOfTerms(DAG s) {
  DAG variable = variableOf(s), logarithmic;
  SeriesBuilder result(variable, seriesPairCount(s));
  for (Word i = 0; i < seriesPairCount(s); ++i) {
    const SeriesPair pair = seriesPairs(s)[i];
    const std::int32_t raised = pair.exponent + 1;
    if (pair.coefficient == order1) {
      result.add(order1, raised > largestSeriesExponent ? largestSeriesExponent : raised);
    } else if (raised == 0) {
      logarithmic = pair.coefficient;
    } else {
      DAG inverse = simpl(new3(PROD, immediate(raised), consm1));
      result.add(productOfCoefficients(pair.coefficient, inverse), boundedExponent(raised));
    }
  }
  DAG integral = simpl(result.finish());
  if (!logarithmic) return integral;
  DAG ln = simpl(eval(simpl(newCall(ini("ln"), {variable}))));
  return simpl(new5(SUM, convpoly(integral), cons1, simpl(NewPROD(logarithmic, ln)), cons1));
}

}  // namespace

DAG intseries(DAG s, DAG x) {
  if (!has(variableOf(s), x)) return integralOfCoefficients(s, x);
  if (coefficientsHold(s, x) || !isShifted(variableOf(s), x)) return integralByLibrary(convpoly(s), x);
  return integralOfTerms(s);
}

DAG builtin::intSeries(const BuiltinCall& call) {
  if (argumentCount(call) != 2 || !isTag(call.arguments[1], SERIES)) wrongParameters(call);
  return intseries(call.arguments[1], call.arguments[2]);
}

}  // namespace korel
