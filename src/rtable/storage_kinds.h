#pragma once
// The storages of rtables and the sizes of their elements: one row for each kind.
//
// Counts are of elements that are kept, for r rows and c columns; storages that are bound to two dimensions say
// so. Sparse storage keeps as many as its capacity tells.

#include <cstdint>

#include "store/dag.h"

namespace korel {

enum RTableStorage : Word {
  storageSparse,
  storageEmpty,
  storageDiagonal,
  storageBand,
  storageRectangular,
  storageUpper,
  storageStrictUpper,
  storageUpperHessenberg,
  storageLower,
  storageStrictLower,
  storageLowerHessenberg,
  storageScalar,
};
constexpr Word storageKindCount = 12;

enum RTableDatatype : Word {
  dataDag,
  dataComplexFloat,
  dataInteger8,
  dataInteger16,
  dataInteger32,
  dataInteger64,
  dataFloat64,
  dataComplexFloat64,
};
constexpr Word datatypeCount = 8;
/// Bytes of an element, by its data type.
constexpr int rtableElementBytes[datatypeCount] = {4, 8, 1, 2, 4, 8, 8, 16};
constexpr Word maxDimensions = 63;

/// How many elements an rtable with these bounds (lower and upper of each of `n` dimensions) keeps; `b1` and `b2`
/// as in its band, `b1` the capacity when it is sparse. -1 when the storage needs another number of dimensions,
/// -2 when the count doesn't fit.
std::int64_t storedElements(const std::int32_t* bounds, Word n, Word storage, std::int32_t b1, std::int32_t b2);

/// Words behind the bounds: 2 for sparse and band storage, else none.
constexpr Word tailLength(Word storage) { return storage == storageSparse || storage == storageBand ? 2 : 0; }

}  // namespace korel
