#pragma once
// Faults of external code: signals that become errors of the language.

#include <csetjmp>

namespace korel {

/// Where a fault lands: in the frame of the innermost external call.
struct FaultLanding {
  std::jmp_buf place;
  const char* message;  // of the fault
  FaultLanding* outer;
};
/// Null while no external code is running: a fault goes to whoever handled it before, then.
extern FaultLanding* faultLanding;

/// Whether the handlers for SIGSEGV, SIGBUS, SIGFPE and SIGILL are installed.
extern bool faultsArePrepared;
void installFaultHandlers();
inline void prepareForFaults() {
  if (!faultsArePrepared) [[unlikely]]
    installFaultHandlers();
}
/// Somebody else has installed a handler for one of them: the next call installs them anew.
void forgetFaultHandlers();
/// Puts the mask of blocked signals back to what it was when the handlers were installed.
void restoreSignalMask();

}  // namespace korel
