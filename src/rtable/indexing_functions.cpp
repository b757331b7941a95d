#include "rtable/indexing_functions.h"

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "rtable/element_formats.h"
#include "rtable/rtable_settings.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- names

// A shape that is written with an index asks for it by a function of its own, below.
struct FunctionName {
  const char* name;
  IndexingFunction function;
  IndexingFunction (*indexed)(DAG f, DAG index);
};

bool isWord(DAG x, const char* word) { return isName(x) && hasText(x, word); }

IndexingFunction triangularFunction(DAG f, DAG index) {
  const Word n = memberCount(index);
  const bool upper = n > 0 && isWord(index[1], "upper"), lower = n > 0 && isWord(index[1], "lower");
  if (n == 1 && !upper && !lower) KernelException("%1[] expects index of 'upper' or 'lower'", f[1]);
  const bool unit = n == 2 && isWord(index[2], "unit");
  if (!(upper || lower) || n > 2 || (n == 2 && !unit))
    KernelException("%1[] expects index, {upper|lower}{,unit}", isName(f) ? f : f[1]);
  if (unit) return upper ? unitUpperTriangularShape : unitLowerTriangularShape;
  return upper ? upperTriangularShape : lowerTriangularShape;
}
IndexingFunction hessenbergFunction(DAG f, DAG index) {
  const bool single = memberCount(index) == 1;
  if (single && isWord(index[1], "upper")) return upperHessenbergShape;
  if (single && isWord(index[1], "lower")) return lowerHessenbergShape;
  KernelException("%1[] expects index of 'upper' or 'lower'", isName(f) ? f : f[1]);
}
bool isWordInteger(DAG x) { return isInteger(x) && FitIntoWord(x); }
IndexingFunction bandFunction(DAG, DAG index) {
  if (memberCount(index) != 2 || !isWordInteger(index[1]) || !isWordInteger(index[2]))
    KernelException("band[i,j] expects two integer indices");
  return bandShape;
}
IndexingFunction constantFunction(DAG, DAG index) {
  if (isEmptySequence(index)) KernelException("constant[v] expects a value, 'v'");
  return constantShape;
}
IndexingFunction scalarFunction(DAG, DAG index) {
  const Word n = memberCount(index);
  if (n != 1 && !(n == 2 && isWordInteger(index[1])))
    KernelException("scalar[i,val] expected for Vectors or scalar[val] expected for Matrices");
  return scalarShape;
}
IndexingFunction unitFunction(DAG, DAG index) {
  if (memberCount(index) != 1 || !isWordInteger(index[1])) KernelException("unit[j] expects 'j' to be an integer");
  return unitVectorShape;
}

constexpr FunctionName functionNames[] = {
    // name             function             index
    {"zero",            zeroShape,           nullptr},
    {"band",            bandShape,           bandFunction},
    {"constant",        constantShape,       constantFunction},
    {"diagonal",        diagonalShape,       nullptr},
    {"scalar",          scalarShape,         scalarFunction},
    {"antihermitian",   antihermitianShape,  nullptr},
    {"skewhermitian",   antihermitianShape,  nullptr},
    {"hermitian",       hermitianShape,      nullptr},
    {"Hessenberg",      upperHessenbergShape, hessenbergFunction},
    {"identity",        identityShape,       nullptr},
    {"antisymmetric",   antisymmetricShape,  nullptr},
    {"skewsymmetric",   antisymmetricShape,  nullptr},
    {"symmetric",       symmetricShape,      nullptr},
    {"triangular",      upperTriangularShape, triangularFunction},
    {"unit",            unitVectorShape,     unitFunction},
};

}  // namespace

DAG IndexingFunctionArg(DAG f) { return isTag(f, TABLEREF) ? asSequence(f[2]) : null; }

IndexingFunction WhatIndFun(DAG f) {
  DAG name = isName(f) ? f : f[1];
  if (!isName(name)) return userFunction;
  const char first = textOf(name)[0];
  for (const FunctionName& row : functionNames) {
    if (row.name[0] != first || !hasText(name, row.name)) continue;
    if (row.indexed != nullptr) return row.indexed(f, IndexingFunctionArg(f));
    if (!isName(f)) KernelException("%1 is a not an indexable structure type", name);
    return row.function;
  }
  return userFunction;
}

bool HasNonKernelIndFun(DAG r) {
  for (Word i = 1; i <= functionCount(r); ++i)
    if (WhatIndFun(r[rtableFunctions][i]) == userFunction) return true;
  return false;
}

// ---- what a function asks of the rtable

namespace {

struct FunctionDemand {
  Word storage;        // that suits it
  bool twoDimensions;  // the only ones it is for
};
constexpr FunctionDemand demands[indexingFunctionCount] = {
    // storage                two dimensions
    {storageEmpty,            false},  // zero
    {storageBand,             true},   // band
    {storageEmpty,            false},  // constant
    {storageDiagonal,         false},  // diagonal
    {storageEmpty,            false},  // scalar
    {storageUpper,            true},   // antihermitian
    {storageUpper,            true},   // hermitian
    {storageUpperHessenberg,  true},   // Hessenberg[upper]
    {storageLowerHessenberg,  true},   // Hessenberg[lower]
    {storageEmpty,            false},  // identity
    {storageStrictUpper,      true},   // antisymmetric
    {storageUpper,            true},   // symmetric
    {storageLower,            true},   // triangular[lower]
    {storageUpper,            true},   // triangular[upper]
    {storageStrictUpper,      true},   // triangular[upper,unit]
    {storageStrictLower,      true},   // triangular[lower,unit]
    {storageEmpty,            false},  // unit
};

}  // namespace

Word StorageImpliedByIndFun(DAG functions, std::int32_t* b1, std::int32_t* b2) {
  DAG last = functions[memberCount(functions)];
  const IndexingFunction function = WhatIndFun(last);
  if (function == userFunction) return storageRectangular;
  if (function == bandShape) {
    *b1 = static_cast<std::int32_t>(LongLongValue(last[2][1]));
    *b2 = static_cast<std::int32_t>(LongLongValue(last[2][2]));
  }
  return demands[function].storage;
}

namespace {

// ---- checks, at creation

// Function `f` with its argument `k` as the elements have it.
DAG convertIndFnArg(DAG f, Word k, const RTableSettings& settings) {
  DAG arguments = IndexingFunctionArg(f), value = arguments[k], converted = value;
  RawElement element;
  switch (settings.datatype) {
    case dataDag:
      if (settings.elementType == ini("sfloat")) converted = simpl(evalf(value));
      break;
    case dataFloat64: case dataComplexFloat64:
      if (convertElement(settings.datatype, settings.elementType, value, element))
        converted = elementFormats[settings.datatype].read(element.bytes);
      break;
    default: break;
  }
  if (converted == value) return f;
  DAG changed = CopyAlg(arguments);
  changed[k] = converted;
  return simpl(new3(TABLEREF, f[1], simpl(changed)));
}

void checkType(DAG value, const RTableSettings& settings) {
  const bool takesAll = settings.datatype == dataDag && settings.elementType == ini("anything");
  if (!takesAll && !RTableType(settings.datatype, settings.elementType, value))
    KernelException("invalid data-type for this kind of %1", subtypeWord(settings.subtype));
}
DAG withCheckedValue(DAG f, Word k, const RTableSettings& settings) {
  checkType(IndexingFunctionArg(f)[k], settings);
  return convertIndFnArg(f, k, settings);
}

bool isIndexWithin(DAG index, const std::int32_t* bounds) {
  const std::int64_t i = LongLongValue(index);
  return i >= bounds[0] && i <= bounds[1];
}

DAG checkedConstant(DAG f, const RTableSettings& settings) {
  DAG arguments = IndexingFunctionArg(f);
  if (memberCount(arguments) > 1) {
    checkType(arguments, settings);
    return f;
  }
  return withCheckedValue(f, 1, settings);
}

DAG checkedScalar(DAG f, const RTableSettings& settings, const std::int32_t* bounds) {
  DAG word = subtypeWord(settings.subtype), arguments = IndexingFunctionArg(f);
  if (settings.dimensions != 1 && settings.dimensions != 2)
    KernelException("scalar indexing is only valid for a 1D or 2D %1", word);
  if (settings.dimensions == 2) {
    if (memberCount(arguments) != 1) KernelException("expected scalar[val] for Matrices");
    return withCheckedValue(f, 1, settings);
  }
  if (memberCount(arguments) != 2) KernelException("expected scalar[i,val] for Vectors");
  if (!isIndexWithin(arguments[1], bounds)) KernelException("scalar index outside of %1 bounds", word);
  return withCheckedValue(f, 2, settings);
}

// The function as the rtable keeps it.
DAG checkedFunction(DAG f, const RTableSettings& settings, const std::int32_t* bounds) {
  const IndexingFunction function = WhatIndFun(f);
  if (function == userFunction) return f;
  DAG word = subtypeWord(settings.subtype);
  if (demands[function].twoDimensions && settings.dimensions != 2)
    KernelException("%1 indexing is only valid for a 2D %2", f, word);
  switch (function) {
    case constantShape: return checkedConstant(f, settings);
    case scalarShape: return checkedScalar(f, settings, bounds);
    case antihermitianShape: return naminstall("skewhermitian");
    case antisymmetricShape: return naminstall("skewsymmetric");
    case identityShape:
      if (settings.dimensions < 2) KernelException("identity is undefined for less than 2 dimensions");
      return f;
    case unitVectorShape:
      if (settings.dimensions != 1) _userror2("unit Vector indexing is only valid for a 1D %s", textOf(word));
      if (!isIndexWithin(f[2][1], bounds)) KernelException("unit index outside of %1 bounds", word);
      return f;
    default: return f;
  }
}

}  // namespace

void CheckIndexingFunctions(RTableSettings& settings, const std::int32_t* bounds) {
  DAG functions = CopyAlg(settings.functions);
  for (Word i = 1; i < lengthOf(functions); ++i) functions[i] = checkedFunction(functions[i], settings, bounds);
  settings.functions = simpl(functions);
}

}  // namespace korel
