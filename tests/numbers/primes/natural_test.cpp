// Natural numbers in limbs against the kernel's integers, and Montgomery's products against division.

#include <gtest/gtest.h>
#include <random>

#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/primes/montgomery.h"
#include "numbers/primes/natural.h"

namespace korel {
namespace {

std::mt19937_64 random_source(12);

/// Random lengths, with limbs that carry and borrow.
Natural randomNatural(std::size_t mostLimbs) {
  Natural x(random_source() % (mostLimbs + 1));
  for (Limb& limb : x) {
    limb = random_source();
    if (random_source() % 4 == 0) limb = random_source() % 2 == 0 ? 0 : ~Limb{0};
  }
  dropZeroLimbs(x);
  return x;
}

TEST(Natural, AgreesWithTheIntegersOfTheKernel) {
  for (int i = 0; i < 3000; ++i) {
    const Natural a = randomNatural(6), b = randomNatural(4);
    DAG x = integerOf(a), y = integerOf(b);
    ASSERT_EQ(naturalOf(x), a);
    ASSERT_EQ(naturalOf(addint(x, y)), sum(a, b));
    ASSERT_EQ(naturalOf(mulint(x, y)), product(a, b));
    if (compareNaturals(a, b) >= 0) {
      ASSERT_EQ(sum(difference(a, b), b), a);
    }
    ASSERT_EQ(naturalOf(igcd(x, y)), greatestCommonDivisor(a, b));
    if (b.empty()) continue;
    Natural rest = a;
    const Natural quotient = divide(rest, b);
    ASSERT_LT(compareNaturals(rest, b), 0);
    ASSERT_EQ(sum(product(quotient, b), rest), a);
    ASSERT_EQ(residue(a, b[0] | 1), remainder(a, {b[0] | 1}).empty() ? 0 : remainder(a, {b[0] | 1})[0]);
  }
}

TEST(Natural, RootsInversesAndSymbols) {
  for (int i = 0; i < 500; ++i) {
    const Natural a = randomNatural(5);
    const auto k = static_cast<unsigned>(2 + random_source() % 5);
    const Natural root = truncatedRootOf(a, k), above = sum(root, {1});
    Natural power{1}, next{1};
    for (unsigned j = 0; j < k; ++j) {
      power = product(power, root);
      next = product(next, above);
    }
    ASSERT_LE(compareNaturals(power, a), 0);
    ASSERT_GT(compareNaturals(next, a), 0);
    Natural m = sum(product(randomNatural(3), {2}), {3});
    const Natural g = greatestCommonDivisor(a, m);
    if (g == Natural{1}) {
      ASSERT_EQ(remainder(product(inverseModulo(a, m), a), m), Natural{1});
      ASSERT_EQ(jacobiSymbol(product(a, a), m), 1);
    } else {
      ASSERT_EQ(jacobiSymbol(a, m), 0);
    }
  }
}

TEST(Montgomery, AgreesWithDivision) {
  for (int i = 0; i < 1000; ++i) {
    const Natural n = sum(product(randomNatural(4), {2}), {3});
    const MontgomeryModulus m(n);
    const Natural a = remainder(randomNatural(6), n), b = remainder(randomNatural(6), n);
    const Natural x = m.form(a), y = m.form(b);
    Natural r(m.limbs());
    m.multiply(r.data(), x.data(), y.data());
    ASSERT_EQ(m.valueOf(r), remainder(product(a, b), n));
    m.square(r.data(), x.data());
    ASSERT_EQ(m.valueOf(r), remainder(product(a, a), n));
    m.add(r.data(), x.data(), y.data());
    ASSERT_EQ(m.valueOf(r), remainder(sum(a, b), n));
    m.subtract(r.data(), x.data(), y.data());
    ASSERT_EQ(remainder(sum(m.valueOf(r), b), n), a);
    const LimbModulus one(n[0] | 1);
    const Limb u = random_source(), v = random_source();
    ASSERT_EQ(one.multiply(one.multiply(one.form(u), one.form(v)), 1),
              static_cast<Limb>(DoubleLimb{u % one.modulus()} * (v % one.modulus()) % one.modulus()));
  }
}

// Windows of each width, with exponents that begin, end or consist of zeros and ones.
TEST(Montgomery, PowersAgreeWithSquaringAndMultiplying) {
  for (int i = 0; i < 200; ++i) {
    const Natural n = sum(product(randomNatural(3), {2}), {3});
    const MontgomeryModulus m(n);
    const Natural a = m.form(randomNatural(3)), exponent = sum(randomNatural(1 + i % 5), {1});
    Natural r, expected = m.one();
    for (std::size_t bit = bitLength(exponent); bit-- > 0;) {
      m.multiply(expected.data(), expected.data(), expected.data());
      if (bitAt(exponent, bit)) m.multiply(expected.data(), expected.data(), a.data());
    }
    ASSERT_TRUE(m.power(r, a, exponent));
    ASSERT_EQ(r, expected);
  }
}

}  // namespace
}  // namespace korel
