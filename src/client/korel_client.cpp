#include "client/korel_client.h"

#include <cerrno>
#include <csetjmp>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/streams.h"
#include "numbers/integer/integer.h"
#include "session/driver_state.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr const char* pipesVariable = "PIPES_TRANSFER_VAR=";
constexpr std::size_t pipeCapacity = std::size_t{1} << 16;

// ---- starting the process

/// The kernel program beside the running one.
const char* programBeside() {
  static char path[1024 + 16];
  ssize_t length = readlink("/proc/self/exe", path, 1023);
  if (length <= 0) return "korelkernel";
  path[length] = 0;
  char* slash = std::strrchr(path, '/');
  std::strcpy(slash != nullptr ? slash + 1 : path, "korelkernel");
  return path;
}

void passPipeSignal(int) {}

// A handler, and not SIG_IGN: what this process starts gets the ordinary behaviour.
void survivePipeSignal() {
  struct sigaction action = {};
  if (sigaction(SIGPIPE, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) return;
  action.sa_handler = passPipeSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGPIPE, &action, nullptr);
}

/// The environment of this process with the variable that tells the pipes. One block, for `free`.
char** environmentWith(const char* pipes) {
  std::size_t count = 0;
  while (environ[count] != nullptr) ++count;
  auto** copy = static_cast<char**>(std::calloc(count + 2, sizeof(char*)));
  if (copy == nullptr) return nullptr;
  std::size_t n = 0;
  for (std::size_t i = 0; i < count; ++i)
    if (std::strncmp(environ[i], pipesVariable, std::strlen(pipesVariable)) != 0) copy[n++] = environ[i];
  copy[n] = const_cast<char*>(pipes);
  return copy;
}

/// Two pipes whose ends no other child inherits: down to the kernel, up from it.
bool makePipes(int (&down)[2], int (&up)[2]) {
  if (pipe2(down, O_CLOEXEC) != 0) return false;
  if (pipe2(up, O_CLOEXEC) == 0) return true;
  close(down[0]);
  close(down[1]);
  return false;
}

}  // namespace

KorelProcess::KorelProcess(const ServerSpec& spec) : KL_Base(spec) { status_ = serverDead; }
KorelProcess::~KorelProcess() { end(); }

void KorelProcess::setHandlers(Answer answer, Question interrupted, void* context) {
  answer_ = answer;
  interrupted_ = interrupted;
  context_ = context;
}

bool KorelProcess::start() {
  end();
  clearErrorText();
  startAnew();
  survivePipeSignal();
  stopped_ = false;
  kError_ = noKernelError;
  if (!startProcess()) {
    osError_ = errno;
    kError_ = cannotStart;
    fmtErrorText("unable to start server process: %s", std::strerror(osError_));
    return false;
  }
  status_ = serverIdle;
  stream_->beforeRead = waitForInput;
  stream_->beforeReadContext = this;
  if (sendKernelArgs() == 0) return true;
  noteDeath();
  return false;
}

bool KorelProcess::startProcess() {
  const char* program = spec_.name != nullptr ? spec_.name : programBeside();
  if (access(program, X_OK) != 0) return false;
  int down[2], up[2];
  if (!makePipes(down, up)) return false;
  std::strcpy(startErrorFile_, "/tmp/korelkernel-XXXXXX");
  int file = mkostemp(startErrorFile_, O_CLOEXEC);
  if (file >= 0) close(file);
  else startErrorFile_[0] = 0;
  char pipes[160];
  std::snprintf(pipes, sizeof pipes, "%s%d %d %s", pipesVariable, down[0], up[1], startErrorFile_);
  char** environment = environmentWith(pipes);
  char* const arguments[] = {const_cast<char*>(program), nullptr};
  process_ = environment != nullptr ? fork() : -1;
  if (process_ == 0) {
    fcntl(down[0], F_SETFD, 0);
    fcntl(up[1], F_SETFD, 0);
    execve(program, arguments, environment);
    _exit(127);
  }
  const int error = errno;
  std::free(environment);
  close(down[0]);
  close(up[1]);
  if (process_ < 0) {
    close(down[1]);
    close(up[0]);
    takeStartError();
    errno = error;
    return false;
  }
  stream_ = std::make_unique<PipeStream>(up[0], down[1], pipeCapacity);
  return true;
}

// ---- its end

/// Takes the text of a failed start, and the file that could hold it away.
void KorelProcess::takeStartError() {
  if (startErrorFile_[0] == 0) return;
  if (std::FILE* file = std::fopen(startErrorFile_, "r")) {
    char text[errorTextSize] = "";
    text[std::fread(text, 1, sizeof text - 1, file)] = 0;
    std::fclose(file);
    if (text[0] != 0) {
      fmtErrorText("%s", text);
      kError_ = cannotInitialize;
    }
  }
  unlink(startErrorFile_);
  startErrorFile_[0] = 0;
}

bool KorelProcess::waitForEnd(int milliseconds, int& status) {
  for (int waited = 0;; ++waited) {
    pid_t ended = waitpid(process_, &status, WNOHANG);
    if (ended == process_) return true;
    if (ended < 0 && errno != EINTR) {
      status = 0;  // somebody else has waited for it
      return true;
    }
    if (waited >= milliseconds) return false;
    const timespec pause = {0, 1000000};
    nanosleep(&pause, nullptr);
  }
}

void KorelProcess::end() {
  if (process_ < 0) return;
  constexpr int patience = 3000;
  close(stream_->writeEnd());
  close(stream_->readEnd());
  stream_.reset();
  int status;
  if (!waitForEnd(patience, status)) {
    kill(process_, SIGKILL);
    waitpid(process_, &status, 0);
  }
  takeStartError();
  process_ = -1;
  status_ = serverDead;
}

/// The pipes have ended: how the process did.
void KorelProcess::noteDeath() {
  if (process_ < 0) return;
  constexpr int patience = 3000;
  int status = 0;
  const bool ended = waitForEnd(patience, status);
  const pid_t process = process_;
  if (!ended) kill(process_, SIGKILL);
  if (!ended) waitpid(process_, &status, 0);
  process_ = -1;
  status_ = serverDead;
  close(stream_->writeEnd());
  close(stream_->readEnd());
  stream_.reset();
  takeStartError();
  if (kError_ != noKernelError) return;
  kError_ = cannotConnect;
  if (WIFSIGNALED(status))
    fmtErrorText("kernel process %d was ended by signal %d (%s)", process, WTERMSIG(status),
                 strsignal(WTERMSIG(status)));
  else fmtErrorText("kernel process %d has ended with status %d", process, WEXITSTATUS(status));
}

// ---- bytes

int KorelProcess::ReadCh() {
  if (stream_ == nullptr) return -1;
  int c = stream_->ReadCh();
  if (c < 0) status_ = serverDead;
  return c;
}

DAG KorelProcess::receiveDAG() {
  if (stream_ == nullptr) return DAG();
  DAG x = receiveMessage();
  if (stream_->isClosed()) status_ = serverDead;
  return x;
}

int KorelProcess::Write(const char* data, std::size_t n) {
  if (stream_ == nullptr) return -1;
  int failed = stream_->Write(data, n);
  if (failed != 0) status_ = serverDead;
  return failed;
}

int KorelProcess::query() {
  if (stream_ == nullptr) return 0;
  if (stream_->hasInput()) return 1;
  pollfd input = {stream_->readEnd(), POLLIN, 0};
  return poll(&input, 1, 0) > 0 ? 1 : 0;
}

int KorelProcess::m_interrupt() {
  if (process_ < 0 || (status_ != serverComputing && status_ != serverReady)) return 0;
  return kill(process_, SIGINT) == 0 ? 1 : 0;
}

/// Waits until there is something to read; passes on the interrupts that come meanwhile. The signal is let in for the
/// time of the wait alone, so that none slips in between the question and the wait.
void KorelProcess::waitForInput(void* process) {
  auto* self = static_cast<KorelProcess*>(process);
  if (self->interrupted_ == nullptr) return;
  sigset_t interrupts, outside;
  sigemptyset(&interrupts);
  sigaddset(&interrupts, SIGINT);
  sigprocmask(SIG_BLOCK, &interrupts, &outside);
  pollfd input = {self->stream_->readEnd(), POLLIN, 0};
  do {
    if (self->interrupted_(self->context_) != 0) self->m_interrupt();
  } while (ppoll(&input, 1, nullptr, &outside) < 0 && errno == EINTR);
  sigprocmask(SIG_SETMASK, &outside, nullptr);
}

// ---- statements

void KorelProcess::reportException(DAG exception) {
  answerSafely(new3(FUNCTION, naminstall(streamName(Stream::EXCEPT)), exception), false);
}

/// An error in the handler lands here.
DAG KorelProcess::answerSafely(DAG message, bool reportsErrors) {
  if (answer_ == nullptr) return null;
  std::jmp_buf buffer;
  EnvironmentBlock block;
  const int procs = errorProcDepth();
  const std::int32_t level = evaluationLevel;
  EnvironmentBlock* const previous = enterEnvironment(block, buffer);
  ++trapSet;
  DAG volatile reply = null;
  const int code = _setjmp(buffer);
  if (code == 0) const_cast<DAG&>(reply) = answer_(context_, message);
  else dropErrorProcs(procs);
  --trapSet;
  RestoreEnvironment(previous);
  evaluationLevel = level;
  if (code != 0) {
    const bool isInterrupt = SpecialError == computationInterrupted;
    SpecialError = noSpecialError;
    if (isInterrupt) m_interrupt();
    else if (reportsErrors && isSequence(ini("lastexception")[1])) reportException(ini("lastexception")[1]);
  }
  const DAG given = const_cast<DAG&>(reply);
  return given ? given : null;
}

/// A reply without a record is sent as a bad one, which the kernel tells of.
int KorelProcess::sendReply(DAG reply) {
  int failed = sendDAG(reply);
  return failed != 0 && unsendable() != nullptr ? sendFlush() : failed;
}

/// What has been read and parsed may go: a statement may have more to say than this process has memory.
void KorelProcess::releaseMessages() {
  constexpr std::int32_t topLevel = 2;
  if (driver.depth == 0) endOfStatement(topLevel);
}

bool KorelProcess::evaluate(DAG statement, int resultsWanted) {
  clearErrorText();
  kError_ = noKernelError;
  if (startComputation(statement, resultsWanted) != 0) {
    if (status_ != serverDead) reportException(new3(EXPSEQ, cons0, strinstall(unsendable())));
  } else {
    while (status_ != serverDead) {
      DAG message = getResult(1);
      if (status_ == serverDead) break;
      const bool isLast = status_ == serverIdle;
      if (startErrorFile_[0] != 0) takeStartError();
      if (isStreamCall(message, Stream::STOP)) {
        DAG arguments = asSequence(message[2]);
        stopped_ = true;
        exitCode_ = memberCount(arguments) > 0 && isImmediate(arguments[1]) ? immediateValue(arguments[1]) : 0;
      }
      if (!message) reportException(new3(EXPSEQ, cons0, strinstall("invalid data structure received from kernel")));
      if (sendReply(message ? answerSafely(message) : null) != 0) break;
      if (isLast) break;
      releaseMessages();
    }
  }
  if (status_ == serverDead) noteDeath();
  releaseMessages();
  return process_ >= 0;
}

bool KorelProcess::isStopped(int& exitCode) const {
  if (stopped_) exitCode = exitCode_;
  return stopped_;
}

}  // namespace korel
