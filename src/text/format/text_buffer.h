#pragma once
// A text under construction, for routines that an error may leave at any moment.
//
// Short texts stand in the buffer itself, longer ones in an object of the store: nothing is there to be given back.
// The object lives as long as the running statement, which is longer than any conversion.

#include <cstddef>
#include <cstring>
#include <string_view>

#include "store/dag.h"
#include "text/print/sinks.h"

namespace korel {

class TextBuffer {
 public:
  TextBuffer() {}  // NOLINT(modernize-use-equals-default): its bytes are not cleared
  /// Adds one byte. Error, of this and the next: "object too large".
  void append(char c) {
    if (size_ + 1 >= capacity_) [[unlikely]]
      grow(size_ + 2);
    bytes()[size_++] = c;
  }
  void append(std::string_view text) {
    if (text.empty()) return;
    if (size_ + text.size() + 1 >= capacity_) [[unlikely]]
      grow(size_ + text.size() + 2);
    std::memcpy(bytes() + size_, text.data(), text.size());
    size_ += text.size();
  }
  /// Room for `n` bytes behind what is there, which the caller writes; `setSize` tells how many they were.
  char* reserve(std::size_t n) {
    if (size_ + n + 1 >= capacity_) grow(size_ + n + 2);
    return bytes() + size_;
  }
  void setSize(std::size_t size) { size_ = size; }
  void clear() { size_ = 0; }

  char* bytes() { return large_ != nullptr ? large_ : own_; }
  std::size_t size() const { return size_; }
  std::string_view view() { return {bytes(), size_}; }
  /// The bytes with a zero behind them.
  const char* text() {
    bytes()[size_] = 0;
    return bytes();
  }
  /// The unique STRING of the text. It ends at a zero byte.
  DAG string();

 private:
  void grow(std::size_t needed);

  static constexpr std::size_t ownCapacity = 480;
  char* large_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = ownCapacity;
  char own_[ownCapacity];
};

/// A sink whose closure is a TextBuffer.
void TextBufferSink(void* textBuffer, int c);

}  // namespace korel
