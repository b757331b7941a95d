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
  Workspace();
  ~Workspace();
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  /// Room for `count` elements, not cleared. Error: "object too large".
  template <class T>
  T* take(std::size_t count) {
    assert(innermost_ == this);
    return static_cast<T*>(takeBytes(count, sizeof(T)));
  }

 protected:
  struct Mark {
    std::uint32_t block;
    std::size_t used;
  };
  static void backTo(Mark mark);
  static Workspace* innermost_;
  Workspace* outer_;
  Mark mark_;

 private:
  static void* takeBytes(std::size_t count, std::size_t size);
};

class GuardedWorkspace : public Workspace {
 public:
  GuardedWorkspace();
  ~GuardedWorkspace();

 private:
  static void giveBack(const char* message);
};

}  // namespace korel
