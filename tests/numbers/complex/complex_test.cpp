// Complex arithmetic: exact values against pairs of rationals, floats against the exact values.

#include <cstdlib>
#include <gtest/gtest.h>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer_oracle.h"
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

// ---- quotients and sizes, in exact arithmetic

DAG exactOf(DAG x) { return isSoftFloat(x) ? simpl(floatrat(x)) : x; }
DAG times(DAG a, DAG b) { return simpl(mul(a, b)); }
DAG plus(DAG a, DAG b) { return simpl(add(a, b)); }
DAG minus(DAG a, DAG b) { return plus(a, simpl(negate(b))); }

struct ExactComplex {
  DAG re, im;
};
ExactComplex exactComplexOf(DAG z) {
  if (!isComplex(z)) return {exactOf(z), cons0};
  return {lengthOf(z) == 3 ? exactOf(z[1]) : cons0, exactOf(imaginaryPartOf(z))};
}
ExactComplex exactQuotient(ExactComplex a, ExactComplex b) {
  DAG size = simpl(power(plus(times(b.re, b.re), times(b.im, b.im)), -1));
  return {times(plus(times(a.re, b.re), times(a.im, b.im)), size),
          times(minus(times(a.im, b.re), times(a.re, b.im)), size)};
}

// One unit in the last place of the float nearest to x.
DAG lastPlace(DAG x, std::int64_t digits) {
  DAG f = simpl(evalf(x));
  std::int64_t place = ilength(f[1]) + LongLongValue(f[2]) - digits;
  DAG size = simpl(times10p(cons1, std::abs(place)));
  return place < 0 ? simpl(power(size, -1)) : size;
}

// `part` is the float nearest to `exact`, or a tie's other neighbour where terms lie so far apart that one counts
// for nothing: half a unit, and a trifle.
bool isNearest(DAG part, DAG exact, std::int64_t digits) {
  if (isZero(exact)) return isZero(part);
  DAG unit = lastPlace(exact, digits), error = simpl(absalg(minus(exactOf(part), exact)));
  DAG trifle = simpl(power(simpl(times10p(cons1, 40)), -1));
  return compcon(times(error, immediate(2)), plus(unit, times(unit, trifle))) <= 0;
}

// A number of one of the kinds that a quotient can have as operand.
DAG someOperand(Random& random, std::int64_t digits) {
  auto mantissa = [&random](std::int64_t most) {
    std::string decimals(1, static_cast<char>('1' + random.below(9)));
    for (auto n = random.below(most); n > 0; --n) decimals += static_cast<char>('0' + random.below(10));
    return integer((random.below(2) != 0 ? "-" : "") + decimals);
  };
  auto real = [&](bool isFloat) -> DAG {
    if (random.below(12) == 0) return isFloat ? consf0 : cons0;
    DAG m = mantissa(random.below(5) == 0 ? 3 * digits : digits);
    const std::int64_t spread = random.below(8) == 0 ? 100 : 8;
    if (isFloat) return simpl(newFLOAT(m, immediate(static_cast<std::int32_t>(random.below(spread) - spread / 2))));
    return random.below(2) != 0 ? times(m, simpl(power(mantissa(3), -1))) : simpl(m);
  };
  const bool isFloat = random.below(3) != 0;
  switch (random.below(5)) {
    case 0: return real(isFloat);
    case 1: {
      DAG part = real(isFloat);
      return part == cons0 ? part : simpl(new2(COMPLEX, part));
    }
    default: {
      DAG re = real(isFloat), im = real(isFloat);
      return re == cons0 || im == cons0 ? re : simpl(new3(COMPLEX, re, im));
    }
  }
}

// `z` with another last digit: a quotient by it has an imaginary part of a few leading zeros.
DAG neighbour(DAG z) {
  DAG near = CopyAlg(z), part = imaginaryPartOf(z);
  if (!isSoftFloat(part)) return z;
  near[lengthOf(z) - 1] = simpl(newFLOAT(addint(part[1], cons1), part[2]));
  return simpl(near);
}

TEST(Complex, QuotientsAndSizesAreTheNearest) {
  Random random(52);
  for (int i = 0; i < 20000; ++i) {
    const std::int64_t digits = 1 + random.below(i % 50 == 0 ? 60 : 12);
    assignenv(ini("Digits"), immediate(static_cast<std::int32_t>(digits)));
    DAG a = someOperand(random, digits), b = i % 5 == 0 && isComplex(a) ? neighbour(a) : someOperand(random, digits);
    if (isZero(b)) continue;
    SCOPED_TRACE(text(a) + ", " + text(b) + " to " + std::to_string(digits) + " digits");
    ExactComplex exact = exactQuotient(exactComplexOf(a), exactComplexOf(b));
    ExactComplex found = exactComplexOf(cxfdiv(a, b));
    ASSERT_TRUE(isNearest(found.re, exact.re, digits)) << text(found.re) << " against " << text(exact.re);
    ASSERT_TRUE(isNearest(found.im, exact.im, digits)) << text(found.im) << " against " << text(exact.im);
    if (!isFloatComplex(b)) continue;
    exact = exactQuotient({cons1, cons0}, exactComplexOf(b));
    found = exactComplexOf(cxfinv1(b));
    ASSERT_TRUE(isNearest(found.re, exact.re, digits)) << "inverse " << text(found.re);
    ASSERT_TRUE(isNearest(found.im, exact.im, digits)) << "inverse " << text(found.im);
    // |b| lies within half a unit: (2|b| - u)^2 <= 4(x^2 + y^2) <= (2|b| + u)^2.
    ExactComplex parts = exactComplexOf(b);
    DAG size = exactOf(simpl(cxfabs(b)));
    DAG square = times(immediate(4), plus(times(parts.re, parts.re), times(parts.im, parts.im)));
    DAG unit = lastPlace(size, digits), twice = times(size, immediate(2));
    DAG low = minus(twice, unit), high = plus(twice, unit);
    ASSERT_LE(compcon(times(low, low), square), 0) << "size " << text(size);
    ASSERT_GE(compcon(times(high, high), square), 0) << "size " << text(size);
  }
  assignenv(ini("Digits"), cons10);
}

TEST(Complex, FloatPartsFollowTheirExactValues) {
  const char* rows[][2] = {
      {"(1.5 + 2*I)*(2 - I);", "5.0+2.5*I"},
      {"(1. + I)^2;", "0.+2.*I"},
      {"1/(1. + I);", ".5000000000-.5000000000*I"},
      {"(3. + 4*I)/(1 + 2*I);", "2.200000000-.4000000000*I"},
      {"abs(3. + 4*I);", "5.000000000"},
      {"(2 + 3*I)^(-2);", "-5/169-12/169*I"},
      {"I^3, I^(-1), (-I)^4;", "-I, -I, 1"},
      {"(1 + I)*x - x*I;", "x"},
      {"Complex(infinity, 0), Complex(0, undefined);", "infinity, undefined*I"},
  };
  for (auto [statement, shown] : rows) EXPECT_EQ(say(statement), shown) << statement;
}

}  // namespace
}  // namespace korel::test
