// Float arithmetic against exact rational arithmetic that is rounded once, in every rounding mode.

#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer_oracle.h"
#include "store/constants.h"
#include "store/standard_names.h"

#ifdef KOREL_HAVE_MPFR
#include <mpfr.h>
#endif

namespace korel::test {
namespace {

#ifdef KOREL_HAVE_GMP

enum class Mode { nearest, zero, up, down };

void setRounding(Mode mode) {
  const DAG values[] = {ini("nearest"), cons0, ini("infinity"), consminf};
  assignenv(ini("Rounding"), values[static_cast<int>(mode)]);
}

/// numerator / denominator, exactly.
struct Fraction {
  Big numerator, denominator;
};

void raise(Big& x, std::int64_t k) {
  Big power;
  mpz_ui_pow_ui(power, 10, static_cast<unsigned long>(k));
  mpz_mul(x, x, power);
}

/// The value rounded to `digits` digits, as mantissa and exponent text with no trailing zeros.
std::string rounded(const Fraction& f, std::int64_t digits, Mode mode) {
  Big n, d;
  mpz_abs(n, const_cast<Big&>(f.numerator));
  mpz_abs(d, const_cast<Big&>(f.denominator));
  bool negative =
      mpz_sgn(static_cast<mpz_srcptr>(f.numerator.value)) * mpz_sgn(static_cast<mpz_srcptr>(f.denominator.value)) < 0;
  if (mpz_sgn(static_cast<mpz_srcptr>(n.value)) == 0) return "0";
  // Scaled so that the quotient has `digits` digits.
  auto length = [](Big& x) { return static_cast<std::int64_t>(x.text().size()); };
  std::int64_t exponent = length(n) - length(d) - digits;
  Big q, r;
  for (;; ++exponent) {
    Big a, b;
    mpz_set(a, n);
    mpz_set(b, d);
    if (exponent < 0) raise(a, -exponent);
    else raise(b, exponent);
    mpz_tdiv_qr(q, r, a, b);
    if (length(q) > digits) continue;
    Big twice;
    mpz_mul_ui(twice, r, 2);
    int half = mpz_cmp(twice, b);
    bool inexact = mpz_sgn(static_cast<mpz_srcptr>(r.value)) != 0;
    bool away = mode == Mode::nearest ? half > 0 || (half == 0 && mpz_odd_p(static_cast<mpz_srcptr>(q.value)))
                : mode == Mode::up    ? inexact && !negative
                : mode == Mode::down  ? inexact && negative
                                      : false;
    if (away) mpz_add_ui(q, q, 1);
    break;
  }
  std::string text = q.text();
  while (text.size() > 1 && text.back() == '0') {
    text.pop_back();
    ++exponent;
  }
  return (negative ? "-" : "") + text + "e" + std::to_string(exponent);
}

std::string shown(DAG x) {
  if (!isSoftFloat(x) || isSingular(x)) return text(x);
  std::string mantissa = decimal(x[1]);
  if (x[1] == cons0 || x[1] == consm0) return "0";
  std::int64_t exponent = LongLongValue(x[2]);
  while (mantissa.back() == '0') {
    mantissa.pop_back();
    ++exponent;
  }
  return mantissa + "e" + std::to_string(exponent);
}

void setValue(Fraction& f, DAG x) {
  mpz_set_str(f.numerator, decimal(x[1]).c_str(), 10);
  mpz_set_ui(f.denominator, 1);
  std::int64_t exponent = LongLongValue(x[2]);
  if (exponent > 0) raise(f.numerator, exponent);
  if (exponent < 0) raise(f.denominator, -exponent);
}

/// A float of up to `digits` digits; near misses of ties and of carries among them.
DAG someFloat(Random& random, std::int64_t digits) {
  std::string mantissa;
  auto count = 1 + random.below(digits);
  int kind = static_cast<int>(random.below(5));
  for (std::int64_t i = 0; i < count; ++i)
    mantissa += kind == 0 ? '9' : kind == 1 ? (i == 0 ? '1' : '0') : static_cast<char>('0' + random.below(10));
  if (kind == 2) mantissa.back() = '5';
  if (mantissa[0] == '0') mantissa[0] = '1';
  if (random.below(2) != 0) mantissa.insert(0, "-");
  return simpl(newFLOAT(integer(mantissa), immediate(static_cast<std::int32_t>(random.below(30) - 15))));
}

/// Mostly a few digits; now and then as many as the methods for long numbers begin at.
std::int64_t someDigits(Random& random, int i) { return 1 + random.below(i % 251 == 0 ? 6000 : i % 20 == 0 ? 80 : 16); }

TEST(Float, OperationsRoundOnceInEveryMode) {
  Random random(41);
  for (int i = 0; i < 40000; ++i) {
    Mode mode = static_cast<Mode>(i % 4);
    std::int64_t digits = someDigits(random, i);
    setRounding(mode);
    assignenv(ini("Digits"), immediate(static_cast<std::int32_t>(digits)));
    DAG x = someFloat(random, digits), y = someFloat(random, digits);
    if (i % 7 == 0 && digits > 1) {  // a quotient that ends early
      y = someFloat(random, digits / 2);
      x = simpl(newFLOAT(mulint(y[1], someFloat(random, digits / 2)[1]), x[2]));
    }
    SCOPED_TRACE(text(x) + ", " + text(y) + " to " + std::to_string(digits) + " digits, mode " + std::to_string(i % 4));
    Fraction a, b, f;
    setValue(a, x);
    setValue(b, y);
    mpz_mul(f.denominator, a.denominator, b.denominator);
    Big left, right;
    mpz_mul(left, a.numerator, b.denominator);
    mpz_mul(right, b.numerator, a.denominator);
    mpz_add(f.numerator, left, right);
    // Far below the other's last digit an operand counts for nothing, whatever the rounding.
    auto negligible = [digits](DAG small, DAG large) {
      std::int64_t es = LongLongValue(small[2]), el = LongLongValue(large[2]);
      return es + ilength(small[1]) < std::min(el, el + ilength(large[1]) - digits) - 1;
    };
    std::string sum = negligible(y, x) ? shown(x) : negligible(x, y) ? shown(y) : rounded(f, digits, mode);
    ASSERT_EQ(shown(evalfadd(x, y)), sum) << "sum";
    mpz_mul(f.numerator, a.numerator, b.numerator);
    ASSERT_EQ(shown(evalfmul(x, y)), rounded(f, digits, mode)) << "product";
    mpz_mul(f.numerator, a.numerator, b.denominator);
    mpz_mul(f.denominator, a.denominator, b.numerator);
    ASSERT_EQ(shown(evalfdiv(x, y)), rounded(f, digits, mode)) << "quotient";
    // Operands of more digits, integers, fractions: no operand of a quotient is rounded before.
    DAG wide = someFloat(random, 3 * digits), other = someFloat(random, 3 * digits);
    setValue(a, wide);
    setValue(b, other);
    mpz_mul(f.numerator, a.numerator, b.denominator);
    mpz_mul(f.denominator, a.denominator, b.numerator);
    ASSERT_EQ(shown(evalfdiv(wide, other)), rounded(f, digits, mode)) << text(wide) << " / " << text(other);
    Big p(wide[1]);
    mpz_mul(f.numerator, p, b.denominator);
    mpz_set(f.denominator, b.numerator);
    ASSERT_EQ(shown(evalfdiv(wide[1], other)), rounded(f, digits, mode)) << text(wide[1]) << " / " << text(other);
    DAG parts[2];
    gcdsimpl(other[1], x[1], parts);
    if (hasTag(parts[1], INTNEG)) parts[0] = simpl(negate(parts[0])), parts[1] = simpl(negate(parts[1]));
    if (parts[1] == cons1) continue;
    DAG ratio = simpl(new3(RATIONAL, simpl(parts[0]), simpl(parts[1])));
    Big n(parts[0]), d(parts[1]);
    mpz_mul(f.numerator, a.numerator, n);
    mpz_mul(f.denominator, a.denominator, d);
    ASSERT_EQ(shown(evalfmul(wide, ratio)), rounded(f, digits, mode)) << text(wide) << " * " << text(ratio);
  }
  assignenv(ini("Digits"), cons10);
  setRounding(Mode::nearest);
}

// A root r to D digits: no float of D digits lies nearer, that is (r - u/2)^2 <= x <= (r + u/2)^2 with u
// one unit of the last digit.
TEST(Float, SquareRootsAreTheNearest) {
  Random random(42);
  for (int i = 0; i < 4000; ++i) {
    std::int64_t digits = someDigits(random, i);
    assignenv(ini("Digits"), immediate(static_cast<std::int32_t>(digits)));
    DAG x = someFloat(random, digits);
    if (i % 3 == 0 && digits > 1) {  // squares, and their neighbours
      DAG root = someFloat(random, digits / 2)[1];
      x = simpl(newFLOAT(addint(mulint(root, root), immediate(i % 2)), immediate(2 * (i % 7))));
    }
    if (hasTag(x[1], INTNEG)) x = simpl(negate(x));
    DAG r = simpl(evalfsqrt(x));
    SCOPED_TRACE(text(x) + " to " + std::to_string(digits) + " digits: " + text(r));
    // Everything in units of half the last digit of r: r is an even count of them.
    DAG m = r[1];
    std::int64_t e = LongLongValue(r[2]);
    while (ilength(m) < digits) {
      m = shift10p(m, 1);
      --e;
    }
    DAG twice = addint(m, m);
    DAG low = addint(twice, consm1), high = addint(twice, cons1);
    Fraction value;
    setValue(value, x);
    Big unit(cons1), square;
    // 4 x / 10^(2e) against low^2 and high^2.
    mpz_mul_ui(value.numerator, value.numerator, 4);
    if (e > 0) raise(value.denominator, 2 * e);
    if (e < 0) raise(value.numerator, -2 * e);
    Big lowSquare(mulint(low, low)), highSquare(mulint(high, high));
    mpz_mul(square, lowSquare, value.denominator);
    ASSERT_LE(mpz_cmp(square, value.numerator), 0);
    mpz_mul(square, highSquare, value.denominator);
    ASSERT_GE(mpz_cmp(square, value.numerator), 0);
  }
  assignenv(ini("Digits"), cons10);
}

#endif

#ifdef KOREL_HAVE_MPFR
// The series of e^z, of a geometric sum and of a logarithm, to many digits.
TEST(Float, HypergeometricSumsAgreeWithMpfr) {
  auto series = [](const char* a, const char* b, const char* z) {
    std::string call = "`evalf/hypergeom/kernel`(" + std::string(a) + ", " + b + ", " + z + ");";
    return say(call.c_str());
  };
  say("Digits := 40:");
  for (double z : {0.5, -0.25, 2.0, -3.0, 10.0, -10.0}) {
    mpfr_t x;
    mpfr_init2(x, 400);
    mpfr_set_d(x, z, MPFR_RNDN);
    mpfr_exp(x, x, MPFR_RNDN);
    char expected[128];
    mpfr_snprintf(expected, sizeof expected, "%.39Re", x);
    mpfr_clear(x);
    char argument[32];
    std::snprintf(argument, sizeof argument, "%g", z);
    std::string sum = series("[]", "[]", (std::string(argument) + (std::strchr(argument, '.') ? "" : ".")).c_str());
    std::string digits;
    for (char c : sum) {
      if (c == 'e') break;
      if (c >= '0' && c <= '9' && !(digits.empty() && c == '0')) digits += c;
    }
    std::string wanted;
    for (const char* c = expected; *c != 'e'; ++c)
      if (*c >= '0' && *c <= '9') wanted += *c;
    EXPECT_EQ(digits.substr(0, 38), wanted.substr(0, 38)) << z << ": " << sum << " against " << expected;
  }
  EXPECT_EQ(series("[1, 1]", "[2]", ".5").substr(0, 30), "1.3862943611198906188344642429");
  EXPECT_EQ(series("x", "[]", "1"), "Error, first argument of hypergeom must be a list");
  EXPECT_EQ(series("[]", "x", "1"), "Error, second argument of hypergeom must be a list");
  say("Digits := 10:");
}
#endif

TEST(Float, SpecialValuesAndBounds) {
  const char* rows[][2] = {
      {"1.0/0.;", "Float(infinity)"},
      {"-1.0/0.;", "Float(-infinity)"},
      {"0./0.;", "Float(undefined)"},
      {"Float(infinity) - Float(infinity);", "Float(undefined)"},
      {"0.*Float(infinity);", "Float(undefined)"},
      {"-0.;", "-0."},
      {"-0. + 0.;", "0."},
      {"1.5 - 1.5;", "0."},
      {"2.^(-2);", ".2500000000"},
      {"(-8.)^3;", "-512."},
      {"4.^(1/2);", "2.000000000"},
      {"1/4.;", ".2500000000"},
      {"1.5 + 1/2;", "2.000000000"},
      {"3 < 3.1;", "0 < .1"},
      {"evalb(1/2 = 0.5);", "true"},
      {"evalb(3 < 3.1);", "true"},
      {"evalf(2/3, 4);", ".6667"},
      {"Float(15, -1);", "1.5"},
      {"Float(3, infinity);", "Float(infinity)"},
      {"abs(-2.5), max(1.5, 2, 1/2), trunc(-2.7);", "2.5, 2, -2"},
  };
  for (auto [statement, expected] : rows) EXPECT_EQ(say(statement), expected) << statement;
}

}  // namespace
}  // namespace korel::test
