#include "rtable/rtable_object.h"

#include <algorithm>
#include <cstring>
#include <sys/mman.h>

#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "frame/errors.h"
#include "rtable/random_fill.h"
#include "store/address_range.h"
#include "store/collect/collector.h"
#include "store/copy_dag.h"
#include "store/hash.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

bool hasNoPositions(DAG r) {
  for (Word k = 0; k < dimensionsOf(r); ++k)
    if (extentOf(r, k) == 0) return true;
  return false;
}

// ---- the ring

namespace {

template <class Visit>
void forEachInRing(DAG r, Visit visit) {
  DAG member = r;
  do {
    visit(member);
    member = nextInRing(member);
  } while (member != r);
}

}  // namespace

void InsertIndexingFunctionChain(DAG r, DAG functions) {
  const Word k = memberCount(functions);
  auto link = [&](Word from, DAG next) {
    DAG rest = newl2(k - from + 2, EXPSEQ);
    for (Word i = from + 1; i <= k; ++i) rest[i - from] = functions[i];
    rest[k - from + 1] = next;
    return markSimplified(rest);
  };
  // From the last member, which leads back to the head, to the first.
  DAG next = r;
  for (Word from = k; from > 0; --from) {
    DAG member = CopyAlg(r);
    member[rtableFunctions] = link(from, next);
    next = markSimplified(member);
  }
  r[rtableFunctions] = link(0, next);
}

DAG indexingFunctions(DAG r) {
  DAG chain = r[rtableFunctions];
  return functionCount(r) == 0 ? null : simpl(copydel(chain, lengthOf(chain) - 2, 1));
}

bool HasSameIndexingFunctionChain(DAG a, DAG b) {
  if (functionCount(a) != functionCount(b)) return false;
  for (Word i = 1; i <= functionCount(a); ++i)
    if (a[rtableFunctions][i] != b[rtableFunctions][i]) return false;
  return true;
}

void UpdateRTABLE(DAG r, Word field, Word value) {
  forEachInRing(r, [&](DAG member) { rawField(member, field) = value; });
}

void updateFlag(DAG r, RTableFlag flag, Word value) {
  const Word mask = ((Word{1} << flag.width) - 1) << flag.shift;
  UpdateRTABLE(r, rtableFlags, (rawField(r, rtableFlags) & ~mask) | value << flag.shift);
}

// ---- sizes

Word ComputeNumElements(const std::int32_t* bounds, Word n, Word storage, std::int32_t b1, std::int32_t b2) {
  if (storage >= storageKindCount) notimpl("rtable - unknown storage");
  std::int64_t count = storedElements(bounds, n, storage, b1, b2);
  if (count == -1) KernelException("this storage type requires exactly two dimensions");
  if (count < 0) KernelException("dimensions too large");
  return static_cast<Word>(count);
}

namespace {

// Of a block for `count` elements.
std::int64_t bytesFor(DAG r, std::int64_t count) {
  std::int64_t element = rtableElementBytes[datatypeOf(r)];
  if (storageOf(r) == storageSparse) element += std::int64_t{4} * dimensionsOf(r);
  std::int64_t bytes = element * count;
  if (bytes > 0xffffffff) KernelException("not enough memory to allocate rtable");
  return bytes;
}

}  // namespace

std::int64_t RTableNumBytes(DAG r) { return isKorelSparse(r) ? 0 : bytesFor(r, rawField(r, rtableCount)); }

// ---- blocks

namespace {

// Blocks outside the heap, each longer than a sixteenth of the addresses that a reference reaches. Addresses are never
// given back to the system, but the memory behind them is, and the next block that fits takes them. Members of a ring
// die in any order: the first gives the block back.
struct BigBlock {
  Word address;  // 0: none
  std::int64_t bytes;
  bool inUse;
};
constexpr int mostBigBlocks = 16;
BigBlock bigBlocks[mostBigBlocks];

// A block with an address, or null.
BigBlock* freeBlock(std::int64_t bytes) {
  for (BigBlock& block : bigBlocks)
    if (block.address != 0 && !block.inUse && block.bytes >= bytes) return &block;
  for (BigBlock& block : bigBlocks) {
    if (block.address != 0) continue;
    // Two words more, so that doubles are aligned.
    Word address = commitWords(bytes / 4 + 3);
    if (address == 0) return nullptr;
    block = {(address + 7) & ~Word{7}, bytes, false};
    return &block;
  }
  return nullptr;
}

// The words count for the clock of the collector, which opens generations and collects by it.
Word newBigBlock(std::int64_t bytes) {
  BigBlock* block = freeBlock(bytes);
  if (block == nullptr) {
    gc();
    block = freeBlock(bytes);
  }
  if (block == nullptr) KernelException("not enough memory to allocate rtable");
  block->inUse = true;
  cused += bytes / 4;
  return block->address;
}

// Whole pages go back to the system; they are zero when they are touched again, as the rest is made now.
void giveBackBigBlock(Word address) {
  constexpr std::uintptr_t page = 4096;
  for (BigBlock& block : bigBlocks) {
    if (block.address != address || !block.inUse) continue;
    const std::uintptr_t begin = address, end = begin + static_cast<std::uintptr_t>(block.bytes);
    const std::uintptr_t first = (begin + page - 1) & ~(page - 1), last = end & ~(page - 1);
    std::memset(reinterpret_cast<void*>(begin), 0, first - begin);
    std::memset(reinterpret_cast<void*>(last), 0, end - last);
    madvise(reinterpret_cast<void*>(first), last - first, MADV_DONTNEED);
    block.inUse = false;
  }
}

Word newBlock(std::int64_t bytes) {
  if (bytes == 0) return 0;
  if (bytes > bigBlockLimit) return newBigBlock(bytes);
  return newDoubleAligned(static_cast<Word>((bytes + 3) / 4), BINARY).word + 4;
}

DAG holderOf(Word block) { return DAG(block - 4); }

bool isInHeap(DAG r) {
  return rawField(r, rtableData) != 0 && !isKorelSparse(r) && rtableFlag(r, rtableForeign) == 0 &&
         RTableNumBytes(r) <= bigBlockLimit;
}

void giveBackBlock(Word block, std::int64_t bytes) {
  if (bytes > bigBlockLimit) giveBackBigBlock(block);
  else release(holderOf(block), lengthOf(holderOf(block)));
}

// The other members of the ring may have been swept already.
void dies(DAG r) {
  if (isKorelSparse(r) || rawField(r, rtableData) == 0 || isInHeap(r) || rtableFlag(r, rtableForeign) != 0) return;
  giveBackBigBlock(rawField(r, rtableData));
}

}  // namespace

void AllocateRTableData(DAG r) {
  if (isKorelSparse(r)) {
    constexpr Word buckets = 256;
    UpdateRTABLE(r, rtableCount, 0);
    UpdateRTABLE(r, rtableData, newhashtab(buckets).word);
  } else {
    UpdateRTABLE(r, rtableData, newBlock(RTableNumBytes(r)));
  }
}

void DeleteRTableData(DAG r) {
  if (rawField(r, rtableData) == 0) return;
  if (isKorelSparse(r)) clearhash(r[rtableData], true);
  else if (rtableFlag(r, rtableForeign) == 0) giveBackBlock(rawField(r, rtableData), RTableNumBytes(r));
  UpdateRTABLE(r, rtableData, 0);
  UpdateRTABLE(r, rtableCount, 0);
}

void ReallocNagSparseData(DAG r, std::int64_t capacity) {
  if (capacity <= 0) {
    UpdateRTABLE(r, lengthOf(r) - 2, 0);
    DeleteRTableData(r);
    return;
  }
  const std::int64_t before = rawField(r, rtableCount), kept = std::min(before, capacity);
  const auto bytes = static_cast<std::size_t>(rtableElementBytes[datatypeOf(r)]);
  const Word old = rawField(r, rtableData);
  const std::int64_t oldBytes = RTableNumBytes(r);
  const Word block = newBlock(bytesFor(r, capacity));
  auto* to = reinterpret_cast<unsigned char*>(std::uintptr_t{block});
  const unsigned char* from = dataOf(r);
  const std::int64_t n = dimensionsOf(r);
  if (old != 0) {
    for (std::int64_t k = 0; k < n; ++k)
      std::memcpy(to + 4 * k * capacity, from + 4 * k * before, static_cast<std::size_t>(4 * kept));
    std::memcpy(to + 4 * n * capacity, from + 4 * n * before, static_cast<std::size_t>(kept) * bytes);
  }
  // Objects, unlike numbers, are no zeros when their bytes are.
  if (datatypeOf(r) <= dataComplexFloat) {
    auto* words = reinterpret_cast<Word*>(to + 4 * n * capacity);
    const std::int64_t each = static_cast<std::int64_t>(bytes) / 4;
    std::fill(words + each * kept, words + each * capacity, cons0.word);
  }
  if (old != 0 && rtableFlag(r, rtableForeign) == 0) giveBackBlock(old, oldBytes);
  updateFlag(r, rtableForeign, 0);
  UpdateRTABLE(r, rtableData, block);
  UpdateRTABLE(r, rtableCount, static_cast<Word>(capacity));
  const Word inUse = rawField(r, lengthOf(r) - 2);
  UpdateRTABLE(r, lengthOf(r) - 2, std::min(inUse, static_cast<Word>(capacity)));
}

// ---- copies

DAG RTableCopyAlg(DAG r) {
  DAG functions = indexingFunctions(r);
  DAG copy = CopyAlg(r);
  InsertIndexingFunctionChain(copy, functions);
  return simpl(copy);
}

namespace {

Word copiedBlock(DAG r) {
  const std::int64_t bytes = RTableNumBytes(r);
  if (rawField(r, rtableData) == 0 || bytes == 0) return 0;
  Word block = newBlock(bytes);
  std::memcpy(reinterpret_cast<void*>(std::uintptr_t{block}), dataOf(r), static_cast<std::size_t>(bytes));
  return block;
}

}  // namespace

DAG CopyRTable(DAG r) {
  DAG copy = RTableCopyAlg(r);
  const bool hasTable = isKorelSparse(r) && rawField(r, rtableData) != 0;
  updateFlag(copy, rtableForeign, 0);
  UpdateRTABLE(copy, rtableData, hasTable ? copyhashtab(r[rtableData]).word : copiedBlock(r));
  return copy;
}

// ---- walks

namespace {

// The words of the data that refer to objects: how many, and where they begin.
struct ElementWords {
  DAG* first;
  std::int64_t count;
};
ElementWords elementWords(DAG r) {
  if (datatypeOf(r) > dataComplexFloat || isKorelSparse(r) || rawField(r, rtableData) == 0) return {nullptr, 0};
  std::int64_t count = rawField(r, rtableCount);
  std::int64_t skipped = storageOf(r) == storageSparse ? count * dimensionsOf(r) : 0;
  auto* words = reinterpret_cast<DAG*>(dataOf(r));
  return {words + skipped, datatypeOf(r) == dataComplexFloat ? 2 * count : count};
}

void walk(DAG r, Visitor visit) {
  if (isKorelSparse(r)) {
    if (r[rtableData]) visit(r[rtableData]);
  } else {
    ElementWords words = elementWords(r);
    for (std::int64_t i = words.count; i-- > 0;)
      if (words.first[i]) visit(words.first[i]);
    // Of foreign data the cell is alive.
    const bool isForeign = rtableFlag(r, rtableForeign) != 0 && rawField(r, rtableData) != 0;
    if (isInHeap(r) || isForeign) visit(holderOf(rawField(r, rtableData)));
  }
  visit(r[rtableElementType]);
  visit(r[rtableAttributes]);
  visit(r[rtableFunctions]);
}

// Elements in a block stay shared, as type and functions do: they are values. A table of elements goes through the
// copier, which enters the copies of keys when they are complete.
DAG copyForStructure(DAG r, DAG (*copyReference)(DAG x)) {
  if (!isKorelSparse(r) || !r[rtableData]) return CopyRTable(r);
  DAG copy = RTableCopyAlg(r);
  UpdateRTABLE(copy, rtableData, copyReference(r[rtableData]).word);
  return copy;
}

}  // namespace

void initializeRTables() {
  registerRtables(walk, dies);
  registerRtableCopier(copyForStructure);
  ResetRTableRand();
}

}  // namespace korel
