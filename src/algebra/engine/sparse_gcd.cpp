#include "algebra/engine/sparse_gcd.h"

#include <algorithm>

#include "algebra/engine/modular_arithmetic.h"
#include "eval/simplify/simplify.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/vocabulary.h"

namespace korel::engine {

namespace {

// ---- operands modulo a prime

// Coefficients modulo the prime beside the exponents.
struct ModularPolynomial {
  std::size_t count;
  const ExponentRows* rows;
  Residue* coefficients;

  std::int64_t highest(int k) const { return rows->highest[k]; }
};
ModularPolynomial modularPolynomial(Arena& arena, const ExponentRows& rows) {
  return {rows.count, &rows, arena.make<Residue>(rows.count)};
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
  SparseGcd(const ImageProblem& problem, std::uint64_t seed)
      : arena_(problem.arena), problem_(problem), order_(problem.order), seed_(seed) {
    a_ = modularPolynomial(arena_, problem.rowsOfA);
    b_ = modularPolynomial(arena_, problem.rowsOfB);
    leading_ = modularPolynomial(arena_, problem.rowsOfLeading);
  }

  bool find(IntegerPolynomial& result);

 private:
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
  // p in variable k alone, at the values of the power tables.
  DensePolynomial imageIn(int k, const ModularPolynomial& p) const;

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

  Arena& arena_;
  const ImageProblem& problem_;
  const VariableOrder& order_;
  ModularPolynomial a_, b_, leading_;
  Modulus m_{3};  // until the first prime is chosen
  std::uint64_t seed_;
  Residue* powers_[mostVariables] = {};  // powers of the value that stands for each variable
  Residue *spaceA_ = nullptr, *spaceB_ = nullptr;
  DensePolynomial image_;
  std::int64_t degree_ = 0;                   // of the divisor in the main variable, as far as known
  std::int64_t degrees_[mostVariables] = {};  // and at most in the others, with the leading coefficient's
};

void SparseGcd::usePrime(Residue prime) {
  m_ = Modulus(prime);
  reduceCoefficients(m_, problem_.a, a_);
  reduceCoefficients(m_, problem_.b, b_);
  reduceCoefficients(m_, problem_.leading, leading_);
}

// ---- images

void SparseGcd::setPowers(int k, Residue value) {
  const std::int64_t highest = std::max({a_.highest(k), b_.highest(k), degrees_[k]});
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
  std::fill_n(space, p.highest(0) + 1, Residue{0});
  for (std::size_t i = 0; i < p.count; ++i) {
    const std::int32_t* exponents = p.rows->row(i);
    space[exponents[0]] = m_.add(space[exponents[0]], m_.multiply(p.coefficients[i], valueOf(exponents, 1)));
  }
  std::int64_t degree = p.highest(0);
  while (degree >= 0 && space[degree] == 0) --degree;
  return {degree, space};
}

bool SparseGcd::takeImage() {
  passWork(static_cast<std::int64_t>(a_.count + b_.count) * 2 * order_.count + a_.highest(0) * b_.highest(0));
  DensePolynomial x = substitute(a_, spaceA_), y = substitute(b_, spaceB_);
  // Where a leading coefficient vanishes the divisor may be of too high a degree.
  if (x.degree != a_.highest(0) || y.degree != b_.highest(0)) return false;
  Residue leading = 0;
  for (std::size_t i = 0; i < leading_.count; ++i)
    leading = m_.add(leading, m_.multiply(leading_.coefficients[i], valueOf(leading_.rows->row(i), 1)));
  if (leading == 0) return false;
  image_ = gcdInPlace(m_, x, y);
  for (std::int64_t j = 0; j <= image_.degree; ++j)
    image_.coefficients[j] = m_.multiply(image_.coefficients[j], leading);
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
  // 1/(places[j] - places[k]) for k < j.
  auto* inverses = arena_.make<Residue>(n * n);
  for (std::size_t j = 0; j < n; ++j)
    for (std::size_t i = 0; i < j; ++i) inverses[j * n + i] = m_.inverse(m_.subtract(places[j], places[i]));
  auto* differences = arena_.make<Residue>(n);
  auto* expanded = arena_.make<Residue>(n + 1);
  for (std::size_t i = 0; i < skeleton.count; ++i) {
    passWork(static_cast<std::int64_t>(2 * n * n));
    for (std::size_t j = 0; j < n; ++j) differences[j] = values[j * skeleton.count + i];
    for (std::size_t level = 1; level < n; ++level)
      for (std::size_t j = n - 1; j >= level; --j)
        differences[j] = m_.multiply(m_.subtract(differences[j], differences[j - 1]), inverses[j * n + j - level]);
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
  for (int v = 0; v < order_.count; ++v) setPowers(v, random());
  for (int k = 1; k < order_.count; ++k) {
    DensePolynomial x = imageIn(k, a_), y = imageIn(k, b_);
    if (x.degree != a_.highest(k) || y.degree != b_.highest(k)) return false;
    degrees_[k] = gcdInPlace(m_, x, y).degree + leading_.highest(k);
    arena_.free(x.coefficients);
    arena_.free(y.coefficients);
  }
  return true;
}
DensePolynomial SparseGcd::imageIn(int k, const ModularPolynomial& p) const {
  auto* image = arena_.makeZero<Residue>(p.highest(k) + 1);
  for (std::size_t i = 0; i < p.count; ++i) {
    const std::int32_t* row = p.rows->row(i);
    Residue value = p.coefficients[i];
    for (int v = 0; v < order_.count; ++v)
      if (v != k && row[v] != 0) value = m_.multiply(value, powers_[v][row[v]]);
    image[row[k]] = m_.add(image[row[k]], value);
  }
  std::int64_t degree = p.highest(k);
  while (degree >= 0 && image[degree] == 0) --degree;
  return {degree, image};
}

// ---- the whole

bool SparseGcd::find(IntegerPolynomial& result) {
  constexpr int mostPrimes = 60;
  spaceA_ = arena_.make<Residue>(a_.highest(0) + 1);
  spaceB_ = arena_.make<Residue>(b_.highest(0) + 1);
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
    if (takeCandidate(problem_, skeleton.exponents, integers, skeleton.count, result)) return true;
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

bool sparseGcd(const ImageProblem& problem, IntegerPolynomial& result) {
  for (std::uint64_t attempt = 0; attempt < 3; ++attempt)
    if (SparseGcd(problem, 88172645463325252u + attempt).find(result)) return true;
  return false;
}

}  // namespace korel::engine
