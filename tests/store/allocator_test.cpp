#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "frame/errors.h"
#include "kernel_fixture.h"
#include "store/allocator.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel::test {
namespace {

/// An object whose words serve a test as blocks, with the kernel's free lists set aside meanwhile. In the
/// end what came from elsewhere goes to those lists, and the object keeps its words: the heap stays whole.
struct Area {
  DAG object;
  Word begin, end;
  Word saved[freeListCount];
  explicit Area(Word words) : object(newl2(words + 1, BINARY)) {
    begin = object.word + 4;
    end = begin + 4 * words;
    std::copy(freelist, freelist + freeListCount, saved);
    empty();
  }
  static void empty() { std::fill(freelist, freelist + freeListCount, 0); }
  ~Area() {
    for (int i = 1; i < freeListCount; ++i)
      for (Word b = freelist[i]; b != 0;) {
        Word next = wordAt(b);
        if (b < begin || b >= end) {
          wordAt(b) = saved[i];
          saved[i] = b;
        }
        b = next;
      }
    std::copy(saved, saved + freeListCount, freelist);
  }
};

std::vector<Word> blocksOf(int list) {
  std::vector<Word> blocks;
  for (Word b = freelist[list]; b != 0; b = wordAt(b)) blocks.push_back(b);
  return blocks;
}

// A block of n + 1 or n + 2 words would leave too little behind and is passed over.
TEST(Allocator, SplitsLeaveThreeWordsOrNone) {
  Area own(400);
  Word area = own.begin;
  for (Word size : {13u, 14u}) {
    release_space(area, size);
    Word got = get_space(12);
    EXPECT_NE(got, area) << size;
    EXPECT_EQ(blocksOf(12), std::vector<Word>{area});
    freelist[12] = 0;
    release_space(got, 12);
    freelist[12] = 0;
    own.saved[12] = (wordAt(got) = own.saved[12], got);
  }
  release_space(area, 12);
  EXPECT_EQ(get_space(12), area);
  release_space(area, 15);
  EXPECT_EQ(get_space(12), area);
  EXPECT_EQ(blocksOf(3), std::vector<Word>{area + 48});
}

// A burst of small objects makes one trip to the large lists: the pieces stand in address order.
TEST(Allocator, OneLargeBlockStocksASmallSize) {
  Area own(2000);
  Word area = own.begin;
  release_space(area, 2000);
  EXPECT_EQ(get_space(3), area);
  std::vector<Word> stock = blocksOf(3);
  ASSERT_EQ(stock.size(), 129u);
  for (std::size_t i = 0; i < stock.size(); ++i) EXPECT_EQ(stock[i], area + 12 * (i + 1));
  ASSERT_EQ(blocksOf(15).size(), 1u);
  EXPECT_EQ(freeSize(freelist[15]), 2000u - 130 * 3);
  Area::empty();
  // Two words have no stock: one piece is cut, the rest is one block.
  release_space(area, 500);
  EXPECT_EQ(get_space(2), area);
  EXPECT_TRUE(blocksOf(2).empty());
  EXPECT_EQ(freeSize(freelist[15]), 498u);
  Area::empty();
  // The stock ends when fewer than three words would stay.
  release_space(area, 18);
  EXPECT_EQ(get_space(5), area);
  EXPECT_EQ(blocksOf(5), (std::vector<Word>{area + 20, area + 40}));
  EXPECT_EQ(blocksOf(3), std::vector<Word>{area + 60});
}

TEST(Allocator, TheHeadOfAClassIsItsSmallestOfLate) {
  Area own(400);
  Word area = own.begin;
  release_space(area, 100);
  release_space(area + 400, 60);
  EXPECT_EQ(blocksOf(14), (std::vector<Word>{area + 400, area}));
  release_space(area + 800, 80);
  EXPECT_EQ(blocksOf(14), (std::vector<Word>{area + 400, area + 800, area}));
  release_space(area, 0);
  release_space(area, -5);
  EXPECT_EQ(blocksOf(14).size(), 3u);
}

TEST(Allocator, ChunksBackToBackBecomeOne) {
  Area own(1);
  Word chunk = allstorage;
  Word size = wordAt(chunk + 4);
  std::int64_t before = totalmem;
  Word block = get_space(40000);
  EXPECT_EQ(allstorage, chunk);
  EXPECT_EQ(wordAt(chunk + 4), size + 3 * chunkUnit);
  EXPECT_EQ(totalmem, before + 3 * std::int64_t{chunkUnit});
  EXPECT_EQ(block, chunk + 4 * size);
  EXPECT_GE(historage, block + 160000);
  release_space(block, 40000);
}

TEST(Allocator, RequestsBeyondTheLimitAreErrors) {
  EXPECT_EQ(errorOf([] { get_space(maxLength + 2); }), "object too large");
  EXPECT_EQ(newForeign(maxLength), DAG());
  EXPECT_FALSE(foreignDAG);
}

// A million objects of random sizes: no two overlap, what was written stays, and a count made beside the
// allocator agrees with its own.
TEST(Allocator, AMillionObjectsKeepTheirWords) {
  std::mt19937 random(7);
  struct Live {
    DAG object;
    Word length, mark;
  };
  std::vector<Live> live;
  std::int64_t handedOut = 0;
  const std::int64_t usedBefore = wordsUsed();
  auto check = [](const Live& one) {
    ASSERT_EQ(headerWord(one.object), BINARY | one.length);
    for (Word i = 1; i < one.length; ++i) ASSERT_EQ(rawField(one.object, i), one.mark + i);
  };
  for (Word n = 0; n < 1000000; ++n) {
    if (live.size() > 3000 || (!live.empty() && random() % 5 < 2)) {
      std::size_t at = random() % live.size();
      check(live[at]);
      release(live[at].object, live[at].length);
      live[at] = live.back();
      live.pop_back();
      continue;
    }
    Word length = 1 + random() % (random() % 50 == 0 ? 2000 : random() % 5 == 0 ? 60 : 10);
    DAG s = newl2(length, BINARY);
    handedOut += length + 1;
    for (Word i = 1; i < length; ++i) {
      ASSERT_EQ(rawField(s, i), 0u);
      rawField(s, i) = n + i;
    }
    live.push_back({s, length, n});
  }
  EXPECT_EQ(wordsUsed() - usedBefore, handedOut);
  for (const Live& one : live) {
    check(one);
    ASSERT_GE(one.object.word, lostorage);
    ASSERT_LE(one.object.word + 4 * one.length, historage);
    release(one.object, one.length);
  }
  const char* fault = checkHeap();
  EXPECT_EQ(fault, nullptr) << fault;
}

}  // namespace
}  // namespace korel::test
