#include "rtable/selection.h"

#include "eval/simplify/simplify.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

[[noreturn]] void outOfRange(DAG r) { KernelException("%1 index out of range", subtypeWord(r)); }
[[noreturn]] void badIndex(DAG r) { KernelException("bad index into %1", subtypeWord(r)); }

// Beyond a word nothing is within the bounds.
bool readIndex(DAG r, Word k, DAG x, std::int32_t& number) {
  const std::int64_t i = isImmediate(x) ? immediateValue(x) : FitIntoWord(x) ? LongLongValue(x) : INT64_MAX;
  if (i < lowerBound(r, k) || i > upperBound(r, k)) return false;
  number = static_cast<std::int32_t>(i);
  return true;
}

bool readIndices(DAG r, DAG index, std::int32_t* numbers) {
  const Word n = memberCount(index);
  for (Word k = 0; k < n; ++k)
    if (!isInteger(index[k + 1])) KernelException("integer indices required for %1", subtypeWord(r));
  if (n != dimensionsOf(r)) KernelException("number of indices does not match rank");
  for (Word k = 0; k < n; ++k)
    if (!readIndex(r, k, index[k + 1], numbers[k])) return false;
  return true;
}

}  // namespace

void CheckBounds(DAG r, DAG index, std::int32_t* numbers) {
  if (!readIndices(r, index, numbers)) outOfRange(r);
}
bool IsInBounds(DAG r, DAG index, std::int32_t* numbers) { return readIndices(r, index, numbers); }

// ---- blocks

namespace {

// From the end, in a Matrix or Vector.
std::int64_t counted(DAG r, Word k, DAG x) {
  std::int64_t i;
  if (!readLongLong(x, i)) outOfRange(r);
  return i < 0 && subtypeOf(r) != subtypeArray ? i + upperBound(r, k) + 1 : i;
}
std::int32_t countedWithin(DAG r, Word k, DAG x) {
  const std::int64_t i = counted(r, k, x);
  if (i < lowerBound(r, k) || i > upperBound(r, k)) outOfRange(r);
  return static_cast<std::int32_t>(i);
}

struct Bounds {
  std::int32_t lower, upper;
};
Bounds getRangeBounds(DAG r, Word k, DAG range) {
  if (!isInteger(range[1]) || !isInteger(range[2])) KernelException("non-integer ranges in %1 index", subtypeWord(r));
  const std::int64_t lower = counted(r, k, range[1]), upper = counted(r, k, range[2]);
  if (upper + 1 < lower) KernelException("inverted range in %1 index", subtypeWord(r));
  auto within = [&](std::int64_t i) { return i >= lowerBound(r, k) && i <= upperBound(r, k); };
  const bool isEmpty = upper + 1 == lower;
  // An empty dimension has no end within its bounds, and an empty part.
  const bool wholeEmpty = isEmpty && lower == lowerBound(r, k) && upper == upperBound(r, k);
  if (!wholeEmpty && (isEmpty ? !within(lower) && !within(upper) : !within(lower) || !within(upper))) outOfRange(r);
  return {static_cast<std::int32_t>(lower), static_cast<std::int32_t>(upper)};
}

DAG expandedList(DAG r, Word k, DAG members) {
  std::int64_t count = 0;
  for (Word i = 1; i < lengthOf(members); ++i) {
    if (isTag(members[i], RANGE)) {
      Bounds bounds = getRangeBounds(r, k, members[i]);
      count += std::int64_t{bounds.upper} - bounds.lower + 1;
    } else if (isInteger(members[i])) {
      countedWithin(r, k, members[i]);
      ++count;
    } else {
      badIndex(r);
    }
  }
  if (count >= maxLength) KernelException("object too large");
  DAG expanded = newl2(static_cast<Word>(count) + 1, EXPSEQ);
  Word at = 1;
  for (Word i = 1; i < lengthOf(members); ++i) {
    if (!isTag(members[i], RANGE)) {
      expanded[at++] = simpl(Newint(countedWithin(r, k, members[i])));
      continue;
    }
    Bounds bounds = getRangeBounds(r, k, members[i]);
    for (std::int64_t x = bounds.lower; x <= bounds.upper; ++x)
      expanded[at++] = simpl(Newint(static_cast<std::int32_t>(x)));
  }
  return expanded;
}

Span spanOf(DAG r, Word k, DAG member) {
  if (isInteger(member)) {
    const std::int32_t i = countedWithin(r, k, member);
    return {true, i, i, DAG()};
  }
  if (isTag(member, RANGE)) {
    Bounds bounds = getRangeBounds(r, k, member);
    return {false, bounds.lower, bounds.upper, DAG()};
  }
  if (isTag(member, LIST)) return {false, 0, 0, expandedList(r, k, member[1])};
  badIndex(r);
}

// Indices that are no integers keep their dimension.
Word rankOfSelection(DAG r, DAG index) {
  Word rank = dimensionsOf(r);
  if (memberCount(index) > rank) KernelException("number of indices exceeds rank");
  for (Word k = 1; k < lengthOf(index); ++k)
    if (isInteger(index[k])) --rank;
  return rank;
}

}  // namespace

void expandIndex(DAG r, DAG index, IndexedBlock& s) {
  const Word given = memberCount(index);
  s.dimensions = dimensionsOf(r);
  s.rank = rankOfSelection(r, index);
  if (given < s.dimensions && subtypeOf(r) == subtypeMatrix) KernelException("Matrix requires two indices");
  if (given < s.dimensions && subtypeOf(r) != subtypeArray) KernelException("Vector requires one index");
  for (Word k = 0; k < s.dimensions; ++k)
    s.spans[k] = k < given ? spanOf(r, k, index[k + 1]) : Span{false, lowerBound(r, k), upperBound(r, k), DAG()};
}

namespace {

std::int32_t indexAt(const Span& span, std::int64_t position) {
  if (!span.list) return static_cast<std::int32_t>(span.lower + position);
  return static_cast<std::int32_t>(LongLongValue(span.list[position + 1]));
}

// Calls visit(index, place): the index in the selected rtable, and the position within the block, from 0.
template <class Visit>
void forEachSelected(const IndexedBlock& s, Visit visit) {
  std::int32_t index[maxDimensions];
  std::int32_t place[2 * maxDimensions];
  for (Word k = 0; k < s.dimensions; ++k) {
    place[2 * k] = 0;
    place[2 * k + 1] = static_cast<std::int32_t>(s.spans[k].count() - 1);
  }
  forEachIndex(place, s.dimensions, [&](const std::int32_t* position) {
    std::int32_t inBlock[maxDimensions];
    Word at = 0;
    for (Word k = 0; k < s.dimensions; ++k) {
      index[k] = indexAt(s.spans[k], position[k]);
      if (!s.spans[k].isSingle) inBlock[at++] = position[k];
    }
    passWork(objectSteps);
    visit(static_cast<const std::int32_t*>(index), inBlock);
  });
}

// Bounds of the block as an rtable: an Array keeps those of its ranges.
void blockBounds(DAG r, const IndexedBlock& s, std::int32_t* bounds) {
  for (Word k = 0, at = 0; k < s.dimensions; ++k) {
    const Span& span = s.spans[k];
    if (span.isSingle) continue;
    const bool keeps = subtypeOf(r) == subtypeArray && !span.list;
    bounds[2 * at] = keeps ? span.lower : 1;
    bounds[2 * at + 1] = keeps ? span.upper : static_cast<std::int32_t>(span.count());
    ++at;
  }
}

DAG selectBlock(DAG r, const IndexedBlock& s) {
  RTableSettings settings = CopyRTableSettings(r, false);
  if (storageOf(r) == storageSparse) {
    settings.storage = storageSparse;
    settings.b2 = wholeSparse;
  }
  settings.dimensions = static_cast<int>(s.rank);
  if (subtypeOf(r) == subtypeMatrix && s.rank == 1)
    settings.subtype = s.spans[1].isSingle ? subtypeColumnVector : subtypeRowVector;
  std::int32_t bounds[2 * maxDimensions];
  blockBounds(r, s, bounds);
  DAG block = RTableCreate(settings, DAG(), bounds, DataMode::cleared);
  forEachSelected(s, [&](const std::int32_t* index, std::int32_t* place) {
    for (Word k = 0; k < s.rank; ++k) place[k] += bounds[2 * k];
    if (DAG value = selectElement(r, index)) assignElement(block, place, value);
  });
  return block;
}

bool isOneElement(DAG r, DAG index) {
  return memberCount(index) == dimensionsOf(r) && everyMember(index, [](DAG x) { return isInteger(x); });
}

// The indices of one element; the sequence itself where no index counts from the end.
void readElementIndex(DAG r, DAG index, std::int32_t* numbers, Access& a) {
  if (IsInBounds(r, index, numbers)) {
    a.sequence = isSimplified(index) ? index : DAG();
    return;
  }
  for (Word k = 0; k < dimensionsOf(r); ++k) numbers[k] = countedWithin(r, k, index[k + 1]);
}

}  // namespace

DAG SelectFromRTable(DAG r, DAG index) {
  index = asSequence(index);
  if (isOneElement(r, index)) {
    std::int32_t numbers[maxDimensions];
    Access a{r, numbers, DAG()};
    readElementIndex(r, index, numbers, a);
    return selectElement(a);
  }
  IndexedBlock selection;
  expandIndex(r, index, selection);
  return selectBlock(r, selection);
}

namespace {

void assignToAll(DAG r, const IndexedBlock& s, DAG value) {
  forEachSelected(s, [&](const std::int32_t* index, std::int32_t*) { assignElement(r, index, value); });
}

// Cuts the selection to the size of `block`, dimension by dimension; what it selected is zero then.
void cutToBlock(DAG r, IndexedBlock& s, DAG block) {
  const IndexedBlock whole = s;
  bool isFilled = false;
  for (Word k = 0, at = 0; k < s.dimensions; ++k) {
    Span& span = s.spans[k];
    if (span.isSingle) continue;
    const std::int64_t extent = extentOf(block, at++);
    if (span.count() < extent) KernelException("number of indices does not match rank");
    if (span.count() == extent) continue;
    if (!isFilled) assignToAll(r, whole, RTableZero(r));
    isFilled = true;
    if (span.list) span.list = copysub(span.list, 0, static_cast<Word>(extent));
    else span.upper = static_cast<std::int32_t>(span.lower + extent - 1);
  }
}

void assignBlock(DAG r, DAG index, DAG block) {
  if (dimensionsOf(block) != rankOfSelection(r, index))
    KernelException("rank of left hand side does not match rank of right hand side");
  IndexedBlock s;
  expandIndex(r, index, s);
  cutToBlock(r, s, block);
  forEachSelected(s, [&](const std::int32_t* at, std::int32_t* place) {
    for (Word k = 0; k < s.rank; ++k) place[k] += lowerBound(block, k);
    if (DAG value = selectElement(block, place)) assignElement(r, at, value);
  });
}

}  // namespace

void AssignToRTable(DAG r, DAG index, DAG value) {
  if (isObject(value) && (value == r || hasExceptInPROCorUNEVAL(value, r))) KernelException("recursive assignment");
  if (rtableFlag(r, rtableReadOnly) != 0) KernelException("cannot assign to a read-only %1", subtypeWord(r));
  index = asSequence(index);
  if (isOneElement(r, index)) {
    std::int32_t numbers[maxDimensions];
    Access a{r, numbers, DAG()};
    readElementIndex(r, index, numbers, a);
    return assignElement(a, value);
  }
  if (isTag(value, RTABLE)) return assignBlock(r, index, value);
  IndexedBlock selection;
  expandIndex(r, index, selection);
  assignToAll(r, selection, value);
}

DAG RTableNormalizeIndex(DAG r, DAG index) {
  IndexedBlock s;
  expandIndex(r, asSequence(index), s);
  DAG result = newl2(s.dimensions + 1, EXPSEQ);
  for (Word k = 0; k < s.dimensions; ++k) {
    const Span& span = s.spans[k];
    if (span.list) result[k + 1] = simpl(new2(LIST, simpl(span.list)));
    else if (span.isSingle) result[k + 1] = simpl(Newint(span.lower));
    else result[k + 1] = simpl(new3(RANGE, simpl(Newint(span.lower)), simpl(Newint(span.upper))));
  }
  return simpl(result);
}

}  // namespace korel
