#pragma once
// The kernel vector: the table of functions that external code is handed, at positions that never change.

#include <korelshlib.h>

namespace korel {

extern const MKernelVectorTable ExternalSupportVector;

}  // namespace korel
