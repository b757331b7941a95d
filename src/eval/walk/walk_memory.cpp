#include "eval/walk/walk_memory.h"

#include <cassert>

namespace korel {

namespace {
constexpr int mostKinds = 8;
void (*resets[mostKinds])();
int kinds = 0;
}  // namespace

void registerWalkReset(void (*reset)()) {
  assert(kinds < mostKinds);
  resets[kinds++] = reset;
}

void ResetWalkMemories() {
  for (int i = 0; i < kinds; ++i) resets[i]();
}

}  // namespace korel
