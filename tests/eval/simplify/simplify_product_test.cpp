#include <gtest/gtest.h>
#include <random>
#include <rapidcheck.h>
#include <string>
#include <utility>
#include <vector>

#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "frame/environment_block.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

using Factors = std::vector<std::pair<int, int>>;  // kinds of base and of exponent

DAG call(const char* function, DAG argument) { return newCall(naminstall(function), {argument}); }

/// A fresh base, raw where evaluation leaves it so.
DAG rawBase(int kind) {
  DAG x = naminstall("x"), y = naminstall("y");
  switch (kind) {
    case 0: case 1: case 2: return kind == 0 ? x : y;
    case 3: return call("f", x);
    case 4: return call("g", new3(SUM, cons1, cons1));
    case 5: return new3(POWER, x, immediate(3));
    case 6: return new3(POWER, y, immediate(-1));
    case 7: return new3(POWER, y, cons0);
    case 8: return new3(POWER, x, y);
    case 9: return immediate(6);
    case 10: return immediate(-1);
    case 11: return cons0;
    case 12: return NewInteger(3000000000);
    case 13: return new3(RATIONAL, immediate(-2), immediate(3));
    case 14: return new3(FLOAT, immediate(25), immediate(-1));
    case 15: return new3(FLOAT, cons0, cons0);
    case 16: return new2(COMPLEX, immediate(2));
    case 17: return new5(SUM, x, cons1, y, immediate(2));
    case 18: return new3(SUM, x, immediate(-3));
    case 19: return new5(PROD, x, cons1, y, immediate(-2));
    case 20: return new5(PROD, x, immediate(2), immediate(5), cons1);
    case 21: return new3(PROD, immediate(2), consh);
    case 22: return ini("infinity");
    case 23: return ini("undefined");
    case 24: return consminf;
    case 25: return ini("FAIL");
    case 26: return consm0;
    case 27: return new2(LIST, new3(EXPSEQ, x, immediate(2)));
    case 28: return new3(TABLEREF, naminstall("t"), new2(EXPSEQ, y));
    case 29: return new3(POWER, ini("infinity"), immediate(2));
    case 30: return new3(POWER, x, immediate(maxImmediate));
    default: return strinstall("text");
  }
}
constexpr int baseKinds = 32;

DAG rawExponent(int kind) {
  switch (kind) {
    case 0: case 1: case 2: case 3: return cons1;
    case 4: return immediate(2);
    case 5: return immediate(-1);
    case 6: return cons0;
    case 7: return immediate(-3);
    case 8: return NewInteger(5);
    case 9: return new3(RATIONAL, immediate(1), immediate(2));
    case 10: return new3(FLOAT, immediate(2), cons0);
    default: return consm0;
  }
}
constexpr int exponentKinds = 12;

DAG rawProduct(const Factors& factors) {
  DAG s = newl2(static_cast<Word>(2 * factors.size() + 1), PROD);
  for (std::size_t i = 0; i < factors.size(); ++i) {
    Pair factor = {rawBase(factors[i].first), rawExponent(factors[i].second)};
    // A root of the negative infinity is a number by itself, and stays a root beside other factors.
    if (factor.term == consminf && !isInteger(factor.coefficient)) factor.coefficient = cons1;
    pairsOf(s)[i] = factor;
  }
  return s;
}

/// The value of `simplify(product)`, or its error.
std::pair<DAG, std::string> outcome(DAG (*simplify)(DAG), DAG product) {
  DAG value;
  std::string error = errorOf([&] { value = simplify(product); });
  return {value, error};
}

constexpr int productsPerCase = 20;

rc::Gen<Factors> factorsOf(int bases, int exponents, int most) {
  return rc::gen::mapcat(rc::gen::inRange(1, most + 1), [=](int n) {
    return rc::gen::container<Factors>(static_cast<std::size_t>(n),
                                       rc::gen::pair(rc::gen::inRange(0, bases), rc::gen::inRange(0, exponents)));
  });
}

void agree(const Factors& factors) {
  auto [expected, expectedError] = outcome(generalProduct, rawProduct(factors));
  auto [value, error] = outcome(simplProduct, rawProduct(factors));
  RC_ASSERT(error == expectedError);
  if (value != expected) RC_FAIL(text(value) + " instead of " + text(expected));

  // The multiple of a monomial as one of the terms of a sum.
  auto sum = [](DAG term) {
    DAG z = naminstall("z");
    return simpl(new7(SUM, z, cons1, term, immediate(3), z, immediate(4)));
  };
  if (error != "") return;
  auto [expectedSum, expectedSumError] = outcome(sum, expected);
  auto [valueOfSum, errorOfSum] = outcome(sum, rawProduct(factors));
  RC_ASSERT(errorOfSum == expectedSumError);
  if (valueOfSum != expectedSum) RC_FAIL(text(valueOfSum) + " instead of " + text(expectedSum));
}

// What the short way gives is the object, or the error, of the general way.
TEST(SimplifyProduct, ShortWayAgreesWithTheGeneralOne) {
  auto check = [](const char* description, int bases, int exponents, int most) {
    EXPECT_TRUE(rc::check(description, [=] {
      for (int i = 0; i < productsPerCase; ++i) agree(*factorsOf(bases, exponents, most));
    }));
  };
  check("plain factors", 21, 7, 4);
  check("any factors", baseKinds, exponentKinds, 3);
  check("more factors than fit", 21, 5, 30);
}

// The order of the factors is that of the object that was there first.
TEST(SimplifyProduct, MonomialsAreFoundInAnyOrder) {
  std::vector<DAG> names;
  for (int i = 0; i < 9; ++i) names.push_back(naminstall(("factor" + std::to_string(i)).c_str()));
  auto product = [&](std::size_t n, std::size_t step) {
    DAG s = newl2(static_cast<Word>(2 * n + 1), PROD);
    for (std::size_t i = 0; i < n; ++i)
      pairsOf(s)[i] = {names[i * step % n], immediate(static_cast<int>(i * step % n) + 1)};
    return simpl(s);
  };
  for (std::size_t n : {3, 5, 7, 9}) {
    DAG first = product(n, 1);
    for (std::size_t step : {std::size_t{2}, n - 1}) EXPECT_EQ(product(n, step), first);
    EXPECT_EQ(first[1], names[0]);
  }
  const char* fault = checkUniqueTables();
  EXPECT_EQ(fault, nullptr) << fault;
}

// Long products keep the order of first occurrence, with equal factors in plenty or not at all.
TEST(SimplifyProduct, LongProductsCollect) {
  std::mt19937 random(20261125);
  int fresh = 0;
  for (std::size_t n : {13, 49, 50, 51, 200, 1000})
    for (std::size_t kinds : {n, n / 2, std::size_t{7}}) {
      std::vector<DAG> names;
      for (std::size_t i = 0; i < kinds; ++i) names.push_back(naminstall(("wide" + std::to_string(fresh++)).c_str()));
      std::vector<DAG> sums(kinds, cons0);
      DAG s = newl2(static_cast<Word>(2 * n + 1), PROD);
      for (std::size_t i = 0; i < n; ++i) {
        std::size_t k = i < kinds ? i : random() % kinds;
        int e = static_cast<int>(random() % 5) - 2;
        // An exponent 0 would take no place.
        DAG exponent =
            i % 2 == 0 ? immediate(e == 0 ? 3 : e) : simpl(new3(RATIONAL, immediate(2 * e + 1), immediate(2)));
        sums[k] = simpl(add(sums[k], exponent));
        pairsOf(s)[i] = {names[k], exponent};
      }
      std::vector<DAG> expected, found;
      for (std::size_t k = 0; k < kinds; ++k)
        if (sums[k] != cons0) expected.insert(expected.end(), {names[k], sums[k]});
      DAG product = simpl(s);
      for (Word i = 1; i < lengthOf(product); ++i) found.push_back(product[i]);
      EXPECT_TRUE(found == expected) << n << " factors of " << kinds << " kinds: " << text(product);
    }
}

// ---- quotients

using Random = std::mt19937;

int below(Random& random, int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }

/// A number of at most `digits` digits, not 0: a short integer or a float.
DAG randomReal(Random& random, int digits, bool isFloat) {
  int size = isFloat ? digits : std::min(digits, 2), bound = 1;
  for (int i = 0; i < size; ++i) bound *= 10;
  int m = 1 + below(random, bound - 1);
  DAG mantissa = Newint(below(random, 2) == 0 ? m : -m);
  return isFloat ? simpl(new3(FLOAT, mantissa, immediate(below(random, 7) - 3 - digits))) : mantissa;
}

DAG randomNumber(Random& random, int digits, int parts, bool isFloat) {
  auto part = [&] { return randomReal(random, digits, isFloat); };
  return parts == 0 ? part() : simpl(parts == 1 ? new2(COMPLEX, part()) : new3(COMPLEX, part(), part()));
}

/// `x` with the last digit of its first part another one, so that a quotient by it nearly cancels.
DAG neighbour(DAG x) {
  if (!isTag(x, COMPLEX)) return x;
  DAG near = CopyAlg(x), part = CopyAlg(x[1]);
  part[1] = addint(part[1], cons1);
  near[1] = simpl(part);
  return simpl(near);
}

DAG exactly(DAG x) {
  if (isTag(x, COMPLEX))
    return simpl(lengthOf(x) == 2 ? new2(COMPLEX, exactly(x[1])) : new3(COMPLEX, exactly(x[1]), exactly(x[2])));
  return isTag(x, FLOAT) ? simpl(mul(x[1], power(immediate(10), immediateValue(x[2])))) : x;
}

/// `found` is a float at most `hundredths` of a unit of its last digit away from `exact`.
bool isNear(DAG found, DAG exact, int digits, int hundredths) {
  if (!isTag(found, FLOAT)) return isZero(exact) && isZero(found);
  const auto place = static_cast<int>(ilength(found[1])) + immediateValue(found[2]) - digits;
  DAG error = absalg(simpl(add(exactly(found), simpl(negate(exact)))));
  DAG most = simpl(mul(simpl(new3(RATIONAL, immediate(hundredths), immediate(100))), power(immediate(10), place)));
  return compcon(simpl(error), most) <= 0;
}

// A float quotient is that of the exact numbers, each part rounded once, wherever the divisor stands and whatever
// stands beside it.
TEST(SimplifyProduct, FloatQuotientsAreRoundedOnce) {
  Random random(20261206);
  DAG x = naminstall("x");
  for (int digits : {3, 7, 9}) {
    EnvironmentChange change;
    setDigits(change, digits);
    for (int i = 0; i < 6000; ++i) {
      const int kinds = i % 27, parts = kinds % 3;
      DAG a = randomNumber(random, digits, kinds / 3 % 3, kinds / 9 != 0);
      DAG b = kinds / 9 == 1 && parts == kinds / 3 % 3 && below(random, 2) == 0
                  ? neighbour(a)
                  : randomNumber(random, digits, parts, kinds / 9 != 2);
      DAG exact = simpl(mul(exactly(a), simpl(new3(PROD, exactly(b), consm1))));
      DAG behind = simpl(new5(PROD, a, cons1, b, consm1));
      SCOPED_TRACE(text(a) + " over " + text(b) + " with " + std::to_string(digits) + " digits: " + text(behind));
      if (isTag(b, COMPLEX)) {
        ASSERT_EQ(simpl(new5(PROD, b, consm1, a, cons1)), behind);
        DAG beside = newl2(7, PROD);
        for (auto [at, base, exponent] : {std::tuple{1u, b, consm1}, {3u, x, cons1}, {5u, a, cons1}}) {
          beside[at] = base;
          beside[at + 1] = exponent;
        }
        ASSERT_EQ(simpl(beside), simpl(new5(PROD, behind, cons1, x, cons1)));
      }
      // Over an integer the quotient is a product with a fraction, which is rounded too.
      const int hundredths = isInteger(b) ? 101 : 51;
      ASSERT_TRUE(isNear(cxRealPart(behind), cxRealPart(exact), digits, hundredths));
      ASSERT_TRUE(isNear(cxImaginaryPart(behind), cxImaginaryPart(exact), digits, hundredths));
    }
    restoreDigits(change);
  }
}

}  // namespace
}  // namespace korel::test
