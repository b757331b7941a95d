// Tab and `?name` at a terminal: what is begun is completed, what is asked for is shown, what is misspelt is guessed.

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "session.h"

namespace {

using terminal::Session;

TEST(Completion, CompletesNamesOfEveryKind) {
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type("typemat\t(3, integer);\r");  // a built-in
  ASSERT_TRUE(session.shows("typematch(3, integer);\r\ntrue\r\n")) << session.seen();
  session.type("revers\t\t");  // three of the library
  ASSERT_TRUE(session.shows("reverse        reverseseries  reversetext\r\n")) << session.seen();
  session.type("t\t(\"ab\");\r");
  ASSERT_TRUE(session.shows("\"ba\"\r\n")) << session.seen();
  session.type("my_long_name := 41:\r");
  session.type("my_lo\t + 1;\r");  // a name of the session
  ASSERT_TRUE(session.shows("42\r\n")) << session.seen();
  session.type("proc() globa\t g; 7 end();\r");  // a reserved word
  ASSERT_TRUE(session.shows("7\r\n")) << session.seen();
  session.type("nothing_begins_so\t + 1;\r");
  ASSERT_TRUE(session.shows("nothing_begins_so+1\r\n")) << session.seen();
}

TEST(Completion, CompletesFilesInStrings) {
  const std::string path = "/tmp/korel_completion_" + std::to_string(getpid()) + "_file.krl";
  std::FILE* file = std::fopen(path.c_str(), "w");
  std::fputs("completed := 5:\n", file);
  std::fclose(file);
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type("read \"" + path.substr(0, path.size() - 6) + "\t: completed + 1;\r");
  EXPECT_TRUE(session.shows("6\r\n")) << session.seen();
  unlink(path.c_str());
}

TEST(Completion, HelpShowsCallsAndGuesses) {
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type("7;\r?\r");
  ASSERT_TRUE(session.shows("interrupts the running statement")) << session.seen();
  session.type("?zip\r");
  ASSERT_TRUE(session.shows("zip(f, a, b, filler)\r\n")) << session.seen();
  session.type("?seq\r");
  ASSERT_TRUE(session.shows("seq(f, i = a..b)")) << session.seen();
  session.type("?while\r");
  ASSERT_TRUE(session.shows("end do")) << session.seen();
  session.type("?revrese\r");
  ASSERT_TRUE(session.shows("no help is known for `revrese`; names like it: reverse")) << session.seen();
  session.type("?a\"b\\\r%;\r");  // nothing breaks, and the last result is still there
  ASSERT_TRUE(session.shows("7\r\n")) << session.seen();
}

}  // namespace
