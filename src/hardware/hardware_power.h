#pragma once
// Powers of doubles.

namespace korel {

/// x^y. A NaN gives itself; infinities follow the limits, with NaN for 1 to an infinite power. Errors: "0^0 is
/// undefined", "division by zero", "fractional power of a negative", and "powering may produce overflow" for finite
/// operands whose power leaves the doubles.
double hfpow(double x, double y);
/// The real root x^(1/n) for an integer n: that of a negative number under an odd n is negative.
double hfsurd(double x, double n);

/// The whole power by the steps of `hfpow`, for a finite x that isn't 0 and n from 1 to 2^31 - 1: base and result
/// are squared and multiplied from the lowest bit of n. May overflow.
inline double wholePower(double x, unsigned n) {
  double result = 1.0;
  for (;;) {
    if ((n & 1) != 0) result *= x;
    n >>= 1;
    if (n == 0) return result;
    x *= x;
  }
}

}  // namespace korel
