#pragma once
// Two pipes as one stream of bytes, buffered both ways, and the messages that cross it.
//
//   front end to kernel, at start    the number of arguments as text, NUL; each argument, NUL; byte 1
//   front end to kernel, statement   byte 0 or 1: are results wanted; record; byte 1
//   kernel to front end              record of a call of a stream; byte 1
//   front end to kernel, reply       record; byte 1
//
// No byte of a record is below 33, so that the byte 1, the flush, ends a message whatever became of the record
// in it: who cannot read a record passes over what is left up to its flush, and is in step again.

#include <cstddef>

#include "library/records/records.h"
#include "store/dag.h"

namespace korel {

constexpr int linkFlush = 1;

/// Bytes on their way, first in, first out.
class CBuf {
 public:
  explicit CBuf(std::size_t capacity);
  CBuf(const CBuf&) = delete;
  CBuf& operator=(const CBuf&) = delete;
  ~CBuf();

  /// Stores a byte: 0, or 1 when the buffer is full.
  int add(int c) {
    if (write_ == base_ + capacity_) return 1;
    *write_++ = static_cast<char>(c);
    return 0;
  }
  /// Takes a byte; the buffer isn't empty. Taking the last one makes all room free again.
  int get() {
    int c = static_cast<unsigned char>(*read_++);
    if (read_ == write_) read_ = write_ = base_;
    return c;
  }
  bool isEmpty() const { return read_ == write_; }
  std::size_t size() const { return static_cast<std::size_t>(write_ - read_); }
  std::size_t space() const { return static_cast<std::size_t>(base_ + capacity_ - write_); }
  void clear() { read_ = write_ = base_; }
  /// The bytes that are there, and how far somebody has got with them.
  const char* begin() const { return read_; }
  const char* end() const { return write_; }
  void passTo(const char* at) {
    read_ += at - read_;
    if (read_ == write_) clear();
  }
  /// The bytes that are there, ended by a NUL.
  char* buf() {
    *write_ = 0;
    return read_;
  }
  /// Where `filled` bytes may be put by hand, when the buffer is empty.
  char* room() { return base_; }
  void filled(std::size_t count) { write_ = base_ + count; }
  std::size_t capacity() const { return capacity_; }

 private:
  char* read_;
  char* write_;
  std::size_t capacity_;
  char* base_;  // one byte more than the capacity
};

/// The ends of two pipes. After a failure the stream is closed: reads give -1, writes -1.
class PipeStream {
 public:
  PipeStream(int readEnd, int writeEnd, std::size_t capacity = 2048)
      : readEnd_(readEnd), writeEnd_(writeEnd), input_(capacity), output_(capacity) {}

  /// The next byte, or -1.
  int ReadCh() {
    if (input_.isEmpty() && !fill()) return -1;
    return input_.get();
  }
  /// 0, or -1. What is written goes out when the buffer is full and at each flush byte.
  int Write(const char* data, std::size_t n);
  bool hasInput() const { return !input_.isEmpty(); }
  /// The same bytes in pieces; `passTo` takes those that have been used.
  ByteSource source();
  void passTo(const ByteSource& source);
  bool isClosed() const { return closed_; }
  /// Nothing is read or written from now on.
  void shut() { closed_ = true; }
  int readEnd() const { return readEnd_; }
  int writeEnd() const { return writeEnd_; }

  /// Called before each `read`, when there is something to do while the other side lets one wait.
  void (*beforeRead)(void* context) = nullptr;
  void* beforeReadContext = nullptr;

 private:
  bool fill();
  static bool nextPiece(ByteSource& source);
  int NoBufferingWrite(const char* data, std::size_t n);

  int readEnd_, writeEnd_;
  CBuf input_, output_;
  bool closed_ = false;
};

/// Reads messages from any source of bytes. A message that an error has left in its midst is passed over before the
/// next one.
class MessageReader {
 public:
  /// The next message's object, its flush taken; 0 when the record is bad, or the bytes end.
  DAG next(ByteSource& source);
  /// The bytes come from another source from now on.
  void startAnew() { inMessage_ = false; }
  ~MessageReader() { releaseNumbers(numbers_); }

 private:
  RecordNumbers numbers_;
  bool inMessage_ = false;
};

/// Gathers the record of `x` and its flush: nothing of a message leaves before all of it is known to be writable.
class MessageWriter {
 public:
  ~MessageWriter();
  /// False when `x` has no record; `failure()` then tells why.
  bool compose(DAG x);
  const char* data() const { return data_; }
  std::size_t size() const { return size_; }
  const char* failure() const { return failure_; }
  bool put(const char* bytes, std::size_t n);
  void fail(const char* text) { failure_ = text; }

 private:
  char* data_ = nullptr;
  std::size_t size_ = 0, capacity_ = 0;
  const char* failure_ = nullptr;
};

// ---- the two ends

/// What both ends of a link do with its bytes.
class LinkEnd {
 public:
  virtual ~LinkEnd() = default;
  virtual int ReadCh() = 0;
  /// 0, or -1. So are the results of the other ways to send and receive.
  virtual int Write(const char* data, std::size_t n) = 0;
  virtual int sendString(const char* s);
  /// Bytes up to a NUL, which is stored as well, or `size` of them; how many came before the NUL, -1 at the end.
  virtual int receiveString(char* buffer, int size);
  virtual int sendFlush();
  virtual int receiveFlush();
  const char* unsendable() const { return writer_.failure(); }

 protected:
  /// The next message, from the pipes where there are any, else by `ReadCh`; 0 when it can't be read.
  DAG receiveMessage();
  /// 0, or -1 when the message doesn't get through. One that has no record isn't sent: `unsendable()` tells why.
  int sendMessage(DAG dag);
  virtual PipeStream* pipes() { return nullptr; }

  MessageReader reader_;
  MessageWriter writer_;
};

}  // namespace korel
