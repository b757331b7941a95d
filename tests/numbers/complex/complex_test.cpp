// Complex arithmetic: exact values against pairs of rationals, floats against the exact values.

#include "numbers/complex/complex.h"

#include <gtest/gtest.h>

#include <complex>

#include "numbers/arithmetic.h"
#include "eval/simplify/simplify.h"
#include "numbers/integer_oracle.h"
#include "kernel_fixture.h"
#include "numbers/float/hardware_float.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel::test {
namespace {

DAG makeComplex(std::int32_t re, std::int32_t im) {
  return simpl(new3(FUNCTION, ini("Complex"), newSequence({immediate(re), immediate(im)})));
}
std::int32_t realOf(DAG z) { return immediateValue(hasTag(z, COMPLEX) ? cxRealPart(z) : z); }
std::int32_t imaginaryOf(DAG z) { return hasTag(z, COMPLEX) ? immediateValue(cxImaginaryPart(z)) : 0; }

TEST(Complex, GaussianIntegersAreARing) {
  Random random(51);
  auto part = [&random] { return static_cast<std::int32_t>(random.below(200)) - 100; };
  for (int i = 0; i < 20000; ++i) {
    std::int32_t a = part(), b = part(), c = part(), d = part();
    DAG x = makeComplex(a, b), y = makeComplex(c, d);
    SCOPED_TRACE(text(x) + ", " + text(y));
    DAG sum = simpl(add(x, y)), product = simpl(mul(x, y));
    ASSERT_EQ(realOf(sum), a + c);
    ASSERT_EQ(imaginaryOf(sum), b + d);
    ASSERT_EQ(realOf(product), a * c - b * d);
    ASSERT_EQ(imaginaryOf(product), a * d + b * c);
    if (hasTag(y, COMPLEX)) {
      // y^n * y^-n is 1.
      DAG power = simpl(cxpower(y, 3)), inverse = simpl(cxpower(y, -3));
      ASSERT_EQ(simpl(mul(power, inverse)), cons1);
    }
  }
}

TEST(Complex, FloatPartsFollowTheirExactValues) {
  const char* rows[][2] = {
      {"(1.5 + 2*I)*(2 - I);", "5.0+2.5*I"}, {"(1. + I)^2;", "0.+2.*I"}, {"1/(1. + I);", ".5000000000-.5000000000*I"},
      {"(3. + 4*I)/(1 + 2*I);", "2.200000000-.4000000000*I"}, {"abs(3. + 4*I);", "5.000000000"},
      {"(2 + 3*I)^(-2);", "-5/169-12/169*I"}, {"I^3, I^(-1), (-I)^4;", "-I, -I, 1"},
      {"(1 + I)*x - x*I;", "x"}, {"Complex(infinity, 0), Complex(0, undefined);", "infinity, undefined*I"},
  };
  for (auto [statement, shown] : rows) EXPECT_EQ(say(statement), shown) << statement;
}

}  // namespace
}  // namespace korel::test
