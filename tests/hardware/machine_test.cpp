// Compiled procedures against the plain walk, and both against a program of C.

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "hardware/compiled_cache.h"
#include "hardware/evalhf.h"
#include "hardware/hardware_calls.h"
#include "hardware/hardware_value.h"
#include "hardware/machine.h"
#include "hardware/random_hardware_programs.h"
#include "kernel_fixture.h"
#include "numbers/float/hardware_float.h"
#include "store/allocator.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel::test {

namespace {

// The value's bits, or the message of the error, as text; NaNs are one.
std::string outcome(DAG x, bool compiled) {
  hardwareCompiles = compiled;
  double value = 0.0;
  const std::string error = errorOf([&] { value = fevalhf(x); });
  hardwareCompiles = true;
  if (!error.empty()) return error;
  if (std::isnan(value)) return "NaN";
  if (isReferenceValue(value)) return isArrayValue(value) ? "an array" : "a procedure";
  char hex[ieeeHexLength + 1];
  HFloatToIEEEHex(value, false, hex);
  return hex;
}

// The call with the procedure in place of the name `f`.
DAG callOf(const std::string& procedure, const char* arguments) {
  say(("hfTested := " + procedure + ":").c_str());
  return parsed((std::string("hfTested(") + arguments + ")").c_str());
}

const char* const argumentLists[] = {"0.3, -1.7, 2", "1, 2, 3", "-2.5, 0.001, 11"};

std::string runOfC(const std::string& program) {
  const std::string stem = "/tmp/korel_hardware_" + std::to_string(getpid());
  FILE* file = std::fopen((stem + ".c").c_str(), "w");
  if (file == nullptr) return "";
  std::fputs(program.c_str(), file);
  std::fclose(file);
  const std::string build = "cc -O1 -w -ffp-contract=off -o " + stem + " " + stem + ".c -lm 2>/dev/null && " + stem;
  std::string output;
  if (FILE* pipe = popen(build.c_str(), "r"); pipe != nullptr) {
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, n);
    pclose(pipe);
  }
  std::remove((stem + ".c").c_str());
  std::remove(stem.c_str());
  return output;
}

const char* const preludeOfC =
    "#include <math.h>\n#include <stdio.h>\n#include <string.h>\n"
    "static double whole(double x, int n) { double r = 1; if (n < 0) { x = 1 / x; n = -n; }"
    " for (;;) { if (n & 1) r *= x; n >>= 1; if (n == 0) return r; x *= x; } }\n"
    "static double fraction(double x) { return isinf(x) ? 0 : x - trunc(x); }\n"
    "static void show(double x) { unsigned long long b; memcpy(&b, &x, 8); if (x != x) puts(\"NaN\");"
    " else printf(\"%016llx\\n\", b); }\n";

}  // namespace

TEST(HardwareMachine, RandomExpressionsGiveTheSameBits) {
  HardwarePrograms programs(20261);
  for (int k = 0; k < 400; ++k) {
    const std::string procedure = "proc(a, b, c) " + programs.expression(4) + " end";
    for (const char* arguments : argumentLists) {
      DAG call = callOf(procedure, arguments);
      EXPECT_EQ(outcome(call, true), outcome(call, false)) << procedure << " on " << arguments;
    }
  }
}

TEST(HardwareMachine, RandomProgramsGiveTheSameBitsAndErrors) {
  HardwarePrograms programs(4711);
  int values = 0;
  for (int k = 0; k < 600; ++k) {
    const std::string procedure = programs.procedure();
    for (const char* arguments : argumentLists) {
      DAG call = callOf(procedure, arguments);
      const std::string walked = outcome(call, false);
      EXPECT_EQ(outcome(call, true), walked) << procedure << " on " << arguments;
      values += walked.size() == 16;
    }
    EXPECT_NE(compiledProcedure(naminstall("hfTested")[1])->program, nullptr) << procedure;
  }
  EXPECT_GT(values, 600) << "too many programs end in errors";
}

TEST(HardwareMachine, RandomProgramsAgreeWithC) {
  HardwarePrograms programs(99);
  std::string source = preludeOfC, body;
  std::vector<std::string> expected, texts;
  for (int k = 0; k < 25; ++k) {
    const std::string procedure = programs.procedure();
    for (const char* arguments : argumentLists) {
      DAG call = callOf(procedure, arguments);
      const std::string ours = outcome(call, true);
      if (ours.size() != 16 && ours != "NaN") continue;
      const std::string name = "f" + std::to_string(expected.size());
      source += functionOfC(naminstall("hfTested")[1], name);
      body += "show(" + name + "(" + arguments + "));\n";
      expected.push_back(ours);
      texts.push_back(procedure + " on " + arguments);
    }
  }
  const std::string output = runOfC(source + "int main(void) {\n" + body + "return 0; }\n");
  if (output.empty()) GTEST_SKIP() << "no C compiler";
  std::size_t at = 0;
  for (std::size_t k = 0; k < expected.size(); ++k) {
    const std::size_t end = output.find('\n', at);
    ASSERT_NE(end, std::string::npos);
    EXPECT_EQ(expected[k], output.substr(at, end - at)) << texts[k];
    at = end + 1;
  }
}

// Each way out of a procedure, and what the code can't take: the same by both.
TEST(HardwareMachine, FormsAgreeWithTheWalk) {
  say("hfTable := array(1..3, [5, 6, 7]):");
  say("hfTwice := x -> 2*x:");
  const char* const procedures[] = {
      "proc(a, b) if a > 1 then return b end if; a end",
      "proc(a, b) local i; for i to 10 do if i = a then RETURN(i*b) end if end do; -1 end",
      "proc(a, b) local i; for i from b by a to 7 do i end do end",
      "proc(a, b) local i; for i from b by a while i < 7 do i end do; i end",
      "proc(a, b) for i to 3 do end do end",
      "proc(a, b) global hfG; for hfG to 3 do end do end",
      "proc(a, b) break end",
      "proc(a, b) next end",
      "proc(a, b) error \"bad %1\", a end",
      "proc(a, b) ERROR(\"bad %1\", b) end",
      "proc(a, b) a/(b - b) end",
      "proc(a, b) sqrt(a - 10) end",
      "proc(a, b) (a - a)^(b - b) end",
      "proc(a, b, c) c end",
      "proc(a, b) if a + b then 1 else 2 end if end",
      "proc(a, b) hfTwice(hfTwice(a)) + hfTwice(b) end",
      "proc(a, b) hfMissing(a) end",
      "proc(a, b) hfTable[a] + hfTable[b] end",
      "proc(a, b) local A; A := array(1..2, 1..2); A[1, a] := b; A[1, a] + A[2, 2] end",
      "proc(a, b) local A; A := array(1..2, 1..2); A[1] end",
      "proc(a, b) local A; A := array(1..2, 1..2); A[1, 2] + A[3, 2] end",
      "proc(a, b) local A; A := array(1..2); A[A] end",
      "proc(a, b) local A; A := array(1..2); A + 1 end",
      "proc(a, b) local A; A := array(1..2); A := A[1] + 1; A end",
      "proc(a, b) local A; A := array(1..2, 1..2, 1..2); A[1, 2, a] := 7; A[1, 2, 1] end",
      "proc(a, b) a[1] end",
      "proc(a, b) local A, i, j, s; A := array(1..3, 1..3, [[1, 2, 3], [4, 5, 6], [7, 8, 9]]); s := 0;"
      " for i to 3 do for j to 3 do s := s + A[i, j]*A[j, a] end do end do; s end",
      "proc(a, b) local A, i, s; A := array(1..3, [5, 6, 7]); s := b; for i to 3 do s := s + A[i]*A[4 - i] end do; s "
      "end",
      "proc(a, b) local A, i, s; A := array(1..3, [5, 6, 7]); s := b; for i to 3 do s := s + A[i]*A[i + a] end do; s "
      "end",
      "proc(a, b) local A, s; A := array(1..3, [5, 6, 7]); s := A[a]*A[b] + A[b]*A[b] - A[a]; A[a] := s*A[b] - s; A[a] "
      "end",
      "proc(a, b) local x; x := (a + b)*(a - b) - (a*b)*(b - a); (x + a)*b - (b - x*a) end",
      "proc(a, b) (a*1e200)^2 + b^2 end",
      "proc(a, b) (a*1e200)^2 - (b*1e200)^2 end",
      "proc(a, b) (a/b)^2 - (b*a)^2 + a^3 - b^65 end",
      "proc(a, b) local f; f := hfTwice; f(a) + f(b) end",
      "proc(a, b) a(b) end",
      "proc(a, b) piecewise(a < 0, 1, b < 0, 2, a = b, 3) end",
      "proc(a, b) local x; x := `if`(a < b, hfTwice, a); if x::procedure then x(a) else x end if end",
      "proc(a, b) sum(k^2, k = 1..a) + product(k, k = 1..b) end",
      "proc(a, b) local i; i := 3; sum(i, i = 1..a) + 10*i end",
      "proc(a, b) local i; i := 3; i := product(i + b, i = 1..3) - add(sum(a*i, a = 1..i), i = 1..4)*mul(i, i = b..2); "
      "i end",
      "proc(a, b) sum(a/(3 - b), b = 1..5) end",
      "proc(a, b) local i; sum(i + hfTable, i = 1..2) end",
      "proc(a, b) a^(-2) + b^(-3) - (a - 1)^(-5) end",
      "proc(a, b) (a*1e-200)^(-2) end",
      "proc(a, b) a := a + 1; b := b*a; a*b*nargs end",
      "proc(a, b) type(a, odd) and (b::even or a::foo) end",
      "proc(a, b) args end",
      "proc(a, b) Digits := 3 end",
      "proc(a, b) local x, y; x, y := a, b; x end",
      "proc(a, b) if a < b then 3; 4 end if; %% end",
      "proc(a, b) `+`(a, b, 1)*max(a, b, 3)/min(a, b) end",
      "proc(a, b) 1 + RETURN(a) end",
      "proc(a, b) \"text\" end",
      "proc(a, b) hfTwice(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11) end",
      "proc(a, b) end",
      "proc(a, b) a; end",
      "proc(a, b) local i; for i to 2 do if b > 0 then next end if; i end do end",
      "proc(a, b) local i; to a do b end do end",
  };
  const char* const arguments[] = {"1, 2", "2, 1", "0.5, -3", "3, undefined", "hfarray(1..3), 1", "1"};
  for (const char* procedure : procedures)
    for (const char* list : arguments) {
      DAG call = callOf(procedure, list);
      const std::string walked = outcome(call, false);
      EXPECT_EQ(outcome(call, true), walked) << procedure << " on " << list;
      EXPECT_EQ(outcome(call, true), walked) << procedure << " on " << list << ", once more";
    }
}

// A loop of arithmetic, calls and elements takes no storage once its code is there.
TEST(HardwareMachine, StraightArithmeticAllocatesNothing) {
  say("hfSquare := x -> x*x:");
  DAG call = callOf(
      "proc(n) local i, s, A; A := hfarray(1 .. 9); s := 0; for i to n do"
      " A[1 + i - 8*floor(i/8)] := s/3.7; s := sin(s) + hfSquare(i)*1e-3 + A[2] end do; s end",
      "20000");
  fevalhf(call);
  DAG small = callOf("proc(n) local i, s; s := 0; for i to n do s := sin(s) + hfSquare(i)*1/3 end do; s end", "20000");
  fevalhf(small);
  const std::int64_t before = cused;
  fevalhf(small);
  EXPECT_EQ(cused, before);
}

// What never ends by itself ends by an interrupt, in code and in the walk, and the session goes on.
TEST(HardwareMachine, InterruptsEndLoopsAndRecursion) {
  say("hfRecursion := proc(n) if n > 0 then hfRecursion(n - 1) + hfRecursion(n - 1.0) else 1 end if end:");
  const char* const endless[] = {"evalhf((proc() do end do end)());",
                                 "evalhf((proc() local i; for i while i > 0 do i := 1 end do end)());",
                                 "evalhf((proc() local i; for i do sin(i) end do end)());",
                                 "evalhf((proc(n) sum(i, i = 1..n) end)(infinity));", "evalhf(hfRecursion(60));"};
  for (bool compiled : {true, false})
    for (const char* statement : endless) {
      hardwareCompiles = compiled;
      FrontEnd frontEnd;
      frontEnd.interruptsAfter = 20;
      EXPECT_NE(sayTo(frontEnd, statement).find("interrupted"), std::string::npos) << statement;
      EXPECT_EQ(say("evalhf(hfRecursion(3));"), "8.");
    }
  hardwareCompiles = true;
}

// A procedure that is assigned anew, and one that dies, is not taken for the old one.
TEST(HardwareMachine, CodeFollowsTheProcedure) {
  say("hfOuter := proc(x) hfInner(x) end:");
  for (int k = 2; k < 50; ++k) {
    say(("hfInner := x -> x*" + std::to_string(k) + ":").c_str());
    say("gc():");
    EXPECT_EQ(fevalhf(parsed("hfOuter(5)")), 5.0 * k);
  }
}

}  // namespace korel::test
