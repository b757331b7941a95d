#include "numbers/integer/integer_groups.h"
#include "numbers/integer/integer_karatsuba.h"
#include "numbers/integer/integer_transform.h"
#include "numbers/integer_oracle.h"

namespace korel::test {
namespace {

std::string product(DAG (*method)(DAG, DAG, DAG), DAG a, DAG b) {
  return decimal(method(a, b, news(lengthOf(a) + lengthOf(b))));
}

void expectResidues(DAG a, DAG b, DAG product) {
  for (std::uint64_t p : testPrimes) ASSERT_EQ(residue(product, p), timesModulo(residue(a, p), residue(b, p), p));
}

// The columns of the school method, of Karatsuba's and the packed groups agree around every cut-over, in
// both orders and in the place of an operand.
TEST(IntegerMultiply, MethodsAgreeAroundTheCutovers) {
  Random random(21);
  for (Word la : {1, 2, 3, 4, 5, 15, 16, 17, 24, 25, 26, 31, 40, 144, 145, 225, 226, 500, 1000})
    for (Word lb : {1, 4, 15, 16, 17, 24, 25, 26, 27, 50, 145, 499, 500})
      for (int i = 0; i < 4; ++i) {
        DAG a = random.heapOf(la), b = random.heapOf(lb);
        SCOPED_TRACE(decimal(a) + " * " + decimal(b));
        std::string expected = product(KaratsubaProduct, a, b);
        ASSERT_EQ(product(KarMulInt, a, b), expected);
        ASSERT_EQ(product(KarMulInt, b, a), expected);
        ASSERT_EQ(product(KaratsubaProduct, b, a), expected);
        for (auto method : {KarMulInt, KaratsubaProduct}) {
          DAG place = CopyIntoSoftInt(news(la + lb + 2), b);
          ASSERT_EQ(decimal(method(a, place, place)), expected);
        }
      }
}

TEST(IntegerMultiply, SquaresInPlace) {
  Random random(22);
  for (Word n : {1, 2, 7, 16, 25, 26, 100, 223, 224, 225, 1500}) {
    DAG a = random.heapOf(n);
    std::string expected = product(KaratsubaProduct, a, CopyAlg(a));
    for (auto method : {KarMulInt, KaratsubaProduct}) {
      EXPECT_EQ(product(method, a, a), expected);
      DAG place = CopyIntoSoftInt(news(2 * n + 2), a);
      EXPECT_EQ(decimal(method(place, place, place)), expected);
    }
  }
}

// Random lengths for the bookkeeping of columns: what carries lend to the columns above comes back.
TEST(IntegerMultiply, ColumnsAtRandomLengths) {
  Random random(23);
  for (int i = 0; i < 2500; ++i) {
    DAG a = random.heapOf(static_cast<Word>(1 + random.below(i % 50 == 0 ? 2000 : 150)));
    DAG b = random.heapOf(static_cast<Word>(1 + random.below(i % 50 == 0 ? 2000 : 150)));
    DAG x = KaratsubaProduct(a, b, news(lengthOf(a) + lengthOf(b)));
    SCOPED_TRACE(decimal(a) + " * " + decimal(b));
    expectResidues(a, b, x);
  }
}

TEST(IntegerMultiply, TwentyThousandDigits) {
  Random random(24);
  DAG a = random.heapOf(5000), b = random.heapOf(5000);
  auto groups = [](DAG x) {
    std::vector<Group> g(groupsFor(digitCount(x)));
    packGroups(digitsOf(x), digitCount(x), g.data());
    return g;
  };
  std::vector<Group> x = groups(a), y = groups(b), school(x.size() + y.size());
  schoolProduct(school.data(), x.data(), x.size(), y.data(), y.size());
  EXPECT_EQ(groups(mulint(a, b)), std::vector<Group>(school.begin(), school.end()));
  EXPECT_EQ(product(KaratsubaProduct, a, b), decimal(mulint(a, b)));
}

// The transform at lengths on both sides of every length it has, on the largest coefficients too.
TEST(IntegerMultiply, TransformAgreesWithTheSchoolMethod) {
  Random random(25);
  for (std::size_t n : {1, 2, 3, 7, 8, 12, 13, 16, 47, 48, 49, 95, 96, 97, 128, 300, 384, 400})
    for (bool largest : {false, true}) {
      std::vector<Group> a(n), b(n / 2 + 1), fast(n + b.size()), school(n + b.size());
      for (Group& g : a) g = largest ? groupBase - 1 : static_cast<Group>(random.below(std::int64_t{groupBase}));
      for (Group& g : b) g = largest ? groupBase - 1 : static_cast<Group>(random.below(std::int64_t{groupBase}));
      schoolProduct(school.data(), a.data(), n, b.data(), b.size());
      ASSERT_TRUE(transformProduct(fast.data(), a.data(), n, b.data(), b.size()));
      ASSERT_EQ(fast, school) << n;
      std::vector<Group> square(2 * n), copy = a, other(2 * n);
      ASSERT_TRUE(transformProduct(square.data(), a.data(), n, a.data(), n));
      schoolProduct(other.data(), a.data(), n, copy.data(), n);
      ASSERT_EQ(square, other) << n;
    }
}

// Beyond 3.2 million decimals coefficients are shorter.
TEST(IntegerMultiply, VeryLongProducts) {
  Random random(26);
  DAG a = news(800100), b = news(801234);
  for (DAG x : {a, b}) {
    Word n = lengthOf(x) - 1;
    for (Word i = 0; i < n; ++i) digitsOf(x)[i] = static_cast<Word>(9000 + random.below(1000));
    setHeader(x, INTPOS, n + 1);
  }
  expectResidues(a, b, mulint(a, b));
  DAG c = random.heapOf(3000);
  expectResidues(a, c, mulint(a, c));
}

TEST(IntegerMultiply, SignsZerosAndImmediates) {
  EXPECT_EQ(mulint(cons0, integer("-12345678901234567890")), cons0);
  EXPECT_EQ(mulint(consm0, consm1), cons0);
  EXPECT_EQ(decimal(mulint(immediate(46341), immediate(46341))), "2147488281");
  EXPECT_EQ(decimal(mulint(immediate(-1073741823), immediate(1073741823))), "-1152921502459363329");
  EXPECT_EQ(decimal(mulint(consm1, integer("12345678901234567890"))), "-12345678901234567890");
  Random random(27);
  for (int i = 0; i < 20000; ++i) {
    DAG a = random.upTo(9), b = random.upTo(9);
    DAG x = mulint(a, b);
    SCOPED_TRACE(decimal(a) + " * " + decimal(b));
    ASSERT_TRUE(VerifyInteger(x));
    expectResidues(a, b, x);
    ASSERT_EQ(decimal(mulint(a, b, news(24))), decimal(x));
  }
}

#ifdef KOREL_HAVE_GMP
TEST(IntegerMultiply, AgreesWithGMP) {
  Random random(28);
  for (int i = 0; i < 4000; ++i) {
    Word longest = i % 100 == 0 ? 20000 : i % 10 == 0 ? 600 : 60;
    DAG a = random.upTo(longest), b = i % 5 == 0 ? a : random.upTo(longest);
    Big x(a), y(b), z;
    mpz_mul(z, x, y);
    ASSERT_EQ(decimal(mulint(a, b)), z.text()) << "case " << i << " of seed " << random.seed;
  }
}
#endif

}  // namespace
}  // namespace korel::test
