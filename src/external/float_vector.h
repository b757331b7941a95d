#pragma once
// The float vector: arithmetic on the kernel's decimal floats for libraries from outside.
//
// include/korelfloat.h tells what each member does. A library that makes floats in a loop never reaches the end of a
// statement, so that the members collect floats themselves when enough has been allocated.

#include <cstdarg>
#include <cstdio>
#include <korelfloat.h>

#include "store/dag.h"

namespace korel {

extern const KorelFloatVectorTable ExternalFloatVector;

namespace floats {

/// Gives the collection of floats its turn; `a` and `b`, which may be 0, stay.
void collectInTurn(DAG a, DAG b = DAG());

// ---- formatted input and output (float_vector_files.cpp)

long printFile(std::FILE* file, const char* format, int count, ...);
long printText(char* buffer, std::size_t size, const char* format, int count, ...);
/// The values as an expression sequence.
ALGEB scanFile(std::FILE* file, const char* format);
ALGEB scanText(const char* text, const char* format);

}  // namespace floats

}  // namespace korel
