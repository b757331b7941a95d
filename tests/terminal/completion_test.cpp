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

// A person finds a procedure by its subject, completes its name, reads its page and uses it.
TEST(Completion, WhatHelpShowsIsUsed) {
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type("?topics\r");
  ASSERT_TRUE(session.shows("primes             Primes and factors\r\n")) << session.seen();
  session.type("?primes\r");
  ASSERT_TRUE(session.shows("isprime   nextprime   prevprime")) << session.seen();
  session.type("?nextpr\t\r");
  ASSERT_TRUE(session.shows("> nextprime(100), nextprime(10^20);\r\n    101, 100000000000000000039\r\n"))
      << session.seen();
  session.type("nextpr\t(1000);\r");
  ASSERT_TRUE(session.shows("1009\r\n")) << session.seen();
  session.type("?||\r");
  ASSERT_TRUE(session.shows("a || b\r\n")) << session.seen();
  session.type("?:=\r");
  ASSERT_TRUE(session.shows("takes the value back")) << session.seen();
  session.type("double := proc(x) description \"double(x): twice x\"; 2*x end proc:\r");
  session.type("?double\r");
  ASSERT_TRUE(session.shows("  twice x\r\n")) << session.seen();
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
  session.type("?besselj\r");
  ASSERT_TRUE(session.shows("no help is known for `besselj`; names like it: BesselJ, BesselI")) << session.seen();
  session.type("?GAMMA(a, z)\r");
  ASSERT_TRUE(session.shows("exp(-t)*t^(a - 1)")) << session.seen();
  session.type("?a\"b\\\r%;\r");  // nothing breaks, and the last result is still there
  ASSERT_TRUE(session.shows("7\r\n")) << session.seen();
}

}  // namespace
