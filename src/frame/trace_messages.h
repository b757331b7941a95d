#pragma once
// The records of trace and error messages, and how each is sent.
//
// A DEBUG object is a code and up to four parts; the funnel turns it into a call of a diagnostic
// stream whose arguments are text pieces (STRINGs) and objects, in the order in which a reader sees
// them. The parts of each code, from field 2 on, with F the name called, A its arguments (EXPSEQ),
// V a value and G the caller's name (`null` at top level):
//
//   0  F A V G   remembered value      1  F A     procedure entry      2  F V G  procedure exit
//   3  exception                       4  -       interrupt            5  statement
//   6  equations (EXPSEQ)              7  F A procedure statement      8  message
//   9  banner                         10  F V G   exit by an error    11  F A    call of a built-in
//  15  exception

#include "frame/environment.h"
#include "store/dag.h"

namespace korel {

enum DebugCode : std::int32_t {
  debugRemembered = 0,
  debugEnter = 1,
  debugExit = 2,
  debugError = 3,
  debugInterrupt = 4,
  debugStatement = 5,
  debugLocals = 6,
  debugTraceLevel = 7,
  debugSystemError = 8,
  debugBanner = 9,
  debugErrorExit = 10,
  debugBuiltin = 11,
  debugException = 15,
};

/// A DEBUG record of `code` with up to four parts.
DAG newDebug(DebugCode code, DAG a, DAG b = DAG(), DAG c = DAG(), DAG d = DAG());
/// Makes the record and sends it through the funnel.
void sendDebug(DebugCode code, DAG a, DAG b = DAG(), DAG c = DAG(), DAG d = DAG());
/// The name by which the caller of `frame` was called; `null` when that is the top level.
DAG callerName(const Frame& frame);

}  // namespace korel
