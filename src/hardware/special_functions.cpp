#include "hardware/special_functions.h"

#include <cmath>
#include <numbers>

#include "frame/errors.h"

namespace korel {

namespace {

using Extended = long double;

double rounded(Extended x) { return static_cast<double>(x); }

// sqrt(x^2 - 1), exact near 1: both factors are exact, or all but exact.
Extended rootOfSquareLessOne(double x) {
  const Extended e = x;
  return sqrtl((e - 1) * (e + 1));
}

}  // namespace

// The platform's functions reduce by as many digits of Pi as the argument asks for (Payne and Hanek).
double hftrig(double x, int selector) {
  switch (selector) {
    case selectSin: return std::sin(x);
    case selectCos: return std::cos(x);
    default: return rounded(tanl(x));
  }
}

double hfcot(double x) { return rounded(1 / tanl(x)); }
double hfsec(double x) { return rounded(1 / cosl(x)); }
double hfcsc(double x) { return rounded(1 / sinl(x)); }

double hfarccot(double x) { return rounded(atan2l(1, x)); }
double hfarcsec(double x) { return rounded(atan2l(rootOfSquareLessOne(x), x < 0 ? -1 : 1)); }
double hfarccsc(double x) { return rounded(atan2l(x < 0 ? -1 : 1, rootOfSquareLessOne(x))); }

double hfsinh(double x) { return rounded(sinhl(x)); }
double hfcosh(double x) { return rounded(coshl(x)); }
double hftanh(double x) { return rounded(tanhl(x)); }
double hfcoth(double x) { return rounded(1 / tanhl(x)); }
double hfsech(double x) { return rounded(1 / coshl(x)); }
double hfcsch(double x) { return rounded(1 / sinhl(x)); }

double hfarcsinh(double x) { return rounded(asinhl(x)); }
double hfarccosh(double x) { return rounded(acoshl(x)); }
double hfarctanh(double x) { return rounded(atanhl(x)); }

// arctanh(1/x) = log((x + 1) / (x - 1)) / 2, whose difference from 1 is exact but for one rounding.
double hfarccoth(double x) {
  if (std::isinf(x)) return 1 / x;
  const Extended size = fabsl(x), result = log1pl(2 / (size - 1)) / 2;
  return rounded(x < 0 ? -result : result);
}

// arccosh(1/x) = log((1 + sqrt(1 - x^2)) / x).
double hfarcsech(double x) {
  const Extended e = x, root = sqrtl((1 - e) * (1 + e));
  return rounded(log1pl((1 - e + root) / e));
}

double hfarccsch(double x) { return rounded(asinhl(1 / static_cast<Extended>(x))); }

double hflog10(double x) { return rounded(log10l(x)); }
double hferf(double x) { return rounded(erfl(x)); }
double hferfc(double x) { return rounded(erfcl(x)); }
double hfgamma(double x) { return rounded(tgammal(x)); }

namespace {

Extended extendedLogGamma(double x) {
  int sign;
  return lgammal_r(x, &sign);
}

}  // namespace

// 1 and 2 are exact zeros, about which the platform's function keeps its relative precision.
double hflgamma1(double x) { return x == 1.0 || x == 2.0 ? 0.0 : rounded(extendedLogGamma(x)); }

double hflgamma(double x) {
  if (x <= 0 && x == std::trunc(x) && std::isfinite(x)) KernelException("singularity encountered in lnGAMMA");
  return x >= 0.5 && x <= 2.5 ? hflgamma1(x) : rounded(extendedLogGamma(x));
}

double hfsqrt(double x) {
  if (x < 0) KernelException("sqrt of a negative number");
  return std::sqrt(x);
}

}  // namespace korel
