#pragma once
// Processor time, and the limits that the system is asked to enforce.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// Processor seconds as the language shows them: 0, or a FLOAT with three decimals, simplified.
DAG cpuSeconds();

enum class ProcessLimit : std::uint8_t { cpu, data, stack, core };
/// Sets soft and hard limit to `value` (seconds or bytes) and keeps it where the driver looks. The
/// signals of the CPU and the stack limit then end the process with a line that tells the cause.
/// False when the system refuses.
bool setProcessLimit(ProcessLimit limit, std::int64_t value);
/// Prints which limit was passed and aborts.
void LimitSignalHandler(int signal);

}  // namespace korel
