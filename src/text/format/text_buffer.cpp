#include "text/format/text_buffer.h"

#include <algorithm>

#include "frame/errors.h"
#include "frame/interrupts.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

void TextBuffer::grow(std::size_t needed) {
  if (needed > longestTextLength) KernelException("object too large");
  const std::size_t capacity = std::min(std::max(needed, 2 * capacity_), longestTextLength);
  passWork(static_cast<std::int64_t>(capacity / 8));
  DAG space = newl2(textLength(capacity), BINARY);
  char* bytesOfSpace = reinterpret_cast<char*>(&rawField(space, 1));
  std::memcpy(bytesOfSpace, bytes(), size_);
  large_ = bytesOfSpace;
  capacity_ = capacity;
}

DAG TextBuffer::string() {
  const char* begin = text();
  return strinstall(std::string_view(begin, std::strlen(begin)));
}

void TextBufferSink(void* textBuffer, int c) { static_cast<TextBuffer*>(textBuffer)->append(static_cast<char>(c)); }

}  // namespace korel
