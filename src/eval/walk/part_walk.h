#pragma once
// The parts of an object as storage holds them, and the search that all of `has` and its likes share.
//
// The walk knows storage, not the view of `op`: the terms of a SUM are parts, its coefficients are not;
// of a table the keys and values, of a procedure the body. Parts stand side by side in their object, so
// that a walk is a run over words.

#include <vector>

#include "store/dag.h"
#include "store/hash.h"
#include "store/object_set.h"
#include "store/tag_facts.h"

namespace korel {

/// Parts of an object: the word at `head`, when that isn't 0, then each word from address `at` to before
/// `end`, `step` bytes apart. Words of 0 are no parts. Four words travel in two registers.
struct Parts {
  Word at = 0;
  Word end = 0;
  Word step = 4;
  Word head = 0;
};
inline DAG partAt(Word address) { return DAG(address)[0]; }

/// Asks for the header of `x`, any word, ahead of its use. In line, since otherwise the compiler takes it for
/// a function that does nothing.
[[gnu::always_inline]] inline void askFor(DAG x) {
  __builtin_prefetch(reinterpret_cast<const void*>(static_cast<std::uintptr_t>(x.word)));
}

/// Fields `from` to before `end` of `x`.
inline Parts fieldsOf(DAG x, Word from, Word end, Word step = 1) {
  return {x.word + 4 * from, x.word + 4 * end, 4 * step};
}

/// The pairs of a chain; its keys only when they are objects.
inline Parts entriesOf(DAG chain) {
  Word n = lengthOf(chain), end = 1;
  while (end + 1 < n && chain[end]) end += 2;
  return (controlWord(chain) & tableBit) == 0 ? fieldsOf(chain, 1, end) : fieldsOf(chain, 2, end + 1, 2);
}

/// The elements of an rtable (defined in its room). Those of hardware formats are made for the walk, and so only for
/// one that asks for numbers.
Parts partsOfRTable(DAG rtable, bool withNumbers);

/// What the walk goes on with behind `x`, no immediate.
[[gnu::always_inline]] inline Parts partsOf(DAG x) {
  Word n = lengthOf(x);
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case STRING: case NAME: case LOCAL: case PARAM:
    case LEXICAL: case BINARY: case GARBAGE: case FOREIGN:
      return {};
    case RTABLE: return partsOfRTable(x, false);
    case SUM: case PROD: return fieldsOf(x, 1, n, 2);
    case SERIES: return {x.word + 8, x.word + 4 * n, 8, x.word + 4};
    case ZPPOLY: return fieldsOf(x, 1, 2);
    case PROC: case MODDEF: return fieldsOf(x, 3, n);
    case TABLE: return fieldsOf(x, 3, 4);
    case HASH: return entriesOf(x);
    default: return fieldsOf(x, 1, n);
  }
}

/// Calls `visit` on each part that the walk goes on with, in order.
template <class Visit>
inline void forEachPart(DAG x, Visit visit) {
  Parts parts = isTag(x, RTABLE) ? partsOfRTable(x, true) : partsOf(x);
  if (parts.head != 0 && partAt(parts.head)) visit(partAt(parts.head));
  for (; parts.at < parts.end; parts.at += parts.step)
    if (DAG part = partAt(parts.at)) visit(part);
}

/// A short sequence, such as the arguments of a call, which are nearly always its own. To enter it again,
/// for another call, costs no more than to remember it; a simplified one holds no other, so that nothing
/// multiplies.
[[gnu::always_inline]] inline bool isShortSequence(DAG x) {
  constexpr Word longest = 5;
  return headerWord(x) <= (EXPSEQ | longest) && headerWord(x) >= EXPSEQ && isSimplified(x);
}

/// The rules of `has`: what a search takes for parts. Others have the same members.
struct StoragePartRules {
  /// A call without own rules: its parts are the head and the arguments.
  static bool isPlainCall(DAG) { return true; }
  /// The sequence of a call's arguments is itself tested.
  static constexpr bool testsArguments = true;
  [[gnu::always_inline]] static Parts partsOf(DAG x) { return korel::partsOf(x); }
};

/// The same for a search of numbers.
template <class Rules>
struct NumberPartRules : Rules {
  [[gnu::always_inline]] static Parts partsOf(DAG x) {
    return isTag(x, RTABLE) ? partsOfRTable(x, true) : Rules::partsOf(x);
  }
};

/// The same without the inside of objects with one of the tags `closed`.
template <TagSet closed>
struct ClosedPartRules : StoragePartRules {
  [[gnu::always_inline]] static Parts partsOf(DAG x) { return isAmong(x, closed) ? Parts{} : korel::partsOf(x); }
};

/// A search in depth, without recursion, that enters a shared part once: its time grows with the number
/// of distinct objects, and it ends on tables that hold themselves. One search runs at a time in each.
class PartSearch {
 public:
  /// True when `node` holds for `x` or a part of it, or `leaf` where that is a number, text or name: tests
  /// which must not raise an error. Each part is tested at least once.
  template <class Rules, class Leaf, class Node>
  bool any(DAG x, Leaf leaf, Node node) {
    if (!x) return false;
    if (isLeaf(x)) return leaf(x);
    if (node(x)) return true;
    met_.clear();
    met_.insert(x);
    bool found = anyBehind<Rules>(x, leaf, node);
    if (levels_.size() > mostKeptLevels) std::vector<Parts>(fewestLevels).swap(levels_);
    return found;
  }

 private:
  static constexpr std::size_t fewestLevels = 64, mostKeptLevels = 1u << 16;

  [[gnu::always_inline]] static bool isLeaf(DAG x) {
    if (isImmediate(x)) return true;
    Tag tag = tagOf(x);
    return tag <= NAME && tag != COMPLEX;
  }

  // Of a long object the parts to come are asked for a few steps ahead: an expression of 10^5 objects is
  // larger than the nearer caches.
  static constexpr Word stepsAhead = 15, bytesAhead = 128;  // the longest step is 8 bytes
  [[gnu::always_inline]] static void askAhead(const Parts& now) {
    if (now.end - now.at > bytesAhead) askFor(partAt(now.at + stepsAhead * now.step));
  }

  // Out of line and field by field: a copy of the whole record would be prepared in each step.
  [[gnu::noinline]] void keepLevel(std::size_t depth, Word at, Word end, Word step) {
    if (depth == levels_.size()) [[unlikely]]
      levels_.resize(2 * depth);
    levels_[depth] = {at, end, step, 0};
  }

  // The arguments of a call of a name with a few of them, or 0.
  template <class Rules>
  [[gnu::always_inline]] static DAG fewArguments(DAG x) {
    if (headerWord(x) != (FUNCTION | 3) || !isLeaf(x[1]) || !Rules::isPlainCall(x)) return DAG();
    return !isImmediate(x[2]) && isShortSequence(x[2]) ? x[2] : DAG();
  }

  // A call of a name with a few leaves is tested whole where it stands. To do so again costs no more than to
  // remember it.
  enum class Shallow { holds, fails, isDeeper };
  template <class Rules, class Leaf, class Node>
  [[gnu::always_inline]] static Shallow testShallow(DAG x, Leaf leaf, Node node) {
    if (node(x)) return Shallow::holds;
    DAG arguments = fewArguments<Rules>(x);
    if (!arguments) return Shallow::isDeeper;
    if (leaf(x[1]) || (Rules::testsArguments && node(arguments))) return Shallow::holds;
    for (Word i = 1, n = lengthOf(arguments); i < n; ++i) {
      if (!isLeaf(arguments[i])) return Shallow::isDeeper;
      if (leaf(arguments[i])) return Shallow::holds;
    }
    return Shallow::fails;
  }

  template <class Rules, class Leaf, class Node>
  bool anyBehind(DAG x, Leaf leaf, Node node) {
    std::size_t depth = 0;
    Parts now;
    auto leave = [&] {
      if (now.at < now.end) keepLevel(depth++, now.at, now.end, now.step);
    };
    auto enter = [&](Parts parts) {
      now = parts;
      if (now.head == 0) return;
      leave();
      now = {now.head, now.head + 4};
    };
    enter(Rules::partsOf(x));
    for (;;) {
      while (now.at >= now.end) {
        if (depth == 0) return false;
        now = levels_[--depth];
      }
      askAhead(now);
      DAG part = partAt(now.at);
      now.at += now.step;
      if (!part) continue;
      if (isLeaf(part)) {
        if (leaf(part)) return true;
        continue;
      }
      if (node(part)) return true;
      if (!isShortSequence(part) && !met_.insert(part)) continue;
      DAG arguments = fewArguments<Rules>(part);
      if (!arguments) {
        leave();
        enter(Rules::partsOf(part));
        continue;
      }
      // Most of what an expression holds are calls of a name with a few arguments, which are leaves or such
      // calls themselves: no level is kept for them (bench/collections.sh, "has").
      if (leaf(part[1]) || (Rules::testsArguments && node(arguments))) return true;
      Word i = 1, n = lengthOf(arguments);
      for (; i < n; ++i) {
        DAG argument = arguments[i];
        if (isLeaf(argument)) {
          if (leaf(argument)) return true;
          continue;
        }
        Shallow result = testShallow<Rules>(argument, leaf, node);
        if (result == Shallow::holds) return true;
        if (result == Shallow::isDeeper) break;
      }
      if (i == n) continue;
      leave();
      now = fieldsOf(arguments, i, n);
    }
  }

  std::vector<Parts> levels_ = std::vector<Parts>(fewestLevels);  // what was left for the inside of a part
  ObjectSet met_;
};

}  // namespace korel
