#include "session/link/pipe_stream.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "frame/errors.h"
#include "session/log.h"

namespace korel {

// ---- bytes

namespace {
constexpr std::size_t leastCapacity = 2048;
}

CBuf::CBuf(std::size_t capacity) : capacity_(capacity < leastCapacity ? leastCapacity : capacity) {
  base_ = static_cast<char*>(std::malloc(capacity_ + 1));
  if (base_ == nullptr) notimpl("CBuf");
  read_ = write_ = base_;
}
CBuf::~CBuf() { std::free(base_); }

bool PipeStream::fill() {
  while (!closed_) {
    if (beforeRead != nullptr) beforeRead(beforeReadContext);
    ssize_t got = closed_ ? 0 : read(readEnd_, input_.room(), input_.capacity());
    if (got > 0) {
      input_.filled(static_cast<std::size_t>(got));
      return true;
    }
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) m_logf("Error reading pipe; status %d, errno %d\n", static_cast<int>(got), errno);
    else m_logf("Connection terminated\n");
    closed_ = true;
  }
  return false;
}

int PipeStream::NoBufferingWrite(const char* data, std::size_t n) {
  while (n > 0) {
    ssize_t written = write(writeEnd_, data, n);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) {
      m_logf("Error writing pipe: %d\n", errno);
      closed_ = true;
      return -1;
    }
    data += written;
    n -= static_cast<std::size_t>(written);
  }
  return 0;
}

int PipeStream::Write(const char* data, std::size_t n) {
  if (closed_) return -1;
  const bool fits = n < output_.space();
  if (fits) {
    for (std::size_t i = 0; i < n; ++i) output_.add(data[i]);
    if (std::memchr(data, linkFlush, n) == nullptr) return 0;
  }
  const std::size_t pending = output_.size();
  const int failed = NoBufferingWrite(output_.buf(), pending);
  output_.clear();
  if (failed != 0 || fits) return failed;
  return NoBufferingWrite(data, n);
}

// ---- messages

namespace {

/// The bytes of one message, and whether its flush has been met.
void passEnd(void*, long) {}
void passFailure(void*, long, const char*) {}

/// Takes bytes up to the flush; false when they end first.
bool passMessage(GetByte getch, void* context) {
  for (;;) {
    int c = getch(context);
    if (c == linkFlush) return true;
    if (c < 0) return false;
  }
}

}  // namespace

DAG MessageReader::next(GetByte getch, void* context) {
  if (inMessage_ && !passMessage(getch, context)) return DAG();
  inMessage_ = true;
  numbers_.sawLinkEnd = false;
  DAG x = ParseRecord(getch, passEnd, passFailure, passFailure, recordOnLink, nullptr, context, numbers_);
  if (!x) {
    if (numbers_.sawLinkEnd || passMessage(getch, context)) inMessage_ = false;
    return DAG();
  }
  int c = getch(context);
  if (c == linkFlush || passMessage(getch, context)) inMessage_ = false;
  return c == linkFlush ? x : DAG();
}

MessageWriter::~MessageWriter() { std::free(data_); }

bool MessageWriter::put(int c) {
  if (size_ == capacity_) {
    std::size_t capacity = capacity_ == 0 ? 4096 : 2 * capacity_;
    auto* grown = static_cast<char*>(std::realloc(data_, capacity));
    if (grown == nullptr) return false;
    data_ = grown;
    capacity_ = capacity;
  }
  data_[size_++] = static_cast<char>(c);
  return true;
}

bool MessageWriter::compose(DAG x) {
  // A message of many megabytes is rare: its room isn't kept for the next.
  constexpr std::size_t keptCapacity = std::size_t{1} << 20;
  if (capacity_ > keptCapacity) {
    std::free(data_);
    data_ = nullptr;
    capacity_ = 0;
  }
  size_ = 0;
  failure_ = nullptr;
  auto put = [](void* writer, int c) { return static_cast<MessageWriter*>(writer)->put(c); };
  auto fail = [](void* writer, const char* text) { static_cast<MessageWriter*>(writer)->fail(text); };
  constexpr int flags = recordBareName | recordOnLink;
  if (PrintDotM(x, put, fail, 0, flags, nullptr, this) && this->put(linkFlush)) return true;
  if (failure_ == nullptr) failure_ = "ran out of memory";
  return false;
}

}  // namespace korel
