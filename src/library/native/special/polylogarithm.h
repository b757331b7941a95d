#pragma once
// Polylogarithms and the branches of Lambert's W.

#include "library/native/special/ball.h"

namespace korel::special {

/// The sum of z^k/k^s, continued; cut along z > 1, where it belongs to the lower side.
Complex polylogarithm(const Complex& s, const Complex& z);
/// polylogarithm(2, 1 - x).
Complex dilogarithm(const Complex& x);

/// The solution w of w e^w = z on branch k. z isn't 0 but for k = 0.
Complex lambertW(std::int64_t k, const Complex& z);

}  // namespace korel::special
