// Products in canonical form.
//
// A PROD is a list of pairs (base, exponent) with numeric exponents. Numeric factors fold into one
// coefficient, nested products are spliced in, equal bases add their exponents. What is left with a
// real coefficient other than 1 becomes a SUM of one pair; a COMPLEX coefficient stays in front.

#include "numbers/arithmetic.h"
#include "eval/simplify/bindings.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/simplify/unique_pairs.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/events/numeric_events.h"
#include "library/library_calls.h"
#include "eval/walk/has.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
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
  auto rebuilt = [](DAG base, DAG exponent) {
    return exponent == cons1 ? base : simpl(new3(PROD, base, exponent));
  };
  DAG folded = rebuilt(s[1], s[2]);
  for (Word i = 3; i < n; i += 2) folded = callBinding(times, folded, rebuilt(s[i], s[i + 1]));
  return folded;
}

// ---- the product while it is put together

struct Product {
  DAG factors;          // a PROD with room to spare; `used` words of it count
  Word used = 1;
  DAG coefficient;      // the number folded so far, or 0
  DAG result;           // set when a factor settles the whole
  bool special = false; // `infinity` or `undefined` stands among the factors
  bool again = false;   // a factor turned up that needs another pass
};

void append(Product& product, DAG base, DAG exponent) {
  if (product.used + 2 > lengthOf(product.factors)) {
    product.factors = enlarge(product.factors, (lengthOf(product.factors) & ~Word{1}) + 4);
  }
  product.factors[product.used] = base;
  product.factors[product.used + 1] = exponent;
  product.used += 2;
}

void fold(Product& product, DAG number) {
  number = simpl(number);
  if (product.coefficient) number = simpl(mul(product.coefficient, number));
  product.coefficient = number;
  if (isNumeric(number) || hasTag(number, COMPLEX)) return;
  // Complex numbers have come to an exact infinity or `undefined`: that is a factor, and only its sign a number.
  product.coefficient = consneg(number) ? consm1 : DAG();
  product.special = true;
  append(product, number == consminf ? ini("infinity") : number, cons1);
}

void multiply(Product& product, DAG base, DAG exponent);

// `power` takes a machine exponent; a heap integer that doesn't fit raises its own message.
std::int32_t wordExponent(DAG e) { return isImmediate(e) ? immediateValue(e) : SoftIntValue(e); }

DAG libraryPower(DAG base, DAG exponent) {
  return simpl(evalsysf("evalf/power", simpl(new3(EXPSEQ, base, exponent))));
}

// Zero to a power.
// A float below 0 that is no integer.
bool isNegativeFraction(DAG x) {
  return isFloatNumber(x) && consneg(x) && !isZero(simpl(add(x, simpl(negate(simpl(mtrunc(x)))))));
}

void multiplyZero(Product& product, DAG base, DAG exponent) {
  if (isZero(exponent)) {
    DAG one = isFloatNumber(base) ? consf1 : cons1;
    fold(product, TriggerNumericEvent(invalidOperation, ini("^"), base, exponent, one, true));
  } else if (isInfinite(exponent) || isUndefined(exponent) || isNegativeFraction(exponent)) {
    product.result =
        TriggerNumericEvent(invalidOperation, ini("^"), base, exponent, consfNaN, true);
  } else if (consneg(exponent)) {
    // A float over an exact zero is a float infinity and an event.
    if (!product.coefficient || !isFloatNumber(product.coefficient)) KernelException("division by zero");
    product.coefficient = simpl(TrapFDIV(SuppressHFloats(product.coefficient), cons0));
  } else {
    fold(product, base);
  }
}

// The base of the digits is a multiple of 4, so that the lowest digit decides.
Word residueModulo4(DAG heapInteger) {
  Word r = rawField(heapInteger, 1) & 3;
  return hasTag(heapInteger, INTNEG) ? (4 - r) & 3 : r;
}

// The fraction p/q without the whole number that comes out, so that 0 < p/q < 1.
DAG properFraction(DAG fraction, DAG* whole) {
  *whole = cons0;
  DAG p = fraction[1], q = fraction[2];
  if (!consneg(p) && compint(p, q) < 0) return fraction;
  DAG remainder;
  DAG quotient = IntegerDivide(p, q, &remainder);
  remainder = simpl(remainder);
  *whole = simpl(quotient);
  if (consneg(remainder)) {
    remainder = simpl(addint(remainder, q));
    *whole = simpl(addint(*whole, consm1));
  }
  return simpl(new3(RATIONAL, remainder, q));
}

void multiplyInteger(Product& product, DAG base, DAG exponent) {
  if (base == cons1) return;
  if (isInteger(exponent)) {
    if (exponent == cons1) {
      fold(product, base);
    } else if (base == consm1) {
      bool odd = isImmediate(exponent) ? (immediateValue(exponent) & 1) != 0
                                       : (rawField(exponent, 1) & 1) != 0;
      fold(product, odd ? consm1 : cons1);
    } else {
      fold(product, power(base, wordExponent(exponent)));
    }
    return;
  }
  DAG p = exponent[1], q = exponent[2];
  if (base == consm1 && q == immediate(2)) {
    bool flip = p != cons1 && (isImmediate(p) ? (immediateValue(p) & 3) == 3
                                              : residueModulo4(p) == 3);
    if (flip) fold(product, consm1);
    multiply(product, sqrtm1, cons1);
    return;
  }
  DAG whole;
  exponent = properFraction(exponent, &whole);
  if (whole != cons0) multiplyInteger(product, base, whole);
  append(product, base, exponent);
}

void multiplyReal(Product& product, DAG base, DAG exponent) {
  if (isZero(base)) return multiplyZero(product, base, exponent);
  if (isFloatNumber(exponent)) return multiply(product, libraryPower(base, exponent), cons1);
  if (isInteger(base)) return multiplyInteger(product, base, exponent);
  if (isInteger(exponent)) return fold(product, power(base, wordExponent(exponent)));
  // The root of a fraction is a quotient of roots.
  if (base[1] == cons1) return multiply(product, base[2], simpl(negate(exponent)));
  multiply(product, base[1], exponent);
  multiply(product, base[2], simpl(negate(exponent)));
}

// The root of a negative float is imaginary, and an event.
DAG rootOfFloat(DAG base, DAG exponent) {
  if (isInfinite(base) || isUndefined(base) || !consneg(base)) return evalfsqrt(base);
  DAG root = simpl(new2(COMPLEX, simpl(evalfsqrt(simpl(negate(base))))));
  return TriggerNumericEvent(realToComplex, ini("^"), base, exponent, root, true);
}

void multiplyFloat(Product& product, DAG base, DAG exponent) {
  if (exponent == cons1) return fold(product, base);
  if (isZero(base) && isZero(exponent)) return multiplyZero(product, base, exponent);
  // Division by a float is one operation, rounded once.
  if (exponent == consm1 && !isZero(base) && product.coefficient && isNumeric(product.coefficient)) {
    product.coefficient = simpl(evalfdiv(evalf(product.coefficient), base));
    return;
  }
  bool isSpecial = isTag(base, FLOAT) && isTag(base[2], NAME);
  bool isSpecialExponent = isTag(exponent, FLOAT) && isTag(exponent[2], NAME);
  if (isSpecial || isSpecialExponent || (isZero(base) && consneg(exponent)))
    if (DAG settled = TrapFPOWER(base, exponent)) {
      settled = simpl(settled);
      return isTag(settled, COMPLEX) ? multiply(product, settled, cons1) : fold(product, settled);
    }
  if (isInteger(exponent)) return fold(product, evalfpwr(base, wordExponent(exponent)));
  if (isTag(exponent, RATIONAL) && exponent == consh) {
    DAG root = rootOfFloat(base, exponent);
    return isTag(root, COMPLEX) ? multiply(product, simpl(root), cons1) : fold(product, root);
  }
  fold(product, libraryPower(base, exponent));
}

void multiplyComplex(Product& product, DAG base, DAG exponent) {
  if (exponent == cons1) return fold(product, base);
  // I^e is (-1)^(e/2), for fractions and for integers too long for repeated squares.
  if (base == sqrtm1 && !isFloatNumber(exponent) && !isImmediate(exponent))
    return multiply(product, consm1, simpl(mul(exponent, consh)));
  if (isInfinite(base) || isUndefined(base)) {
    DAG settled = simpl01(new3(PROD, base, exponent));
    if (isImmediate(settled) || !hasTag(settled, PROD)) return multiply(product, simpl(settled), cons1);
  }
  if (isInteger(exponent)) {
    if (!FitIntoWord(exponent)) return multiply(product, libraryPower(base, exponent), cons1);
    return fold(product, cxpower(base, exponent));
  }
  if (isFloatNumber(exponent) || isFloatComplex(base)) return multiply(product, libraryPower(base, exponent), cons1);
  if (isTag(exponent, RATIONAL) && !isInfinite(base) && !isUndefined(base)) {
    DAG whole, rest = properFraction(exponent, &whole);
    if (whole != cons0 && FitIntoWord(whole)) {
      fold(product, cxpower(base, whole));
      exponent = rest;
    }
  }
  append(product, base, exponent);
}

void multiplyName(Product& product, DAG base, DAG exponent) {
  if (base == ini("FAIL")) {
    product.result = base;
    return;
  }
  if (base == ini("infinity") || base == ini("undefined")) {
    if (isFloatNumber(exponent) || (product.coefficient && isFloatNumber(product.coefficient)))
      return multiplyFloat(product, base == ini("infinity") ? consfinf : consfNaN, exponent);
    product.special = true;
  }
  append(product, base, exponent);
}

void multiplySum(Product& product, DAG base, DAG exponent) {
  if (lengthOf(base) == 3) {
    DAG term = base[1], coefficient = base[2];
    if (term == ini("infinity")) {
      if (isZero(exponent)) {
        product.result =
            TriggerNumericEvent(invalidOperation, ini("^"), base, exponent, cons1, true);
        return;
      }
    }
    if (!consneg(coefficient) || isInteger(exponent)) {
      multiply(product, coefficient, exponent);
      multiply(product, term, exponent);
      return;
    }
  }
  append(product, base, exponent);
}

void multiplyProduct(Product& product, DAG base, DAG exponent) {
  Word n = lengthOf(base);
  if (isFloatNumber(exponent) && n > 1 && isTag(base[1], COMPLEX))
    return multiply(product, libraryPower(base, exponent), cons1);
  bool fractional = n == 3 && isNumeric(base[2]) && compcon(base[2], consm1) > 0 &&
                    compcon(base[2], cons1) < 0;
  if (!isInteger(exponent) && !fractional) return append(product, base, exponent);
  for (Word i = 1; i < n; i += 2)
    multiply(product, base[i], exponent == cons1 ? base[i + 1] : simpl(mul(base[i + 1], exponent)));
}

// Joins one factor to the product. Operands are simplified.
void multiply(Product& product, DAG base, DAG exponent) {
  if (product.result) return;
  if (isObject(base) && !isNumeric(base) && isNumeric(exponent) && isZero(exponent) &&
      !isInfinite(base) && !isUndefined(base)) {
    if (!product.coefficient) product.coefficient = cons1;
    return;
  }
  switch (tagOf(base)) {
    case INTNEG: case INTPOS: case RATIONAL:
      return multiplyReal(product, base, exponent);
    case FLOAT: case HFLOAT:
      if (hasTag(base, HFLOAT)) break;
      return multiplyFloat(product, base, exponent);
    case COMPLEX:
      return multiplyComplex(product, base, exponent);
    case NAME:
      return multiplyName(product, base, exponent);
    case PROD:
      return multiplyProduct(product, base, exponent);
    case SUM:
      return multiplySum(product, base, exponent);
    case MEMBER: case TABLEREF: case DCOLON: case CATENATE: case POWER: case SERIES: case FUNCTION:
    case UNEVAL: case LIST: case LOCAL: case PARAM: case LEXICAL: case PROC: case SET: case TABLE:
    case RTABLE: case MODDEF: case MODULE:
      return append(product, base, exponent);
    default:
      break;
  }
  KernelException("invalid terms in product");
}

// Infinite and undefined factors: one of them is left, with its sign, and absorbs the numbers.
DAG settleSpecial(Product& product) {
  DAG infinite;
  Word kept = 1;
  DAG factors = product.factors;
  bool negative = product.coefficient && consneg(product.coefficient);
  for (Word i = 1; i < product.used; i += 2) {
    DAG base = factors[i], exponent = factors[i + 1];
    if (base == ini("undefined")) {
      DAG c = product.coefficient;
      return c && hasTag(c, COMPLEX) ? mul(c, base) : base;
    }
    if (base == ini("infinity") && isNumeric(exponent)) {
      if (isZero(exponent))
        return TriggerNumericEvent(invalidOperation, ini("^"), base, exponent, cons1, true);
      if (consneg(exponent)) {
        fold(product, cons0);
      } else {
        infinite = base;
      }
      continue;
    }
    factors[kept] = base;
    factors[kept + 1] = exponent;
    kept += 2;
  }
  product.used = kept;
  if (!infinite) return DAG();
  if (product.coefficient && isZero(product.coefficient))
    return TriggerNumericEvent(invalidOperation, ini("*"), product.coefficient, infinite,
                               ini("undefined"), true);
  if (product.coefficient && hasTag(product.coefficient, COMPLEX)) {
    product.coefficient = simpl(mul(product.coefficient, infinite));
    return DAG();
  }
  append(product, infinite, cons1);
  product.coefficient = negative ? consm1 : DAG();
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

// ---- products of plain factors

// Most products are a number times powers of names and calls with small exponents. They are put together on
// the native stack, and only the monomial itself is looked for in the table: neither the power of a factor
// nor the multiple of the monomial becomes an object. Whatever may be special is left to the general way.
struct PlainProduct {
  static constexpr Word capacity = 12;
  Pair factors[capacity];
  Word count = 0;
  DAG coefficient = cons1;
};

bool appendPlain(PlainProduct& product, DAG base, DAG exponent) {
  for (Word i = 0; i < product.count; ++i) {
    Pair& factor = product.factors[i];
    if (factor.term != base) continue;
    std::int32_t sum = immediateValue(factor.coefficient) + immediateValue(exponent);
    if (!fitsImmediate(sum)) return false;
    factor.coefficient = immediate(sum);
    return true;
  }
  if (product.count == PlainProduct::capacity) return false;
  product.factors[product.count++] = {base, exponent};
  return true;
}

// True when base and exponent are simplified, and the factor is joined. What is false may be half joined.
bool multiplyPlain(PlainProduct& product, DAG base, DAG exponent) {
  if (!isImmediate(exponent) || exponent == consm0) return false;
  switch (tagOf(base)) {
    case INTNEG: case INTPOS: case RATIONAL:
      if (exponent != cons1 || base == consm0) return false;
      product.coefficient = product.coefficient == cons1 ? base : simpl(mul(product.coefficient, base));
      return true;
    case NAME:
      if (!isPlainName(base)) return false;
      break;
    case MEMBER: case TABLEREF: case POWER: case FUNCTION: case LOCAL: case PARAM: case LEXICAL:
      break;
    case PROD:
      if (exponent != cons1) return false;
      for (Word i = 0, n = pairCount(base); i < n; ++i) {
        Pair inner = pairsOf(base)[i];
        if (!multiplyPlain(product, inner.term, inner.coefficient)) return false;
      }
      return true;
    case SUM:
      if (lengthOf(base) == 3)
        return exponent == cons1 && multiplyPlain(product, base[2], cons1) &&
               multiplyPlain(product, base[1], cons1);
      break;
    default:
      return false;
  }
  return exponent == cons0 || appendPlain(product, base, exponent);
}

// A POWER that evaluation has made of a name and a small number, and that `simpl` would turn into a PROD.
bool isRawPower(DAG x) {
  return isObject(x) && headerWord(x) == (POWER | 3) && !isSimplified(x) && isImmediate(x[2]) &&
         isTag(x[1], NAME);
}

}  // namespace

bool plainProduct(DAG s, Pair& term) {
  if (bindingsEnabled) return false;
  PlainProduct product;
  for (Word i = 1, n = lengthOf(s); i < n; i += 2) {
    DAG base = s[i], exponent = s[i + 1];
    if (isRawPower(base) && exponent == cons1) {
      if (!multiplyPlain(product, base[1], base[2])) return false;
      continue;
    }
    if (!isSimplified(base)) s[i] = base = simpl(base);
    if (!isSimplified(exponent)) s[i + 1] = exponent = simpl(exponent);
    if (!multiplyPlain(product, base, exponent)) return false;
  }
  term = {product.coefficient, cons1};
  if (product.coefficient == cons0) return true;
  Word count = 0;
  for (Word i = 0; i < product.count; ++i)
    if (product.factors[i].coefficient != cons0) product.factors[count++] = product.factors[i];
  if (count == 0) return true;
  DAG rest = product.factors[0].term;
  if (count > 1 || product.factors[0].coefficient != cons1)
    rest = uniquePairs(PROD, product.factors, count);
  else if (isTag(rest, SUM) && product.coefficient != cons1)
    return false;  // a number multiplies a sum out
  term = {rest, product.coefficient};
  return true;
}

DAG simplProduct(DAG s) {
  Pair plain;
  if (!plainProduct(s, plain)) return generalProduct(s);
  return plain.coefficient == cons1 ? plain.term : uniquePairs(SUM, &plain, 1);
}

DAG generalProduct(DAG s) {
  simplifyFields(s);
  Word n = lengthOf(s);
  if (hasUserBindings())
    if (DAG bound = boundProduct(s)) return bound;
  bool hasFloat = false;
  for (Word i = 1; i < n; i += 2) {
    if (!isImmediate(s[i]))
      switch (tagOf(s[i])) {
        case FLOAT: hasFloat = true; break;
        case HFLOAT: case STRING: case ZPPOLY: case AND: case NOT: case OR: case EXPSEQ: case RANGE:
          if (n == 3 && s[2] != cons1) KernelException("non-algebraic base in a power");
          break;
        case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: return productOfRelations(s);
        default: break;
      }
    if (isFloatNumber(s[i + 1])) hasFloat = true;
  }
  if (hasFloat) {
    if (DAG changed = TransformSEQ2F(s)) {
      if (isImmediate(changed) || !hasTag(changed, PROD)) return simpl(changed);
      s = changed;
    }
    n = lengthOf(s);
  }
  auto isSpecial = [](DAG x) { return isInfinite(x) || isUndefined(x); };
  if (n == 3 && !isFloatNumber(s[1]) && (isSpecial(s[1]) || isSpecial(s[2]))) {
    DAG settled = simpl01(s);
    if (isImmediate(settled) || !hasTag(settled, PROD)) return simpl(settled);
  }

  Product product;
  product.factors = newl2(n < 3 ? 3 : n, PROD);
  for (Word i = 1; i < n; i += 2) multiply(product, s[i], s[i + 1]);
  if (product.result) return simpl(product.result);
  if (product.special) {
    product.result = settleSpecial(product);
    if (product.result) return simpl(product.result);
  }
  if (DAG c = product.coefficient; c && isTag(c, COMPLEX) && isUndefined(c) && !isFloatComplex(c)) return c;
  if (product.coefficient && isZero(product.coefficient)) {
    DAG zero = isInteger(product.coefficient) ? cons0 : product.coefficient;
    for (Word i = 1; i < product.used; i += 2)
      if (isTag(product.factors[i], LIST) && product.factors[i + 1] == cons1)
        return mapToList(product.factors[i], zero);
    return simpl(zero);
  }
  if (product.used > 3) collectEqualBases(product);
  if (absorbImaginaryUnit(product)) product.again = true;

  DAG factors = product.factors;
  if (product.used != lengthOf(factors)) shorten(factors, lengthOf(factors), product.used);
  if (product.again) {
    if (product.coefficient) {
      factors = enlarge(factors, 2);
      factors[product.used] = product.coefficient;
      factors[product.used + 1] = cons1;
    }
    return simplProduct(factors);
  }
  DAG coefficient = product.coefficient;
  if (coefficient && coefficient == cons1) coefficient = DAG();
  if (product.used == 1) return coefficient ? coefficient : cons1;
  if (coefficient && hasTag(coefficient, COMPLEX)) {
    DAG led = newl2(product.used + 2, PROD);
    led[1] = coefficient;
    led[2] = cons1;
    for (Word i = 1; i < product.used; ++i) led[i + 2] = factors[i];
    return makeUnique(led);
  }
  DAG rest = product.used == 3 && factors[2] == cons1 ? factors[1] : makeUnique(factors);
  return coefficient ? simplSum(new3(SUM, rest, coefficient)) : rest;
}

}  // namespace korel
