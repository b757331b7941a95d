// Dense polynomials against a plain model, and against identities.

#include <gtest/gtest.h>

#include "algebra/modular/modular_polynomials.h"
#include "algebra/modular/polynomial_model.h"

namespace korel::test {

namespace {

// Runs `body(ring, random, x)` so many times for each modulus, with a seed that a failure tells.
template <class Body>
void forEachModulus(int times, Body body) {
  DAG x = parsed("x");
  for (const char* modulus : modelModuli()) {
    ModelRing ring = {simpl(valueOf(modulus))};
    for (int k = 0; k < times; ++k) {
      RandomPolynomials random(static_cast<std::uint32_t>(1000 * k + 7));
      SCOPED_TRACE(std::string("modulo ") + modulus + ", case " + std::to_string(k));
      body(ring, random, x);
      if (testing::Test::HasFailure()) return;
    }
  }
}
std::string shown(DAG a, DAG b) { return text(a) + "\n" + text(b); }

}  // namespace

TEST(ModularPolynomials, SumsProductsAndShiftsFollowTheModel) {
  forEachModulus(60, [](const ModelRing& ring, RandomPolynomials& random, DAG x) {
    DAG a = random.polynomial(ring, x, 30), b = random.polynomial(ring, x, 30), m = ring.m;
    Model ma = modelOf(a), mb = modelOf(b);
    EXPECT_EQ(modelOf(mAdd(newSequence({a, b, a}), m)), ring.sum(ring.sum(ma, mb), ma)) << shown(a, b);
    EXPECT_EQ(modelOf(mSubtract(a, b, m)), ring.sum(ma, mb, consm1)) << shown(a, b);
    EXPECT_EQ(modelOf(mMultiply(a, b, m)), ring.product(ma, mb)) << shown(a, b);
    EXPECT_EQ(modelOf(mMultiply(a, a, m)), ring.product(ma, ma)) << text(a);
    Model shifted(3, cons0);
    shifted.insert(shifted.end(), ma.begin(), ma.end());
    EXPECT_EQ(modelOf(mShift(a, 3, m)), ring.trimmed(shifted)) << text(a);
    EXPECT_EQ(mShift(mShift(a, 3, m), -3, m), a);
    Model derivative;
    for (std::size_t i = 1; i < ma.size(); ++i)
      derivative.push_back(ring.reduced(mul(ma[i], immediate(static_cast<std::int32_t>(i)))));
    EXPECT_EQ(modelOf(mDiff(a, m)), ring.trimmed(derivative)) << text(a);
    EXPECT_EQ(mConvertIn(mConvertOut(a, x), x, m), a);
  });
}

TEST(ModularPolynomials, QuotientsRebuildTheDividend) {
  forEachModulus(80, [](const ModelRing& ring, RandomPolynomials& random, DAG x) {
    DAG a = random.polynomial(ring, x, 40), b = random.polynomial(ring, x, 20), m = ring.m;
    std::string error = errorOf([&] {
      DAG q, r;
      mDivide(a, b, &q, &r, m);
      EXPECT_LT(denseDegree(r), denseDegree(b)) << shown(a, b);
      EXPECT_EQ(ring.sum(ring.product(modelOf(q), modelOf(b)), modelOf(r)), modelOf(a)) << shown(a, b);
      DAG onlyQuotient, onlyRemainder;
      mDivide(a, b, &onlyQuotient, nullptr, m);
      mDivide(a, b, nullptr, &onlyRemainder, m);
      EXPECT_TRUE(onlyQuotient == q && onlyRemainder == r);
    });
    if (denseDegree(b) < 0) {
      EXPECT_EQ(error, "division by zero");
    } else {
      const bool hasInverse = mInverse(denseCoefficient(b, denseDegree(b)), m) != cons0;
      const bool divides = denseDegree(a) >= denseDegree(b);
      EXPECT_EQ(error, hasInverse || !divides ? "" : "the modular inverse does not exist") << shown(a, b);
    }
  });
}

TEST(ModularPolynomials, InversesAndPowersOfNumbers) {
  forEachModulus(100, [](const ModelRing& ring, RandomPolynomials& random, DAG) {
    DAG a = random.residue(ring), inverse = mInverse(a, ring.m);
    const bool coprime = igcd(a, ring.m) == cons1;
    EXPECT_EQ(inverse != cons0, coprime) << text(a);
    if (coprime) {
      EXPECT_EQ(ring.reduced(mul(a, inverse)), ring.reduced(cons1)) << text(a);
      EXPECT_EQ(mpower(a, immediate(-3), ring.m), ring.reduced(mul(inverse, mul(inverse, inverse)))) << text(a);
    }
    DAG power = ring.reduced(cons1);
    const auto n = static_cast<std::int32_t>(random.below(40) + 1);
    for (std::int32_t i = 0; i < n; ++i) power = ring.reduced(mul(power, a));
    EXPECT_EQ(mpower(a, immediate(n), ring.m), power) << text(a) << "^" << n;
  });
}

// The gcd is what both are multiples of; cofactors combine to it; the resultant of factors multiplies.
TEST(ModularPolynomials, TheEuclideanAlgorithmKeepsItsIdentities) {
  int refused = 0;
  forEachModulus(40, [&](const ModelRing& ring, RandomPolynomials& random, DAG x) {
    DAG m = ring.m, c = random.polynomial(ring, x, 6);
    DAG a = mMultiply(random.polynomial(ring, x, 12), c, m), b = mMultiply(random.polynomial(ring, x, 9), c, m);
    std::string error = errorOf([&] {
      DAG g = mGcd(a, b, m), s, r;
      EXPECT_EQ(mGcdex(a, b, &s, m), g) << shown(a, b);
      if (denseDegree(g) < 0) return;
      EXPECT_EQ(denseCoefficient(g, denseDegree(g)), cons1);
      for (DAG multiple : {a, b}) {
        mDivide(multiple, g, nullptr, &r, m);
        EXPECT_LT(denseDegree(r), 0) << shown(a, b);
      }
      if (denseDegree(b) < 0) return;
      mDivide(mSubtract(g, mMultiply(s, a, m), m), b, nullptr, &r, m);
      EXPECT_LT(denseDegree(r), 0) << shown(a, b);
      DAG d = random.polynomial(ring, x, 8);
      EXPECT_EQ(mResultant(mMultiply(a, d, m), b, m), ring.reduced(mul(mResultant(a, b, m), mResultant(d, b, m))))
          << shown(a, b) << "\n"
          << text(d);
      const bool odd = denseDegree(a) > 0 && (denseDegree(a) & denseDegree(b) & 1) != 0;
      EXPECT_EQ(mResultant(b, a, m), ring.reduced(mul(mResultant(a, b, m), odd ? consm1 : cons1))) << shown(a, b);
    });
    if (!error.empty()) {
      EXPECT_EQ(error, "the modular inverse does not exist");
      ++refused;
    }
  });
  EXPECT_GT(refused, 0);
}

// res(product of x - r_i, b) is the product of b(r_i).
TEST(ModularPolynomials, ResultantsAreProductsOverRoots) {
  forEachModulus(20, [](const ModelRing& ring, RandomPolynomials& random, DAG x) {
    DAG a = constantDense(cons1, x, ring.m), b = random.polynomial(ring, x, 6), product = ring.reduced(cons1);
    if (denseDegree(b) < 0) return;
    for (std::uint32_t k = random.below(7) + 1; k > 0; --k) {
      DAG root = random.residue(ring);
      a = mMultiply(a, denseOf({ring.reduced(negate(root)), ring.reduced(cons1)}, x, ring.m), ring.m);
      product = ring.reduced(mul(product, ring.value(modelOf(b), root)));
    }
    std::string error = errorOf([&] { EXPECT_EQ(mResultant(a, b, ring.m), product) << shown(a, b); });
    EXPECT_TRUE(error.empty() || error == "the modular inverse does not exist") << error;
  });
}

TEST(ModularPolynomials, PowersModuloAPolynomialAreRepeatedProducts) {
  forEachModulus(20, [](const ModelRing& ring, RandomPolynomials& random, DAG x) {
    DAG m = ring.m, a = random.polynomial(ring, x, 12), b = mShift(constantDense(cons1, x, m), 5 + random.below(4), m);
    b = mAdd(newSequence({b, random.polynomial(ring, x, 4)}), m);
    DAG product;
    mDivide(a, b, nullptr, &product, m);
    DAG reduced = product;
    if (denseDegree(reduced) < 0) return;
    const auto n = static_cast<std::int32_t>(random.below(20) + 1);
    for (std::int32_t i = 1; i < n; ++i) mDivide(mMultiply(product, reduced, m), b, nullptr, &product, m);
    EXPECT_EQ(mPowmod(a, immediate(n), b, m), product) << shown(a, b) << n;
  });
}

TEST(ModularPolynomials, ValuesInterpolationAndTranslation) {
  forEachModulus(30, [](const ModelRing& ring, RandomPolynomials& random, DAG x) {
    DAG m = ring.m, a = random.polynomial(ring, x, 25), c = random.residue(ring), at = random.residue(ring);
    Model ma = modelOf(a);
    EXPECT_EQ(mEval(a, at, m), ring.value(ma, at)) << text(a);
    EXPECT_EQ(mEval(mTranslate(a, c, m), at, m), ring.value(ma, ring.reduced(add(at, c)))) << text(a);
    Model points;
    for (int k = 0; k < 12; ++k) points.push_back(ring.reduced(add(at, immediate(k * k))));
    DAG sequence = newl2(13, EXPSEQ);
    for (Word k = 0; k < 12; ++k) sequence[k + 1] = points[k];
    DAG list = simpl(new2(LIST, simpl(sequence))), values = mEval2(a, list, m);
    for (Word k = 0; k < 12; ++k) EXPECT_EQ(values[1][k + 1], ring.value(ma, points[k])) << text(a);
    std::string error = errorOf([&] {
      DAG b = mInterpolate(list, values, x, m);
      EXPECT_LE(denseDegree(b), 11);
      EXPECT_EQ(mEval2(b, list, m), values) << text(a);
    });
    EXPECT_TRUE(error.empty() || error == "the modular inverse does not exist" ||
                error == "the same point has been entered twice")
        << error;
  });
}

// The residues of a number give it back.
TEST(ModularPolynomials, ChineseRemainders) {
  RandomPolynomials random(3);
  for (int k = 0; k < 300; ++k) {
    DAG m = newl2(6, EXPSEQ), r = newl2(6, EXPSEQ), product = cons1;
    DAG n = random.residue({simpl(valueOf("10^100"))}), prime = immediate(k % 2 == 0 ? 46000 : 100000000);
    for (Word i = 1; i < 6; ++i) {
      prime = mGetPrime(prime);
      m[i] = prime;
      r[i] = simpl(imod(n, prime, false));
      product = simpl(mul(product, prime));
    }
    DAG residues = simpl(new2(LIST, simpl(r))), moduli = simpl(new2(LIST, simpl(m)));
    EXPECT_EQ(mChrem(residues, moduli), simpl(imod(n, product, false))) << text(n);
  }
}

// The sequence of the generator is told: seed * 21216 modulo 46337, from 1 on.
TEST(ModularPolynomials, RandomNumbersFollowTheirSeed) {
  ResetModRand();
  std::uint64_t seed = 1;
  for (int k = 0; k < 1000; ++k) {
    seed = seed * 21216 % 46337;
    ASSERT_EQ(mRand(1000), seed % 1000);
  }
}

// An interrupt leaves a long product at once, and what it worked with is given back.
TEST(ModularPolynomials, LongWorkEndsByAnInterrupt) {
  FrontEnd frontEnd;
  frontEnd.interruptsAfter = 1;
  sayTo(frontEnd, "a := modp1(ConvertIn([seq(k, k = 1 .. 20000)], x), 10^100 + 267):");
  std::string said = sayTo(frontEnd, "modp1(Powmod(a, 10^1000, Shift(a, 1)), 10^100 + 267):");
  EXPECT_NE(said.find("interrupted"), std::string::npos) << said;
  frontEnd.interruptsAfter = -1;
  EXPECT_EQ(sayTo(frontEnd, "modp1(Degree(a), 10^100 + 267);"), "19999");
}

}  // namespace korel::test
