#include "algebra/engine/coprime_test.h"

#include <algorithm>

#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "store/pairs.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel::engine {

namespace {

const Modulus modulus((Residue{1} << 61) - 1);
constexpr std::int32_t highestDegree = 10000;

// The pair of a sum, with the number of a constant term as its coefficient and 0, no object, for the term.
Pair termAt(DAG p, Word i) {
  Pair pair = isTag(p, SUM) ? pairsOf(p)[i] : Pair{p, cons1};
  if (isNumber(pair.term) && pair.coefficient == cons1) return {DAG(), pair.term};
  return pair;
}
Word termCount(DAG p) { return isTag(p, SUM) ? pairCount(p) : 1; }

// Some residue for a variable, always the same one.
Residue valueOf(DAG variable) { return (Residue{variable.word} * 0x9e3779b97f4a7c15u >> 3) % (modulus.prime - 1) + 1; }

// Calls `visit(base, exponent)` on the powers of a term; false when one of them is no natural power of a variable.
template <class Visit>
bool forEachPower(DAG term, Visit visit) {
  if (!term) return true;
  if (isImmediate(term)) return false;
  auto isVariable = [](DAG base) {
    return !isImmediate(base) && TagSet{NAME, TABLEREF, FUNCTION}.contains(tagOf(base));
  };
  if (isVariable(term)) {
    visit(term, 1);
    return true;
  }
  if (!isTag(term, PROD)) return false;
  for (Word i = 0; i < pairCount(term); ++i) {
    const Pair power = pairsOf(term)[i];
    if (!isVariable(power.term) || !isImmediate(power.coefficient)) return false;
    const std::int32_t e = immediateValue(power.coefficient);
    if (e < 0 || e > highestDegree) return false;
    visit(power.term, e);
  }
  return true;
}

// Exponent of `v` in a term, or -1 where the term is nothing for the test.
std::int32_t exponentOf(DAG v, DAG term) {
  std::int32_t exponent = 0;
  const bool fits = forEachPower(term, [&](DAG base, std::int32_t e) {
    if (base == v) exponent = e;
  });
  return fits ? exponent : -1;
}

// The image of `p` in `v`; false where there is none.
bool makeImage(Arena& arena, DAG p, DAG v, DensePolynomial& image) {
  const Word n = termCount(p);
  std::int32_t degree = 0;
  for (Word i = 0; i < n; ++i) {
    const Pair pair = termAt(p, i);
    const std::int32_t e = isInteger(pair.coefficient) ? exponentOf(v, pair.term) : -1;
    if (e < 0) return false;
    degree = std::max(degree, e);
  }
  image.coefficients = arena.makeZero<Residue>(static_cast<std::size_t>(degree) + 1);
  for (Word i = 0; i < n; ++i) {
    const Pair pair = termAt(p, i);
    passWork(objectSteps + (isImmediate(pair.coefficient) ? 0 : lengthOf(pair.coefficient)));
    Residue value = modulus.of(pair.coefficient);
    std::int32_t at = 0;
    forEachPower(pair.term, [&](DAG base, std::int32_t e) {
      if (base == v) at = e;
      else value = modulus.multiply(value, modulus.power(valueOf(base), static_cast<std::uint64_t>(e)));
    });
    image.coefficients[at] = modulus.add(image.coefficients[at], value);
  }
  image.degree = degree;
  while (image.degree >= 0 && image.coefficients[image.degree] == 0) --image.degree;
  return true;
}

// A variable in which the leading coefficient of `p` is a number other than 0 modulo the prime, or 0, no object.
DAG mainVariable(DAG p) {
  constexpr Word mostTerms = 1000;
  const Word n = termCount(p);
  if (n > mostTerms) return DAG();
  for (Word i = 0; i < n; ++i) {
    const Pair lead = termAt(p, i);
    DAG v = isTag(lead.term, PROD) && pairCount(lead.term) == 1 ? pairsOf(lead.term)[0].term : lead.term;
    if (!v || !isInteger(lead.coefficient) || modulus.of(lead.coefficient) == 0) continue;
    const std::int32_t degree = exponentOf(v, lead.term);
    bool leads = degree > 0;
    for (Word k = 0; leads && k < n; ++k) leads = k == i || exponentOf(v, termAt(p, k).term) < degree;
    if (leads) return v;
  }
  return DAG();
}

// Whether the root of the linear `b` is none of `a`.
bool isNoRoot(const DensePolynomial& a, const DensePolynomial& b) {
  Residue root = modulus.subtract(0, b.coefficients[0]), value = 0;
  if (b.coefficients[1] != 1) root = modulus.multiply(root, modulus.inverse(b.coefficients[1]));
  for (std::int64_t i = a.degree; i >= 0; --i) value = modulus.add(modulus.multiply(value, root), a.coefficients[i]);
  return value != 0;
}

}  // namespace

const CoprimeTest::Image* CoprimeTest::imageOfF(DAG variable) {
  for (int i = 0; i < known_; ++i)
    if (images_[i].variable == variable) return &images_[i];
  if (known_ == mostImages) return nullptr;
  Image& image = images_[known_];
  image = {variable, false, {}};
  image.exists = makeImage(arena_, f_, variable, image.polynomial);
  return &images_[known_++];
}

bool CoprimeTest::isCoprimeTo(DAG g) {
  DAG v = mainVariable(g);
  if (!v) return false;
  const Image* image = imageOfF(v);
  DensePolynomial a, b;
  if (image == nullptr || !image->exists || image->polynomial.degree < 0 || !makeImage(arena_, g, v, b)) return false;
  passWork((image->polynomial.degree + 1) * (b.degree + 1));
  if (b.degree == 1) return isNoRoot(image->polynomial, b);
  a.degree = image->polynomial.degree;
  a.coefficients = arena_.make<Residue>(static_cast<std::size_t>(a.degree) + 1);
  std::copy_n(image->polynomial.coefficients, a.degree + 1, a.coefficients);
  Residue* both[] = {a.coefficients, b.coefficients};
  const bool coprime = gcdInPlace(modulus, a, b).degree == 0;
  for (Residue* coefficients : both) arena_.free(coefficients);
  return coprime;
}

}  // namespace korel::engine
