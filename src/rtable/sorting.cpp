#include "rtable/sorting.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>

#include "eval/simplify/simplify.h"
#include "eval/structure/radix_sort.h"
#include "eval/structure/sort.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/element_walks.h"
#include "rtable/queries.h"
#include "store/append.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- machine numbers

// Unsigned keys in the order of the values. What is no number comes last.
template <class T>
auto keyOf(T x) {
  if constexpr (std::is_same_v<T, double>) {
    if (std::isnan(x)) return ~std::uint64_t{0};
    std::uint64_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    return (bits >> 63) != 0 ? ~bits : bits | std::uint64_t{1} << 63;
  } else {
    using Unsigned = std::make_unsigned_t<T>;
    return static_cast<Unsigned>(static_cast<Unsigned>(x) ^ static_cast<Unsigned>(std::numeric_limits<T>::min()));
  }
}

// One pass of counters, one for each value of a byte (bench/rtables.sh, "sort of 10^6 bytes").
void countingSort(const std::int8_t* source, std::int8_t* sorted, std::int64_t n) {
  std::int64_t counts[256] = {};
  for (std::int64_t i = 0; i < n; ++i) ++counts[source[i] + 128];
  for (int value = 0; value < 256; ++value) {
    std::memset(sorted, value - 128, static_cast<std::size_t>(counts[value]));
    sorted += counts[value];
  }
}

template <class T>
void sortNumbers(unsigned char* block, std::int64_t n) {
  auto* data = reinterpret_cast<T*>(block);
  auto before = [](T a, T b) { return keyOf(a) < keyOf(b); };
  constexpr std::int64_t fewest = 256;  // passes over digits pay from here on
  T* spare = n < fewest ? nullptr : static_cast<T*>(std::malloc(static_cast<std::size_t>(n) * sizeof(T)));
  if (spare == nullptr) return std::sort(data, data + n, before);
  radixSort(data, spare, static_cast<std::uint32_t>(n), [](T x) { return keyOf(x); });
  std::free(spare);
}

template <class T>
void reverseNumbers(unsigned char* block, std::int64_t n) {
  auto* data = reinterpret_cast<T*>(block);
  if constexpr (std::is_same_v<T, double>)
    // What is no number stays last.
    while (n > 0 && std::isnan(data[n - 1])) --n;
  std::reverse(data, data + n);
}

void sortBytes(unsigned char* block, std::int64_t n) {
  auto* data = reinterpret_cast<std::int8_t*>(block);
  countingSort(data, data, n);
}

struct NumberSort {
  void (*sort)(unsigned char* block, std::int64_t n);
  void (*reverse)(unsigned char* block, std::int64_t n);
};
constexpr NumberSort numberSorts[datatypeCount] = {
    {nullptr, nullptr},
    {nullptr, nullptr},
    {sortBytes, reverseNumbers<std::int8_t>},
    {sortNumbers<std::int16_t>, reverseNumbers<std::int16_t>},
    {sortNumbers<std::int32_t>, reverseNumbers<std::int32_t>},
    {sortNumbers<std::int64_t>, reverseNumbers<std::int64_t>},
    {sortNumbers<double>, reverseNumbers<double>},
    {nullptr, nullptr},
};

// ---- the order

Order orderOf(DAG r, DAG order) {
  if (!order) {
    if (IsNumericRTable(r)) return Order::ascending;
    return IsNameOrStringRTable(r) ? Order::lexicographic : Order::address;
  }
  const Order called = orderCalled(order);
  const bool byValue = called == Order::ascending || called == Order::descending;
  if (byValue && !RtableIsReal(r)) refuseSorting();
  if (called == Order::lexicographic && !IsNameOrStringRTable(r)) refuseSorting();
  return called;
}

// ---- copies to be sorted

// Calls visit(index) on the positions of the one dimension.
template <class Visit>
void forEachPosition(DAG r, Visit visit) {
  for (std::int64_t i = lowerBound(r, 0); i <= upperBound(r, 0); ++i) {
    const auto index = static_cast<std::int32_t>(i);
    passWork(objectSteps);
    visit(&index, i - lowerBound(r, 0));
  }
}

// Rectangular, with the elements of `r`.
DAG plainCopy(DAG r) {
  RTableSettings settings = CopyRTableSettings(r, false);
  settings.dimensions = 1;
  std::int32_t bounds[] = {lowerBound(r, 0), upperBound(r, 0)};
  DAG copy = RTableCreate(settings, DAG(), bounds, DataMode::cleared);
  if (functionCount(r) == 0 && storageOf(r) == storageRectangular) {
    if (rawField(r, rtableData) != 0) std::memcpy(dataOf(copy), dataOf(r), static_cast<std::size_t>(RTableNumBytes(r)));
    if (holdsObjects(copy)) updategens(copy);
    return copy;
  }
  forEachPosition(r, [&](const std::int32_t* index, std::int64_t place) {
    if (DAG element = selectElement(r, index)) RTableSetDagToDataOffset(copy, place, element);
  });
  return copy;
}

// The elements as expressions, in order, put back one by one.
void sortByObjects(DAG r, Order order, DAG procedure) {
  const auto n = static_cast<Word>(rawField(r, rtableCount));
  DAG members = newl2(n + 1, EXPSEQ);
  for (Word i = 0; i < n; ++i) {
    DAG element = RTableDataOffsetToDag(r, i);
    members[i + 1] = element ? element : null;
  }
  updategen(r);
  DAG sorted = sortedMembers(members, order, procedure);
  updategen(sorted);
  for (Word i = 0; i < n; ++i) RTableSetDagToDataOffset(r, i, sorted[i + 1]);
}

}  // namespace

DAG SortRTable(DAG r, DAG order) {
  const Order by = orderOf(r, order);
  if (dimensionsOf(r) != 1) KernelException("only Vectors or 1D Arrays can be sorted");
  const bool isReadOnly = rtableFlag(r, rtableReadOnly) != 0;
  DAG sorted = plainCopy(r);
  const NumberSort& numbers = numberSorts[datatypeOf(r)];
  const std::int64_t n = rawField(sorted, rtableCount);
  const bool isComplex = datatypeOf(r) == dataComplexFloat || datatypeOf(r) == dataComplexFloat64;
  if (n > 1 && (by == Order::procedure || datatypeOf(r) == dataDag)) {
    sortByObjects(sorted, by, order);
  } else if (n > 1 && !isComplex) {
    numbers.sort(dataOf(sorted), n);
    if (by == Order::descending) numbers.reverse(dataOf(sorted), n);
  }
  if (isReadOnly) updateFlag(sorted, rtableReadOnly, 1);
  return sorted;
}

// ---- the entries of Nag sparse storage

namespace {

// The entries of `r` as a permutation of their places, `major` before the other dimension.
void sortEntries(DAG r, Word major) {
  const auto n = static_cast<Word>(tailOf(r, 2));
  const Word dimensions = dimensionsOf(r);
  const std::int64_t capacity = rawField(r, rtableCount);
  auto* vectors = reinterpret_cast<std::int32_t*>(dataOf(r));
  const std::int32_t* first = vectors + capacity * major;
  const std::int32_t* second = dimensions == 2 ? vectors + capacity * (1 - major) : first;
  const auto bytes = static_cast<std::size_t>(rtableElementBytes[datatypeOf(r)]);
  // One block for the order of the places and for the vector or the elements that are being moved.
  auto* order = static_cast<Word*>(std::malloc(n * (sizeof(Word) + std::max(bytes, sizeof(std::int32_t)))));
  if (order == nullptr) KernelException("not enough memory to allocate rtable");
  auto* moved = reinterpret_cast<unsigned char*>(order + n);
  for (Word i = 0; i < n; ++i) order[i] = i;
  std::sort(order, order + n, [&](Word a, Word b) {
    return first[a] != first[b] ? first[a] < first[b] : second[a] != second[b] ? second[a] < second[b] : a < b;
  });
  auto rearrange = [&](unsigned char* items, std::size_t size) {
    for (Word i = 0; i < n; ++i) std::memcpy(moved + i * size, items + order[i] * size, size);
    std::memcpy(items, moved, n * size);
  };
  unsigned char* elements = elementPlace(r, 0);
  rearrange(elements, bytes);
  for (Word k = 0; k < dimensions; ++k) rearrange(reinterpret_cast<unsigned char*>(vectors + capacity * k), 4);
  std::free(order);
}

DAG RTableSortSparseIndices(DAG r, DAG which) {
  if (!isNagSparse(r)) KernelException("only a NAG-sparse %1 can have its index vectors sorted", subtypeWord(r));
  if (dimensionsOf(r) > 2) KernelException("not implemented Arrays with more than 2 dimensions");
  Word major = 0;
  if (which && dimensionsOf(r) == 2) {
    if (!isName(which)) KernelException("name expected for second argument");
    if (!hasText(which, "row") && !hasText(which, "column")) KernelException("unrecognized option %1", which);
    major = hasText(which, "column") ? 1 : 0;
  }
  if (tailOf(r, 2) > 1) sortEntries(r, major);
  return r;
}

}  // namespace

DAG builtin::rtable_sort_indices(const BuiltinCall& call) {
  if (argumentCount(call) < 1 || argumentCount(call) > 2) wrongParameters(call);
  DAG r = call.arguments[1];
  if (!isTag(r, RTABLE)) KernelException("rtable expected");
  return RTableSortSparseIndices(r, argumentCount(call) == 2 ? call.arguments[2] : DAG());
}

}  // namespace korel
