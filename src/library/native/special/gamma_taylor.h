#pragma once
// The gamma function of real numbers of modest size by a Taylor series whose coefficients are kept.
//
// 1/gamma(1 + x) is an entire function: for |x| <= 1/2 its series gains more than a bit a term at the start and many
// soon after, and is summed in fixed point. The coefficients cost as much as some dozen values by Stirling's series,
// so that they are computed once as many have been asked for.

#include "library/native/special/ball.h"

namespace korel::special {

/// Whether 1/gamma(z) comes from the series now: z is a real number of modest size and the coefficients are at hand,
/// or worth their cost, which each call with such a z counts for. Gives the value then.
bool reciprocalGammaByTaylor(const Complex& z, Real& value);

}  // namespace korel::special
