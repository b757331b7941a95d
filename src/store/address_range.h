#pragma once
// The range of addresses below 4 GiB that everything a word refers to is taken from.
//
// It is reserved once, without memory behind it, and committed front to back as chunks are needed, so
// that a chunk follows the one before it. Nothing is ever given back.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// Bytes behind the latest words that may be read, whatever stands there.
constexpr std::uint64_t readableBehind = 64;
/// Address of `words` fresh words, or 0 when the range is used up or the system refuses the memory.
Word commitWords(std::int64_t words);
/// How many words could still be committed: of the range, and within the system's limit of data.
std::int64_t uncommittedWords();

}  // namespace korel
