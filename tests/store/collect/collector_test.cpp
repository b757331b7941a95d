#include <gtest/gtest.h>
#include <initializer_list>
#include <string>

#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "kernel_fixture.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "store/allocator.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

std::int64_t freeWords() {
  std::int64_t words = 0;
  for (int i = 1; i < freeListCount; ++i)
    for (Word b = freelist[i]; b != 0; b = wordAt(b)) words += freeSize(b);
  // Single words are on no list.
  for (Word chunk = allstorage; chunk != 0; chunk = wordAt(chunk))
    for (Word at = chunk + 8, end = chunk + 4 * wordAt(chunk + 4); at < end;) {
      bool single = (wordAt(at) & 1) != 0;
      words += single;
      at += single ? 4 : 4 * freeSize(at);
    }
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

// A table that many strings have widened leaves no chains strewn over the heap when they are gone.
TEST(Collector, ManyDeadStringsLeaveNoChains) {
  sayAll({"l := [seq(cat(\"dead\", i), i = 1..300000)]:", "l := 0:", "for i to 300000 do h(i) end do:"});
  for (int i = 0; i < 3; ++i) say("gc();");
  const Word buckets = lengthOf(strtab) - 1;
  Word chains = 0;
  for (Word bucket = 1; bucket <= buckets; ++bucket) chains += strtab[bucket] ? 1 : 0;
  EXPECT_GE(buckets, 8192u);
  EXPECT_LT(chains, buckets / 4);
  EXPECT_EQ(heapFault(), "");
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

// Where each round drops what the one before has made, each is followed by a collection, although the latest results
// outlive some: memory for a few rounds does.
TEST(Collector, LargeGarbageIsTakenAtEachInterval) {
  const std::int64_t before = totalmem, times = totgcs;
  say("for k to 100 do L := [seq(i + k, i = 1 .. 300000)] end do:");
  EXPECT_GE(totgcs - times, 90);
  EXPECT_LE(totgcs - times, 105);
  EXPECT_LE(totalmem - before, 15 * 300000);
  sayAll({"L := 'L':", "0:", "0:", "0:", "gc():"});
}

// While much lives, as much garbage is waited for, and no more; a frequency that is set counts at once.
TEST(Collector, LargeHeapsAreCollectedWhenAsMuchMayBeDead) {
  sayAll({"held := [seq(f(k)^2, k = 1..100000)]:", "gc():", "for i to 1000 do [i, g(i)] od:"});
  const std::int64_t words = totalmem, kept = totalmem - totalfree, used = wordsUsed(), times = totgcs;
  say("for i to 400000 do [i, g(i)] od:");
  const std::int64_t collections = totgcs - times;
  EXPECT_GT(collections, (wordsUsed() - used) / (3 * kept));
  EXPECT_LT(collections, (wordsUsed() - used) / incrgc / 2);
  EXPECT_LE(totalmem - words, kept + 4 * incrgc);
  sayAll({"held := 'held':", "0:", "0:", "gc():"});
  EXPECT_EQ(heapFault(), "");
}

// A short collection passes by what an earlier one has reached, but for what may have been written since. Each
// round writes young objects into old ones of every changing kind and finds old objects again in new places.
TEST(Collector, ShortCollectionsKeepWhatOldObjectsHaveComeToHold) {
  sayAll(
      {"slots := table():", "counted := proc() local n; n := []; proc(k) n := [op(n), g(k)^2]; nops(n) end end():",
       "remembers := proc(k) option remember; [h(k), h(k) + 1] end:", "frozen := [f(1), {f(2)}, f(3) + z]:", "gc():"});
  for (int round = 1; round <= 40; ++round) {
    std::string k = std::to_string(round);
    say(("slots[" + k + "] := [f(" + k + "), z^" + k + ", frozen]:").c_str());
    say(("counted(" + k + "):").c_str());
    say(("remembers(" + k + "):").c_str());
    say(("later := {op(frozen), f(" + k + ") + z}:").c_str());
    sayAll({"0:", "0:", "0:"});
    collectInTurn();
    ASSERT_EQ(heapFault(), "") << "round " << round;
    const char* fault = checkUniqueTables();
    ASSERT_EQ(fault, nullptr) << fault << ", round " << round;
  }
  EXPECT_EQ(say("eval(slots[7]), slots[39][1], nops(later), counted(0);"),
            "[f(7), z^7, [f(1), {f(2)}, f(3)+z]], f(39), 4, 41");
  EXPECT_EQ(say("remembers(3), nops([indices(op(4, eval(remembers)))]), evalb(slots[3][1] + z = frozen[3]);"),
            "[h(3), h(3)+1], 40, true");
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

// The write barrier: an object that a deeper level made, and nothing refers to, outlives the end of that
// level once it is relabelled for an outer one, and what it refers to with it.
TEST(Collector, TheBarrierKeepsWhatOutlivesItsLevel) {
  say("0;");
  const std::int32_t level = evaluationLevel;
  auto madeBelow = [] { return new2(UNEVAL, new2(LIST, newSequence({Newint(2000000000)}))); };
  evaluationLevel = level + 20;
  endOfStatement(level + 20);
  nextgcgen = cused - 1;
  endOfStatement(level + 20);  // a generation of that level alone
  DAG lost = madeBelow(), kept = madeBelow();
  nextgcgen = cused - 1;
  endOfStatement(level + 20);
  evaluationLevel = level + 2;
  updategen(kept);
  EXPECT_EQ(generationOf(kept), static_cast<Word>(gcgen));
  EXPECT_LE(genc[gcgen], level + 2);
  endOfStatement(level + 10);
  EXPECT_EQ(genc[generationOf(lost)], 0);
  gc();
  evaluationLevel = level;
  EXPECT_EQ(text(kept), "'[2000000000]'");
  EXPECT_NE(generationOf(kept), 0u);
  EXPECT_EQ(heapFault(), "");
}

// Labels run out no sooner than levels do: neighbours join, the first generation stays by itself.
TEST(Collector, ThousandsOfLevelsShareTheLabels) {
  const std::int32_t level = evaluationLevel;
  DAG chain = null;
  for (int depth = 1; depth <= 3000; ++depth) {
    evaluationLevel = level + 3 * depth;
    chain = new3(EXPSEQ, chain, Newint(2000000000 + depth));
    nextgcgen = cused - 1;
    if (gcgen >= 1000) gc();
    endOfStatement(evaluationLevel);
  }
  gc();
  EXPECT_LE(gcgen, 512);
  EXPECT_EQ(gcgen, static_cast<int>((2042 - 3 * incrgc / (incrgen - 1) + 1) / 2)) << incrgen;
  EXPECT_EQ(heapFault(), "");
  int length = 0;
  for (DAG at = chain; at != null; at = at[1]) ++length;
  EXPECT_EQ(length, 3000);
  evaluationLevel = level;
  say("0;");
  say("gc();");
  say("gc();");
  EXPECT_LE(gcgen, 4);
  EXPECT_EQ(heapFault(), "");
}

// Remember tables of `system` procedures lose the pairs that nothing else holds; a hundred such tables
// are looked through, and the next is dropped whole. Others keep what they have.
TEST(Collector, RememberTablesOfSystemProceduresAreWeak) {
  auto entries = [](const char* name) {
    DAG table = naminstall(name)[1][4];
    return isObject(table) && hasTag(table, HASHTAB) ? hashcount(table) : -1;
  };
  sayAll({"strong := proc(n) option remember; [n, u] end:", "strong(1):", "strong(2):",
          "weak := proc(n) option remember, system; {n, v} end:", "weak(1):", "held := weak(2):",
          "seq([i], i = 1..1000):", "0:", "0:", "0:", "gc();", "gc();"});
  EXPECT_EQ(entries("strong"), 2);
  EXPECT_EQ(entries("weak"), 1);
  EXPECT_EQ(say("weak(1), weak(2);"), "{1, v}, {2, v}");
  EXPECT_EQ(heapFault(), "");
  say("for i to 120 do many||i := proc(n) option remember, system; {n, w} end proc; (many||i)(7) od:");
  say("gc();");
  int whole = 0, dropped = 0;
  for (int i = 1; i <= 120; ++i) {
    std::string name = "many" + std::to_string(i);
    DAG procedure = naminstall(name.c_str())[1];
    if (!isObject(procedure) || !hasTag(procedure, PROC)) continue;
    ++(procedure[4] == null ? dropped : whole);
  }
  EXPECT_EQ(heapFault(), "");
  EXPECT_LE(whole, 100);
  EXPECT_EQ(whole + dropped, 120);
}

// The count of words wraps, the sum that is reported does not.
TEST(Collector, TheCountOfWordsWraps) {
  std::int64_t before = wordsUsed();
  cused += 100000000;
  nextgc += 100000000;
  nextgcgen += 100000000;
  say("gc();");
  EXPECT_LT(cused, 100000000);
  std::int64_t used = wordsUsed() - before - 100000000;
  EXPECT_GE(used, 0);
  EXPECT_LT(used, 10000);
  ocused -= 1;
}

// What external code makes and drops goes; what anything refers to, and other objects, stay.
TEST(Collector, TheSmallCollectionTakesNumbersThatNobodyHolds) {
  say("gc();");
  DAG holder = new2(LIST, newFLOAT(Newint(2000000000), Newint(3)));
  ProtectFromGC(holder);
  DAG dropped = newFLOAT(Newint(2000000001), Newint(3));
  Word at = dropped.word - 4;
  GarbageCollectSoftwareFloats();
  EXPECT_EQ(text(holder), "[.2000000000e13]");
  bool isFree = false;
  for (int i = 1; i < freeListCount; ++i)
    for (Word block = freelist[i]; block != 0; block = wordAt(block)) {
      isFree |= block <= at && at < block + 4 * freeSize(block);
    }
  EXPECT_TRUE(isFree);
  AllowGC(holder);
  EXPECT_EQ(heapFault(), "");
}

TEST(Collector, UniqueTablesAreInOrder) {
  sayAll({"p := proc(n) option remember; local i; [seq(x^i + i*y, i = 1..n)] end:", "p(100):",
          "seq(cat(\"text\", i), i = 1..500):", "p := 'p':", "gc();"});
  auto fault = [] {
    const char* found = checkUniqueTables();
    return std::string(found == nullptr ? "" : found);
  };
  EXPECT_EQ(fault(), "");
  // Not blind: a member under another hash, and one that is there twice.
  DAG list = simpl(new2(LIST, newSequence({naminstall("once"), cons1})));
  hashinsert(hashalg(list) + 4096, list, simpltab);
  EXPECT_NE(fault().find("hash that is not its own"), std::string::npos) << fault();
  hashdelete(hashalg(list) + 4096, simpltab);
  hashinsert(hashalg(list), list, simpltab);
  EXPECT_NE(fault().find("twice"), std::string::npos) << fault();
  hashdelete(hashalg(list), simpltab);
  EXPECT_EQ(fault(), "");
}

// A program with every kind of state, collected after each statement.
TEST(Collector, StressLeavesResultsAlone) {
  collectAlways = true;
  std::string result =
      sayAll({"fib := proc(n) option remember; if n < 2 then n else fib(n-1) + fib(n-2) fi end:", "t := table():",
              "for i to 20 do t[i] := fib(i) od:", "c := proc() local k; k := 0; proc() k := k + 1 end end proc:",
              "c1 := c():", "c1():", "c1():", "s := 0:", "for i to 20 do s := s + t[i] od:",
              "s, c1(), fib(20), {op([f(1), g(2)])} minus {g(2)};"});
  collectAlways = false;
  EXPECT_EQ(result, "17710, 3, 6765, {f(1)}");
  EXPECT_EQ(heapFault(), "");
}

}  // namespace
}  // namespace korel::test
