#include "algebra/engine/sparse_gcd.h"

#include <algorithm>

#include "algebra/engine/gcd.h"
#include "algebra/engine/modular_arithmetic.h"
#include "eval/simplify/simplify.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/vocabulary.h"

namespace korel::engine {

namespace {

// ---- operands modulo a prime

// A polynomial with its exponents taken apart: `count` rows of the main variable's exponent and the others'.
struct ModularPolynomial {
  std::size_t count;
  std::int32_t* exponents;
  Residue* coefficients;
  std::int64_t highest[mostVariables];  // by position in the order of variables
};

// The order in which the variables are looked at: the main one first, then those that come back one by one.
struct Order {
  int count = 0;
  int variables[mostVariables];  // numbers of the layout
  const std::int32_t* row(const ModularPolynomial& p, std::size_t i) const { return p.exponents + i * count; }
};

ModularPolynomial takeApart(Arena& arena, const Layout& layout, const Order& order, const IntegerPolynomial& p) {
  ModularPolynomial result{p.count, arena.make<std::int32_t>(p.count * order.count), arena.make<Residue>(p.count), {}};
  for (std::size_t i = 0; i < p.count; ++i)
    for (int k = 0; k < order.count; ++k) {
      const std::int64_t e = exponentIn(layout.variables[order.variables[k]], p.monomials[i]);
      result.exponents[i * order.count + k] = static_cast<std::int32_t>(e);
      result.highest[k] = std::max(result.highest[k], e);
    }
  return result;
}
void reduceCoefficients(const Modulus& m, const IntegerPolynomial& p, ModularPolynomial& to) {
  for (std::size_t i = 0; i < p.count; ++i) to.coefficients[i] = m.of(p.coefficients[i]);
}

// The terms of the divisor as far as they are known: exponents of the variables that are back, ascending in the main
// one, and the coefficient modulo the prime.
struct Skeleton {
  std::size_t count = 0;
  std::int32_t* exponents = nullptr;  // rows like those of the operands
  Residue* coefficients = nullptr;
};

class SparseGcd {
 public:
  SparseGcd(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b, Order order,
            std::uint64_t seed)
      : arena_(arena), layout_(layout), order_(order), integersA_(a), integersB_(b), seed_(seed) {
    a_ = takeApart(arena, layout, order, a);
    b_ = takeApart(arena, layout, order, b);
  }

  bool find(IntegerPolynomial& result);

 private:
  // The divisor of the leading coefficients in the main variable, which the images take for their own.
  bool findLeading();
  IntegerPolynomial leadingCoefficient(const IntegerPolynomial& p, const ModularPolynomial& parts) const;

  void usePrime(Residue prime);
  Residue random() {
    seed_ = seed_ * 6364136223846793005u + 1442695040888963407u;
    return (seed_ >> 2) % (m_.prime - 1) + 1;
  }
  void setPowers(int k, Residue value);
  Residue valueOf(const std::int32_t* row, int from) const;
  DensePolynomial substitute(const ModularPolynomial& p, Residue* space) const;
  // The image at the point of the power tables in `image_`; false when the point is of no use.
  bool takeImage();
  bool probeDegrees();

  bool firstSkeleton(Skeleton& skeleton);
  bool addVariable(int k, const Residue* point, Skeleton& skeleton);
  // Coefficients of all terms of the skeleton at values of the variables from position `k` on, in the power tables.
  bool solveImage(const Skeleton& skeleton, int k, Residue* coefficients);
  std::size_t endOfGroup(const Skeleton& skeleton, std::size_t first) const {
    std::size_t end = first;
    while (end < skeleton.count && row(skeleton, end)[0] == row(skeleton, first)[0]) ++end;
    return end;
  }
  const std::int32_t* row(const Skeleton& skeleton, std::size_t i) const {
    return skeleton.exponents + i * order_.count;
  }
  bool tryDivisor(const Skeleton& skeleton, const DAG* coefficients, IntegerPolynomial& result);

  Arena& arena_;
  const Layout& layout_;
  Order order_;
  const IntegerPolynomial &integersA_, &integersB_;
  ModularPolynomial a_, b_, leading_{};
  IntegerPolynomial integersLeading_;
  Modulus m_{0};
  std::uint64_t seed_;
  Residue* powers_[mostVariables] = {};  // powers of the value that stands for each variable
  Residue *spaceA_ = nullptr, *spaceB_ = nullptr;
  DensePolynomial image_;
  std::int64_t degree_ = 0;                   // of the divisor in the main variable, as far as known
  std::int64_t degrees_[mostVariables] = {};  // and at most in the others, with the leading coefficient's
};

void SparseGcd::usePrime(Residue prime) {
  m_.prime = prime;
  reduceCoefficients(m_, integersA_, a_);
  reduceCoefficients(m_, integersB_, b_);
  reduceCoefficients(m_, integersLeading_, leading_);
}

// ---- images

void SparseGcd::setPowers(int k, Residue value) {
  const std::int64_t highest = std::max({a_.highest[k], b_.highest[k], degrees_[k]});
  if (powers_[k] == nullptr) powers_[k] = arena_.make<Residue>(2 * highest + 2);
  powers_[k][0] = 1;
  for (std::int64_t e = 1; e <= highest; ++e) powers_[k][e] = m_.multiply(powers_[k][e - 1], value);
}

Residue SparseGcd::valueOf(const std::int32_t* row, int from) const {
  Residue value = 1;
  for (int k = from; k < order_.count; ++k)
    if (row[k] != 0) value = m_.multiply(value, powers_[k][row[k]]);
  return value;
}

DensePolynomial SparseGcd::substitute(const ModularPolynomial& p, Residue* space) const {
  std::fill_n(space, p.highest[0] + 1, Residue{0});
  for (std::size_t i = 0; i < p.count; ++i) {
    const std::int32_t* exponents = order_.row(p, i);
    space[exponents[0]] = m_.add(space[exponents[0]], m_.multiply(p.coefficients[i], valueOf(exponents, 1)));
  }
  std::int64_t degree = p.highest[0];
  while (degree >= 0 && space[degree] == 0) --degree;
  return {degree, space};
}

bool SparseGcd::takeImage() {
  passWork(static_cast<std::int64_t>(a_.count + b_.count) * 2 * order_.count + a_.highest[0] * b_.highest[0]);
  DensePolynomial x = substitute(a_, spaceA_), y = substitute(b_, spaceB_);
  // Where a leading coefficient vanishes the divisor may be of too high a degree.
  if (x.degree != a_.highest[0] || y.degree != b_.highest[0]) return false;
  Residue leading = 0;
  for (std::size_t i = 0; i < leading_.count; ++i)
    leading = m_.add(leading, m_.multiply(leading_.coefficients[i], valueOf(order_.row(leading_, i), 1)));
  if (leading == 0) return false;
  image_ = gcdInPlace(m_, x, y);
  for (std::int64_t j = 0; j <= image_.degree; ++j)
    image_.coefficients[j] = m_.multiply(image_.coefficients[j], leading);
  return true;
}

// ---- the leading coefficient

IntegerPolynomial SparseGcd::leadingCoefficient(const IntegerPolynomial& p, const ModularPolynomial& parts) const {
  IntegerPolynomial result;
  result.monomials = arena_.make<Monomial>(p.count);
  result.coefficients = arena_.make<DAG>(p.count);
  const Variable& main = layout_.variables[order_.variables[0]];
  for (std::size_t i = 0; i < p.count; ++i) {
    if (order_.row(parts, i)[0] != parts.highest[0]) continue;
    result.monomials[result.count] = p.monomials[i] - (static_cast<Monomial>(parts.highest[0]) << main.shift);
    result.coefficients[result.count++] = p.coefficients[i];
  }
  return result;
}

bool SparseGcd::findLeading() {
  IntegerPolynomial x = leadingCoefficient(integersA_, a_), y = leadingCoefficient(integersB_, b_);
  DAG content = simpl(igcd(contentOf(x), contentOf(y)));
  makePrimitive(x);
  makePrimitive(y);
  if (!primitiveGcd(arena_, layout_, x, y, integersLeading_)) return false;
  auto* scaled = arena_.make<DAG>(integersLeading_.count);
  for (std::size_t i = 0; i < integersLeading_.count; ++i)
    scaled[i] = simpl(mul(content, integersLeading_.coefficients[i]));
  integersLeading_.coefficients = scaled;
  leading_ = takeApart(arena_, layout_, order_, integersLeading_);
  return true;
}

// ---- terms, one variable after the other

bool SparseGcd::firstSkeleton(Skeleton& skeleton) {
  skeleton.count = 0;
  skeleton.exponents = arena_.makeZero<std::int32_t>((degree_ + 1) * order_.count);
  skeleton.coefficients = arena_.make<Residue>(degree_ + 1);
  for (std::int64_t j = 0; j <= degree_; ++j) {
    if (image_.coefficients[j] == 0) continue;
    skeleton.exponents[skeleton.count * order_.count] = static_cast<std::int32_t>(j);
    skeleton.coefficients[skeleton.count++] = image_.coefficients[j];
  }
  return skeleton.count > 0;
}

bool SparseGcd::solveImage(const Skeleton& skeleton, int k, Residue* coefficients) {
  std::size_t longest = 0;
  for (std::size_t first = 0; first < skeleton.count;) {
    const std::size_t end = endOfGroup(skeleton, first);
    longest = std::max(longest, end - first);
    first = end;
  }
  // The values of the terms at the point r; at r^s they are the s-th powers.
  auto* base = arena_.make<Residue>(order_.count + 1);
  auto* nodes = arena_.make<Residue>(skeleton.count);
  auto* values = arena_.make<Residue>(longest * (degree_ + 1));
  auto* scratch = arena_.make<Residue>(longest + 1);
  auto* ofGroup = arena_.make<Residue>(longest);
  bool usable = true;
  for (int v = 1; v < k; ++v) setPowers(v, base[v] = random());
  for (std::size_t i = 0; i < skeleton.count; ++i) {
    nodes[i] = 1;
    for (int v = 1; v < k; ++v)
      if (row(skeleton, i)[v] != 0) nodes[i] = m_.multiply(nodes[i], powers_[v][row(skeleton, i)[v]]);
  }
  for (std::size_t s = 0; s < longest && usable; ++s) {
    if (s > 0)
      for (int v = 1; v < k; ++v) setPowers(v, m_.power(base[v], s + 1));
    usable = takeImage() && image_.degree == degree_;
    for (std::int64_t j = 0; j <= degree_ && usable; ++j) values[j * longest + s] = image_.coefficients[j];
  }
  for (std::size_t first = 0; first < skeleton.count && usable;) {
    const std::size_t end = endOfGroup(skeleton, first), n = end - first;
    passWork(static_cast<std::int64_t>(n * n) * 4);
    std::copy_n(nodes + first, n, ofGroup);
    std::sort(ofGroup, ofGroup + n);
    usable = std::adjacent_find(ofGroup, ofGroup + n) == ofGroup + n;
    if (usable)
      solveVandermonde(m_, nodes + first, values + row(skeleton, first)[0] * longest, n, coefficients + first, scratch);
    first = end;
  }
  for (void* array : {static_cast<void*>(base), static_cast<void*>(nodes), static_cast<void*>(values),
                      static_cast<void*>(scratch), static_cast<void*>(ofGroup)})
    arena_.free(array);
  return usable;
}

// Brings variable k back: each coefficient is a polynomial in it, known at degrees_[k] + 1 values (Newton's
// interpolation).
bool SparseGcd::addVariable(int k, const Residue* point, Skeleton& skeleton) {
  const std::size_t n = degrees_[k] + 1;
  auto* places = arena_.make<Residue>(n);
  auto* values = arena_.make<Residue>(n * skeleton.count);
  places[0] = point[k];
  std::copy_n(skeleton.coefficients, skeleton.count, values);
  for (int v = k + 1; v < order_.count; ++v) setPowers(v, point[v]);
  for (std::size_t j = 1; j < n; ++j) {
    bool solved = false;
    for (int attempt = 0; attempt < 5 && !solved; ++attempt) {
      do places[j] = random();
      while (std::find(places, places + j, places[j]) != places + j);
      setPowers(k, places[j]);
      solved = solveImage(skeleton, k, values + j * skeleton.count);
    }
    if (!solved) return false;
  }
  Skeleton next;
  std::size_t room = 4 * skeleton.count + 16;
  next.exponents = arena_.make<std::int32_t>(room * order_.count);
  next.coefficients = arena_.make<Residue>(room);
  auto* differences = arena_.make<Residue>(n);
  auto* expanded = arena_.make<Residue>(n + 1);
  for (std::size_t i = 0; i < skeleton.count; ++i) {
    for (std::size_t j = 0; j < n; ++j) differences[j] = values[j * skeleton.count + i];
    for (std::size_t level = 1; level < n; ++level)
      for (std::size_t j = n - 1; j >= level; --j)
        differences[j] = m_.multiply(m_.subtract(differences[j], differences[j - 1]),
                                     m_.inverse(m_.subtract(places[j], places[j - level])));
    std::fill_n(expanded, n + 1, Residue{0});
    for (std::size_t j = n; j-- > 0;) {
      // expanded = expanded * (y - places[j]) + differences[j]
      for (std::size_t e = n; e > 0; --e)
        expanded[e] = m_.subtract(expanded[e - 1], m_.multiply(places[j], expanded[e]));
      expanded[0] = m_.subtract(differences[j], m_.multiply(places[j], expanded[0]));
    }
    for (std::size_t e = 0; e < n; ++e) {
      if (expanded[e] == 0) continue;
      if (next.count == room) {
        room *= 2;
        next.exponents = arena_.grow(next.exponents, room * order_.count);
        next.coefficients = arena_.grow(next.coefficients, room);
      }
      std::copy_n(row(skeleton, i), order_.count, next.exponents + next.count * order_.count);
      next.exponents[next.count * order_.count + k] = static_cast<std::int32_t>(e);
      next.coefficients[next.count++] = expanded[e];
    }
  }
  skeleton = next;
  return skeleton.count > 0;
}

// Degrees of the divisor in each variable, by images in that variable alone.
bool SparseGcd::probeDegrees() {
  for (int k = 1; k < order_.count; ++k) {
    Order other = order_;
    std::swap(other.variables[0], other.variables[k]);
    SparseGcd probe(arena_, layout_, integersA_, integersB_, other, random());
    probe.m_ = m_;
    reduceCoefficients(m_, integersA_, probe.a_);
    reduceCoefficients(m_, integersB_, probe.b_);
    probe.spaceA_ = arena_.make<Residue>(probe.a_.highest[0] + 1);
    probe.spaceB_ = arena_.make<Residue>(probe.b_.highest[0] + 1);
    for (int v = 1; v < order_.count; ++v) probe.setPowers(v, probe.random());
    DensePolynomial x = probe.substitute(probe.a_, probe.spaceA_), y = probe.substitute(probe.b_, probe.spaceB_);
    if (x.degree != probe.a_.highest[0] || y.degree != probe.b_.highest[0]) return false;
    degrees_[k] = gcdInPlace(m_, x, y).degree + leading_.highest[k];
  }
  return true;
}

// ---- the whole

bool SparseGcd::tryDivisor(const Skeleton& skeleton, const DAG* coefficients, IntegerPolynomial& result) {
  IntegerPolynomial candidate;
  candidate.monomials = arena_.make<Monomial>(skeleton.count);
  candidate.coefficients = arena_.make<DAG>(skeleton.count);
  struct Term {
    Monomial monomial;
    DAG coefficient;
  };
  auto* terms = arena_.make<Term>(skeleton.count);
  for (std::size_t i = 0; i < skeleton.count; ++i) {
    Monomial monomial = 0;
    for (int k = 0; k < order_.count; ++k)
      monomial |= static_cast<Monomial>(row(skeleton, i)[k]) << layout_.variables[order_.variables[k]].shift;
    terms[i] = {monomial, coefficients[i]};
  }
  std::sort(terms, terms + skeleton.count, [](const Term& x, const Term& y) { return x.monomial > y.monomial; });
  for (std::size_t i = 0; i < skeleton.count; ++i) {
    if (terms[i].coefficient == cons0) continue;
    candidate.monomials[candidate.count] = terms[i].monomial;
    candidate.coefficients[candidate.count++] = terms[i].coefficient;
  }
  if (candidate.count == 0) return false;
  const Variable& main = layout_.variables[order_.variables[0]];
  const Monomial field = ((Monomial{1} << main.bits) - 1) << main.shift;
  makePrimitive(candidate);
  IntegerPolynomial content;
  if (!takeContent(arena_, layout_, candidate, field, content)) return false;
  if (!isDivisor(arena_, layout_, candidate, integersA_) || !isDivisor(arena_, layout_, candidate, integersB_))
    return false;
  result = candidate;
  return true;
}

bool SparseGcd::find(IntegerPolynomial& result) {
  constexpr int mostPrimes = 60;
  if (!findLeading()) return false;
  spaceA_ = arena_.make<Residue>(a_.highest[0] + 1);
  spaceB_ = arena_.make<Residue>(b_.highest[0] + 1);
  Residue prime = primeBelow(Residue{1} << 61);
  usePrime(prime);
  if (!probeDegrees()) return false;
  Residue point[mostVariables];
  for (int v = 1; v < order_.count; ++v) setPowers(v, point[v] = random());
  if (!takeImage()) return false;
  degree_ = image_.degree;
  if (degree_ == 0) {
    result = constantOne(arena_);
    return true;
  }
  Skeleton skeleton;
  if (!firstSkeleton(skeleton)) return false;
  for (int k = 1; k < order_.count; ++k)
    if (!addVariable(k, point, skeleton)) return false;
  // Coefficients by the Chinese remainder theorem, one prime after the other, until a candidate divides.
  auto* integers = arena_.make<DAG>(skeleton.count);
  auto* residues = arena_.make<Residue>(skeleton.count);
  auto integerOf = [](Residue r) {
    const Limb limbs[2] = {r, 0};
    return makeInteger(limbs, 2);
  };
  DAG modulus = integerOf(prime);
  for (std::size_t i = 0; i < skeleton.count; ++i)
    integers[i] = simpl(imod(integerOf(skeleton.coefficients[i]), modulus, true));
  for (int k = 0; k < mostPrimes; ++k) {
    if (tryDivisor(skeleton, integers, result)) return true;
    prime = primeBelow(prime);
    usePrime(prime);
    if (!solveImage(skeleton, order_.count, residues)) return false;
    const Residue inverse = m_.inverse(m_.of(modulus));
    DAG next = simpl(mul(modulus, integerOf(prime)));
    bool changed = false;
    for (std::size_t i = 0; i < skeleton.count; ++i) {
      const Residue step = m_.multiply(m_.subtract(residues[i], m_.of(integers[i])), inverse);
      if (step == 0) continue;
      changed = true;
      integers[i] = simpl(imod(add(integers[i], mul(modulus, integerOf(step))), next, true));
    }
    modulus = next;
    if (!changed && k > 0) return false;  // the same candidate once more
  }
  return false;
}

}  // namespace

bool sparseGcd(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b,
               IntegerPolynomial& result) {
  // The main variable: that with the fewest terms in the shorter leading coefficient.
  std::int64_t highest[mostVariables], highestOfB[mostVariables];
  highestExponents(layout, {a.count, a.monomials, nullptr, 1}, highest);
  highestExponents(layout, {b.count, b.monomials, nullptr, 1}, highestOfB);
  auto leadingTerms = [&](const IntegerPolynomial& p, int v, std::int64_t top) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < p.count; ++i) n += exponentIn(layout.variables[v], p.monomials[i]) == top;
    return n;
  };
  Order order;
  std::size_t fewest = SIZE_MAX;
  for (int v = 0; v < layout.count; ++v) {
    if (highest[v] == 0 && highestOfB[v] == 0) continue;
    order.variables[order.count++] = v;
    const std::size_t n = std::min(leadingTerms(a, v, highest[v]), leadingTerms(b, v, highestOfB[v]));
    if (n >= fewest) continue;
    fewest = n;
    std::swap(order.variables[0], order.variables[order.count - 1]);
  }
  if (order.count == 0) return false;
  // Contents in the main variable apart: what is left has its leading coefficient's divisors in the images.
  const Variable& main = layout.variables[order.variables[0]];
  const Monomial field = ((Monomial{1} << main.bits) - 1) << main.shift;
  IntegerPolynomial contentA, contentB, content, p = a, q = b;
  if (!takeContent(arena, layout, p, field, contentA) || !takeContent(arena, layout, q, field, contentB)) return false;
  if (!primitiveGcd(arena, layout, contentA, contentB, content)) return false;
  IntegerPolynomial found;
  for (std::uint64_t attempt = 0; attempt < 3; ++attempt)
    if (SparseGcd(arena, layout, p, q, order, 88172645463325252u + attempt).find(found)) {
      result = productOf(arena, layout, content, found);
      return result.count != 0;
    }
  return false;
}

}  // namespace korel::engine
