#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "kernel_fixture.h"
#include "library/library_calls.h"
#include "store/constants.h"

namespace korel::test {

namespace {

// Expressions that make the kernel call a procedure of the library.
struct CallingExpression {
  const char* procedure;
  const char* expression;
  const char* arguments;  // what the procedure is called with
};
constexpr CallingExpression callingExpressions[] = {
    {"convert/twice", "convert(x, twice, 3)", "[x, 3]"},
    {"debugger", "DEBUG(x, 2)", "[x, 2]"},
    {"diff/fh", "diff(fh(x^2), x)", "[x^2, x]"},
    {"diff/@@", "proc() global evalapply; evalapply := proc(g, a) 'g'(op(a)) end; diff((fc@@n)(x), x) end()",
     "[`@@`(fc,n)(x), x]"},
    {"diff/function", "diff(fm(x^2, y), x)", "[x^2, y, x, fm]"},
    {"diff/series", "diff(subsop(1 = f(x), series(x + 1, x)), x)", "[series(f(x)*1+x,x,1), x]"},
    {"eval/fa", "eval(fa(x), x = 2)", "[fa(x), x = 2]"},
    {"evalapply", "(x + y)(2)", "[x+y, [2]]"},
    {"evalf/fb", "evalf(fb(x, 2))", "[x, 2]"},
    {"evalf/@@", "evalf('(fc@@3)'(x))", "[fc, 3, x]"},
    {"evalf/constant/number", "evalf(number)", "[]"},
    {"evalf/hypergeom/converg", "`evalf/hypergeom/kernel`([1, 1], [3], 1)", "[[1, 1], [3], 1]"},
    {"evalf/power", "1.5^(2.5 + I)", "[1.5, 2.5+1.*I]"},
    {"evalgf1/twice", "evalgf1(twice(3), 7)", "[3, 7]"},
    {"expand/fd", "expand(fd(x, 2))", "[x, 2]"},
    {"expand/@@_call", "expand('(fe@@2)'(x))", "[fe, 2, x]"},
    {"expand/bigpow", "expand((x + 1)^11)", "[x+1, 11]"},
    {"expand/operator", "expand(x -> x)", "[proc (x) options operator, arrow; x end proc]"},
    {"expand/power", "expand(x^(n + 1))", "[x, n+1]"},
    {"maxnorm/fg", "maxnorm(fg(x, 2))", "[x, 2]"},
    {"normal/expanded", "normal(1/(x + 1), expanded)", "[1, x+1]"},
    {"normal/gcd", "normal((x^2 - 1)/(x - 1))", "[x^2-1, x-1]"},
    {"ilog", "ilog2(100)", "[100]"},
    {"index/own", "eval(table(own))[7]", "[[7], table()]"},
    {"index/FillInitVals", "table([5, 6])", "[table(), [5, 6]]"},
    {"linalg/matmult", "inner(x, y)", "[x, y]"},
    {"mod/fd", "fd(9, x) mod 7", "[9, x, 7]"},
    {"modp1/Twice", "modp1(Twice(3), 7)", "[3, 7]"},
    {"modp2/Twice", "modp2(Twice(3, [4]), 7)", "[3, [4], 7]"},
    {"rand", "modp1(Randpoly(x, 2), 10^5)", "[100000]"},
    {"series/fj", "series(fj(y*x), x)", "[y*x, x]"},
    {"series/fracpower", "proc() global `series/fk`; `series/fk` := proc() FAIL end; series(fk(x), x) end()",
     "[fk(x), x]"},
    {"series/function", "series(fl(x), x)", "[fl(x), x]"},
    {"series/infinity", "series(x, x = infinity)", "[x, x = infinity]"},
    {"series/power", "series((x + 1)^7, x)", "[(x+1)^7, x]"},
    {"simpl/Im", "Im(x)", "[x]"},
    {"simpl/Re", "Re(x)", "[x]"},
    {"simpl/abs", "abs(x, y)", "[x, y]"},
    {"simpl/conjugate", "conjugate(x)", "[x]"},
    {"simpl/ilog10", "ilog10(x)", "[x]"},
    {"simpl/max", "max(x, y, 2)", "[x, y, 2]"},
    {"simpl/min", "min(x)", "[x]"},
    {"simpl/reloprod", "2*(x < y)", "[2, 1, x < y, 1]"},
    {"simpl/relopsum", "1 + (x = y)", "[1, 1, x = y, 1]"},
    {"simpl/trunc", "trunc(x)", "[x]"},
    {"type/ours", "type(x, ours)", "[x]"},
};

// The procedure leaves its arguments in a global name and answers with a number; the debugger, which is asked again after
// any other answer, with nothing.
std::string argumentsOf(const CallingExpression& row) {
  FrontEnd frontEnd;
  const std::string quoted = std::string("`") + row.procedure + "`";
  sayTo(frontEnd, "called := 0:");
  sayTo(frontEnd, (quoted + " := proc() global called; called := [args]; " +
                   (std::strcmp(row.procedure, "debugger") == 0 ? "NULL" : "7") + " end proc:")
                      .c_str());
  sayTo(frontEnd, (std::string(row.expression) + ":").c_str());
  std::string result = sayTo(frontEnd, "called;");
  sayTo(frontEnd, (quoted + " := '" + quoted + "':").c_str());
  return result;
}

bool isCalled(const LibraryCall& row) {
  for (const CallingExpression& calling : callingExpressions) {
    const std::string_view name = calling.procedure;
    if (row.suffix != nullptr ? name == std::string(row.base) + row.suffix : name.starts_with(row.base)) return true;
  }
  // Asked for by a front end that shows two-dimensional text.
  if (std::strcmp(row.base, "print/") == 0) return true;
  // Called with sums of hundreds of terms.
  return row.suffix != nullptr && (std::strcmp(row.suffix, "bigprod") == 0 || std::strcmp(row.suffix, "bigdiv") == 0);
}

}  // namespace

TEST(LibraryCalls, ProceduresAreGivenWhatTheyAreCalledWith) {
  for (const CallingExpression& row : callingExpressions) EXPECT_EQ(argumentsOf(row), row.arguments) << row.procedure;
  for (const LibraryCall& row : libraryCalls) EXPECT_TRUE(isCalled(row)) << row.base << (row.suffix ? row.suffix : "");
}

// What is missing is told in its two halves.
TEST(LibraryCalls, MissingProceduresAreNamed) {
  EXPECT_EQ(errorOf([] { evalsysf("simpl/conjugate", cons1); }), "simpl/conjugate: missing system function");
  EXPECT_EQ(text(lastException()), "0, \"%1%2: missing system function\", `simpl/`, conjugate");
  EXPECT_EQ(errorOf([] { evalsysf("convert/", "nothing", null); }), "convert/nothing: missing system function");
  EXPECT_EQ(evalextf("simpl/abs", cons1), null);
  EXPECT_EQ(errorOf([] { EvalSystemFunction("", cons1, cons1, cons1); }), "name expected for external function");
}

}  // namespace korel::test
