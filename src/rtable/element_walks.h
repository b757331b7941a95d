#pragma once
// Walks over the elements of an rtable, by what they are and not by where they stand.
//
// A walk ends when its visitor answers false, and gives that answer. Visitors may evaluate: the collector gets its
// chance between steps, and a block that a visitor replaces is read anew at each step.

#include "eval/statements/statements.h"
#include "rtable/rtable_object.h"
#include "store/dag.h"

namespace korel {

using ElementVisitor = bool (*)(DAG element, void* state);

/// Each stored element, past the indexing functions: of a block from the last to the first, without the slots of a
/// band beyond the matrix and objects that were never set; of sparse storage the entries.
bool RTableVisitDataDAG(DAG r, ElementVisitor visit, void* state);
/// Each element that differs by the rules of the shape, with as little work as it allows: 0 and 1 of an identity.
bool RTableLookup(DAG r, ElementVisitor visit, void* state);

/// The same for a function object `test(element)`.
template <class Test>
bool everyElement(DAG r, Test test) {
  return RTableLookup(
      r, [](DAG element, void* state) { return (*static_cast<Test*>(state))(element); }, &test);
}

/// Whether the format keeps references to objects.
inline bool holdsObjects(DAG r) { return datatypeOf(r) <= dataComplexFloat; }

/// Tests for all elements; hardware formats that no function of the user changes pass without a look.
bool IsNumericRTable(DAG r);
bool IsNameOrStringRTable(DAG r);
bool RtableIsReal(DAG r);
/// True when all elements are zero.
bool RTableIsZero(DAG r);

/// The offset of a band's slot that lies beyond the matrix holds no element.
bool isSlotOfBand(DAG r, std::int64_t offset);

}  // namespace korel
