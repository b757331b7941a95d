#include <gtest/gtest.h>

#include "frame/environment.h"
#include "frame/errors.h"
#include "kernel_fixture.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {
namespace {

using test::errorOf;
using test::evaluated;
using test::lastException;
using test::say;
using test::text;

DAG n(std::int32_t value) { return immediate(value); }

struct RaiseCase {
  const char* message;
  std::vector<DAG> parameters;
  const char* exception;
};

// The number of places is the number of marks, except that %0 takes all; sequences spread, and a
// place that nothing fills is held by an empty quoted sequence.
TEST(KernelException, ParametersFillThePlacesOfTheMarks) {
  DAG pair = newSequence({n(6), n(7)});
  const RaiseCase cases[] = {
      {"plain", {}, "0, \"plain\""},
      {"plain", {n(5)}, "0, \"plain\""},
      {"%1 and %2", {n(1), n(2)}, "0, \"%1 and %2\", 1, 2"},
      {"%2 before %-1", {n(1), n(2)}, "0, \"%2 before %-1\", 1, 2"},
      {"100%% of %1", {n(7)}, "0, \"100%% of %1\", 7"},
      {"%1 %x %", {n(7)}, "0, \"%1 %x %\", 7"},
      {"%1 and %2", {pair}, "0, \"%1 and %2\", 6, 7"},
      {"only %1", {pair}, "0, \"only %1\", 6"},
      {"%1", {null}, "0, \"%1\", ''"},
      {"%1 and %2", {n(5)}, "0, \"%1 and %2\", 5, ''"},
      {"%1 and %2", {null, n(5)}, "0, \"%1 and %2\", '', 5"},
      {"got %0", {n(5), pair, null, n(8)}, "0, \"got %0\", 5, 6, 7, '', 8"},
      {"got %0", {n(5), DAG(), n(8)}, "0, \"got %0\", 5"},
      {"got %0", {}, "0, \"got %0\""},
  };
  for (const RaiseCase& c : cases) {
    errorOf([&c] { raiseKernelException(c.message, c.parameters.data(), static_cast<int>(c.parameters.size())); });
    EXPECT_EQ(text(lastException()), c.exception);
    EXPECT_EQ(text(ini("lasterror")[1]), "\"" + std::string(c.message) + "\"");
  }
}

struct ErrorCase {
  DAG arguments;
  const char* exception;
  const char* lasterror;
};

// What the statement `error` is given keeps its parameters visible whatever its first member is.
TEST(KorelException, MessageGetsTheFormOfAnException) {
  DAG x = strinstall("x");
  const ErrorCase cases[] = {
      {newSequence({x}), "0, \"x\"", "\"x\""},
      {x, "0, \"x\"", "\"x\""},
      {naminstall("x"), "0, \"x\"", "x"},
      {newSequence({x, n(1)}), "0, \"x, %0\", 1", "\"x\", 1"},
      {newSequence({naminstall("x"), n(1)}), "0, \"x, %0\", 1", "x, 1"},
      {newSequence({strinstall("x %1"), n(3)}), "0, \"x %1\", 3", "\"x %1\", 3"},
      {newSequence({strinstall("x %0"), n(3)}), "0, \"x %0\", 3", "\"x %0\", 3"},
      {newSequence({strinstall("x%%"), n(3)}), "0, \"x%%, %0\", 3", "\"x%%\", 3"},
      {newSequence({n(3), n(4)}), "0, \"%0\", 3, 4", "3, 4"},
      {n(3), "0, \"%0\", 3", "3"},
  };
  for (const ErrorCase& c : cases) {
    errorOf([&c] { KorelException(c.arguments); });
    EXPECT_EQ(text(lastException()), c.exception);
    EXPECT_EQ(text(ini("lasterror")[1]), c.lasterror);
  }
}

TEST(KorelException, WithoutArgumentsRaisesTheLastErrorAgain) {
  clearLastError();
  EXPECT_EQ(errorOf([] { KorelException(null); }), "unspecified error");
  errorOf([] { KernelException("first %1", cons1); });
  EXPECT_EQ(errorOf([] { KorelException(null); }), "first 1");
  EXPECT_EQ(errorOf([] { KernelException(nullptr); }), "first 1");
  EXPECT_EQ(text(lastException()), "0, \"first %1\", 1");
}

// Entry 1 is the name called in the innermost frame, and `try` sees the same exception.
TEST(KorelException, NamesTheProcedureThatRaisedIt) {
  say("f_err := proc() error \"x\" end proc:");
  say("g_err := proc() f_err() end proc:");
  EXPECT_EQ(say("g_err();"), "Error, (in f_err) x");
  EXPECT_EQ(say("lastexception;"), "f_err, \"x\"");
  EXPECT_EQ(say("try g_err() catch: lastexception end try;"), "f_err, \"x\"");
  EXPECT_EQ(say("error 3, 4;"), "Error, 3, 4");
}

// Old messages with a printf conversion reach the front end in the form of marks.
TEST(UserError, ConversionBecomesAMark) {
  EXPECT_EQ(errorOf([] { _userror2("no file %s here", "a.m"); }), "no file a.m here");
  EXPECT_EQ(text(lastException()), "0, \"no file %1 here\", \"a.m\"");
  errorOf([] { _userror2("100%% of %05ld", 42L); });
  EXPECT_EQ(text(lastException()), "0, \"100%% of %1\", \"00042\"");
  errorOf([] {
    PushErrorProc([](const char*) {});
    _userror2("no file %s here", "a.m");
  });
  EXPECT_EQ(text(lastException()), "0, \"no file a.m here\"");
  std::string longName(5000, 'q');
  EXPECT_EQ(errorOf([&] { _userror2("%s", longName.c_str()); }), longName);
}

// ---- error procedures

std::string* calls;
void note(const char* message) {
  *calls += static_cast<char>(errorProcParam);
  *calls += message;
  *calls += ' ';
}
void push(char letter) { PushParamErrorProc(note, DAG(static_cast<Word>(letter))); }

struct ErrorProcedures : ::testing::Test {
  std::string called;
  void SetUp() override { calls = &called; }
};

// Innermost first, each with its own parameter; those around the active trap wait for their own
// error.
TEST_F(ErrorProcedures, RunInnermostFirstUpToTheActiveTrap) {
  std::string inner;
  errorOf([&] {
    push('a');
    push('b');
    inner = errorOf([] {
      push('c');
      push('d');
      userror("x");
    });
    EXPECT_EQ(called, "dx cx ");
    userror("y");
  });
  EXPECT_EQ(inner, "x");
  EXPECT_EQ(called, "dx cx by ay ");
  EXPECT_FALSE(hasErrorProc());
}

TEST_F(ErrorProcedures, StayAsideOfSpecialErrors) {
  errorOf([] {
    push('a');
    notimpl("broken");
  });
  EXPECT_EQ(called, "");
  EXPECT_FALSE(hasErrorProc());
}

TEST_F(ErrorProcedures, MayPopThemselvesAndMayFailThemselves) {
  errorOf([] {
    push('a');
    PushErrorProc([](const char*) {
      *calls += "self ";
      PopErrorProc();
    });
    userror("x");
  });
  EXPECT_EQ(called, "self ax ");
  called.clear();
  std::string message = errorOf([] {
    push('a');
    PushErrorProc([](const char*) {
      *calls += "once ";
      userror("second");
    });
    userror("first");
  });
  EXPECT_EQ(called, "once asecond ");
  EXPECT_EQ(message, "second");
}

TEST_F(ErrorProcedures, TooManyPopsAreAnInternalError) {
  std::int32_t special = -1;
  errorOf([] { PopErrorProc(); });
  EXPECT_EQ(text(lastException()), "0, \"PopErrorProc\"");
  errorOf([&] {
    PushErrorProc([](const char*) {});
    PopErrorProc();
    special = SpecialError;
  });
  EXPECT_EQ(special, noSpecialError);
}

// ---- traps

TEST(Trap, GivesTheValueOrTheErrorAndCleansUp) {
  EXPECT_EQ(evaluated("traperror(error_free + 1)"), "error_free+1");
  EXPECT_FALSE(ini("lasterror")[1]);
  EXPECT_EQ(evaluated("traperror(1/0)"), "\"numeric exception: division by zero\"");
  EXPECT_EQ(text(lastException()), "0, \"numeric exception: division by zero\"");
  EXPECT_EQ(evaluated("traperror(ERROR(\"x\", 1))"), "\"x\", 1");
  EXPECT_EQ(evaluated("traperror(1, 2)"), "1, 2");
  EXPECT_FALSE(lastException());
}

// `return` and `break` can't leave a trap; its state is as before, whatever came.
TEST(Trap, MisplacedJumpsBecomeErrors) {
  const std::int32_t level = evaluationLevel, traps = trapSet;
  EnvironmentBlock* const block = Environment;
  for (JumpCode code : {jumpReturn, jumpBreak}) {
    bool failed = false;
    DAG value =
        KernelTrapError([](DAG c) -> DAG { jumpOut(static_cast<JumpCode>(immediateValue(c))); }, n(code), failed);
    EXPECT_TRUE(failed);
    EXPECT_EQ(text(value), "`return, break, or next out of context`");
    EXPECT_EQ(text(lastException()), "0, \"return, break, or next out of context\"");
  }
  bool failed = true;
  EXPECT_EQ(KernelTrapError([](DAG x) { return x; }, n(5), failed), n(5));
  EXPECT_FALSE(failed);
  EXPECT_EQ(Environment, block);
  EXPECT_EQ(evaluationLevel, level);
  EXPECT_EQ(trapSet, traps);
}

// A loop variable that an error leaves dirty is put back, unless the error can't be caught.
TEST(Trap, ErrorInSeqRestoresTheLoopVariable) {
  say("loopvar := 77:");
  EXPECT_EQ(say("try seq(1/(3-loopvar), loopvar=1..5) catch: 0 end try;"), "0");
  EXPECT_EQ(say("loopvar;"), "77");
}

TEST(Trap, StackExhaustionPassesEveryTrap) {
  say("deep := proc(n) 1 + deep(n+1) end proc:");
  EXPECT_EQ(say("try deep(1) catch: 0 end try;"), "Error, (in deep) too many levels of recursion");
  EXPECT_EQ(say("traperror(deep(1));"), "Error, (in deep) too many levels of recursion");
  EXPECT_EQ(say("1+1;"), "2");
}

// ---- warnings

TEST(KernelWarning, CarriesLevelTextAndParameters) {
  EXPECT_EQ(test::outputOf([] { KernelWarning(2, "%1 is %2", naminstall("a"), cons1); }), "Warning, a is 1\n");
}

}  // namespace
}  // namespace korel
