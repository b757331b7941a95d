#pragma once
// Data from one rtable into another, by whole blocks where both keep the same positions.
//
// Blocks of machine numbers are converted in one loop for each pair of formats; what goes by objects passes through
// the expression of each element. Errors of a conversion, in all of these: "unable to store %1 when datatype=%2".

#include <cstdint>

#include "rtable/element_formats.h"
#include "store/dag.h"

namespace korel {

/// Converts `count` elements between blocks; `elementType` is that of the target.
void copyBlock(const unsigned char* source, Word sourceFormat, unsigned char* target, Word targetFormat,
               DAG elementType, std::int64_t count);

/// Whether both keep the same positions in the same order: the same bounds, storage, order and element type, and no
/// indexing functions.
bool hasSamePositions(DAG a, DAG b);
/// Copies the data of `source` into `target`, which have the same positions.
void copyPositions(DAG target, DAG source);

/// A copy of `r` whose elements have another format. The settings are those of `r`; the element type is `anything` for
/// a hardware format.
DAG CopyRTableWithNewType(DAG r, Word datatype);
/// A copy without indexing functions, rectangular, writable, with the elements that `r` reads.
DAG CopyIntoRectangularRTable(DAG r);

}  // namespace korel
