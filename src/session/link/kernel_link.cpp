#include "session/link/kernel_link.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "frame/streams.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

// ---- the kernel that is meant

namespace {
char* ownCopy(const char* text) { return text != nullptr ? strdup(text) : nullptr; }
}  // namespace

ServerSpec::ServerSpec(const char* host, const char* name, int port) : ServerSpec(serverNamed, 0, host, name, port) {}

ServerSpec::ServerSpec(server_type_t type, int detail, const char* host, const char* name, int port)
    : type(type), typeDetail(detail), host(ownCopy(host)), name(ownCopy(name)), port(port) {}

ServerSpec& ServerSpec::operator=(const ServerSpec& other) {
  if (this == &other) return *this;
  clearSpec();
  type = other.type;
  typeDetail = other.typeDetail;
  host = ownCopy(other.host);
  name = ownCopy(other.name);
  port = other.port;
  args = other.args;
  return *this;
}

void ServerSpec::clearSpec() {
  std::free(host);
  std::free(name);
  type = server_type_t{};
  typeDetail = spare = port = 0;
  host = name = nullptr;
  args = Args();
}

// ---- failures

namespace {

constexpr const char* errorTexts[] = {
    "no error information available",
    "unable to start server process",
    "initialization encountered errors, possible library problem",
    "invalid parameters for server",
    "unable to connect to server",
};
static_assert(std::size(errorTexts) == systemError);

}  // namespace

KL_Base::~KL_Base() { std::free(errorText_); }

void KL_Base::fmtErrorText(const char* format, ...) {
  if (errorText_ == nullptr) errorText_ = static_cast<char*>(std::calloc(1, errorTextSize));
  if (errorText_ == nullptr) return;
  std::va_list values;
  va_start(values, format);
  std::vsnprintf(errorText_, errorTextSize, format, values);
  va_end(values);
}

void KL_Base::clearErrorText() {
  if (errorText_ != nullptr) errorText_[0] = 0;
}

const char* KL_Base::getErrorText() {
  if (errorText_ != nullptr && errorText_[0] != 0) return errorText_;
  if (kError_ >= 0 && kError_ < systemError) return errorTexts[kError_];
  static char text[80];
  if (kError_ == systemError)
    std::snprintf(text, sizeof text, "server encountered OS error %u", static_cast<unsigned>(osError_));
  else std::snprintf(text, sizeof text, "unexpected server error %u, no information", static_cast<unsigned>(kError_));
  return text;
}

// ---- statements and their messages

ServerStatus KL_Base::getServerStatus() {
  if (status_ == serverComputing && query() != 0) status_ = serverReady;
  return status_;
}

int KL_Base::sendKernelArgs() {
  char count[16];
  std::snprintf(count, sizeof count, "%d", spec_.args.count());
  if (sendString(count) != 0) return -1;
  for (int i = 0; i < spec_.args.count(); ++i)
    if (sendString(spec_.args[i]) != 0) return -1;
  return sendFlush();
}

int KL_Base::startComputation(DAG dag, int resultsWanted) {
  if (status_ == serverDead) return 1;
  if (!writer_.compose(dag)) return 1;
  const char flag = resultsWanted != 0 ? 1 : 0;
  if (Write(&flag, 1) != 0 || Write(writer_.data(), writer_.size()) != 0) {
    status_ = serverDead;
    return 1;
  }
  status_ = serverComputing;
  return 0;
}

DAG KL_Base::getResult(int wait) {
  if (status_ == serverDead || (wait == 0 && getServerStatus() != serverReady)) return DAG();
  DAG message = receiveDAG();
  if (status_ == serverDead) return message;
  constexpr const char* last = streamName(Stream::DONE);
  bool isLast = isTag(message, FUNCTION) && isTag(message[1], NAME) &&
                std::strncmp(textOf(message[1]), last, std::strlen(last)) == 0;
  status_ = isLast ? serverIdle : serverComputing;
  return message;
}

DAG KL_Base::sendForReply(DAG dag) { return sendDAG(dag) == 0 ? receiveDAG() : DAG(); }

// ---- bytes

int KL_SReadNextChar(void* link) { return static_cast<KL_Base*>(link)->ReadCh(); }
bool KL_SWriteNextChar(void* link, int c) {
  const char byte = static_cast<char>(c);
  return static_cast<KL_Base*>(link)->Write(&byte, 1) == 0;
}

}  // namespace korel
