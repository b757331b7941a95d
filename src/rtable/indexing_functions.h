#pragma once
// Indexing functions: the shapes that can stand before the data of an rtable, and those of the user.
//
// A function is a name or an indexed name. The kernel knows the shapes below; any other name is a function of the
// user, with its procedure `index/name`.

#include <cstdint>

#include "rtable/axes.h"
#include "store/dag.h"

namespace korel {

enum IndexingFunction : int {
  userFunction = -1,
  zeroShape,
  bandShape,
  constantShape,
  diagonalShape,
  scalarShape,
  antihermitianShape,
  hermitianShape,
  upperHessenbergShape,
  lowerHessenbergShape,
  identityShape,
  antisymmetricShape,
  symmetricShape,
  lowerTriangularShape,
  upperTriangularShape,
  unitUpperTriangularShape,
  unitLowerTriangularShape,
  unitVectorShape,
};
constexpr int indexingFunctionCount = 17;

/// Which function `f`, a NAME or TABLEREF, is. Errors: those of a shape that is written with another index, as
/// "%1[] expects index of 'upper' or 'lower'".
IndexingFunction WhatIndFun(DAG f);
/// The index sequence of a TABLEREF; for a NAME the empty one.
DAG IndexingFunctionArg(DAG f);
bool HasNonKernelIndFun(DAG r);

/// The storage that suits the last function of the EXPSEQ `functions`; `b1` and `b2` are set for a band.
Word StorageImpliedByIndFun(DAG functions, std::int32_t* b1, std::int32_t* b2);

struct RTableSettings;
/// Checks the functions of the settings, writes two of them in their other spelling, and converts their values to
/// the type of the elements.
void CheckIndexingFunctions(RTableSettings& settings, const std::int32_t* bounds);

}  // namespace korel
