#include "algebra/differentiation/diff.h"

#include "algebra/float_context.h"
#include "algebra/series/expansion.h"
#include "algebra/series/series_object.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG keyOf(DAG e, DAG x) { return simpl(new3(EXPSEQ, e, x)); }
DAG derivative(DAG e, DAG x) { return diff(e, x, keyOf(e, x)); }
DAG unevaluated(DAG key) { return simpl(new3(FUNCTION, ini("diff"), key)); }

[[noreturn]] void refuseNonAlgebraic() { KernelException("non-algebraic expressions cannot be differentiated"); }

// ---- sums

// c * x^n, or c times a product with x^n in it: the pair of the derivative.
bool derivativeOfMonomial(DAG t, DAG c, DAG x, DAG& term, DAG& coefficient) {
  if (t == x) {
    term = cons1;
    coefficient = c;
    return true;
  }
  const std::int32_t found = exppolx(t, x);
  if (found <= 0) return false;
  const auto at = static_cast<Word>(found);
  DAG n = t[at + 1];
  coefficient = simpl(mul(c, n));
  if (n == cons1) {
    term = simpl(copydel(t, at - 1, 2));
  } else {
    term = CopyAlg(t);
    term[at + 1] = simpl(add(n, consm1));
    term = simpl(term);
  }
  return true;
}

DAG derivativeOfSum(DAG e, DAG x) {
  DAG sum = newl2(lengthOf(e), SUM);
  Word used = 1;
  for (Word i = 1, n = lengthOf(e); i < n; i += 2) {
    DAG term, coefficient;
    if (!derivativeOfMonomial(e[i], e[i + 1], x, term, coefficient)) {
      term = derivative(e[i], x);
      coefficient = e[i + 1];
      if (term == cons0) continue;
    }
    sum[used] = term;
    sum[used + 1] = coefficient;
    used += 2;
  }
  shorten(sum, lengthOf(sum), used);
  return simpl(sum);
}

// ---- products and powers

// The product with the pair `at`, b^n, replaced by its derivative: n * b^(n-1) * b'.
void addProductTerm(DAG sum, Word& used, DAG e, Word at, DAG b) {
  DAG n = e[at + 1];
  DAG term;
  if (n == cons1) {
    term = CopyAlg(e);
    term[at] = b;
  } else {
    term = space_insert(e, lengthOf(e) - 1, 2);
    term[at + 1] = simpl(add(n, consm1));
    term[lengthOf(e)] = b;
    term[lengthOf(e) + 1] = cons1;
  }
  sum[used] = term;
  sum[used + 1] = n;
  used += 2;
}

DAG derivativeOfProduct(DAG e, DAG x) {
  DAG sum = newl2(lengthOf(e), SUM);
  Word used = 1;
  for (Word i = 1, n = lengthOf(e); i < n; i += 2) {
    DAG b = derivative(e[i], x);
    if (b == cons0) continue;
    addProductTerm(sum, used, e, i, b);
  }
  shorten(sum, lengthOf(sum), used);
  return simpl(sum);
}

// b^n * (n' * ln(b) + n * b' / b).
DAG derivativeOfPower(DAG e, DAG x) {
  DAG b = e[1], n = e[2];
  DAG sum = newl2(5, SUM);
  Word used = 1;
  DAG inner = derivative(n, x);
  if (inner != cons0) {
    DAG ln = simpl(eval(simpl(newCall(ini("ln"), {b}))));
    sum[used] = simpl(NewPROD(inner, ln));
    sum[used + 1] = cons1;
    used += 2;
  }
  inner = derivative(b, x);
  if (inner != cons0) {
    sum[used] = simpl(new7(PROD, n, cons1, inner, cons1, b, consm1));
    sum[used + 1] = cons1;
    used += 2;
  }
  shorten(sum, lengthOf(sum), used);
  return simpl(NewPROD(e, simpl(sum)));
}

// ---- series

bool coefficientsHold(DAG s, DAG x) {
  for (Word i = 0; i < seriesPairCount(s); ++i)
    if (has(seriesPairs(s)[i].coefficient, x)) return true;
  return false;
}

// Coefficient by coefficient, the variable being no function of x.
DAG derivativeOfCoefficients(DAG s, DAG x) {
  DAG result = CopyAlg(s);
  for (Word i = 0; i < seriesPairCount(s); ++i) result[2 + 2 * i] = derivative(s[2 + 2 * i], x);
  return simpl(result);
}

// Term by term, times the constant derivative of the variable. Coefficients that hold x add their own. False when one
// holds the variable, and its derivative still does: that may weigh as much as a term of another exponent.
bool derivativeOfTerms(DAG s, DAG x, DAG inner, DAG& result) {
  SeriesBuilder terms(variableOf(s), 2 * seriesPairCount(s) + 1);
  for (Word i = 0; i < seriesPairCount(s); ++i) {
    const SeriesPair pair = seriesPairs(s)[i];
    if (pair.coefficient == order1) {
      terms.add(order1, boundedExponent(std::int64_t{pair.exponent} - 1));
      continue;
    }
    DAG own = derivative(pair.coefficient, x);
    if (has(own, x) && has(pair.coefficient, variableOf(s))) return false;
    if (own != cons0) terms.add(own, pair.exponent);
    if (pair.exponent == 0) continue;
    DAG scaled = productOfCoefficients(pair.coefficient, immediate(pair.exponent));
    terms.add(productOfCoefficients(scaled, inner), boundedExponent(std::int64_t{pair.exponent} - 1));
  }
  result = sortpol(terms.finish(), noTruncation);
  return true;
}

DAG derivativeOfSeries(DAG s, DAG x, DAG key) {
  DAG inner = derivative(variableOf(s), x);
  if (inner == cons0) return coefficientsHold(s, x) ? derivativeOfCoefficients(s, x) : cons0;
  if (has(inner, x)) KernelException("cannot differentiate series");
  DAG result;
  return derivativeOfTerms(s, x, inner, result) ? result : evalsysf("diff/series", key);
}

// ---- functions

DAG derivativeOfCall(DAG e, DAG x, DAG key, bool& stays) {
  DAG f = e[1], arguments = e[2];
  if (!has(arguments, x)) return cons0;
  if (isCallOf(f, ini("@@")) && lengthOf(f[2]) == 3) {
    DAG answer = evalextf("diff/@@", key);
    if (answer != null) return answer;
  }
  const Word n = lengthOf(arguments);
  DAG extended = space_insert(arguments, n - 1, 1);
  extended[n] = x;
  DAG withVariable = simpl(extended);
  if (isNameOrIndexed(f)) {
    DAG answer = evalextf("diff/", f, withVariable);
    if (answer != null) return answer;
  }
  if (n != 2 || arguments[1] != x) {
    DAG withFunction = space_insert(withVariable, n, 1);
    withFunction[n + 1] = f;
    DAG answer = evalextf("diff/function", simpl(withFunction));
    if (answer != null && answer != ini("FAIL")) return answer;
  }
  stays = true;
  return unevaluated(key);
}

// ---- any expression

// Members are differentiated one by one; nothing is remembered.
constexpr TagSet memberwiseTags = {EQUATION, EXPSEQ, LIST, SET};

DAG memberwise(DAG e, DAG x) {
  if (hasTag(e, LIST) || hasTag(e, SET)) {
    DAG members = simpl(withFields(e[1], 1, 1, [x](DAG member) { return derivative(member, x); }));
    return simpl(withField(e, 1, members));
  }
  return simpl(withFields(e, 1, 1, [x](DAG member) { return derivative(member, x); }));
}

DAG byTag(DAG e, DAG x, DAG key, bool& stays) {
  switch (tagOf(e)) {
    case SUM: return derivativeOfSum(e, x);
    case PROD: return derivativeOfProduct(e, x);
    case POWER: return derivativeOfPower(e, x);
    case FUNCTION: return derivativeOfCall(e, x, key, stays);
    case DCOLON: return derivative(e[1], x);
    case TABLE: KernelException("please use map to differentiate tables/arrays");
    case NAME: case STRING: case MEMBER: case TABLEREF: case UNEVAL: stays = true; return unevaluated(key);
    default: refuseNonAlgebraic();
  }
}

}  // namespace

DAG diff(DAG e, DAG x, DAG key) {
  if (e == x) return cons1;
  if (e == order1) return order1;
  if (isImmediate(e) || isNumber(e)) return cons0;
  checkStack();
  passWork(objectSteps);
  if (hasTag(e, SERIES)) return derivativeOfSeries(e, x, key);
  if (isAmong(e, memberwiseTags)) return memberwise(e, x);
  if (tagOf(e) > TABLE) refuseNonAlgebraic();
  DAG known = recall(Remembering::diff, key);
  if (known != absent) return known;
  if (!has(e, x)) return cons0;
  updategen(key);
  bool stays = false;
  DAG result = simpl(byTag(e, x, key, stays));
  updategen(result);
  if (!stays) memorize(Remembering::diff, key, result);
  return result;
}

namespace {

constexpr TagSet variableTags = {NAME, MEMBER, TABLEREF, FUNCTION};

}  // namespace

DAG builtin::diff(const BuiltinCall& call) {
  const Word count = argumentCount(call);
  if (count < 2) wrongParameters(call);
  for (Word i = 2; i <= count; ++i)
    if (!isAmong(call.arguments[i], variableTags)) wrongParameters(call);
  DAG e = call.arguments[1];
  for (Word i = 2; i <= count; ++i) {
    e = inFloatContextOf(e, [&] { return derivative(e, call.arguments[i]); });
    updategen(e);
  }
  return e;
}

}  // namespace korel
