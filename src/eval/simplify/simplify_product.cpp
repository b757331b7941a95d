// Products in canonical form.
//
// A PROD is a list of pairs (base, exponent) with numeric exponents. Numeric factors fold into one
// coefficient, nested products are spliced in, equal bases add their exponents. What is left with a
// real coefficient other than 1 becomes a SUM of one pair; a COMPLEX coefficient stays in front.

#include "eval/simplify/simplify.h"

#include <utility>

#include "eval/evaluate/evalf.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/bindings.h"
#include "eval/simplify/product.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/simplify/sum_steps.h"
#include "eval/simplify/unique_pairs.h"
#include "eval/walk/has.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- operators bound by `use`

DAG boundProduct(DAG s) {
  Word n = lengthOf(s);
  if (n == 3) {
    if (s[2] == cons1) return DAG();
    if (s[2] == consm1) {
      if (DAG over = operatorBinding(naminstall("/"))) return callBinding(over, s[1]);
    } else if (DAG raised = operatorBinding(ini("^"))) {
      return callBinding(raised, s[1], s[2]);
    }
    return DAG();
  }
  DAG times = operatorBinding(ini("*"));
  if (!times || n < 5) return DAG();
  auto rebuilt = [](DAG base, DAG exponent) { return exponent == cons1 ? base : simpl(new3(PROD, base, exponent)); };
  DAG folded = rebuilt(s[1], s[2]);
  for (Word i = 3; i < n; i += 2) folded = callBinding(times, folded, rebuilt(s[i], s[i + 1]));
  return folded;
}

// Removes factor `at`.
void removeFactor(Product& product, Word at) {
  DAG factors = product.factors;
  for (Word i = at + 2; i < product.used; ++i) factors[i - 2] = factors[i];
  product.used -= 2;
}

// Infinite and undefined factors: the first of them is left, with its sign, and absorbs the numbers. A complex number
// takes it in.
DAG settleSpecial(Product& product) {
  DAG factors = product.factors;
  const bool negative = product.coefficient && consneg(product.coefficient);
  Word infinite = 0, kept = 1;
  for (Word i = 1; i < product.used; i += 2) {
    DAG base = factors[i], exponent = factors[i + 1];
    if (base == ini("undefined")) {
      DAG c = product.coefficient;
      return c && hasTag(c, COMPLEX) ? mul(c, base) : base;
    }
    if (base == ini("infinity") && isNumeric(exponent)) {
      if (isZero(exponent)) return TriggerNumericEvent(invalidOperation, ini("^"), base, exponent, cons1, true);
      if (consneg(exponent)) {
        fold(product, cons0);
        continue;
      }
      if (infinite != 0) continue;
      infinite = kept;
      exponent = cons1;
    }
    factors[kept] = base;
    factors[kept + 1] = exponent;
    kept += 2;
  }
  product.used = kept;
  if (infinite == 0) return DAG();
  DAG c = product.coefficient, infinity = ini("infinity");
  if (c && isZero(c)) return TriggerNumericEvent(invalidOperation, ini("*"), c, infinity, ini("undefined"), true);
  if (c && hasTag(c, COMPLEX)) {
    product.coefficient = simpl(mul(c, infinity));
    removeFactor(product, infinite);
  } else {
    product.coefficient = negative ? consm1 : DAG();
  }
  return DAG();
}

// ---- equal bases

// From this many words on, the first factor with a base is looked up rather than compared with.
constexpr Word lookUpFromLength = 101;

// Adds the exponent of factor `from` to that of `to`. A number whose exponents meet needs another pass.
void addExponent(Product& product, Word to, Word from) {
  DAG* factors = &product.factors[0];
  factors[to + 1] = simpl(add(factors[to + 1], factors[from + 1]));
  DAG base = factors[to];
  if (isNumeric(base) || isTag(base, COMPLEX) || isTag(base, SUM) || isTag(base, PROD)) product.again = true;
}

// Equal bases add their exponents into the first of them, from the last one on.
void collectEqualBases(Product& product) {
  DAG factors = product.factors;
  if (product.used >= lookUpFromLength) {
    DAG firsts = firstOccurrences(&factors[1], (product.used - 1) / 2, 2);
    for (Word k = product.used - 2; k > 1; k -= 2) {
      const Word first = 2 * static_cast<Word>(immediateValue(firsts[k / 2 + 1])) + 1;
      if (first == k) continue;
      addExponent(product, first, k);
      factors[k + 1] = cons0;
    }
  } else {
    for (Word i = 1; i < product.used; i += 2)
      for (Word k = product.used - 2; k > i; k -= 2) {
        if (factors[k] != factors[i]) continue;
        addExponent(product, i, k);
        for (Word j = k + 2; j < product.used; ++j) factors[j - 2] = factors[j];
        product.used -= 2;
      }
  }
  Word kept = 1;
  for (Word i = 1; i < product.used; i += 2) {
    if (isNumeric(factors[i + 1]) && isZero(factors[i + 1])) continue;
    factors[kept] = factors[i];
    factors[kept + 1] = factors[i + 1];
    kept += 2;
  }
  product.used = kept;
}

// As the sum of relations does, the product waits for parameters and locals.
DAG productOfRelations(DAG s) {
  if (hasparloc(s)) return makeUnique(simplifiedCopy(s));
  DAG sequence = newl2(lengthOf(s), EXPSEQ);
  for (Word i = 1; i < lengthOf(s); ++i) sequence[i] = s[i];
  return simpl(evalsysf("simpl/reloprod", simpl(eval(simpl(sequence)))));
}

// A factor -1 to a fractional power takes the imaginary unit in: I*(-1)^e is (-1)^(e + 1/2). A complex number with
// both parts takes it out again while e is above 1/2, so that the order of factors leaves no trace. (A root of an
// imaginary number stays: whether it meets a root of -1 depends on that order.)
bool absorbImaginaryUnit(Product& product) {
  DAG c = product.coefficient;
  if (!c || !isTag(c, COMPLEX) || isUndefined(c) || isInfinite(c) || isFloatComplex(c)) return false;
  Word i = 1;
  while (i < product.used && !(product.factors[i] == consm1 && isTag(product.factors[i + 1], RATIONAL))) i += 2;
  if (i >= product.used) return false;
  DAG& exponent = product.factors[i + 1];
  if (lengthOf(c) == 2) {
    exponent = simpl(add(exponent, consh));
    product.coefficient = c[1];
  } else {
    if (compcon(exponent, consh) < 0) return false;
    exponent = simpl(add(exponent, simpl(negate(consh))));
    product.coefficient = simpl(mul(c, sqrtm1));
  }
  return true;
}

// True when a base or exponent is a float. Errors: "non-algebraic base in a power" of a single pair.
bool hasFloatFactor(DAG s) {
  constexpr TagSet nonAlgebraic = {HFLOAT, STRING, ZPPOLY, AND, NOT, OR, EXPSEQ, RANGE};
  bool found = false;
  for (Word i = 1, n = lengthOf(s); i < n; i += 2) {
    if (n == 3 && s[2] != cons1 && isAmong(s[1], nonAlgebraic)) KernelException("non-algebraic base in a power");
    found = found || isTag(s[i], FLOAT) || isFloatNumber(s[i + 1]);
  }
  return found;
}

bool hasRelation(DAG s) {
  for (Word i = 1, n = lengthOf(s); i < n; i += 2)
    if (isAmong(s[i], relationTags)) return true;
  return false;
}

// The product when its coefficient comes to `zero`: a list is multiplied by it.
DAG zeroProduct(const Product& product, DAG zero) {
  if (isInteger(zero)) zero = cons0;
  for (Word i = 1; i < product.used; i += 2)
    if (isTag(product.factors[i], LIST) && product.factors[i + 1] == cons1) return mapToList(product.factors[i], zero);
  return simpl(zero);
}

// The end of a run of powers of exact integers from factor `i` on.
Word endOfIntegers(DAG s, Word i) {
  auto isPower = [](DAG base, DAG exponent) {
    return isInteger(base) && base != consm0 && isImmediate(exponent) && immediateValue(exponent) > 0;
  };
  while (i < lengthOf(s) && isPower(s[i], s[i + 1])) i += 2;
  return i;
}

// Their product by halves: operands of like length cost less, and each is given back once it has gone in.
DAG productOfIntegers(DAG s, Word from, Word end) {
  const Word count = (end - from) / 2;
  if (count == 1) return s[from + 1] == cons1 ? s[from] : power(s[from], immediateValue(s[from + 1]));
  const Word middle = from + count / 2 * 2;
  DAG a = productOfIntegers(s, from, middle), b = productOfIntegers(s, middle, end), product = mul(a, b);
  for (DAG part : {a, b})
    if (part != product && isObject(part) && !isSimplified(part)) release(part, lengthOf(part));
  return product;
}

// Once more through the simplifier, the coefficient as a factor behind the others.
DAG simplifiedAgain(DAG factors, DAG coefficient) {
  if (coefficient) {
    const Word n = lengthOf(factors);
    factors = enlarge(factors, 2);
    factors[n] = coefficient;
    factors[n + 1] = cons1;
  }
  return simplProduct(factors);
}

// The object of the product `factors` with a number in front, or 0.
DAG withCoefficient(DAG factors, DAG coefficient) {
  const Word n = lengthOf(factors);
  if (coefficient && coefficient == cons1) coefficient = DAG();
  if (n == 1) return coefficient ? coefficient : cons1;
  if (coefficient && hasTag(coefficient, COMPLEX)) {
    DAG led = newl2(n + 2, PROD);
    led[1] = coefficient;
    led[2] = cons1;
    for (Word i = 1; i < n; ++i) led[i + 2] = factors[i];
    return makeUnique(led);
  }
  DAG rest = n == 3 && factors[2] == cons1 ? factors[1] : makeUnique(factors);
  return coefficient ? simplSum(new3(SUM, rest, coefficient)) : rest;
}

}  // namespace

DAG simplProduct(DAG s) {
  Pair plain;
  if (!plainProduct(s, plain)) return generalProduct(s);
  return plain.coefficient == cons1 ? plain.term : uniquePairs(SUM, &plain, 1);
}

DAG generalProduct(DAG s) {
  simplifyFields(s);
  if (hasUserBindings())
    if (DAG bound = boundProduct(s)) return bound;
  if (hasRelation(s)) return productOfRelations(s);
  if (hasFloatFactor(s))
    if (DAG changed = TransformSEQ2F(s)) {
      if (isImmediate(changed) || !hasTag(changed, PROD)) return simpl(changed);
      s = changed;
    }
  const Word n = lengthOf(s);
  if (n == 3 && !isFloatNumber(s[1]) && (isSpecial(s[1]) || isSpecial(s[2]))) {
    DAG settled = simpl01(s);
    if (settled != s && isFloatNumber(s[2])) settled = evalf(settled);
    if (isImmediate(settled) || !hasTag(settled, PROD)) return simpl(settled);
  }

  Product product;
  product.factors = newl2(n < 3 ? 3 : n, PROD);
  for (Word i = 1; i < n; i += 2) {
    constexpr Word manyIntegers = 8;
    const bool isExact = !product.coefficient || isInteger(product.coefficient);
    if (const Word end = isExact ? endOfIntegers(s, i) : i; end >= i + 2 * manyIntegers) {
      fold(product, productOfIntegers(s, i, end));
      i = end;
      if (i >= n) break;
    }
    multiply(product, s[i], s[i + 1]);
  }
  if (product.result) return simpl(product.result);
  settleDivisor(product);
  if (product.special)
    if (DAG result = settleSpecial(product)) return simpl(result);
  if (DAG c = product.coefficient) {
    if (isTag(c, COMPLEX) && isUndefined(c) && !isFloatComplex(c)) return c;
    if (isZero(c)) return zeroProduct(product, c);
  }
  if (product.used > 3) collectEqualBases(product);
  if (absorbImaginaryUnit(product)) product.again = true;

  DAG factors = product.factors;
  if (product.used != lengthOf(factors)) shorten(factors, lengthOf(factors), product.used);
  return product.again ? simplifiedAgain(factors, product.coefficient) : withCoefficient(factors, product.coefficient);
}

}  // namespace korel
