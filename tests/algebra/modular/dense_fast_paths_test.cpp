// The fast ways of long products, quotients and greatest common divisors against the plain ones, around every cut-over.

#include <gtest/gtest.h>

#include "algebra/modular/dense_half_gcd.h"
#include "algebra/modular/dense_objects.h"
#include "algebra/modular/dense_transform.h"
#include "algebra/modular/galois_rings.h"
#include "algebra/modular/polynomial_model.h"
#include "algebra/modular/vector_words.h"

namespace korel::test {

namespace {

template <class R>
using Unit = typename R::Unit;

// Random coefficients, with runs of zeros and of the largest residue; the top one is 1.
template <class R>
Dense<R> randomDense(const R& ring, Workspace& space, std::mt19937_64& random, long degree) {
  Dense<R> a = {ring.take(space, degree + 1), degree};
  auto* one = ring.take(space, 1);
  ring.setSmall(one, 1);
  const auto kind = random() % 4;
  for (long i = 0; i <= degree; ++i) {
    auto* c = ring.at(a.c, i);
    if (kind == 0 || random() % 16 == 0) ring.negate(c, one);
    else if (kind == 1 && random() % 4 != 0) ring.clear(c, 1);
    else {
      ring.setSmall(c, random());
      for (int k = 0; k < 6; ++k) {
        auto* more = ring.take(space, 1);
        ring.setSmall(more, random());
        ring.multiply(c, c, more);
        ring.add(c, c, more);
      }
    }
  }
  ring.copy(ring.at(a.c, degree), one, 1);
  return a;
}

template <class R>
bool sameCoefficients(const R& ring, const Unit<R>* a, const Unit<R>* b, long n) {
  for (long i = 0; i < n; ++i)
    if (!ring.isEqual(ring.at(a, i), ring.at(b, i))) return false;
  return true;
}

template <class R>
void compareProducts(const R& ring, Workspace& space, std::mt19937_64& random, long na, long nb) {
  Dense<R> a = randomDense(ring, space, random, na - 1), b = randomDense(ring, space, random, nb - 1);
  auto *plain = ring.take(space, na + nb), *fast = ring.take(space, na + nb);
  schoolMultiply(ring, plain, a.c, na, b.c, nb);
  multiplyDense(ring, fast, a, b);
  EXPECT_TRUE(sameCoefficients(ring, plain, fast, na + nb - 1)) << na << " times " << nb;
  if (na != nb) return;
  schoolMultiply(ring, plain, a.c, na, a.c, na);
  multiplyDense(ring, fast, a, a);
  EXPECT_TRUE(sameCoefficients(ring, plain, fast, 2 * na - 1)) << "square of " << na;
}

// The quotient by the series and the plain one; both rebuild the dividend.
template <class R>
void compareQuotients(const R& ring, Workspace& space, std::mt19937_64& random, long na, long nb) {
  Dense<R> a = randomDense(ring, space, random, na - 1), b = randomDense(ring, space, random, nb - 1);
  Dense<R> other = copied(ring, space, a, 0);
  auto *q = ring.take(space, na - nb + 1), *p = ring.take(space, na - nb + 1);
  Divisor<R> plain = preparedDivisor(ring, space, b, 0), fast = preparedDivisor(ring, space, b, na - nb + 1);
  const long d = divideDense(ring, a.c, a.degree, plain, q), e = divideDense(ring, other.c, other.degree, fast, p);
  EXPECT_EQ(d, e) << na << " by " << nb;
  EXPECT_TRUE(sameCoefficients(ring, q, p, na - nb + 1)) << na << " by " << nb;
  EXPECT_TRUE(sameCoefficients(ring, a.c, other.c, d + 1)) << na << " by " << nb;
}

constexpr const char* moduli[] = {"2",     "3",      "101",         "46320", "46327", "46337", "100000000000000000039",
                                  "10^60", "2^64*3", "10^100 + 267"};

template <class Body>
void forEachRing(Body body) {
  for (const char* modulus : moduli) {
    SCOPED_TRACE(modulus);
    withModularRing(simpl(valueOf(modulus)), [&](const auto& ring, Workspace&) { body(ring); });
  }
}

}  // namespace

TEST(DenseFastPaths, LongProductsAreThePlainOnes) {
  std::mt19937_64 random(17);
  forEachRing([&](const auto& ring) {
    const bool hardware = std::remove_cvref_t<decltype(ring)>::isHardware;
    for (long n : {1, 7, 8, 9, 38, 39, 40, 41, 100, 255, 256, 257, 399, 400, 401, 600}) {
      if (!hardware && n > 160) continue;
      for (long k : {n, n + 1, 2 * n + 3, 40L}) {
        Workspace space;
        compareProducts(ring, space, random, n, k);
      }
    }
  });
}

TEST(DenseFastPaths, LongQuotientsAreThePlainOnes) {
  std::mt19937_64 random(18);
  forEachRing([&](const auto& ring) {
    const bool hardware = std::remove_cvref_t<decltype(ring)>::isHardware;
    for (long n : {2, 3, 4, 5, 23, 24, 25, 60, 61, 100, 899, 900, 901}) {
      if (!hardware && n > 100) continue;
      for (long total : {n + 1, 2 * n - 1, 2 * n, 2 * n + 1, 5 * n + 7}) {
        Workspace space;
        compareQuotients(ring, space, random, total, n);
      }
    }
  });
}

// With quotients of two coefficients, words take a loop of their own: a polynomial is rebuilt from each.
TEST(DenseFastPaths, NeighboursDivide) {
  std::mt19937_64 random(19);
  for (const char* modulus : {"2", "3", "101", "46327", "46320"}) {
    DAG m = simpl(valueOf(modulus));
    withModularRing(m, [&](const auto& ring, Workspace&) {
      for (long n = 1; n < 60; ++n) {
        Workspace space;
        auto a = randomDense(ring, space, random, n + 1), b = randomDense(ring, space, random, n);
        auto rest = copied(ring, space, a, 0);
        auto *q = ring.take(space, 2), *product = ring.take(space, n + 3);
        rest.degree = divideDense(ring, rest.c, rest.degree, preparedDivisor(ring, space, b, 0), q);
        EXPECT_LT(rest.degree, n);
        schoolMultiply(ring, product, b.c, n + 1, q, 2);
        addDense(ring, product, {product, n + 1}, rest);
        EXPECT_TRUE(sameCoefficients(ring, product, a.c, n + 2)) << modulus << ", degree " << n;
      }
    });
  }
}

TEST(DenseFastPaths, VectorSumsAreExact) {
  std::mt19937_64 random(20);
  std::vector<Word> x(300), y(300);
  for (Word& c : x) c = random() % 4 == 0 ? 46326 : static_cast<Word>(random() % 46327);
  for (Word& c : y) c = random() % 4 == 0 ? 46326 : static_cast<Word>(random() % 46327);
  if (!hasVectorInstructions()) GTEST_SKIP();
  for (long n = 0; n < 290; ++n) {
    std::uint64_t sum = 0;
    for (long i = 0; i < n; ++i) sum += static_cast<std::uint64_t>(x[i + 1]) * y[i + 3];
    EXPECT_EQ(vectorDot(x.data() + 1, y.data() + 3, n), sum) << n;
  }
}

// Over GF(p^k) a long product is one over the field below.
TEST(DenseFastPaths, ProductsOverExtensions) {
  std::mt19937_64 random(21);
  forEachRing([&](const auto& base) {
    for (long k : {1, 2, 5})
      for (long n : {1, 2, 3, 17, 40}) {
        Workspace space;
        GaloisRing ring(base, space, randomDense(base, space, random, k));
        compareProducts(ring, space, random, n, n + 3);
        compareProducts(ring, space, random, n, n);
        if (n > 3) compareQuotients(ring, space, random, 3 * n, n);
      }
  });
}

// Euclid's algorithm by halves and step by step; operands with and without a common factor, with jumps of the degree.
TEST(DenseFastPaths, GreatestCommonDivisorsByHalves) {
  std::mt19937_64 random(22);
  for (const char* modulus : {"2", "46327", "10^100+267"}) {
    SCOPED_TRACE(modulus);
    withModularRing(simpl(valueOf(modulus)), [&](const auto& ring, Workspace&) {
      const long least = halfGcdFrom(ring);
      for (long common : {0L, least + 3})
        for (long jump : {1L, 40L}) {
          Workspace space;
          auto g = randomDense(ring, space, random, common), u = randomDense(ring, space, random, least + jump),
               v = randomDense(ring, space, random, least);
          auto a = g, b = g;
          a.c = ring.take(space, common + u.degree + 1);
          b.c = ring.take(space, common + u.degree + 1);
          a.degree = multiplyDense(ring, a.c, g, u);
          b.degree = multiplyDense(ring, b.c, g, v);
          auto c = copied(ring, space, a, 0), d = copied(ring, space, b, a.degree);
          while (d.degree >= 0) {
            Workspace step;
            c.degree =
                divideDense(ring, c.c, c.degree, preparedDivisor(ring, step, d, 0), ring.take(step, a.degree + 1));
            std::swap(c, d);
          }
          scaleDense(ring, c.c, c, invertedLead(ring, space, c));
          auto result = gcdDense(ring, a, b);
          EXPECT_EQ(result.degree, c.degree) << common << ", " << jump;
          EXPECT_TRUE(sameCoefficients(ring, result.c, c.c, c.degree + 1)) << common << ", " << jump;
        }
    });
  }
}

// Many points at once: values by trees are those by Horner's rule, and give the polynomial back.
TEST(DenseFastPaths, ManyPoints) {
  std::mt19937_64 random(23);
  for (const char* modulus : {"46327", "46337", "10^100+267"}) {
    SCOPED_TRACE(modulus);
    withModularRing(simpl(valueOf(modulus)), [&](const auto& ring, Workspace&) {
      for (long n : {63, 64, 65, 200, 333}) {
        Workspace space;
        auto a = randomDense(ring, space, random, n - 1);
        auto *points = ring.take(space, n), *values = ring.take(space, n), *one = ring.take(space, 1);
        auto* back = ring.take(space, n + 1);
        for (long i = 0; i < n; ++i) ring.setSmall(ring.at(points, i), static_cast<std::uint64_t>(7 * i * i + i));
        evaluateAtPoints(ring, values, a, points, n);
        for (long i = 0; i < n; ++i) {
          evaluateDense(ring, one, a, ring.at(points, i));
          EXPECT_TRUE(ring.isEqual(one, ring.at(values, i))) << n << ", " << i;
        }
        EXPECT_EQ(interpolateDense(ring, back, points, values, n), a.degree);
        EXPECT_TRUE(sameCoefficients(ring, back, a.c, n)) << n;
      }
    });
  }
  EXPECT_EQ(say("modp1(Interp([seq(k, k = 0 .. 200), 7], [seq(k, k = 0 .. 201)], x), 46327);"),
            "Error, the same point has been entered twice");
  EXPECT_EQ(say("modp1(Interp([seq(2*k, k = 0 .. 200)], [seq(k, k = 0 .. 200)], x), 46320);"),
            "Error, the modular inverse does not exist");
}

// Degrees of thousands: a product of known roots is zero there, and divides what it made.
TEST(DenseFastPaths, DegreesOfThousands) {
  const std::string check =
      "proc(p, n) local a, b, c, q, r, e, i; e := modp(10^50 + 1234, p); "
      "a := modp1(ConvertIn([seq(modp(i^3*(10^99 + 7) + i, p), i = 1 .. n)], x), p); "
      "b := modp1(ConvertIn([seq(modp(i^4*(10^98 + 3) + 1, p), i = 1 .. n - 50)], x), p); "
      "c := modp1(Multiply(a, b), p); q := modp1(Quo(c, b, 'r'), p); "
      "evalb(q = a), modp1(IsZero(r), p), evalb(modp1(Eval(c, e), p) = modp(modp1(Eval(a, e), p)*modp1(Eval(b, e), p), "
      "p)) "
      "end proc";
  EXPECT_EQ(say(("(" + check + ")(46327, 5000);").c_str()), "true, true, true");
  EXPECT_EQ(say(("(" + check + ")(10^100 + 267, 700);").c_str()), "true, true, true");
}

}  // namespace korel::test
