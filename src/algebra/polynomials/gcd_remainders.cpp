#include "algebra/polynomials/gcd_remainders.h"

#include "algebra/polynomials/ascending_terms.h"
#include "algebra/polynomials/divide.h"
#include "algebra/polynomials/expand.h"
#include "algebra/polynomials/indeterminates.h"
#include "eval/simplify/simplify.h"
#include "eval/walk/has.h"
#include "frame/environment.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/append.h"
#include "store/constants.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// An indeterminate that both hold; 0 when there is none.
DAG commonVariable(DAG a, DAG b) {
  DAG variables = indetsSequence(a), others = indetsSequence(b);
  for (Word i = 1; i < lengthOf(variables); ++i)
    if (isMember(variables[i], others)) return variables[i];
  return DAG();
}

DAG contentIn(const AscendingTerms& p) {
  DAG content = cons0;
  for (Word i = 1; i <= p.count() && content != cons1; ++i) content = gcdByRemainders(content, p.coefficient(i));
  return content;
}

// The polynomial divided by a divisor of all its coefficients.
void divideCoefficients(AscendingTerms& p, DAG divisor) {
  if (divisor == cons1) return;
  for (Word i = 1; i <= p.count(); ++i) {
    DAG q;
    if (divide(p.coefficient(i), divisor, q)) p.setCoefficient(i, q);
  }
}

std::int64_t degreeOf(const AscendingTerms& p) { return p.exponent(p.count()); }

// lc(b)^k a modulo b, for the k that it takes.
AscendingTerms pseudoRemainder(AscendingTerms a, const AscendingTerms& b) {
  while (a.count() > 0 && degreeOf(a) >= degreeOf(b)) {
    passWork(objectSteps * std::int64_t{b.count()});
    DAG top = a.coefficient(a.count()), lead = b.coefficient(b.count());
    const std::int64_t e = degreeOf(a) - degreeOf(b);
    a.removeTop();
    if (lead != cons1)
      for (Word i = 1; i <= a.count(); ++i) a.setCoefficient(i, exprod(a.coefficient(i), lead));
    a.subtractMultiple(b, top, e);
  }
  return a;
}

DAG expressionOf(const AscendingTerms& p, DAG x) {
  DAG sum = new1(SUM);
  for (Word i = 1; i <= p.count(); ++i)
    sum = Append3(sum, simpl(NewPROD(p.coefficient(i), simpl(new3(PROD, x, NewInteger(p.exponent(i)))))), cons1);
  return expand(simpl(sum));
}

}  // namespace

DAG gcdByRemainders(DAG a, DAG b) {
  checkStack();
  if (a == cons0) return b;
  if (b == cons0) return a;
  if (isNumber(a) || isNumber(b)) return simpl(igcd(simpl(icontent(a)), simpl(icontent(b))));
  DAG x = commonVariable(a, b);
  if (!x) return simpl(igcd(simpl(icontent(a)), simpl(icontent(b))));
  AscendingTerms p = ascendingTerms(a, x), q = ascendingTerms(b, x);
  DAG contentP = contentIn(p), contentQ = contentIn(q);
  divideCoefficients(p, contentP);
  divideCoefficients(q, contentQ);
  if (degreeOf(p) < degreeOf(q)) std::swap(p, q);
  while (q.count() > 0 && degreeOf(q) > 0) {
    AscendingTerms rest = pseudoRemainder(p, q);
    p = q;
    q = rest;
    if (q.count() > 0) divideCoefficients(q, contentIn(q));
  }
  DAG content = gcdByRemainders(contentP, contentQ);
  return q.count() > 0 ? content : expand(simpl(NewPROD(content, expressionOf(p, x))));
}

}  // namespace korel
