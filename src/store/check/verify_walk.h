#pragma once
// The walk behind `VerifyLevels`, for those who need more than its answer.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// Takes each message of a failed verification: first that of the object at fault, then those of the
/// objects on the way to it, inside out. By default they are printed, one a line.
extern void (*verifyReport)(const char* message);

struct StructureSize {
  bool valid = false;
  std::uint32_t objects = 0;  // distinct objects of the structure
};
/// Full check without a report. Names count as leaves: their values and attributes are no part of a
/// structure.
StructureSize measureStructure(DAG x);

}  // namespace korel
