#pragma once
// A set of objects that lives outside the heap: what a walk over shared objects has met.
//
// One bit for each place in the heap at which an object can begin. Objects that were made together lie
// together, so that a walk over 10^5 of them stays within a few hundred lines of the set, and an
// insertion allocates, probes and moves nothing (bench/collections.sh, "has"). A page of the heap has a
// line of bits and the time at which the set last cleared that line: `clear` steps the clock and touches
// nothing, and a line is cleared when the set next comes by.
//
// The storage grows with the part of the heap that was ever met, by 18 KB for 1 MB, and stays between
// walks. The set is plain data: its owner calls `release` to give the storage back.

#include <cstdint>

#include "store/dag.h"

namespace korel {

class ObjectSet {
 public:
  /// Adds an object (not 0, no immediate). True when it was absent; also when there is no memory to
  /// note it in, so that a walk enters an object once too often rather than not at all.
  bool insert(DAG x) {
    Area* area = areas_ != nullptr ? areas_[x.word >> areaBits] : nullptr;
    if (area == nullptr) [[unlikely]] {
      area = newArea(x.word >> areaBits);
      if (area == nullptr) return true;
    }
    Word page = (x.word >> pageBits) & (pagesInArea - 1);
    if (area->clearedAt[page] != time_) clearLine(*area, page);
    std::uint64_t& bits = area->bits[page][(x.word >> 9) & 7];
    std::uint64_t bit = std::uint64_t{1} << ((x.word >> 3) & 63);
    if ((bits & bit) != 0) return false;
    bits |= bit;
    return true;
  }
  bool contains(DAG x) const {
    const Area* area = areas_ != nullptr ? areas_[x.word >> areaBits] : nullptr;
    if (area == nullptr) return false;
    Word page = (x.word >> pageBits) & (pagesInArea - 1);
    return area->clearedAt[page] == time_ && (area->bits[page][(x.word >> 9) & 7] >> ((x.word >> 3) & 63) & 1) != 0;
  }
  /// Empties the set and keeps its storage.
  void clear() { ++time_; }
  /// Empties the set and gives its storage back.
  void release();

 private:
  static constexpr int areaBits = 20, pageBits = 12;
  static constexpr Word pagesInArea = Word{1} << (areaBits - pageBits);
  static constexpr Word areaCount = Word{1} << (32 - areaBits);

  // Two objects are at least two words apart, a control word and a header: a bit for every two words.
  struct Area {
    std::uint64_t clearedAt[pagesInArea];
    std::uint64_t bits[pagesInArea][8];
  };
  Area* newArea(Word number);
  void clearLine(Area& area, Word page);

  Area** areas_ = nullptr;
  std::uint64_t time_ = 1;  // never comes to its end
};

}  // namespace korel
