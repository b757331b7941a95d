#pragma once
// What walks remember, kept from one walk to the next.
//
// A walk may run inside of another of its kind: what it simplifies or tests may call procedures. Each walk takes a
// memory from the pool of its kind and gives it back at its end. One memory waits for the next walk, with its
// storage. An ordinary error gives a memory back as it passes. Special errors (an exhausted stack, an interrupt) run
// no error procedures: what they leave in use goes back with the memory of a walk around them, or by
// `ResetWalkMemories` before the next statement.

#include <new>

#include "frame/errors.h"

namespace korel {

/// Has `reset` called by each `ResetWalkMemories`.
void registerWalkReset(void (*reset)());
/// Gives back all memories in use. No walk may be running.
void ResetWalkMemories();

/// The memories of one kind of walk. `Memory` has `clear()`, which keeps its storage, and `release()`.
template <class Memory>
class WalkPool {
 public:
  /// An empty memory. System error when there is no room.
  static Memory* take() {
    Entry* entry = spare_ != nullptr ? spare_ : newEntry();
    spare_ = nullptr;
    entry->outer = inUse_;
    inUse_ = entry;
    return &entry->memory;
  }
  /// Gives back `memory`, and what walks inside of this one have left in use.
  static void giveBack(Memory* memory) {
    Memory* last;
    do {
      last = &inUse_->memory;
      giveBackLast();
    } while (last != memory);
  }

 private:
  struct Entry {
    Memory memory;
    Entry* outer;  // of the walk around this one
  };
  static Entry* newEntry() {
    if (!isRegistered_) registerWalkReset(reset);
    isRegistered_ = true;
    Entry* entry = new (std::nothrow) Entry;
    if (entry == nullptr) notimpl("ran out of memory");
    return entry;
  }
  static void giveBackLast() {
    Entry* entry = inUse_;
    inUse_ = entry->outer;
    if (spare_ == nullptr) {
      entry->memory.clear();
      spare_ = entry;
    } else {
      entry->memory.release();
      delete entry;
    }
  }
  static void reset() {
    while (inUse_ != nullptr) giveBackLast();
  }

  inline static Entry* spare_ = nullptr;
  inline static Entry* inUse_ = nullptr;
  inline static bool isRegistered_ = false;
};

/// The value of `walk(memory)`, with a memory that is given back whatever happens.
template <class Memory, class Walk>
auto withWalkMemory(Walk walk) {
  Memory* memory = WalkPool<Memory>::take();
  PushParamErrorProc([](const char*) { WalkPool<Memory>::giveBack(reinterpret_cast<Memory*>(errorProcParam)); },
                     memory);
  auto result = walk(*memory);
  PopErrorProc();
  WalkPool<Memory>::giveBack(memory);
  return result;
}

}  // namespace korel
