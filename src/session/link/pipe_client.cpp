#include "session/link/pipe_client.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <unistd.h>

#include "session/link/kernel_link.h"
#include "session/log.h"

namespace korel {

KL_BaseClient* thisClient = nullptr;

// ---- bytes

int KL_CReadNextChar(void* client) { return static_cast<KL_BaseClient*>(client)->ReadCh(); }
bool KL_CWriteNextChar(void* client, int c) {
  const char byte = static_cast<char>(c);
  return static_cast<KL_BaseClient*>(client)->Write(&byte, 1) == 0;
}
void KL_CErrorEOF(void*, long) {}
DAG KL_CEvaluateDAGCallback(void* client, DAG dag) {
  auto* frontEnd = static_cast<KL_BaseClient*>(client);
  return frontEnd->sendDAG(dag) == 0 ? frontEnd->receiveDAG() : DAG();
}
int KL_CQueryInterrupt(void* client) { return static_cast<KL_BaseClient*>(client)->status(); }

// ---- messages

namespace {
constexpr int stringSize = 2048;
// What a front end may send as arguments: far more than a command line holds.
constexpr int mostArguments = 10000;
constexpr std::size_t longestArgument = std::size_t{1} << 20;
}  // namespace

/// A string may be longer than the buffer: it comes in pieces.
int KL_BaseClient::receiveArgument(Args& args) {
  char* text = nullptr;
  std::size_t length = 0;
  int failed = -1;
  while (length < longestArgument) {
    auto* grown = static_cast<char*>(std::realloc(text, length + stringSize + 1));
    if (grown == nullptr) break;
    text = grown;
    int got = receiveString(text + length, stringSize);
    if (got < 0) break;
    length += static_cast<std::size_t>(got);
    text[length] = 0;
    if (got == stringSize) continue;
    args += text;
    failed = 0;
    break;
  }
  std::free(text);
  return failed;
}

int KL_BaseClient::receiveKernelArgs(Args& args) {
  thisClient = this;
  char buffer[stringSize + 1];
  int length = receiveString(buffer, stringSize);
  if (length < 0) return -1;
  buffer[length] = 0;
  const int count = std::atoi(buffer);
  if (count < 0 || count > mostArguments) return -1;
  for (int i = 0; i < count; ++i)
    if (receiveArgument(args) != 0) return -1;
  return receiveFlush();
}

DAG KL_BaseClient::getNextDAGFromNerin() {
  flag_ = 0;
  if (isClosed()) return DAG();
  int c = ReadCh();
  if (c < 0) return DAG();
  flag_ = c != 0;
  return receiveDAG();
}

// ---- pipes

namespace {

struct PipeEnvironment {
  int readEnd = -1, writeEnd = -1;
  const char* fileName = "";
};

/// What PIPES_TRANSFER_VAR holds; false when it is absent or holds something else.
bool readPipeEnvironment(PipeEnvironment& found) {
  const char* text = std::getenv("PIPES_TRANSFER_VAR");
  int end = 0;
  if (text == nullptr || std::sscanf(text, "%d %d%n", &found.readEnd, &found.writeEnd, &end) != 2) return false;
  found.fileName = text + end;
  if (*found.fileName == ' ') ++found.fileName;
  return true;
}

PipeEnvironment pipesOfProcess() {
  PipeEnvironment found;
  if (!readPipeEnvironment(found)) found = PipeEnvironment();
  return found;
}

}  // namespace

KL_PipeClient::KL_PipeClient(const char* name) : stream_(pipesOfProcess().readEnd, pipesOfProcess().writeEnd) {
  PipeEnvironment found;
  if (!readPipeEnvironment(found)) {
    m_logf("KL_PipeClient: couldn't determine pipes\n");
    errorKind_ = invalidParameters;
    stream_.shut();
    return;
  }
  if (found.fileName[0] != 0) fileName_ = strdup(found.fileName);
  unsetenv("PIPES_TRANSFER_VAR");
  m_logf("Read environment info:\n\trPipe: %d \n\twPipe: %d \n\tFileName: %s", found.readEnd, found.writeEnd,
         fileName_ != nullptr ? fileName_ : "");
  if (name != nullptr) m_logf("%s connected\n", name);
  else m_logf("connected\n");
}

KL_PipeClient::~KL_PipeClient() {
  if (errorKind_ == 0) {
    if (close(stream_.readEnd()) != 0) m_logf("Can't close read pipe\n");
    if (close(stream_.writeEnd()) != 0) m_logf("Can't close write pipe\n");
  }
  std::free(fileName_);
}

bool KL_PipeClient::isDeserted() const {
  pollfd ends[] = {{stream_.readEnd(), 0, 0}, {stream_.writeEnd(), 0, 0}};
  return poll(ends, 2, 0) > 0;
}

}  // namespace korel
