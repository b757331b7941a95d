// Transposition: the elements change places, and so do upper and lower in whatever tells a shape or a storage.

#include <algorithm>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "rtable/create.h"
#include "rtable/indexing_functions.h"
#include "rtable/products.h"
#include "rtable/rtable_object.h"
#include "store/append.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- rtables

constexpr Word transposedStorage[storageKindCount] = {
    storageSparse,      storageEmpty,       storageDiagonal,        storageBand,
    storageRectangular, storageLower,       storageStrictLower,     storageLowerHessenberg,
    storageUpper,       storageStrictUpper, storageUpperHessenberg, storageScalar,
};

// `name[a, b]` with its first index, or for a band both, exchanged.
DAG transposedFunction(DAG f) {
  if (!isTag(f, TABLEREF) || WhatIndFun(f) == userFunction) return f;
  DAG index = CopyAlg(IndexingFunctionArg(f));
  if (WhatIndFun(f) == bandShape) std::swap(index[1], index[2]);
  else if (isName(index[1]) && hasText(index[1], "upper")) index[1] = naminstall("lower");
  else if (isName(index[1]) && hasText(index[1], "lower")) index[1] = naminstall("upper");
  return simpl(new3(TABLEREF, f[1], simpl(index)));
}

DAG transposedFunctions(DAG functions) {
  DAG result = CopyAlg(functions);
  for (Word i = 1; i < lengthOf(result); ++i) result[i] = transposedFunction(result[i]);
  return simpl(result);
}

DAG transposedRTable(DAG r) {
  if (dimensionsOf(r) != 2) KernelException("transpose can only handle 2D %1", subtypeWord(r));
  RTableSettings settings = CopyRTableSettings(r, true);
  settings.foreign = false;
  settings.storage = transposedStorage[settings.storage];
  settings.functions = transposedFunctions(settings.functions);
  if (settings.storage == storageBand) std::swap(settings.b1, settings.b2);
  if (settings.storage == storageSparse && settings.b2 != wholeSparse)
    settings.b2 = settings.b2 == upperSparse ? lowerSparse : upperSparse;
  settings.transpose = true;
  std::int32_t bounds[] = {lowerBound(r, 1), upperBound(r, 1), lowerBound(r, 0), upperBound(r, 0)};
  return RTableCreate(settings, r, bounds, DataMode::initialised);
}

// ---- tables

DAG transpose_expseq(DAG key) { return simpl(new3(EXPSEQ, key[2], key[1])); }

bool isCalled(DAG function, const char* name) { return isName(function) && hasText(function, name); }

DAG transposedVector(DAG table) {
  DAG result = CopyAlg(table);
  result[tableFunction] = naminstall(isCalled(table[tableFunction], "row") ? "column" : "row");
  result[tableEntries] = copyhashtab(table[tableEntries]);
  return simpl(result);
}

DAG transposedTable(DAG table) {
  if (!isArrayTable(table)) KernelException("cannot transpose table");
  DAG bounds = asSequence(table[tableBounds]);
  if (memberCount(bounds) == 1) return transposedVector(table);
  if (memberCount(bounds) != 2) KernelException("cannot transpose table");
  DAG entries = newhashtab(lengthOf(table[tableEntries]) - 1);
  hashforeach(
      table[tableEntries],
      [](void* arg, PairAddress pair) {
        DAG key = pairKey(pair);
        if (!isSequence(key) || memberCount(key) != 2) KernelException("cannot transpose table");
        hashunique(transpose_expseq(key).word, pairValue(pair), *static_cast<DAG*>(arg));
        return true;
      },
      &entries);
  DAG result = CopyAlg(table);
  result[tableBounds] = transpose_expseq(bounds);
  result[tableEntries] = entries;
  return simpl(result);
}

// ---- products

bool isProductCall(DAG x) { return isTag(x, FUNCTION) && (isCalled(x[1], "&*") || isCalled(x[1], ".")); }

DAG transposedCall(DAG call) {
  const Word n = memberCount(call[2]);
  DAG arguments = newl2(n + 1, EXPSEQ);
  for (Word i = 1; i <= n; ++i) arguments[i] = transpose(call[2][n + 1 - i]);
  return simpl(new3(FUNCTION, call[1], simpl(arguments)));
}
DAG transposedProduct(DAG product) {
  DAG result = CopyAlg(product);
  for (Word i = 1; i < lengthOf(result); i += 2)
    if (!isNumeric(result[i])) result[i] = transpose(result[i]);
  return simpl(result);
}

}  // namespace

DAG transpose(DAG x) {
  if (isName(x)) {
    DAG value = valuenv(x, false);
    if (isTag(value, TABLE) || isTag(value, RTABLE)) x = value;
  }
  if (isTag(x, RTABLE)) return transposedRTable(x);
  if (isTag(x, TABLE)) return transposedTable(x);
  if (isTag(x, PROD)) return transposedProduct(x);
  if (isProductCall(x)) return transposedCall(x);
  KernelException("invalid object to transpose");
}

DAG builtin::kernel_transpose(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return transpose(call.arguments[1]);
}

}  // namespace korel
