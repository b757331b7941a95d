#pragma once
// A kernel as whoever drives it sees it, wherever it runs: in this process (`KL_Direct`, direct_kernel.h) or in
// another one that is reached through pipes (client/korel_client.h).
//
// A statement is begun by `startComputation`. What the kernel has to say comes as messages, calls of streams, each
// of which wants a reply; the call of INTERFACE_DONE is the last one.

#include <cstddef>
#include <cstdint>

#include "session/link/arguments.h"
#include "session/link/pipe_stream.h"
#include "store/dag.h"

namespace korel {

enum server_type_t : int { serverDirect = 2, serverGiven = 3, serverNamed = 6 };

/// Which kernel is meant, and what it is started with.
struct ServerSpec {
  server_type_t type = serverDirect;
  int typeDetail = 0;
  int spare = 0;
  char* host = nullptr;  // texts of its own
  char* name = nullptr;
  int port = 0;
  Args args;

  ServerSpec() = default;
  ServerSpec(const char* host, const char* name, int port);
  explicit ServerSpec(server_type_t type, int detail = 0, const char* host = nullptr, const char* name = nullptr,
                      int port = 0);
  ServerSpec(const ServerSpec& other) { *this = other; }
  ServerSpec& operator=(const ServerSpec& other);
  ~ServerSpec() { clearSpec(); }
  /// Zero in all fields, no arguments.
  void clearSpec();
};

enum ServerStatus : int { serverIdle = 1, serverComputing = 2, serverReady = 3, serverDead = 4 };

enum KernelErrorCode : int {
  noKernelError = 0,
  cannotStart = 1,
  cannotInitialize = 2,
  invalidParameters = 3,
  cannotConnect = 4,
  systemError = 5,
};

class KL_Base : public LinkEnd {
 public:
  explicit KL_Base(const ServerSpec& spec) : spec_(spec) {}
  KL_Base(const KL_Base&) = delete;
  KL_Base& operator=(const KL_Base&) = delete;
  ~KL_Base() override;

  /// The last failure as text: the kernel's own words where it has left any. Until the next call.
  virtual const char* getErrorText();
  virtual ServerStatus getServerStatus();
  /// 0, or -1. So are the results of the other ways to send and receive.
  virtual int sendKernelArgs();
  /// Has the kernel run `dag`; 0, or 1 when it is dead, or when `dag` has no record (`unsendable()` tells why).
  virtual int startComputation(DAG dag, int resultsWanted);
  /// The next message. Without `wait`: 0 unless one is there. 0 from a dead kernel, and for a bad message.
  virtual DAG getResult(int wait);
  /// Sends `dag` and gives the reply.
  virtual DAG sendForReply(DAG dag);
  /// Asks the running statement to stop: 1, or 0 when nothing runs or it has been asked already.
  virtual int m_interrupt() = 0;
  virtual DAG receiveDAG() { return receiveMessage(); }
  virtual int sendDAG(DAG dag) { return sendMessage(dag); }
  /// Whether a message is there, or about to come.
  virtual int query() = 0;

  int kError() const { return kError_; }
  int osError() const { return osError_; }
  const ServerSpec& spec() const { return spec_; }

 protected:
  [[gnu::format(printf, 2, 3)]] void fmtErrorText(const char* format, ...);
  void clearErrorText();
  /// The kernel is another one from now on.
  void startAnew() { reader_.startAnew(); }

  static constexpr std::size_t errorTextSize = 4097;

  Word flag_ = 0;
  ServerSpec spec_;
  ServerStatus status_ = serverIdle;
  int kError_ = noKernelError;
  int osError_ = 0;
  int spare_ = 0;
  char* errorText_ = nullptr;  // taken on first use
};

/// The codec's ways to the bytes of a `KL_Base`.
int KL_SReadNextChar(void* link);
bool KL_SWriteNextChar(void* link, int c);

}  // namespace korel
