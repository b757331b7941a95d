#include "structure/sort.h"

#include <cstring>

#include "eval/arithmetic.h"
#include "eval/evaluate.h"
#include "eval/simplify.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"
#include "structure/polynomial_order.h"

namespace korel {

namespace {

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }
bool isText(DAG x) { return isTag(x, NAME) || isTag(x, STRING); }

[[noreturn]] void invalidArguments() { KernelException("invalid arguments to sort"); }

template <class Test>
bool everyMember(DAG members, Test test) {
  for (Word i = 1, n = lengthOf(members); i < n; ++i)
    if (!test(members[i])) return false;
  return true;
}

bool isPlainNumber(DAG x) { return isImmediate(x) || (isNumeric(x) && !isUndefined(x)); }

// What a numeric order takes: real numbers, the infinities, and undefined values of any kind.
bool isComparable(DAG x) {
  return isNumeric(x) || isUndefined(x) || (isInfinite(x) && !hasTag(x, COMPLEX));
}

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

struct Address {
  bool operator()(DAG a, DAG b) const { return a.word <= b.word; }
};

[[noreturn]] void notBoolean() {
  KernelException("sort: 2nd argument must be a boolean valued function");
}

struct Procedure {
  DAG procedure;

  static DAG quoted(DAG x) { return isImmediate(x) ? x : new2(UNEVAL, x); }
  bool operator()(DAG a, DAG b) const {
    // A constant procedure may have been simplified to its value, which no call makes boolean.
    if (isImmediate(procedure) || tagOf(procedure) <= STRING) notBoolean();
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

// A scratch that passes for an integer: an error leaves it to the collector.
DAG newScratch(Word words) {
  DAG scratch = news(words + 1);
  setHeader(scratch, INTPOS, words + 1);
  return scratch;
}

template <class Comparator>
DAG sortPositions(const Comparator& inOrder, DAG members) {
  Word n = lengthOf(members) - 1;
  DAG links = newScratch(n);
  for (Word i = 1; i < n; ++i) link(links, i) = i + 1;
  link(links, n) = 0;
  Word at = mergeSort(inOrder, links, 1, n);
  DAG sorted = newl2(n + 1, EXPSEQ);
  for (Word i = 1; at != 0; at = link(links, at)) sorted[i++] = members[at];
  release(links, n + 1);
  return simpl(sorted);
}

template <class Comparator>
DAG sortBy(const Comparator& inOrder, DAG members) {
  return sortPositions([&inOrder, members](Word a, Word b) { return inOrder(members[a], members[b]); },
                       members);
}

// ---- texts

// The first characters of a text as a number that compares as they do; zeros stand behind its end.
std::uint64_t prefixOf(const char* text) {
  std::uint64_t prefix = 0;
  for (int shift = 56; shift >= 0 && *text != 0; shift -= 8, ++text)
    prefix |= std::uint64_t{static_cast<unsigned char>(*text)} << shift;
  return prefix;
}

// Most texts differ in their first characters: those are kept side by side, so that a comparison looks
// neither at the objects nor at their text (bench/run.sh, "sort of 10^5 strings").
DAG sortTexts(DAG members) {
  Word n = lengthOf(members) - 1;
  if (2 * std::uint64_t{n} + 1 > maxLength) KernelException("object too large");
  DAG scratch = newScratch(2 * n);
  auto* prefixes = reinterpret_cast<Word*>(&scratch[1]);
  for (Word i = 1; i <= n; ++i) {
    std::uint64_t prefix = prefixOf(textOf(members[i]));
    std::memcpy(prefixes + 2 * (i - 1), &prefix, sizeof prefix);
  }
  DAG sorted = sortPositions(
      [prefixes, members](Word a, Word b) {
        std::uint64_t p, q;
        std::memcpy(&p, prefixes + 2 * (a - 1), sizeof p);
        std::memcpy(&q, prefixes + 2 * (b - 1), sizeof q);
        if (p != q) return p < q;
        // A zero at the end: both texts are within the prefix.
        return (p & 0xff) == 0 || std::strcmp(textOf(members[a]) + 8, textOf(members[b]) + 8) <= 0;
      },
      members);
  release(scratch, 2 * n + 1);
  return sorted;
}

}  // namespace

DAG sortedSequence(DAG members, Order order, DAG procedure) {
  if (lengthOf(members) < 3) return members;
  switch (order) {
    case Order::ascending: return sortBy(Ascending(), members);
    case Order::descending: return sortBy(Descending(), members);
    case Order::lexicographic: return sortTexts(members);
    case Order::address: return sortBy(Address(), members);
    case Order::procedure:
      // The procedure may assign the names that hold them.
      updategen(members);
      updategen(procedure);
      return sortBy(Procedure{procedure}, members);
  }
  return members;
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

}  // namespace

Order compareFunction(DAG members, DAG order) {
  if (!order) {
    if (everyMember(members, isPlainNumber)) return Order::ascending;
    if (everyMember(members, isText)) return Order::lexicographic;
    return Order::address;
  }
  if (isTag(order, NAME))
    for (const NamedOrder& row : namedOrders)
      if (std::strcmp(textOf(order), row.name) == 0) {
        if (row.takes != nullptr && !everyMember(members, row.takes)) invalidArguments();
        return row.order;
      }
  return Order::procedure;
}

namespace {

DAG sortList(DAG list, DAG order) {
  DAG body = list[1];
  DAG sorted = sortedSequence(body, compareFunction(body, order), order);
  return sorted == body ? list : simpl(new2(LIST, sorted));
}

bool isVariable(DAG x) { return isTag(x, NAME) || isTag(x, TABLEREF); }

// The variables that a polynomial is sorted by: those of a list or set, or a single one.
DAG variablesOf(DAG x) {
  DAG variables = isTag(x, LIST) || isTag(x, SET) ? x[1] : simpl(new2(EXPSEQ, x));
  if (!everyMember(variables, isVariable)) invalidArguments();
  return variables;
}

// True for the total degree, false for the pure lexicographic order.
bool totalDegreeOf(DAG order) {
  if (isTag(order, NAME)) {
    if (std::strcmp(textOf(order), "tdeg") == 0) return true;
    if (std::strcmp(textOf(order), "plex") == 0) return false;
  }
  invalidArguments();
}

}  // namespace

DAG korelSort(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  DAG x = call.arguments[1];
  if (isTag(x, RTABLE)) {
    if (n > 2) invalidArguments();
    KernelException("the operation `%1` is not available", naminstall("SortRTable"));
  }
  if (n > 3 || (n == 3 && isTag(x, LIST))) invalidArguments();
  if (isTag(x, LIST)) return sortList(x, n == 2 ? call.arguments[2] : DAG());
  DAG variables = n == 1 ? indeterminates(x) : variablesOf(call.arguments[2]);
  bool totalDegree = n < 3 || totalDegreeOf(call.arguments[3]);
  return algsort(x, variables, totalDegree);
}

}  // namespace korel
