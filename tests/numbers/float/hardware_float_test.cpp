// Doubles and software floats: both ways, at random and at the limits, and the bits as text.

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/float/float.h"
#include "numbers/float/hardware_float.h"
#include "numbers/float/shortest_decimal.h"
#include "numbers/integer/integer.h"
#include "store/objects.h"

namespace korel::test {

namespace {

std::uint64_t bitsOf(double x) { return std::bit_cast<std::uint64_t>(x); }
std::string digits(std::mt19937_64& random, int count) {
  std::string text(1, static_cast<char>('1' + random() % 9));
  while (static_cast<int>(text.size()) < count) text += static_cast<char>('0' + random() % 10);
  return text;
}
double converted(const std::string& mantissa, int exponent) {
  return SoftwareToHardwareFloat(new3(FLOAT, parsed(mantissa.c_str()), Newint(exponent)));
}

}  // namespace

// The C library rounds correctly: mantissas of all lengths, exponents into the subnormals and beyond the largest.
TEST(HardwareFloat, DecimalsAreRoundedOnce) {
  std::mt19937_64 random(5);
  for (int k = 0; k < 4000; ++k) {
    const int length = 1 + static_cast<int>(random() % (k % 10 == 0 ? 900 : 40));
    const std::string mantissa = (k % 3 == 0 ? "-" : "") + digits(random, length);
    const int exponent = static_cast<int>(random() % 660) - 340 - length;
    const double expected = std::strtod((mantissa + "e" + std::to_string(exponent)).c_str(), nullptr);
    EXPECT_EQ(bitsOf(converted(mantissa, exponent)), bitsOf(expected)) << mantissa << "e" << exponent;
  }
}

// Halfway between two doubles, and a digit far behind on either side of it.
TEST(HardwareFloat, TiesGoToEvenAndOneDigitDecides) {
  const std::string half = "9007199254740993";  // 2^53 + 1
  const std::string zeros(850, '0');
  EXPECT_EQ(converted(half, 0), 9007199254740992.0);
  EXPECT_EQ(converted(half + zeros + "1", -851), 9007199254740994.0);
  EXPECT_EQ(converted("9007199254740992" + std::string(851, '9'), -851), 9007199254740992.0);
  EXPECT_EQ(converted("9007199254740995", 0), 9007199254740996.0);
}

TEST(HardwareFloat, DoublesComeBackWithTheFewestDigits) {
  std::mt19937_64 random(6);
  for (int k = 0; k < 20000; ++k) {
    double x = std::bit_cast<double>(random());
    if (k % 4 == 0) x = std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 60) - 30);
    if (!std::isfinite(x)) continue;
    DAG f = HardwareToSoftwareFloat(x);
    ASSERT_EQ(bitsOf(SoftwareToHardwareFloat(f)), bitsOf(x)) << text(f);
    EXPECT_LE(ilength(mantissaOf(f)), 17) << text(f);
  }
  // Beside a power of two, where the neighbours are not equally far, and among the subnormals.
  for (std::uint64_t exponent = 0; exponent < 2047; ++exponent)
    for (std::int64_t k = -2; k <= 2; ++k) {
      const double x = std::bit_cast<double>((exponent << 52) + static_cast<std::uint64_t>(k));
      if (!(x > 0) || !std::isfinite(x)) continue;
      const ShortDecimal decimal = shortestDecimal(x);
      char expected[40], given[40];
      *std::to_chars(expected, expected + 30, x, std::chars_format::scientific).ptr = 0;
      double back = 0;
      std::snprintf(given, sizeof given, "%llde%d", static_cast<long long>(decimal.digits), decimal.exponent);
      std::from_chars(given, given + std::strlen(given), back);
      ASSERT_EQ(bitsOf(back == 0 ? std::strtod(given, nullptr) : back), bitsOf(x)) << given;
      auto digitCount = [](const char* t) {
        return std::count_if(t, std::strchr(t, 'e'), [](char c) { return c != '.'; });
      };
      ASSERT_EQ(digitCount(given), digitCount(expected)) << given << ' ' << expected;
    }
  // The object that is looked for without a fresh one is that of the simplifier, whichever of both comes first.
  for (int k = 0; k < 3000; ++k) {
    const double x = k % 3 == 0 ? std::ldexp(static_cast<double>(random() >> 34), static_cast<int>(random() % 8) - 4)
                                : std::bit_cast<double>(random());
    const auto n = static_cast<std::int64_t>(random()) >> random() % 64;
    DAG early = k % 2 == 0 ? simpl(HardwareToSoftwareFloat(x)) : DAG(),
        known = k % 4 < 2 ? simpl(NewInteger(n)) : DAG();
    DAG f = floatOfDouble(x), m = uniqueInteger(n);
    ASSERT_EQ(f, simpl(HardwareToSoftwareFloat(x))) << text(f);
    ASSERT_EQ(m, simpl(NewInteger(n))) << n;
    ASSERT_TRUE((!early || early == f) && (!known || known == m)) << text(f) << ' ' << n;
  }
  const struct {
    double x;
    const char* text;
  } rows[] = {{0.1, ".1"},
              {0.5, ".5"},
              {1.0 / 3, ".3333333333333333"},
              {1e10, ".1e11"},
              {123456.0, "123456."},
              {-2147483647.0, "-2147483647."},
              {2147483648.0, "2147483648."},
              {5e-324, ".5e-323"},
              {std::numeric_limits<double>::max(), ".17976931348623157e309"},
              {-0.0, "-0."}};
  for (const auto& row : rows) EXPECT_EQ(text(HardwareToSoftwareFloat(row.x)), row.text);
}

TEST(HardwareFloat, BitsAsText) {
  char hex[ieeeHexLength + 1];
  HFloatToIEEEHex(1.0, true, hex);
  EXPECT_STREQ(hex, "3FF0000000000000");
  HFloatToIEEEHex(-1e-310, false, hex);
  EXPECT_STREQ(hex, "800012688b70e62b");
  EXPECT_EQ(bitsOf(IEEEHexToHFloat(hex)), bitsOf(-1e-310));
  EXPECT_EQ(IEEEHexToHFloat("3Ff0000000000000"), 1.0);
  for (const char* wrong :
       {"", "3FF000000000000", "3FF00000000000000", "3FF000000000000G", " 3FF00000000000", "-3FF000000000000"})
    EXPECT_EQ(errorOf([=] { IEEEHexToHFloat(wrong); }), "expecting exactly 16 hexadecimal digits") << wrong;
}

TEST(HardwareFloat, NumbersAndObjects) {
  EXPECT_EQ(FloatValue(parsed("10^20/3")), 1e20 / 3);
  EXPECT_EQ(FloatValue(parsed("10^308")), 1e308);
  DAG h = NewHFloat(0.1, false);
  EXPECT_EQ(text(HFloatToFloat(h)), ".1");
  EXPECT_EQ(text(SuppressHFloats(new3(COMPLEX, h, NewHFloat(2.5, false)))), ".1+2.5*I");
  EXPECT_EQ(SuppressHFloats(parsed("x")), parsed("x"));
}

}  // namespace korel::test
