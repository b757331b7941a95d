// Long integers as binary floats and back, around the lengths at which they are joined and split in halves.

#include <gtest/gtest.h>
#include <random>

#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/functions/real.h"
#include "numbers/integer/integer.h"

namespace korel::test {
namespace {

TEST(RealConversion, IntegersComeBackAsTheyWent) {
  std::mt19937_64 random(48);
  for (int digits : {1, 9, 16, 17, 31, 767, 768, 769, 1535, 1536, 1537, 1552, 3071, 3072, 3073, 9000, 30000}) {
    const auto count = static_cast<std::size_t>(digits);
    std::string any(count, '0'), runs(count, '9');
    for (char& c : any) c = static_cast<char>('0' + random() % 10);
    for (std::size_t i = 0; i < count; i += 1 + random() % 40) runs[i] = random() % 2 == 0 ? '0' : '8';
    for (const std::string& number : {std::string(count, '9'), "1" + std::string(count, '0'), "7" + any, "-8" + runs,
                                      "1" + std::string(count - 1, '0') + "1"}) {
      DAG x = parsed(number.c_str());
      reals::RealSession session(digits + 2);
      DAG back = reals::integerOf(reals::realOf(x));
      ASSERT_EQ(text(back), text(x)) << digits;
    }
    // Cut to a short precision, it is off by some units of the last place.
    DAG x = parsed(("7" + any).c_str());
    reals::RealSession session(40);
    const reals::Real cut = reals::realOf(x);
    reals::Precision more(reals::limbsForDigits(digits + 2));
    const reals::Real whole = reals::realOf(x), off = absolute(whole - cut);
    EXPECT_TRUE(isZero(off) || off.exponent < whole.exponent - 128) << digits;
  }
}

}  // namespace
}  // namespace korel::test
