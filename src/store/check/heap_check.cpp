// The check of the whole heap, and its figures.
//
// Free blocks look like objects, so that a walk that is to find faults must know them: a map with one bit a
// word, filled from the free lists. What is on no list, but dead, are GARBAGE objects of other origin.

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "store/check/verify.h"
#include "store/collect/collector_phases.h"
#include "store/objects.h"
#include "store/reference_fields.h"

namespace korel {

namespace {

// One bit for each word between the lowest chunk and the highest.
class WordBits {
 public:
  WordBits() : bits_(static_cast<Word*>(std::calloc((historage - lostorage) / 128 + 1, sizeof(Word)))) {}
  ~WordBits() { std::free(bits_); }
  WordBits(const WordBits&) = delete;
  WordBits& operator=(const WordBits&) = delete;

  explicit operator bool() const { return bits_ != nullptr; }
  void set(Word address) { bits_[index(address) / 32] |= 1u << (index(address) % 32); }
  bool test(Word address) const { return (bits_[index(address) / 32] >> (index(address) % 32)) & 1; }

 private:
  static Word index(Word address) { return (address - lostorage) / 4; }
  Word* bits_;
};

void noteFreeBlocks(WordBits& free) {
  for (int list = 1; list < freeListCount; ++list)
    for (Word block = freelist[list]; block != 0; block = wordAt(block)) {
      for (Word i = 0; i < freeSize(block); ++i) free.set(block + 4 * i);
    }
}

// Visits each object until `visit` answers false.
template <class Visit>
bool forEachObject(const WordBits& free, Visit visit) {
  for (Word chunk = allstorage; chunk != 0; chunk = wordAt(chunk)) {
    Word end = chunk + 4 * wordAt(chunk + 4);
    for (Word at = chunk + 8; at < end;) {
      if (free.test(at) || (wordAt(at) & 1) != 0) {
        at += 4;
        continue;
      }
      DAG s(at + 4);
      if (!visit(s, at, end)) return false;
      at += 4 * (lengthOf(s) + 1);
    }
  }
  return true;
}

char violation[200];

[[gnu::format(printf, 1, 2)]] const char* tell(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(violation, sizeof violation, format, arguments);
  va_end(arguments);
  return violation;
}

const char* checkObject(DAG s, Word end) {
  Word number = headerWord(s) >> 26;
  if (number > tagCount) return tell("0x%x: tag %u", s.word, number);
  if (lengthOf(s) == 0 || lengthOf(s) > (end - s.word) / 4)
    return tell("0x%x: length %u passes the end of its chunk", s.word, lengthOf(s));
  Word label = generationOf(s);
  if (label < firstMarkLabel && label > static_cast<Word>(gcgen))
    return tell("0x%x: generation %u, and the current one is %d", s.word, label, gcgen);
  return nullptr;
}

// A statement's end lowers `gene` from the current generation down to the first that has it as low, so
// that it never falls from one generation to the next; the marks of two collections never mix.
const char* checkGenerations() {
  for (int g = 2; g < gcgen; ++g)
    if (gene[g] > gene[g + 1])
      return tell("generation %d ended at level %d, and the next at %d", g, gene[g], gene[g + 1]);
  if (genc[gcgen] == 0) return tell("generation %d is current and released", gcgen);
  bool collectedBefore = totgcs != 0;
  if (genc[currentMark] != collectedBefore || genc[previousMark] != 0 || currentMark == previousMark)
    return tell("mark labels %u, %u", currentMark, previousMark);
  return nullptr;
}

// The walk over references gets no argument along.
const WordBits* objectStarts;
DAG referrer;
bool foundViolation;

void checkReference(DAG x) {
  if (foundViolation || !isObject(x) || x == static_hfloat) return;
  bool inHeap = VerifyPointer(x) && x.word >= lostorage + 4 && x.word < historage;
  if (inHeap && objectStarts->test(x.word)) return;
  foundViolation = true;
  const char* tag = referrer ? DagIDToName(headerWord(referrer) >> 26) : "root";
  tell("0x%x (%s) refers to 0x%x, which is no object", referrer.word, tag == nullptr ? "no tag" : tag, x.word);
}

void checkReferencesOf(DAG s) {
  referrer = s;
  if (hasTag(s, RTABLE)) walkRtable(s, checkReference);
  else forEachReferenceField(s, [](DAG& field) { checkReference(field); });
}

}  // namespace

const char* checkHeap() {
  if (const char* found = checkGenerations()) return found;
  WordBits free, starts;
  if (!free || !starts) return "no memory to check the heap";
  noteFreeBlocks(free);
  const char* found = nullptr;
  forEachObject(free, [&](DAG s, Word, Word end) {
    found = checkObject(s, end);
    if (found == nullptr) starts.set(s.word);
    return found == nullptr;
  });
  if (found != nullptr) return found;

  objectStarts = &starts;
  foundViolation = false;
  referrer = DAG();
  forEachRoot(checkReference);
  forEachObject(free, [](DAG s, Word, Word) {
    if (isAlive(s)) checkReferencesOf(s);
    return !foundViolation;
  });
  return foundViolation ? violation : nullptr;
}

HeapFigures heapFigures() {
  HeapFigures figures;
  for (Word chunk = allstorage; chunk != 0; chunk = wordAt(chunk)) figures.words += wordAt(chunk + 4) - 2;
  WordBits free;
  if (!free) return figures;
  noteFreeBlocks(free);
  forEachObject(free, [&](DAG s, Word, Word) {
    (isAlive(s) ? figures.live : figures.dead) += lengthOf(s) + 1;
    ++figures.objects;
    return true;
  });
  return figures;
}

}  // namespace korel
