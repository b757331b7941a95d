#pragma once
// Where the keys of long chains stand.
//
// A table never changes its number of buckets, and a chain keeps its pairs in the order in which they came, however
// many there are (hash.h). So that a table of a million entries answers as fast as one of a hundred, a table with
// long chains has an index: a map from each key in such a chain to its pair. Indices live outside the heap, in a
// registry by the address of the table, and no word of an object tells of them: the first search of a long
// chain makes the index of its table.
//
// An index follows each change of its table: hash.cpp, and the collector's removal of dead pairs, tell it. Tables
// with raw keys have no index. Without memory for an index the chains are scanned.

#include "store/dag.h"

namespace korel {

/// Length of the shortest chain whose keys are indexed: a scan of those below stays within a few cache lines.
constexpr Word longChainLength = 83;
inline bool isLongChain(DAG chain) {
  return lengthOf(chain) >= longChainLength && (controlWord(chain) & tableBit) == 0;
}

// ---- of a long chain in a bucket of `table`; a place is the number of the field of a chain that holds the key

/// Place of the first pair with this key, or of the first free pair.
Word placeOfKey(DAG table, Word bucket, Word key);
/// The same for a pair that is about to be stored: the index takes the free pair for filled.
Word placeForKey(DAG table, Word bucket, Word key);
/// Place of the first free pair: the pairs in use stand before it.
Word placeOfEnd(DAG table, Word bucket);
/// The first free pair is about to be filled with this key.
void indexNewPair(DAG table, Word bucket, Word key);
/// The pair at `place` is about to be replaced by the last one, which may be the same.
void indexRemoval(DAG table, Word bucket, Word place);
/// The chain has grown so far that it is a long one from now on.
void indexChain(DAG table, Word bucket);

// ---- of tables

/// The table has changed as a whole, or is given back.
void dropIndex(DAG table);
/// Drops the indices of the tables that `isAlive` denies.
void dropDeadIndices(bool (*isAlive)(DAG table));
/// Whether each index tells of its table what a scan would find; for the stress tests.
bool checkTableIndices();

}  // namespace korel
