#pragma once
// What the other subsystems want done when the driver starts, restarts, recovers or ends.
//
// One table holds a row for each function and moment, in calling order; a subsystem that keeps
// state of its own adds its rows there (reset_hooks.cpp).

#include <cstdint>

namespace korel {

enum class HookMoment : std::uint8_t {
  everyStatement,  // before a statement at depth 0, whatever the last one left behind
  throwAway,       // before a restart drops the tables
  initialised,     // the store is ready, nothing has been read yet
  startFiles,      // before the start files are read
  restart,         // before a restart, while objects can be evaluated
  stop,            // the same before the end of the run
  exitProcess,     // the process is about to end
};

/// Runs the functions of that moment in order.
void runHooks(HookMoment moment);

}  // namespace korel
