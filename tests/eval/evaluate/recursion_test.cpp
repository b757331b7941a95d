// Endless recursion by every road ends in one orderly error, and what comes next runs.

#include <gtest/gtest.h>
#include <string>

#include "frame/environment.h"
#include "frame/errors.h"
#include "kernel_fixture.h"
#include "session/driver.h"
#include "store/collect/collector.h"

namespace korel::test {
namespace {

struct Road {
  const char* definition;
  const char* call;
};
constexpr Road roads[] = {
    {"r := proc(n) r(n + 1) end proc:", "r(1)"},
    {"r := proc(n) option remember; 1 + r(n + 1) end proc:", "r(1)"},
    {"r := proc(n) [x, r(n + 1)] end proc:", "r(1)"},
    {"r := proc(n) x[r(n + 1)] end proc:", "r(1)"},
    {"r := proc(n) x and r(n + 1) end proc:", "r(1)"},
    {"r := proc(n) r(n + 1)..r(n + 2) end proc:", "r(1)"},
    {"r := proc(n) seq(r(n + i), i = 1..1) end proc:", "r(1)"},
    {"r := proc(n) add(r(n + i), i = [1]) end proc:", "r(1)"},
    {"r := proc(n) local i; for i to 1 do r(n + 1); break od end proc:", "r(1)"},
    {"r := proc(n) while r(n + 1) do od end proc:", "r(1)"},
    {"r := proc(n) if r(n + 1) = 3 then 1 fi end proc:", "r(1)"},
    {"r := proc(n) try r(n + 1) catch: 5 finally 3 end try end proc:", "r(1)"},
    {"r := proc(n) traperror(r(n + 1)) end proc:", "r(1)"},
    {"r := proc(n) error \"%1\", r(n + 1) end proc:", "r(1)"},
    {"r := proc(n) return r(n + 1) end proc:", "r(1)"},
    {"r := proc(n) print(r(n + 1)) end proc:", "r(1)"},
    {"r := proc(n) parse(cat(\"r(\", n, \")\"), statement) end proc:", "r(1)"},
    {"r := proc(n) eval(x, x = r(n + 1)) end proc:", "r(1)"},
    {"r := proc(n) local k; k := n; proc() r(k + 1) end proc() end proc:", "r(1)"},
    {"r := proc(n) module() export a; a := r(n + 1) end module end proc:", "r(1)"},
    {"r := proc(n) global q; q := r(n + 1) end proc:", "r(1)"},
    {"`type/endless` := proc(x) type([x], endless) end proc:", "type(1, endless)"},
    {"ring1, ring2 := 'ring2', 'ring1':", "ring1"},
    {"ring[1], ring[2] := 'ring[2]', 'ring[1]':", "ring[1]"},
};

bool endsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

void expectAllEnd() {
  for (auto [definition, call] : roads) {
    say(definition);
    // No trap takes the error.
    for (std::string statement : {std::string(call) + ";", "try " + std::string(call) + " catch: 7 end try;"}) {
      std::string shown = say(statement.c_str());
      EXPECT_TRUE(endsWith(shown, "too many levels of recursion")) << statement << " shows " << shown;
      EXPECT_EQ(say("1 + 1;"), "2") << statement;
      EXPECT_EQ(errorProcDepth(), 0) << statement;
    }
  }
  const char* fault = checkHeap();
  EXPECT_EQ(fault, nullptr) << fault;
}

// A short native stack as well: what runs below the bound without a check of its own has room enough. The
// whole stack is tests/language/recursion's; some of these roads cost the square of it.
TEST(Recursion, EveryRoadEndsInOrder) {
  say("0;");
  std::int64_t before = korelLimitStack;
  for (std::int64_t kilobytes : {96, 128, 1024}) {
    korelLimitStack = kilobytes * 1024;  // taken up when the next statement begins
    expectAllEnd();
  }
  korelLimitStack = before;
  say("0;");
}

}  // namespace
}  // namespace korel::test
