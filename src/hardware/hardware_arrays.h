#pragma once
// Arrays of the hardware-float evaluator.
//
// An rtable of doubles, rectangular and without indexing functions, is used in place, in its own order. Tables with
// bounds and other rtables are copied into one, once for each evaluation; `var` has the copy written back.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// The reference to a new array. `arguments` is an EXPSEQ of one range for each dimension, and at most one list of
/// initial values, which without ranges tells the dimensions. Errors: "evalhf: invalid array definition", "evalhf:
/// hfarray dimensions must be defined and finite", "... must have a non-negative size in each dimension", "evalhf:
/// hfarray dimensions too large or non-integer", "evalhf: hfarray dimensions too large", "hfarrays are limited to 64
/// dimensions".
double hfarray(DAG arguments);

/// The array for a table. Errors: "unable to manipulate tables in evalhf", "evalhf cannot handle arrays with
/// indexing functions".
double hfloadarray(DAG table);
/// The array for an rtable. Error: "cannot evaluate %1 in evalhf".
double hfloadrtable(DAG rtable);
/// Stores the elements of `array` in the table or rtable that it was loaded from.
void writeBackArray(DAG array, DAG container);

/// Place of the element of `array` with the index sequence. Errors: "sub-arrays cannot be selected in evalhf", "array
/// used with too many indices in evalhf", "array reference out of bounds in evalhf".
double* hfarrayref(DAG array, DAG index);
/// The same by the numbers themselves, of which there are as many as dimensions.
double* arrayElement(DAG array, const double* index);
[[noreturn]] void refuseIndex();
/// The checks of the count.
void checkIndexCount(DAG array, Word count);
/// Error: "cannot assign to a readonly %1".
void requireWritable(DAG array);

/// Loaded arrays belong to one evaluation: those of an outer one stand below the base.
struct LoadedArrays {
  int base, count;
};
LoadedArrays openLoadedArrays();
void closeLoadedArrays(LoadedArrays before);

}  // namespace korel
