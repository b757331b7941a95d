#include "store/table_index.h"

#include <cstdlib>
#include <sys/mman.h>

namespace korel {

namespace {

// Open addressing with linear probing, at most two thirds full. A slot is 0 when free. Else its low bits number a
// pair of a chain, from 1 on, or are 0 when the pair has been removed, and its high bits are a digest of the key, so
// that hardly a probe looks into a chain in vain. Which chain it is, is told by the bucket of the key. Pairs of equal
// key stand in the order of their chain along the probes.
using Slot = Word;
constexpr int digestShift = 25;
constexpr Word numberMask = (Word{1} << digestShift) - 1;
constexpr Slot removed = ~numberMask;
static_assert(maxLength / 2 <= numberMask);
Word digestOf(Word key) { return key * 2246822519u & ~numberMask; }
Word placeOf(Slot slot) { return 2 * (slot & numberMask) - 1; }
Slot slotFor(Word key, Word place) { return digestOf(key) | (place + 1) / 2; }

struct TableIndex {
  Word table = 0;  // 0: no index
  Word used = 0;   // slots that are not free
  Word mask = 0;   // number of slots less 1
  bool holdsEqualKeys = false;
  Slot* slots = nullptr;
  Word* ends = nullptr;  // by bucket: place of the first free pair of a long chain; 0: the chain is short

  Word next(Word at) const { return (at + 1) & mask; }
  /// Whether the slot, which is not free, is that of a pair with this key.
  bool holds(Slot slot, Word bucket, Word key) const {
    if ((slot & ~numberMask) != digestOf(key)) return false;
    const Word place = placeOf(slot);  // for a removed pair beyond any end
    return place < ends[bucket] && rawField(DAG(table)[bucket], place) == key;
  }
};

// Keys near one another have near slots, since that is how arrays are walked. The multiplier spreads such stretches
// over the index (Knuth, vol. 3, 6.4) and shuffles each, since keys may all be multiples of something.
Word homeOf(Word key, Word mask) {
  constexpr Word stretch = 256;
  const Word h = key >> 1, spread = h / stretch * 2654435769u;
  const Word stretches = (mask + 1) / stretch;
  return stretch * static_cast<Word>((std::uint64_t{spread} * stretches) >> 32) + ((h ^ (spread >> 8)) & (stretch - 1));
}

bool isFull(const TableIndex& index) { return 3 * std::uint64_t{index.used} >= 2 * std::uint64_t{index.mask}; }

void enter(TableIndex& index, Word bucket, Word key, Word place) {
  Word at = homeOf(key, index.mask);
  for (; index.slots[at] != 0; at = index.next(at))
    if (index.holds(index.slots[at], bucket, key)) index.holdsEqualKeys = true;
  index.slots[at] = slotFor(key, place);
  ++index.used;
}

Word& slotOf(const TableIndex& index, Word key, Word place) {
  Word at = homeOf(key, index.mask);
  while (index.slots[at] != slotFor(key, place)) at = index.next(at);
  return index.slots[at];
}

// Large indices stand in huge pages, which fault and miss less (bench/collections.sh, "table stores").
constexpr std::size_t hugePageBytes = std::size_t{2} << 20;

Slot* newSlots(std::size_t bytes) {
  if (bytes < hugePageBytes) return static_cast<Slot*>(std::calloc(1, bytes));
  void* mapped = ::mmap(nullptr, bytes + hugePageBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) return nullptr;
  // What stands out before and behind the pages goes back at once.
  char* const begin = static_cast<char*>(mapped);
  const std::size_t before = -reinterpret_cast<std::uintptr_t>(mapped) & (hugePageBytes - 1);
  if (before != 0) ::munmap(begin, before);
  ::munmap(begin + before + bytes, hugePageBytes - before);
  ::madvise(begin + before, bytes, MADV_HUGEPAGE);
  return reinterpret_cast<Slot*>(begin + before);
}
void freeSlots(Slot* slots, std::size_t bytes) {
  if (bytes < hugePageBytes) std::free(slots);
  else if (slots != nullptr) ::munmap(slots, bytes);
}

void giveBack(TableIndex& index) {
  freeSlots(index.slots, (std::size_t{index.mask} + 1) * sizeof(Slot));
  std::free(index.ends);
  index = {};
}

// The index of `table`, with the pairs of its long chains. False when memory fails.
bool build(TableIndex& index, DAG table) {
  const Word buckets = lengthOf(table);
  giveBack(index);
  index.table = table.word;
  index.ends = static_cast<Word*>(std::calloc(buckets, sizeof(Word)));
  std::uint64_t longWords = 0, capacity = 256;
  for (Word b = 1; b < buckets; ++b)
    if (table[b] && isLongChain(table[b])) longWords += lengthOf(table[b]);
  // A quarter full when it grows: to fill an index anew costs as much as all stores since.
  while (capacity < 2 * longWords) capacity *= 2;
  index.mask = static_cast<Word>(capacity - 1);
  index.slots = newSlots(capacity * sizeof(Slot));
  if (index.ends == nullptr || index.slots == nullptr) {
    giveBack(index);
    return false;
  }
  for (Word b = 1; b < buckets; ++b) index.ends[b] = table[b] && isLongChain(table[b]);
  // The pairs of all chains side by side: keys that came one after the other have neighbouring slots.
  bool more = true;
  for (Word place = 1; more; place += 2) {
    more = false;
    for (Word b = 1; b < buckets; ++b) {
      if (index.ends[b] != place) continue;
      const Word key = rawField(table[b], place);
      if (key == 0) continue;
      enter(index, b, key, place);
      index.ends[b] = place + 2;
      more = true;
    }
  }
  return true;
}

// ---- the registry: open addressing by the table's address, at most half full

TableIndex* registry = nullptr;
Word registryMask = 0;
Word registered = 0;
TableIndex* latest = nullptr;  // where the latest search ended

Word homeInRegistry(Word table, Word mask) {
  const Word product = table * 2654435769u;
  return (product ^ (product >> 15)) & mask;
}
// The record of the table, or the free one where it belongs.
TableIndex& recordOf(TableIndex* records, Word mask, Word table) {
  Word at = homeInRegistry(table, mask);
  while (records[at].table != 0 && records[at].table != table) at = (at + 1) & mask;
  return records[at];
}

bool growRegistry() {
  const Word capacity = registry == nullptr ? 8 : 2 * (registryMask + 1);
  auto* larger = static_cast<TableIndex*>(std::calloc(capacity, sizeof(TableIndex)));
  if (larger == nullptr) return false;
  for (Word i = 0; registry != nullptr && i <= registryMask; ++i)
    if (registry[i].table != 0) recordOf(larger, capacity - 1, registry[i].table) = registry[i];
  std::free(registry);
  registry = larger;
  registryMask = capacity - 1;
  return true;
}

void unregister(TableIndex& record) {
  giveBack(record);
  --registered;
  latest = nullptr;
  auto hole = static_cast<Word>(&record - registry);
  for (Word at = (hole + 1) & registryMask; registry[at].table != 0; at = (at + 1) & registryMask) {
    const Word home = homeInRegistry(registry[at].table, registryMask);
    if (((at - home) & registryMask) < ((at - hole) & registryMask)) continue;
    registry[hole] = registry[at];
    registry[at] = {};
    hole = at;
  }
}

[[gnu::always_inline]] inline TableIndex* find(DAG table) {
  if (latest != nullptr && latest->table == table.word) return latest;
  if (registered == 0) return nullptr;
  TableIndex& record = recordOf(registry, registryMask, table.word);
  return record.table == 0 ? nullptr : latest = &record;
}

// The index of `table`, made when there is none yet; null when memory fails.
[[gnu::noinline]] TableIndex* makeIndex(DAG table) {
  latest = nullptr;
  if (2 * (registered + 1) > registryMask && !growRegistry()) return nullptr;
  TableIndex made;
  if (!build(made, table)) return nullptr;
  ++registered;
  return &(recordOf(registry, registryMask, table.word) = made);
}
TableIndex* indexOf(DAG table) {
  TableIndex* index = find(table);
  return index != nullptr ? index : makeIndex(table);
}

Word keyByScan(DAG chain, Word key) {
  Word place = 1;
  while (rawField(chain, place) != key && rawField(chain, place) != 0) place += 2;
  return place;
}

}  // namespace

Word placeOfKey(DAG table, Word bucket, Word key) {
  const TableIndex* index = indexOf(table);
  if (index == nullptr) return keyByScan(table[bucket], key);
  for (Word at = homeOf(key, index->mask);; at = index->next(at)) {
    const Slot slot = index->slots[at];
    if (slot == 0) return index->ends[bucket];
    if (index->holds(slot, bucket, key)) return placeOf(slot);
  }
}

Word placeForKey(DAG table, Word bucket, Word key) {
  TableIndex* index = indexOf(table);
  if (index != nullptr && isFull(*index) && !build(*index, table)) {
    unregister(*index);
    index = nullptr;
  }
  if (index == nullptr) return keyByScan(table[bucket], key);
  Word at = homeOf(key, index->mask);
  for (; index->slots[at] != 0; at = index->next(at))
    if (index->holds(index->slots[at], bucket, key)) return placeOf(index->slots[at]);
  const Word place = index->ends[bucket];
  index->slots[at] = slotFor(key, place);
  ++index->used;
  index->ends[bucket] = place + 2;
  return place;
}

Word placeOfEnd(DAG table, Word bucket) {
  const TableIndex* index = indexOf(table);
  return index == nullptr ? keyByScan(table[bucket], 0) : index->ends[bucket];
}

void indexNewPair(DAG table, Word bucket, Word key) {
  TableIndex* index = find(table);
  if (index == nullptr) return;
  if (isFull(*index) && !build(*index, table)) return unregister(*index);
  enter(*index, bucket, key, index->ends[bucket]);
  index->ends[bucket] += 2;
}

void indexRemoval(DAG table, Word bucket, Word place) {
  TableIndex* index = find(table);
  if (index == nullptr) return;
  // The last pair would pass others of its key.
  if (index->holdsEqualKeys) return unregister(*index);
  const DAG chain = table[bucket];
  const Word last = index->ends[bucket] - 2;
  slotOf(*index, rawField(chain, place), place) = removed;
  if (last != place) slotOf(*index, rawField(chain, last), last) = slotFor(rawField(chain, last), place);
  index->ends[bucket] = last;
}

void indexChain(DAG table, Word bucket) {
  TableIndex* index = find(table);
  if (index == nullptr) return;
  const DAG chain = table[bucket];
  Word& end = index->ends[bucket];
  for (end = 1; rawField(chain, end) != 0; end += 2) {
    if (isFull(*index)) {
      if (!build(*index, table)) unregister(*index);
      return;
    }
    enter(*index, bucket, rawField(chain, end), end);
  }
}

void dropIndex(DAG table) {
  if (TableIndex* index = find(table)) unregister(*index);
}

void dropDeadIndices(bool (*isAlive)(DAG table)) {
  for (Word i = 0; registered != 0 && i <= registryMask;)
    if (registry[i].table != 0 && !isAlive(DAG(registry[i].table)))
      unregister(registry[i]);  // what moves here has its turn
    else ++i;
}

bool checkTableIndices() {
  for (Word i = 0; registered != 0 && i <= registryMask; ++i) {
    const TableIndex& index = registry[i];
    const DAG table(index.table);
    if (!table) continue;
    if (!hasTag(table, HASHTAB)) return false;
    for (Word b = 1; b < lengthOf(table); ++b) {
      const DAG chain = table[b];
      if (!chain || !isLongChain(chain)) continue;
      if (index.ends[b] != keyByScan(chain, 0)) return false;
      for (Word place = 1; place != index.ends[b]; place += 2)
        if (placeOfKey(table, b, rawField(chain, place)) != keyByScan(chain, rawField(chain, place))) return false;
    }
  }
  return true;
}

}  // namespace korel
