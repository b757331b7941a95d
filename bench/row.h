#pragma once
// One row of the benchmark table: a figure of Korel's beside a reference measured in the same run.
//
// Each is timed in rounds that alternate, so that a drift of the machine's speed meets both; the row
// gives the fastest round of either and their ratio, Korel's time over the reference's.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "session/driver.h"
#include "session/statement_reader.h"
#include "store/constants.h"
#include "store/dag.h"
#include "store/generations.h"
#include "text/print/message.h"
#include "text/read/source.h"

namespace korel::bench {

/// Processor time that `work` takes: what else the machine does counts for neither side.
template <class Work>
double secondsOf(Work&& work) {
  auto now = [] {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
  };
  double start = now();
  work();
  return now() - start;
}

inline void printHead() {
  std::printf("%-44s %14s %14s %8s  %s\n", "row", "korel", "reference", "ratio", "reference is");
}

/// `scale` turns seconds into the figure shown, in `unit`.
template <class Korel, class Reference>
void row(const char* name, const char* unit, double scale, const char* reference, Korel&& korel, Reference&& other) {
  double ours = 1e99, theirs = 1e99;
  for (int round = 0; round < 7; ++round) {
    ours = std::min(ours, secondsOf(korel));
    theirs = std::min(theirs, secondsOf(other));
  }
  std::printf("%-44s %11.3f %-2s %11.3f %-2s %8.2f  %s\n", name, ours * scale, unit, theirs * scale, unit,
              ours / theirs, reference);
}

/// The same as a rate: `amount` of `unit` in one call.
template <class Korel, class Reference>
void rateRow(const char* name, const char* unit, double amount, const char* reference, Korel&& korel,
             Reference&& other) {
  double ours = 1e99, theirs = 1e99;
  for (int round = 0; round < 7; ++round) {
    ours = std::min(ours, secondsOf(korel));
    theirs = std::min(theirs, secondsOf(other));
  }
  std::printf("%-44s %9.1f %-4s %9.1f %-4s %8.2f  %s\n", name, amount / ours, unit, amount / theirs, unit,
              ours / theirs, reference);
}

/// Shows nothing but errors, which would end a benchmark early.
inline DAG ignoreMessage(void*, DAG message) {
  if (std::strncmp(textOf(message[1]), "INTERFACE_E", 11) == 0) {
    expandMessage(
        message[2], [](void*, int c) { std::fputc(c, stderr); }, nullptr);
    std::fputc('\n', stderr);
  }
  return null;
}

/// Starts a kernel that shows nothing.
inline void startKernel() {
  static char name[] = "korel", skip[] = "-s";
  static char* argv[] = {name, skip, nullptr};
  if (const char* message = InitializeKorel(2, argv)) {
    std::fprintf(stderr, "%s\n", message);
    std::exit(1);
  }
  EvaluateDAG(null, ignoreMessage, nullptr, 0, 0, nullptr);
}
/// Runs `work` as a statement runs: inside a frame that errors return to. Then the heap is collected, so
/// that what it has left behind does not slow down the next.
inline void runInKernel(DAG (*work)()) {
  static DAG (*atLevelOne)();
  atLevelOne = work;
  // As inside a statement: what is made at level 0 belongs to nobody, and the first collection takes it.
  ReadStatement(
      [] {
        ++evaluationLevel;
        DAG value = atLevelOne();
        --evaluationLevel;
        return value;
      },
      ignoreMessage, nullptr, nullptr);
  ReadStatement([] { return eval(simpl(parsestring("gc()", 1))); }, ignoreMessage, nullptr, nullptr);
}

}  // namespace korel::bench
