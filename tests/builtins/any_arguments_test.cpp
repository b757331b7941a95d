// Whatever a built-in is called with, the session goes on.
//
// Each row of the table runs in a child process of its own, which calls it with every operand below, with
// every pair of them, and with random tuples of up to ten; at top level, inside a procedure, and under a
// trap. A call may give a value or any error that the language has. It may not end the process, and not
// run on when it is interrupted. What the last call of a fallen child was stands in the failure.

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "builtins/builtins.h"
#include "kernel_fixture.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/standard_names.h"
#include "text/read/source.h"

namespace korel::test {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

// ---- what is called with what

// They end the session because they are asked to.
constexpr const char* endings[] = {"done", "quit", "stop"};

constexpr const char* preparation[] = {
    "assignedNumber := 5:",
    "shared := table([1 = a, x = b, (1, 2) = c]):",
    "cyclic := table(): cyclic[1] := cyclic: cyclic[x] := [cyclic]:",
    "vectorOf3 := array(1..3, [1, x, 2.5]):",
    "matrixOf2 := array(symmetric, 1..2, 1..2, [[1, 2], [2, y]]):",
    "double := proc(x) 2*x end proc:",
    "plain := proc() args end proc:",
    "failing := proc() error \"failed on purpose\", args end proc:",
    "unknown := proc() 'procname'(args) end proc:",
    "holder := module() export e, g; local l; e := 3; l := 4; g := proc() l end proc; end module:",
    "deep := x: to 2000 do deep := [deep, 1] end do:",
    "nested := x: to 500 do nested := f(nested)^2 + 1 end do:",
    "long := [seq(k, k = 1..1000)]:",
    "withAttribute := setattribute([x, y], first, second):",
    "matrix := rtable(1..2, 1..2, [[1, 2], [x, 4]], subtype = Matrix):",
    "vector := rtable(1..3, [1, 2.5, y], subtype = Vector[column], order = C_order):",
    "floats := rtable(-1..1, [1, 2, 3], datatype = float[8]):",
    "bytes := rtable(1..4, [1, 2, 3, 4], datatype = integer[1], readonly):",
    "complexFloats := rtable(1..2, [1. + 2.*I, 3.], datatype = complex[8]):",
    "sparse := rtable(1..3, 1..3, {(1, 2) = 5, (3, 1) = x}, storage = sparse):",
    "symmetric := rtable(symmetric, 1..2, 1..2, [[1, 2], [2, 3]]):",
    "dense := modp1(ConvertIn(x^2 + 3*x + 1, x), 7): bigDense := modp1(ConvertIn(x^2 + 3*x + 1, x), 10^20 + 39):",
};

constexpr const char* operands[] = {
    // integers
    "0", "1", "-1", "2", "3", "10", "-5", "255", "536870911", "536870912", "-536870912", "2147483647",
    "2147483648", "-2147483648", "4294967295", "4294967296", "9223372036854775807", "9223372036854775808",
    "10^30", "-10^30", "10^400 + 1",
    // fractions and floats
    "1/2", "-7/3", "10^30/7", "(10^30 + 1)/(10^29 + 3)", "0.", "-0.", "1.0", "-2.5", "1.5e-300", "1e10000000",
    "-1e-10000000", "3.14159265358979323846264338327950288", "Float(1, 2147483646)", "Float(-1, -2147483645)",
    "Float(infinity)", "-Float(infinity)", "Float(undefined)", "Float(undefined, 7)",
    // complex numbers
    "I", "-I", "1 + 2*I", "1/2 - I/3", "1.5 + 0.*I", "-0. - 0.*I", "Float(infinity) + Float(undefined)*I",
    "10^30*I", "1e10000000 + 1e-10000000*I",
    // texts and names
    "\"\"", "\"abc\"", "\"a b;\"", "\"\\001\\377\"", "``", "`abc`", "x", "y", "`a b`", "infinity", "undefined",
    "true", "false", "FAIL", "Digits", "integer", "`+`", "assignedNumber", "'x'", "''x''", "'assignedNumber'",
    "x[1]", "x[]", "x[1, y][2]", "'shared[1]'", "'vectorOf3[2]'", "%", "NULL", "''NULL''",
    // expressions
    "x + 1", "x*y", "2*x^2 - 3*x + 1", "x^y", "x^(-2)", "x^(10^20)", "f(x)", "f()", "f(x)(y)", "x!", "-x",
    "sin(1.5)", "x || 1", "x @ y", "x @@ 3", "f(x, 1..2)", "x -> x^2", "(x, y) -> x + y", "x -> x[1]",
    // structures
    "[]", "[1]", "[x, \"a\", 2.5]", "[[1, 2], [3, 4]]", "[1 = 2, x = y]", "long", "{}", "{1}", "{x, y, 1}",
    "{{1}, [x]}", "(1, 2)", "withAttribute", "deep", "nested",
    // relations and ranges
    "x = 1", "1 = x", "x = 1..3", "x = 3..1", "x = 1..10^30", "x = 0.5..2.5", "x = [1, y]", "x <> y", "x < 1",
    "x <= y", "x and y", "not x", "x or false", "1..3", "3..1", "1..10^30", "-1..-2", "x..y", "1.5..2.5",
    "x::integer", "x::anything", "1..2 = 3",
    // types
    "list", "list(integer)", "{integer, name}", "[integer, x::list]", "function(anything)", "specfunc(integer, f)",
    "And(integer, Not(list))", "identical(x, 1)",
    // what names stand for
    "shared", "eval(shared)", "table()", "eval(cyclic)", "cyclic", "vectorOf3", "eval(matrixOf2)", "array(1..0)",
    "double", "eval(double)", "plain", "failing", "unknown", "proc(a::integer, b) local c; c := a; c end proc",
    "holder", "eval(holder)", "holder:-e", "holder:-g", "eval(`if`)", "eval(seq)", "thismodule", "args", "nargs",
    "procname",
    // arrays and dense polynomials
    "matrix", "vector", "floats", "bytes", "complexFloats", "sparse", "symmetric", "rtable()", "rtable(1..0)",
    "rtable(1..2, 1..2, 1..2)", "matrix = vector", "[matrix, floats]", "float[8]", "storage = sparse",
    "datatype = integer[4]", "subtype = Matrix", "dense", "bigDense", "HFloat(1.5)",
};
constexpr int operandCount = std::size(operands);
constexpr int placeOf(std::string_view operand) {
  int place = 0;
  while (operands[place] != operand) ++place;
  return place;
}
// The small integers come first, then the other numbers.
constexpr int smallCount = placeOf("255") + 1, numberCount = placeOf("\"\"");
// The random tuples, for each count of arguments from 3 to 5.
constexpr int tuplesOfACount = isSanitized ? 300 : 600;

// A row that takes more than five is called with as many.
struct ManyArguments {
  const char* name;
  int count;
  int tuples;
};
constexpr int maxArguments = 10;
constexpr ManyArguments manyArguments[] = {{"MorrBrilCull", 10, 5000}, {"assemble", 9, 2000}};

// The settings of `kernelopts` that take a value; the limits are left out, by which the system ends a process.
constexpr const char* settings[] = {"ASSERT",     "assertlevel", "dagtag",  "gcfreq", "inline",
                                    "printbytes", "printlevel",  "profile", "unread"};

// ---- one child

// Shared with the child: the statement that it is about to run.
char* lastStatement;
constexpr std::size_t lastStatementSize = 4096;

char* sharedText() {
  void* pages = mmap(nullptr, lastStatementSize, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) std::abort();
  return static_cast<char*>(pages);
}

bool failed;  // the last statement ended in an error

DAG answer(void*, DAG message) {
  FrontEnd frontEnd;
  const char* stream = textOf(message[1]);
  if (std::strcmp(stream, "INTERFACE_EXCEPT") == 0) failed = true;
  if (std::strcmp(stream, "INTERFACE_GET") == 0) return getinterface(message[2], frontEnd.variables);
  if (std::strcmp(stream, "INTERFACE_SET") == 0) return setinterface(message[2], frontEnd.variables);
  return null;
}

int pollsLeft;
int interruptSoon(void*) { return --pollsLeft < 0; }

// Calls that an operand has made so long that they were interrupted: some are enough.
int longCalls[operandCount];
constexpr int enoughLongCalls = 12;

void run(const std::string& statement) {
  std::snprintf(lastStatement, lastStatementSize, "%s", statement.c_str());
  // An operation that no interrupt reaches is ended from outside.
  alarm(isSanitized ? 60 : 20);
  pollsLeft = 1;
  failed = false;
  EvaluateDAG(parsestring(statement.c_str(), 1), answer, interruptSoon, 1, 0, nullptr);
  int code;
  if (kernelStopped(code)) {
    std::printf("the kernel has stopped\n");
    std::fflush(nullptr);
    _exit(1);
  }
}

// The places in which a call can stand.
constexpr const char* places[][2] = {
    {"", ":"},
    {"proc(a, b) local x, y; ", " end proc(3, z):"},
    {"traperror(", "):"},
    {"try [", "] catch: lasterror end try:"},
};

using Tuple = std::vector<int>;  // places in `operands`

/// False when the call raises an error, or is left out.
bool callWith(const char* name, const Tuple& arguments, const char* const (&place)[2]) {
  for (int a : arguments)
    if (longCalls[a] > enoughLongCalls) return false;
  std::string call = std::string("`") + name + "`(";
  for (std::size_t i = 0; i < arguments.size(); ++i)
    call += (i > 0 ? ", " : "") + std::string(operands[static_cast<std::size_t>(arguments[i])]);
  run(place[0] + call + ")" + place[1]);
  if (pollsLeft < 0)
    for (int a : arguments) ++longCalls[a];
  return !failed;
}

// Random arguments: a call that gave a value with one of them changed or one more, or all anew.
struct Search {
  std::mt19937 random;
  std::vector<Tuple> fruitful[maxArguments + 1];

  int below(std::size_t n) { return static_cast<int>(random() % n); }

  Tuple next(int count) {
    Tuple arguments;
    for (int from : {count, count - 1})
      if (!fruitful[from].empty() && below(3) != 0) {
        arguments = fruitful[from][static_cast<std::size_t>(below(fruitful[from].size()))];
        break;
      }
    const int pools[] = {smallCount, numberCount, operandCount};
    const int pool = pools[below(std::size(pools))];
    auto any = [&] { return below(static_cast<std::size_t>(pool)); };
    if (static_cast<int>(arguments.size()) == count)
      arguments[static_cast<std::size_t>(below(arguments.size()))] = any();
    while (static_cast<int>(arguments.size()) < count)
      arguments.push_back(!arguments.empty() && below(8) == 0 ? arguments[0] : any());
    return arguments;
  }

  void call(const char* name, int count, int tuples) {
    for (int k = 0; k < tuples; ++k) {
      Tuple arguments = next(count);
      if (callWith(name, arguments, places[below(std::size(places))])) fruitful[count].push_back(arguments);
    }
  }
};

void callInEveryWay(int number) {
  const char* name = inistrings[number].data();
  for (const char* statement : preparation) run(statement);
  for (const auto& place : places) {
    callWith(name, {}, place);
    for (int a = 0; a < operandCount; ++a) callWith(name, {a}, place);
  }
  Search search{std::mt19937(static_cast<unsigned>(number)), {}};
  for (int a = 0; a < operandCount; ++a)
    for (int b = 0; b < operandCount; ++b)
      if (search.below(isSanitized ? 4 : 2) == 0 && callWith(name, {a, b}, places[0]))
        search.fruitful[2].push_back({a, b});
  for (int count = 2; count <= 5; ++count) search.call(name, count, tuplesOfACount);
  for (const ManyArguments& row : manyArguments)
    if (std::strcmp(row.name, name) == 0) search.call(name, row.count, row.tuples);
  if (std::strcmp(name, "kernelopts") == 0)
    for (const char* setting : settings)
      for (const char* operand : operands) run(std::string("kernelopts(") + setting + " = (" + operand + ")):");
  // What the calls have left behind is in order.
  run("gc():");
}

bool isLeftOut(const char* name) {
  for (const char* ending : endings)
    if (std::strcmp(ending, name) == 0) return true;
  return false;
}

std::vector<int> calledNumbers() {
  std::vector<int> numbers;
  for (int number = firstBuiltin; number <= lastBuiltin; ++number)
    if (!isLeftOut(inistrings[number].data())) numbers.push_back(number);
  return numbers;
}

// The name as far as a test may be called by it.
std::string testName(const ::testing::TestParamInfo<int>& row) {
  std::string name = std::to_string(row.param) + "_";
  for (char c : inistrings[row.param])
    if (std::isalnum(static_cast<unsigned char>(c))) name += c;
  return name;
}

}  // namespace

class AnyBuiltin : public ::testing::TestWithParam<int> {};

TEST_P(AnyBuiltin, NoCallEndsTheSession) {
  lastStatement = lastStatement == nullptr ? sharedText() : lastStatement;
  // Calls that write files do so in a directory of their own.
  char directory[] = "/tmp/korel_any_XXXXXX";
  ASSERT_NE(mkdtemp(directory), nullptr);
  ChildResult result = inChild([&directory] {
    if (chdir(directory) == 0) callInEveryWay(GetParam());
  });
  std::filesystem::remove_all(directory);
  EXPECT_EQ(result.status, 0) << lastStatement << "\n" << result.output;
}
// Calls that have ended a session before.
TEST(AnyArguments, CallsThatOnceFell) {
  lastStatement = lastStatement == nullptr ? sharedText() : lastStatement;
  ChildResult result = inChild([] {
    run("`$`(-2147483648, 9223372036854775808):");
    run("MorrBrilCull(0, 1, 0, 1, 5, 5, 0, 4, 30, 10):");
    run("MorrBrilCull(0, 1, 25, 1, 5, 5, 25, 4, 0, 10):");
    run("MorrBrilCull(-5, -2147483648, 0, -1, 536870912, -536870912, 536870912, 9223372036854775807, 536870912, 3):");
  });
  EXPECT_EQ(result.status, 0) << lastStatement << "\n" << result.output;
}

INSTANTIATE_TEST_SUITE_P(Builtins, AnyBuiltin, ::testing::ValuesIn(calledNumbers()), testName);

}  // namespace korel::test
