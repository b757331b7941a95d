#include "kernel_fixture.h"
#include "numbers/integer_oracle.h"

namespace korel::test {
namespace {

std::string shape(DAG x) {
  if (isImmediate(x)) return "immediate " + std::to_string(immediateValue(x));
  std::string result = hasTag(x, INTNEG) ? "INTNEG" : "INTPOS";
  for (Word i = 0; i < digitCount(x); ++i) result += " " + std::to_string(digitsOf(x)[i]);
  return result;
}

TEST(IntegerForms, MachineIntegersTakeTheFormOfTheirSize) {
  constexpr std::int32_t limit = 1 << 30;
  EXPECT_EQ(shape(Newint(limit - 1)), "immediate 1073741823");
  EXPECT_EQ(shape(Newint(1 - limit)), "immediate -1073741823");
  EXPECT_EQ(shape(Newint(limit)), "INTPOS 1824 7374 10");
  EXPECT_EQ(shape(Newint(-limit)), "INTNEG 1824 7374 10");
  EXPECT_EQ(shape(Newint(INT32_MIN)), "INTNEG 3648 4748 21");
  EXPECT_EQ(shape(NewInteger(999999999999)), "INTPOS 9999 9999 9999");
  EXPECT_EQ(shape(NewInteger(1000000000000)), "INTPOS 0 0 0 1");
  EXPECT_EQ(shape(NewInteger(-10000000000000000)), "INTNEG 0 0 0 0 1");
  EXPECT_EQ(shape(NewInteger(INT64_MIN)), "INTNEG 5808 5477 368 3372 922");
  EXPECT_EQ(shape(NewInteger(INT64_MAX)), "INTPOS 5807 5477 368 3372 922");
  EXPECT_EQ(shape(NewSoftInt(consm0)), "INTNEG 0");
  EXPECT_EQ(shape(NewSoftInt(cons0)), "INTPOS 0");
  EXPECT_EQ(shape(NewSoftInt(immediate(-10000))), "INTNEG 0 1");
}

// Every value around a limit reads back, and is refused one beyond it.
TEST(IntegerForms, ValuesAndLimits) {
  const std::string word = "integer too large in context";
  for (std::int64_t limit : {std::int64_t{1} << 30, std::int64_t{1} << 31, std::int64_t{1} << 62})
    for (std::int64_t value = limit - 2; value <= limit + 2; ++value)
      for (std::int64_t x : {value, -value}) {
        DAG n = NewInteger(x);
        EXPECT_EQ(LongLongValue(n), x);
        EXPECT_TRUE(VerifyInteger(n)) << x;
        EXPECT_EQ(FitIntoWord(n), x == static_cast<std::int32_t>(x)) << x;
        if (isImmediate(n)) continue;
        std::int32_t read = 0;
        std::string error = errorOf([&] { read = IntegerValue(n); });
        EXPECT_EQ(error, FitIntoWord(n) ? "" : word) << x;
        if (error.empty()) {
          EXPECT_EQ(read, x);
        }
        EXPECT_EQ(SoftIntEqual(n, static_cast<std::int32_t>(x)), FitIntoWord(n)) << x;
      }
  EXPECT_EQ(LongLongValue(integer("-9223372036854775808")), INT64_MIN);
  for (const char* beyond :
       {"9223372036854775808", "-9223372036854775809", "99999999999999999999", "100000000000000000000"}) {
    EXPECT_FALSE(FitIntoLongLong(integer(beyond))) << beyond;
    EXPECT_EQ(errorOf([&] { LongLongValue(integer(beyond)); }), word) << beyond;
  }
}

TEST(IntegerForms, DecimalLengthsAndText) {
  EXPECT_EQ(ilength(cons0), 0);
  EXPECT_EQ(ilength(consm0), 0);
  EXPECT_EQ(decimal(consm0), "-0");
  std::string text;
  for (int n = 1; n <= 60; ++n) {
    text += static_cast<char>('0' + n % 10 + (n % 10 == 0 ? 1 : 0));
    for (const std::string& t : {text, "-" + text}) {
      DAG x = integer(t);
      EXPECT_EQ(ilength(x), n) << t;
      EXPECT_STREQ(textOf(KorelIntToStr(x)), t.c_str());
      EXPECT_EQ(IntegerToDouble(x), std::stod(t)) << t;
    }
  }
  EXPECT_EQ(IntegerToDouble(integer(std::string(307, '9'))), std::stod(std::string(307, '9')));
  EXPECT_EQ(IntegerToDouble(integer("-" + std::string(308, '1'))), -HUGE_VAL);
  EXPECT_EQ(FloatApprox(integer("123456789012345678901234"), 5), 12345678.9012345678901234);
}

}  // namespace
}  // namespace korel::test
