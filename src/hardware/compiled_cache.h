#pragma once
// Procedures met before, with their programs.
//
// A procedure is compiled when it's called for the first time. Its row lasts until the procedure dies, or another
// one takes the place. Rows that went are kept until no evaluation is running.

#include "hardware/program.h"
#include "store/dag.h"

namespace korel {

struct CompiledProcedure {
  DAG procedure;
  Program* program;  // null: the plain walk runs it
};

/// Moves on whenever a row goes: what sites remember is out of date then.
extern std::uint32_t programGeneration;

CompiledProcedure* compiledProcedure(DAG procedure);
/// Deletes rows that went. No evaluation is running.
void sweepPrograms();
/// Forgets everything, also for another heap; registers with the collector. Part of the start.
void initializePrograms();

}  // namespace korel
