#include "rtable/create.h"

#include <algorithm>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "rtable/indexing_functions.h"
#include "rtable/rtable_object.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

[[noreturn]] void tooManyDimensions() {
  KernelException("rtables are limited to %1 dimensions", immediate(static_cast<std::int32_t>(maxDimensions)));
}

// ---- bounds by the initializer

// What a subtype allows.
int mostDimensions(Word subtype) {
  switch (subtype) {
    case subtypeArray: return static_cast<int>(maxDimensions);
    case subtypeMatrix: return 2;
    default: return 1;
  }
}

void swapBounds(std::int32_t* bounds) {
  std::swap(bounds[0], bounds[2]);
  std::swap(bounds[1], bounds[3]);
}
[[noreturn]] void refuseTranspose(const RTableSettings& s) {
  KernelException("%1 option is only valid for a 2D %2", naminstall("transpose"), subtypeWord(s.subtype));
}

// Dimension k is as long as the first list at depth k.
void boundsOfList(RTableSettings& s, DAG list, std::int32_t* bounds) {
  int n = 0;
  for (DAG at = list; isTag(at, LIST); at = at[1][1]) {
    if (n == static_cast<int>(maxDimensions)) tooManyDimensions();
    bounds[2 * n] = 1;
    bounds[2 * n + 1] = static_cast<std::int32_t>(memberCount(at[1]));
    ++n;
    if (isEmptySequence(at[1])) break;
  }
  s.dimensions = std::min(n, mostDimensions(s.subtype));
  if (!s.transpose) return;
  if (s.dimensions != 2) refuseTranspose(s);
  swapBounds(bounds);
}

void boundsOfRTable(RTableSettings& s, DAG r, std::int32_t* bounds) {
  const int n = static_cast<int>(dimensionsOf(r));
  std::copy(boundsOf(r), boundsOf(r) + 2 * n, bounds);
  s.dimensions = n;
  if (!s.transpose || n == 1) return;
  if (n != 2) refuseTranspose(s);
  swapBounds(bounds);
}

bool isWordRange(DAG range) {
  return isInteger(range[1]) && isInteger(range[2]) && FitIntoWord(range[1]) && FitIntoWord(range[2]);
}
void readRange(DAG range, std::int32_t* bounds) {
  bounds[0] = static_cast<std::int32_t>(LongLongValue(range[1]));
  bounds[1] = static_cast<std::int32_t>(LongLongValue(range[2]));
}

void boundsOfTable(RTableSettings& s, DAG table, std::int32_t* bounds) {
  if (!isArrayTable(table)) KernelException("dimensions must be specified with this type of initializer");
  DAG ranges = asSequence(table[tableBounds]);
  const int n = static_cast<int>(memberCount(ranges)), most = mostDimensions(s.subtype);
  const bool fits = s.subtype == subtypeArray ? n <= most : n == most;
  if (!fits || !everyMember(ranges, isWordRange))
    KernelException("array dimensions inappropriate for conversion to %1", subtypeWord(s.subtype));
  for (int k = 0; k < n; ++k) readRange(ranges[k + 1], bounds + 2 * k);
  s.dimensions = n;
  if (!s.transpose || n == 1) return;
  if (n != 2) refuseTranspose(s);
  swapBounds(bounds);
}

void deriveDimensionsFromInitializer(RTableSettings& s, DAG initializer, std::int32_t* bounds) {
  if (!initializer) {
    s.dimensions = 0;
    return;
  }
  switch (tagOf(initializer)) {
    case LIST: return boundsOfList(s, initializer, bounds);
    case RTABLE: return boundsOfRTable(s, initializer, bounds);
    case TABLE: return boundsOfTable(s, initializer, bounds);
    case PROC: case SET: KernelException("dimensions must be specified with this type of initializer");
    default: KernelException("cannot derive dimensions from initializer %1", initializer);
  }
}

// ---- checks

bool allLowerBoundsAreOne(const RTableSettings& s, const std::int32_t* bounds) {
  for (int k = 0; k < s.dimensions; ++k)
    if (bounds[2 * k] != 1) return false;
  return true;
}

void checkLinalgStatus(const RTableSettings& s, const std::int32_t* bounds) {
  if (s.subtype == subtypeMatrix && s.dimensions != 2) KernelException("Matrices must have exactly two dimensions");
  if (s.subtype > subtypeMatrix && s.dimensions != 1) KernelException("Vectors must have exactly one dimension");
  const bool fromOne = allLowerBoundsAreOne(s, bounds);
  if (s.subtype != subtypeArray && !fromOne)
    KernelException("lower bounds of this %1 must be 1", subtypeWord(s.subtype));
  if (s.subtype != subtypeArray || s.storage != storageSparse || s.datatype == dataDag) return;
  if (!fromOne) KernelException("sparse numeric Arrays must have lower bound 1 in all dimensions");
  if (s.dimensions == 0) KernelException("sparse numeric Arrays must have one or more dimensions");
}

void checkTranspose(RTableSettings& s) {
  if (!s.transpose || s.dimensions == 2) return;
  if (s.subtype == subtypeArray) KernelException("%1 option is only valid for a 2D Array", naminstall("transpose"));
  s.subtype = s.subtype == subtypeColumnVector ? subtypeRowVector : subtypeColumnVector;
  s.transpose = false;
}

void checkStorage(RTableSettings& s, const std::int32_t* bounds) {
  const bool anywhere = s.storage == storageRectangular || s.storage == storageEmpty || s.storage == storageSparse;
  if (!anywhere && !allLowerBoundsAreOne(s, bounds))
    KernelException("all lower bounds of this %1 must be 1", subtypeWord(s.subtype));
  if (s.storage != storageBand) return;
  if (s.dimensions != 2) KernelException("band[b1,b2] storage is only valid for a 2D %1", subtypeWord(s.subtype));
  s.b1 = std::max(std::min(s.b1, bounds[1] - bounds[0]), 0);
  s.b2 = std::max(std::min(s.b2, bounds[3] - bounds[2]), 0);
}

Word flagsFor(const RTableSettings& s) {
  auto part = [](RTableFlag flag, Word value) { return value << flag.shift; };
  return part(rtableDimensions, static_cast<Word>(s.dimensions)) | part(rtableForeign, s.foreign) |
         part(rtableOrder, s.order) | part(rtableStorage, s.storage) | part(rtableSubtype, s.subtype) |
         part(rtableDatatype, s.datatype);
}

DAG newRTable(const RTableSettings& s, const std::int32_t* bounds) {
  const Word n = static_cast<Word>(s.dimensions);
  const Word count = ComputeNumElements(bounds, n, s.storage, s.b1, s.b2);
  DAG r = newl2(2 * n + 7 + tailLength(s.storage), RTABLE);
  r[rtableElementType] = s.elementType;
  r[rtableAttributes] = s.attributes;
  rawField(r, rtableFlags) = flagsFor(s);
  rawField(r, rtableCount) = count;
  std::copy(bounds, bounds + 2 * n, boundsOf(r));
  if (s.storage == storageBand) rawField(r, lengthOf(r) - 2) = static_cast<Word>(s.b1);
  if (tailLength(s.storage) != 0) rawField(r, lengthOf(r) - 1) = static_cast<Word>(std::max(s.b2, 0));
  InsertIndexingFunctionChain(r, s.functions);
  return simpl(r);
}

void giveBackData(const char*) { DeleteRTableData(DAG(static_cast<Word>(errorProcParam))); }

}  // namespace

DAG RTableCreate(RTableSettings& s, DAG initializer, std::int32_t* bounds, DataMode mode) {
  if (s.dimensions < 0) deriveDimensionsFromInitializer(s, initializer, bounds);
  checkLinalgStatus(s, bounds);
  CheckIndexingFunctions(s, bounds);
  checkTranspose(s);
  checkStorage(s, bounds);
  DAG r = newRTable(s, bounds);
  if (mode == DataMode::none) return r;
  AllocateRTableData(r);
  if (mode == DataMode::initialised) {
    PushParamErrorProc(giveBackData, r);
    initializeRTableData(r, s, initializer);
    PopErrorProc();
  }
  if (s.readOnly) updateFlag(r, rtableReadOnly, 1);
  return r;
}

// ---- the arguments of `rtable` and `Array`

namespace {

DAG valueBehind(DAG x) { return isName(x) ? valuenv(x, false) : x; }

bool isIndexingFunction(DAG x) {
  if (isTag(x, TABLEREF)) return isName(x[1]);
  return isName(x) && valueBehind(x) == x;
}

void addRange(RTableSettings& s, DAG range, std::int32_t* bounds) {
  if (!isWordRange(range)) KernelException("integer dimensions required");
  const int k = std::max(s.dimensions, 0);
  if (k == static_cast<int>(maxDimensions)) tooManyDimensions();
  readRange(range, bounds + 2 * k);
  if (extentOf(bounds, static_cast<Word>(k)) < 0) KernelException("must have a non-negative size in each dimension");
  s.dimensions = k + 1;
}

constexpr TagSet initializerTags = {RTABLE, FUNCTION, LIST, PROC, SET, TABLE};

// Whether the argument has been taken, as initializer or fill.
bool takeInitializer(RTableSettings& s, DAG argument, bool isArray, DAG& initializer) {
  if (isNumeric(argument)) {
    s.fill = argument;
    return true;
  }
  DAG value = valueBehind(argument);
  if (!value || isImmediate(value) || !isAmong(value, initializerTags)) return false;
  initializer = value;
  if (isTag(value, RTABLE)) {
    InheritRTableSettings(s, value);
    if (isArray) s.subtype = subtypeArray;
  }
  return true;
}

DAG RTable(DAG arguments, bool isArray) {
  RTableSettings s;
  std::int32_t bounds[2 * maxDimensions];
  const Word n = lengthOf(arguments);
  Word i = 1;
  while (i < n && isIndexingFunction(arguments[i])) ++i;
  if (i > 1) {
    s.functions = simpl(copysub(arguments, 0, i - 1));
    s.storage = StorageImpliedByIndFun(s.functions, &s.b1, &s.b2);
  }
  for (; i < n && isTag(arguments[i], RANGE); ++i) addRange(s, arguments[i], bounds);
  DAG initializer;
  if (i < n && takeInitializer(s, arguments[i], isArray, initializer)) ++i;
  while (i < n && ParseRTableOption(arguments[i], s)) {
    if (isArray && s.subtype != subtypeArray) break;
    ++i;
  }
  if (s.subtype > subtypeMatrix) s.transpose = false;
  if (i < n) KernelException("argument `%1` is incorrect or out of order", arguments[i]);
  return RTableCreate(s, initializer, bounds, DataMode::initialised);
}

}  // namespace

DAG builtin::rtable(const BuiltinCall& call) { return RTable(call.arguments, false); }
DAG builtin::Array(const BuiltinCall& call) { return RTable(call.arguments, true); }

}  // namespace korel
