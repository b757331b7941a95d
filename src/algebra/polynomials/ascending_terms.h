#pragma once
// A polynomial by the powers of one variable, ascending: what division works on.
//
// The coefficients are expanded expressions free of the variable, none of them 0.

#include <cstdint>

#include "store/dag.h"
#include "store/objects.h"

namespace korel {

/// Pairs (coefficient, exponent) in an object of its own, a SERIES that nobody else sees.
class AscendingTerms {
 public:
  explicit AscendingTerms(DAG series) : series_(series) {}

  Word count() const { return (lengthOf(series_) - 2) / 2; }
  /// Of the pair `i`, from 1.
  DAG coefficient(Word i) const { return series_[2 * i]; }
  std::int32_t exponent(Word i) const { return static_cast<std::int32_t>(rawField(series_, 2 * i + 1)); }
  void setCoefficient(Word i, DAG value) { series_[2 * i] = value; }
  void removeTop() { shorten(series_, lengthOf(series_), lengthOf(series_) - 2); }
  /// Takes q * x^e times all terms of `b` but its highest away.
  void subtractMultiple(const AscendingTerms& b, DAG q, std::int64_t e);

 private:
  DAG series_;
};

/// `p`, a polynomial in x, by its powers of x. Error: "integer too large in context" for exponents beyond a word.
AscendingTerms ascendingTerms(DAG p, DAG x);

}  // namespace korel
