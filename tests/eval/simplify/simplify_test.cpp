#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <string>
#include <vector>

#include "eval/simplify/simplify.h"
#include "frame/output.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/check/verify.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/read/source.h"

namespace korel::test {
namespace {

DAG parsedSimple(const std::string& source) { return nerintokorel(parsestring(source.c_str(), 1)); }

/// Expressions of sums, products and powers over a few names and small numbers.
rc::Gen<std::string> expressions(int depth) {
  auto leaf = rc::gen::oneOf(
      rc::gen::element<std::string>("a", "b", "c", "f(a)", "I", "t[1]"),
      rc::gen::map(rc::gen::inRange(0, 12), [](int n) { return std::to_string(n); }),
      rc::gen::map(rc::gen::pair(rc::gen::inRange(1, 9), rc::gen::inRange(2, 9)),
                   [](std::pair<int, int> q) { return std::to_string(q.first) + "/" + std::to_string(q.second); }));
  if (depth == 0) return leaf;
  auto sub = expressions(depth - 1);
  auto joined = [sub](const char* operation) {
    return rc::gen::map(rc::gen::pair(sub, sub), [operation](std::pair<std::string, std::string> p) {
      return "(" + p.first + ")" + operation + "(" + p.second + ")";
    });
  };
  auto raised = rc::gen::map(rc::gen::pair(sub, rc::gen::inRange(1, 4)), [](std::pair<std::string, int> p) {
    return "(" + p.first + ")^" + std::to_string(p.second);
  });
  return rc::gen::weightedOneOf<std::string>(
      {{2, leaf}, {3, joined("+")}, {2, joined("-")}, {3, joined("*")}, {1, raised}});
}

rc::Gen<std::string> monomials() {
  auto factor = rc::gen::map(rc::gen::pair(rc::gen::element<std::string>("a", "b", "c", "f(a)", "3", "2/5", "I"),
                                           rc::gen::element<std::string>("1", "2", "-1", "-2")),
                             [](std::pair<std::string, std::string> p) { return p.first + "^(" + p.second + ")"; });
  return rc::gen::map(rc::gen::pair(factor, factor),
                      [](std::pair<std::string, std::string> p) { return p.first + "*" + p.second; });
}

// Equal values are one object however they were put together.
TEST(Simplify, SumsAndProductsAreOneObjectInAnyOrder) {
  EXPECT_TRUE(rc::check([] {
    std::string x = *expressions(2), y = *expressions(2), z = *expressions(2);
    auto same = [](const std::string& left, const std::string& right) {
      DAG l, r;
      RC_ASSERT(errorOf([&] {
                  l = parsedSimple(left);
                  r = parsedSimple(right);
                }) == "");
      if (l != r) RC_FAIL(left + " is " + text(l) + ", " + right + " is " + text(r));
    };
    same("(" + x + ")+(" + y + ")", "(" + y + ")+(" + x + ")");
    same("((" + x + ")+(" + y + "))+(" + z + ")", "(" + x + ")+((" + y + ")+(" + z + "))");
    same("(" + x + ")-(" + x + ")", "0");
    same("2*(" + x + ")", "(" + x + ")+(" + x + ")");
    // A number multiplies a sum out, so that factors that are sums depend on their order.
    std::string m = *monomials(), n = *monomials();
    same("(" + m + ")*(" + n + ")", "(" + n + ")*(" + m + ")");
    same("(" + m + ")*(" + m + ")", "(" + m + ")^2");
    same("(" + m + ")*(" + n + ")/(" + m + ")", "(" + n + ")");
  }));
}

// A canonical object is its own canonical form, passes the strict structural check, and evaluates to
// itself while its names have no value.
TEST(Simplify, ResultsAreSettled) {
  EXPECT_TRUE(rc::check([] {
    std::string source = *expressions(3);
    DAG x;
    RC_ASSERT(errorOf([&] { x = parsedSimple(source); }) == "");
    RC_ASSERT(Verify(x));
    if (isImmediate(x) || hasTag(x, NAME)) return;
    RC_ASSERT(simpl(CopyAlg(x)) == x);
    RC_ASSERT(isSimplified(x));
  }));
}

// Sums of many terms against a count made beside them.
TEST(Simplify, LongSumsCollect) {
  std::vector<int> coefficient(40, 0);
  std::string sum = "0";
  unsigned state = 12345;
  for (int i = 0; i < 3000; ++i) {
    state = state * 1103515245 + 12345;
    int name = static_cast<int>(state >> 16) % 40, c = static_cast<int>(state >> 8) % 7 - 3;
    coefficient[static_cast<std::size_t>(name)] += c;
    sum += "+(" + std::to_string(c) + ")*v" + std::to_string(name);
  }
  std::string expected = "0";
  for (int k = 39; k >= 0; --k)
    expected += "+(" + std::to_string(coefficient[static_cast<std::size_t>(k)]) + ")*v" + std::to_string(k);
  EXPECT_EQ(parsedSimple(sum), parsedSimple(expected));
}

TEST(Simplify, ErrorsLeaveTheStateAsItWas) {
  DAG before = parsedSimple("a+b^2");
  for (const char* bad : {"\"s\"+a", "a*\"s\"", "0^(-1)", "[1]+[1,2]", "factorial(-1)"}) {
    EXPECT_NE(errorOf([&] { parsedSimple(bad); }), "");
    EXPECT_EQ(parsedSimple("b^2+a"), before);
  }
  const char* fault = checkHeap();
  EXPECT_EQ(fault, nullptr) << fault;
}

TEST(Simplify, DepthIsBounded) {
  DAG x = naminstall("x");
  for (int i = 0; i < 1000000; ++i) x = new2(UNEVAL, x);
  EXPECT_EQ(errorOf([&] { simpl(x); }), "too many levels of recursion");
  EXPECT_EQ(say("1 + 1;"), "2");
}

}  // namespace
}  // namespace korel::test
