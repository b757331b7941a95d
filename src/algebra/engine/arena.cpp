#include "algebra/engine/arena.h"

namespace korel::engine {

void* Arena::enter(void* memory) {
  if (memory == nullptr) KernelException("object too large");
  auto* block = static_cast<Block*>(memory);
  block->previous = nullptr;
  block->next = first_;
  if (first_ != nullptr) first_->previous = block;
  first_ = block;
  return static_cast<char*>(memory) + header;
}

void* Arena::allocate(std::size_t bytes) { return enter(std::malloc(bytes + header)); }
void* Arena::allocateZero(std::size_t bytes) { return enter(std::calloc(1, bytes + header)); }

void Arena::free(void* array) {
  if (array == nullptr) return;
  auto* block = reinterpret_cast<Block*>(static_cast<char*>(array) - header);
  (block->previous != nullptr ? block->previous->next : first_) = block->next;
  if (block->next != nullptr) block->next->previous = block->previous;
  std::free(block);
}

void* Arena::reallocate(void* array, std::size_t bytes) {
  if (array == nullptr) return allocate(bytes);
  void* memory = std::realloc(static_cast<char*>(array) - header, bytes + header);
  if (memory == nullptr) KernelException("object too large");  // the old block is still in the chain
  auto* block = static_cast<Block*>(memory);
  (block->previous != nullptr ? block->previous->next : first_) = block;
  if (block->next != nullptr) block->next->previous = block;
  return static_cast<char*>(memory) + header;
}

void Arena::release() {
  while (first_ != nullptr) {
    Block* next = first_->next;
    std::free(first_);
    first_ = next;
  }
}

}  // namespace korel::engine
