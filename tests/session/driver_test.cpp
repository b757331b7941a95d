#include <algorithm>
#include <gtest/gtest.h>

#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/output.h"
#include "kernel_fixture.h"
#include "session/driver.h"
#include "session/driver_state.h"
#include "session/statement_reader.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/read/source.h"

namespace korel {
namespace {

using test::errorOf;
using test::FrontEnd;
using test::interruptQuery;
using test::receive;
using test::say;
using test::sayTo;
using test::text;

DAG run(FrontEnd& frontEnd, DAG statement, int show = 1, int copy = 0) {
  return EvaluateDAG(statement, receive, interruptQuery, show, copy, &frontEnd);
}

/// What a front end saw, the status reports left out.
std::string streamsOf(const FrontEnd& frontEnd) {
  std::string result;
  for (const std::string& stream : frontEnd.streams)
    if (stream.rfind("INTERFACE_STATUS", 0) != 0) result += stream + " ";
  return result;
}

// ---- how statements end

TEST(EvaluateDAG, GivesValueAndMessagesInOrder) {
  FrontEnd frontEnd;
  EXPECT_EQ(run(frontEnd, parsestring("3+4", 1)), immediate(7));
  EXPECT_EQ(streamsOf(frontEnd), "INTERFACE_RESULT(7) INTERFACE_DONE() ");
  frontEnd.streams.clear();
  EXPECT_EQ(run(frontEnd, DAG()), DAG());
  EXPECT_EQ(streamsOf(frontEnd), "INTERFACE_DONE() ");
  EXPECT_EQ(EvaluateDAG(parsestring("5", 1), nullptr, nullptr, 1, 0, nullptr), immediate(5));
}

// Without results only what is printed on purpose gets out.
TEST(EvaluateDAG, ResultsCanBeSwitchedOff) {
  FrontEnd frontEnd;
  EXPECT_EQ(run(frontEnd, parsestring("3+4", 1), 0), immediate(7));
  run(frontEnd, parsestring("print(5)", 1), 0);
  run(frontEnd, parsestring("INTERFACE_RESULT(6)", 1), 0);
  EXPECT_EQ(streamsOf(frontEnd),
            "INTERFACE_DONE() INTERFACE_PRINT(5) INTERFACE_DONE() "
            "INTERFACE_DONE() ");
}

/// A reader that ends by the jump of this code.
JumpCode readerCode;
DAG jumpingReader() { jumpOut(readerCode); }

TEST(EvaluateDAG, EveryJumpIsReportedAndLeavesACleanState) {
  EnvironmentBlock* const block = Environment;
  const std::int32_t level = evaluationLevel;
  struct Case {
    JumpCode code;
    const char* output;
  };
  for (auto [code, output] :
       {Case{jumpToTop, "System error, at top level\n"}, Case{jumpReturn, "Error, return out of context\n"},
        Case{jumpBreak, "Error, break or next not in loop\n"}}) {
    FrontEnd frontEnd;
    readerCode = code;
    EXPECT_EQ(ReadStatement(jumpingReader, receive, interruptQuery, &frontEnd), null);
    EXPECT_EQ(frontEnd.output, output);
    EXPECT_EQ(driver.depth, 0);
    EXPECT_EQ(trapSet, 0);
    EXPECT_EQ(Environment, block);
    EXPECT_EQ(evaluationLevel, level);
  }
  EXPECT_EQ(say("RETURN(3);"), "Error, return out of context");
  FrontEnd frontEnd;
  EXPECT_EQ(run(frontEnd, new1(BREAK)), DAG());
  EXPECT_EQ(frontEnd.output, "Error, break or next not in loop\n");
  EXPECT_EQ(text(test::lastException()), "0, \"break or next not in loop\"");
}

TEST(EvaluateDAG, InternalErrorsAreSystemErrors) {
  FrontEnd frontEnd;
  ReadStatement([]() -> DAG { notimpl("out of order"); }, receive, interruptQuery, &frontEnd);
  EXPECT_EQ(frontEnd.output, "System error, out of order\n");
  EXPECT_EQ(say("1+1;"), "2");
}

// Error procedures of a statement that a special error ended don't meet the next one.
TEST(EvaluateDAG, ErrorProceduresEndWithTheirStatement) {
  FrontEnd frontEnd;
  ReadStatement(
      []() -> DAG {
        PushErrorProc([](const char*) { ADD_FAILURE() << "called"; });
        notimpl("out of order");
      },
      receive, interruptQuery, &frontEnd);
  EXPECT_FALSE(hasErrorProc());
}

// ---- readers

TEST(ReadStatement, GivesTheStatementAndReportsErrors) {
  FrontEnd frontEnd;
  DAG statement = ReadStatement([]() { return parsestring("2*3", 1); }, receive, interruptQuery, &frontEnd);
  EXPECT_EQ(run(frontEnd, statement), immediate(6));
  EXPECT_EQ(ReadStatement([]() -> DAG { KernelException("unreadable %1", cons1); }, receive, interruptQuery, &frontEnd),
            null);
  EXPECT_EQ(frontEnd.output, "6\nError, unreadable 1\n");
}

// ---- nesting

DAG askBack(DAG message) {
  if (std::string(textOf(message[1])) != "INTERFACE_ASK") return DAG();
  DAG value = EvaluateDAG(parsestring("error \"inner\"", 1), nullptr, nullptr, 1, 0, nullptr);
  return value ? value : immediate(driver.depth);
}

// A statement that a reply starts has its own frame: its error ends there, and the outer one goes
// on.
TEST(EvaluateDAG, NestedErrorsReturnToTheirOwnFrame) {
  FrontEnd frontEnd;
  frontEnd.reply = askBack;
  EXPECT_EQ(sayTo(frontEnd, "10 + INTERFACE_ASK(1);"), "Error, inner\n11");
}

DAG restartInside(DAG message) {
  if (std::string(textOf(message[1])) != "INTERFACE_ASK") return DAG();
  return EvaluateDAG(parsestring("restart", 1), nullptr, nullptr, 0, 0, nullptr);
}

TEST(EvaluateDAG, RestartIsAnOrdinaryNameInside) {
  FrontEnd frontEnd;
  frontEnd.reply = restartInside;
  EXPECT_EQ(sayTo(frontEnd, "INTERFACE_ASK(1);"), "restart");
}

// ---- interrupts

TEST(Interrupt, EndsTheStatementAndIsAskedOnceIn256Calls) {
  FrontEnd frontEnd;
  frontEnd.interruptsAfter = 3;
  EXPECT_EQ(sayTo(frontEnd, "to 100000 do 1 end do:"), "Warning, computation interrupted");
  EXPECT_EQ(sayTo(frontEnd, "traperror(1);"), "1");
  frontEnd.interruptsAfter = 0;
  EXPECT_EQ(sayTo(frontEnd, "try to 100000 do 1 end do catch: 0 end try:"), "Warning, computation interrupted");
}

TEST(Interrupt, PollsOnceIn256CallsOrSoonAfterAMessage) {
  static int polls;
  polls = 0;
  EvaluateDAG(
      DAG(), nullptr, [](void*) { return 0; }, 1, 0, nullptr);
  const DriverState before = driver;
  driver.interruptCB = [](void*) {
    ++polls;
    return 0;
  };
  pollInterruptSoon();
  for (int i = 0; i < 1 + 2 * 256; ++i) EXPECT_FALSE(TestInterrupt());
  EXPECT_EQ(polls, 3);
  driver.interruptCB = before.interruptCB;
}

// ---- the end of the run

struct StopCase {
  DAG statement;
  int code;
};

TEST(Stop, ReportsTheExitCodeAndOneDone) {
  for (auto [statement, code] :
       {StopCase{new1(STOP), 0}, StopCase{newCall(ini("quit"), {immediate(3)}), 3},
        StopCase{newCall(ini("done"), {}), 0}, StopCase{newCall(ini("stop"), {immediate(255)}), 255}}) {
    FrontEnd frontEnd;
    EXPECT_EQ(run(frontEnd, statement), DAG());
    EXPECT_EQ(streamsOf(frontEnd), "INTERFACE_STOP(" + std::to_string(code) + ") INTERFACE_DONE() ");
    int exitCode = -1;
    EXPECT_TRUE(kernelStopped(exitCode));
    EXPECT_EQ(exitCode, code);
  }
  EXPECT_EQ(say("1+1;"), "2");
  int exitCode = -1;
  EXPECT_FALSE(kernelStopped(exitCode));
  EXPECT_EQ(exitCode, -1);
}

DAG stopInside(DAG message) {
  if (std::string(textOf(message[1])) != "INTERFACE_ASK") return DAG();
  return EvaluateDAG(parsestring("quit(7)", 1), nullptr, nullptr, 0, 0, nullptr);
}

// A stop passes every frame between, traps included.
TEST(Stop, ComesThroughFromInside) {
  FrontEnd frontEnd;
  frontEnd.reply = stopInside;
  EXPECT_EQ(sayTo(frontEnd, "traperror(INTERFACE_ASK(1));"), "");
  int exitCode = -1;
  EXPECT_TRUE(kernelStopped(exitCode));
  EXPECT_EQ(exitCode, 7);
  EXPECT_EQ(trapSet, 0);
  EXPECT_EQ(say("1+1;"), "2");
}

// ---- restart

TEST(Restart, ThrowsAwayNamesAndKeepsWhatTheStartReported) {
  test::ChildResult child = test::inChild([] {
    FrontEnd frontEnd;
    sayTo(frontEnd, "x := 5: Digits := 20: printlevel := 3:");
    sayTo(frontEnd, "kernelopts(assertlevel = 2): ");
    frontEnd.streams.clear();
    for (int round = 0; round < 3; ++round) {
      sayTo(frontEnd, "x := 6:");
      EvaluateDAG(parsestring("restart", 1), receive, interruptQuery, 1, 0, &frontEnd);
    }
    std::printf("%ld started;", std::count(frontEnd.streams.begin(), frontEnd.streams.end(), "INTERFACE_START()"));
    std::printf("%ld echo;", std::count(frontEnd.streams.begin(), frontEnd.streams.end(), "INTERFACE_SET(echo,1)"));
    std::printf("%s;", sayTo(frontEnd, "x, Digits, printlevel, kernelopts(assertlevel);").c_str());
    std::printf("%s;", sayTo(frontEnd, "igcd(12, 18)*x + sin(x);").c_str());
  });
  EXPECT_EQ(child.output, "3 started;3 echo;x, 10, 1, 0;6*x+sin(x);");
  EXPECT_EQ(child.status, 0);
}

TEST(Restart, AtRestReportsByItsResult) {
  test::ChildResult child = test::inChild([] {
    say("x := 5:");
    const char* message = RestartKorel();
    std::printf("%s %s", message != nullptr ? message : "good", say("x;").c_str());
  });
  EXPECT_EQ(child.output, "good x");
}

// ---- what comes in and what is answered

TEST(Copies, InvalidObjectsAreRefused) {
  FrontEnd frontEnd;
  run(frontEnd, DAG(0x10), 1, 1);
  EXPECT_EQ(frontEnd.output, "Error, invalid data structure received from user interface\n");
  EXPECT_EQ(run(frontEnd, parsestring("[1, a, \"s\"]", 1), 1, 1), test::valueOf("[1, a, \"s\"]"));
  std::string output;
  EvaluateDAG(
      parsestring("INTERFACE_ASK(1)", 1),
      [](void* context, DAG message) {
        if (std::string(textOf(message[1])) == "INTERFACE_ASK") return DAG();
        if (std::string(textOf(message[1])) == "INTERFACE_EXCEPT")
          *static_cast<std::string*>(context) = test::messageText(message[2]);
        return null;
      },
      nullptr, 1, 0, &output);
  EXPECT_EQ(output, "invalid data structure returned from user interface");
}

// ---- the funnel

TEST(Switch2, WhatIsNoStreamIsPrinted) {
  FrontEnd frontEnd;
  ReadStatement(
      []() -> DAG {
        switch2(immediate(5));
        switch2(newSequence({cons1, naminstall("a")}));
        switch2(newCall(naminstall("f"), {cons1}));
        Msendprint("text\n");
        Printf2("%d and %s\n", 3, "x");
        return null;
      },
      receive, interruptQuery, &frontEnd);
  EXPECT_EQ(frontEnd.output, "5\n1, a\nf(1)\ntext\n3 and x\n");
}

TEST(Switch2, SecureModeRefusesRedirection) {
  secureMode = 1;
  std::string results[] = {
      say("INTERFACE_REDIRECT(\"f\", APPEND);"), say("INTERFACE_PRINT(INTERFACE_REDIRECT(\"f\"));"),
      say("INTERFACE_RESULT(INTERFACE_REDIRECT(\"f\"));"), say("INTERFACE_PRINT(1, INTERFACE_FLAG(2));")};
  secureMode = 0;
  EXPECT_EQ(results[0], "Error, redirection is disabled");
  EXPECT_EQ(results[1], "Error, redirection is disabled");
  EXPECT_EQ(results[2], "Error, redirection is disabled");
  EXPECT_EQ(results[3].find("disabled"), std::string::npos);
}

// The kernel's own record follows what the front end is told.
TEST(Switch2, InterfaceSetReachesBothRecords) {
  FrontEnd frontEnd;
  sayTo(frontEnd, "INTERFACE_SET(screenwidth, 50);");
  EXPECT_EQ(frontEnd.variables.screenwidth, 50);
  EXPECT_EQ(defaultNerinVariables.screenwidth, 50);
  defaultNerinVariables.screenwidth = 79;
}

TEST(SendStatus, ReportsEightNumbers) {
  FrontEnd frontEnd;
  ReadStatement([]() -> DAG { return sendstatus(), null; }, receive, interruptQuery, &frontEnd);
  ASSERT_EQ(frontEnd.streams.size(), 1u);
  const std::string& call = frontEnd.streams[0];
  EXPECT_EQ(call.rfind("INTERFACE_STATUS(", 0), 0u) << call;
  EXPECT_EQ(std::count(call.begin(), call.end(), ','), 7) << call;
}

}  // namespace
}  // namespace korel
