#pragma once
// Rows of rational numbers, each row over one denominator: what recurrences and products of series add up.
//
// Numerators are groups of digits that stay packed; a sum of products is formed in columns of 128 bits and carried
// once; denominators are exponents of small primes. Only results become objects. Where a denominator has a large prime
// the row cannot be made, and the caller goes another way (`rational_sum.h`).

#include "algebra/series/prime_base.h"

namespace korel {

/// Numerators: signed numbers of groups, in arrays of the arena.
struct ScaledNumber {
  Group* groups = nullptr;
  std::size_t count = 0, room = 0;  // significant groups: none for 0
  std::size_t version = 0;          // of the row's denominator
  bool negative = false;
};

/// A sum of products. What its columns hold is always less than 2^127.
class ProductSum {
 public:
  explicit ProductSum(engine::Arena& arena) : arena_(arena) {}
  /// Adds a * b, or weight * a * b for |weight| < 10^16; takes a * b off.
  void add(const ScaledNumber& a, const ScaledNumber& b) { addColumns(a, b, a.negative != b.negative); }
  void subtract(const ScaledNumber& a, const ScaledNumber& b) { addColumns(a, b, a.negative == b.negative); }
  void add(std::int64_t weight, const ScaledNumber& a, const ScaledNumber& b);
  /// The sum; what was added is forgotten. The groups are this object's, till the next `add`.
  ScaledNumber take();

 private:
  struct Side {
    Wide* columns = nullptr;
    std::size_t used = 0;
  };
  void addColumns(const ScaledNumber& a, const ScaledNumber& b, bool negative);
  void reserve(std::size_t columns);
  void carry();
  static std::size_t takeSide(Side& side, Group* groups);

  engine::Arena& arena_;
  Side sides_[2];  // of positive and of negative products
  Group *total_ = nullptr, *weighted_ = nullptr;
  std::size_t room_ = 0, load_ = 0, weightedRoom_ = 0;
};

/// Coefficients that are given: numerators by place over one denominator.
class FixedRow {
 public:
  FixedRow(engine::Arena& arena, const PrimeBase& base, std::size_t count)
      : arena_(arena), base_(base), values_(arena.make<DAG>(count)), numbers_(arena.make<ScaledNumber>(count)) {}
  /// The next coefficient, an integer or a RATIONAL.
  void put(DAG value) { values_[count_++] = value; }
  /// Brings what was put to one denominator; false when that has a large prime.
  bool finish();
  const ScaledNumber& operator[](std::size_t i) const { return numbers_[i]; }
  const ScaledNumber* numbers() const { return numbers_; }
  std::size_t count() const { return count_; }
  const SmoothNumber& denominator() const { return denominator_; }
  /// Makes `x` the common multiple of it and the own denominator of coefficient i.
  void joinDenominator(SmoothNumber& x, std::size_t i) const;

 private:
  engine::Arena& arena_;
  const PrimeBase& base_;
  DAG* values_;
  SmoothNumber* denominators_ = nullptr;  // of each coefficient by itself
  ScaledNumber* numbers_;
  std::size_t count_ = 0;
  SmoothNumber denominator_{};
};

/// Coefficients that a recurrence finds one after the other. Their common denominator grows; a numerator is brought
/// up to it when it is asked for.
class GrowingRow {
 public:
  GrowingRow(engine::Arena& arena, const PrimeBase& base, std::size_t count);
  /// The next coefficient, `sum` divided by `denominator`; simplified.
  DAG append(ScaledNumber sum, const SmoothNumber& denominator);
  /// The next coefficient is 1, or 0.
  void appendSmall(bool one);
  /// The numerator of a coefficient, over `denominator`; that of 1.
  const ScaledNumber& operator[](std::size_t i) { return current(numbers_[i + 1]); }
  const ScaledNumber& one() { return current(numbers_[0]); }
  bool isZero(std::size_t i) const { return numbers_[i + 1].count == 0; }
  const SmoothNumber& denominator() const { return denominator_; }

 private:
  ScaledNumber& current(ScaledNumber& x);
  void scale(ScaledNumber& x, Group factor);
  void put(const Group* groups, std::size_t n, bool negative);

  engine::Arena& arena_;
  const PrimeBase& base_;
  ScaledNumber* numbers_;  // 1, then the coefficients
  std::size_t used_ = 0;
  SmoothNumber denominator_, left_, grown_;
  Group* factors_ = nullptr;  // by which the denominator has grown, one after the other
  std::size_t factorCount_ = 0, factorRoom_ = 0;
};

/// `sum` divided by `denominator`, simplified. `sum` becomes the numerator in lowest terms, `left` the denominator.
DAG reducedQuotient(const PrimeBase& base, ScaledNumber& sum, const SmoothNumber& denominator, SmoothNumber& left);

/// The coefficient x^k of a product of two rows, whose numerator is `sum`; simplified. `below` and `above` are common
/// multiples of the denominators of the first k + 1 coefficients of both rows and what the product of the rows'
/// denominators has more: `sum` is a multiple of the latter.
DAG productCoefficient(const PrimeBase& base, ScaledNumber& sum, const SmoothNumber& below, const SmoothNumber& above,
                       SmoothNumber& left);

/// The lowest `count` coefficients of the product of two polynomials, whose coefficients are given from the lowest on.
ScaledNumber* lowProduct(engine::Arena& arena, const ScaledNumber* a, std::size_t na, const ScaledNumber* b,
                         std::size_t nb, std::size_t count);

}  // namespace korel
