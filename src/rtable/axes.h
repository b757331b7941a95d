#pragma once
// The axes of rtables: storages, element formats, subtypes and orders, how the language writes each of them,
// and the names that access routines have by them.
//
// Each axis is one table; whatever depends on a combination is put together from the rows.

#include "rtable/storage_kinds.h"
#include "store/dag.h"
#include "store/object_fields.h"

namespace korel {

enum RTableSubtype : Word { subtypeArray, subtypeMatrix, subtypeColumnVector, subtypeRowVector };
enum RTableOrder : Word { fortranOrder, cOrder };

/// How a storage is written, `name[first, second]`, and called in the names of routines.
struct StorageAxis {
  const char *name, *first, *second;
  const char* routine;
  bool isOrdered;  // its places depend on the order
};
extern const StorageAxis storageAxis[storageKindCount];

inline Word dimensionsOf(DAG r) { return rtableFlag(r, rtableDimensions); }
inline Word storageOf(DAG r) { return rtableFlag(r, rtableStorage); }
inline Word datatypeOf(DAG r) { return rtableFlag(r, rtableDatatype); }
inline Word subtypeOf(DAG r) { return rtableFlag(r, rtableSubtype); }
inline bool isCOrder(DAG r) { return rtableFlag(r, rtableOrder) != fortranOrder; }

/// The values that options have in the language.
DAG storageValue(DAG r);
DAG datatypeValue(Word datatype, DAG elementType);
DAG subtypeValue(Word subtype);
DAG orderValue(Word order);
inline DAG datatypeValue(DAG r) { return datatypeValue(datatypeOf(r), r[rtableElementType]); }
/// The subtype as messages call it: Array, Matrix, Vector.
DAG subtypeWord(Word subtype);
inline DAG subtypeWord(DAG r) { return subtypeWord(subtypeOf(r)); }

}  // namespace korel
