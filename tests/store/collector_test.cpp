#include "store/collector.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "eval/simplify.h"
#include "eval/statements.h"
#include "kernel_fixture.h"
#include "numbers/integer.h"
#include "store/allocator.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

std::int64_t freeWords() {
  std::int64_t words = 0;
  for (int i = 1; i < freeListCount; ++i)
    for (Word b = freelist[i]; b != 0; b = wordAt(b))
      words += i < static_cast<int>(firstClassSize) ? i : wordAt(b + 4);
  return words;
}

/// Says each of the statements; what the last one shows.
std::string sayAll(std::initializer_list<const char*> statements) {
  std::string shown;
  for (const char* statement : statements) shown = say(statement);
  return shown;
}

std::string heapFault() {
  const char* fault = checkHeap();
  return fault == nullptr ? "" : fault;
}

TEST(Collector, WhatANameReachesSurvivesAndTheRestDies) {
  sayAll({"kept := [f(1), g(2), {h(3)}]:", "dropped := f(4):", "dropped := 'dropped':"});
  DAG kept = naminstall("kept")[1];
  ASSERT_EQ(text(kept), "[f(1), g(2), {h(3)}]");
  for (int i = 0; i < 4; ++i) say("gc();");
  EXPECT_EQ(naminstall("kept")[1], kept);
  EXPECT_EQ(say("kept;"), "[f(1), g(2), {h(3)}]");
  EXPECT_EQ(say("evalb(kept[1] = f(1));"), "true");
  EXPECT_EQ(heapFault(), "");
}

// The tables of names and of simplified objects hold nothing alive.
TEST(Collector, TablesAreWeak) {
  sayAll({"seq(evaln(weak||i), i = 1..500):", "0:", "0:", "0:"});
  say("gc();");
  say("gc();");
  EXPECT_EQ(srchname("weak250"), notFound);
  say("weakkept := 5:");
  say("gc();");
  EXPECT_NE(srchname("weakkept"), notFound);
}

TEST(Collector, ProtectionKeepsAnObjectAndAllBelow) {
  DAG inner = new2(LIST, newSequence({Newint(2000000000)}));
  DAG outer = new2(UNEVAL, inner);
  ProtectFromGC(outer);
  for (int i = 0; i < 3; ++i) say("gc();");
  EXPECT_EQ(tagOf(outer), UNEVAL);
  EXPECT_EQ(text(outer), "'[2000000000]'");
  EXPECT_TRUE(AllowGC(outer));
  EXPECT_FALSE(AllowGC(outer));
}

// A long run in constant memory: what each round leaves behind is used again.
TEST(Collector, LongLoopsRunInConstantMemory) {
  sayAll({"for i to 20000 do [i, i + 1, f(i)] od:", "0:", "0:", "0:"});
  std::int64_t before = totalmem;
  say("for i to 400000 do [i, i + 1, f(i)] od:");
  EXPECT_LE(totalmem - before, 4 * incrgc);
  EXPECT_EQ(heapFault(), "");
}

TEST(Collector, FiguresAddUp) {
  say("gc();");
  HeapFigures figures = heapFigures();
  EXPECT_EQ(figures.live + figures.dead + freeWords(), figures.words);
  std::int64_t collections = totgcs;
  say("gc();");
  EXPECT_EQ(totgcs, collections + 1);
  InExternalCall = true;
  gc();
  InExternalCall = false;
  EXPECT_EQ(totgcs, collections + 1);
}

// A program with every kind of state, collected after each statement.
TEST(Collector, StressLeavesResultsAlone) {
  collectAlways = true;
  std::string result = sayAll(
      {"fib := proc(n) option remember; if n < 2 then n else fib(n-1) + fib(n-2) fi end:",
       "t := table():", "for i to 20 do t[i] := fib(i) od:",
       "c := proc() local k; k := 0; proc() k := k + 1 end end proc:", "c1 := c():", "c1():", "c1():",
       "s := 0:", "for i to 20 do s := s + t[i] od:",
       "s, c1(), fib(20), {op([f(1), g(2)])} minus {g(2)};"});
  collectAlways = false;
  EXPECT_EQ(result, "17710, 3, 6765, {f(1)}");
  EXPECT_EQ(heapFault(), "");
}

}  // namespace
}  // namespace korel::test
