#include "numbers/integer_functions.h"

#include "integer_oracle.h"
#include "kernel_fixture.h"

namespace korel::test {
namespace {

// Quotient and remainder by what defines them, for operands of every kind and length, leading groups of
// few digits and differences of a quotient digit by one among them.
TEST(IntegerFunctions, DivisionGivesItsOperandsBack) {
  Random random(31);
  for (int i = 0; i < 20000; ++i) {
    Word la = static_cast<Word>(1 + random.below(i % 100 == 0 ? 1500 : 60));
    Word lb = static_cast<Word>(1 + random.below(i % 100 == 0 ? 900 : 40));
    DAG a = random.upTo(la), b = random.upTo(lb);
    if (b == cons0) continue;
    if (i % 7 == 0) a = addint(mulint(a, b), integer(std::to_string(i % 3 - 1)));
    SCOPED_TRACE(decimal(a) + " / " + decimal(b));
    DAG r;
    DAG q = IntegerDivide(a, b, &r);
    ASSERT_EQ(decimal(addint(mulint(q, b), r)), decimal(a));
    ASSERT_LT(compint(r, b), 0);
    if (r != cons0) {
      ASSERT_EQ(tagOf(r), tagOf(a));
    }
  }
}

TEST(IntegerFunctions, GreatestCommonDivisors) {
  Random random(32);
  for (int i = 0; i < 3000; ++i) {
    DAG g = random.upTo(static_cast<Word>(1 + random.below(20)));
    DAG x = mulint(g, random.upTo(static_cast<Word>(1 + random.below(40))));
    DAG y = mulint(g, random.upTo(static_cast<Word>(1 + random.below(40))));
    SCOPED_TRACE(decimal(x) + ", " + decimal(y));
    DAG d = igcd(x, y);
    DAG r;
    if (g != cons0) {
      IntegerDivide(d, g, &r);
      ASSERT_EQ(r, cons0);
    }
    if (d == cons0) continue;
    DAG qx = IntegerDivide(x, d, &r);
    ASSERT_EQ(r, cons0);
    DAG qy = IntegerDivide(y, d, &r);
    ASSERT_EQ(r, cons0);
    ASSERT_EQ(decimal(igcd(qx, qy)), "1");
  }
}

TEST(IntegerFunctions, RootsAreTheNearest) {
  Random random(33);
  for (int i = 0; i < 3000; ++i) {
    DAG n = random.upTo(static_cast<Word>(1 + random.below(60)));
    if (hasTag(n, INTNEG)) n = complint(n);
    SCOPED_TRACE(decimal(n));
    DAG r = isqrt(n);
    // |n - r^2| <= r, as (r + 1/2)^2 = r^2 + r + 1/4.
    DAG gap = addint(n, complint(mulint(r, r)));
    ASSERT_LE(compint(gap, r), 0);
  }
}

TEST(IntegerFunctions, PowersAndFactorials) {
  DAG power = cons1, product = cons1;
  for (int n = 0; n <= 300; ++n) {  // the power 0 is the caller's
    if (n > 0) {
      ASSERT_EQ(decimal(powint(immediate(-37), n)), decimal(power));
    }
    ASSERT_EQ(decimal(factorial(immediate(n))), decimal(product));
    power = mulint(power, immediate(-37));
    product = mulint(product, immediate(n + 1));
  }
  EXPECT_EQ(decimal(powint(cons10, 1000)), "1" + std::string(1000, '0'));
}

TEST(IntegerFunctions, DecimalShifts) {
  Random random(34);
  for (int i = 0; i < 2000; ++i) {
    DAG x = random.upTo(static_cast<Word>(1 + random.below(20)));
    std::int64_t k = random.below(70);
    ASSERT_EQ(decimal(times10p(x, k)), x == cons0 ? "0" : decimal(x) + std::string(static_cast<std::size_t>(k), '0'));
  }
}

#ifdef KOREL_HAVE_GMP
// GMP as an independent route, on operands of mixed sizes and signs.
TEST(IntegerFunctions, AgreeWithGmp) {
  Random random(35);
  mpz_t a, b, q, r;
  mpz_inits(a, b, q, r, nullptr);
  auto text = [](mpz_t z) {
    std::string s(mpz_sizeinbase(z, 10) + 2, '\0');
    mpz_get_str(s.data(), 10, z);
    return std::string(s.c_str());
  };
  for (int i = 0; i < 100000; ++i) {
    DAG x = random.upTo(static_cast<Word>(1 + random.below(i % 50 == 0 ? 800 : 30)));
    DAG y = random.upTo(static_cast<Word>(1 + random.below(i % 50 == 0 ? 800 : 30)));
    std::string tx = decimal(x), ty = decimal(y);
    SCOPED_TRACE(tx + ", " + ty);
    mpz_set_str(a, tx.c_str(), 10);
    mpz_set_str(b, ty.c_str(), 10);
    mpz_mul(q, a, b);
    ASSERT_EQ(decimal(mulint(x, y)), text(q));
    mpz_add(q, a, b);
    ASSERT_EQ(decimal(addint(x, y)), text(q));
    mpz_gcd(q, a, b);
    ASSERT_EQ(decimal(igcd(x, y)), text(q));
    mpz_mul(q, a, a);
    ASSERT_EQ(decimal(mulint(x, x)), text(q));
    if (y != cons0) {
      mpz_tdiv_qr(q, r, a, b);
      DAG rest;
      ASSERT_EQ(decimal(IntegerDivide(x, y, &rest)), text(q));
      ASSERT_EQ(decimal(rest), text(r));
    }
  }
  mpz_clears(a, b, q, r, nullptr);
}
#endif

}  // namespace
}  // namespace korel::test
