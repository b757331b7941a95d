#include "algebra/engine/dense_gcd.h"

#include <algorithm>
#include <numeric>

#include "algebra/engine/modular_arithmetic.h"
#include "algebra/engine/small_modulus.h"
#include "eval/simplify/simplify.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/vocabulary.h"

namespace korel::engine {

namespace {

using Word32 = SmallModulus::Word32;

// ---- one variable

// The degree of what a modulo b leaves in the place of a; b isn't 0.
std::int64_t remainderInPlace(const SmallModulus& m, Word32* a, std::int64_t da, const Word32* b, std::int64_t db) {
  const Word32 inverse = m.inverse(b[db]);
  for (std::int64_t k = da; k >= db; --k) {
    const Word32 q = m.negate(m.multiply(a[k], inverse));
    if (k == da && k == db + 1 && db > 0) {
      // The step that is the rule: both terms of the quotient in one pass.
      const Word32 next = m.multiply(m.add(a[k - 1], m.multiply(q, b[db - 1])), inverse);
      const Word32 last = m.negate(next);
      a[0] = m.add(a[0], m.multiply(last, b[0]));
      for (std::int64_t j = 1; j < db; ++j)
        a[j] = m.add(a[j], m.reduce(std::uint64_t{q} * b[j - 1] + std::uint64_t{last} * b[j]));
      break;
    }
    if (q == 0) continue;
    Word32* at = a + (k - db);
    for (std::int64_t j = 0; j < db; ++j) at[j] = m.add(at[j], m.multiply(q, b[j]));
  }
  std::int64_t degree = std::min(da, db - 1);
  while (degree >= 0 && a[degree] == 0) --degree;
  return degree;
}

// The monic divisor of two polynomials that are not 0, in the place of one of them.
struct Image {
  Word32* coefficients;
  std::int64_t degree;
};
Image gcdInPlace(const SmallModulus& m, Word32* a, std::int64_t da, Word32* b, std::int64_t db) {
  if (da < db) {
    std::swap(a, b);
    std::swap(da, db);
  }
  while (db > 0) {
    da = remainderInPlace(m, a, da, b, db);
    std::swap(a, b);
    std::swap(da, db);
  }
  if (db == 0) {
    b[0] = m.one();
    return {b, 0};
  }
  const Word32 inverse = m.inverse(a[da]);
  for (std::int64_t j = 0; j <= da; ++j) a[j] = m.multiply(a[j], inverse);
  return {a, da};
}

// ---- an operand, its variables replaced by values from the last one on

// Level l has an entry for each choice of exponents of the first l variables that occurs: their last exponent, and the
// sum of all terms beyond it at the values put in so far. The terms themselves are the topmost level.
struct Levels {
  std::size_t count[mostVariables + 1];
  std::int32_t* exponents[mostVariables + 1];
  std::size_t* ends[mostVariables + 1];  // for each entry of the level below: behind its last entry here
  Word32* values[mostVariables + 1];
  std::size_t* terms;  // of the operand, in the order of the topmost level
};

Levels levelsOf(Arena& arena, const ExponentRows& rows) {
  Levels levels{};
  const int top = rows.columns;
  levels.terms = arena.make<std::size_t>(rows.count);
  std::iota(levels.terms, levels.terms + rows.count, std::size_t{0});
  std::sort(levels.terms, levels.terms + rows.count, [&](std::size_t i, std::size_t j) {
    return std::lexicographical_compare(rows.row(i), rows.row(i) + top, rows.row(j), rows.row(j) + top);
  });
  auto* firsts = arena.make<std::size_t>(rows.count);  // of each entry, a term that belongs to it
  std::copy_n(levels.terms, rows.count, firsts);
  levels.count[top] = rows.count;
  for (int l = top; l >= 1; --l) {
    const std::size_t n = levels.count[l];
    levels.exponents[l] = arena.make<std::int32_t>(n);
    levels.values[l] = arena.make<Word32>(n);
    levels.ends[l] = arena.make<std::size_t>(n);
    std::size_t below = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const std::int32_t* row = rows.row(firsts[i]);
      levels.exponents[l][i] = row[l - 1];
      if (i == 0 || !std::equal(row, row + l - 1, rows.row(firsts[below - 1]))) firsts[below++] = firsts[i];
      levels.ends[l][below - 1] = i + 1;
    }
    levels.count[l - 1] = below;
  }
  return levels;
}

// Puts a value, by its powers, in for variable l of what is left.
void putIn(const SmallModulus& m, Levels& levels, int l, const Word32* powers) {
  std::size_t i = 0;
  for (std::size_t g = 0; g < levels.count[l - 1]; ++g) {
    std::uint64_t sum = 0;
    for (const std::size_t end = levels.ends[l][g]; i < end; ++i)
      sum = m.accumulate(sum, levels.values[l][i], powers[levels.exponents[l][i]]);
    levels.values[l - 1][g] = m.reduce(sum);
  }
}

// The first level as a dense polynomial; its degree.
std::int64_t spread(const Levels& levels, Word32* to, std::int64_t highest) {
  std::fill_n(to, highest + 1, Word32{0});
  for (std::size_t i = 0; i < levels.count[1]; ++i) to[levels.exponents[1][i]] = levels.values[1][i];
  while (highest >= 0 && to[highest] == 0) --highest;
  return highest;
}

// ---- the method

class DenseGcd {
 public:
  explicit DenseGcd(const ImageProblem& problem)
      : problem_(problem), arena_(problem.arena), variables_(problem.order.count) {
    a_ = levelsOf(arena_, problem.rowsOfA);
    b_ = levelsOf(arena_, problem.rowsOfB);
    leading_ = levelsOf(arena_, problem.rowsOfLeading);
    spaceA_ = arena_.make<Word32>(highest(0) + 1);
    spaceB_ = arena_.make<Word32>(highest(0) + 1);
  }
  bool find(IntegerPolynomial& result);

 private:
  std::int64_t highest(int k) const {
    return std::max({problem_.rowsOfA.highest[k], problem_.rowsOfB.highest[k], problem_.rowsOfLeading.highest[k]});
  }
  Word32 random() {
    seed_ = seed_ * 6364136223846793005u + 1442695040888963407u;
    return m_.in(static_cast<Word32>((seed_ >> 33) % (m_.prime() - 1)) + 1);
  }
  void usePrime(Residue prime);
  void reduce(Levels& levels, const IntegerPolynomial& p) const;
  std::int64_t probe(int k);
  bool probeDegrees();
  void makeGrid();
  void choosePoints();
  void setInterpolation(int k);
  bool image(int l);
  bool imageInMainVariable();
  bool join();
  bool tryCandidate(IntegerPolynomial& result) const;

  const ImageProblem& problem_;
  Arena& arena_;
  const int variables_;
  SmallModulus m_;
  Residue prime_ = 0;
  std::uint64_t seed_ = 88172645463325252u;
  Levels a_, b_, leading_;
  Word32 *spaceA_, *spaceB_;
  // Of the divisor: its degree in the main variable, and at most in the others, with the leading coefficients' divisor.
  std::int64_t degrees_[mostVariables] = {};
  bool isTooHigh_ = false;  // an image had a lower degree
  // For each variable but the main one: its points, their powers, and the coefficients of Lagrange's polynomials.
  Word32* points_[mostVariables] = {};
  Word32* powers_[mostVariables] = {};
  Word32* interpolation_[mostVariables] = {};
  // Grids: coefficients in the first l variables, the last one's exponent outermost; and values at the points.
  std::size_t size_[mostVariables + 1] = {};
  Word32* grid_[mostVariables + 1] = {};
  Word32* values_[mostVariables + 1] = {};
  // The divisor as far as known: integers modulo the product of the primes.
  DAG* integers_ = nullptr;
  DAG modulus_{};
};

void DenseGcd::reduce(Levels& levels, const IntegerPolynomial& p) const {
  const Modulus modulus{prime_};
  for (std::size_t i = 0; i < p.count; ++i)
    levels.values[variables_][i] = m_.in(static_cast<Word32>(modulus.of(p.coefficients[levels.terms[i]])));
}

void DenseGcd::usePrime(Residue prime) {
  prime_ = prime;
  m_ = SmallModulus(static_cast<Word32>(prime));
  reduce(a_, problem_.a);
  reduce(b_, problem_.b);
  reduce(leading_, problem_.leading);
}

// The degree in variable k of an image in that variable alone, at values taken by chance; -1 at a bad place.
std::int64_t DenseGcd::probe(int k) {
  Word32* powers[mostVariables];
  for (int v = 0; v < variables_; ++v) {
    powers[v] = arena_.make<Word32>(highest(v) + 1);
    powers[v][0] = m_.one();
    const Word32 value = random();
    for (std::int64_t e = 1; e <= highest(v); ++e) powers[v][e] = m_.multiply(powers[v][e - 1], value);
  }
  auto substitute = [&](const Levels& levels, const ExponentRows& rows) {
    auto* image = arena_.makeZero<Word32>(rows.highest[k] + 1);
    for (std::size_t i = 0; i < rows.count; ++i) {
      const std::int32_t* row = rows.row(levels.terms[i]);
      Word32 value = levels.values[variables_][i];
      for (int v = 0; v < variables_; ++v)
        if (v != k && row[v] != 0) value = m_.multiply(value, powers[v][row[v]]);
      image[row[k]] = m_.add(image[row[k]], value);
    }
    return image;
  };
  passWork(static_cast<std::int64_t>(problem_.a.count + problem_.b.count) * variables_);
  const std::int64_t da = problem_.rowsOfA.highest[k], db = problem_.rowsOfB.highest[k];
  Word32 *x = substitute(a_, problem_.rowsOfA), *y = substitute(b_, problem_.rowsOfB);
  const std::int64_t degree = x[da] == 0 || y[db] == 0 ? -1 : gcdInPlace(m_, x, da, y, db).degree;
  for (int v = 0; v < variables_; ++v) arena_.free(powers[v]);
  arena_.free(x);
  arena_.free(y);
  return degree;
}

bool DenseGcd::probeDegrees() {
  for (int k = 0; k < variables_; ++k) {
    degrees_[k] = probe(k);
    if (degrees_[k] < 0) return false;
    if (k > 0) degrees_[k] += problem_.rowsOfLeading.highest[k];
  }
  return true;
}

// ---- points and interpolation

void DenseGcd::makeGrid() {
  size_[0] = 1;
  for (int l = 1; l <= variables_; ++l) {
    const std::size_t n = degrees_[l - 1] + 1;
    size_[l] = size_[l - 1] * n;
    grid_[l] = arena_.make<Word32>(size_[l]);
    if (l == 1) continue;
    values_[l] = arena_.make<Word32>(size_[l]);
    points_[l - 1] = arena_.make<Word32>(n);
    powers_[l - 1] = arena_.make<Word32>(n * (highest(l - 1) + 1));
    interpolation_[l - 1] = arena_.make<Word32>(n * n);
  }
  integers_ = arena_.make<DAG>(size_[variables_]);
}

void DenseGcd::choosePoints() {
  for (int k = 1; k < variables_; ++k) {
    const std::int64_t n = degrees_[k] + 1, most = highest(k);
    for (std::int64_t j = 0; j < n; ++j) {
      Word32* points = points_[k];
      do points[j] = random();
      while (std::find(points, points + j, points[j]) != points + j);
      Word32* powers = powers_[k] + j * (most + 1);
      powers[0] = m_.one();
      for (std::int64_t e = 1; e <= most; ++e) powers[e] = m_.multiply(powers[e - 1], points[j]);
    }
    setInterpolation(k);
  }
}

// Row e, column j: the coefficient of x^e in the polynomial that is 1 at point j and 0 at the others.
void DenseGcd::setInterpolation(int k) {
  const std::int64_t n = degrees_[k] + 1;
  auto* master = arena_.makeZero<Word32>(n + 1);  // the product of x - point
  auto* quotient = arena_.make<Word32>(n);
  master[0] = m_.one();
  for (std::int64_t j = 0; j < n; ++j)
    for (std::int64_t e = j + 1; e >= 0; --e)
      master[e] = m_.subtract(e > 0 ? master[e - 1] : 0, m_.multiply(master[e], points_[k][j]));
  for (std::int64_t j = 0; j < n; ++j) {
    Word32 carry = 0, atPoint = 0;
    for (std::int64_t e = n; e-- > 0;) {
      carry = m_.add(master[e + 1], m_.multiply(carry, points_[k][j]));
      quotient[e] = carry;
      atPoint = m_.add(m_.multiply(atPoint, points_[k][j]), carry);
    }
    const Word32 scale = m_.inverse(atPoint);
    for (std::int64_t e = 0; e < n; ++e) interpolation_[k][e * n + j] = m_.multiply(quotient[e], scale);
  }
  arena_.free(master);
  arena_.free(quotient);
}

// ---- images

bool DenseGcd::imageInMainVariable() {
  const std::int64_t da = problem_.rowsOfA.highest[0], db = problem_.rowsOfB.highest[0];
  passWork(4 * (da * db + da + db) + 100);
  const Word32 leading = leading_.values[1][0];
  // Where a leading coefficient vanishes the divisor may be of too high a degree.
  if (spread(a_, spaceA_, da) != da || spread(b_, spaceB_, db) != db || leading == 0) return false;
  const Image image = gcdInPlace(m_, spaceA_, da, spaceB_, db);
  if (image.degree != degrees_[0]) {
    isTooHigh_ = image.degree < degrees_[0];
    if (isTooHigh_) degrees_[0] = image.degree;
    return false;
  }
  for (std::int64_t j = 0; j <= image.degree; ++j) grid_[1][j] = m_.multiply(image.coefficients[j], leading);
  return true;
}

// The divisor in the first l variables at the values of the others: images at all points of variable l, then its
// coefficients. False when one of the images is of no use.
bool DenseGcd::image(int l) {
  if (l == 1) return imageInMainVariable();
  const int k = l - 1;
  const std::size_t n = degrees_[k] + 1, inner = size_[l - 1];
  for (std::size_t j = 0; j < n; ++j) {
    const Word32* powers = powers_[k] + j * (highest(k) + 1);
    passWork(static_cast<std::int64_t>(a_.count[l] + b_.count[l] + leading_.count[l]));
    putIn(m_, a_, l, powers);
    putIn(m_, b_, l, powers);
    putIn(m_, leading_, l, powers);
    if (!image(l - 1)) return false;
    std::copy_n(grid_[l - 1], inner, values_[l] + j * inner);
  }
  passWork(static_cast<std::int64_t>(n * n * inner));
  for (std::size_t e = 0; e < n; ++e)
    for (std::size_t i = 0; i < inner; ++i) {
      std::uint64_t sum = 0;
      for (std::size_t j = 0; j < n; ++j)
        sum = m_.accumulate(sum, interpolation_[k][e * n + j], values_[l][j * inner + i]);
      grid_[l][e * inner + i] = m_.reduce(sum);
    }
  return true;
}

// ---- the whole

// Takes the image of all variables into the integers; true when one of them is another now.
bool DenseGcd::join() {
  const Word32* image = grid_[variables_];
  const std::size_t size = size_[variables_];
  passWork(static_cast<std::int64_t>(size) * 4);
  const bool isFirst = !modulus_;
  if (isFirst) {
    for (std::size_t i = 0; i < size; ++i) {
      const std::int64_t residue = m_.out(image[i]);
      integers_[i] = NewInteger(2 * residue > static_cast<std::int64_t>(prime_) ? residue - m_.prime() : residue);
    }
    modulus_ = NewInteger(static_cast<std::int64_t>(prime_));
    return true;
  }
  const Modulus modulus{prime_};
  DAG next = simpl(mul(modulus_, NewInteger(static_cast<std::int64_t>(prime_))));
  const Residue inverse = modulus.inverse(modulus.of(modulus_));
  bool changed = false;
  for (std::size_t i = 0; i < size; ++i) {
    if (image[i] == 0 && integers_[i] == cons0) continue;
    const Residue step = modulus.multiply(modulus.subtract(m_.out(image[i]), modulus.of(integers_[i])), inverse);
    if (step == 0) continue;
    changed = true;
    DAG sum = add(integers_[i], mul(modulus_, NewInteger(static_cast<std::int64_t>(step))));
    integers_[i] = simpl(imod(sum, next, true));
  }
  modulus_ = next;
  return changed;
}

bool DenseGcd::tryCandidate(IntegerPolynomial& result) const {
  const std::size_t size = size_[variables_];
  auto* exponents = arena_.make<std::int32_t>(size * variables_);
  auto* coefficients = arena_.make<DAG>(size);
  std::size_t count = 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (integers_[i] == cons0) continue;
    std::size_t place = i;
    for (int k = 0; k < variables_; ++k) {
      exponents[count * variables_ + k] = static_cast<std::int32_t>(place % (degrees_[k] + 1));
      place /= degrees_[k] + 1;
    }
    coefficients[count++] = integers_[i];
  }
  const bool divides = takeCandidate(problem_, exponents, coefficients, count, result);
  arena_.free(exponents);
  arena_.free(coefficients);
  return divides;
}

bool DenseGcd::find(IntegerPolynomial& result) {
  constexpr int mostPrimes = 1000, mostFailures = 10;
  Residue prime = Residue{1} << 31;
  int failures = 0, known = 0;
  bool hasDegrees = false;
  while (known < mostPrimes && failures < mostFailures) {
    prime = primeBelow(prime);
    usePrime(prime);
    if (!hasDegrees || isTooHigh_) {
      if (!hasDegrees && !(hasDegrees = probeDegrees())) {
        ++failures;
        continue;
      }
      isTooHigh_ = false;
      if (degrees_[0] == 0) {
        result = constantOne(arena_);
        return true;
      }
      makeGrid();
      modulus_ = DAG();
      known = 0;
    }
    choosePoints();
    if (!image(variables_)) {
      ++failures;
      continue;
    }
    const bool changed = join();
    ++known;
    // A candidate is worth its divisions when it stands, and now and then before.
    const bool isPower = (known & (known - 1)) == 0;
    if ((!changed || isPower) && tryCandidate(result)) return true;
    if (!changed) return false;
  }
  return false;
}

}  // namespace

bool denseGcd(const ImageProblem& problem, IntegerPolynomial& result) { return DenseGcd(problem).find(result); }

}  // namespace korel::engine
