#include "rtable/shapes.h"

#include <algorithm>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "frame/errors.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/ieee_functions.h"
#include "rtable/element_formats.h"
#include "rtable/indexing_functions.h"
#include "rtable/offsets.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- the base behind a shape

// How a base keeps its cells.
enum class Base {
  next,    // the next member of the ring
  full,    // rectangular: every position has a cell
  table,   // sparse
  single,  // scalar: one cell for all
  none,    // empty
  diagonal,
  band,
  triangle,
};

Base baseOf(DAG r) {
  if (functionCount(r) > 1) return Base::next;
  switch (storageOf(r)) {
    case storageSparse: return Base::table;
    case storageEmpty: return Base::none;
    case storageDiagonal: return Base::diagonal;
    case storageBand: return Base::band;
    case storageRectangular: return Base::full;
    case storageScalar: return Base::single;
    default: return Base::triangle;
  }
}
bool takesEveryPosition(Base base) { return base <= Base::single; }

Access behind(const Access& a) { return {nextInRing(a.r), a.index, a.sequence}; }

DAG selectBase(Access& a) { return baseOf(a.r) == Base::next ? selectElement(behind(a)) : selectPlain(a); }
void assignBase(Access& a, DAG value) {
  if (baseOf(a.r) == Base::next) assignElement(behind(a), value);
  else assignPlain(a, value);
}

std::int64_t cellOf(const Access& a) {
  return baseOf(a.r) == Base::none || rawField(a.r, rtableData) == 0 ? notStored : offsetOf(a.r, a.index);
}
std::int64_t mirroredCellOf(const Access& a) {
  return baseOf(a.r) == Base::triangle || baseOf(a.r) == Base::band ? mirroredOffset(a.r, a.index) : notStored;
}
bool hasCell(const Access& a) { return takesEveryPosition(baseOf(a.r)) || cellOf(a) >= 0; }

// Where there is no cell the write ends.
void storeIfCell(Access& a, DAG value) {
  if (hasCell(a)) assignBase(a, value);
}
// A zero off the shape: the one cell of scalar storage belongs to the shape.
void storeZeroOff(Access& a, DAG zero) {
  if (baseOf(a.r) != Base::single) storeIfCell(a, zero);
}

[[noreturn]] void refuseWithoutCell(Access& a) {
  switch (baseOf(a.r)) {
    case Base::none: KernelException("attempt to assign non-zero to index (%0), with empty storage", sequenceOf(a));
    case Base::diagonal: KernelException("attempt to assign non-zero to off-diagonal index (%0)", sequenceOf(a));
    default:
      KernelException(
          "Matrix location (%0) has no associated storage and therefore cannot be set to anything other "
          "than zero",
          sequenceOf(a));
  }
}

// What the storage holds; of triangles the mirrored element as well.
DAG selectTriangular(Access& a) {
  if (takesEveryPosition(baseOf(a.r))) return selectBase(a);
  if (std::int64_t cell = cellOf(a); cell >= 0) return RTableDataOffsetToDag(a.r, cell);
  if (baseOf(a.r) == Base::triangle)
    if (std::int64_t mirrored = mirroredCellOf(a); mirrored >= 0) return RTableDataOffsetToDag(a.r, mirrored);
  return RTableZero(a.r);
}
void assignTriangular(Access& a, DAG value) {
  if (hasCell(a)) return assignBase(a, value);
  if (!isZeroValue(value)) refuseWithoutCell(a);
}

bool onDiagonal(const Access& a) {
  for (Word k = 1, n = dimensionsOf(a.r); k < n; ++k)
    if (a.index[k] != a.index[0]) return false;
  return true;
}
bool isBelow(const Access& a) { return a.index[0] > a.index[1]; }
bool isAbove(const Access& a) { return a.index[0] < a.index[1]; }

DAG functionOf(const Access& a) { return a.r[rtableFunctions][1]; }
DAG argumentOf(const Access& a, Word k) { return IndexingFunctionArg(functionOf(a))[k]; }

// ---- symmetric shapes: one element stands for its mirror, transformed

using Transform = DAG (*)(DAG x);
DAG identityOf(DAG x) { return x; }
DAG negated(DAG x) { return isNumber(x) ? simpl(negate(x)) : simpl(new3(SUM, x, consm1)); }
DAG conjugated(DAG x) { return simpl(conjugate(x)); }
DAG negatedConjugate(DAG x) { return negated(conjugated(x)); }

bool hasMirror(const Access& a) { return isWithinBounds(a.r, 0, a.index[1]) && isWithinBounds(a.r, 1, a.index[0]); }

struct Mirrored {
  std::int32_t index[2];
  Access access;

  explicit Mirrored(const Access& a) : index{a.index[1], a.index[0]}, access{a.r, index, DAG()} {}
};

DAG transformedOf(Transform transform, DAG x) { return x ? transform(x) : x; }

template <Transform transform>
DAG selectSymmetric(Access& a) {
  switch (baseOf(a.r)) {
    case Base::table:
      if (!isInMissingHalf(a)) return selectBase(a);
      if (Mirrored mirrored(a); hasMirror(a)) return transformedOf(transform, selectPlain(mirrored.access));
      return RTableZero(a.r);
    case Base::single: return isAbove(a) ? transformedOf(transform, selectBase(a)) : selectBase(a);
    default: break;
  }
  if (hasCell(a)) return selectBase(a);
  if (std::int64_t mirrored = mirroredCellOf(a); mirrored >= 0)
    return transformedOf(transform, RTableDataOffsetToDag(a.r, mirrored));
  return RTableZero(a.r);
}

// Both halves have cells: when the second store fails, the first is put back.
struct FirstStore {
  Access* access;
  DAG before;
};
void putBack(const char*) {
  auto* first = reinterpret_cast<FirstStore*>(errorProcParam);
  if (first->before) assignBase(*first->access, first->before);
}
void assignBothHalves(Access& a, DAG value, DAG transformed) {
  Mirrored mirrored(a);
  if (!hasMirror(a)) return assignBase(a, value);
  FirstStore first{&mirrored.access, selectBase(mirrored.access)};
  updategen(first.before);
  PushParamErrorProc(putBack, &first);
  assignBase(mirrored.access, transformed);
  assignBase(a, value);
  PopErrorProc();
}

template <Transform transform>
void assignOffDiagonal(Access& a, DAG value) {
  switch (baseOf(a.r)) {
    case Base::single: return assignBase(a, isAbove(a) ? transform(value) : value);
    case Base::none:
      if (!isZeroValue(value)) KernelException("this shape only permits zero assignments");
      return;
    case Base::table:
      if (tailOf(a.r, 1) == wholeSparse) return assignBothHalves(a, value, transform(value));
      if (!isInMissingHalf(a)) return assignBase(a, value);
      if (Mirrored mirrored(a); hasMirror(a)) return assignPlain(mirrored.access, transform(value));
      return assignBase(a, value);
    case Base::next: case Base::full: return assignBothHalves(a, value, transform(value));
    default: break;
  }
  const std::int64_t cell = cellOf(a), mirrored = mirroredCellOf(a);
  if (cell < 0 && mirrored < 0) return assignTriangular(a, value);
  const RawElement element = DagToRTableData(a.r, value);
  if (mirrored >= 0) RTableSetDagToDataOffset(a.r, mirrored, transform(value));
  if (cell >= 0) storeRaw(a.r, cell, element);
}

template <Transform transform>
void assignSymmetric(Access& a, DAG value) {
  if (!onDiagonal(a)) return assignOffDiagonal<transform>(a, value);
  if (!hasCell(a) && !isZeroValue(value)) {
    if (baseOf(a.r) == Base::none) KernelException("this shape only permits zero assignments");
    KernelException("this shape only permits zero assignments on the diagonal");
  }
  storeIfCell(a, value);
}

DAG selectAntisymmetric(Access& a) { return onDiagonal(a) ? RTableZero(a.r) : selectSymmetric<negated>(a); }
void assignAntisymmetric(Access& a, DAG value) {
  if (onDiagonal(a) && !isZeroValue(value)) KernelException("attempt to assign non-zero to antisymmetric diagonal");
  assignSymmetric<negated>(a, value);
}
// The number that `x` is known to be, or 0: a symbol may be anything.
DAG knownNumber(DAG x) {
  if (!isNumber(x)) x = simpl(evalf(x));
  return isNumber(x) ? x : DAG();
}
void assignHermitian(Access& a, DAG value) {
  DAG number = onDiagonal(a) ? knownNumber(value) : cons0;
  if (!number || !cxIsReal(number)) KernelException("diagonal of a Hermitian Matrix must be real");
  assignSymmetric<conjugated>(a, value);
}
void assignAntihermitian(Access& a, DAG value) {
  DAG number = onDiagonal(a) ? knownNumber(value) : cons0;
  if (!number || !isZeroValue(simpl(cxRealPart(number))))
    KernelException("diagonal of an anti-Hermitian Matrix must be zero or purely imaginary");
  assignSymmetric<negatedConjugate>(a, value);
}

// ---- constant shapes: each element is known

DAG selectZero(Access& a) { return RTableZero(a.r); }
void assignZero(Access& a, DAG value) {
  if (!isZeroValue(value)) KernelException("attempt to assign non-zero to zero Matrix entry");
  storeIfCell(a, value);
}

DAG constantOf(const Access& a) { return singleMember(IndexingFunctionArg(functionOf(a))); }
DAG selectConstant(Access& a) { return constantOf(a); }
void assignConstant(Access& a, DAG value) {
  if (value != constantOf(a)) KernelException("attempt to assign new value to constant rtable");
  storeIfCell(a, value);
}

DAG selectIdentity(Access& a) { return onDiagonal(a) ? RTableOne(a.r) : RTableZero(a.r); }
void assignIdentity(Access& a, DAG value) {
  if (!onDiagonal(a)) {
    if (!isZeroValue(value)) KernelException("invalid assignment of non-zero to identity off-diagonal");
    return storeZeroOff(a, value);
  }
  if (!Equal1(value)) KernelException("invalid assignment to identity diagonal");
  storeIfCell(a, value);
}

bool isSameValue(DAG a, DAG b) { return a == b || evalbool(simpl(new3(EQUATION, a, b))) == ini("true"); }

DAG selectScalar(Access& a) { return onDiagonal(a) ? argumentOf(a, 1) : RTableZero(a.r); }
void assignScalar(Access& a, DAG value) {
  if (!onDiagonal(a)) {
    if (!isZeroValue(value)) KernelException("scalar matrices must have zeros off the diagonal");
    return storeZeroOff(a, value);
  }
  if (!isSameValue(value, argumentOf(a, 1))) KernelException("scalar matrices cannot be changed");
  storeIfCell(a, value);
}

bool isAtArgument(const Access& a) { return LongLongValue(argumentOf(a, 1)) == a.index[0]; }
DAG selectScalarVector(Access& a) { return isAtArgument(a) ? argumentOf(a, 2) : RTableZero(a.r); }
void assignScalarVector(Access& a, DAG value) {
  if (!isAtArgument(a)) {
    if (!isZeroValue(value)) KernelException("scalar vector can only have one non-zero entry");
    return storeZeroOff(a, value);
  }
  if (!isSameValue(value, argumentOf(a, 2))) KernelException("scalar vectors cannot be changed");
  storeIfCell(a, value);
}

DAG selectUnit(Access& a) { return isAtArgument(a) ? RTableOne(a.r) : RTableZero(a.r); }
void assignUnit(Access& a, DAG value) {
  if (!isAtArgument(a)) {
    if (!isZeroValue(value)) KernelException("unit vector can only have one non-zero entry");
    return storeZeroOff(a, value);
  }
  if (!Equal1(value)) KernelException("attempt to turn a unit vector into a scalar or zero vector");
  storeIfCell(a, value);
}

// ---- diagonal and band

DAG selectDiagonal(Access& a) { return onDiagonal(a) ? selectTriangular(a) : RTableZero(a.r); }
void assignDiagonal(Access& a, DAG value) {
  const bool zero = isZeroValue(value), inside = onDiagonal(a);
  const bool lacksDiagonal = !takesEveryPosition(baseOf(a.r)) && (inside || baseOf(a.r) == Base::none) && !hasCell(a);
  if (!zero && lacksDiagonal) KernelException("this storage only allows zero on %1 diagonal", subtypeWord(a.r));
  if (!zero && !inside)
    KernelException("attempt to assign non-zero to off-diagonal entry of a diagonal %1", subtypeWord(a.r));
  if (inside) storeIfCell(a, value);
  else storeZeroOff(a, value);
}

DAG selectDiagonalOfMany(Access& a) { return onDiagonal(a) ? selectBase(a) : RTableZero(a.r); }
void assignDiagonalOfMany(Access& a, DAG value) {
  if (onDiagonal(a)) return assignBase(a, value);
  if (!isZeroValue(value)) KernelException("invalid assignment of non-zero off-diagonal");
  storeZeroOff(a, value);
}

bool isInBand(const Access& a) {
  const std::int64_t i = std::int64_t{a.index[0]} - lowerBound(a.r, 0);
  const std::int64_t j = std::int64_t{a.index[1]} - lowerBound(a.r, 1);
  const std::int64_t k = i - j;
  return k <= LongLongValue(argumentOf(a, 1)) && -k <= LongLongValue(argumentOf(a, 2));
}
DAG selectBand(Access& a) { return isInBand(a) && hasCell(a) ? selectBase(a) : RTableZero(a.r); }
void assignBand(Access& a, DAG value) {
  if (!isZeroValue(value)) {
    if (!isInBand(a)) KernelException("attempt to assign a value outside Matrix bands");
    if (baseOf(a.r) == Base::none) KernelException("empty-band matrices can only contain zeros");
    if (!hasCell(a))
      KernelException(
          "Matrix location (%0) has no associated storage and therefore cannot be set to anything other "
          "than zero",
          sequenceOf(a));
  }
  if (isInBand(a)) storeIfCell(a, value);
  else storeZeroOff(a, value);
}

// ---- halves: all beyond a diagonal is zero

template <bool upper, int beside>
bool isOutside(const Access& a) {
  const std::int64_t i = a.index[0], j = a.index[1];
  return upper ? j + beside < i : i + beside < j;
}

constexpr const char* lowerOfUpper = "attempt to assign to lower triangle of upper triangular rtable";
constexpr const char* upperOfLower = "attempt to assign to upper triangle of lower triangular rtable";
constexpr const char* lowerOfHessenberg = "attempt to assign to lower triangle of upper Hessenberg rtable";
constexpr const char* upperOfHessenberg = "attempt to assign to upper triangle of lower Hessenberg rtable";
template <bool upper, int beside>
const char* outsideMessage() {
  if (beside == 0) return upper ? lowerOfUpper : upperOfLower;
  return upper ? lowerOfHessenberg : upperOfHessenberg;
}

template <bool upper, int beside>
DAG selectHalf(Access& a) {
  return isOutside<upper, beside>(a) ? RTableZero(a.r) : selectTriangular(a);
}
template <bool upper, int beside>
void assignHalf(Access& a, DAG value) {
  if (!isOutside<upper, beside>(a)) return assignTriangular(a, value);
  if (!isZeroValue(value)) KernelException(outsideMessage<upper, beside>());
  storeZeroOff(a, value);
}

template <bool upper>
DAG selectUnitHalf(Access& a) {
  return onDiagonal(a) ? RTableOne(a.r) : selectHalf<upper, 0>(a);
}
template <bool upper>
void assignUnitHalf(Access& a, DAG value) {
  if (!onDiagonal(a)) return assignHalf<upper, 0>(a, value);
  if (!Equal1(value)) KernelException("attempt to assign non-one to unit diagonal");
  storeIfCell(a, value);
}

// ---- functions of the user: index/name(indices, rtable behind the function, [value])

DAG callUser(Access& a, DAG value) {
  DAG arguments = newl2(value ? 4 : 3, EXPSEQ);
  arguments[1] = simpl(new2(LIST, sequenceOf(a)));
  arguments[2] = nextInRing(a.r);
  if (value) arguments[3] = simpl(new2(LIST, simpl(new2(EXPSEQ, new2(UNEVAL, value)))));
  updategen(a.r);
  DAG function = functionOf(a);
  return simpl(EvalSystemFunction("index/", function, function, simpl(arguments)));
}
DAG selectUser(Access& a) { return callUser(a, DAG()); }
void assignUser(Access& a, DAG value) { callUser(a, value); }

// ---- the table

DAG selectNothing(Access&) { return DAG(); }
void assignNothing(Access&, DAG) {}

struct ShapeRule {
  const char* part;
  bool hasRank;
  DAG (*select)(Access& a);
  void (*assign)(Access& a, DAG value);
};
constexpr ShapeRule noRule = {"Error", false, selectNothing, assignNothing};
constexpr ShapeRule userRule = {"NonKernel", false, selectUser, assignUser};
constexpr ShapeRule zeroRule = {"Zero", false, selectZero, assignZero};
constexpr ShapeRule constantRule = {"Constant", false, selectConstant, assignConstant};

constexpr ShapeRule planeRules[indexingFunctionCount] = {
    // part                 rank   select                             assign
    zeroRule,
    {"Band",                true,  selectBand,                        assignBand},
    constantRule,
    {"Diagonal",            true,  selectDiagonal,                    assignDiagonal},
    {"Scalar",              true,  selectScalar,                      assignScalar},
    {"AntiHermitian",       true,  selectSymmetric<negatedConjugate>, assignAntihermitian},
    {"Hermitian",           true,  selectSymmetric<conjugated>,       assignHermitian},
    {"UpperHessenberg",     true,  selectHalf<true, 1>,               assignHalf<true, 1>},
    {"LowerHessenberg",     true,  selectHalf<false, 1>,              assignHalf<false, 1>},
    {"Identity",            true,  selectIdentity,                    assignIdentity},
    {"AntiSymmetric",       true,  selectAntisymmetric,               assignAntisymmetric},
    {"Symmetric",           true,  selectSymmetric<identityOf>,       assignSymmetric<identityOf>},
    {"LowerTriangular",     true,  selectHalf<false, 0>,              assignHalf<false, 0>},
    {"UpperTriangular",     true,  selectHalf<true, 0>,               assignHalf<true, 0>},
    {"UnitUpperTriangular", true,  selectUnitHalf<true>,              assignUnitHalf<true>},
    {"UnitLowerTriangular", true,  selectUnitHalf<false>,             assignUnitHalf<false>},
    noRule,
};
struct RankRule {
  IndexingFunction function;
  ShapeRule rule;
};
constexpr RankRule lineRules[] = {
    // function        part                     select              assign
    {zeroShape,       zeroRule},
    {constantShape,   constantRule},
    {diagonalShape,   {"ONEDDiagonal",   false, selectBase,         assignBase}},
    {scalarShape,     {"ONEDScalar",     false, selectScalarVector, assignScalarVector}},
    {unitVectorShape, {"Unit",           false, selectUnit,         assignUnit}},
};
constexpr RankRule pointRules[] = {
    {zeroShape, zeroRule},
    {constantShape, constantRule},
    {diagonalShape, {"ZERODDiagonal", false, selectBase, assignBase}},
};
constexpr RankRule spaceRules[] = {
    {zeroShape, zeroRule},
    {constantShape, constantRule},
    {diagonalShape, {"NDDiagonal", false, selectDiagonalOfMany, assignDiagonalOfMany}},
    {identityShape, {"NDIdentity", false, selectIdentity, assignIdentity}},
};

template <std::size_t n>
const ShapeRule& ruleIn(const RankRule (&rules)[n], IndexingFunction function) {
  auto row = std::find_if(rules, rules + n, [&](const RankRule& r) { return r.function == function; });
  return row == rules + n ? noRule : row->rule;
}

const ShapeRule& ruleOf(DAG r) {
  const IndexingFunction function = WhatIndFun(r[rtableFunctions][1]);
  if (function == userFunction) return userRule;
  switch (dimensionsOf(r)) {
    case 0: return ruleIn(pointRules, function);
    case 1: return ruleIn(lineRules, function);
    case 2: return planeRules[function];
    default: return ruleIn(spaceRules, function);
  }
}

}  // namespace

bool isOpenPosition(const Access& a) {
  const IndexingFunction function = WhatIndFun(functionOf(a));
  if (function == diagonalShape) return onDiagonal(a);
  if (dimensionsOf(a.r) != 2) return true;
  switch (function) {
    case bandShape: return isInBand(a);
    case upperHessenbergShape: return !isOutside<true, 1>(a);
    case lowerHessenbergShape: return !isOutside<false, 1>(a);
    case upperTriangularShape: return !isOutside<true, 0>(a);
    case lowerTriangularShape: return !isOutside<false, 0>(a);
    case unitUpperTriangularShape: return isAbove(a);
    case unitLowerTriangularShape: return isBelow(a);
    default: return true;
  }
}

DAG selectShaped(Access& a) { return ruleOf(a.r).select(a); }
void assignShaped(Access& a, DAG value) { ruleOf(a.r).assign(a, value); }
ShapeName shapeName(DAG r) {
  const ShapeRule& rule = ruleOf(r);
  return {rule.part, rule.hasRank};
}

}  // namespace korel
