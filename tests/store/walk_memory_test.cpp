// What walks remember: the set of objects and the map of results, over many walks, against the standard
// containers.

#include <gtest/gtest.h>
#include <random>
#include <unordered_map>
#include <unordered_set>

#include "store/object_set.h"
#include "store/word_map.h"

namespace korel::test {
namespace {

// Words as references are: neighbours at the least distance of two objects, clusters, and the far ends of
// the addresses.
Word someAddress(std::mt19937& random) {
  switch (random() % 4) {
    case 0: return 0x10004 + 8 * (random() % 64);
    case 1: return 0x7ffffffc - 4 * (random() % 2048);
    case 2: return 0xffffe004 + 4 * (random() % 1024);
    default: return 0x40000000 | (random() & 0x03fffffc);
  }
}

// Objects are two words apart: in a set either of an even or of an odd word.
Word inStep(Word address) { return (address & ~7u) | 4u; }

TEST(WalkMemory, SetAgreesOverWalks) {
  std::mt19937 random(7);
  ObjectSet set;
  EXPECT_FALSE(set.contains(DAG(0x10004)));
  for (int walk = 0; walk < 200; ++walk) {
    std::unordered_set<Word> reference;
    for (int i = 0, n = random() % 3000; i < n; ++i) {
      Word address = inStep(someAddress(random));
      ASSERT_EQ(set.contains(DAG(address)), reference.count(address) == 1) << address << ", walk " << walk;
      ASSERT_EQ(set.insert(DAG(address)), reference.insert(address).second) << address << ", walk " << walk;
    }
    // A walk may end at any point: what it leaves is gone by the next.
    if (walk % 50 == 49) set.release();
    else set.clear();
  }
  set.release();
}

TEST(WalkMemory, MapAgreesOverWalks) {
  std::mt19937 random(11);
  WordMap map;
  // Small walks after a large one shrink the map on the way; the largest is given back.
  for (int size : {0, 1, 127, 128, 129, 5000, 3, 0, 300000, 40, 40, 40, 0, 40, 100000, 7, 7, 2000}) {
    std::unordered_map<Word, std::int32_t> reference;
    for (int i = 0; i < size; ++i) {
      Word word = someAddress(random) | (random() & 1);
      auto value = static_cast<std::int32_t>(random());
      bool isNew = reference.emplace(word, value).second;
      std::int32_t* found = nullptr;
      ASSERT_EQ(map.insert(word, value, &found), isNew ? WordMap::added : WordMap::present);
      if (!isNew) {
        ASSERT_EQ(*found, reference[word]);
      }
    }
    ASSERT_EQ(map.size(), reference.size());
    for (auto [word, value] : reference) ASSERT_EQ(*map.find(word), value) << word << " of " << size;
    for (int i = 0; i < 100; ++i) {
      Word word = someAddress(random);
      ASSERT_EQ(map.find(word) != nullptr, reference.count(word) == 1) << word << " of " << size;
    }
    map.clear();
    ASSERT_EQ(map.size(), 0u);
  }
  map.release();
}

}  // namespace
}  // namespace korel::test
