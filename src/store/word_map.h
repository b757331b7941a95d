#pragma once
// A map from words to numbers that lives outside the heap: the results that a walk over objects keeps.
//
// Open addressing with linear probing; capacity is a power of two and at most half is in use. The word
// 0 marks a free place, which no reference uses. Nothing is removed one by one. The map is plain data:
// its owner calls `clear` or `release`, also where an error may pass over the owner.

#include <cstdint>

#include "store/dag.h"

namespace korel {

class WordMap {
 public:
  enum Outcome { added, present, outOfMemory };

  /// Adds `word` (not 0) with `value`, unless it is present: then `found` is where its value stands,
  /// until the next call.
  Outcome insert(Word word, std::int32_t value, std::int32_t** found = nullptr);
  /// The value of `word`, or null.
  const std::int32_t* find(Word word) const;
  std::uint32_t size() const { return used_; }
  /// Empties the map. Its storage serves the next walk, so that walks of like size pay for fresh pages
  /// once; it halves at each use that leaves most of it idle, and what is very large goes at once.
  void clear();
  /// Takes storage for a hundred words when there is none; false when memory is missing.
  bool reserve() { return capacity_ != 0 || grow(); }
  /// Gives the storage back and empties the map.
  void release();

 private:
  struct Slot {
    Word word;
    std::int32_t value;
  };
  bool grow();
  Slot* slotFor(Word word) const;

  Slot* slots_ = nullptr;
  std::uint32_t capacity_ = 0;
  std::uint32_t used_ = 0;
};

}  // namespace korel
