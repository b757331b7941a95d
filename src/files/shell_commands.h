#pragma once
// Commands of the operating system whose output is shown.

#include <cstdint>

#include "frame/builtin_call.h"

namespace korel {

/// Error in secure mode: "system calls are disabled".
void refuseSystemCalls();
/// Runs `command` by the shell, shows what it prints, and gives its exit code. After `timeout` seconds, unless that is
/// 0, the command is ended and "(Timeout)" printed. Errors: "system calls are disabled", those of the system.
int ssystem(const char* command, std::int64_t timeout);
/// The exit code in a status of `wait`: 128 + n for signal n.
int exitCodeOf(int status);

namespace builtin {
/// ssystem(command), ssystem(command, timeout): the exit code.
DAG ssystem(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
