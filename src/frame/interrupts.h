#pragma once
// What ends a computation from outside: interrupts, the limit of processor time, and how both reach long operations.
//
// Statements ask for themselves (`TestInterrupt`, `checkTimeLimit`). A product of a million digits, a sequence of a
// million members or the printing of either asks here as well (`passWork`): it says how much it has done, and
// is cut short by the error "interrupted" or "time expired". Only operations whose state an error leaves in order
// may ask.

#include <csignal>
#include <cstdint>

#include "frame/builtin_call.h"
#include "frame/errors.h"
#include "store/dag.h"

namespace korel {

// ---- interrupts

/// Polls for an interrupt, once in 256 calls; true when evaluation must stop.
bool askForInterrupt();
extern std::uint8_t interruptCounter;
extern volatile std::sig_atomic_t pollWanted;
/// Asks when the counter has wrapped, or when a signal has asked for it.
inline bool interruptIsDue() {
  return ((interruptCounter == 0 || pollWanted != 0) && askForInterrupt()) || SpecialError == computationInterrupted;
}
inline bool TestInterrupt() {
  ++interruptCounter;
  return interruptIsDue();
}
/// Acts on an interrupt: raises "interrupted" as a special error. Nothing in the dialogue of the debugger, but in a
/// command.
void jumpback();
/// Makes `SpecialError` say that the computation is interrupted; `pollWanted` stays set while it does.
void noteInterrupted();
/// Makes the next `TestInterrupt` poll. A signal handler may call it.
void pollInterruptSoon();

// ---- processor time

/// CPU seconds of the process.
double cptime();
/// Limit in units of 10 ms of CPU time, 0 for none.
extern std::int32_t evalTimeLimit;
/// Raises "time expired" as a special error when the limit has passed. Called before each statement.
void checkTimeLimitInForce();
inline void checkTimeLimit() {
  if (evalTimeLimit != 0) [[unlikely]]
    checkTimeLimitInForce();
}
/// Whether it has passed, and the error that says so and takes the limit away.
bool isTimeExpired();
[[noreturn]] void raiseTimeExpired();

// ---- long operations

/// Steps that may pass until the next look; `passWork` counts them.
extern std::int64_t stepsToNextLook;
/// Looks whether the running operation has to end; false where an error has nowhere to go.
bool mustEndOperation();
/// Raises what `mustEndOperation` has found.
[[noreturn]] void endOperation();

/// Counts `steps`, each about a multiplication or two; true, after some 10^7 of them, when the caller
/// must clean up and call `endOperation`.
inline bool isTimeUp(std::int64_t steps) { return (stepsToNextLook -= steps) < 0 && mustEndOperation(); }
/// What an object that a recursive walk comes upon costs at least. A part that occurs twice in each of sixty
/// objects is met 2^60 times, without a statement in between.
constexpr int objectSteps = 50;
/// What a search through an expression counts as where there are many, one after the other: how long each
/// takes is known only when it has ended.
constexpr int searchSteps = 100000;
/// The same for a caller without anything to clean up.
inline void passWork(std::int64_t steps) {
  if (isTimeUp(steps)) endOperation();
}

namespace builtin {
/// The built-in `time`: CPU seconds as a FLOAT with 3 decimals, or the time that its arguments take.
DAG time(const BuiltinCall& call);
/// The built-in `timelimit`. Error: "timelimit already active".
DAG timelimit(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
