#include "numbers/complex_forms.h"

#include "eval/arithmetic.h"
#include "eval/evalf.h"
#include "eval/simplify.h"
#include "store/objects.h"

namespace korel {

bool hasNoFiniteValue(DAG x) { return isInfinite(x) || isUndefined(x); }

bool hasInfinitePart(DAG x) {
  for (Word i = 1; i < lengthOf(x); ++i)
    if (isInfinite(x[i])) return true;
  return false;
}

bool hasUndefinedPart(DAG x) {
  for (Word i = 1; i < lengthOf(x); ++i)
    if (isUndefined(x[i])) return true;
  return false;
}

namespace {
bool isNumberPart(DAG x) { return isNumeric(x) || hasNoFiniteValue(x); }
}  // namespace

bool hasNumericParts(DAG x) {
  for (Word i = 1; i < lengthOf(x); ++i)
    if (!isNumberPart(x[i])) return false;
  return true;
}

DAG sumOfParts(DAG a, DAG b) {
  return simpl(isNumberPart(a) && isNumberPart(b) ? add(a, b) : new5(SUM, a, cons1, b, cons1));
}

DAG negativeOfPart(DAG a) { return simpl(isNumberPart(a) ? negate(a) : new3(SUM, a, consm1)); }

DAG productOfParts(DAG a, DAG b) {
  if (isNumeric(a) && isNumeric(b)) return simpl(mul(a, b));
  return simpl(new5(PROD, a, cons1, b, cons1));
}

DAG complexNormalForm(DAG x) {
  if (!isComplex(x)) return simpl(x);
  DAG im = imaginaryPartOf(x);
  if (lengthOf(x) == 2) return isExactZero(im) ? cons0 : simpl(x);
  DAG re = x[1];
  if (isExactZero(re)) return isExactZero(im) ? cons0 : simpl(new2(COMPLEX, im));
  return isExactZero(im) ? simpl(re) : simpl(x);
}

DAG evalfParts(DAG x) {
  if (!isComplex(x)) return simpl(evalf(x));
  if (lengthOf(x) == 2) return simpl(new2(COMPLEX, evalf(x[1])));
  return simpl(new3(COMPLEX, evalf(x[1]), evalf(x[2])));
}

}  // namespace korel
