// The engine's products, quotients and greatest common divisors against the kernel's plain ways, on random polynomials.

#include <gtest/gtest.h>
#include <random>
#include <string>

#include "algebra/engine/coprime_test.h"
#include "algebra/engine/image_gcd.h"
#include "algebra/engine/polynomial_procedures.h"
#include "algebra/engine/small_modulus.h"
#include "algebra/polynomials/divide.h"
#include "algebra/polynomials/expand.h"
#include "algebra/polynomials/gcd_remainders.h"
#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel::test {

namespace {

// Random polynomials as texts: dense and sparse ones, with short and long coefficients, monomials and numbers.
class RandomPolynomialTexts {
 public:
  explicit RandomPolynomialTexts(std::uint32_t seed) : random_(seed) {}

  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  std::string number() {
    std::string digits = std::to_string(below(19) - 9);
    if (below(6) == 0) digits += std::to_string(1000000 + below(1000000)) + std::to_string(1000000 + below(1000000));
    return digits;
  }
  std::string polynomial(int variables, int terms, int degree) {
    static const char* const names[] = {"x", "y", "z", "u", "v"};
    std::string sum = number();
    for (int i = 0; i < terms; ++i) {
      sum += "+(" + number() + ")";
      for (int v = 0; v < variables; ++v)
        if (const int e = below(degree + 1); e != 0) sum += std::string("*") + names[v] + "^" + std::to_string(e);
    }
    return sum;
  }

 private:
  std::mt19937 random_;
};

DAG polynomialOf(const std::string& sum) { return simpl(valueOf(("expand(" + sum + ")").c_str())); }
DAG plainProduct(DAG a, DAG b) { return simpl(productByTerms(a, b)); }
bool isSum(DAG x) { return isTag(x, SUM) && lengthOf(x) > 3; }

// The operands as the methods take them, and what a method answers, as an expression.
DAG gcdBy(engine::ImageMethod method, DAG a, DAG b) {
  engine::Arena arena;
  engine::Layout layout;
  engine::Operand operands[2] = {{.sum = a}, {.sum = b}};
  std::int64_t ranges[engine::mostVariables], zeros[engine::mostVariables] = {};
  if (!engine::survey(layout, operands, 2)) return DAG();
  for (int v = 0; v < layout.count; ++v) {
    ranges[v] = std::max(operands[0].highest[v], operands[1].highest[v]);
    // A monomial factor or a variable that one of them lacks is taken away before.
    for (const engine::Operand& operand : operands)
      if (operand.lowest[v] != 0 || operand.highest[v] == 0) return DAG();
  }
  if (!engine::assignFields(layout, ranges)) return DAG();
  engine::IntegerPolynomial p = engine::packIntegers(arena, layout, operands[0]);
  engine::IntegerPolynomial q = engine::packIntegers(arena, layout, operands[1]), g;
  engine::makePrimitive(p);
  engine::makePrimitive(q);
  if (!engine::gcdByImages(arena, layout, p, q, g, method)) return DAG();
  return engine::unpackIntegers(arena, layout, g.monomials, g.coefficients, g.count, zeros, cons1);
}

bool isEqualOrOpposite(DAG a, DAG b) { return a == b || simpl(mul(consm1, a)) == b || plainProduct(consm1, a) == b; }
bool isAssociate(DAG a, DAG b) {
  DAG q;
  return divide(a, b, q) && divide(b, a, q);
}

}  // namespace

// Products, and quotients that undo them; one more in the dividend, and there is none.
TEST(Engine, ProductsAndQuotients) {
  RandomPolynomialTexts texts(5);
  for (int round = 0; round < 150; ++round) {
    const int variables = 1 + texts.below(5);
    const std::string p = texts.polynomial(variables, 2 + texts.below(12), 1 + texts.below(6));
    const std::string q = texts.polynomial(variables, 2 + texts.below(12), 1 + texts.below(6));
    DAG a = polynomialOf(p), b = polynomialOf(q);
    if (!isSum(a) || !isSum(b)) continue;
    SCOPED_TRACE(p + "   times   " + q);
    DAG product = engine::product(a, b), quotient;
    ASSERT_EQ(product, plainProduct(a, b));
    EXPECT_EQ(engine::powerOfSum(a, immediate(2)), plainProduct(a, a));
    ASSERT_EQ(engine::quotient(product, b, quotient), engine::Divided::yes);
    EXPECT_EQ(quotient, a);
    DAG more = simpl(new5(SUM, product, cons1, cons1, cons1));
    EXPECT_EQ(engine::quotient(more, b, quotient) == engine::Divided::yes, divideByTerms(more, b, quotient));
  }
}

// The methods agree, and with remainder sequences, whatever the leading coefficients and contents are.
TEST(Engine, GreatestCommonDivisors) {
  RandomPolynomialTexts texts(11);
  int dense = 0, sparse = 0;
  for (int round = 0; round < 200; ++round) {
    const int variables = 1 + texts.below(3), degree = 1 + texts.below(3);
    const std::string common = texts.polynomial(variables, texts.below(5), degree);
    const std::string p = texts.polynomial(variables, 1 + texts.below(4), degree);
    const std::string q = texts.polynomial(variables, 1 + texts.below(4), degree);
    DAG a = polynomialOf("(" + p + ")*(" + common + ")"), b = polynomialOf("(" + q + ")*(" + common + ")");
    if (!isSum(a) || !isSum(b)) continue;
    SCOPED_TRACE("(" + common + ") times (" + p + ") and (" + q + ")");
    DAG g = engine::gcd(a, b);
    ASSERT_TRUE(g);
    // Remainders grow: in more variables they are multiplied in the library, which is none here.
    EXPECT_TRUE(variables > 1 || isEqualOrOpposite(g, gcdByRemainders(a, b)));
    DAG content = simpl(icontent(g)), quotient;
    ASSERT_TRUE(divide(g, content, quotient));
    if (DAG other = gcdBy(engine::ImageMethod::dense, a, b); other) {
      ++dense;
      EXPECT_TRUE(isAssociate(other, quotient));
    }
    if (DAG other = gcdBy(engine::ImageMethod::sparse, a, b); other) {
      ++sparse;
      EXPECT_TRUE(isAssociate(other, quotient));
    }
  }
  EXPECT_GT(dense, 40);
  EXPECT_GT(sparse, 40);
}

// Powers of sums whose terms have variables of their own, by the multinomial theorem, and of others: one and several
// limbs, negative and long coefficients, powers of variables, fractions, exponents below 0.
TEST(Engine, PowersOfSums) {
  for (const char* sum : {"x+y+1", "x-y", "2*x-3*y+5*z-1", "x+y+z+u+v", "x^3+y^2-z", "10^12*x+7*y^5-10^9",
                          "x*y+z^2+u*v", "x*y+x*z+y*z", "x^2+x+1", "x/2-y/3+z/7+1", "x^(-2)+y+3", "x*y+x+1", "-x-y-z"})
    for (int n : {2, 3, 7, 17}) {
      SCOPED_TRACE(std::string(sum) + " to the power " + std::to_string(n));
      DAG a = polynomialOf(sum), power = a;
      for (int k = 1; k < n; ++k) power = engine::product(power, a);
      EXPECT_EQ(engine::powerOfSum(a, immediate(n)), power);
    }
}

// What passes for coprime has no common factor but a number; without one most pairs pass.
TEST(Engine, CoprimeTest) {
  RandomPolynomialTexts texts(17);
  int coprime = 0, passed = 0;
  for (int round = 0; round < 300; ++round) {
    const int variables = 1 + texts.below(3), degree = 1 + texts.below(3);
    const std::string common = round % 2 == 0 ? "1" : texts.polynomial(variables, 1 + texts.below(2), degree);
    const std::string p = "(" + common + ")*(" + texts.polynomial(variables, 1 + texts.below(4), degree) + ")";
    const std::string q = "(" + common + ")*(" + texts.polynomial(variables, 1 + texts.below(3), degree) + "+x^5)";
    DAG a = polynomialOf(p), b = polynomialOf(q);
    if (!isSum(a) || !isSum(b)) continue;
    SCOPED_TRACE(p + " and " + q);
    engine::Arena arena;
    engine::CoprimeTest test(arena, a);
    const bool isOne = isNumber(engine::gcd(a, b));
    const bool passes = test.isCoprimeTo(b);
    EXPECT_EQ(passes, test.isCoprimeTo(b));
    EXPECT_TRUE(isOne || !passes);
    coprime += isOne;
    passed += passes;
  }
  EXPECT_GT(coprime, 100);
  EXPECT_GT(passed, coprime * 3 / 4);
}

// Sums of two products, whatever cancels, and with powers below 0.
TEST(Engine, SumsOfProducts) {
  RandomPolynomialTexts texts(23);
  for (int round = 0; round < 60; ++round) {
    DAG p[4];
    std::string trace;
    for (DAG& factor : p) {
      const std::string text = texts.polynomial(3, 1 + texts.below(6), 4) + (texts.below(3) == 0 ? "+1/x^2" : "+z^5");
      factor = polynomialOf(text);
      trace += "(" + text + ") ";
    }
    SCOPED_TRACE(trace);
    DAG plain = simpl(new5(SUM, plainProduct(p[0], p[1]), cons1, plainProduct(p[2], p[3]), cons1));
    EXPECT_EQ(engine::sumOfProducts(p[0], p[1], p[2], p[3]), plain);
    EXPECT_EQ(engine::sumOfProducts(p[0], p[1], plainProduct(p[0], consm1), p[1]), cons0);
  }
}

// Coefficients of many primes, degrees that differ, a divisor that is led by a polynomial.
TEST(Engine, LargeDivisors) {
  for (const char* common : {"(3*y^2-z)*x^3+10^60*x*y+7*z^2-1", "x^9*(y+z)+(y-z)^8+2^200*x-5", "x+y+z+1"})
    for (const char* cofactors : {"x^2*y*z+1,x^2+y^2-z^3", "(y+z)*x-3,(y-z)*x+10^40", "(2*x+y)^4+z,(x-3*z)^5-y"}) {
      const std::string pair = cofactors;
      const std::string p = pair.substr(0, pair.find(',')), q = pair.substr(pair.find(',') + 1);
      SCOPED_TRACE(std::string(common) + " times " + pair);
      DAG g = polynomialOf(common);
      DAG a = polynomialOf("(" + std::string(common) + ")*(" + p + ")");
      DAG b = polynomialOf("(" + std::string(common) + ")*(" + q + ")");
      EXPECT_TRUE(isEqualOrOpposite(engine::gcd(a, b), g));
      DAG dense = gcdBy(engine::ImageMethod::dense, a, b), sparse = gcdBy(engine::ImageMethod::sparse, a, b);
      ASSERT_TRUE(dense);
      EXPECT_TRUE(isEqualOrOpposite(dense, g));
      EXPECT_TRUE(!sparse || isEqualOrOpposite(sparse, g));
    }
}

// Products and inverses by Montgomery's rule, at the ends of the range of residues and of primes.
TEST(Engine, SmallModulus) {
  std::mt19937_64 random(3);
  for (std::uint32_t prime : {3u, 5u, 65537u, 2147483629u, 2147483647u}) {
    const engine::SmallModulus m(prime);
    for (int round = 0; round < 2000; ++round) {
      const std::uint32_t a = round < 2 ? prime - 1 : static_cast<std::uint32_t>(random() % prime);
      const std::uint32_t b = round < 1 ? prime - 1 : static_cast<std::uint32_t>(random() % prime);
      EXPECT_EQ(m.out(m.in(a)), a);
      EXPECT_EQ(m.out(m.multiply(m.in(a), m.in(b))), std::uint64_t{a} * b % prime)
          << a << " * " << b << " mod " << prime;
      EXPECT_EQ(m.out(m.subtract(m.in(a), m.in(b))), (a + prime - b) % std::uint64_t{prime});
      EXPECT_TRUE(a == 0 || m.multiply(m.in(a), m.inverse(m.in(a))) == m.one());
    }
    std::uint64_t sum = 0, expected = 0;
    for (int k = 0; k < 1000; ++k) {
      sum = m.accumulate(sum, prime - 1, prime - 1);
      expected = (expected + std::uint64_t{prime - 1} * (prime - 1)) % prime;
    }
    EXPECT_EQ(m.in(m.reduce(sum)), expected);
  }
}

}  // namespace korel::test
