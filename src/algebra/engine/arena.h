#pragma once
// Scratch memory of a long operation, given back whatever happens.
//
// The engine works on plain arrays from the system, since its numbers and monomials are no objects. An error may pass
// at any step (an interrupt, a time limit, a full heap): the arena is a state keeper, so that each of them gives its
// arrays back.

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "frame/errors.h"

namespace korel::engine {

class Arena {
 public:
  Arena() { PushStateKeeper(releaseOnError, this); }
  ~Arena() {
    PopErrorProc();
    release();
  }
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  /// `count` values, not set. Error: "object too large" when the system has no memory.
  template <class T>
  T* make(std::size_t count) {
    static_assert(std::is_trivially_destructible_v<T>);
    return static_cast<T*>(allocate(bytesFor<T>(count)));
  }
  /// The same, all bytes 0.
  template <class T>
  T* makeZero(std::size_t count) {
    static_assert(std::is_trivially_destructible_v<T>);
    return static_cast<T*>(allocateZero(bytesFor<T>(count)));
  }
  /// `array` with room for `count` values.
  template <class T>
  T* grow(T* array, std::size_t count) {
    return static_cast<T*>(reallocate(array, bytesFor<T>(count)));
  }
  /// Gives one array back early.
  void free(void* array);

 private:
  struct Block {
    Block *next, *previous;
  };
  template <class T>
  static std::size_t bytesFor(std::size_t count) {
    if (count > largestArray / sizeof(T)) KernelException("object too large");
    return count * sizeof(T);
  }
  static void releaseOnError(const char*) { reinterpret_cast<Arena*>(errorProcParam)->release(); }
  void* allocate(std::size_t bytes);
  void* allocateZero(std::size_t bytes);
  void* reallocate(void* array, std::size_t bytes);
  void* enter(void* memory);
  void release();

  static constexpr std::size_t largestArray = std::size_t{8} << 30;
  static constexpr std::size_t header = 32;  // the arrays are aligned for any value
  static_assert(sizeof(Block) <= header);
  Block* first_ = nullptr;
};

}  // namespace korel::engine
