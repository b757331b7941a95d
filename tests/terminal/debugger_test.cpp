// The debugger's dialogue at a terminal: prompt, stops, values, Ctrl-C and the end of the input.

#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "session.h"

namespace {

using terminal::Session;

/// Types each line and waits for what it shows.
void converse(Session& session, std::initializer_list<std::pair<const char*, const char*>> lines) {
  for (auto [typed, shown] : lines) {
    session.type(std::string(typed) + "\r");
    ASSERT_TRUE(session.shows(shown)) << typed << "\n" << session.seen();
  }
}

constexpr const char* nested = "f := proc(n) local a; a := n^2; if a > 3 then a := g(a) end if; a + 1 end proc:";
constexpr const char* called = "g := proc(x) local y; y := x + 1; 2*y end proc:";

TEST(Debugger, StopsStepsAndGoesOn) {
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type(std::string(nested) + "\r" + called + "\r");
  converse(session, {{"setbreak(f, 3, a = 4);", "stop 1: f, statement 3 if a = 4"},
                     {"f(1), f(2);", "DBG> "},
                     {"a + n", "6\r\nDBG> "},
                     {"step", "y := x+1;\r\nDBG> "},
                     {"x := 10", "10\r\nDBG> "},
                     {"where", "top level: f(1), f(2)\r\nDBG> "},
                     {"next", "2*y\r\nDBG> "},
                     {"y", "11\r\nDBG> "},
                     {"finish", "a+1\r\nDBG> "},
                     {"1/0", "Error, numeric exception: division by zero\r\nDBG> "},
                     {"f(2)", "DBG> "},            // a stop in a command
                     {"continue", "11\r\nDBG> "},  // ends it
                     {"a", "22\r\nDBG> "},
                     {"continue", "2, 23\r\n"},
                     {"clearstops(); 5;", "5\r\n"}});
}

TEST(Debugger, InterruptsEndCommandsAndNotTheDialogue) {
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type(std::string(called) + "\r");
  converse(session, {{"loop := proc() do end do end proc: setbreak(g);", "stop 1"}, {"g(4);", "DBG> "}});
  session.type("x + \x03");
  ASSERT_TRUE(session.shows("DBG> ")) << session.seen();
  converse(session, {{"x + 2", "6\r\nDBG> "}});
  session.type("loop()\r");
  usleep(300000);
  session.type("\x03");
  ASSERT_TRUE(session.shows("interrupted\r\nDBG> ")) << session.seen();
  converse(session, {{"x + 3", "7\r\nDBG> "}, {"quit", "Warning, computation interrupted"}, {"1 + 1;", "2\r\n"}});
  converse(session, {{"printlevel;", "1\r\n"}, {"g(5);", "DBG> "}});
  session.type("\x04");  // the end of the input quits
  ASSERT_TRUE(session.shows("Warning, computation interrupted")) << session.seen();
}

// `kill -USR1` stops a program at its next statement; at the prompt it is for nobody.
TEST(Debugger, StopsAtASignal) {
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.signal(SIGUSR1);
  converse(session,
           {{"f := proc() local i; for i do i end do end proc:", "> "}, {"g := proc() 1; 2 end proc: g();", "2\r\n"}});
  session.type("f();\r");
  usleep(300000);
  session.signal(SIGUSR1);
  ASSERT_TRUE(session.shows("DBG> ")) << session.seen();
  converse(session, {{"evalb(i > 1000)", "true\r\nDBG> "}});
  session.type("c\r");
  usleep(100000);
  session.signal(SIGUSR1);
  ASSERT_TRUE(session.shows("DBG> ")) << session.seen();
  converse(session, {{"quit", "Warning, computation interrupted"}, {"1 + 1;", "2\r\n"}});
}

}  // namespace
