#pragma once
// Sorting by digits of 8 bits, the lowest first (Knuth, vol. 3, 5.2.5), for records with an unsigned key.
//
// It is stable, compares nothing and allocates nothing. A digit in which all keys agree costs no pass.

#include <algorithm>
#include <cstdint>
#include <utility>

namespace korel {

/// Sorts `count` records by `key(record)`; `spare` has room for as many. `Record` is plain data.
template <class Record, class Key>
void radixSort(Record* records, Record* spare, std::uint32_t count, Key key) {
  if (count < 2) return;
  constexpr int digits = sizeof(key(*records));
  std::uint32_t counts[digits][256] = {};
  for (std::uint32_t i = 0; i < count; ++i) {
    auto k = key(records[i]);
    for (int d = 0; d < digits; ++d) ++counts[d][(k >> (8 * d)) & 255];
  }
  Record *from = records, *to = spare;
  for (int d = 0; d < digits; ++d) {
    std::uint32_t* places = counts[d];
    if (places[(key(from[0]) >> (8 * d)) & 255] == count) continue;
    std::uint32_t next = 0;
    for (int value = 0; value < 256; ++value) next += std::exchange(places[value], next);
    for (std::uint32_t i = 0; i < count; ++i) to[places[(key(from[i]) >> (8 * d)) & 255]++] = from[i];
    std::swap(from, to);
  }
  if (from != records) std::copy_n(from, count, records);
}

}  // namespace korel
