#pragma once
// The kernel of this process, behind the interface of all kernels.

#include "session/driver.h"
#include "session/link/kernel_link.h"

namespace korel {

class KL_Direct : public KL_Base {
 public:
  /// Starts the kernel with the arguments of `spec`. On failure the status is dead and `getErrorText` tells why.
  /// From now on SIGTERM cleans up and ends the process.
  explicit KL_Direct(const ServerSpec& spec);
  ~KL_Direct() override;

  /// `resultCB` answers each message, `hook` is called whenever the kernel asks whether to stop; both get `data`.
  void setHandlers(DAG (*resultCB)(void* data, DAG message), void (*hook)(void* data), void* data);

  ServerStatus getServerStatus() override { return status_; }
  int sendKernelArgs() override { return 0; }
  /// Evaluates `dag`, start to end; 0.
  int startComputation(DAG dag, int resultsWanted) override;
  DAG getResult(int wait) override;
  /// Evaluates `dag` without results; its value, 0 on failure.
  DAG sendForReply(DAG dag) override;
  /// May be called from a signal handler.
  int m_interrupt() override;
  /// True when the running statement has been asked to stop; takes the request away.
  bool takeInterrupt();
  DAG receiveDAG() override { return DAG(); }
  int sendDAG(DAG dag) override;
  int query() override { return 0; }
  int ReadCh() override { return -1; }
  int Write(const char* data, std::size_t n) override;

 private:
  static DAG answer(void* kernel, DAG message);
  static int interruptPending(void* kernel);

  int resultsWanted_ = 0;
  volatile int interrupted_ = 0;
  int spareWord_ = 0;
  DAG (*resultHandler_)(void* data, DAG message) = nullptr;
  void (*hook_)(void* data) = nullptr;
  void* data_ = nullptr;
  DAG value_;  // of what `sendDAG` has evaluated
};

/// Cleans up and ends the process with status 0; should that hang, since the signal has met the process in the midst
/// of something, it ends by an alarm.
void SigTermHandler(int signal);

}  // namespace korel
