#include "hardware/hardware_power.h"

#include <cmath>

#include "frame/errors.h"
#include "numbers/float/hardware_float.h"

namespace korel {

namespace {

bool isWhole(double y) { return std::trunc(y) == y; }
// Doubles from 2^53 on are even.
bool isOdd(double y) { return std::isfinite(y) && isWhole(y) && std::fmod(y, 2.0) != 0.0; }

double powerOfInfinity(double x, double y) {
  if (y == 0.0) return 1.0;
  if (x > 0) return y > 0 ? x : 0.0;
  if (!std::isfinite(y) || !isWhole(y)) return mIEEEQuietNaN;
  if (y > 0) return isOdd(y) ? x : -x;
  return isOdd(y) ? -0.0 : 0.0;
}

double infinitePower(double x, double y) {
  const double size = std::fabs(x);
  if (size == 1.0) return mIEEEQuietNaN;
  return (size > 1.0) == (y > 0) ? mIEEEPosInfinity : 0.0;
}

double powerOfZero(double x, double y) {
  if (y == 0.0) KernelException("0^0 is undefined");
  if (y < 0) KernelException("division by zero");
  return isOdd(y) ? x : 0.0;
}

double checkedPower(double result) {
  if (std::isinf(result)) KernelException("powering may produce overflow");
  return result;
}

// The steps of `wholePower` for a whole y of any size.
double longWholePower(double x, double y) {
  double result = 1.0;
  for (;;) {
    if (std::fmod(y, 2.0) != 0.0) result *= x;
    y = std::trunc(y / 2.0);
    if (y == 0.0) return result;
    x *= x;
  }
}

double powerOfWhole(double x, double y) {
  if (y < 0) {
    x = 1.0 / x;
    y = -y;
  }
  if (y == 0.0) return 1.0;
  return y < 2147483648.0 ? wholePower(x, static_cast<unsigned>(y)) : longWholePower(x, y);
}

}  // namespace

double hfpow(double x, double y) {
  if (std::isnan(x)) return x;
  if (std::isnan(y)) return y;
  if (std::isinf(x)) return powerOfInfinity(x, y);
  if (std::isinf(y)) return infinitePower(x, y);
  if (x == 0.0) return powerOfZero(x, y);
  if (isWhole(y)) return checkedPower(powerOfWhole(x, y));
  if (x < 0) KernelException("fractional power of a negative");
  return checkedPower(std::pow(x, y));
}

double hfsurd(double x, double n) {
  if (x < 0 && isOdd(n)) return -hfpow(-x, 1.0 / n);
  return hfpow(x, 1.0 / n);
}

}  // namespace korel
