#include "store/objects.h"

#include <bit>
#include <cstring>

#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"

namespace korel {

DAG static_hfloat;

namespace {

DAG newCleared(Word n, Tag tag, std::initializer_list<DAG> given) {
  DAG s = news(n);
  headerWord(s) = tag | n;
  DAG* field = &s[1];
  for (DAG x : given) *field++ = x;
  std::memset(static_cast<void*>(field), 0, 4 * (n - 1 - given.size()));
  return s;
}

// The one HFLOAT outside the heap: control word, header, and a double at a multiple of 8. Its address
// must fit a word, so that it is taken from the range of objects all the same.
DAG staticHfloat() {
  if (!static_hfloat) static_hfloat = newDoubleAligned(2, HFLOAT);
  return static_hfloat;
}

}  // namespace

DAG newl1(Word n) { return newCleared(n, NOTAG, {}); }
DAG newl2(Word n, Tag tag) { return newCleared(n, tag, {}); }
DAG newl3(Word n, Tag tag, DAG a) { return newCleared(n, tag, {a}); }
DAG newl4(Word n, Tag tag, DAG a, DAG b) { return newCleared(n, tag, {a, b}); }
DAG newl5(Word n, Tag tag, DAG a, DAG b, DAG c) { return newCleared(n, tag, {a, b, c}); }
DAG newl6(Word n, Tag tag, DAG a, DAG b, DAG c, DAG d) { return newCleared(n, tag, {a, b, c, d}); }
DAG newl7(Word n, Tag tag, DAG a, DAG b, DAG c, DAG d, DAG e) { return newCleared(n, tag, {a, b, c, d, e}); }

DAG newSequence(std::initializer_list<DAG> members) {
  return newCleared(static_cast<Word>(members.size() + 1), EXPSEQ, members);
}
DAG newCall(DAG function, std::initializer_list<DAG> arguments) {
  return new3(FUNCTION, function, newSequence(arguments));
}

DAG newLocalName(const char* text) {
  DAG s = newCleared(textLength(std::strlen(text)), NAME, {DAG(), null});
  std::strcpy(textOf(s), text);
  return s;
}

DAG newForeign(Word n) {
  foreignDAG = true;
  Word block = n < maxLength ? get_space(n + 1) : 0;
  foreignDAG = false;
  if (block == 0) return DAG();
  DAG s(block + 4);
  controlWord(s) = genpat | protectedBit;
  setHeader(s, FOREIGN, n);
  std::memset(static_cast<void*>(&s[1]), 0, 4 * (n - 1));
  return s;
}

DAG newDoubleAligned(Word n, Tag tag) {
  DAG s = newl2(n + 2, tag);
  if ((s.word + 4) % 8 == 0) {
    shorten(s, n + 2, n + 1);
    return s;
  }
  // One word up: what was the control word is a block of its own.
  Word first = s.word - 4;
  s = DAG(s.word + 4);
  controlWord(s) = genpat;
  setHeader(s, tag, n + 1);
  release_space(first, 1);
  return s;
}

DAG NewHFloat(double x, bool inPlace) {
  DAG s = inPlace ? staticHfloat() : newDoubleAligned(2, HFLOAT);
  auto bits = std::bit_cast<std::uint64_t>(x);
  rawField(s, 1) = static_cast<Word>(bits >> 32);
  rawField(s, 2) = static_cast<Word>(bits);
  return s;
}

double hfloatValue(DAG s) { return std::bit_cast<double>(std::uint64_t{rawField(s, 1)} << 32 | rawField(s, 2)); }

}  // namespace korel
