#include "rtable/element_access.h"

#include <cstring>
#include <iterator>

#include "eval/evaluate/known_values.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "rtable/element_formats.h"
#include "rtable/offsets.h"
#include "rtable/shapes.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

DAG IndexToEXPSEQ(Word n, const std::int32_t* index) {
  DAG sequence = newl2(n + 1, EXPSEQ);
  for (Word k = 0; k < n; ++k) sequence[k + 1] = simpl(Newint(index[k]));
  return simpl(sequence);
}

DAG sequenceOf(Access& a) {
  if (!a.sequence) a.sequence = IndexToEXPSEQ(dimensionsOf(a.r), a.index);
  return a.sequence;
}

bool isInMissingHalf(const Access& a) {
  if (storageOf(a.r) != storageSparse || dimensionsOf(a.r) != 2) return false;
  const std::int32_t qualifier = tailOf(a.r, 1);
  return (qualifier == upperSparse && a.index[0] > a.index[1]) || (qualifier == lowerSparse && a.index[0] < a.index[1]);
}

namespace {

[[noreturn]] void refuseLookup(Access& a) {
  KernelException("unable to lookup index (%0) -- not in storage", sequenceOf(a));
}
[[noreturn]] void refuseStore(Access& a) {
  KernelException("unable to store value at index (%0) -- no storage", sequenceOf(a));
}

// ---- Korel sparse

DAG selectHashed(Access& a) {
  DAG table = a.r[rtableData];
  if (!table) return RTableZero(a.r);
  PairAddress pair = search(sequenceOf(a).word, table);
  return pair == notFound ? RTableZero(a.r) : pairValue(pair);
}

void assignHashed(Access& a, DAG value) {
  DAG element = DagToRTableData(a.r, value).object, table = a.r[rtableData], key = sequenceOf(a);
  stepEvaluationClock();
  if (element == RTableZero(a.r)) {
    if (table) hashdelete(key.word, table);
    return;
  }
  if (isInMissingHalf(a)) refuseStore(a);
  if (!table) {
    AllocateRTableData(a.r);
    table = a.r[rtableData];
  }
  updategen(key);
  updategen(element);
  hashunique(key.word, element, table);
  updategen(table);
  updategen(table[bucketIndex(key.word, lengthOf(table))]);
}

// ---- Nag sparse: entries side by side, in the order in which they came

std::int32_t* indexVector(DAG r, Word k) {
  return reinterpret_cast<std::int32_t*>(dataOf(r)) + std::int64_t{k} * rawField(r, rtableCount);
}
Word entriesInUse(DAG r) { return rawField(r, lengthOf(r) - 2); }
void setEntriesInUse(DAG r, Word count) { UpdateRTABLE(r, lengthOf(r) - 2, count); }

// Position of the entry, or -1.
std::int64_t findEntry(const Access& a) {
  const Word n = dimensionsOf(a.r);
  for (std::int64_t at = entriesInUse(a.r); at-- > 0;) {
    Word k = 0;
    while (k < n && indexVector(a.r, k)[at] == a.index[k]) ++k;
    if (k == n) return at;
  }
  return -1;
}

// The last entry takes the place of the removed one.
void removeNagSparse(DAG r, std::int64_t at) {
  const Word last = entriesInUse(r) - 1;
  for (Word k = 0; k < dimensionsOf(r); ++k) indexVector(r, k)[at] = indexVector(r, k)[last];
  std::memcpy(elementPlace(r, at), elementPlace(r, last), static_cast<std::size_t>(rtableElementBytes[datatypeOf(r)]));
  setEntriesInUse(r, last);
}

void appendEntry(Access& a, const RawElement& element) {
  const Word n = entriesInUse(a.r);
  if (n == rawField(a.r, rtableCount)) ReallocNagSparseData(a.r, std::int64_t{n} + (n <= 100 ? 10 : n / 10));
  setEntriesInUse(a.r, n + 1);
  for (Word k = 0; k < dimensionsOf(a.r); ++k) indexVector(a.r, k)[n] = a.index[k];
  storeRaw(a.r, n, element);
}

void assignEntry(Access& a, DAG value) {
  const RawElement element = DagToRTableData(a.r, value);
  const std::int64_t at = findEntry(a);
  if (formatOf(a.r).isZero(element)) {
    stepEvaluationClock();
    if (at >= 0) removeNagSparse(a.r, at);
  } else if (isInMissingHalf(a)) {
    refuseStore(a);
  } else if (at >= 0) {
    storeRaw(a.r, at, element);
  } else {
    appendEntry(a, element);
  }
}

}  // namespace

// ---- plain access

DAG selectPlain(Access& a) {
  switch (storageOf(a.r)) {
    case storageSparse: {
      if (isInMissingHalf(a)) refuseLookup(a);
      if (isKorelSparse(a.r)) return selectHashed(a);
      const std::int64_t at = findEntry(a);
      return at < 0 ? RTableZero(a.r) : RTableDataOffsetToDag(a.r, at);
    }
    case storageEmpty: refuseLookup(a);
    default: {
      const std::int64_t offset = offsetOf(a.r, a.index);
      if (rawField(a.r, rtableData) == 0) {
        if (dimensionsOf(a.r) == 0) return RTableZero(a.r);
        refuseLookup(a);
      }
      if (offset < 0) refuseLookup(a);
      return RTableDataOffsetToDag(a.r, offset);
    }
  }
}

void assignPlain(Access& a, DAG value) {
  switch (storageOf(a.r)) {
    case storageSparse: return isKorelSparse(a.r) ? assignHashed(a, value) : assignEntry(a, value);
    case storageEmpty: refuseStore(a);
    default: {
      const std::int64_t offset = offsetOf(a.r, a.index);
      if (rawField(a.r, rtableData) == 0 && dimensionsOf(a.r) == 0) return;
      if (offset < 0 || rawField(a.r, rtableData) == 0) refuseStore(a);
      RTableSetDagToDataOffset(a.r, offset, value);
    }
  }
}

DAG selectElement(Access a) { return functionCount(a.r) == 0 ? selectPlain(a) : selectShaped(a); }
void assignElement(Access a, DAG value) {
  if (functionCount(a.r) == 0) assignPlain(a, value);
  else assignShaped(a, value);
}

// ---- names

void accessRoutineName(DAG r, bool assigns, char* name) {
  constexpr const char* rankParts[] = {"ZEROD", "ONED", "TWOD", ""};
  const Word rank = dimensionsOf(r);
  const bool isChained = functionCount(r) > 1;
  const StorageAxis& storage = storageAxis[storageOf(r)];
  ShapeName shape = functionCount(r) == 0 ? ShapeName{"", true} : shapeName(r);
  std::strcpy(name, assigns ? "assign" : "select");
  std::strcat(name, shape.part);
  if (std::strcmp(shape.part, "NonKernel") == 0) return;
  if (shape.hasRank) {
    const bool sameForAllRanks = storageOf(r) == storageScalar || storageOf(r) == storageEmpty;
    if (functionCount(r) > 0 || rank == 0 || !sameForAllRanks) std::strcat(name, rankParts[rank < 3 ? rank : 3]);
    if (functionCount(r) == 0 && rank == 0) return;
  }
  std::strcat(name, isChained ? "Chained" : isKorelSparse(r) ? "KorelSparse" : storage.routine);
  const bool hasOrder = storage.isOrdered && !isChained && rank >= 2;
  if (hasOrder) std::strcat(name, isCOrder(r) ? "C" : "Fortran");
}

}  // namespace korel
