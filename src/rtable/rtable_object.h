#pragma once
// The object RTABLE: its words and bounds, the ring of its indexing functions, its block of data, and copies.
//
// With k indexing functions an rtable is a ring of k + 1 objects that are alike but for s[3]: the head has
// (f1, ..., fk, R1), R1 has (f2, ..., fk, R2), and Rk has (head). Each stands for the rtable behind the functions
// before it. All words but s[3] are changed on the whole ring at once, by `UpdateRTABLE`.
//
// The data are a HASHTAB (Korel sparse), else a block: inside a BINARY object from its second word on, or, above
// `bigBlockLimit`, memory outside the heap, which is given back when the rtable dies. s[1] is 0 without data.

#include <cstdint>

#include "rtable/axes.h"
#include "store/dag.h"
#include "store/object_fields.h"

namespace korel {

inline std::int32_t* boundsOf(DAG r) { return reinterpret_cast<std::int32_t*>(&r[rtableFirstBound]); }
inline std::int32_t lowerBound(DAG r, Word k) { return boundsOf(r)[2 * k]; }
inline std::int32_t upperBound(DAG r, Word k) { return boundsOf(r)[2 * k + 1]; }
inline std::int64_t extentOf(const std::int32_t* bounds, Word k) {
  return std::int64_t{bounds[2 * k + 1]} - bounds[2 * k] + 1;
}
inline std::int64_t extentOf(DAG r, Word k) { return extentOf(boundsOf(r), k); }
/// An index space without a position: some dimension is empty.
bool hasNoPositions(DAG r);
/// The word at that distance from the end: of band storage (2) b1 and (1) b2, of sparse storage (2) the entries in
/// use and (1) the qualifier.
inline std::int32_t tailOf(DAG r, Word fromEnd) {
  return static_cast<std::int32_t>(rawField(r, lengthOf(r) - fromEnd));
}
enum SparseQualifier : std::int32_t { wholeSparse, upperSparse, lowerSparse };
inline unsigned char* dataOf(DAG r) { return rtableBlock(r); }
inline bool isNagSparse(DAG r) { return storageOf(r) == storageSparse && !isKorelSparse(r); }

// ---- the ring

inline Word functionCount(DAG r) { return lengthOf(r[rtableFunctions]) - 2; }
/// The rtable behind the first indexing function; without functions the rtable itself.
inline DAG nextInRing(DAG r) { return r[rtableFunctions][lengthOf(r[rtableFunctions]) - 1]; }
/// Gives `r` the ring for `functions`, an EXPSEQ.
void InsertIndexingFunctionChain(DAG r, DAG functions);
/// The indexing functions of `r`, without the link.
DAG indexingFunctions(DAG r);
bool HasSameIndexingFunctionChain(DAG a, DAG b);
/// Stores `value` in that word of every member of the ring.
void UpdateRTABLE(DAG r, Word field, Word value);
void updateFlag(DAG r, RTableFlag flag, Word value);

// ---- data

constexpr std::int64_t bigBlockLimit = 0xffffff0;  // bytes

/// Bytes of the block that holds the data of `r`. Error: "not enough memory to allocate rtable".
std::int64_t RTableNumBytes(DAG r);
/// Stored elements by bounds and storage. Errors: "this storage type requires exactly two dimensions", "dimensions
/// too large".
Word ComputeNumElements(const std::int32_t* bounds, Word n, Word storage, std::int32_t b1, std::int32_t b2);
/// Gives the whole ring a block of its size, all bytes 0, or an empty HASHTAB.
void AllocateRTableData(DAG r);
/// Gives the block back; the ring has no data then.
void DeleteRTableData(DAG r);
/// Changes how many entries a Nag sparse rtable has room for.
void ReallocNagSparseData(DAG r, std::int64_t capacity);

// ---- copies

/// A copy of the words with a ring of its own, which shares the data.
DAG RTableCopyAlg(DAG r);
/// The same with a copy of the data.
DAG CopyRTable(DAG r);

/// Tells the collector and the copier of structures how rtables are walked, copied, and what is done when one
/// dies. Part of the start.
void initializeRTables();

}  // namespace korel
