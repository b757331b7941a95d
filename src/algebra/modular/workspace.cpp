#include "algebra/modular/workspace.h"

#include <cstdlib>

#include "frame/errors.h"

namespace korel {

namespace {

// Blocks grow by doubling, so that few are enough for all memory.
constexpr std::uint32_t mostBlocks = 48;
constexpr std::size_t firstBlockSize = 1 << 16;
constexpr std::size_t keptBlockSize = 1 << 22;  // larger ones go back to the system
constexpr std::size_t alignment = 32;           // of a vector register

struct Block {
  unsigned char* memory;
  std::size_t size;
};
Block blocks[mostBlocks];
std::uint32_t blockCount = 0;    // blocks that have memory
std::uint32_t currentBlock = 0;  // from which is taken
std::size_t usedBytes = 0;       // of the current block


// Makes a block of at least `bytes` the current one. Blocks behind it that are too small for that go.
void useNextBlock(std::size_t bytes) {
  std::uint32_t next = blockCount == 0 ? 0 : currentBlock + 1;
  if (next < blockCount && blocks[next].size < bytes)
    while (blockCount > next) std::free(blocks[--blockCount].memory);
  if (next == blockCount) {
    std::size_t size = blockCount == 0 ? firstBlockSize : 2 * blocks[blockCount - 1].size;
    if (size < bytes) size = bytes;
    auto* memory = next == mostBlocks ? nullptr : static_cast<unsigned char*>(std::aligned_alloc(alignment, size));
    if (memory == nullptr) KernelException("object too large");
    blocks[blockCount++] = {memory, size};
  }
  currentBlock = next;
  usedBytes = 0;
}

}  // namespace

Workspace* Workspace::innermost_ = nullptr;

Workspace::Workspace() : outer_(innermost_), mark_{currentBlock, usedBytes} { innermost_ = this; }
Workspace::~Workspace() {
  backTo(mark_);
  innermost_ = outer_;
}

void Workspace::backTo(Mark mark) {
  currentBlock = mark.block;
  usedBytes = mark.used;
  while (blockCount > currentBlock + 1 && blocks[blockCount - 1].size > keptBlockSize)
    std::free(blocks[--blockCount].memory);
}

void* Workspace::takeBytes(std::size_t count, std::size_t size) {
  std::size_t bytes;
  if (__builtin_mul_overflow(count, size, &bytes) || bytes > SIZE_MAX / 4) KernelException("object too large");
  bytes = (bytes + alignment - 1) / alignment * alignment;
  if (blockCount == 0 || blocks[currentBlock].size - usedBytes < bytes) useNextBlock(bytes);
  void* taken = blocks[currentBlock].memory + usedBytes;
  usedBytes += bytes;
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
