// Functions of the hardware evaluator against MPFR: within one unit in the last place on a fixed grid.

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "hardware/hardware_functions.h"
#include "hardware/special_functions.h"
#include "kernel_fixture.h"

#ifdef KOREL_HAVE_MPFR
#include <mpfr.h>

namespace korel::test {

namespace {

using Reference = void (*)(mpfr_t result, mpfr_t x);

template <int (*f)(mpfr_t, const mpfr_t, mpfr_rnd_t)>
void direct(mpfr_t result, mpfr_t x) {
  f(result, x, MPFR_RNDN);
}
// 1/x, then the function.
template <int (*f)(mpfr_t, const mpfr_t, mpfr_rnd_t)>
void ofReciprocal(mpfr_t result, mpfr_t x) {
  mpfr_ui_div(x, 1, x, MPFR_RNDN);
  f(result, x, MPFR_RNDN);
}
void arccotReference(mpfr_t result, mpfr_t x) {
  mpfr_t one;
  mpfr_init2(one, 300);
  mpfr_set_ui(one, 1, MPFR_RNDN);
  mpfr_atan2(result, one, x, MPFR_RNDN);
  mpfr_clear(one);
}
void lgammaReference(mpfr_t result, mpfr_t x) {
  int sign;
  mpfr_lgamma(result, &sign, x, MPFR_RNDN);
}

struct FunctionRow {
  const char* name;
  Reference reference;
  double lowest, highest;  // of the grid
};
const FunctionRow functionRows[] = {
    // name      reference                  lowest  highest
    {"sin",     direct<mpfr_sin>,          -50,    50},
    {"cos",     direct<mpfr_cos>,          -50,    50},
    {"tan",     direct<mpfr_tan>,          -50,    50},
    {"cot",     direct<mpfr_cot>,          -50,    50},
    {"sec",     direct<mpfr_sec>,          -50,    50},
    {"csc",     direct<mpfr_csc>,          -50,    50},
    {"arcsin",  direct<mpfr_asin>,         -1,     1},
    {"arccos",  direct<mpfr_acos>,         -1,     1},
    {"arctan",  direct<mpfr_atan>,         -20,    20},
    {"arccot",  arccotReference,           -20,    20},
    {"arcsec",  ofReciprocal<mpfr_acos>,   1,      9},
    {"arccsc",  ofReciprocal<mpfr_asin>,   1,      9},
    {"sinh",    direct<mpfr_sinh>,         -20,    20},
    {"cosh",    direct<mpfr_cosh>,         -20,    20},
    {"tanh",    direct<mpfr_tanh>,         -20,    20},
    {"coth",    direct<mpfr_coth>,         -20,    20},
    {"sech",    direct<mpfr_sech>,         -20,    20},
    {"csch",    direct<mpfr_csch>,         -20,    20},
    {"arcsinh", direct<mpfr_asinh>,        -20,    20},
    {"arccosh", direct<mpfr_acosh>,        1,      20},
    {"arctanh", direct<mpfr_atanh>,        -1,     1},
    {"arccoth", ofReciprocal<mpfr_atanh>,  1,      9},
    {"arcsech", ofReciprocal<mpfr_acosh>,  0,      1},
    {"arccsch", ofReciprocal<mpfr_asinh>,  -9,     9},
    {"exp",     direct<mpfr_exp>,          -700,   700},
    {"ln",      direct<mpfr_log>,          0,      9},
    {"log10",   direct<mpfr_log10>,        0,      9},
    {"sqrt",    direct<mpfr_sqrt>,         0,      9},
    {"erf",     direct<mpfr_erf>,          -6,     6},
    {"erfc",    direct<mpfr_erfc>,         -6,     27},
    {"GAMMA",   direct<mpfr_gamma>,        -5,     171},
    {"lnGAMMA", lgammaReference,           -5,     171},
};

// Even steps, what lies close to the ends, and powers of 2 on either side of 0.
std::vector<double> gridFor(const FunctionRow& row) {
  std::vector<double> grid;
  constexpr int steps = 311;
  const double width = row.highest - row.lowest;
  for (int k = 1; k < steps; ++k) grid.push_back(row.lowest + width * k / steps);
  for (int k = 3; k <= 50; ++k) {
    grid.push_back(row.lowest + std::ldexp(width, -k));
    grid.push_back(row.highest - std::ldexp(width, -k));
  }
  for (int k = -300; k <= 10; ++k)
    for (double x : {std::ldexp(1.1, k), std::ldexp(-1.3, k)})
      if (x > row.lowest && x < row.highest) grid.push_back(x);
  return grid;
}

// Distance in units of the last place of the true value.
double errorInUnits(double x, double value, Reference reference) {
  mpfr_t argument, exact;
  mpfr_init2(argument, 160);
  mpfr_init2(exact, 160);
  mpfr_set_d(argument, x, MPFR_RNDN);
  reference(exact, argument);
  const double rounded = mpfr_get_d(exact, MPFR_RNDN);
  double error = 0.0;
  if (std::isfinite(rounded) && std::isfinite(value)) {
    const double unit = std::nextafter(std::fabs(rounded), INFINITY) - std::fabs(rounded);
    mpfr_sub_d(exact, exact, value, MPFR_RNDN);
    error = std::fabs(mpfr_get_d(exact, MPFR_RNDN)) / unit;
  } else if (rounded != value && !(std::isnan(rounded) && std::isnan(value))) {
    error = INFINITY;
  }
  mpfr_clear(argument);
  mpfr_clear(exact);
  return error;
}

}  // namespace

TEST(SpecialFunctions, AreWithinOneUnitInTheLastPlace) {
  for (const FunctionRow& row : functionRows) {
    const HardwareFunction* f = hardwareFunction(row.name);
    ASSERT_NE(f, nullptr) << row.name;
    double worst = 0.0, at = 0.0;
    for (double x : gridFor(row)) {
      const double error = errorInUnits(x, f->one(x), row.reference);
      if (error > worst) {
        worst = error;
        at = x;
      }
    }
    EXPECT_LE(worst, 1.0) << row.name << " at " << ::testing::PrintToString(at);
  }
}

}  // namespace korel::test
#endif
