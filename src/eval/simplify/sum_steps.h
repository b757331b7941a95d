#pragma once
// Steps of the sum that few sums need: complex numbers, infinities and lists among the terms.
//
// `s` is the raw SUM that is being simplified, its terms simplified. A pair that another has taken in becomes (0, 0).

#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/pairs.h"

namespace korel {

/// Infinite or undefined: two comparisons for a name, none for most other bases.
inline bool isSpecial(DAG base) {
  switch (tagOf(base)) {
    case NAME: return base == ini("infinity") || base == ini("undefined");
    case FLOAT: case HFLOAT: case COMPLEX: case SUM: return isInfinite(base) || isUndefined(base);
    default: return false;
  }
}

/// What a coefficient other than 0 comes to before the PROD `product`: beside an infinite factor its sign.
inline DAG coefficientBefore(DAG product, DAG coefficient) {
  if (!isNumeric(coefficient) || isZero(coefficient)) return coefficient;
  for (Word i = 1, n = lengthOf(product); i < n; i += 2)
    if (isSpecial(product[i])) return consneg(coefficient) ? consm1 : cons1;
  return coefficient;
}

/// A COMPLEX among the terms takes in every other numeric term. True when the imaginary parts cancel and leave an
/// infinity, or `undefined`.
bool combineComplexTerms(DAG s);
/// Terms headed by a COMPLEX that agree in all other factors add their heads into the first of them. True when there
/// are any.
bool mergeComplexHeads(DAG s);
/// Infinities and `undefined` among the terms: all of one sign merge, of both signs there is no value. Beside what is
/// left numbers vanish, and beside `undefined` infinities do. Gives the result when that ends the sum.
DAG mergeInfinities(DAG s);
/// Lists take in their coefficients and add into the first, unless they may evaluate to longer ones: then
/// `withListsAdded` adds them. Errors: "adding lists of different length", "adding a row list to a column list".
void settleLists(DAG s);

}  // namespace korel
