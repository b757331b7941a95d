#pragma once
// Processor time: the clock of `time`, and the limit of `timelimit`.

#include <cstdint>

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

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

namespace builtin {
/// The built-in `time`: CPU seconds as a FLOAT with 3 decimals, or the time that its arguments take.
DAG time(const BuiltinCall& call);
/// The built-in `timelimit`. Error: "timelimit already active".
DAG timelimit(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
