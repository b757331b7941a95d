// Rtables in the operations that all objects share. Most of them are yet to come, and say so.

#include "rtable/rtable_kind.h"

#include "eval/structure/kinds.h"
#include "frame/errors.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/object_fields.h"

namespace korel {

namespace {

[[noreturn]] void notAvailable(const char* operation) {
  KernelException("the operation `%1` is not available", naminstall(operation));
}

DAG refuseHead(DAG) { notAvailable("op"); }
DAG refuseOperand(DAG, std::int64_t) { notAvailable("op"); }
std::int64_t refuseCount(DAG) { notAvailable("nops"); }
std::int64_t refuseSize(DAG) { notAvailable("length"); }

DAG refuseSubstitutionByPosition(DAG) { KernelException("subsop cannot be used for rtables; use indexing instead"); }
DAG refuseMap(const OperandWalk& walk, DAG) {
  bool mapping = walk.purpose == OperandWalk::mapping;
  KernelException(mapping ? "invalid map onto %1" : "invalid select from %1", naminstall("rtable"));
}
// Elements are no part of the object as `subs` sees it.
DAG unchanged(Substitution&, DAG x) { return x; }

bool refuseEqual(DAG, DAG) { notAvailable("RTableEqual"); }
bool refuseSameStructure(DAG, DAG) { notAvailable("RTableEqualStructure"); }
bool refuseSameEntries(DAG, DAG) { notAvailable("RTableEqualEntries"); }

void refuseStore(DAG, DAG, DAG, DAG) { notAvailable("AssignToRTable"); }
DAG refuseListing(DAG, Listing what) { notAvailable(what == Listing::indices ? "indices" : "entries"); }
DAG refuseSort(DAG, DAG) { notAvailable("SortRTable"); }

DAG attributeOf(DAG rtable) { return rtable[rtableAttributes]; }
// In place: an rtable is one object for all who hold it.
DAG withAttribute(DAG rtable, DAG attribute) {
  updategen(attribute);
  rtable[rtableAttributes] = attribute;
  return rtable;
}

// Values of parts of the flags.
constexpr Word arraySubtype = 0, rectangularStorage = 4, hardwareFloats = 6;

}  // namespace

constexpr Kind rtableKind = {
    .head = refuseHead,
    .count = refuseCount,
    .operand = refuseOperand,
    .takeApart = refuseSubstitutionByPosition,
    .map = refuseMap,
    .substitute = unchanged,
    .size = refuseSize,
    .equal = refuseEqual,
    .sameStructure = refuseSameStructure,
    .sameEntries = refuseSameEntries,
    .store = refuseStore,
    .listing = refuseListing,
    .sort = refuseSort,
    .attribute = attributeOf,
    .withAttribute = withAttribute,
};

bool isArrayRTable(DAG x) { return isTag(x, RTABLE) && rtableFlag(x, rtableSubtype) == arraySubtype; }

bool IsHFArrayRTable(DAG x) {
  // The last member of the indexing functions closes their ring.
  return isTag(x, RTABLE) && rtableFlag(x, rtableDatatype) == hardwareFloats &&
         rtableFlag(x, rtableStorage) == rectangularStorage && lengthOf(x[rtableFunctions]) == 2;
}

}  // namespace korel
