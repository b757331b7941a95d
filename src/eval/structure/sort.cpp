#include "eval/structure/sort.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "algebra/polynomial_order.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "eval/structure/radix_sort.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

void refuseSorting() { KernelException("invalid arguments to sort"); }

namespace {

[[noreturn]] void invalidArguments() { refuseSorting(); }

bool isPlainNumber(DAG x) { return isImmediate(x) || (isNumeric(x) && !isUndefined(x)); }

// What a numeric order takes: real numbers, the infinities, and undefined values of any kind.
bool isComparable(DAG x) { return isNumeric(x) || isUndefined(x) || (isInfinite(x) && !hasTag(x, COMPLEX)); }

// ---- the orders

struct Ascending {
  bool operator()(DAG a, DAG b) const {
    // Most members are small integers, whose words compare as their values do. The negative zero has a
    // word of its own and goes the long way.
    if (isImmediate(a) && isImmediate(b) && a != consm0 && b != consm0)
      return static_cast<std::int32_t>(a.word) <= static_cast<std::int32_t>(b.word);
    if (a == b || isUndefined(a) || isUndefined(b)) return true;
    return compcon(a, b) <= 0;
  }
};

struct Descending {
  bool operator()(DAG a, DAG b) const { return Ascending()(b, a); }
};

struct Lexicographic {
  bool operator()(DAG a, DAG b) const { return std::strcmp(textOf(a), textOf(b)) <= 0; }
};

struct Address {
  bool operator()(DAG a, DAG b) const { return a.word <= b.word; }
};

[[noreturn]] void notBoolean() { KernelException("sort: 2nd argument must be a boolean valued function"); }

struct Procedure {
  DAG procedure;

  static DAG quoted(DAG x) { return isImmediate(x) ? x : new2(UNEVAL, x); }
  bool operator()(DAG a, DAG b) const {
    // A constant procedure may have been simplified to its value, which no call makes boolean.
    if (isAmong(procedure, numberTags)) notBoolean();
    DAG truth = simpl(eval(newCall(procedure, {quoted(a), quoted(b)})));
    if (truth == ini("true")) return true;
    if (truth == ini("false")) return false;
    notBoolean();
  }
};

// ---- merge sort by links

// Field i of `links` is the position of the member behind member i, 0 behind the last.
Word& link(DAG links, Word i) { return rawField(links, i); }

// The `n`-th member behind `first`.
Word listRest(DAG links, Word first, Word n) {
  for (; n != 0; --n) first = link(links, first);
  return first;
}

// Sorts the chain of `count` members that begins at `first` and ends in a 0; gives its new beginning.
// `inOrder` compares the members at two positions.
template <class Comparator>
Word mergeSort(const Comparator& inOrder, DAG links, Word first, Word count) {
  if (count < 2) return first;
  if (count == 2) {
    Word second = link(links, first);
    if (inOrder(first, second)) return first;
    link(links, second) = first;
    link(links, first) = 0;
    return second;
  }
  Word half = count / 2;
  Word last = listRest(links, first, half - 1);
  Word second = link(links, last);
  link(links, last) = 0;
  Word a = mergeSort(inOrder, links, first, half);
  Word b = mergeSort(inOrder, links, second, count - half);
  Word head;
  Word* end = &head;
  for (;;) {
    // The first half's member goes first while the two are in order: equal ones keep their places.
    if (inOrder(a, b)) {
      *end = a;
      end = &link(links, a);
      if ((a = *end) == 0) {
        *end = b;
        return head;
      }
    } else {
      *end = b;
      end = &link(links, b);
      if ((b = *end) == 0) {
        *end = a;
        return head;
      }
    }
  }
}

// The links pass for an integer: an error leaves them to the collector.
DAG newLinks(Word n) {
  DAG links = news(n + 1);
  setHeader(links, INTPOS, n + 1);
  for (Word i = 1; i < n; ++i) link(links, i) = i + 1;
  link(links, n) = 0;
  return links;
}

template <class Comparator>
DAG sortBy(const Comparator& inOrder, DAG members) {
  Word n = lengthOf(members) - 1;
  DAG links = newLinks(n);
  Word at = mergeSort([&](Word a, Word b) { return inOrder(members[a], members[b]); }, links, 1, n);
  DAG sorted = newl2(n + 1, EXPSEQ);
  for (Word i = 1; at != 0; at = link(links, at)) sorted[i++] = members[at];
  release(links, n + 1);
  return sorted;
}

// ---- long lists of small integers and of texts
//
// Their keys are sorted by digits, side by side in memory outside of the heap, so that no step looks at
// the objects (bench/collections.sh, "sort of"). Each gives 0 when it cannot: the merge sort can.

constexpr Word longFrom = 200;  // as many members pay for the counts of each digit

// Members by their words as `flip` makes them keys. Equal words are one object, so that it doesn't matter
// which goes first.
DAG sortWords(DAG members, Word flip, bool backwards) {
  Word n = lengthOf(members) - 1;
  DAG sorted = newl2(n + 1, EXPSEQ);
  auto* words = static_cast<DAG*>(std::malloc(2 * std::size_t{n} * sizeof(DAG)));
  if (words == nullptr) return DAG();
  std::copy_n(&members[1], n, words);
  radixSort(words, words + n, n, [flip](DAG x) { return x.word ^ flip; });
  if (backwards) std::reverse(words, words + n);
  std::copy_n(words, n, &sorted[1]);
  std::free(words);
  return sorted;
}

bool isSmallInteger(DAG x) { return isImmediate(x) && x != consm0; }

// Eight characters of a text as a number in two words, the first one highest; zeros behind the end. Three
// words a record rather than four: memory of a long sort is fresh, and its pages cost most.
struct TextRecord {
  Word high, low;
  DAG text;

  std::uint64_t characters() const { return std::uint64_t{high} << 32 | low; }
  void read(Word offset) {
    const char* at = textOf(text) + offset;
    std::uint64_t value = 0;
    for (int shift = 56; shift >= 0 && *at != 0; shift -= 8, ++at)
      value |= std::uint64_t{static_cast<unsigned char>(*at)} << shift;
    high = static_cast<Word>(value >> 32);
    low = static_cast<Word>(value);
  }
  bool ends() const { return (low & 0xff) == 0; }
};

// Records that agree in their first `offset` characters and are yet to be sorted by the others.
struct Unsorted {
  Word begin, end, offset;
};

// `spare` has room for as many records.
void sortRecords(TextRecord* records, TextRecord* spare, Word count) {
  std::vector<Unsorted> waiting{{0, count, 0}};
  while (!waiting.empty()) {
    auto [begin, end, offset] = waiting.back();
    waiting.pop_back();
    if (end - begin < longFrom) {
      std::stable_sort(records + begin, records + end, [offset = offset](TextRecord a, TextRecord b) {
        return std::strcmp(textOf(a.text) + offset, textOf(b.text) + offset) < 0;
      });
      continue;
    }
    for (Word i = begin; i < end; ++i) records[i].read(offset);
    radixSort(records + begin, spare, end - begin, [](TextRecord r) { return r.characters(); });
    for (Word i = begin, next; i < end; i = next) {
      for (next = i + 1; next < end && records[next].characters() == records[i].characters();) ++next;
      if (next - i > 1 && !records[i].ends()) waiting.push_back({i, next, offset + 8});
    }
  }
}

DAG sortTexts(DAG members) {
  Word n = lengthOf(members) - 1;
  DAG sorted = newl2(n + 1, EXPSEQ);
  auto* records = static_cast<TextRecord*>(std::malloc(2 * std::size_t{n} * sizeof(TextRecord)));
  if (records == nullptr) return DAG();
  for (Word i = 0; i < n; ++i) records[i].text = members[i + 1];
  sortRecords(records, records + n, n);
  for (Word i = 0; i < n; ++i) sorted[i + 1] = records[i].text;
  std::free(records);
  return sorted;
}

// The members in order, or 0.
DAG sortedByDigits(DAG members, Order order) {
  if (lengthOf(members) <= longFrom) return DAG();
  constexpr Word signBit = 0x80000000u;
  switch (order) {
    case Order::ascending: case Order::descending:
      if (!everyMember(members, isSmallInteger)) return DAG();
      return sortWords(members, signBit, order == Order::descending);
    case Order::lexicographic: return sortTexts(members);
    case Order::address: return sortWords(members, 0, false);
    case Order::procedure: break;
  }
  return DAG();
}

}  // namespace

DAG sortedMembers(DAG members, Order order, DAG procedure) {
  if (lengthOf(members) < 3) return CopyAlg(members);
  if (DAG sorted = sortedByDigits(members, order)) return sorted;
  switch (order) {
    case Order::ascending: return sortBy(Ascending(), members);
    case Order::descending: return sortBy(Descending(), members);
    case Order::lexicographic: return sortBy(Lexicographic(), members);
    case Order::address: return sortBy(Address(), members);
    case Order::procedure:
      // The procedure may assign the names that hold them.
      updategen(members);
      updategen(procedure);
      return sortBy(Procedure{procedure}, members);
  }
  return CopyAlg(members);
}
DAG sortedSequence(DAG members, Order order, DAG procedure) {
  return lengthOf(members) < 3 ? members : simpl(sortedMembers(members, order, procedure));
}

namespace {

struct NamedOrder {
  const char* name;
  Order order;
  bool (*takes)(DAG member);  // null: any member
};
constexpr NamedOrder namedOrders[] = {
    // name       order                   takes
    {"<",        Order::ascending,     isComparable},
    {"numeric",  Order::ascending,     isComparable},
    {">",        Order::descending,    isComparable},
    {"string",   Order::lexicographic, isText},
    {"lexorder", Order::lexicographic, isText},
    {"address",  Order::address,       nullptr},
};

// What may be called: a procedure, a name of one, and algebra over such, numbers as constant functions.
constexpr TagSet functionTags = algebraicTags | TagSet{PROC};

// The row of the name, or null.
const NamedOrder* namedOrder(DAG order) {
  if (!isName(order)) return nullptr;
  for (const NamedOrder& row : namedOrders)
    if (hasText(order, row.name)) return &row;
  return nullptr;
}

}  // namespace

Order orderCalled(DAG order) {
  if (const NamedOrder* row = namedOrder(order)) return row->order;
  if (!isAmong(order, functionTags)) invalidArguments();
  return Order::procedure;
}

Order compareFunction(DAG members, DAG order) {
  if (!order) {
    if (everyMember(members, isPlainNumber)) return Order::ascending;
    if (everyMember(members, isText)) return Order::lexicographic;
    return Order::address;
  }
  if (const NamedOrder* row = namedOrder(order)) {
    if (row->takes != nullptr && !everyMember(members, row->takes)) invalidArguments();
    return row->order;
  }
  return orderCalled(order);
}

DAG sortList(DAG list, DAG order) {
  DAG body = list[1];
  DAG sorted = sortedSequence(body, compareFunction(body, order), order);
  return sorted == body ? list : simpl(new2(LIST, sorted));
}

namespace {

// The variables that a polynomial is sorted by: those of a list or set, or a single one.
DAG variablesOf(DAG x) {
  DAG variables = isTag(x, LIST) || isTag(x, SET) ? x[1] : simpl(new2(EXPSEQ, x));
  if (!everyMember(variables, isNameOrIndexed)) invalidArguments();
  return variables;
}

// True for the total degree, false for the pure lexicographic order.
bool isTotalDegree(DAG order) {
  if (isName(order) && hasText(order, "tdeg")) return true;
  if (isName(order) && hasText(order, "plex")) return false;
  invalidArguments();
}

}  // namespace

DAG builtin::sort(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  DAG x = call.arguments[1];
  if (auto sortKind = kindOf(x).sort) {
    if (n > 2) invalidArguments();
    return sortKind(x, n == 2 ? call.arguments[2] : DAG());
  }
  if (n > 3) invalidArguments();
  DAG variables = n == 1 ? indeterminates(x) : variablesOf(call.arguments[2]);
  bool totalDegree = n < 3 || isTotalDegree(call.arguments[3]);
  return algsort(x, variables, totalDegree);
}

}  // namespace korel
