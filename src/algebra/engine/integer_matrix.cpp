#include "algebra/engine/integer_matrix.h"

#include <algorithm>
#include <cmath>

#include "algebra/engine/modular_arithmetic.h"
#include "algebra/engine/polynomial.h"
#include "eval/simplify/simplify.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_groups.h"
#include "store/constants.h"

namespace korel::engine {

namespace {

// ---- residues times 2^64, whose products need no division

class Field {
 public:
  explicit Field(Residue prime) : modulus_{prime} {
    Residue inverse = prime;  // modulo 2^3; each step doubles the bits
    for (int k = 0; k < 5; ++k) inverse *= 2 - prime * inverse;
    inverse_ = inverse;
    const auto radix = static_cast<Residue>((Wide{1} << 64) % prime);
    square_ = modulus_.multiply(radix, radix);
  }
  Residue prime() const { return modulus_.prime; }
  Residue multiply(Residue a, Residue b) const { return reduce(Wide{a} * b); }
  Residue add(Residue a, Residue b) const { return modulus_.add(a, b); }
  Residue subtract(Residue a, Residue b) const { return modulus_.subtract(a, b); }
  /// The form that products take, and back.
  Residue enter(Residue a) const { return multiply(a, square_); }
  Residue leave(Residue a) const { return reduce(a); }
  Residue inverse(Residue a) const { return enter(modulus_.inverse(leave(a))); }
  Residue of(DAG integer) const { return enter(modulus_.of(integer)); }

 private:
  Residue reduce(Wide x) const {
    const Residue q = static_cast<Residue>(x) * inverse_;
    const auto subtracted = static_cast<Residue>(Wide{q} * modulus_.prime >> 64), high = static_cast<Residue>(x >> 64);
    return modulus_.subtract(high, subtracted);
  }
  Modulus modulus_;
  Residue inverse_, square_;
};

// The primes below 2^62, from the top. Those met once are kept.
class Primes {
 public:
  Residue next() {
    if (at_ == known && known < kept) primes[known++] = primeBelow(at_ == 0 ? Residue{1} << 62 : last_);
    last_ = at_ < kept ? primes[at_] : primeBelow(last_);
    ++at_;
    return last_;
  }

 private:
  static constexpr std::size_t kept = 128;
  static inline Residue primes[kept];
  static inline std::size_t known = 0;
  std::size_t at_ = 0;
  Residue last_ = 0;
};

// ---- elimination modulo a prime

struct Image {
  std::size_t rows, columns;
  Residue** row;        // exchanged as wholes
  std::size_t* number;  // of the row in the matrix
  std::size_t* pivots;
  std::size_t rank;
  Residue minor;  // of the rows and columns of the pivots, with the sign of the exchanges
};

Image imageOf(Arena& arena, const IntegerMatrix& a) {
  Image image{a.rows,
              a.columns,
              arena.make<Residue*>(a.rows),
              arena.make<std::size_t>(a.rows),
              arena.make<std::size_t>(a.columns),
              0,
              0};
  auto* residues = arena.make<Residue>(a.rows * a.columns);
  for (std::size_t i = 0; i < a.rows; ++i) image.row[i] = residues + i * a.columns;
  return image;
}

void load(const Field& f, const IntegerMatrix& a, Image& image) {
  for (std::size_t i = 0; i < a.rows; ++i) {
    image.number[i] = i;
    for (std::size_t j = 0; j < a.columns; ++j) image.row[i][j] = f.of(a.at(i, j));
  }
}

void subtractMultiple(const Field& f, Residue* row, const Residue* pivotRow, std::size_t from, std::size_t columns) {
  const Residue factor = row[from];
  if (factor == 0) return;
  for (std::size_t j = from; j < columns; ++j) row[j] = f.subtract(row[j], f.multiply(factor, pivotRow[j]));
}

// Rows of the pivots first, with pivots 1; above them as well when `above`.
void eliminate(const Field& f, Image& image, std::size_t pivotColumns, bool above) {
  image.rank = 0;
  image.minor = f.enter(1);
  for (std::size_t column = 0; column < pivotColumns && image.rank < image.rows; ++column) {
    std::size_t found = image.rank;
    while (found < image.rows && image.row[found][column] == 0) ++found;
    if (found == image.rows) continue;
    if (found != image.rank) {
      std::swap(image.row[found], image.row[image.rank]);
      std::swap(image.number[found], image.number[image.rank]);
      image.minor = f.subtract(0, image.minor);
    }
    Residue* pivotRow = image.row[image.rank];
    image.minor = f.multiply(image.minor, pivotRow[column]);
    const Residue scale = f.inverse(pivotRow[column]);
    for (std::size_t j = column; j < image.columns; ++j) pivotRow[j] = f.multiply(pivotRow[j], scale);
    for (std::size_t i = above ? 0 : image.rank + 1; i < image.rows; ++i)
      if (i != image.rank) subtractMultiple(f, image.row[i], pivotRow, column, image.columns);
    passWork(static_cast<std::int64_t>(image.rows * (image.columns - column)));
    image.pivots[image.rank++] = column;
  }
}

// ---- from images to integers

// Bits of the largest minor, by the lengths of the rows.
double bitsOfMinors(const IntegerMatrix& a) {
  double bits = 1;
  for (std::size_t i = 0; i < a.rows; ++i) {
    double largest = 0, squares = 0;
    for (std::size_t j = 0; j < a.columns; ++j) largest = std::max(largest, bitsOf(a.at(i, j)));
    for (std::size_t j = 0; j < a.columns; ++j)
      if (a.at(i, j) != cons0) squares += std::exp2(2 * (bitsOf(a.at(i, j)) - largest));
    bits += std::max(0.0, largest + std::log2(std::max(squares, 1.0)) / 2);
  }
  return bits * (1 + 1e-9);
}
// Enough for numbers of that size and their sign.
std::size_t primesFor(double bits) { return static_cast<std::size_t>((bits + 2) / 61.999) + 1; }

// Images of `count` integers modulo several primes, those of one integer side by side.
class Remainders {
 public:
  Remainders(Arena& arena, std::size_t count, std::size_t primes)
      : primes_(primes),
        images_(arena.make<Residue>(count * primes)),
        fields_(arena.make<Field>(primes)),
        products_(arena.make<Residue>(primes * primes)),
        inverses_(arena.make<Residue>(primes)),
        digits_(arena.make<std::int64_t>(primes)),
        groups_(arena.make<Group>(2 * primes + 2)) {}

  bool isComplete() const { return taken_ == primes_; }
  /// The next prime, under which the images are put down.
  void take(const Field& f) {
    // Products of the primes before, for mixed radices.
    Residue* products = products_ + taken_ * primes_;
    Residue product = f.enter(1);
    for (std::size_t k = 0; k < taken_; ++k) {
      products[k] = product;
      product = f.multiply(product, f.enter(fields_[k].prime() % f.prime()));
    }
    inverses_[taken_] = f.inverse(product);
    fields_[taken_++] = f;
  }
  void put(std::size_t i, Residue image) { images_[i * primes_ + taken_ - 1] = fields_[taken_ - 1].leave(image); }

  /// Integer i, of either sign: digits of mixed radix between -p/2 and p/2.
  DAG integer(std::size_t i) {
    const Residue* images = images_ + i * primes_;
    std::size_t length = 0;
    for (std::size_t k = 0; k < primes_; ++k) {
      const Field& f = fields_[k];
      const auto prime = static_cast<std::int64_t>(f.prime());
      const Residue* products = products_ + k * primes_;
      // A product with one factor that has been entered is a plain residue.
      Residue known = 0;
      for (std::size_t m = 0; m < length; ++m) {
        const auto digit = static_cast<Residue>(digits_[m] < 0 ? digits_[m] + prime : digits_[m]);
        known = f.add(known, f.multiply(digit, products[m]));
      }
      const auto digit = static_cast<std::int64_t>(f.multiply(f.subtract(images[k], known), inverses_[k]));
      digits_[k] = digit > prime / 2 ? digit - prime : digit;
      if (digits_[k] != 0) length = k + 1;
    }
    return fromMixedRadix(length);
  }

 private:
  DAG fromMixedRadix(std::size_t length) {
    if (length == 0) return cons0;
    const bool negative = digits_[length - 1] < 0;
    std::int64_t borrow = 0;
    for (std::size_t k = 0; k < length; ++k) {
      std::int64_t digit = (negative ? -digits_[k] : digits_[k]) - borrow;
      borrow = digit < 0 ? 1 : 0;
      digits_[k] = digit < 0 ? digit + static_cast<std::int64_t>(fields_[k].prime()) : digit;
    }
    std::size_t count = 0;
    for (std::size_t k = length; k-- > 0;) {
      Wide carry = static_cast<Wide>(digits_[k]);
      for (std::size_t g = 0; g < count; ++g) {
        const GroupQuotient parts = splitGroup(Wide{groups_[g]} * fields_[k].prime() + carry);
        groups_[g] = parts.rest;
        carry = parts.quotient;
      }
      while (carry != 0) {
        const GroupQuotient parts = splitGroup(carry);
        groups_[count++] = parts.rest;
        carry = parts.quotient;
      }
    }
    return simpl(integerOfGroups(groups_, count, negative ? INTNEG : INTPOS));
  }

  std::size_t primes_, taken_ = 0;
  Residue* images_;
  Field* fields_;
  Residue *products_, *inverses_;
  std::int64_t* digits_;
  Group* groups_;
};

// ---- the reduced form

struct Profile {
  std::size_t rank;
  std::size_t *rows, *pivots;  // both ascending
};

Profile profileModulo(Arena& arena, const IntegerMatrix& a, std::size_t pivotColumns, Residue prime) {
  const Field f(prime);
  Image image = imageOf(arena, a);
  load(f, a, image);
  eliminate(f, image, pivotColumns, false);
  std::sort(image.number, image.number + image.rank);
  return {image.rank, image.number, image.pivots};
}

IntegerMatrix rowsOf(Arena& arena, const IntegerMatrix& a, const std::size_t* rows, std::size_t count) {
  IntegerMatrix part{count, a.columns, arena.make<DAG>(count * a.columns)};
  for (std::size_t i = 0; i < count; ++i)
    std::copy_n(a.elements + rows[i] * a.columns, a.columns, part.elements + i * a.columns);
  return part;
}

// The reduced form of the rows of the profile; false when a prime shows that its pivots stand too far right.
bool reduceRows(Arena& arena, const IntegerMatrix& part, std::size_t pivotColumns, const Profile& profile,
                ReducedMatrix& result) {
  const std::size_t rank = profile.rank, columns = part.columns;
  const std::size_t *first = profile.pivots, *last = profile.pivots + rank;
  Remainders remainders(arena, rank * columns + 1, primesFor(bitsOfMinors(part)));
  auto isPivot = [=](std::size_t j) { return std::binary_search(first, last, j); };
  Image image = imageOf(arena, part);
  for (Primes primes; !remainders.isComplete();) {
    const Field f(primes.next());
    load(f, part, image);
    eliminate(f, image, pivotColumns, true);
    if (image.rank < rank) continue;
    if (!std::equal(first, last, image.pivots)) {
      if (std::lexicographical_compare(image.pivots, image.pivots + rank, first, last)) return false;
      continue;
    }
    remainders.take(f);
    for (std::size_t j = 0; j < columns; ++j)
      for (std::size_t i = 0; i < rank && !isPivot(j); ++i)
        remainders.put(i * columns + j, f.multiply(image.row[i][j], image.minor));
    remainders.put(rank * columns, image.minor);
  }
  result.rank = rank;
  result.pivots = profile.pivots;
  result.denominator = remainders.integer(rank * columns);
  result.rows = {rank, columns, arena.make<DAG>(rank * columns)};
  for (std::size_t j = 0; j < columns; ++j)
    for (std::size_t i = 0; i < rank; ++i) {
      DAG& element = result.rows.elements[i * columns + j];
      if (isPivot(j)) element = profile.pivots[i] == j ? result.denominator : cons0;
      else element = remainders.integer(i * columns + j);
      passWork(16);
    }
  return true;
}

// What is left of a row when the reduced rows are taken off, times their denominator.
void remainderOf(const IntegerMatrix& a, std::size_t row, const ReducedMatrix& r, DAG* left) {
  for (std::size_t j = 0; j < a.columns; ++j) {
    DAG sum = simpl(mul(a.at(row, j), r.denominator));
    for (std::size_t k = 0; k < r.rank; ++k) {
      DAG factor = a.at(row, r.pivots[k]);
      if (factor != cons0) sum = simpl(add(sum, simpl(negate(simpl(mul(factor, r.rows.at(k, j)))))));
    }
    left[j] = sum;
    passWork(static_cast<std::int64_t>(16 * r.rank));
  }
}

// Whether the form is that of the whole matrix, and not of what it is modulo an unlucky prime.
bool isReducedFormOf(Arena& arena, const IntegerMatrix& a, std::size_t pivotColumns, const Profile& profile,
                     ReducedMatrix& r) {
  for (std::size_t k = 0; k < r.rank; ++k)
    for (std::size_t j = 0; j < r.pivots[k]; ++j)
      if (r.rows.at(k, j) != cons0) return false;
  r.remainder = {a.rows - r.rank, a.columns, arena.make<DAG>((a.rows - r.rank) * a.columns)};
  DAG* left = r.remainder.elements;
  for (std::size_t i = 0; i < a.rows; ++i) {
    if (std::binary_search(profile.rows, profile.rows + r.rank, i)) continue;
    remainderOf(a, i, r, left);
    if (std::any_of(left, left + pivotColumns, [](DAG x) { return x != cons0; })) return false;
    left += a.columns;
  }
  return true;
}

}  // namespace

DAG determinant(Arena& arena, const IntegerMatrix& a) {
  Remainders remainders(arena, 1, primesFor(bitsOfMinors(a)));
  Image image = imageOf(arena, a);
  for (Primes primes; !remainders.isComplete();) {
    const Field f(primes.next());
    load(f, a, image);
    eliminate(f, image, a.columns, false);
    remainders.take(f);
    remainders.put(0, image.rank == a.rows ? image.minor : 0);
  }
  return remainders.integer(0);
}

ReducedMatrix reduced(Arena& arena, const IntegerMatrix& a, std::size_t pivotColumns) {
  ReducedMatrix result{};
  for (Primes primes;;) {
    const Profile profile = profileModulo(arena, a, pivotColumns, primes.next());
    const IntegerMatrix part = rowsOf(arena, a, profile.rows, profile.rank);
    if (reduceRows(arena, part, pivotColumns, profile, result) &&
        isReducedFormOf(arena, a, pivotColumns, profile, result))
      return result;
  }
}

}  // namespace korel::engine
