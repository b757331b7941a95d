#pragma once
// The funnel through which everything leaves the kernel.
//
// Output is a call of a named stream, INTERFACE_RESULT(value) and its kin, handed to whoever drives
// the kernel by `switch2`; the driver's reply comes back. The kernel itself writes to no terminal.

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

/// The status report: words used, words held, CPU seconds and the collector's figures.
void sendstatus();

}  // namespace korel
