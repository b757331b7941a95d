#include "numbers/complex/complex_forms.h"

#include <utility>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "numbers/arithmetic.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

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

// What is only known to be bounded swallows the finite numbers that it meets, and others like it.
bool isBounded(DAG x) { return isTag(x, NAME) && x == naminstall("bdd_undefined"); }

}  // namespace

bool hasNumericParts(DAG x) {
  for (Word i = 1; i < lengthOf(x); ++i)
    if (!isNumberPart(x[i])) return false;
  return true;
}

DAG sumOfParts(DAG a, DAG b) {
  if (isNumberPart(a) && isNumberPart(b)) return simpl(add(a, b));
  if (isBounded(a)) return hasNoFiniteValue(b) ? b : a;
  if (isBounded(b)) return hasNoFiniteValue(a) ? a : b;
  return simpl(new5(SUM, a, cons1, b, cons1));
}

DAG negativeOfPart(DAG a) {
  if (isNumberPart(a)) return simpl(negate(a));
  return isBounded(a) ? a : simpl(new3(SUM, a, consm1));
}

DAG productOfParts(DAG a, DAG b) {
  if (isNumeric(a) && isNumeric(b)) return simpl(mul(a, b));
  if (isBounded(b)) std::swap(a, b);
  if (isBounded(a)) return hasNoFiniteValue(b) ? ini("undefined") : isZero(b) ? b : a;
  return simpl(new5(PROD, a, cons1, b, cons1));
}

DAG complexNormalForm(DAG x) {
  if (!isComplex(x)) return simpl(x);
  DAG im = imaginaryPartOf(x);
  if (lengthOf(x) == 2) return isZeroImmediate(im) ? cons0 : simpl(x);
  DAG re = x[1];
  if (isZeroImmediate(re)) return isZeroImmediate(im) ? cons0 : simpl(new2(COMPLEX, im));
  return isZeroImmediate(im) ? simpl(re) : simpl(x);
}

DAG evalfParts(DAG x) {
  if (!isComplex(x)) return simpl(evalf(x));
  if (lengthOf(x) == 2) return simpl(new2(COMPLEX, evalf(x[1])));
  return simpl(new3(COMPLEX, evalf(x[1]), evalf(x[2])));
}

}  // namespace korel
