// Products of plain factors.
//
// Most products are a number times powers of names and calls with small exponents. They are put together on
// the native stack, and only the monomial itself is looked for in the table: neither the power of a factor
// nor the multiple of the monomial becomes an object. Whatever may be special is left to the general way.

#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/simplify/unique_pairs.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"

namespace korel {

namespace {

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
    case POWER:
      if (base[1] == consm1) return false;
      break;
    case MEMBER: case TABLEREF: case FUNCTION: case LOCAL: case PARAM: case LEXICAL: break;
    case PROD:
      if (exponent != cons1) return false;
      for (Word i = 0, n = pairCount(base); i < n; ++i) {
        Pair inner = pairsOf(base)[i];
        if (!multiplyPlain(product, inner.term, inner.coefficient)) return false;
      }
      return true;
    case SUM:
      if (lengthOf(base) == 3)
        return exponent == cons1 && multiplyPlain(product, base[2], cons1) && multiplyPlain(product, base[1], cons1);
      break;
    default: return false;
  }
  return exponent == cons0 || appendPlain(product, base, exponent);
}

// A POWER that evaluation has made of a name and a small number, and that `simpl` would turn into a PROD.
bool isRawPower(DAG x) {
  return isObject(x) && headerWord(x) == (POWER | 3) && !isSimplified(x) && isImmediate(x[2]) && isTag(x[1], NAME);
}

}  // namespace

bool plainProduct(DAG s, Pair& term) {
  constexpr Word longest = 20 * PlainProduct::capacity;  // many numbers are multiplied in another order
  if (bindingsEnabled || lengthOf(s) > longest) return false;
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
  if (count > 1 || product.factors[0].coefficient != cons1) rest = uniquePairs(PROD, product.factors, count);
  else if (isTag(rest, SUM) && product.coefficient != cons1) return false;  // a number multiplies a sum out
  term = {rest, product.coefficient};
  return true;
}

}  // namespace korel
