#include "algebra/polynomials/expanded_size.h"

#include <algorithm>

#include "algebra/engine/arena.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "store/allocator.h"
#include "store/constants.h"
#include "store/pairs.h"
#include "store/vocabulary.h"
#include "store/word_map.h"

namespace korel {

using engine::Arena;

void checkRoom(double terms, double words) {
  constexpr double fewWords = 1e5;
  if (terms > maxLength / 2.0 || (words > fewWords && !hasRoomFor(words))) KernelException("object too large");
}

namespace {

constexpr double endless = 1e18;  // products of counts go no further

Pair pairOf(DAG sum, Word i) { return isTag(sum, SUM) ? pairsOf(sum)[i] : Pair{sum, cons1}; }
Word termsOf(DAG x) { return isTag(x, SUM) ? pairCount(x) : 1; }

bool isVariable(DAG base) { return isTag(base, NAME) || isTag(base, TABLEREF) || isTag(base, FUNCTION); }

// ---- powers: terms whose exponents are independent

constexpr std::int64_t prime = 1000003;

std::int64_t inverse(std::int64_t x) {
  std::int64_t result = 1;
  for (std::int64_t e = prime - 2; e != 0; e >>= 1, x = x * x % prime)
    if ((e & 1) != 0) result = result * x % prime;
  return result;
}

// An exponent modulo the prime; 0 for one that is no fraction of small integers.
std::int64_t residueOf(DAG exponent) {
  auto residue = [](DAG x) { return isImmediate(x) ? (immediateValue(x) % prime + prime) % prime : 0; };
  if (isTag(exponent, RATIONAL)) return residue(exponent[1]) * inverse(residue(exponent[2])) % prime;
  return residue(exponent);
}

// Calls `visit(variable, exponent)` on each power of a variable; what else a term holds counts as its coefficient.
template <class Visit>
void forEachPower(DAG term, Visit visit) {
  if (isVariable(term)) return visit(term, std::int64_t{1});
  if (!isTag(term, PROD)) return;
  for (Word i = 1; i < lengthOf(term); i += 2)
    if (isVariable(term[i])) visit(term[i], residueOf(term[i + 1]));
}

// A few terms of a sum as rows of exponents; columns beyond the last are left out.
struct ExponentMatrix {
  static constexpr Word mostRows = 300, mostColumns = 300;
  Word rows, columns;
  std::int64_t* entries;
  std::int64_t* row(Word i) const { return entries + i * columns; }
};

// Nothing in it raises an error while the map stands.
Word numberVariables(DAG sum, Word rows, WordMap& columns) {
  for (Word i = 0; i < rows; ++i)
    forEachPower(pairOf(sum, i).term,
                 [&](DAG v, std::int64_t) { columns.insert(v.word, static_cast<std::int32_t>(columns.size())); });
  return std::min(columns.size(), ExponentMatrix::mostColumns);
}

ExponentMatrix exponentMatrix(Arena& arena, DAG sum) {
  ExponentMatrix matrix{std::min(termsOf(sum), ExponentMatrix::mostRows), 0, nullptr};
  matrix.entries = arena.makeZero<std::int64_t>(matrix.rows * ExponentMatrix::mostColumns);
  WordMap columns;
  matrix.columns = numberVariables(sum, matrix.rows, columns);
  for (Word i = 0; i < matrix.rows; ++i)
    forEachPower(pairOf(sum, i).term, [&](DAG v, std::int64_t e) {
      const std::int32_t* column = columns.find(v.word);
      if (column != nullptr && static_cast<Word>(*column) < matrix.columns) matrix.row(i)[*column] = e;
    });
  columns.release();
  return matrix;
}

// The rank of the rows once the first is taken from all, modulo the prime.
Word rankOf(const ExponentMatrix& matrix) {
  for (Word i = matrix.rows; i-- > 0;)
    for (Word v = 0; v < matrix.columns; ++v) matrix.row(i)[v] = (matrix.row(i)[v] - matrix.row(0)[v] + prime) % prime;
  Word rank = 0;
  for (Word v = 0; v < matrix.columns; ++v) {
    Word pivot = rank;
    while (pivot < matrix.rows && matrix.row(pivot)[v] == 0) ++pivot;
    if (pivot == matrix.rows) continue;
    std::swap_ranges(matrix.row(pivot), matrix.row(pivot) + matrix.columns, matrix.row(rank));
    const std::int64_t* lead = matrix.row(rank++);
    for (Word i = rank; i < matrix.rows; ++i) {
      // Fraction-free: both rows by the other's entry.
      std::int64_t* row = matrix.row(i);
      const std::int64_t factor = row[v];
      if (factor == 0) continue;
      passWork(matrix.columns);
      for (Word w = v; w < matrix.columns; ++w)
        row[w] = ((row[w] * lead[v] - lead[w] * factor) % prime + prime) % prime;
    }
  }
  return rank;
}

Word rankOfTerms(DAG sum) {
  const Word n = termsOf(sum);
  if (n < 2) return 0;
  // Bare variables are independent, whatever else there is.
  Word bare = 0;
  for (Word i = 0; i < n; ++i) bare += isVariable(pairOf(sum, i).term) ? 1 : 0;
  if (bare >= ExponentMatrix::mostRows) return bare - 1;
  Arena arena;
  return rankOf(exponentMatrix(arena, sum));
}

// C(n + rank, rank): the products of n out of rank + 1 independent terms.
double productsOfTerms(Word rank, double n) {
  double terms = 1;
  for (Word k = 1; k <= rank && terms < endless; ++k) terms *= (n + k) / k;
  return terms;
}

}  // namespace

double fewestTermsOfPower(DAG sum, double n) { return productsOfTerms(rankOfTerms(sum), n); }

void checkSizeOfPower(DAG sum, double n, double wordsOfCoefficient) {
  const double rank = rankOfTerms(sum), terms = productsOfTerms(static_cast<Word>(rank), n);
  // Of the independent terms so many are in a product of n of them on average, and each brings a variable.
  const double powers = rank == 0 ? 0 : rank * n / (n + rank);
  checkRoom(terms, terms * (wordsOfSmallTerm - 2 + 2 * powers + wordsOfCoefficient));
}

// ---- products

namespace {

constexpr double manyTerms = 1e6;         // fewer are no reason to look closer
constexpr Word longestOperand = 200000;   // terms of a factor that is looked through
constexpr std::int32_t mostInGroup = 10;  // factors with variables in common

bool isSumFactor(DAG base, DAG exponent) {
  return isTag(base, SUM) && isImmediate(exponent) && immediateValue(exponent) > 0;
}

// A sum of products of names: it is expanded, and its names are all that it holds.
bool isPlainSum(DAG sum) {
  for (Word i = 0; i < termsOf(sum); ++i) {
    DAG term = pairOf(sum, i).term;
    auto isPlain = [](DAG x) { return isImmediate(x) || tagOf(x) <= TABLEREF; };
    if (isPlain(term)) continue;
    if (!isTag(term, PROD)) return false;
    for (Word k = 1; k < lengthOf(term); k += 2)
      if (!isPlain(term[k]) || !isImmediate(term[k + 1]) || immediateValue(term[k + 1]) < 0) return false;
  }
  return true;
}

// Factors that share variables are of one group: each knows another of its group, the last one itself.
struct Groups {
  std::int32_t* next;
  std::int32_t last(std::int32_t i) const {
    while (next[i] != i) i = next[i] = next[next[i]];
    return i;
  }
  void join(std::int32_t i, std::int32_t k) const { next[last(i)] = last(k); }
};

void joinByVariable(const Groups& groups, WordMap& owners, DAG variable, std::int32_t factor) {
  std::int32_t* owner;
  if (owners.insert(variable.word, factor, &owner) == WordMap::present) groups.join(factor, *owner);
}

// What multiplies each term by the same, whatever the other factors are.
bool isUnit(DAG base, DAG exponent) {
  return isNumber(base) || isTag(base, NAME) || isTag(base, TABLEREF) ||
         (isTag(base, SUM) && !isSumFactor(base, exponent));
}

// How many terms the factors could give at most, each term by itself; 0 when a factor is nothing that can be counted,
// and for one factor alone, whose power is looked at when it is raised.
double mostTerms(DAG product) {
  double most = 1, sums = 0;
  for (Word i = 1; i < lengthOf(product); i += 2) {
    if (isUnit(product[i], product[i + 1])) continue;
    if (!isTag(product[i], SUM) || termsOf(product[i]) > longestOperand || !isPlainSum(product[i])) return 0;
    for (std::int32_t k = immediateValue(product[i + 1]); k > 0 && most < endless; --k) most *= termsOf(product[i]);
    ++sums;
  }
  return sums > 1 ? most : 0;
}

// Nothing in it raises an error while the map stands.
void groupFactors(const Groups& groups, DAG product) {
  WordMap owners;
  for (Word i = 0; i < pairCount(product); ++i) {
    const Pair pair = pairsOf(product)[i];
    const auto factor = static_cast<std::int32_t>(i);
    groups.next[i] = factor;
    if (isUnit(pair.term, pair.coefficient)) continue;
    for (Word k = 0; k < termsOf(pair.term); ++k)
      forEachPower(pairOf(pair.term, k).term, [&](DAG v, std::int64_t) { joinByVariable(groups, owners, v, factor); });
  }
  owners.release();
}

// ---- factors that share variables, all of whose coefficients are positive: nothing cancels

bool isPositive(const Pair& pair) { return !consneg(pair.coefficient) && !(isNumber(pair.term) && consneg(pair.term)); }

bool isPositiveSum(DAG sum) {
  for (Word i = 0; i < termsOf(sum); ++i)
    if (!isPositive(pairOf(sum, i))) return false;
  return true;
}

// The bare variables of a sum, with a constant term for one more; other terms are left out of the count.
struct Variables {
  static constexpr Word most = 60;
  Word count = 0, shared = 0;
  Word words[most];

  explicit Variables(DAG sum) {
    bool constant = false;
    for (Word i = 0; i < termsOf(sum) && count + 1 < most; ++i) {
      DAG term = pairOf(sum, i).term;
      if (isVariable(term)) words[count++] = term.word;
      else constant = constant || isNumber(term);
    }
    if (constant) words[count++] = cons1.word;
  }
  void share(const Variables& others) {
    for (Word i = 0; i < count; ++i) shared += std::count(others.words, others.words + others.count, words[i]) != 0;
  }
};

// C(n + k - 1, k - 1): the monomials of degree n in k variables.
double monomials(Word k, std::int32_t n) {
  if (k == 0) return n == 0 ? 1 : 0;
  return productsOfTerms(k - 1, n);
}
// How many of the variables are in such a monomial on average.
double variablesIn(Word k, std::int32_t n) { return n == 0 ? 0 : static_cast<double>(k) * n / (n + k - 1.0); }

struct Size {
  double terms = 0, words = 0;
};

// Monomials of the product of p^m and q^n for sums p, q of variables: by the degrees i and j in those that only p has
// and only q has, where the others are of degree m + n - i - j.
Size fewestOfTwo(DAG p, std::int32_t m, DAG q, std::int32_t n) {
  constexpr std::int32_t enough = 500;  // a higher power has more terms
  m = std::min(m, enough);
  n = std::min(n, enough);
  Variables ofP(p), ofQ(q);
  ofP.share(ofQ);
  const Word both = ofP.shared, alone1 = ofP.count - both, alone2 = ofQ.count - both;
  Size size;
  for (std::int32_t i = 0; i <= m; ++i) {
    passWork(50 * std::int64_t{n});
    for (std::int32_t j = 0; j <= n; ++j) {
      const double terms = monomials(alone1, i) * monomials(alone2, j) * monomials(both, m + n - i - j);
      const double powers = variablesIn(alone1, i) + variablesIn(alone2, j) + variablesIn(both, m + n - i - j);
      size.terms += terms;
      // A constant takes no room.
      size.words += terms * (wordsOfSmallTerm - 2 + 2 * std::max(powers - 1, 0.0));
    }
  }
  return size;
}

// The largest of such counts in a group of factors.
Size fewestOfGroup(const Groups& groups, DAG product, std::int32_t group) {
  Size size;
  for (Word i = 0; i < pairCount(product); ++i) {
    const Pair p = pairsOf(product)[i];
    if (isUnit(p.term, p.coefficient) || groups.last(static_cast<std::int32_t>(i)) != group) continue;
    if (!isPositiveSum(p.term)) return {};
    for (Word k = 0; k < i; ++k) {
      const Pair q = pairsOf(product)[k];
      if (isUnit(q.term, q.coefficient) || groups.last(static_cast<std::int32_t>(k)) != group) continue;
      const Size of = fewestOfTwo(p.term, immediateValue(p.coefficient), q.term, immediateValue(q.coefficient));
      if (of.words > size.words) size = of;
    }
  }
  return size;
}

}  // namespace

void checkSizeOfProduct(DAG product) {
  if (mostTerms(product) < manyTerms) return;
  Arena arena;
  const Word factors = pairCount(product);
  const Groups groups{arena.make<std::int32_t>(factors)};
  groupFactors(groups, product);
  auto* sizes = arena.makeZero<std::int32_t>(factors);
  for (Word i = 0; i < factors; ++i) ++sizes[groups.last(static_cast<std::int32_t>(i))];
  double terms = 1, alone = 0;
  for (Word i = 0; i < factors && terms < endless; ++i) {
    const Pair pair = pairsOf(product)[i];
    const auto factor = static_cast<std::int32_t>(i);
    if (isUnit(pair.term, pair.coefficient)) continue;
    if (sizes[groups.last(factor)] == 1) {
      terms *= pair.coefficient == cons1 ? termsOf(pair.term)
                                         : fewestTermsOfPower(pair.term, immediateValue(pair.coefficient));
      ++alone;
    } else if (groups.last(factor) == factor && sizes[factor] <= mostInGroup) {
      const Size size = fewestOfGroup(groups, product, factor);
      checkRoom(size.terms, size.words);
      terms *= std::max(size.terms, 1.0);
    }
  }
  // Each factor brings a variable to a term, but for one of its own.
  checkRoom(terms, terms * (wordsOfSmallTerm - 2 + alone));
}

}  // namespace korel
