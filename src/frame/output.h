#pragma once
// The funnel through which everything leaves the kernel.
//
// Output is a call of a named stream, INTERFACE_RESULT(value) and its kin, handed to whoever drives
// the kernel by `switch2`; the driver's reply comes back. The kernel itself writes to no terminal.

#include <csignal>
#include <cstdint>
#include <initializer_list>

#include "frame/errors.h"
#include "frame/streams.h"
#include "store/dag.h"

namespace korel {

/// Sends a stream call, a DEBUG record, or anything else (as INTERFACE_PRINT); gives the reply.
/// A STOP object, or a call of `quit`, `done` or `stop`, ends the run and does not return.
DAG switch2(DAG x);
/// The call `stream(arguments)` through `switch2`.
DAG sendStream(Stream stream, std::initializer_list<DAG> arguments);
/// The call itself, with an EXPSEQ of arguments.
DAG newStreamCall(Stream stream, DAG arguments);
/// Sends `text` on the stream CHAR.
void Msendprint(const char* text);
int Msendflush();
/// printf into a buffer of 1,024 bytes, sent on the stream CHAR.
[[gnu::format(printf, 1, 2)]] void Printf2(const char* format, ...);

/// The stream call that stands for a DEBUG record (its first field is the message code).
DAG DebugToNerin(DAG debug);
/// Aliases in their short form, for output; and input the other way.
DAG koreltonerin(DAG x);
DAG nerintokorel(DAG x);

/// Polls for an interrupt, once in 256 calls; true when evaluation must stop.
bool askForInterrupt();
extern std::uint8_t interruptCounter;
extern volatile std::sig_atomic_t pollWanted;
/// Asks when the counter has wrapped, or when a signal has asked for it.
inline bool interruptIsDue() {
  return ((interruptCounter == 0 || pollWanted != 0) && askForInterrupt()) ||
         SpecialError == computationInterrupted;
}
inline bool TestInterrupt() {
  ++interruptCounter;
  return interruptIsDue();
}
/// Acts on an interrupt: raises "interrupted" as a special error.
void jumpback();
/// Makes the next `TestInterrupt` poll. A signal handler may call it.
void pollInterruptSoon();

/// The status report: words used, words held, CPU seconds and the collector's figures.
void sendstatus();

}  // namespace korel
