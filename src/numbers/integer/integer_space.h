#pragma once
// How a routine ends that has built an integer in space of its own.

#include "numbers/integer/integer.h"
#include "store/objects.h"

namespace korel {

/// Gives back the unused tail of heap `x`, which was allocated with `space` words.
inline DAG trimmed(DAG x, Word space) {
  if (lengthOf(x) != space) shorten(x, space, lengthOf(x));
  return x;
}

/// Makes what `x`, allocated with `space` words, leaves unused an object of its own: a long operation
/// may be cut short, and the collector then finds the heap in order. `trimmed` gives it back all the same.
inline void coverTail(DAG x, Word space) {
  DAG tail(x.word + 4 * lengthOf(x) + 4);
  Word unused = space - lengthOf(x);
  if (unused == 0) return;
  if (unused == 1) {
    controlWord(tail) = 1;  // a free word
    return;
  }
  controlWord(tail) = 0;
  setHeader(tail, GARBAGE, unused - 1);
}

/// The canonical integer of heap `x`, which was allocated with `space` words: an immediate releases
/// them, otherwise the unused tail goes back.
inline DAG settled(DAG x, Word space) {
  DAG result = MakeImmediate(x);
  if (result == x) return trimmed(x, space);
  release(x, space);
  return result;
}

/// Header of heap `x` for the `count` digits that have been written, less the zeros on top.
inline DAG withDigits(DAG x, Tag sign, Word count) {
  const Word* digit = digitsOf(x);
  while (count > 1 && digit[count - 1] == 0) --count;
  if (count == 1 && digit[0] == 0) sign = INTPOS;
  setHeader(x, sign, count + 1);
  controlWord(x) = genpat;
  return x;
}

/// Gives back an intermediate result that nothing refers to; `kept` are what it may be one of. Those of
/// middling length are left to the collector, which joins neighbours: taken piece by piece for other
/// lengths they would leave ends that no request fits and every search passes (bench/float_bench.cpp).
template <class... Kept>
inline void discard(DAG x, Kept... kept) {
  constexpr Word shortLength = 140, longLength = 2048;
  if (!isObject(x) || (... || (x == kept))) return;
  Word length = lengthOf(x);
  if (length < shortLength || length >= longLength) release(x, length);
}

/// A fresh heap copy of `x` in either form, with room for `extra` more words.
inline DAG softCopy(DAG x, Word extra = 0) { return CopyIntoSoftInt(news(softIntLengthBound(x) + extra), x); }

}  // namespace korel
