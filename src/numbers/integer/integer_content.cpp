// The integer content of an expression: the largest positive rational that divides its coefficients.

#include "numbers/integer/integer.h"

#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

/// Greatest common divisor of the numerators and least common multiple of the denominators so far.
struct Content {
  DAG numerators = cons0, denominators = cons1;

  /// Takes in one coefficient; false when it makes the content 1 (a float, or no number).
  bool take(DAG x) {
    if (isInteger(x)) {
      numerators = igcd(numerators, x);
      return true;
    }
    switch (tagOf(x)) {
      case RATIONAL: {
        numerators = igcd(numerators, x[1]);
        DAG parts[2];
        gcdsimpl(denominators, x[2], parts);
        denominators = mulint(parts[0], x[2]);
        return true;
      }
      case COMPLEX:
        for (Word i = 1; i < lengthOf(x); ++i)
          if (!take(x[i])) return false;
        return true;
      default: return false;
    }
  }
  DAG value() const { return denominators == cons1 ? numerators : new3(RATIONAL, numerators, denominators); }
};

DAG complexContent(DAG x) {
  if (isFloatNumber(x[1])) return cons1;
  if (lengthOf(x) == 2) return absalg(x[1]);
  return icontent(new5(SUM, x[1], cons1, x[2], cons1));
}

bool hasOnlyIntegers(DAG sum) {
  for (Word i = 1; i + 1 < lengthOf(sum); i += 2)
    if (!isInteger(sum[i + 1]) || (isNumber(sum[i]) && !isInteger(sum[i]))) return false;
  return true;
}

}  // namespace

DAG icontent(DAG e) {
  constexpr TagSet withoutContent = {FLOAT, STRING, NAME, TABLEREF, CATENATE, POWER, FUNCTION, UNEVAL, TABLE};
  if (isRationalNumber(e)) return absalg(e);
  if (isAmong(e, withoutContent)) return cons1;
  switch (tagOf(e)) {
    case SUM: return icontent_sum(e);
    case PROD: return lengthOf(e) > 1 && isTag(e[1], COMPLEX) ? complexContent(e[1]) : cons1;
    case COMPLEX: return complexContent(e);
    case DCOLON: return icontent(e[1]);
    default: KernelException("invalid argument to icontent");
  }
}

DAG icontent_sum(DAG sum) {
  if (lengthOf(sum) == 2) return absalg(sum[1]);
  const bool isIntegral = hasOnlyIntegers(sum);
  Content content;
  for (Word i = 1; i + 1 < lengthOf(sum); i += 2) {
    DAG term = sum[i], coefficient = sum[i + 1];
    // A constant term is a number with coefficient 1, or the coefficient of the term 1.
    if (!content.take(isNumber(term) ? mul(term, coefficient) : coefficient)) return cons1;
    // Of integers none can change it any more; a denominator could.
    if (isIntegral && content.numerators == cons1) break;
  }
  return content.value();
}

}  // namespace korel
