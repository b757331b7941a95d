#pragma once
// The front end as the kernel process sees it: the far end of two pipes.
//
// The environment variable PIPES_TRANSFER_VAR holds "%d %d %s": the descriptor to read from, the one to write to, and
// the file (the rest of the value) for the text of a failed start. After any failure the client is closed: reads give
// -1, messages fail, and the run ends at the next statement.

#include <cstddef>

#include "session/link/arguments.h"
#include "session/link/pipe_stream.h"
#include "store/dag.h"

namespace korel {

/// A front end that is reached by bytes.
class KL_BaseClient : public LinkEnd {
 public:
  virtual bool isClosed() const = 0;
  /// The arguments of the kernel, appended to `args`; 0, or not 0 on failure. From now on this client is `thisClient`.
  int receiveKernelArgs(Args& args);
  /// The next statement; 0 when it can't be read, or the client is closed. `resultsWanted()` came with it.
  DAG getNextDAGFromNerin();
  int resultsWanted() const { return flag_; }
  /// The next reply; 0 when it can't be read.
  DAG receiveDAG() { return receiveMessage(); }
  /// 0, or -1 when the message doesn't get through. One that has no record isn't sent: `unsendable()` tells why.
  int sendDAG(DAG dag) { return sendMessage(dag); }
  int errorKind() const { return errorKind_; }
  int status() const { return status_; }

 protected:
  int flag_ = 0;  // of the last statement
  int status_ = 0;
  int errorKind_ = 0;

 private:
  int receiveArgument(Args& args);
};

class KL_PipeClient : public KL_BaseClient {
 public:
  explicit KL_PipeClient(const char* name);
  ~KL_PipeClient() override;
  int ReadCh() override { return stream_.ReadCh(); }
  int Write(const char* data, std::size_t n) override { return stream_.Write(data, n); }
  bool isClosed() const override { return stream_.isClosed(); }
  /// True when the front end's end of the pipe is gone, which no read has met yet.
  bool isDeserted() const;
  /// Where the text of a failed start goes; null for none.
  const char* fileName() const { return fileName_; }

 private:
  PipeStream* pipes() override { return &stream_; }

  PipeStream stream_;
  char* fileName_ = nullptr;
};

/// The client of this process.
extern KL_BaseClient* thisClient;

/// What the codec, and whoever evaluates in the client's name, calls with the client as context.
int KL_CReadNextChar(void* client);
bool KL_CWriteNextChar(void* client, int c);
void KL_CErrorEOF(void* client, long offset);
DAG KL_CEvaluateDAGCallback(void* client, DAG dag);
int KL_CQueryInterrupt(void* client);

}  // namespace korel
