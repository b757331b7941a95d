// Binary floats and the elementary functions on them against MPFR: arguments of all sizes, beside zeros, ones and
// multiples of Pi/2, from two limbs to where the long products begin.

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>

#include "numbers/functions/elementary_reals.h"

#ifdef KOREL_HAVE_MPFR
#include <mpfr.h>
#endif

namespace korel::test {
namespace {

#ifdef KOREL_HAVE_MPFR

using namespace reals;

/// An MPFR number of a given precision.
struct Reference {
  mpfr_t value;
  explicit Reference(long bits) { mpfr_init2(value, bits); }
  ~Reference() { mpfr_clear(value); }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;
  operator mpfr_ptr() { return value; }  // NOLINT
};

void set(mpfr_ptr to, const Real& x) {
  if (x.sign == 0) {
    mpfr_set_zero(to, 1);
    return;
  }
  mpz_t whole;
  mpz_init(whole);
  mpz_import(whole, x.size, -1, sizeof(Limb), 0, 0, x.limbs);
  mpfr_set_z_2exp(to, whole, x.exponent - static_cast<long>(x.size) * 64, MPFR_RNDN);
  mpfr_mul_si(to, to, x.sign, MPFR_RNDN);
  mpz_clear(whole);
}

/// The relative error of `ours`, in units of 2^(-64 limbs).
double errorIn(const Real& ours, mpfr_ptr reference, std::size_t limbs) {
  const long bits = static_cast<long>(limbs) * 64 + 200;
  if (mpfr_zero_p(reference)) return ours.sign == 0 ? 0 : HUGE_VAL;
  Reference got(bits), error(bits);
  set(got, ours);
  mpfr_sub(error, got, reference, MPFR_RNDN);
  mpfr_div(error, error, reference, MPFR_RNDN);
  mpfr_mul_2si(error, error, static_cast<long>(limbs) * 64, MPFR_RNDN);
  return std::fabs(mpfr_get_d(error, MPFR_RNDN));
}

struct Source {
  std::mt19937_64 random{20261125};
  Real number(std::size_t limbs, int smallest, int largest) {
    Limb* row = limbSpace(limbs);
    for (std::size_t i = 0; i < limbs; ++i) row[i] = random();
    // Long runs of equal bits now and then.
    if (random() % 4 == 0)
      for (std::size_t i = 0; i + 1 < limbs; ++i) row[i] = random() % 2 == 0 ? 0 : ~Limb{0};
    row[limbs - 1] |= Limb{1} << 63;
    row[0] |= 1;
    Real x;
    x.sign = random() % 2 == 0 ? 1 : -1;
    x.size = static_cast<std::uint32_t>(limbs);
    x.exponent = smallest + static_cast<std::int64_t>(random() % static_cast<unsigned>(largest - smallest + 1));
    x.limbs = row;
    return x;
  }
};

constexpr std::size_t lengths[] = {2, 3, 4, 7, 26, 53, 130, 320};
int casesFor(std::size_t limbs) { return limbs < 10 ? 3000 : limbs < 100 ? 150 : 6; }

TEST(Reals, ArithmeticIsCloseAtEveryLength) {
  Source source;
  for (std::size_t n : lengths) {
    const long bits = static_cast<long>(n) * 64 + 200;
    double worst[5] = {};
    for (int i = 0; i < casesFor(n); ++i) {
      releaseAllLimbs();
      workingLimbs = n;
      const std::size_t la = 1 + source.random() % n, lb = 1 + source.random() % n;
      const Real a = source.number(la, -70, 70);
      Real b = source.number(lb, -70, 70);
      if (i % 5 == 0) b = a * (Real(1) + scaled(source.number(1, 0, 0), -static_cast<int>(source.random() % 90)));
      Reference x(bits), y(bits), r(bits * 2);
      set(x, a);
      set(y, b);
      auto check = [&](int which, const Real& ours) {
        const double error = errorIn(ours, r, n);
        worst[which] = std::max(worst[which], error);
      };
      mpfr_mul(r, x, y, MPFR_RNDN);
      check(0, a * b);
      mpfr_div(r, x, y, MPFR_RNDN);
      check(1, a / b);
      mpfr_abs(r, x, MPFR_RNDN);
      mpfr_sqrt(r, r, MPFR_RNDN);
      check(2, sqrt(absolute(a)));
      // Operands no longer than the precision: their difference is exact where it cancels.
      mpfr_sub(r, x, y, MPFR_RNDN);
      check(3, a - b);
      mpfr_div_si(r, x, 12345, MPFR_RNDN);
      check(4, dividedBy(a, 12345));
    }
    std::printf("%4zu limbs: * %.1f  / %.1f  sqrt %.1f  - %.1f  /n %.1f\n", n, worst[0], worst[1], worst[2], worst[3],
                worst[4]);
    for (double w : worst) EXPECT_LT(w, 16) << n;
  }
}

// Each method of multiplication, and lengths at which pieces of the operands are uneven.
TEST(Limbs, ProductsAndQuotientsOfAllLengths) {
  Source source;
  for (std::size_t la : {1, 2, 29, 30, 31, 61, 89, 1499, 1501, 2200})
    for (std::size_t lb : {1, 3, 30, 47, 1500, 2203}) {
      releaseAllLimbs();
      workingLimbs = 2;
      const Real a = source.number(la, 0, 0), b = source.number(lb, 0, 0);
      Limb *r = limbSpace(la + lb), *q = limbSpace(la + lb);
      multiplyLimbs(r, a.limbs, la, b.limbs, lb);
      mpz_t x, y, z, got;
      mpz_inits(x, y, z, got, nullptr);
      mpz_import(x, la, -1, sizeof(Limb), 0, 0, a.limbs);
      mpz_import(y, lb, -1, sizeof(Limb), 0, 0, b.limbs);
      mpz_import(got, la + lb, -1, sizeof(Limb), 0, 0, r);
      mpz_mul(z, x, y);
      EXPECT_EQ(mpz_cmp(z, got), 0) << la << " times " << lb;
      // The product and a little more, divided by one factor, gives the other and the little.
      addLimb(r, la + lb, b.limbs[lb - 1] >> 1);
      if (lb > 1) {
        q[la] = quotientOfLimbs(q, r, la + lb, b.limbs, lb);
        mpz_import(got, la + 1, -1, sizeof(Limb), 0, 0, q);
        EXPECT_EQ(mpz_cmp(x, got), 0) << la + lb << " by " << lb;
      }
      mpz_clears(x, y, z, got, nullptr);
    }
}

// What the functions are held against, and how their arguments are chosen.
struct Row {
  const char* name;
  Real (*ours)(const Real& x);
  int (*reference)(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t mode);
  int smallest, largest;  // exponents of 2 of the arguments
  bool positive;
};
const Row rows[] = {
    {"exp", exp, mpfr_exp, -80, 20, false},
    {"exp - 1", expMinusOne, mpfr_expm1, -80, 6, false},
    {"ln", ln, mpfr_log, -400, 400, true},
    {"ln(1+)", lnOnePlus, mpfr_log1p, -200, -1, false},
    {"sin", sin, mpfr_sin, -200, 90, false},
    {"cos", cos, mpfr_cos, -200, 90, false},
    {"arctan", arctan, mpfr_atan, -200, 200, false},
    {"sinh", sinh, mpfr_sinh, -200, 12, false},
    {"cosh", cosh, mpfr_cosh, -200, 12, false},
    {"tanh", tanh, mpfr_tanh, -200, 12, false},
    {"arcsinh", arcsinh, mpfr_asinh, -200, 200, false},
};

TEST(Reals, FunctionsAreCloseForArgumentsOfAllSizes) {
  Source source;
  for (std::size_t n : lengths) {
    const long bits = static_cast<long>(n) * 64 + 200;
    for (const Row& row : rows) {
      double worst = 0;
      Reference at(bits);
      for (int i = 0; i < casesFor(n) / 4 + 2; ++i) {
        releaseAllLimbs();
        workingLimbs = n;
        Real x = source.number(1 + source.random() % n, row.smallest, row.largest);
        if (i % 4 == 0) x = source.number(n, std::max(row.smallest, -3), std::min(row.largest, 3));
        // Beside 1 and beside a multiple of Pi/2.
        if (i % 7 == 3 && row.largest > 10 && row.positive)
          x = Real(1) + scaled(x, -x.exponent - static_cast<int>(source.random() % 120));
        if (i % 7 == 5 && row.largest > 50)
          x = cut(times(pi(), 1 + static_cast<int>(source.random() % 1000)) * scaled(Real(1), -1));
        if (row.positive) x = absolute(x);
        Reference argument(bits + 400), r(bits);
        set(argument, x);
        row.reference(r, argument, MPFR_RNDN);
        const double error = errorIn(row.ours(x), r, n);
        EXPECT_LT(error, 64) << row.name << " of 2^" << x.exponent << " at " << n << " limbs, x = " << doubleOf(x);
        worst = std::max(worst, error);
      }
      std::printf("%4zu limbs: %-8s %10.1f units of 2^-%zu\n", n, row.name, worst, n * 64);
    }
  }
}

TEST(Reals, ConstantsAtAllLengths) {
  for (std::size_t n : {2, 3, 30, 400}) {
    releaseAllLimbs();
    workingLimbs = n;
    Reference r(static_cast<long>(n) * 64 + 200);
    mpfr_const_pi(r, MPFR_RNDN);
    EXPECT_LT(errorIn(pi(), r, n), 4);
    mpfr_const_log2(r, MPFR_RNDN);
    EXPECT_LT(errorIn(lnTwo(), r, n), 4);
    mpfr_const_euler(r, MPFR_RNDN);
    EXPECT_LT(errorIn(eulerGamma(), r, n), 4);
    mpfr_const_catalan(r, MPFR_RNDN);
    EXPECT_LT(errorIn(catalanConstant(), r, n), 4);
    mpfr_set_ui(r, 10, MPFR_RNDN);
    mpfr_log(r, r, MPFR_RNDN);
    EXPECT_LT(errorIn(lnTen(), r, n), 4);
  }
}

#endif

}  // namespace
}  // namespace korel::test
