#pragma once
// The numbers of objects that have been written, by reference.
//
// Objects that were made together are written together: a page of numbers for each 64 KB of the heap keeps them side by
// side, where a hash table would miss the cache at every object (bench/library.sh). Positive integers have pages
// of their own as far as they come in runs; the others go into a map. An entry counts while its time is the present
// one, so that `clear` touches nothing.
//
// Where memory for a page is missing the map takes all that follows, up to the next `clear`: it holds a few entries in
// reserve, so that the message that memory ran out still finds room.

#include <cstdint>

#include "store/dag.h"
#include "store/word_map.h"

namespace korel {

class ObjectNumbers {
 public:
  /// Gives `x` (not 0) the number, unless it has one: then `number` becomes that.
  WordMap::Outcome insert(DAG x, std::int32_t& number) {
    const Word place = isImmediate(x) ? x.word >> 1 : x.word >> 3;
    Page** pages = isImmediate(x) ? smallPages_ : heapPages_;
    if (isImmediate(x) && place >= smallLimit) return insertRare(x, number);
    if (pages == nullptr || pages[place / pageLength] == nullptr) [[unlikely]] {
      if (isImmediate(x) && smallPagesUsed_ == mostSmallPages) return insertRare(x, number);
      // A page that was missing once stays so: an object has its number in one place.
      if (!pagesRanOut_) pages = newPage(x, place);
      pagesRanOut_ = pagesRanOut_ || pages == nullptr;
      if (pagesRanOut_) return insertRare(x, number);
    }
    Entry& entry = pages[place / pageLength]->entries[place % pageLength];
    if (entry.time == time_) {
      number = entry.number;
      return WordMap::present;
    }
    entry = {time_, number};
    return WordMap::added;
  }
  /// Forgets all numbers; keeps storage for the next run unless that is large.
  void clear();

 private:
  static constexpr Word pageLength = 8192;
  static constexpr Word smallLimit = Word{1} << 30;  // integers from 0 on
  // Integers come in runs, or strewn so that each would take a page of its own.
  static constexpr int mostSmallPages = 128;
  static constexpr Word heapPageCount = (Word{1} << 29) / pageLength;
  static constexpr Word smallPageCount = smallLimit / pageLength;
  static constexpr int keptPages = 512;
  struct Entry {
    std::uint32_t time;
    std::int32_t number;
  };
  struct Page {
    Entry entries[pageLength];
  };
  Page** newPage(DAG x, Word place);
  WordMap::Outcome insertRare(DAG x, std::int32_t& number);
  void release();

  Page** heapPages_ = nullptr;
  Page** smallPages_ = nullptr;
  int pageCount_ = 0, smallPagesUsed_ = 0;
  bool pagesRanOut_ = false;
  std::uint32_t time_ = 1;
  WordMap rare_;
};

}  // namespace korel
