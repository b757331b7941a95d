#pragma once
// The kernel process: one kernel, driven by the front end that has started it.

#include "session/link/arguments.h"
#include "session/link/direct_kernel.h"
#include "session/link/pipe_client.h"

namespace korel {

class App {
 public:
  /// Connects to the front end and starts the kernel; `error()` tells whether that went well. The text of a failed
  /// start goes into the file that the front end has named.
  /// `library` is the kernel's unless its arguments or the variable KOREL name one; null for none.
  App(int argc, char** argv, const char* library);
  ~App();
  App(const App&) = delete;
  App& operator=(const App&) = delete;

  /// Statement after statement until the pipe ends.
  void Run();
  /// Runs the process; its exit status.
  int runProcess();
  /// 0, or the kernel's error in the low 4 bits and the system's above.
  int error() const { return error_; }

 private:
  void setError(int kError, int osError) { error_ = kError | osError << 4; }
  void reportFailedStart();

  KL_PipeClient* client_ = nullptr;
  KL_Direct* kernel_ = nullptr;
  Args pgmArgs_, kernelArgs_;
  int error_ = 0;
};

/// The handler of every message: what the front end replies to it.
DAG kResultCB(void* context, DAG message);
/// SIGINT: the running statement is asked to stop.
void ctlbrkHdlr(int signal);

}  // namespace korel
