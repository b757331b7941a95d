// Long chains: their layout is that of short ones, and the index finds what a scan would.

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <utility>
#include <vector>

#include "kernel_fixture.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/objects.h"
#include "store/table_index.h"

namespace korel::test {
namespace {

constexpr Word buckets = 4;
using Pairs = std::vector<std::pair<Word, Word>>;

Pairs chainContent(DAG table, Word bucket) {
  Pairs pairs;
  if (table[bucket])
    for (Word i = 1; rawField(table[bucket], i) != 0; i += 2)
      pairs.emplace_back(rawField(table[bucket], i), rawField(table[bucket], i + 1));
  return pairs;
}

// A table as the rules tell it: each chain a list of pairs and a length.
struct Model {
  Pairs chains[buckets + 1];
  Word lengths[buckets + 1] = {};

  Pairs& chainOf(Word key) { return chains[bucketIndex(key, buckets + 1)]; }
  static Pairs::iterator find(Pairs& chain, Word key) {
    return std::find_if(chain.begin(), chain.end(), [key](auto& pair) { return pair.first == key; });
  }
  void store(Word key, Word value, bool replace) {
    Pairs& chain = chainOf(key);
    Word& length = lengths[&chain - chains];
    if (length == 0) length = 7;
    else if (chain.size() >= (length - 3) / 2) length += 2 * (length / 10) + 10;
    auto at = replace ? find(chain, key) : chain.end();
    if (at != chain.end()) at->second = value;
    else chain.emplace_back(key, value);
  }
  bool remove(Word key) {
    Pairs& chain = chainOf(key);
    auto at = find(chain, key);
    if (at == chain.end()) return false;
    *at = chain.back();
    chain.pop_back();
    return true;
  }
};

void expectLayout(DAG table, const Model& model) {
  for (Word b = 1; b <= buckets; ++b) {
    ASSERT_EQ(chainContent(table, b), model.chains[b]) << "bucket " << b;
    ASSERT_EQ(table[b] ? lengthOf(table[b]) : 0, model.lengths[b]) << "bucket " << b;
  }
  ASSERT_TRUE(checkTableIndices());
}

// Four chains of up to a thousand pairs, which come, go, and stand twice.
TEST(TableIndex, LongChainsKeepTheLayoutOfShortOnes) {
  static DAG table;
  registerRoot(&table);
  std::mt19937 random(7);
  for (const bool equalKeys : {false, true}) {
    table = newhashtab(buckets);
    Model model;
    for (int storesOfTen : {9, 6, 5, 2, 8}) {
      for (int i = 0; i < 8000; ++i) {
        const DAG key = immediate(static_cast<std::int32_t>(random() % 4000));
        const DAG value = immediate(i);
        if (static_cast<int>(random() % 10) < storesOfTen) {
          const bool replace = !equalKeys || random() % 50 != 0;
          replace ? hashunique(key.word, value, table) : hashinsert(key.word, value, table);
          model.store(key.word, value.word, replace);
        } else if (random() % 2 == 0) {
          hashdelete(key.word, table);
          while (model.remove(key.word)) {
          }
        } else {
          ASSERT_EQ(hashremove(key.word, table) != DAG(notFound), model.remove(key.word));
        }
        const DAG asked = immediate(static_cast<std::int32_t>(random() % 4000));
        Pairs& chain = model.chainOf(asked.word);
        const auto at = Model::find(chain, asked.word);
        const PairAddress found = search(asked.word, table);
        ASSERT_EQ(found == notFound, at == chain.end());
        if (found != notFound) {
          ASSERT_EQ(pairValue(found).word, at->second);
        }
      }
      expectLayout(table, model);
      gc();
      const DAG copied = copyhashtab(table);
      expectLayout(copied, model);
      EXPECT_TRUE(hashEqualEntries(copied, table));
    }
    clearhash(table, false);
    for (Word b = 1; b <= buckets; ++b) model.chains[b].clear();
    for (Word k = 3; k < 2000; k += 2) {
      hashunique(k, cons1, table);
      model.store(k, cons1.word, true);
    }
    expectLayout(table, model);
  }
}

// A hundred large tables that take turns: each keeps its index, and those that die take theirs along.
TEST(TableIndex, ManyLargeTablesTakeTurns) {
  say("many := [seq(table([seq(j = i + j, j = 1 .. 12000)]), i = 1 .. 100)]:");
  EXPECT_EQ(say("add(many[1 + irem(17*k, 100)][k], k = 1 .. 12000);"),
            say("add(k + 1 + irem(17*k, 100), k = 1 .. 12000);"));
  EXPECT_TRUE(checkTableIndices());
  say("many := 0:");
  say("gc():");
  say("for i to 50 do t := table([seq(j = i, j = 1 .. 12000)]) end do:");
  say("gc():");
  EXPECT_EQ(say("t[11999];"), "50");
  EXPECT_TRUE(checkTableIndices());
}

}  // namespace
}  // namespace korel::test
