#include "session/link/app.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/streams.h"
#include "session/log.h"
#include "session/statement_reader.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

KL_Direct* interruptedKernel = nullptr;  // whom SIGINT is for

// A write to a front end that is gone fails instead of ending the process. Not by SIG_IGN, which the commands that
// the kernel runs would inherit.
void passPipeSignal(int) {}

void setHandler(int signal, void (*handler)(int), int flags) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  action.sa_flags = flags;
  sigaction(signal, &action, nullptr);
}

/// A front end that is gone can't interrupt: the running statement ends by itself.
void stopWhenDeserted(void*) {
  constexpr unsigned interval = 16;  // questions between two looks: each is a call of the system
  static unsigned questions = 0;
  if (++questions % interval != 0) return;
  if (static_cast<KL_PipeClient*>(thisClient)->isDeserted()) interruptedKernel->m_interrupt();
}

}  // namespace

void ctlbrkHdlr(int signal) {
  setHandler(signal, ctlbrkHdlr, SA_RESTART);
  m_logf("ctrbrkHdlr called\n");
  if (interruptedKernel != nullptr) interruptedKernel->m_interrupt();
}

namespace {

bool asksForLine(DAG message) {
  if (!isTag(message, FUNCTION) || !isTag(message[1], NAME)) return false;
  const char* stream = textOf(message[1]);
  return streamNamed(stream) == Stream::READLINE || streamNamed(stream) == Stream::DEBUG_READLINE;
}

}  // namespace

DAG kResultCB(void*, DAG message) {
  if (thisClient->sendDAG(message) == 0) {
    DAG reply = thisClient->receiveDAG();
    // Who is asked for a line and interrupts instead means the program that asks.
    if (asksForLine(message) && interruptedKernel != nullptr && interruptedKernel->takeInterrupt()) jumpback();
    return reply;
  }
  if (const char* failure = thisClient->unsendable()) KernelException(failure);
  return DAG();
}

namespace {

/// The library as a switch in front of the others: a `-b` among them takes its place.
Args withLibrary(const Args& args, const char* library) {
  if (library == nullptr || args.count() == 0 || std::getenv("KOREL") != nullptr) return args;
  Args all;
  all += args[0];
  all += "-b";
  all += library;
  for (int i = 1; i < args.count(); ++i) all += args[i];
  return all;
}

}  // namespace

App::App(int argc, char** argv, const char* library) {
  Args(argc, argv).getPgmArgs(pgmArgs_);
  disablelogf();
  setHandler(SIGPIPE, passPipeSignal, SA_RESTART);
  m_logf("starting\n");
  client_ = new KL_PipeClient("KL_PipeClient");
  if (client_->errorKind() != 0) {
    error_ = client_->errorKind() << 4;
    return;
  }
  m_logf("initializing kernel\n");
  ServerSpec spec;
  if (client_->receiveKernelArgs(spec.args) != 0) {
    m_logf("Couldn't receive kernel arguments\n");
    setError(invalidParameters, 0);
    return;
  }
  spec.args = withLibrary(spec.args, library);
  kernelArgs_ = spec.args;
  m_logf("Instantiating direct kernel\n");
  kernel_ = new KL_Direct(spec);
  if (kernel_->kError() != 0) reportFailedStart();
  else kernel_->setHandlers(kResultCB, stopWhenDeserted, nullptr);
}

App::~App() {
  interruptedKernel = nullptr;
  delete kernel_;
  delete client_;
}

void App::reportFailedStart() {
  if (client_->fileName() != nullptr) {
    m_logf("Writing out error message for use by the front end.");
    std::FILE* file = std::fopen(client_->fileName(), "w");
    if (file != nullptr) {
      std::fputs(kernel_->getErrorText(), file);
      std::fclose(file);
    } else {
      m_logf("Unable to write out error message for the front end.");
    }
  }
  m_logf("Unable to instantiate direct kernel, rc = %d, %d\n", kernel_->kError(), kernel_->osError());
  setError(kernel_->kError(), kernel_->osError());
}

namespace {

DAG received;  // 0 after a statement that can't be read

DAG receiveStatement() {
  received = thisClient->getNextDAGFromNerin();
  return null;
}
DAG dropMessage(void*, DAG) { return null; }

/// The next statement. One that cannot be read is replaced by the error that says so; 0 at the end.
DAG nextStatement() {
  received = DAG();
  // An error on the way, as the end of memory, is no statement's.
  ReadStatement(receiveStatement, dropMessage, nullptr, nullptr);
  if (received || thisClient->isClosed()) return received;
  return new2(ERROR, strinstall("invalid data structure received from user interface"));
}

}  // namespace

void App::Run() {
  interruptedKernel = kernel_;
  setHandler(SIGINT, ctlbrkHdlr, SA_RESTART);
  while (DAG statement = nextStatement()) kernel_->startComputation(statement, client_->resultsWanted());
}

int App::runProcess() {
  if (error_ != 0) {
    if (kernel_ != nullptr && kernel_->kError() != 0)
      m_logf("kernel initialization failure %s\n", kernel_->getErrorText());
    else m_logf("initialization failure kError = %u, osError = %u\n", error_ & 15u, error_ >> 4 & 0xfffu);
  } else {
    m_logf("initialized\n");
    Run();
    interruptedKernel = nullptr;
    delete kernel_;
    kernel_ = nullptr;
  }
  m_logf("ended, kError = %u, osError = %u\n", error_ & 15u, error_ >> 4 & 0xfffu);
  return error_;
}

}  // namespace korel
