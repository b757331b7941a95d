#include "kernel_fixture.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer_oracle.h"
#include "store/objects.h"

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

// Lengths at which a reciprocal stands in for division: q b + r = a modulo primes, and r below b.
TEST(IntegerFunctions, VeryLongDivisionGivesItsOperandsBack) {
  Random random(37);
  for (int i = 0; i < 24; ++i) {
    Word lb = static_cast<Word>(5900 + random.below(9000)), more = static_cast<Word>(5900 + random.below(16000));
    DAG a = random.heapOf(lb + more), b = random.heapOf(lb), q, r;
    if (i % 3 == 0) a = addint(mulint(b, random.heapOf(more)), immediate(static_cast<std::int32_t>(i % 2) - 1));
    q = IntegerDivide(a, b, &r);
    ASSERT_LT(compint(r, b), 0) << "case " << i;
    for (std::uint64_t p : testPrimes) {
      std::uint64_t back = (timesModulo(residue(q, p), residue(b, p), p) + residue(r, p)) % p;
      ASSERT_EQ(back, residue(a, p)) << "case " << i << " of seed " << random.seed;
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
    DAG n = random.upTo(static_cast<Word>(1 + random.below(i % 50 == 0 ? 6000 : 60)));
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

// Residues, halves, shifts and cofactors, each by what defines it.
TEST(IntegerFunctions, ResiduesShiftsAndCofactors) {
  Random random(36);
  for (int i = 0; i < 20000; ++i) {
    DAG x = random.upTo(static_cast<Word>(1 + random.below(20)));
    DAG m = random.upTo(static_cast<Word>(1 + random.below(6)));
    if (m == cons0) continue;
    SCOPED_TRACE(decimal(x) + ", " + decimal(m));
    DAG positive = imod(x, m, false), symmetric = imod(x, m, true);
    DAG absolute = hasTag(m, INTNEG) ? complint(m) : m;
    ASSERT_TRUE(positive == cons0 || hasTag(positive, INTPOS));
    ASSERT_LT(compint(positive, m), 0);
    ASSERT_LE(compint(addint(symmetric, symmetric), m), 0);
    DAG r;
    for (DAG residue : {positive, symmetric}) {
      IntegerDivide(addint(x, complint(residue)), absolute, &r);
      ASSERT_EQ(r, cons0);
    }
    DAG parts[2];
    gcdsimpl(CopyAlg(x), CopyAlg(m), parts);
    if (x != cons0) {
      ASSERT_EQ(decimal(mulint(parts[0], m)), decimal(mulint(parts[1], x)));
      ASSERT_EQ(decimal(igcd(parts[0], parts[1])), "1");
    }
    std::int64_t k = random.below(30);
    DAG up = shift10p(x, k);
    ASSERT_EQ(decimal(shift10p(up, -k)), decimal(x));
    ASSERT_EQ(isodd(x), decimal(x).back() % 2 != 0);
  }
}

TEST(IntegerFunctions, PrimesAndFactorsOfTen) {
  const int primes[] = {2, 3, 5, 7, 97, 7919, 65537, 1000003, 2147483647};
  const int composites[] = {4, 9, 91, 7917, 65535, 1000001, 2147483645};
  for (int p : primes) EXPECT_TRUE(isPrime(p)) << p;
  for (int n : composites) EXPECT_FALSE(isPrime(n)) << n;
  for (auto [from, prime] : {std::pair{90, 97}, {7907, 7907}, {7908, 7919}, {100000, 100003}})
    EXPECT_EQ(firstPrime(from), prime);
  DAG x = integer("1250000000000000000000"), y = cons1;
  std::int64_t places = pow10Elim(&x, &y);
  // 125 * 10^19: every factor of five left takes a two from elsewhere and counts as a ten.
  EXPECT_EQ(places, 22);
  EXPECT_EQ(decimal(x) + " " + decimal(y), "1 8");
}

TEST(IntegerFunctions, LimitsAreKeptBeforeAnythingIsBuilt) {
  EXPECT_EQ(say("2^(10^12);"), "Error, integer too large in context");
  EXPECT_EQ(say("factorial(10^9);").substr(0, 5), "Error");
  EXPECT_EQ(say("1000!/998!;"), "999000");
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

// Relations of the continued fraction: A^2 is Q modulo N, s is Q's smooth part within the bound; and two
// runs of ten steps end where one of twenty does.
TEST(IntegerFunctions, ContinuedFractionRelationsHold) {
  for (const char* text : {"13290059", "1000036000099", "1000000000000000000000000000057"}) {
    DAG n = integer(text), g = isqrt(n);
    if (compint(mulint(g, g), n) > 0) g = addint(g, consm1);
    auto run = [&](DAG from, int count, const char* bound) {
      DAG state = newl2(11, EXPSEQ);
      for (Word i = 1; i <= 5; ++i) state[i] = from[i];
      const DAG rest[] = {g, n, immediate(count), integer("200560490130"), integer(bound)};
      for (Word i = 0; i < 5; ++i) state[6 + i] = rest[i];
      return MorrBrilCull(state)[1];
    };
    DAG start = newSequence({cons0, cons1, n, cons1, g});
    DAG ten = run(start, 10, "1000"), twenty = run(ten, 10, "1000"), whole = run(start, 20, "1000");
    for (Word i = 1; i <= 5; ++i) EXPECT_EQ(decimal(twenty[i]), decimal(whole[i])) << text << ", word " << i;
    DAG all = run(start, 20, "1000000000000000000000000000000000000")[6][1];
    EXPECT_EQ(lengthOf(all), 21u);
    for (DAG relations : {all, whole[6][1]})
      for (Word i = 1; i < lengthOf(relations); ++i) {
        DAG a = relations[i][1][1], q = relations[i][1][2], s = relations[i][1][3], rest;
        EXPECT_EQ(imod(addint(mulint(a, a), complint(q)), n, false), cons0);
        DAG left = IntegerDivide(q, s, &rest);
        EXPECT_EQ(rest, cons0);
        if (relations != all) {
          EXPECT_LE(compint(left, immediate(1000)), 0);
        }
      }
  }
}

// A root's neighbours, around powers of the group base and squares; the truncated root beside the nearest.
TEST(IntegerFunctions, RootsAtTheEdges) {
  // The largest below a power of the group base: the nearest root is a digit longer.
  for (int e : {160, 3200}) {
    DAG power = times10p(cons1, e), n = addint(mulint(power, power), complint(shift10p(power, 0)));
    EXPECT_EQ(decimal(isqrt(addint(n, cons1))), decimal(power)) << e;
    EXPECT_EQ(decimal(isqrt(n)), decimal(addint(power, consm1))) << e;
    DAG between = addint(mulint(power, power), complint(times10p(immediate(6), e - 1)));
    EXPECT_EQ(decimal(isqrt(between)), decimal(power)) << e;
  }
  for (int e : {8, 15, 16, 17, 31, 32, 33, 64, 96, 160, 1000, 1003, 2096, 4801})
    for (int k : {1, 2, 4, 9, 25}) {
      DAG root = mulint(immediate(k), times10p(cons1, e)), square = mulint(root, root);
      for (int step : {-1, 0, 1}) {
        bool exact;
        DAG n = addint(square, immediate(step));
        EXPECT_EQ(decimal(isqrt(n)), decimal(root)) << k << "e" << e << " and " << step;
        EXPECT_EQ(decimal(truncatedRoot(n, &exact)), decimal(step < 0 ? addint(root, consm1) : root));
        EXPECT_EQ(exact, step == 0);
      }
      // Halfway: r^2 + r is nearer to r, its successor to r + 1.
      EXPECT_EQ(decimal(isqrt(addint(square, root))), decimal(root));
      EXPECT_EQ(decimal(isqrt(addint(addint(square, root), cons1))), decimal(addint(root, cons1)));
    }
}

}  // namespace
}  // namespace korel::test
