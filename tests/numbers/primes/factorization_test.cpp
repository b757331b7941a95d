// Each method by itself on numbers that it is made for, and primes against a plain sieve.

#include <gtest/gtest.h>
#include <random>

#include "kernel_fixture.h"
#include "numbers/primes/factorization.h"
#include "numbers/primes/primality.h"

namespace korel {
namespace {

Natural primeNear(const Natural& x) {
  Natural found;
  EXPECT_EQ(nextPrime(x, found), Answer::yes);
  return found;
}

void expectDivisor(Answer answer, const Natural& divisor, const Natural& n) {
  ASSERT_EQ(answer, Answer::yes);
  EXPECT_NE(divisor, Natural{1});
  EXPECT_NE(divisor, n);
  EXPECT_TRUE(remainder(n, divisor).empty());
}

TEST(Primality, SmallNumbersAgainstASieve) {
  const auto primes = primesBelow(200000);
  std::size_t at = 0;
  for (Limb n = 0; n < 200000; ++n) {
    const bool prime = at < primes.size() && primes[at] == n;
    if (prime) ++at;
    ASSERT_EQ(isPrimeLimb(n), prime) << n;
  }
  ASSERT_EQ(primeCount(199999), static_cast<std::int64_t>(primes.size()));
}

// Carmichael numbers and products of two primes p, 2p - 1 pass many bases: none may pass as a prime of two limbs.
TEST(Primality, HardCompositesOfTwoLimbs) {
  std::mt19937_64 random(5);
  for (int found = 0; found < 60;) {
    const Limb p = random() >> 24 | 1;
    if (!isPrimeLimb(p) || !isPrimeLimb(2 * p - 1)) continue;
    ++found;
    ASSERT_EQ(isPrimeNatural(product({p}, {2 * p - 1})), Answer::no) << p;
  }
}

// Each 2^p - 1 with a prime p passes the strong test to base 2: what tells them apart is the test of Lucas.
TEST(Primality, NumbersOfMersenne) {
  std::vector<std::uint32_t> exponents;
  for (std::uint32_t p : primesBelow(1300))
    if (isPrimeNatural(difference(shiftedLeft({1}, p), {1})) == Answer::yes) exponents.push_back(p);
  EXPECT_EQ(exponents, (std::vector<std::uint32_t>{2, 3, 5, 7, 13, 17, 19, 31, 61, 89, 107, 127, 521, 607, 1279}));
}

TEST(Factorization, EachMethodFindsWhatItIsFor) {
  std::mt19937_64 random(6);
  Natural divisor;
  for (int i = 0; i < 40; ++i) {
    const Natural p = primeNear({random() >> 34}), q = primeNear({random() >> 34});
    const Natural n = product(p, q);
    if (p == q) continue;
    expectDivisor(Answer::yes, {rhoDivisor(n[0])}, n);
  }
  for (Limb base = 400; base < 420; ++base) {
    SCOPED_TRACE(base);
    const Natural p = primeNear(shiftedLeft({base}, 22)), q = primeNear(shiftedLeft({base + 7}, 90));
    Answer answer = Answer::no;
    for (Limb sigma = 6; sigma < 60 && answer == Answer::no; ++sigma)
      answer = curveDivisor(product(p, q), sigma, 300, divisor);
    expectDivisor(answer, divisor, product(p, q));
  }
  for (std::size_t bits = 34; bits <= 70; bits += 4) {
    SCOPED_TRACE(bits);
    const Natural p = primeNear(shiftedLeft({random() >> 34 | 1}, bits - 30));
    const Natural q = primeNear(shiftedLeft({random() >> 34 | 1}, bits - 30));
    expectDivisor(quadraticSieveDivisor(product(p, q), divisor), divisor, product(p, q));
  }
  // 10^9 + 20 = 2^2 3 5 19 739 1187, while 2^64 + 12 has a prime of 18 digits.
  const Natural n = product({1000000021}, sum(shiftedLeft({1}, 64), {13}));
  expectDivisor(pMinusOneDivisor(n, 20000, divisor), divisor, n);
}

}  // namespace
}  // namespace korel
