// Sums and products: pairs in storage, terms and factors in the view of `op`.
//
// A SUM of one pair is the product of its coefficient with the factors of its term; a PROD of one pair is a
// power.

#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

// ---- terms and factors

bool addition(DAG x) { return isTag(x, SUM) && lengthOf(x) >= 5; }
bool multiplication(DAG x) { return (isTag(x, SUM) && lengthOf(x) == 3) || (isTag(x, PROD) && lengthOf(x) >= 5); }

DAG mterm(std::int64_t i, DAG x) {
  if (!addition(x)) return x;
  DAG term = x[2 * i - 1], coefficient = x[2 * i];
  if (coefficient == cons1) return term;
  return isNumeric(term) ? simpl(mul(term, coefficient)) : simpl(new3(SUM, term, coefficient));
}

DAG fact(std::int64_t i, DAG x) {
  if (isTag(x, SUM)) {
    if (i == 1) return x[2];
    return multiplication(x[1]) ? fact(i - 1, x[1]) : x[1];
  }
  DAG base = x[2 * i - 1], exponent = x[2 * i];
  return exponent == cons1 ? base : simpl(new3(PROD, base, exponent));
}

namespace {

bool isSinglePair(DAG x) { return lengthOf(x) == 3; }

// Terms or factors in the view of `op`, each with coefficient or exponent 1.
DAG mapPairs(const OperandWalk& walk, DAG x, Tag tag, DAG (*part)(std::int64_t i, DAG x)) {
  const std::int64_t count = numterms(x);
  DAG result = newl2(static_cast<Word>(2 * count + 1), tag);
  Word used = 1;
  for (std::int64_t i = 1; i <= count; ++i) {
    DAG value = simpl(walk(part(i, x)));
    if (walk.purpose == OperandWalk::selection && value == null) continue;
    result[used] = value;
    result[used + 1] = cons1;
    used += 2;
  }
  if (used != lengthOf(result)) shorten(result, lengthOf(result), used);
  return simpl(tag == SUM ? withListsAdded(result) : result);
}

void replacePair(TakenApart& object, std::int64_t i, DAG replacement) {
  object.parts[2 * i - 1] = replacement;
  object.parts[2 * i] = cons1;
}

// ---- sums

DAG sumHead(DAG x) { return isSinglePair(x) ? ini("*") : ini("+"); }

std::int64_t sumCount(DAG x) {
  if (!isSinglePair(x)) return (lengthOf(x) - 1) / 2;
  return multiplication(x[1]) ? numterms(x[1]) + 1 : 2;
}

DAG sumOperand(DAG x, std::int64_t i) { return addition(x) ? mterm(i, x) : fact(i, x); }

// The factors of a SUM of one pair, as pairs of a PROD.
DAG factorPairs(DAG x) {
  DAG term = x[1];
  bool product = multiplication(term);
  DAG pairs = newl2(product ? lengthOf(term) + 2 : 5, PROD);
  pairs[1] = x[2];
  pairs[2] = cons1;
  if (!product) {
    pairs[3] = term;
    pairs[4] = cons1;
  } else {
    for (Word i = 1, n = lengthOf(term); i < n; ++i) pairs[i + 2] = term[i];
  }
  return pairs;
}

DAG takeSumApart(DAG x) { return isSinglePair(x) ? factorPairs(x) : CopyAlg(x); }

DAG mapSum(const OperandWalk& walk, DAG x) {
  return addition(x) ? mapPairs(walk, x, SUM, mterm) : mapPairs(walk, x, PROD, fact);
}

// ---- products

DAG productHead(DAG x) { return isSinglePair(x) ? ini("^") : ini("*"); }
std::int64_t productCount(DAG x) { return isSinglePair(x) ? 2 : (lengthOf(x) - 1) / 2; }
DAG productOperand(DAG x, std::int64_t i) { return multiplication(x) ? fact(i, x) : x[i]; }

DAG powerOf(DAG pair) { return new3(POWER, pair[1], pair[2]); }

DAG takeProductApart(DAG x) { return isSinglePair(x) ? powerOf(x) : CopyAlg(x); }

void replaceFactor(TakenApart& object, std::int64_t i, DAG replacement) {
  if (hasTag(object.parts, POWER)) object.parts[i] = replacement;
  else replacePair(object, i, replacement);
}

DAG mapProduct(const OperandWalk& walk, DAG x) {
  if (multiplication(x)) return mapPairs(walk, x, PROD, fact);
  return simpl(mapFields(walk, powerOf(x), 1, 3, 1));
}

}  // namespace

constexpr Kind sumKind = {
    .head = sumHead,
    .count = sumCount,
    .operand = sumOperand,
    .takeApart = takeSumApart,
    .replace = replacePair,
    .map = mapSum,
};

constexpr Kind productKind = {
    .head = productHead,
    .count = productCount,
    .operand = productOperand,
    .takeApart = takeProductApart,
    .replace = replaceFactor,
    .map = mapProduct,
};

}  // namespace korel
