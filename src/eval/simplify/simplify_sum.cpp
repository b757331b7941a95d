// Sums in canonical form.
//
// A SUM is a list of pairs (term, coefficient). The numeric terms fold into one, nested sums are
// spliced in, equal terms add their coefficients, and a pair whose coefficient becomes 0 goes. Terms
// keep the order of their first occurrence while there are few, and stand in the order of their words
// when there are many: order is no part of equality, and the table takes a SUM as a multiset.

#include "eval/simplify/simplify.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "eval/evaluate/evalf.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/bindings.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/simplify/sum_steps.h"
#include "eval/simplify/unique_pairs.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/events/numeric_events.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// From this many words on, terms are sorted to find equal ones; below, each is compared with all.
constexpr Word sortFromLength = 51;

// ---- operators bound by `use`

DAG boundSum(DAG s) {
  Word n = pairCount(s);
  Pair* p = pairsOf(s);
  if (n == 1) {
    if (p[0].coefficient == cons1) return DAG();
    if (p[0].coefficient == consm1) {
      if (DAG minus = operatorBinding(naminstall("-"))) return callBinding(minus, p[0].term);
    } else if (DAG times = operatorBinding(ini("*"))) {
      return callBinding(times, p[0].term, simpl(p[0].coefficient));
    }
    return DAG();
  }
  DAG plus = operatorBinding(ini("+"));
  if (!plus || n == 0) return DAG();
  auto rebuilt = [](const Pair& pair) {
    if (pair.coefficient == cons1) return pair.term;
    return simpl(new3(SUM, pair.term, simpl(pair.coefficient)));
  };
  DAG folded = rebuilt(p[0]);
  for (Word i = 1; i < n; ++i) folded = callBinding(plus, folded, rebuilt(pairsOf(s)[i]));
  return folded;
}

// ---- what stands among the terms

// Terms of which nothing is asked but whether they are equal.
constexpr TagSet quietTags = {NAME,  MEMBER, TABLEREF, DCOLON, CATENATE, POWER, SERIES, FUNCTION, UNEVAL, LIST,
                              LOCAL, PARAM,  LEXICAL,  PROC,   SET,      TABLE, RTABLE, MODDEF,   MODULE};

// One look at each term tells which steps have something to do: most have not, with most sums.
struct Kinds {
  TagSet tags;              // of the terms
  bool hasFloat = false;    // among the terms or coefficients
  bool hasSpecial = false;  // `infinity` or `undefined`
  DAG failure;              // `FAIL`

  bool has(Tag tag) const { return tags.contains(tag); }

  void add(const Pair& pair) {
    Tag tag = tagOf(pair.term);
    tags = tags | TagSet{tag};
    if (isFloatNumber(pair.coefficient)) hasFloat = true;
    if (isImmediate(pair.term)) return;
    if (tag == NAME && !isPlainName(pair.term)) {
      if (pair.term == ini("FAIL")) failure = pair.term;
      else hasSpecial = true;
    }
    if (tag == FLOAT) hasFloat = true;
  }
};

Kinds kindsOf(DAG s) {
  Kinds kinds;
  for (Word i = 0, n = pairCount(s); i < n; ++i) kinds.add(pairsOf(s)[i]);
  return kinds;
}

// ---- steps

// A fresh sum with the pairs of nested sums in the place of each, coefficients multiplied.
DAG spliceNestedSums(DAG s) {
  std::int64_t total = 0;
  for (Word i = 0, n = pairCount(s); i < n; ++i) {
    DAG term = pairsOf(s)[i].term;
    total += isTag(term, SUM) ? pairCount(term) : 1;
  }
  if (2 * total + 1 > maxLength) KernelException("object too large");
  DAG flat = newl2(static_cast<Word>(2 * total + 1), SUM);
  Pair* out = pairsOf(flat);
  for (Word i = 0, n = pairCount(s); i < n; ++i) {
    Pair pair = pairsOf(s)[i];
    if (!isTag(pair.term, SUM)) {
      *out++ = pair;
      continue;
    }
    DAG outer = pair.coefficient;
    for (Word k = 0, m = pairCount(pair.term); k < m; ++k) {
      Pair inner = pairsOf(pair.term)[k];
      *out++ = {inner.term, outer == cons1 ? inner.coefficient : mul(inner.coefficient, outer)};
    }
  }
  return flat;
}

// A relation among the terms: the library adds relations side by side. In the body of a procedure the sum
// waits for the values of its parameters and locals.
DAG sumOfRelations(DAG s) {
  if (hasparloc(s)) return makeUnique(simplifiedCopy(s));
  DAG sequence = newl2(lengthOf(s), EXPSEQ);
  for (Word i = 1; i < lengthOf(s); ++i) sequence[i] = simpl(s[i]);
  return simpl(evalsysf("simpl/relopsum", simpl(eval(simpl(sequence)))));
}

// One COMPLEX factor in front of a PROD takes the coefficient in.
void absorbIntoProduct(Pair& pair) {
  DAG product = pair.term;
  if (pair.coefficient == cons1) return;
  pair.coefficient = coefficientBefore(product, pair.coefficient);
  if (isTag(product[1], COMPLEX) && product[2] == cons1 && pair.coefficient != cons0) {
    DAG scaled = CopyAlg(product);
    scaled[1] = simpl(mul(product[1], pair.coefficient));
    pair.term = simpl(scaled);
    pair.coefficient = cons1;
  }
}

[[noreturn]] void invalidTerm(DAG original) {
  KernelException(lengthOf(original) == 3 ? "invalid terms in product" : "invalid terms in sum");
}

struct NumberFold {
  DAG result;            // set when a term settles the whole
  DAG zero;              // the float zero that the numbers have come to
  bool hasHead = false;  // a product headed by a COMPLEX stands among the terms
};

// Numeric terms fold into the first of them; a total of 0 goes. Products take in what they can of their
// coefficients.
NumberFold foldNumbers(DAG s, DAG original) {
  NumberFold fold;
  Pair* p = pairsOf(s);
  Word n = pairCount(s);
  Word accumulator = n;
  for (Word i = 0; i < n; ++i) {
    DAG term = p[i].term;
    switch (tagOf(term)) {
      case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: fold.result = sumOfRelations(s); return fold;
      case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case COMPLEX: {
        // The place of a term that another has taken in: an exact 0 would make a float of a complex part.
        if (term == cons0 && p[i].coefficient == cons0) break;
        DAG value = p[i].coefficient == cons1 ? term : mul(term, p[i].coefficient);
        if (accumulator == n) {
          accumulator = i;
          p[i] = {value, cons1};
        } else {
          p[accumulator].term = add(p[accumulator].term, value);
          p[i] = {cons0, cons0};
        }
        break;
      }
      case PROD:
        absorbIntoProduct(p[i]);
        if (isTag(p[i].term, PROD) && isTag(p[i].term[1], COMPLEX)) fold.hasHead = true;
        break;
      case SUM:
        // Only a term that became a sum while it took its coefficient in.
        break;
      default:
        if (!isAmong(term, quietTags)) invalidTerm(original);
    }
  }
  if (accumulator != n) {
    DAG value = simpl(p[accumulator].term);
    p[accumulator].term = value;
    if (isZero(value)) {
      if (!isInteger(value)) fold.zero = value;
      p[accumulator] = {cons0, cons0};
    }
  }
  return fold;
}

// ---- equal terms

std::uint32_t orderOf(const Pair& pair) { return pair.term.word ^ 0x80000000u; }

// Stable sort of pairs by the bits of their order that vary, from the lowest up, a digit of `width` bits at a
// time (Knuth, vol. 3, 5.2.5, algorithm R). Terms stand near each other, so that two digits do for most sums.
// False when there is no room for the copy. The loops stand on whole lines: elsewhere they cost a tenth more
// (bench/simplify_bench.cpp).
[[gnu::aligned(64)]] bool radixSort(Pair* pairs, Word n, std::uint32_t varying) {
  constexpr int mostDigitBits = 11;
  Pair* copy = static_cast<Pair*>(std::malloc(n * sizeof(Pair)));
  if (copy == nullptr) return false;
  const int low = std::countr_zero(varying), bits = std::bit_width(varying) - low;
  const int digits = (bits + mostDigitBits - 1) / mostDigitBits, width = (bits + digits - 1) / digits;
  const std::uint32_t mask = (std::uint32_t{1} << width) - 1;
  Pair *from = pairs, *to = copy;
  for (int digit = 0; digit < digits; ++digit) {
    const int shift = low + digit * width;
    Word place[std::size_t{1} << mostDigitBits];
    std::memset(place, 0, sizeof(Word) * (mask + 1));
    for (Word i = 0; i < n; ++i) ++place[(orderOf(from[i]) >> shift) & mask];
    Word before = 0;
    for (Word d = 0; d <= mask; ++d) before += std::exchange(place[d], before);
    for (Word i = 0; i < n; ++i) to[place[(orderOf(from[i]) >> shift) & mask]++] = from[i];
    std::swap(from, to);
  }
  if (from != pairs) std::memcpy(static_cast<void*>(pairs), from, n * sizeof(Pair));
  std::free(copy);
  return true;
}

// Sorts pairs by the signed words of their terms. True when no two were equal and all stood in order.
bool sortByTerm(Pair* pairs, Word n) {
  Word i = 1;
  while (i < n && orderOf(pairs[i - 1]) < orderOf(pairs[i])) ++i;
  if (i == n) return true;
  // Below, the table of digits costs more than it saves (bench/simplify_bench.cpp).
  constexpr Word radixFrom = 64;
  if (n >= radixFrom) {
    std::uint32_t varying = 0;
    for (Word k = 1; k < n; ++k) varying |= orderOf(pairs[k]) ^ orderOf(pairs[0]);
    if (varying == 0 || radixSort(pairs, n, varying)) return false;
  }
  std::sort(pairs, pairs + n, [](const Pair& a, const Pair& b) { return orderOf(a) < orderOf(b); });
  return false;
}

// Equal terms add their coefficients into the first of them; the others get coefficient 0. `products` tells
// whether any term is a PROD. Out of line, so that the comparisons have the registers for themselves
// (bench/simplify_bench.cpp).
[[gnu::noinline, gnu::aligned(64)]] void collectEqualTerms(DAG s, bool products) {
  auto addCoefficients = [products](DAG term, DAG a, DAG b) {
    DAG sum = add(a, b);
    return products && isTag(term, PROD) ? coefficientBefore(term, sum) : sum;
  };
  Pair* p = pairsOf(s);
  Word n = pairCount(s);
  if (lengthOf(s) >= sortFromLength) {
    // A folded number that is 0 stands in front, far from the words of the terms.
    while (n != 0 && p->term == cons0 && p->coefficient == cons0) ++p, --n;
    if (sortByTerm(p, n)) return;
    for (Word i = 0; i < n;) {
      Word k = i + 1;
      DAG term = p[i].term, coefficient = p[i].coefficient;
      for (; k < n && p[k].term == term; ++k) {
        coefficient = addCoefficients(term, coefficient, p[k].coefficient);
        p[k] = {cons0, cons0};
      }
      p[i].coefficient = coefficient;
      i = k;
    }
    return;
  }
  Pair* const end = p + n;
  for (Pair* first = p; first + 1 < end; ++first) {
    if (first->coefficient == cons0) continue;
    const DAG term = first->term;
    for (Pair* other = end - 1; other != first; --other)
      if (other->term == term && other->coefficient != cons0) {
        first->coefficient = addCoefficients(term, first->coefficient, other->coefficient);
        *other = {cons0, cons0};
      }
  }
}

// Simplifies the coefficients. A list takes in a zero of any form; beside another term a float zero becomes a
// factor of 0. True when there is one: the sum has a number more.
bool settleCoefficients(DAG s) {
  bool again = false;
  Pair* p = pairsOf(s);
  for (Word i = 0, n = pairCount(s); i < n; ++i) {
    DAG coefficient = p[i].coefficient;
    if (isImmediate(coefficient)) {
      if (!isZeroImmediate(coefficient)) continue;
      p[i].coefficient = coefficient = cons0;
    } else {
      coefficient = p[i].coefficient = simpl(coefficient);
      if (!isZero(coefficient)) continue;
      if (!isTag(p[i].term, LIST)) {
        p[i].term = cons0;
        again = true;
      }
    }
    if (isTag(p[i].term, LIST)) p[i] = {mapToList(p[i].term, coefficient), cons1};
  }
  return again;
}

// Moves the pairs with a coefficient other than the integer 0 together; the count that stays.
Word compact(DAG s) {
  Pair* p = pairsOf(s);
  Word kept = 0;
  for (Word i = 0, n = pairCount(s); i < n; ++i)
    if (p[i].coefficient != cons0) p[kept++] = p[i];
  return kept;
}

}  // namespace

DAG simplSum(DAG s) {
  Kinds kinds;
  for (Word i = 0, n = pairCount(s); i < n; ++i) {
    Pair& pair = pairsOf(s)[i];
    if (!isSettled(pair.term)) {
      passWork(objectSteps);
      Pair product;
      if (isTag(pair.term, PROD) && plainProduct(pair.term, product)) {
        pair.term = product.term;
        if (product.coefficient != cons1) pair.coefficient = mul(product.coefficient, pair.coefficient);
      } else {
        pair.term = simpl(pair.term);
      }
    }
    kinds.add(pair);
  }
  if (lengthOf(s) == 3 && s[2] == cons1 && isTag(s[1], SUM)) return s[1];
  if (hasUserBindings())
    if (DAG bound = boundSum(s)) return bound;

  DAG original = s;
  if (kinds.has(SUM)) {
    s = spliceNestedSums(s);
    kinds = kindsOf(s);
  }
  if (kinds.failure) return kinds.failure;
  if (kinds.hasFloat) {
    if (DAG changed = TransformSEQ2F(s)) {
      if (isImmediate(changed) || !hasTag(changed, SUM)) return simpl(changed);
      s = changed;
    }
  }
  if (kinds.has(COMPLEX) && combineComplexTerms(s)) kinds.hasSpecial = true;

  Word n = pairCount(s);
  DAG floatZero;
  bool hasHead = false;
  if (kinds.hasFloat || !(kinds.tags - quietTags).isEmpty()) {
    NumberFold fold = foldNumbers(s, original);
    if (fold.result) return fold.result;
    floatZero = fold.zero;
    hasHead = fold.hasHead;
  }
  if (kinds.hasSpecial)
    if (DAG result = mergeInfinities(s)) return simpl(result);
  bool again = hasHead && mergeComplexHeads(s);

  if (n > 1) collectEqualTerms(s, kinds.has(PROD));
  bool hasZeroFactor = settleCoefficients(s);
  if (kinds.has(LIST)) settleLists(s);
  Word kept = compact(s);
  if (kept == 0) return floatZero ? simpl(floatZero) : cons0;
  Word length = 2 * kept + 1;
  // Also when only a term is left: a raw sum can stand in several places, and comes here for each.
  if (length != lengthOf(s)) shorten(s, lengthOf(s), length);
  if (kept == 1 && pairsOf(s)[0].coefficient == cons1) return simpl(pairsOf(s)[0].term);
  if (again || hasZeroFactor) return simplSum(s);
  return makeUnique(s);
}

}  // namespace korel
