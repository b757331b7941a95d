#include <gtest/gtest.h>

#include "frame/errors.h"
#include "frame/output.h"
#include "frame/trace_messages.h"
#include "frame/traceback.h"
#include "kernel_fixture.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {
namespace {

using test::errorOf;
using test::FrontEnd;
using test::say;
using test::sayTo;
using test::text;

struct MessageCase {
  DAG debug;
  const char* call;
};

// Each code's stream and pieces, at top level and inside a caller.
TEST(TraceMessages, EveryCodeHasItsStreamAndPieces) {
  DAG f = naminstall("f"), g = naminstall("g"), v = immediate(7);
  DAG args = newSequence({cons1, cons10});
  DAG exception = newSequence({f, strinstall("bad %1"), v});
  DAG topException = newSequence({cons0, strinstall("bad")});
  const MessageCase cases[] = {
      {newDebug(debugRemembered, f, args, v, null),
       "INTERFACE_DIAG(\"value remembered (at top level): \",f,\"(\",1,\", \",10,\") -> \",7)"},
      {newDebug(debugRemembered, f, args, v, g),
       "INTERFACE_DIAG(\"value remembered (in \",g,\"): \",f,\"(\",1,\", \",10,\") -> \",7)"},
      {newDebug(debugEnter, f, args), "INTERFACE_DIAG(\"{--> enter \",f,\", args = \",1,\", \",10)"},
      {newDebug(debugEnter, f, null), "INTERFACE_DIAG(\"{--> enter \",f,\", args = \")"},
      {newDebug(debugExit, f, v, null), "INTERFACE_DIAG(\"<-- exit \",f,\" (now at top level\",\") = \",7,\"}\")"},
      {newDebug(debugExit, f, v, g), "INTERFACE_DIAG(\"<-- exit \",f,\" (now in \",g,\") = \",7,\"}\")"},
      {newDebug(debugError, exception), "INTERFACE_ERROR(\"Error, (in \",f,\") \",\"bad %1\",\", \",7)"},
      {newDebug(debugError, topException), "INTERFACE_ERROR(\"Error, \",\"bad\")"},
      {newDebug(debugInterrupt, null), "INTERFACE_INTR()"},
      {newDebug(debugStatement, v), "INTERFACE_DIAG(\" executing statement: \",7)"},
      {newDebug(debugLocals, newSequence({new3(EQUATION, f, v)})), "INTERFACE_DIAG(\" locals defined as: \",f = 7)"},
      {newDebug(debugTraceLevel, f, args, null, null), "INTERFACE_DIAG(f,\" called with arguments: \",1,\", \",10)"},
      {newDebug(debugSystemError, strinstall("lost")), "INTERFACE_ERROR(\"System error, \",\"lost\")"},
      {newDebug(debugBanner, strinstall("hello")), "INTERFACE_LOGO(\"hello\")"},
      {newDebug(debugErrorExit, f, strinstall("bad"), g),
       "INTERFACE_DIAG(\"<-- ERROR in \",f,\" (now in \",g,\") = \",\"bad\",\"}\")"},
      {newDebug(debugBuiltin, f, args), "INTERFACE_DIAG(\"execute \",f,\", args = \",1,\", \",10)"},
      {newDebug(debugException, exception), "INTERFACE_EXCEPT(f,\"bad %1\",7)"},
  };
  for (const MessageCase& c : cases) EXPECT_EQ(text(DebugToNerin(c.debug)), c.call);
  errorOf([] { DebugToNerin(newDebug(static_cast<DebugCode>(12), null)); });
  EXPECT_EQ(text(test::lastException()), "0, \"DebugToNerin\"");
}

std::size_t linesWith(const std::string& output, const char* part) {
  std::size_t count = 0;
  for (std::size_t at = output.find(part); at != std::string::npos; at = output.find(part, at + 1)) ++count;
  return count;
}

// `printlevel` decides how much is told: the error alone, the outermost call, or all with the
// locals.
TEST(Traceback, LevelDecidesWhatIsReported) {
  say("tb_f := proc(x) local loc; loc := x+1; error \"bad %1\", loc end proc:");
  say("tb_g := proc(y) tb_f(y+1) end proc:");
  EXPECT_EQ(say("tb_g(1);"), "Error, (in tb_f) bad 3");
  EXPECT_EQ(say("tracelast;"),
            "tb_g called with arguments: 1\n"
            " #(tb_g,1): tb_f(y+1)\n"
            "tb_f called with arguments: 2\n"
            " #(tb_f,2): error \"bad %1\", loc\n"
            "Error, (in tb_f) bad 3\n"
            " locals defined as: loc = 3");
  say("printlevel := 2:");
  std::string atTwo = say("tb_g(1);");
  say("printlevel := 1:");
  EXPECT_EQ(atTwo,
            "tb_g called with arguments: 1\n"
            " #(tb_g,1): tb_f(y+1)\n"
            "Error, (in tb_f) bad 3\n"
            " locals defined as: loc = 3");
}

TEST(Traceback, FiftyLevelsAreRecorded) {
  say("tb_h := proc(n) if n = 0 then error \"bottom\" else tb_h(n-1) end if end proc:");
  EXPECT_EQ(say("tb_h(70);"), "Error, (in tb_h) bottom");
  EXPECT_EQ(ErrorLevel, maxTraceLevels);
  EXPECT_EQ(text(TraceBackArgs[0]), "0");
  EXPECT_EQ(text(TraceBackArgs[49]), "49");
  EXPECT_EQ(linesWith(say("tracelast;"), "called with arguments"), 50u);
}

// An error without procedures leaves nothing of the one before.
TEST(Traceback, EachErrorStartsAnew) {
  say("tb_k := proc() error \"x\" end proc:");
  say("tb_k();");
  say("RETURN(1);");
  EXPECT_EQ(say("tracelast;"), "Error, return out of context");
}

TEST(Traceback, EndsWithTheNextCollection) {
  say("tb_k();");
  say("gc();");
  EXPECT_EQ(say("tracelast;"), "Error, traceback information for last error is no longer available");
}

}  // namespace
}  // namespace korel
