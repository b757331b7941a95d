#include "numbers/integer_oracle.h"

namespace korel::test {
namespace {

/// a + b digit by digit on decimal texts.
std::string sumOfTexts(std::string a, std::string b) {
  if (a.size() < b.size()) std::swap(a, b);
  b.insert(0, a.size() - b.size(), '0');
  int carry = 0;
  for (std::size_t i = a.size(); i-- > 0;) {
    int sum = a[i] - '0' + b[i] - '0' + carry;
    carry = sum / 10;
    a[i] = static_cast<char>('0' + sum % 10);
  }
  return carry != 0 ? "1" + a : a;
}

// Sums of all lengths and signs, in space of their own, in given space and in place of an operand.
TEST(IntegerAdd, SumsDifferencesAndOrderAgree) {
  Random random(11);
  for (int i = 0; i < 40000; ++i) {
    DAG a = random.upTo(12), b = i % 7 == 0 ? complint(a) : random.upTo(12);
    DAG sum = addint(a, b);
    SCOPED_TRACE(decimal(a) + " + " + decimal(b));
    ASSERT_TRUE(VerifyInteger(sum));
    for (std::uint64_t p : testPrimes) ASSERT_EQ(residue(sum, p), (residue(a, p) + residue(b, p)) % p);
    if (!isImmediate(a) && hasTag(a, INTPOS) && !isImmediate(b) && hasTag(b, INTPOS)) {
      ASSERT_EQ(decimal(sum), sumOfTexts(decimal(a), decimal(b)));
    }

    DAG space = news(20);
    ASSERT_EQ(decimal(addint(a, b, space)), decimal(sum));
    DAG place = CopyIntoSoftInt(news(20), a);
    ASSERT_EQ(decimal(MakeImmediate(SoftIntAdd(place, heap(b), place))), decimal(sum));
    place = CopyIntoSoftInt(news(20), b);
    ASSERT_EQ(decimal(MakeImmediate(SoftIntAdd(heap(a), place, place))), decimal(sum));

    // |a| < |b| exactly when |a| - |b| is negative.
    DAG absA = hasTag(a, INTNEG) ? complint(a) : a, absB = hasTag(b, INTNEG) ? complint(b) : b;
    DAG difference = addint(absA, complint(absB));
    ASSERT_EQ(compint(a, b), difference == cons0 ? 0 : hasTag(difference, INTNEG) ? -1 : 1);
    if (a != cons0) {
      ASSERT_EQ(decimal(negateint(heap(complint(a)))), decimal(heap(a)));
    }
  }
}

TEST(IntegerAdd, CarriesAndCancellations) {
  EXPECT_EQ(addint(integer("99999999"), cons1), immediate(100000000));
  DAG x = integer("100000000000000000000000000000000");
  EXPECT_EQ(decimal(addint(x, consm1)), std::string(32, '9'));
  EXPECT_EQ(decimal(addint(addint(x, consm1), cons1)), decimal(x));
  EXPECT_EQ(addint(x, complint(x)), cons0);
  EXPECT_EQ(addint(consm0, consm0), cons0);
  EXPECT_EQ(addint(integer("1073741824"), consm1), immediate(1073741823));
  EXPECT_EQ(compint(integer("-2147483648"), integer("2147483648")), 0);
  EXPECT_EQ(compint(integer("2147483648"), immediate(5)), 1);
  EXPECT_EQ(compint(cons0, consm0), 0);
}

}  // namespace
}  // namespace korel::test
