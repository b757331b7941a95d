// Sums with complex numbers, infinities and `undefined` among their terms.

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/sum_steps.h"
#include "eval/simplify/unique_pairs.h"
#include "numbers/events/numeric_events.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

bool combineComplexTerms(DAG s) {
  Word n = pairCount(s);
  Pair* p = pairsOf(s);
  Word first = 0;
  while (first < n && !isTag(p[first].term, COMPLEX)) ++first;
  if (first == n) return false;
  DAG folded = simpl(mul(p[first].term, p[first].coefficient));
  for (Word i = 0; i < n; ++i) {
    DAG term = p[i].term;
    if (i == first || !(isNumber(term) || isInfinite(term) || isUndefined(term))) continue;
    DAG other = simpl(mul(term, p[i].coefficient));
    p[i] = {cons0, cons0};
    if (isTag(folded, COMPLEX) && lengthOf(folded) == 2 && isNumeric(other)) {
      DAG imaginary = folded[1];
      if (isFloatNumber(imaginary) != isFloatNumber(other)) {
        if (isFloatNumber(imaginary)) other = simpl(evalf(other));
        else imaginary = simpl(evalf(imaginary));
      }
      folded = isImmediate(other) && isZero(other) ? folded : simpl(new3(COMPLEX, other, imaginary));
    } else {
      folded = simpl(add(folded, other));
    }
  }
  p[first] = folded == consminf ? Pair{ini("infinity"), consm1} : Pair{folded, cons1};
  return !isNumber(folded);
}

namespace {

// The sum `s` with `undefined` in place of its infinite terms `i` and `k`.
DAG undefinedInPlaceOf(DAG s, Word i, Word k) {
  DAG copied = CopyAlg(s);
  pairsOf(copied)[i] = {ini("undefined"), cons1};
  pairsOf(copied)[k] = {cons0, cons0};
  return simpl(copied);
}

}  // namespace

DAG mergeInfinities(DAG s) {
  Pair* p = pairsOf(s);
  Word n = pairCount(s);
  Word infinite = n, undefined = n;
  for (Word i = 0; i < n; ++i) {
    if (p[i].term == ini("undefined")) {
      if (undefined != n) return ini("undefined");
      undefined = i;
      p[i].coefficient = cons1;
    }
    if (p[i].term != ini("infinity") || isZero(p[i].coefficient)) continue;
    DAG sign = consneg(p[i].coefficient) ? consm1 : cons1;
    if (infinite == n) {
      infinite = i;
      p[i].coefficient = sign;
    } else if (p[infinite].coefficient == sign) {
      p[i] = {cons0, cons0};
    } else {
      DAG a = simpl(new3(SUM, ini("infinity"), p[infinite].coefficient));
      DAG b = simpl(new3(SUM, ini("infinity"), sign));
      DAG standard = undefinedInPlaceOf(s, infinite, i);
      // A handler answers with its own kind of number for a number; for a sum with what it likes.
      return TriggerNumericEvent(invalidOperation, naminstall("-"), a, b, standard, isUndefined(standard));
    }
  }
  const Word kept = undefined != n ? undefined : infinite;
  if (kept == n) return DAG();
  for (Word i = 0; i < n; ++i)
    if (i != kept && (isNumeric(p[i].term) || isSpecial(p[i].term))) p[i] = {cons0, cons0};
  return DAG();
}

namespace {

// What stands behind the complex head of each term, one object whatever the order of its factors; 0 for other terms.
DAG complexTails(DAG s) {
  const Word n = pairCount(s);
  DAG tails = newl2(n + 1, EXPSEQ);
  for (Word i = 0; i < n; ++i) {
    Pair pair = pairsOf(s)[i];
    tails[i + 1] = DAG();
    if (!isTag(pair.term, PROD) || pair.coefficient == cons0) continue;
    const Pair* factors = pairsOf(pair.term);
    if (!isTag(factors[0].term, COMPLEX) || factors[0].coefficient != cons1) continue;
    const Word count = pairCount(pair.term) - 1;
    tails[i + 1] =
        count == 1 && factors[1].coefficient == cons1 ? factors[1].term : uniquePairs(PROD, factors + 1, count);
  }
  return tails;
}

}  // namespace

bool mergeComplexHeads(DAG s) {
  const Word n = pairCount(s);
  Pair* p = pairsOf(s);
  DAG tails = complexTails(s), totals = newl2(n + 1, EXPSEQ);
  DAG firsts = firstOccurrences(&tails[1], n, 1);
  bool changed = false;
  for (Word i = 0; i < n; ++i) {
    totals[i + 1] = DAG();
    if (!tails[i + 1]) continue;
    const Word first = static_cast<Word>(immediateValue(firsts[i + 1]));
    DAG head = simpl(mul(p[i].term[1], p[i].coefficient));
    if (first == i) {
      totals[i + 1] = head;
      continue;
    }
    totals[first + 1] = simpl(add(totals[first + 1], head));
    p[i] = {cons0, cons0};
    changed = true;
  }
  for (Word i = 0; changed && i < n; ++i) {
    if (!totals[i + 1]) continue;
    DAG merged = CopyAlg(p[i].term);
    merged[1] = totals[i + 1];
    p[i] = {simpl(merged), cons1};
  }
  return changed;
}

}  // namespace korel
