#include "algebra/polynomial_order.h"

#include <utility>

#include "eval/simplify/simplify.h"
#include "eval/walk/walk_memory.h"
#include "frame/environment.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/object_set.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- monomials as lists of (base, exponent)

// A walk over the pairs of a monomial; what is no product is one pair with exponent 1.
struct Factors {
  DAG monomial;
  Word at = 1, end;

  explicit Factors(DAG m) : monomial(m), end(isTag(m, PROD) ? lengthOf(m) : 3) {}
  bool done() const { return at >= end; }
  DAG base() const { return isTag(monomial, PROD) ? monomial[at] : monomial; }
  DAG exponent() const { return isTag(monomial, PROD) ? monomial[at + 1] : cons1; }
  void next() { at += 2; }
};

Factors fromFirstVariable(DAG monomial, DAG variables) {
  Factors factors(monomial);
  while (!factors.done() && memberPosition(factors.base(), variables) == 0) factors.next();
  return factors;
}

// Exponents that have no order, a complex one say, are taken as equal.
int compareExponents(DAG a, DAG b) {
  return a == b || !isNumeric(a) || !isNumeric(b) || isUndefined(a) || isUndefined(b) ? 0 : compcon(a, b);
}

DAG degreeFrom(Factors factors) {
  DAG sum = cons0;
  for (; !factors.done(); factors.next()) sum = add(sum, factors.exponent());
  return simpl(sum);
}

}  // namespace

int compmon(DAG a, DAG b, DAG variables, bool totalDegree) {
  if (a == b) return 0;
  Factors x = fromFirstVariable(a, variables), y = fromFirstVariable(b, variables);
  if (totalDegree)
    if (int order = compareExponents(degreeFrom(x), degreeFrom(y))) return order;
  for (; !x.done() && !y.done(); x.next(), y.next()) {
    Word p = memberPosition(x.base(), variables), q = memberPosition(y.base(), variables);
    if (p != q) {
      // A base that is no variable stands behind them all.
      if (p == 0) return -1;
      if (q == 0) return 1;
      return p < q ? 1 : -1;
    }
    if (int order = compareExponents(x.exponent(), y.exponent())) return order;
  }
  return x.done() == y.done() ? 0 : x.done() ? -1 : 1;
}

namespace {

struct Sorting {
  DAG variables;
  bool totalDegree;
  ObjectSet& met;  // a shared part is sorted once
};

// Shell sort of the pairs of `s` in place (Knuth, vol. 3, 5.2.1); gaps are counted in words.
template <class Misplaced>
void sortPairs(DAG s, Misplaced misplaced) {
  const std::int64_t n = lengthOf(s);
  std::int64_t gap = 2;
  if (n >= 9) {
    gap = 8;
    while (3 * gap + 2 < n) gap = 3 * gap + 2;
  }
  for (; gap >= 2; gap /= 3)
    for (std::int64_t i = 1 + gap; i < n; i += 2)
      for (std::int64_t j = i; j > gap && misplaced(s[j - gap], s[j]); j -= gap) {
        std::swap(s[j - gap], s[j]);
        std::swap(s[j - gap + 1], s[j + 1]);
      }
}

DAG sortIn(const Sorting& sorting, DAG x);

// `x` with the fields `from`, `from + step`, ... sorted, in a copy if one is replaced.
DAG sortFields(const Sorting& sorting, DAG x, Word from, Word step) {
  checkStack();
  DAG result = withFields(x, from, step, [&](DAG field) { return sortIn(sorting, field); });
  return result == x ? x : simpl(result);
}

DAG sortIn(const Sorting& sorting, DAG x) {
  if (!isObject(x) || tagOf(x) <= NAME || !sorting.met.insert(x)) return x;
  switch (tagOf(x)) {
    case PROD: {
      DAG result = sortFields(sorting, x, 1, 2);
      if (isTag(result, PROD))
        sortPairs(result, [&](DAG before, DAG after) {
          return memberPosition(before, sorting.variables) > memberPosition(after, sorting.variables);
        });
      return result;
    }
    case SUM: {
      DAG result = sortFields(sorting, x, 1, 2);
      if (isTag(result, SUM))
        sortPairs(result, [&](DAG before, DAG after) {
          return compmon(before, after, sorting.variables, sorting.totalDegree) == -1;
        });
      return result;
    }
    case LIST: case SET: case EXPSEQ: case POWER: case FUNCTION: case TABLEREF: case DCOLON: case UNEVAL: case EQUATION:
    case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT: case OR: case RANGE:
      return sortFields(sorting, x, 1, 1);
    default: return x;
  }
}

}  // namespace

DAG algsort(DAG x, DAG variables, bool totalDegree) {
  return withWalkMemory<ObjectSet>([&](ObjectSet& met) { return sortIn({variables, totalDegree, met}, x); });
}

// ---- what a polynomial is in

namespace {

// Objects met so far, and the variables among them in a sequence that grows by halves.
struct Gathering {
  ObjectSet& seen;
  DAG found;
  Word count;
};

void insert(Gathering& into, DAG x) {
  if (into.count + 1 == lengthOf(into.found)) into.found = enlarge(into.found, lengthOf(into.found) / 2 + 8);
  into.found[++into.count] = x;
}

void gather(Gathering& into, DAG x) {
  if (!isObject(x) || tagOf(x) <= STRING) return;
  if (!into.seen.insert(x)) return;
  checkStack();
  switch (tagOf(x)) {
    case NAME: case TABLEREF:
      if (!isInfinite(x) && !isUndefined(x)) insert(into, x);
      return;
    case FUNCTION:
      insert(into, x);
      gather(into, x[2]);
      return;
    case SUM: case PROD:
      for (Word i = 1; i < lengthOf(x); i += 2) gather(into, x[i]);
      return;
    case POWER: case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT: case OR: case EXPSEQ:
    case LIST: case SET: case RANGE:
      for (Word i = 1; i < lengthOf(x); ++i) gather(into, x[i]);
      return;
    default: return;
  }
}

}  // namespace

DAG indeterminates(DAG x) {
  return withWalkMemory<ObjectSet>([x](ObjectSet& seen) {
    Gathering gathering{seen, newl2(9, EXPSEQ), 0};
    gather(gathering, x);
    shorten(gathering.found, lengthOf(gathering.found), gathering.count + 1);
    return simpl(new2(SET, gathering.found))[1];
  });
}

}  // namespace korel
