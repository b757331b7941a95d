// Tables against the library's map, through every size at which their storage changes shape.

#include <gtest/gtest.h>
#include <map>
#include <rapidcheck.h>
#include <string>

#include "eval/procedures/remember.h"
#include "eval/simplify/simplify.h"
#include "eval/tables/tables.h"
#include "kernel_fixture.h"
#include "store/check/verify.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

DAG keyOf(std::uint32_t n) {
  switch (n % 3) {
    case 0: return immediate(static_cast<std::int32_t>(n / 3));
    case 1: return immediate(static_cast<std::int32_t>(n) << 14);
    default: return simpl(newSequence({immediate(static_cast<std::int32_t>(n)), cons1}));
  }
}

void expectSame(DAG table, const std::map<Word, Word>& model) {
  std::map<Word, Word> found;
  hashforeach(
      table[3],
      [](void* into, PairAddress pair) {
        (*static_cast<std::map<Word, Word>*>(into))[pairKey(pair).word] = pairValue(pair).word;
        return true;
      },
      &found);
  EXPECT_EQ(found, model);
  EXPECT_EQ(hashcount(table[3]), static_cast<std::int64_t>(model.size()));
}

// Stores, changes and removals in random order; the seed of the generator is fixed.
TEST(Tables, AgreeWithAMapThroughGrowthAndRemoval) {
  DAG table = maketable(DAG(), null);
  std::map<Word, Word> model;
  std::uint32_t state = 2463534242u;
  auto random = [&state](std::uint32_t below) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return state % below;
  };
  // The mix of stores and removals changes, so that the table grows, stays, and empties.
  for (std::uint32_t storesOfTen : {10u, 7u, 5u, 2u, 0u}) {
    for (int i = 0; i < 60000; ++i) {
      DAG key = keyOf(random(60000));
      if (random(10) < storesOfTen) {
        DAG value = immediate(i);
        assignEntry(key, DAG(), table, value);
        model[key.word] = value.word;
      } else {
        removeEntry(key, table);
        model.erase(key.word);
      }
      if (i % 97 == 0) {
        DAG asked = keyOf(random(60000));
        auto at = model.find(asked.word);
        ASSERT_EQ(lookUpEntry(asked, DAG(), table).value.word, at == model.end() ? absent.word : at->second);
      }
    }
    expectSame(table, model);
    EXPECT_TRUE(Verify(table)) << storesOfTen;
    DAG copied = copyhashtab(table[3]);
    EXPECT_TRUE(hashEqualEntries(copied, table[3]));
    if (!model.empty()) {
      DAG key(model.begin()->first);
      hashunique(key.word, cons0, copied);
      EXPECT_EQ(hashEqualEntries(copied, table[3]), model.begin()->second == cons0.word);
      hashdelete(key.word, copied);
      EXPECT_FALSE(hashEqualEntries(copied, table[3]));
    }
  }
}

// Keys that land in one bucket, whatever its number: a long chain takes them all the same.
TEST(Tables, KeysOfOneBucketAreTakenApart) {
  DAG table = maketable(DAG(), null);
  constexpr int count = 4000;
  for (int i = 0; i < count; ++i) assignEntry(immediate(i << 18), DAG(), table, immediate(i));
  for (int i = 0; i < count; ++i) ASSERT_EQ(lookUpEntry(immediate(i << 18), DAG(), table).value, immediate(i));
  EXPECT_EQ(lookUpEntry(immediate(count << 17 | 1), DAG(), table).value, absent);
  EXPECT_EQ(hashcount(table[3]), count);
  clearhash(table[3], false);
  EXPECT_EQ(hashcount(table[3]), 0);
  assignEntry(immediate(1 << 18), DAG(), table, cons1);
  EXPECT_EQ(hashcount(table[3]), 1);
}

// A collection finds every entry of a table that has grown, and the table's copy is its own.
TEST(Tables, GrownTablesSurviveCollectionAndCopy) {
  say("tsurv := table():");
  say("for k to 20000 do tsurv[k] := [k]; tsurv[[k]] := k/7 od:");
  say("gc():");
  EXPECT_EQ(say("add(tsurv[k][1], k = 1 .. 20000);"), "200010000");
  EXPECT_EQ(say("7*add(tsurv[[k]], k = 1 .. 20000);"), "200010000");
  DAG table = naminstall("tsurv")[1];
  DAG copied = simpl(CopyDAG(table));
  EXPECT_EQ(hashcount(copied[3]), hashcount(table[3]));
  for (int k = 1; k <= 20000; ++k)
    ASSERT_EQ(text(lookUpEntry(immediate(k), DAG(), copied).value), "[" + std::to_string(k) + "]");
  assignEntry(cons1, DAG(), copied, cons0);
  EXPECT_EQ(say("tsurv[1];"), "[1]");
  say("tsurv := 'tsurv':");
}

}  // namespace
}  // namespace korel::test
