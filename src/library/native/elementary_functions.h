#pragma once
// The elementary functions of real numbers as they come, to a number of significant digits: what the special
// functions take them from.

#include <cstdint>

#include "library/native/fixed_point.h"

namespace korel {

Exact expOf(const Exact& x, std::int64_t digits);
/// For x > 0.
Exact lnOf(Exact x, std::int64_t digits);
struct SineAndCosine {
  Exact sine, cosine;
};
/// Both to `digits` places, and the sine or cosine that is near 0 to as many significant digits.
SineAndCosine sineAndCosineOf(const Exact& x, std::int64_t digits);
/// The angle of the point (x, y), not the origin.
Exact angleOf(const Exact& y, const Exact& x, std::int64_t digits);

}  // namespace korel
