#include "store/word_map.h"

#include <cstdlib>
#include <cstring>

namespace korel {

namespace {
constexpr std::uint32_t firstCapacity = 256;
constexpr std::uint32_t largestKept = 1u << 19;  // 4 MB
constexpr std::uint32_t idleShare = 16;          // fewer than one place in so many was used
// References are multiples of 4 that cluster by allocation order; the multiplier spreads their bits
// and the shift takes the best of them (Knuth, vol. 3, 6.4: multiplicative hashing).
std::uint32_t spread(Word word) {
  std::uint32_t product = word * 2654435769u;
  return product ^ (product >> 15);
}
}  // namespace

WordMap::Slot* WordMap::slotFor(Word word) const {
  std::uint32_t at = spread(word) & (capacity_ - 1);
  while (slots_[at].word != 0 && slots_[at].word != word) at = (at + 1) & (capacity_ - 1);
  return &slots_[at];
}

bool WordMap::grow() {
  std::uint32_t capacity = capacity_ == 0 ? firstCapacity : 2 * capacity_;
  auto* slots = static_cast<Slot*>(std::calloc(capacity, sizeof(Slot)));
  if (slots == nullptr) return false;
  WordMap larger;
  larger.slots_ = slots;
  larger.capacity_ = capacity;
  for (std::uint32_t i = 0; i < capacity_; ++i)
    if (slots_[i].word != 0) *larger.slotFor(slots_[i].word) = slots_[i];
  std::free(slots_);
  slots_ = slots;
  capacity_ = capacity;
  return true;
}

WordMap::Outcome WordMap::insert(Word word, std::int32_t value, std::int32_t** found) {
  if (2 * (used_ + 1) > capacity_ && !grow()) return outOfMemory;
  Slot* slot = slotFor(word);
  if (slot->word == word) {
    if (found != nullptr) *found = &slot->value;
    return present;
  }
  *slot = {word, value};
  ++used_;
  return added;
}

const std::int32_t* WordMap::find(Word word) const {
  if (capacity_ == 0) return nullptr;
  Slot* slot = slotFor(word);
  return slot->word == word ? &slot->value : nullptr;
}

void WordMap::clear() {
  if (used_ == 0) return;
  if (capacity_ > largestKept) return release();
  if (capacity_ > firstCapacity && used_ < capacity_ / idleShare) {
    // Clearing costs what the capacity is, not what was used: after a large walk small ones pay for
    // twice its capacity altogether.
    auto* slots = static_cast<Slot*>(std::realloc(slots_, capacity_ / 2 * sizeof(Slot)));
    if (slots != nullptr) slots_ = slots;
    capacity_ /= 2;
  }
  std::memset(slots_, 0, capacity_ * sizeof(Slot));
  used_ = 0;
}

void WordMap::release() {
  std::free(slots_);
  slots_ = nullptr;
  capacity_ = used_ = 0;
}

}  // namespace korel
