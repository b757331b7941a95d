#pragma once
// Truncated power series as objects.
//
//   SERIES  s[1]      s[2]         s[3]
//           variable  coefficient  exponent (raw), and so on in pairs
//
// The variable is a name x, or x - a for an expansion at a. Pairs stand by ascending exponents, each once and
// none with the coefficient 0. The order term is the shared object `order1`, O(1), as the last coefficient: at
// the exponent e it tells that the remainder is of order e. A series without it is exact, and one without
// pairs is 0.

#include <cstdint>

#include "store/constants.h"
#include "store/dag.h"

namespace korel {

struct SeriesPair {
  DAG coefficient;
  std::int32_t exponent;
};
static_assert(sizeof(SeriesPair) == 8);
/// Exponents of objects lie between this and its negative.
constexpr std::int32_t largestSeriesExponent = 4000000;
/// The degree that truncates nothing: an `Order` of infinity.
constexpr std::int32_t noTruncation = 0x7ffffffe;

inline DAG variableOf(DAG series) { return series[1]; }
inline SeriesPair* seriesPairs(DAG series) { return reinterpret_cast<SeriesPair*>(&series[2]); }
inline Word seriesPairCount(DAG series) { return (lengthOf(series) - 2) / 2; }
inline SeriesPair& lastSeriesPair(DAG series) { return seriesPairs(series)[seriesPairCount(series) - 1]; }
/// The last pair is an order term.
inline bool hasOrderTerm(DAG series) {
  return seriesPairCount(series) != 0 && lastSeriesPair(series).coefficient == order1;
}

/// A series of `pairs` pairs yet to be filled in, or of one pair, or of none; not simplified.
DAG newSeries(DAG variable, Word pairs);
DAG singleTerm(DAG variable, DAG coefficient, std::int32_t exponent);
inline DAG zeroSeries(DAG variable) { return newSeries(variable, 0); }
/// An order term at an exponent that no object may hold stands at the largest that it may: that is true as well.
DAG orderTerm(DAG variable, std::int64_t exponent);
/// The exponent for an object. Error beyond the bounds: "object too large".
std::int32_t boundedExponent(std::int64_t exponent);

/// A series under construction, whose pairs may stand in any order: `sortpol` brings it to its form.
struct SeriesBuilder {
  DAG series;
  Word used = 0;

  explicit SeriesBuilder(DAG variable, Word pairs = 8) : series(newSeries(variable, pairs)) {}
  void add(DAG coefficient, std::int32_t exponent);
  /// The series, as long as it was filled; not simplified.
  DAG finish();
};

/// a + b and a * b for coefficients, simplified.
DAG sumOfCoefficients(DAG a, DAG b);
DAG productOfCoefficients(DAG a, DAG b);
/// `coefficient` times variable^exponent, simplified.
DAG termOfSeries(DAG coefficient, DAG variable, std::int32_t exponent);

/// The series with its pairs sorted, those of one exponent added up, without zeros and truncated at degree `d`:
/// the first exponent above it becomes the order term's. The fresh, unsimplified `s` is overwritten. Simplified.
DAG sortpol(DAG s, std::int32_t d);
/// The equivalent sum; the order term becomes O(x^e).
DAG convpoly(DAG series);

}  // namespace korel
