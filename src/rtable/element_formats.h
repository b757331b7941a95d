#pragma once
// The formats of elements: what an expression becomes in the block of an rtable, and what is read from there.
//
// One row for each format; everything that reads or writes elements goes through it. A format by objects (data
// types 0 and 1) keeps references; the others keep machine numbers. A place is the address of an element.

#include "rtable/rtable_object.h"
#include "store/dag.h"

namespace korel {

/// An element of any format, apart from its block.
union RawElement {
  DAG object;
  DAG parts[2];
  std::int8_t integer8;
  std::int16_t integer16;
  std::int32_t integer32;
  std::int64_t integer64;
  double real;
  double doubles[2];
  unsigned char bytes[16];

  RawElement() : bytes{} {}
};

struct ElementFormat {
  /// The element as an expression, simplified; 0 for an object that has never been set.
  DAG (*read)(const unsigned char* place);
  void (*write)(unsigned char* place, const RawElement& element);
  bool (*isZero)(const RawElement& element);
};
extern const ElementFormat elementFormats[datatypeCount];
inline const ElementFormat& formatOf(DAG r) { return elementFormats[datatypeOf(r)]; }

/// What element of an rtable of that format and element type `x` becomes; false when it can't be stored. Runs
/// `type` and `evalf`, which may raise errors of their own.
bool convertElement(Word datatype, DAG elementType, DAG x, RawElement& element);
/// Whether `x` can be stored.
inline bool RTableType(Word datatype, DAG elementType, DAG x) {
  RawElement element;
  return convertElement(datatype, elementType, x, element);
}
/// The same as an element of `r`. Error: "unable to store %1 when datatype=%2 ".
RawElement DagToRTableData(DAG r, DAG x);

/// Place of the element at `offset`, which in Nag sparse storage counts behind the index vectors.
unsigned char* elementPlace(DAG r, std::int64_t offset);
inline DAG RTableDataOffsetToDag(DAG r, std::int64_t offset) { return formatOf(r).read(elementPlace(r, offset)); }
/// Stores the element; the barrier of the collector included.
void storeRaw(DAG r, std::int64_t offset, const RawElement& element);
inline void RTableSetDagToDataOffset(DAG r, std::int64_t offset, DAG x) { storeRaw(r, offset, DagToRTableData(r, x)); }

/// Zero and one as elements of `r` read.
DAG RTableZero(DAG r);
DAG RTableOne(DAG r);
/// The zero test of shapes: 0 of either sign, a float 0, a COMPLEX of such parts.
bool isZeroValue(DAG x);

}  // namespace korel
