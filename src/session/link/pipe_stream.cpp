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

bool PipeStream::nextPiece(ByteSource& source) {
  auto* self = static_cast<PipeStream*>(source.context);
  self->input_.clear();  // all of it has been used
  const bool filled = self->fill();
  source.at = reinterpret_cast<const unsigned char*>(self->input_.begin());
  source.end = reinterpret_cast<const unsigned char*>(self->input_.end());
  return filled;
}
ByteSource PipeStream::source() {
  return {reinterpret_cast<const unsigned char*>(input_.begin()), reinterpret_cast<const unsigned char*>(input_.end()),
          nextPiece, this};
}
void PipeStream::passTo(const ByteSource& source) { input_.passTo(reinterpret_cast<const char*>(source.at)); }

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
bool passMessage(ByteSource& source) {
  for (;;) {
    int c = source.next();
    if (c == linkFlush) return true;
    if (c < 0) return false;
  }
}

}  // namespace

DAG MessageReader::next(ByteSource& source) {
  if (inMessage_ && !passMessage(source)) return DAG();
  inMessage_ = true;
  numbers_.sawLinkEnd = false;
  DAG x = ParseRecord(source, passEnd, passFailure, passFailure, recordOnLink, nullptr, nullptr, numbers_);
  if (!x) {
    if (numbers_.sawLinkEnd || passMessage(source)) inMessage_ = false;
    return DAG();
  }
  int c = source.next();
  if (c == linkFlush || passMessage(source)) inMessage_ = false;
  return c == linkFlush ? x : DAG();
}

MessageWriter::~MessageWriter() { std::free(data_); }

bool MessageWriter::put(const char* bytes, std::size_t n) {
  if (size_ + n > capacity_) {
    std::size_t capacity = capacity_ == 0 ? 4096 : 2 * capacity_;
    while (capacity < size_ + n) capacity *= 2;
    auto* grown = static_cast<char*>(std::realloc(data_, capacity));
    if (grown == nullptr) return false;
    data_ = grown;
    capacity_ = capacity;
  }
  std::memcpy(data_ + size_, bytes, n);
  size_ += n;
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
  auto put = [](void* writer, const char* bytes, std::size_t n) {
    return static_cast<MessageWriter*>(writer)->put(bytes, n);
  };
  auto fail = [](void* writer, const char* text) { static_cast<MessageWriter*>(writer)->fail(text); };
  constexpr int flags = recordBareName | recordOnLink;
  constexpr char flush = linkFlush;
  if (PrintRecord(x, put, fail, 0, flags, nullptr, this) && this->put(&flush, 1)) return true;
  if (failure_ == nullptr) failure_ = "ran out of memory";
  return false;
}

// ---- the two ends

int LinkEnd::sendString(const char* s) { return Write(s, std::strlen(s) + 1); }

int LinkEnd::receiveString(char* buffer, int size) {
  for (int i = 0; i < size; ++i) {
    int c = ReadCh();
    if (c < 0) return -1;
    buffer[i] = static_cast<char>(c);
    if (c == 0) return i;
  }
  return size;
}

int LinkEnd::sendFlush() {
  const char flush = linkFlush;
  return Write(&flush, 1);
}
int LinkEnd::receiveFlush() { return ReadCh() == linkFlush ? 0 : -1; }

namespace {

/// The bytes of an end without pipes, one at a time.
struct EndBytes {
  LinkEnd* end;
  unsigned char byte;
  static bool more(ByteSource& source) {
    auto* self = static_cast<EndBytes*>(source.context);
    int c = self->end->ReadCh();
    if (c < 0) return false;
    self->byte = static_cast<unsigned char>(c);
    source.at = &self->byte;
    source.end = source.at + 1;
    return true;
  }
};

}  // namespace

DAG LinkEnd::receiveMessage() {
  PipeStream* stream = pipes();
  if (stream == nullptr) {
    EndBytes bytes{this, 0};
    ByteSource source{nullptr, nullptr, EndBytes::more, &bytes};
    return reader_.next(source);
  }
  // An error on the way leaves the bytes where they are: up to the flush they are passed over then.
  ByteSource source = stream->source();
  DAG x = reader_.next(source);
  stream->passTo(source);
  return x;
}

int LinkEnd::sendMessage(DAG dag) { return writer_.compose(dag) ? Write(writer_.data(), writer_.size()) : -1; }

}  // namespace korel
