#pragma once
// Runs of instructions that the machine does in one step.
//
// The first instruction of a run gets the fused operation and keeps its registers; the others stay as they are, so
// that a jump into the run finds what it expects.

#include "hardware/program.h"

namespace korel {

/// Registers from `firstTemporary` on and before `end` hold what one instruction leaves for one other.
struct TemporaryRange {
  int first, end;
};
void fuseOperations(Instruction* code, int count, TemporaryRange temporaries);

}  // namespace korel
