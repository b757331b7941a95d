// What procedures, closures, modules and remember tables keep to themselves, through the language.

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>

#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel::test {
namespace {

struct Said {
  const char* statement;
  const char* shown;
};
void expectSaid(std::initializer_list<Said> rows) {
  for (const Said& row : rows) EXPECT_EQ(say(row.statement), row.shown) << row.statement;
}

TEST(Evaluate, NamesAndLastNames) {
  expectSaid({
      {"e1 := e2:", ""},
      {"e2 := 3:", ""},
      {"e1;", "3"},
      {"ef := proc() end:", ""},
      {"ef;", "ef"},
      {"eval(ef);", "proc () end proc"},
      {"eg := ef:", ""},
      {"eg;", "ef"},
      {"eval(e1, 1);", "e2"},
      {"eval(e1, 0);", "Error, wrong number (or type) of parameters in function eval"},
      {"'e1';", "e1"},
      {"''e1'';", "'e1'"},
      {"'ef'(1+1);", "ef(2)"},
      {"proc() local e1; global e9; e1 := e9; e9 := 4; e1 end();", "e9"},
      {"eval(x^2 + y, x = 3);", "9+y"},
      {"eval([x, f(x)], {x = 1, f = g});", "[1, g(1)]"},
      {"eval(x - y, [x = y, y = x]);", "y-x"},
  });
}

TEST(Evaluate, ArgumentsAndParameters) {
  expectSaid({
      {"pa := proc(a, b) nargs, [args], procname end:", ""},
      {"pa(1, NULL, 2, 3);", "3, [1, 2, 3], pa"},
      {"pb := proc(a, b) if a then b else 0 fi end:", ""},
      {"pb(false);", "0"},
      {"pb(true);", "Error, (in pb) pb uses a 2nd argument, b, which is missing"},
      {"pc := proc(n::evaln) n := 7 end:", ""},
      {"pc(pcv): pcv;", ""},
      {"pcv;", "7"},
      {"pd := proc(x::uneval) x end:", ""},
      {"pd(1 + pcv);", "1+pcv"},
      {"pe := proc(x::[integer, string]) x end:", ""},
      {"pe([1, \"s\"]);", "[1, \"s\"]"},
      {"pe(y);", "Error, pe expects its 1st argument, x, to be of type [integer, string], but received y"},
  });
}

TEST(Evaluate, FramesEndWithTheirCall) {
  expectSaid({
      {"fd := proc() Digits := 20; evalf(1/3) end:", ""},
      {"fd();", ".33333333333333333333"},
      {"evalf(1/3);", ".3333333333"},
      {"fe := proc() _EnvA := 2; _EnvA end:", ""},
      {"_EnvA := 1:", ""},
      {"fe(), _EnvA;", "2, 1"},
      {"fx := proc() Digits := 30; error \"x\" end:", ""},
      {"try fx() catch: Digits end;", "10"},
      {"fl := proc() local v; v end:", ""},
      {"fl();", "v"},
      {"evalb(fl() = v);", "false"},
      {"evalb(fl() = fl());", "false"},
  });
}

TEST(Evaluate, ClosuresKeepTheirOwnFrame) {
  expectSaid({
      {"counter := proc(n) local k; k := n; proc() k := k + 1; k, n end end:", ""},
      {"ca := counter(10): ", ""},
      {"cb := counter(20):", ""},
      {"ca();", "11, 10"},
      {"ca();", "12, 10"},
      {"cb();", "21, 20"},
      {"compose := (f, g) -> x -> f(g(x)):", ""},
      {"compose(x -> x^2, x -> x + 1)(3);", "16"},
      {"nested := proc(a) proc(b) proc(c) [a, b, c] end end end:", ""},
      {"nested(1)(2)(3);", "[1, 2, 3]"},
  });
}

TEST(Evaluate, RememberTablesAnswerFirst) {
  expectSaid({
      {"rf := proc(n) option remember; if n < 2 then n else rf(n-1) + rf(n-2) fi end:", ""},
      {"rf(150);", "9969216677189303386214405760200"},
      {"rf(3) := 100:", ""},
      {"rf(3);", "100"},
      {"ri(2) := 5:", ""},
      {"ri(2), ri(3);", "5, ri(3)"},
      {"abs(1) := 2:", "Error, invalid left hand side in assignment"},
  });
}

TEST(Evaluate, ModulesHoldTheirMembers) {
  expectSaid({
      {"module mo() export inc, total; local n; n := 0; inc := proc() n := n + 1 end; total := () -> n end:", ""},
      {"mo:-inc(): mo:-inc():", ""},
      {"mo:-inc():", ""},
      {"mo:-total();", "2"},
      {"mo[total]();", "2"},
      {"mo:-n;", "Error, module `mo` does not export `n`"},
      {"mo := 1;", "Error, attempting to assign to `mo` which is protected"},
      {"use mo in total() end use;", "2"},
      {"exports(mo);", "inc, total"},
      {"module(x) end;", "Error, modules cannot have parameters"},
      {"module() return 1 end;", "Error, (in unknown) return value not allowed in a module definition"},
  });
}

TEST(Evaluate, DeclarationsAreChecked) {
  expectSaid({
      {"proc() z1 := 1 end:", "Warning, `z1` is implicitly declared local to procedure"},
      {"zf := proc() z1 := 1 end:", "Warning, `z1` is implicitly declared local to procedure `zf`"},
      {"proc(x) local x; end;", "Error, parameter and local `x` have the same name"},
      {"proc(x, x) end;", "Error, parameter `x` is declared more than once"},
      {"proc() local x; global x; end;", "Error, local and global `x` have the same name"},
      {"proc() local nargs; end;", "Error, nargs cannot be declared as a local"},
      {"proc() local Digits; end;", "Error, cannot use environment variable `Digits` as a local variable"},
      {"x -> 3;", "3"},
      {"x -> sin(x);", "sin"},
      {"(x, y) -> g(x, y);", "g"},
      {"(x, y) -> g(y, x);", "proc (x, y) options operator, arrow; g(y,x) end proc"},
  });
}

TEST(Evaluate, JumpsLeaveNothingBehind) {
  std::int32_t level = evaluationLevel;
  int procs = errorProcDepth(), traps = trapSet;
  expectSaid({
      {"jr := proc() for i to 5 do if i = 3 then return i*10 fi od; 0 end:",
       "Warning, `i` is implicitly declared local to procedure `jr`"},
      {"jr();", "30"},
      {"jb := proc() break end:", ""},
      {"jb();", "Error, break or next outside do loop"},
      {"jg := proc(n) local k; k := 0; again; k := k + 1; if k < n then goto(again) fi; k end:", ""},
      {"jg(5);", "5"},
      {"jx := proc() goto(nowhere) end:", ""},
      {"jx();", "Error, (in jx) goto to an undefined or unreachable label"},
      {"seq(jr(), k = 1..2);", "30, 30"},
  });
  EXPECT_EQ(evaluationLevel, level);
  EXPECT_EQ(errorProcDepth(), procs);
  EXPECT_EQ(trapSet, traps);
}

// Rational arithmetic against cross-multiplied integers.
TEST(Arithmetic, RationalsStayInLowestTerms) {
  unsigned state = 99;
  auto next = [&state](int bound) {
    state = state * 1664525 + 1013904223;
    return static_cast<std::int32_t>((state >> 8) % static_cast<unsigned>(2 * bound + 1)) - bound;
  };
  auto fraction = [&](std::int32_t& p, std::int32_t& q) {
    p = next(5000);
    q = next(60);
    if (q == 0) q = 7;
    return simpl(mul(immediate(p), simpl(power(immediate(q), -1))));
  };
  for (int i = 0; i < 20000; ++i) {
    std::int32_t p1, q1, p2, q2;
    DAG x = fraction(p1, q1), y = fraction(p2, q2);
    DAG sum = simpl(add(x, y)), product = simpl(mul(x, y));
    auto value = [](std::int64_t n, std::int64_t d) {
      return simpl(mul(simpl(NewInteger(n)), simpl(power(simpl(NewInteger(d)), -1))));
    };
    ASSERT_EQ(sum, value(std::int64_t{p1} * q2 + std::int64_t{p2} * q1, std::int64_t{q1} * q2));
    ASSERT_EQ(product, value(std::int64_t{p1} * p2, std::int64_t{q1} * q2));
    std::int64_t left = std::int64_t{p1} * q2, right = std::int64_t{p2} * q1;
    if (std::int64_t{q1} * q2 < 0) std::swap(left, right);
    ASSERT_EQ(compcon(x, y), left < right ? -1 : left > right ? 1 : 0);
  }
}

}  // namespace
}  // namespace korel::test
