#pragma once
// What the targets share: the kernel that they start, and the frame in which each input runs.

#include <chrono>
#include <cstdlib>
#include <initializer_list>

#include "session/driver.h"
#include "session/statement_reader.h"
#include "store/collect/collector.h"
#include "store/constants.h"

namespace korel::fuzzing {

inline DAG ignoreMessage(void*, DAG) { return null; }

/// Starts the kernel with `-s` and further switches, past its banner and start files.
inline void startKernel(std::initializer_list<const char*> switches = {}) {
  static char* argv[8] = {const_cast<char*>("korel"), const_cast<char*>("-s")};
  int argc = 2;
  for (const char* text : switches) argv[argc++] = const_cast<char*>(text);
  if (InitializeKorel(argc, argv) != nullptr) std::abort();
  EvaluateDAG(null, ignoreMessage, nullptr, 0, 0, nullptr);
}

inline std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();
inline void startClock() { began = std::chrono::steady_clock::now(); }
/// Work without end, as powers of powers, is no fault.
inline int stopAfterASecond(void*) { return std::chrono::steady_clock::now() - began > std::chrono::seconds(1); }

/// Runs `task` as a statement: its errors end there, and it is interrupted a second after `startClock`.
inline void run(DAG (*task)()) { ReadStatement(task, ignoreMessage, stopAfterASecond, nullptr); }

/// Inputs leave objects behind: every so often all are given up.
inline void collectEvery(int inputs) {
  static int count = 0;
  if (++count % inputs == 0) gc();
}

}  // namespace korel::fuzzing
