#include "session/link/direct_kernel.h"

#include <csignal>
#include <cstdlib>
#include <unistd.h>

#include "frame/interrupts.h"
#include "session/log.h"
#include "store/constants.h"

namespace korel {

void SigTermHandler(int) {
  constexpr unsigned patience = 2;  // seconds
  std::signal(SIGALRM, SIG_DFL);
  alarm(patience);
  CleanUpBeforeExit();
  std::exit(0);
}

KL_Direct::KL_Direct(const ServerSpec& spec) : KL_Base(spec) {
  // The start keeps references to its arguments: the copies of this object live as long.
  const char* message = InitializeKorel(spec_.args.count(), spec_.args.vector());
  struct sigaction action = {};
  action.sa_handler = SigTermHandler;
  sigemptyset(&action.sa_mask);
  sigaction(SIGTERM, &action, nullptr);
  if (message == nullptr) return;
  fmtErrorText("%s", message);
  kError_ = cannotInitialize;
  status_ = serverDead;
}

KL_Direct::~KL_Direct() { CleanUpBeforeExit(); }

void KL_Direct::setHandlers(DAG (*resultCB)(void* data, DAG message), void (*hook)(void* data), void* data) {
  resultHandler_ = resultCB;
  hook_ = hook;
  data_ = data;
}

DAG KL_Direct::answer(void* kernel, DAG message) {
  auto* self = static_cast<KL_Direct*>(kernel);
  return self->resultHandler_ != nullptr ? self->resultHandler_(self->data_, message) : DAG();
}

int KL_Direct::interruptPending(void* kernel) {
  auto* self = static_cast<KL_Direct*>(kernel);
  if (self->hook_ != nullptr) self->hook_(self->data_);
  return self->takeInterrupt() ? 1 : 0;
}

bool KL_Direct::takeInterrupt() {
  const bool pending = interrupted_ != 0;
  interrupted_ = 0;
  return pending;
}

int KL_Direct::startComputation(DAG dag, int resultsWanted) {
  if (status_ == serverDead) return 1;
  resultsWanted_ = resultsWanted;
  interrupted_ = 0;
  status_ = serverComputing;
  value_ = EvaluateDAG(dag, answer, interruptPending, resultsWanted, 0, this);
  status_ = serverIdle;
  return 0;
}

DAG KL_Direct::getResult(int) { return null; }

int KL_Direct::sendDAG(DAG dag) { return startComputation(dag, 0) == 0 && value_ ? 0 : -1; }
DAG KL_Direct::sendForReply(DAG dag) { return sendDAG(dag) == 0 ? value_ : DAG(); }

int KL_Direct::m_interrupt() {
  const bool isFirst = status_ == serverComputing && interrupted_ == 0;
  if (status_ == serverComputing) {
    interrupted_ = 1;
    pollInterruptSoon();
  }
  return isFirst ? 1 : 0;
}

int KL_Direct::Write(const char*, std::size_t) {
  m_logf("Direct:Write internal error, shouldn't be called\n");
  return 1;
}

}  // namespace korel
