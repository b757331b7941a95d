#include "store/append.h"

#include "store/allocator.h"
#include "store/objects.h"

namespace korel {

DAG apl[appendListLength];

namespace {

// Control word of slack: no free block has it, since those are linked by addresses.
constexpr Word slackMark = 2;
// Slack of fewer words can't hold a block that is worth keeping.
constexpr Word leastSlack = 3;

int placeInList(DAG object) {
  for (int i = 0; i < appendListLength && apl[i]; ++i)
    if (apl[i] == object) return i;
  return appendListLength;
}

void moveToFront(DAG object, int place) {
  if (place == appendListLength) --place;
  for (; place > 0; --place) apl[place] = apl[place - 1];
  apl[0] = object;
}

void dropFromList(int place) {
  if (place == appendListLength) return;
  for (; place + 1 < appendListLength; ++place) apl[place] = apl[place + 1];
  apl[appendListLength - 1] = DAG();
}

/// Words of the block behind an object of the list, its control word included; 0 when there is
/// none, or one so large that the object can't have left it there.
Word slackBehind(DAG object) {
  Word length = lengthOf(object);
  DAG block(object.word + 4 * (length + 1));
  if (controlWord(block) != slackMark || tagOf(block) != GARBAGE || 2 * lengthOf(block) >= length) return 0;
  return lengthOf(block) + 1;
}

/// Makes the `slack` words from `first` on a block, or gives them back when they are too few.
void keepSlack(DAG object, int place, Word first, Word slack) {
  if (slack >= leastSlack) {
    wordAt(first) = slackMark;
    setHeader(DAG(first + 4), GARBAGE, slack - 1);
    moveToFront(object, place);
  } else {
    dropFromList(place);
    release_space(first, slack);
  }
}

template <class... Operands>
inline DAG append(DAG object, Operands... operands) {
  constexpr Word added = sizeof...(Operands);
  const DAG values[] = {operands...};
  Word length = lengthOf(object);
  int place = placeInList(object);
  Word slack = 0;
  if (place == appendListLength && length < 11 - added) {
    object = enlarge(object, added);
  } else {
    if (place != appendListLength) slack = slackBehind(object);
    if (slack < added) {
      slack = length / 5 * 2 + 2;
      object = enlarge(object, slack);
    }
    setHeader(object, tagOf(object), length + added);
  }
  for (Word i = 0; i < added; ++i) object[length + i] = values[i];
  if (slack != 0) keepSlack(object, place, object.word + 4 * (length + added), slack - added);
  return object;
}

}  // namespace

DAG Append2(DAG object, DAG x) { return append(object, x); }
DAG Append3(DAG object, DAG x, DAG y) { return append(object, x, y); }

void forgetAppendSlack() {
  for (DAG& object : apl) object = DAG();
}

}  // namespace korel
