#include "algebra/modular/workspace.h"

#include <cstdlib>

#include "frame/errors.h"

namespace korel {

namespace {

// Blocks grow by doubling, so that few are enough for all memory.
constexpr std::uint32_t mostBlocks = 48;
constexpr std::size_t firstBlockSize = 1 << 16;
constexpr std::size_t keptBlockSize = 1 << 22;  // larger ones go back to the system

struct Block {
  unsigned char* memory;
  std::size_t size;
};
Block blocks[mostBlocks];
std::uint32_t blockCount = 0;  // blocks that have memory

// Provides a block of at least `bytes` behind the current one. Blocks behind it that are too small for that go.
// Gives its number.
std::uint32_t nextBlock(std::uint32_t current, std::size_t bytes, std::size_t alignment) {
  std::uint32_t next = blockCount == 0 ? 0 : current + 1;
  if (next < blockCount && blocks[next].size < bytes)
    while (blockCount > next) std::free(blocks[--blockCount].memory);
  if (next == blockCount) {
    std::size_t size = blockCount == 0 ? firstBlockSize : 2 * blocks[blockCount - 1].size;
    if (size < bytes) size = bytes;
    auto* memory = next == mostBlocks ? nullptr : static_cast<unsigned char*>(std::aligned_alloc(alignment, size));
    if (memory == nullptr) KernelException("object too large");
    blocks[blockCount++] = {memory, size};
  }
  return next;
}

}  // namespace

Workspace* Workspace::innermost_ = nullptr;
std::uint32_t Workspace::current_ = 0;
unsigned char* Workspace::next_ = nullptr;
unsigned char* Workspace::end_ = nullptr;

void Workspace::backToBlock(Mark mark) {
  // A mark may be older than the first block.
  next_ = mark.next != nullptr ? mark.next : blocks[0].memory;
  current_ = mark.block;
  end_ = blocks[current_].memory + blocks[current_].size;
  while (blockCount > current_ + 1 && blocks[blockCount - 1].size > keptBlockSize)
    std::free(blocks[--blockCount].memory);
}

void* Workspace::takeFromBlock(std::size_t count, std::size_t size) {
  std::size_t bytes;
  if (__builtin_mul_overflow(count, size, &bytes) || bytes > SIZE_MAX / 4) KernelException("object too large");
  bytes = (bytes + alignment - 1) / alignment * alignment;
  current_ = nextBlock(current_, bytes, alignment);
  unsigned char* taken = blocks[current_].memory;
  next_ = taken + bytes;
  end_ = taken + blocks[current_].size;
  return taken;
}

void GuardedWorkspace::giveBack(const char*) {
  auto* left = reinterpret_cast<GuardedWorkspace*>(errorProcParam);
  backTo(left->mark_);
  innermost_ = left->outer_;
}
GuardedWorkspace::GuardedWorkspace() { PushStateKeeper(giveBack, this); }
GuardedWorkspace::~GuardedWorkspace() { PopErrorProc(); }

}  // namespace korel
