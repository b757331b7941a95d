// Break points whose condition is false, and the profile of statements, leave a program what it is; and the profile
// counts what the program counts itself. Programs are random: loops, branches, jumps, errors and recursion.

#include <gtest/gtest.h>
#include <random>
#include <string>

#include "kernel_fixture.h"

namespace korel {
namespace {

using test::evaluated;
using test::say;

// Writes a random procedure. Its statements are numbered in the order in which they are written.
class Program {
 public:
  /// With `counting`, each statement has one in front of it that counts it.
  Program(unsigned seed, bool counting) : random_(seed), counting_(counting) {
    text_ = "rp := proc(n) local a, b, c, i1, i2, i3, x1, x2, x3; global g, cnt; a := n; b := 2; c := 0; ";
    statements_ = 3;
    sequence(0, 3 + below(4));
    text_ += "a + b + c end proc:";
  }
  const std::string& text() const { return text_; }
  /// Numbers of the counted statements: count k counts the statement behind number counters()[k - 1].
  const std::vector<int>& counters() const { return counters_; }

 private:
  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  std::string pick(std::initializer_list<const char*> choices) {
    return *(choices.begin() + below(int(choices.size())));
  }
  std::string variable() { return pick({"a", "b", "c", "g"}); }
  std::string expression() {
    switch (below(5)) {
      case 0: return std::to_string(below(9));
      case 1: return variable() + " + " + std::to_string(1 + below(4));
      case 2: return "irem(" + variable() + ", 7)";
      case 3: return variable() + " - " + variable();
      default: return variable();
    }
  }
  std::string condition() {
    return "irem(" + variable() + ", " + std::to_string(2 + below(3)) + ") = " + pick({"0", "1"});
  }

  void begin() {
    if (counting_) {
      counters_.push_back(++statements_);
      const std::string k = std::to_string(counters_.size());
      text_ += "cnt[" + k + "] := cnt[" + k + "] + 1; ";
    }
    ++statements_;
  }
  void sequence(int depth, int length) {
    for (int i = 0; i < length; ++i) statement(depth);
  }
  void body(int depth) { sequence(depth + 1, 1 + below(3)); }

  void loop(int depth) {
    const std::string v = std::to_string(depth + 1);
    switch (below(3)) {
      case 0:
        text_ += "for i" + v + " from " + std::to_string(below(3)) + " to " + std::to_string(2 + below(3)) + " do ";
        break;
      case 1: text_ += "for i" + v + " from 4 to 1 by -2 while " + variable() + " < 50 do "; break;
      default: text_ += "for x" + v + " in [1, a, 3] do "; break;
    }
    ++loops_;
    body(depth);
    --loops_;
    text_ += "end do; ";
  }
  void branch(int depth) {
    text_ += "if " + condition() + " then ";
    body(depth);
    if (below(2) == 0) {
      text_ += "elif " + condition() + " then ";
      body(depth);
    }
    if (below(2) == 0) {
      text_ += "else ";
      body(depth);
    }
    text_ += "end if; ";
  }
  void trap(int depth) {
    text_ += "try ";
    body(depth);
    text_ += "catch \"lost\": ";
    body(depth);
    if (below(2) == 0) {
      text_ += "finally ";
      body(depth);
    }
    text_ += "end try; ";
  }
  void statement(int depth) {
    begin();
    const int choice = below(depth < 3 ? 14 : 9);
    switch (choice) {
      case 0: case 1: text_ += variable() + " := " + expression() + "; "; return;
      case 2: text_ += "print(" + expression() + "); "; return;
      case 3: text_ += expression() + "; "; return;
      case 4: text_ += "a, b := b, a; "; return;
      case 5: text_ += "c := %; "; return;
      case 6:
        text_ += "if n > 0 then ";
        begin();
        text_ += "a := irem(rp(n - 1), 11) end if; ";
        return;
      case 7:
        text_ += "if " + condition() + " then ";
        begin();
        text_ += loops_ > 0 ? pick({"break", "next"}) : below(3) == 0 ? "return a, b" : "NULL + c";
        text_ += " end if; ";
        return;
      case 8:
        text_ += "if " + condition() + " then ";
        begin();
        text_ += "error \"lost %1\", a end if; ";
        return;
      case 9: case 10: return loop(depth);
      case 11: case 12: return branch(depth);
      default: return trap(depth);
    }
  }

  std::mt19937 random_;
  bool counting_;
  std::string text_;
  int statements_ = 0, loops_ = 0;
  std::vector<int> counters_;
};

std::string sayAll(std::initializer_list<std::string> statements) {
  std::string shown;
  for (const std::string& statement : statements) shown += say(statement.c_str()) + "\n";
  return shown;
}

std::string outcome(int printLevel) {
  sayAll({"g := 5:", "traperror(1):", "printlevel := " + std::to_string(printLevel) + ":"});
  std::string shown = sayAll({"rp(2);", "g;", "traperror(rp(1));", "%;", "rp(0);", "g, lasterror;"});
  say("printlevel := 1:");
  return shown;
}

int statementCount() { return std::stoi(evaluated("debugopts('statcount' = rp)")); }

TEST(WrappedPrograms, BehaveAsWithoutWrappers) {
  say("debugger := proc() print(stopped); NULL end proc:");
  for (unsigned seed = 1; seed <= 60; ++seed) {
    const Program program(seed, false);
    ASSERT_EQ(say(program.text().c_str()), "") << program.text();
    const int level = seed % 3 == 0 ? 7 : seed % 3 == 1 ? 1 : 4;
    const std::string plain = outcome(level);
    const int count = statementCount();
    for (int k = 1; k <= count; ++k)
      ASSERT_EQ(say(("debugopts('stopat' = [rp, " + std::to_string(k) + ", n = -1]);").c_str()), "");
    EXPECT_EQ(outcome(level), plain) << "with break points, level " << level << ": " << program.text();
    ASSERT_EQ(say("debugopts('traceproc' = rp);"), "");
    EXPECT_EQ(outcome(level), plain) << "traced, level " << level << ": " << program.text();
    EXPECT_EQ(statementCount(), count) << program.text();
    ASSERT_EQ(say("debugopts('traceproc' = [rp, false]);"), "");
    EXPECT_EQ(outcome(level), plain) << program.text();
  }
}

TEST(WrappedPrograms, AreCountedAsTheyCountThemselves) {
  for (unsigned seed = 100; seed < 140; ++seed) {
    const Program program(seed, true);
    ASSERT_EQ(say(program.text().c_str()), "") << program.text();
    const int counts = static_cast<int>(program.counters().size());
    sayAll({"cnt := table([seq(k = 0, k = 1.." + std::to_string(counts) + ")]):", "g := 5:"});
    sayAll({"`TRACE/rp` := '`TRACE/rp`':", "debugopts('traceproc' = rp):", "rp(2):", "traperror(rp(1)):", "rp(0):"});
    for (int k = 1; k <= counts; ++k) {
      const int number = program.counters()[static_cast<std::size_t>(k - 1)];
      const std::string own = evaluated(("cnt[" + std::to_string(k) + "]").c_str());
      const std::string row = evaluated(("`TRACE/rp`[" + std::to_string(number + 2) + ", 1]").c_str());
      ASSERT_EQ(row, own) << "statement " << number + 1 << " of " << program.text();
    }
  }
}

}  // namespace
}  // namespace korel
