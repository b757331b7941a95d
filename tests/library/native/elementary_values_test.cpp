// Float values of the elementary functions against MPFR, as the language gives them: real arguments of all sizes at 5, 10,
// 50 and 500 digits, with the worst error in units of the last digit; and identities of complex values.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "eval/evaluate/environment_variables.h"
#include "frame/environment_block.h"
#include "kernel_fixture.h"
#include "library/native/elementary_rows.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer_oracle.h"
#include "store/constants.h"

#ifdef KOREL_HAVE_MPFR
#include <mpfr.h>
#endif

namespace korel::test {
namespace {

#ifdef KOREL_HAVE_MPFR

using Reference = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

int csc(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_csc(r, x, m); }
int overReciprocal(Reference f, mpfr_ptr r, mpfr_srcptr x) {
  mpfr_ui_div(r, 1, x, MPFR_RNDN);
  return f(r, r, MPFR_RNDN);
}
int arcsec(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t) { return overReciprocal(mpfr_acos, r, x); }
int arccsc(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t) { return overReciprocal(mpfr_asin, r, x); }
int arccoth(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t) { return overReciprocal(mpfr_atanh, r, x); }
int arcsech(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t) { return overReciprocal(mpfr_acosh, r, x); }
int arccsch(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t) { return overReciprocal(mpfr_asinh, r, x); }
int arccot(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) {
  mpfr_t one;
  mpfr_init2(one, 2);
  mpfr_set_ui(one, 1, MPFR_RNDN);
  const int t = mpfr_atan2(r, one, x, m);
  mpfr_clear(one);
  return t;
}

// Where a function is asked: below and above in powers of ten, and within which bounds it is real.
struct Row {
  Elementary f;
  Reference reference;
  int smallest, largest;
  double low, high;
};
constexpr double all = HUGE_VAL;
using E = Elementary;
const Row rows[] = {
    // function   reference    exponents   real for
    {E::exp, mpfr_exp, -20, 4, -all, all},       {E::ln, mpfr_log, -300, 300, 0, all},
    {E::sqrt, mpfr_sqrt, -300, 300, 0, all},     {E::sin, mpfr_sin, -30, 60, -all, all},
    {E::cos, mpfr_cos, -30, 60, -all, all},      {E::tan, mpfr_tan, -30, 60, -all, all},
    {E::cot, mpfr_cot, -30, 60, -all, all},      {E::sec, mpfr_sec, -30, 60, -all, all},
    {E::csc, csc, -30, 60, -all, all},           {E::sinh, mpfr_sinh, -30, 4, -all, all},
    {E::cosh, mpfr_cosh, -30, 4, -all, all},     {E::tanh, mpfr_tanh, -30, 4, -all, all},
    {E::coth, mpfr_coth, -30, 4, -all, all},     {E::sech, mpfr_sech, -30, 4, -all, all},
    {E::csch, mpfr_csch, -30, 4, -all, all},     {E::arcsin, mpfr_asin, -30, 0, -1, 1},
    {E::arccos, mpfr_acos, -30, 0, -1, 1},       {E::arctan, mpfr_atan, -100, 100, -all, all},
    {E::arccot, arccot, -100, 100, -all, all},   {E::arcsec, arcsec, 0, 100, 1, all},
    {E::arccsc, arccsc, 0, 100, 1, all},         {E::arcsinh, mpfr_asinh, -100, 100, -all, all},
    {E::arccosh, mpfr_acosh, 0, 100, 1, all},    {E::arctanh, mpfr_atanh, -100, 0, -1, 1},
    {E::arccoth, arccoth, 0, 100, 1, all},       {E::arcsech, arcsech, -100, 0, 0, 1},
    {E::arccsch, arccsch, -100, 100, -all, all},
};

std::string digitsOf(std::mt19937_64& random, int n) {
  std::string text(1, static_cast<char>('1' + random() % 9));
  while (static_cast<int>(text.size()) < n) text += static_cast<char>('0' + random() % 10);
  return text;
}

/// A decimal number as text: sign, mantissa and exponent.
struct Argument {
  std::string mantissa;
  long exponent;
};
Argument argumentFor(const Row& row, std::mt19937_64& random, int digits, int i) {
  Argument a;
  const int n = 1 + static_cast<int>(random() % static_cast<unsigned>(digits + 4));
  a.mantissa = digitsOf(random, n);
  const int size = row.smallest + static_cast<int>(random() % static_cast<unsigned>(row.largest - row.smallest + 1));
  a.exponent = (i % 3 == 0 ? std::max(std::min(1, row.largest), row.smallest) : size) - n;
  // 1 and a little, or a little less.
  if (i % 5 == 1 && (row.high == 1 || row.low == 1 || row.f == E::ln)) {
    const int zeros = static_cast<int>(random() % static_cast<unsigned>(digits + 10));
    const bool above = row.high != 1;
    a.mantissa = (above ? "1" + std::string(zeros, '0') : std::string(zeros + 1, '9')) + digitsOf(random, 3);
    a.exponent = -static_cast<long>(a.mantissa.size()) + (above ? 1 : 0);
  }
  if (row.low < 0 && random() % 2 == 0) a.mantissa = "-" + a.mantissa;
  return a;
}

void setDecimal(mpfr_ptr x, const std::string& mantissa, long exponent) {
  const std::string text = mantissa + "e" + std::to_string(exponent);
  mpfr_set_str(x, text.c_str(), 10, MPFR_RNDN);
}

// The error of a float in units of its last digit of `digits`.
double errorOf(DAG value, mpfr_ptr reference, int digits) {
  if (!isSoftFloat(value) || isSingular(value)) return HUGE_VAL;
  if (mpfr_inf_p(reference) != 0) return 0;  // beyond the exponents that the reference has
  mpfr_t got;
  mpfr_init2(got, mpfr_get_prec(reference));
  setDecimal(got, decimal(mantissaOf(value)), static_cast<long>(exponentValue(exponentOf(value))));
  if (mpfr_zero_p(reference) != 0) {
    const bool agrees = mpfr_zero_p(got) != 0;
    mpfr_clear(got);
    return agrees ? 0 : HUGE_VAL;
  }
  mpfr_sub(got, got, reference, MPFR_RNDN);
  // One unit: 10^(1 - digits) times the power of ten at or below the reference.
  mpfr_t size;
  mpfr_init2(size, mpfr_get_prec(reference));
  mpfr_abs(size, reference, MPFR_RNDN);
  mpfr_log10(size, size, MPFR_RNDD);
  const long place = static_cast<long>(std::floor(mpfr_get_d(size, MPFR_RNDD)));
  setDecimal(size, "1", digits - 1 - place);
  mpfr_mul(got, got, size, MPFR_RNDN);
  const double error = std::fabs(mpfr_get_d(got, MPFR_RNDN));
  mpfr_clear(got);
  mpfr_clear(size);
  return error;
}

class WithDigits {
 public:
  explicit WithDigits(int digits) { setDigits(change_, digits); }
  ~WithDigits() { restoreDigits(change_); }

 private:
  EnvironmentChange change_;
};

TEST(ElementaryValues, RealOnesAreRoundedRight) {
  std::mt19937_64 random(22);
  for (int digits : {5, 10, 50, 500}) {
    // More of them on demand: KOREL_ARGUMENTS=10000.
    const char* wanted = std::getenv("KOREL_ARGUMENTS");
    const int cases = wanted != nullptr ? std::atoi(wanted) : digits <= 50 ? 200 : 15;
    double worstOfAll = 0;
    for (const Row& row : rows) {
      double worst = 0;
      WithDigits precision(digits);
      const long bits = static_cast<long>(digits * 3.33 * 2) + 1200;
      mpfr_t x, r;
      mpfr_inits2(bits, x, r, nullptr);
      for (int i = 0; i < cases; ++i) {
        const Argument a = argumentFor(row, random, digits, i);
        setDecimal(x, a.mantissa, a.exponent);
        if (mpfr_cmp_d(x, row.low) <= 0 || mpfr_cmp_d(x, row.high) >= 0) continue;
        row.reference(r, x, MPFR_RNDN);
        DAG value = floatAt(row.f, newFLOAT(integer(a.mantissa), NewInteger(a.exponent)));
        const double error = errorOf(value, r, digits);
        EXPECT_LT(error, 0.51) << rowOf(row.f).name << "(" << a.mantissa << "e" << a.exponent << ") at " << digits;
        worst = std::max(worst, error);
      }
      mpfr_clears(x, r, nullptr);
      worstOfAll = std::max(worstOfAll, worst);
    }
    std::printf("%4d digits: worst error of %zu functions %.6f units\n", digits, std::size(rows), worstOfAll);
  }
}

// Powers, angles and logarithms to a base: two arguments.
TEST(ElementaryValues, FunctionsOfTwoArgumentsAreRoundedRight) {
  std::mt19937_64 random(23);
  for (int digits : {5, 10, 50}) {
    WithDigits precision(digits);
    const long bits = static_cast<long>(digits * 3.33) + 1200;
    mpfr_t x, y, r, t;
    mpfr_inits2(bits, x, y, r, t, nullptr);
    double worst[3] = {};
    for (int i = 0; i < 300; ++i) {
      const std::string a = digitsOf(random, 1 + static_cast<int>(random() % 12));
      const std::string b = digitsOf(random, 1 + static_cast<int>(random() % 12));
      const long ea = static_cast<long>(random() % 40) - 25, eb = static_cast<long>(random() % 16) - 18;
      setDecimal(x, a, ea);
      setDecimal(y, b, eb);
      DAG fx = newFLOAT(integer(a), NewInteger(ea)), fy = newFLOAT(integer(b), NewInteger(eb));
      mpfr_pow(r, x, y, MPFR_RNDN);
      worst[0] = std::max(worst[0], errorOf(floatPower(fx, fy), r, digits));
      mpfr_atan2(r, y, x, MPFR_RNDN);
      worst[1] = std::max(worst[1], errorOf(floatAngle(fy, fx), r, digits));
      if (mpfr_cmp_ui(x, 1) == 0 || mpfr_cmp_ui(y, 1) == 0) continue;
      mpfr_log(r, x, MPFR_RNDN);
      mpfr_log(t, y, MPFR_RNDN);
      mpfr_div(r, r, t, MPFR_RNDN);
      worst[2] = std::max(worst[2], errorOf(floatLogarithm(fx, fy), r, digits));
    }
    std::printf("%4d digits: power %.6f, angle %.6f, logarithm %.6f units\n", digits, worst[0], worst[1], worst[2]);
    for (double w : worst) EXPECT_LT(w, 0.51);
    mpfr_clears(x, y, r, t, nullptr);
  }
}

#endif

}  // namespace
}  // namespace korel::test
