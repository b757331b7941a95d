#pragma once
// A kernel in a process of its own, for a front end in C++.
//
// Link with `korel_client`. The front end holds a store of its own, in which it parses what it sends and prints what
// it is sent: it is started once by `InitializeKorel` (session/driver.h). No statement is evaluated there.
//
//   ServerSpec spec(serverGiven);
//   spec.args += "myfrontend";                        // the name of the program, then switches of the kernel
//   KorelProcess kernel(spec);
//   kernel.setHandlers(answer, interrupted, nullptr);
//   if (!kernel.start()) complain(kernel.getErrorText());
//   kernel.evaluate(parsestring("1/3 + 1/6", 1), 1);   // `answer` is called with INTERFACE_RESULT(1/2)
//
// `answer(context, message)` gets each message: a FUNCTION object whose name begins with INTERFACE_ and whose second
// field is the EXPSEQ of its arguments. What it returns is sent back; `null` where there is nothing to say. An error
// that it raises comes back to it as a message INTERFACE_EXCEPT, and the reply is `null`; an interrupt is passed on to
// the kernel. It doesn't call `evaluate`.
//
// While the front end waits for the kernel, SIGINT is let in and `interrupted(context)` is asked thereafter; when it
// says so the running statement is asked to stop. `m_interrupt` does the same from anywhere, also from a handler.
//
// A kernel that dies is noticed at the next byte: `evaluate` returns false, `getServerStatus()` is `serverDead`, and
// `getErrorText()` tells how it ended. `start` begins with a fresh one. A write to a dead kernel raises SIGPIPE, for
// which `start` installs an empty handler unless there is one.
//
// Objects that a message holds live until it has been answered, when `evaluate` isn't called from within an evaluation;
// whoever keeps one longer makes it reachable from a root (store/collect/collector.h).

#include <memory>
#include <sys/types.h>

#include "session/link/kernel_link.h"
#include "session/link/pipe_stream.h"

namespace korel {

class KorelProcess : public KL_Base {
 public:
  using Answer = DAG (*)(void* context, DAG message);
  using Question = int (*)(void* context);

  /// `spec.name` is the path of the program; null: the `korelkernel` beside the running program.
  explicit KorelProcess(const ServerSpec& spec);
  /// Ends the kernel as `end` does.
  ~KorelProcess() override;

  void setHandlers(Answer answer, Question interrupted, void* context);
  /// Starts the process and sends its arguments. False: `getErrorText` tells why. What only the kernel can find wrong
  /// with its arguments shows at the first statement.
  bool start();
  /// Runs one statement and answers its messages up to the last. False when the kernel has died.
  bool evaluate(DAG statement, int resultsWanted);
  /// True after the statement that has stopped the kernel, with its exit code: time to call `end`.
  bool isStopped(int& exitCode) const;
  /// Closes the pipes, which ends an idle kernel, and waits for it. One that goes on for seconds is killed.
  void end();
  pid_t processId() const { return process_; }

  int m_interrupt() override;
  int query() override;
  DAG receiveDAG() override;
  int ReadCh() override;
  int Write(const char* data, std::size_t n) override;

 private:
  PipeStream* pipes() override { return stream_.get(); }
  bool startProcess();
  void noteDeath();
  void takeStartError();
  DAG answerSafely(DAG message, bool reportsErrors = true);
  void reportException(DAG exception);
  int sendReply(DAG reply);
  void releaseMessages();
  bool waitForEnd(int milliseconds, int& status);
  static void waitForInput(void* process);

  std::unique_ptr<PipeStream> stream_;
  pid_t process_ = -1;
  Answer answer_ = nullptr;
  Question interrupted_ = nullptr;
  void* context_ = nullptr;
  bool stopped_ = false;
  int exitCode_ = 0;
  char startErrorFile_[64] = "";  // until the kernel has said something
};

}  // namespace korel
