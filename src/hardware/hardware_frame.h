#pragma once
// Activation frames of the hardware-float evaluator, and the ways out of a running procedure.
//
// A frame lies on the native stack of the call. Arguments and locals are doubles, counted from 0 here. Frames form a
// chain, whose procedures are roots of the collector; arrays made on the way belong to generations that end
// with the statement around.

#include <csetjmp>
#include <cstdint>

#include "frame/interrupts.h"
#include "store/dag.h"

namespace korel {

constexpr int mostArguments = 10, mostLocals = 50;

/// A control variable of `sum` and its kin that is no local of the procedure.
struct BoundVariable {
  DAG name;
  double value;
  BoundVariable* link;
};

struct HardwareFrame {
  double ditto[3];  // values of the last three statements, newest first
  HardwareFrame* link;
  double* args;
  double* locals;
  int nargs;
  DAG proc;
  int nlocals;
  BoundVariable* bound;
  bool isWalked;  // by the plain walk: a `return` jumps
};

/// The innermost frame, null at top level.
extern HardwareFrame* HFStack;
/// Where a `return`, `break` or `next` of the plain walk lands, and what a `return` carries.
extern std::jmp_buf* HFjumpbuffer;
extern double HFReturn;
enum HardwareJump : int { hardwareReturn = 1, hardwareBreak = 2, hardwareNext = 3 };
[[noreturn]] inline void jumpInHardware(HardwareJump code) { ::_longjmp(*HFjumpbuffer, code); }

/// Counts assignments, branches, rounds of loops and calls; at each 256th, or when a signal has asked for it,
/// interrupts and the time limit have their say.
extern std::uint8_t evalhfInterruptTestMod;
void testHardwareInterrupt();
inline void countHardwareStep() {
  if (++evalhfInterruptTestMod == 0 || pollWanted != 0) [[unlikely]]
    testHardwareInterrupt();
}
/// Makes the next step ask.
void ResetEvalhfInterrupt();

/// Moves on when code of the user has run in between, or a collection: what has been derived from the contents of
/// objects is to be derived anew.
extern std::uint32_t hardwareEpoch;

/// Tells the collector of the frames; part of the start.
void initializeHardware();

}  // namespace korel
