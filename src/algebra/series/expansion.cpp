#include "algebra/series/expansion.h"

#include "algebra/float_context.h"
#include "algebra/series/series_arithmetic.h"
#include "algebra/series/series_object.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/substitute.h"
#include "eval/walk/has.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// What a `series/` procedure answered as PuiseuxSeries(e), as the equation of the expression and e; or 0.
DAG PuiseuxGlobal;

bool failed(DAG result) { return result == ini("FAIL"); }
std::int32_t degreeStamp(std::int32_t d) { return d == 0x7fffffff ? d : d + 1; }

bool isConstantTerm(DAG p, DAG x) {
  if (isImmediate(p) || isNumber(p)) return true;
  if (p == ini("infinity") || p == ini("O")) return true;
  return !hasany(p, new4(EXPSEQ, x, ini("infinity"), ini("O")));
}

DAG constantSeries(DAG x, DAG p) { return simpl(singleTerm(x, p, 0)); }

// The truncated form of a series that may be longer.
DAG truncated(DAG s, std::int32_t d) {
  const Word count = seriesPairCount(s);
  if (count == 0) return s;
  const std::int64_t last = lastSeriesPair(s).exponent;
  if (hasOrderTerm(s) ? last <= degreeStamp(d) : last <= d) return s;
  return sortpol(CopyAlg(s), d);
}

// ---- sums

// The term c * t, where `x` stands in the pair `i` of the PROD `t` alone, when that is a positive integer power.
bool addPowerOfVariable(SeriesBuilder& result, DAG t, DAG c, Word i, std::int32_t d) {
  DAG e = t[i + 1];
  if (!isInteger(e) || consneg(e) || isZero(e)) return false;
  const bool large = !isImmediate(e) || immediateValue(e) > d;
  if (large) {
    const std::int32_t shown = isImmediate(e) ? immediateValue(e) : largestSeriesExponent + 1;
    if (shown > largestSeriesExponent && d >= largestSeriesExponent) KernelException("object too large");
    result.add(order1, shown > largestSeriesExponent ? largestSeriesExponent : shown);
    return true;
  }
  DAG coefficient = lengthOf(t) == 3 ? c : simpl(new3(SUM, copydel(t, i - 1, 2), c));
  result.add(coefficient, boundedExponent(immediateValue(e)));
  return true;
}

DAG polynSum(DAG p, DAG x, std::int32_t d) {
  SeriesBuilder result(x, (lengthOf(p) - 1) / 2);
  for (Word k = 1, n = lengthOf(p); k < n; k += 2) {
    DAG t = p[k], c = p[k + 1];
    const std::int32_t at = exppolx(t, x);
    if (at > 0 && addPowerOfVariable(result, t, c, static_cast<Word>(at), d)) continue;
    if (at == 0) {
      result.add(simpl(NewPROD(t, c)), 0);
      continue;
    }
    DAG s = polyn(t, x, d);
    if (failed(s)) return s;
    if (!isTag(s, SERIES)) KernelException("polyn did not return a series");
    for (Word i = 0; i < seriesPairCount(s); ++i) {
      const SeriesPair pair = seriesPairs(s)[i];
      result.add(productOfCoefficients(pair.coefficient, c), pair.exponent);
    }
  }
  return sortpol(result.finish(), d);
}

// ---- products

// The series of base^n, a pair of a product, or FAIL; `soFar`, the product of the pairs before or 0, is divided when
// n is -1, and `divided` tells so.
DAG polynPair(DAG base, DAG n, DAG x, std::int32_t d, DAG soFar, bool& divided) {
  divided = false;
  if (isConstantTerm(base, x)) return n == cons1 ? polyn(base, x, d) : constantSeries(x, simpl(new3(PROD, base, n)));
  if (base == x && isInteger(n)) {
    if (!isImmediate(n) && !consneg(n) && d < largestSeriesExponent) return simpl(orderTerm(x, largestSeriesExponent));
    const std::int32_t e = isImmediate(n) ? boundedExponent(immediateValue(n)) : boundedExponent(INT32_MAX);
    return simpl(e > d ? orderTerm(x, e) : singleTerm(x, cons1, e));
  }
  DAG s = polyn(base, x, d);
  if (failed(s) || n == cons1) return s;
  if (!isTag(s, SERIES)) KernelException("polyn did not return a series");
  if (n == consm1) {
    divided = true;
    return divpol(soFar ? soFar : constantSeries(x, cons1), s, d);
  }
  return powpol(s, n, d, base);
}

DAG polynProduct(DAG p, DAG x, std::int32_t d) {
  DAG result;
  for (Word i = 1, n = lengthOf(p); i < n; i += 2) {
    bool divided;
    DAG s = polynPair(p[i], p[i + 1], x, d, result, divided);
    if (failed(s)) return s;
    result = divided || !result ? s : mulpol(result, s, d);
    updategen(result);
  }
  return result ? result : constantSeries(x, cons1);
}

// ---- functions

// What a procedure of the library answered for `p`.
DAG fromLibrary(DAG p, DAG x, DAG answer) {
  if (isTag(answer, SERIES) || failed(answer)) return answer;
  if (isTag(answer, FUNCTION) && isName(answer[1]) && hasText(answer[1], "PuiseuxSeries") && lengthOf(answer[2]) == 2) {
    PuiseuxGlobal = simpl(new3(EQUATION, p, answer[2][1]));
    updategen(PuiseuxGlobal);
    return ini("FAIL");
  }
  return constantSeries(x, answer);
}

DAG polynFunction(DAG p, DAG x) {
  if (p == order1) return simpl(orderTerm(x, 0));
  DAG arguments = p[2];
  DAG extended = space_insert(arguments, lengthOf(arguments) - 1, 1);
  extended[lengthOf(arguments)] = x;
  DAG answer = isNameOrIndexed(p[1]) ? evalextf("series/", p[1], simpl(extended)) : null;
  if (answer == null) answer = evalsysf("series/function", simpl(new3(EXPSEQ, p, x)));
  updategen(answer);
  return fromLibrary(p, x, answer);
}

// ---- any expression

DAG polynByTag(DAG p, DAG x, std::int32_t d) {
  switch (tagOf(p)) {
    case SUM: return polynSum(p, x, d);
    case PROD: return polynProduct(p, x, d);
    case FUNCTION: return polynFunction(p, x);
    case POWER: return powerByLibrary(p, x);
    case DCOLON: return polyn(p[1], x, d);
    default: KernelException("invalid expression for series");
  }
}

}  // namespace

std::int32_t exppolx(DAG t, DAG x) {
  if (!isTag(t, PROD)) return -1;
  std::int32_t at = 0;
  for (Word i = lengthOf(t) - 2; i + 1 > 1; i -= 2) {
    if (t[i] == x) at = static_cast<std::int32_t>(i);
    else if (!isImmediate(t[i]) && tagOf(t[i]) >= TABLEREF && has(t[i], x)) return -1;
  }
  return at;
}

DAG polyn(DAG p, DAG x, std::int32_t d) {
  checkStack();
  if (isTag(p, SERIES) && variableOf(p) != x && !isConstantTerm(p, x)) p = convpoly(p);
  if (p == x) return simpl(d < 1 ? orderTerm(x, 1) : singleTerm(x, cons1, 1));
  if (isConstantTerm(p, x)) return constantSeries(x, p);
  if (isTag(p, SERIES) && variableOf(p) == x) return truncated(p, d);
  DAG key = simpl(new3(EXPSEQ, p, x));
  DAG known = recall(Remembering::series, key, degreeStamp(d));
  if (known != absent && isTag(known, SERIES)) return truncated(known, d);
  updategen(key);
  DAG result = polynByTag(p, x, d);
  if (failed(result)) return result;
  result = simpl(result);
  updategen(result);
  memorize(Remembering::series, key, result, degreeStamp(d));
  return result;
}

// ---- at a point

std::int32_t degreeOfOrder() {
  DAG order = environmentWord(envOrder);
  if (order == ini("infinity")) return noTruncation;
  if (!isInteger(order)) KernelException("Order can only be assigned an integer");
  if (!isImmediate(order)) return noTruncation;
  return immediateValue(order) - 1;
}

namespace {

DAG substituted(DAG x, DAG by, DAG in) { return simpl(subs(simpl(new3(EQUATION, x, by)), in)); }

}  // namespace

DAG series(DAG p, DAG x, DAG a) {
  const std::int32_t d = degreeOfOrder();
  const bool atZero = isNumber(a) && isZero(a);
  if (!atZero) p = substituted(x, simpl(new5(SUM, x, cons1, a, cons1)), p);
  PuiseuxGlobal = DAG();
  DAG result = inFloatContextOf(p, [&] { return polyn(p, x, d); });
  if (failed(result)) {
    DAG arguments = PuiseuxGlobal ? new4(EXPSEQ, p, x, PuiseuxGlobal) : new3(EXPSEQ, p, x);
    result = evalsysf("series/fracpower", simpl(arguments));
    updategen(result);
  }
  if (!atZero) result = substituted(x, simpl(new5(SUM, x, cons1, a, consm1)), result);
  return result;
}

// ---- the built-ins

namespace {

// `Order` for the time of an expansion.
DAG seriesOfOrder(DAG p, DAG x, DAG a, DAG order) {
  if (!isInteger(order) && order != ini("infinity")) KernelException("Order can only be assigned an integer");
  if (order != ini("infinity") && (consneg(order) || !FitIntoWord(order)))
    KernelException("invalid assignment to Order");
  EnvironmentChange change;
  changeEnvironmentWord(change, envOrder, order);
  DAG result = series(p, x, a);
  restoreEnvironmentWord(change);
  return result;
}

// The two built-ins, up to what `taylor` asks of the result.
DAG seritayl(const BuiltinCall& call) {
  const Word count = argumentCount(call);
  if (count < 2 || count > 3) wrongParameters(call);
  DAG p = call.arguments[1], x = call.arguments[2], a = cons0;
  if (isTag(x, EQUATION)) {
    a = x[2];
    x = x[1];
  }
  if (!isNameOrIndexed(x)) wrongParameters(call);
  if (has(a, ini("infinity"))) return evalsysf("series/infinity", call.arguments);
  return simpl(count == 3 ? seriesOfOrder(p, x, a, call.arguments[3]) : series(p, x, a));
}

bool isTaylor(DAG s, DAG x) {
  if (!isTag(s, SERIES)) return !has(s, x);
  const Word count = seriesPairCount(s);
  if (count != 0 && seriesPairs(s)[0].exponent < 0) return false;
  for (Word i = 0; i < count; ++i)
    if (has(seriesPairs(s)[i].coefficient, x)) return false;
  return true;
}

}  // namespace

DAG builtin::series(const BuiltinCall& call) { return seritayl(call); }

DAG builtin::taylor(const BuiltinCall& call) {
  DAG result = seritayl(call);
  DAG x = call.arguments[2];
  if (isTag(x, EQUATION) && has(x[2], ini("infinity"))) return result;
  if (!isTaylor(result, isTag(x, EQUATION) ? x[1] : x))
    KernelException("does not have a taylor expansion, try series()");
  return result;
}

DAG builtin::order(const BuiltinCall& call) {
  if (argumentCount(call) != 1 || !isTag(call.arguments[1], SERIES)) wrongParameters(call);
  DAG s = call.arguments[1];
  return hasOrderTerm(s) ? immediate(lastSeriesPair(s).exponent) : ini("infinity");
}

}  // namespace korel
