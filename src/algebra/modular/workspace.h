#pragma once
// Scratch memory of the modular arithmetic: a stack of big blocks beside the heap.
//
// A `Workspace` on the native stack marks a place; what is taken through it lies above, and its end gives all of
// that back. Only the innermost one may be taken from, since its end would give the others' room back too. An operation
// on objects opens a `GuardedWorkspace` around its work, which an error, an interrupt or a time limit gives back as
// well: the plain ones below it need no such care. Blocks stay for the next operation unless they are large.

#include <cassert>
#include <cstddef>
#include <cstdint>

#include "store/dag.h"

namespace korel {

class Workspace {
 public:
  Workspace() : outer_(innermost_), mark_{current_, next_} { innermost_ = this; }
  ~Workspace() {
    backTo(mark_);
    innermost_ = outer_;
  }
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  /// Room for `count` elements, not cleared. Error: "object too large".
  template <class T>
  T* take(std::size_t count) {
    assert(innermost_ == this);
    const std::size_t bytes = (count * sizeof(T) + alignment - 1) / alignment * alignment;
    if (count >= largeCount || bytes > static_cast<std::size_t>(end_ - next_))
      return static_cast<T*>(takeFromBlock(count, sizeof(T)));
    auto* taken = next_;
    next_ += bytes;
    return reinterpret_cast<T*>(taken);
  }

 protected:
  struct Mark {
    std::uint32_t block;
    unsigned char* next;
  };
  static void backTo(Mark mark) {
    if (current_ == mark.block && mark.next != nullptr) next_ = mark.next;
    else backToBlock(mark);
  }
  static Workspace* innermost_;
  Workspace* outer_;
  Mark mark_;

 private:
  static void backToBlock(Mark mark);
  static void* takeFromBlock(std::size_t count, std::size_t size);

  static constexpr std::size_t alignment = 32;  // of a vector register
  static constexpr std::size_t largeCount = std::size_t{1} << 40;
  static std::uint32_t current_;       // the block from which is taken
  static unsigned char *next_, *end_;  // what is free of the current block
};

class GuardedWorkspace : public Workspace {
 public:
  GuardedWorkspace();
  ~GuardedWorkspace();

 private:
  static void giveBack(const char* message);
};

}  // namespace korel
