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

namespace korel {

/// Limits of the walk, in force until `ResetHas`: not inside PROC and MODDEF, not inside UNEVAL, not
/// among the indices of a TABLEREF. Tables are closed while one of the first two is set.
extern bool hasExceptPROC, hasExceptUNEVAL, NoHasOfArrayRef;

/// Parts of an object: the word at `head`, when that isn't 0, then each word from address `at` to before
/// `end`, `step` bytes apart. Words of 0 are no parts. Four words travel in two registers.
struct Parts {
  Word at = 0;
  Word end = 0;
  Word step = 4;
  Word head = 0;
};
inline DAG partAt(Word address) { return DAG(address)[0]; }

/// Fields `from` to before `end` of `x`.
inline Parts fieldsOf(DAG x, Word from, Word end, Word step = 1) {
  return {x.word + 4 * from, x.word + 4 * end, 4 * step};
}

/// The pairs of a chain; its keys only when they are objects.
inline Parts entriesOf(DAG chain) {
  Word n = lengthOf(chain), end = 1;
  // A flat chain has gaps, a plain one ends at the first.
  if (isFlat(chain)) end = n - 2;
  else while (end + 1 < n && chain[end]) end += 2;
  return (controlWord(chain) & tableBit) == 0 ? fieldsOf(chain, 1, end) : fieldsOf(chain, 2, end + 1, 2);
}

/// What the walk goes on with behind `x`, no immediate.
[[gnu::always_inline]] inline Parts partsOf(DAG x) {
  Word n = lengthOf(x);
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case STRING: case NAME:
    case LOCAL: case PARAM: case LEXICAL:
    case RTABLE: case BINARY: case GARBAGE: case FOREIGN:
      return {};
    case SUM: case PROD: return fieldsOf(x, 1, n, 2);
    case SERIES: return {x.word + 8, x.word + 4 * n, 8, x.word + 4};
    case TABLEREF: return fieldsOf(x, 1, NoHasOfArrayRef ? 2 : 3);
    case ZPPOLY: return fieldsOf(x, 1, 2);
    case PROC: case MODDEF: return hasExceptPROC ? Parts{} : fieldsOf(x, 3, n);
    case UNEVAL: return hasExceptUNEVAL ? Parts{} : fieldsOf(x, 1, 2);
    case TABLE: return hasExceptPROC || hasExceptUNEVAL ? Parts{} : fieldsOf(x, 3, 4);
    case HASH: return entriesOf(x);
    default: return fieldsOf(x, 1, n);
  }
}

/// Calls `visit` on each part that the walk goes on with, in order.
template <class Visit>
inline void forEachPart(DAG x, Visit visit) {
  Parts parts = partsOf(x);
  if (parts.head != 0 && partAt(parts.head)) visit(partAt(parts.head));
  for (; parts.at < parts.end; parts.at += parts.step)
    if (DAG part = partAt(parts.at)) visit(part);
}

/// A short sequence, such as the arguments of a call, which are nearly always its own. To enter it again,
/// for another call, costs no more than to remember it; a simplified one holds no other, so that nothing
/// multiplies.
inline bool isShortSequence(DAG x) {
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

/// A search in depth, without recursion, that enters a shared part once: its time grows with the number
/// of distinct objects, and it ends on tables that hold themselves. One search runs at a time in each.
class PartSearch {
 public:
  /// True when `test` holds for `x` or a part of it, which must not raise an error; it is called on each
  /// part at least once.
  template <class Rules, class Test>
  bool any(DAG x, Test test) {
    if (!x) return false;
    if (test(x)) return true;
    if (isLeaf(x)) return false;
    met_.clear();
    met_.insert(x);
    bool found = anyBehind<Rules>(x, test);
    if (levels_.size() > mostKeptLevels) std::vector<Parts>(fewestLevels).swap(levels_);
    return found;
  }

 private:
  static constexpr std::size_t fewestLevels = 64, mostKeptLevels = 1u << 16;

  static bool isLeaf(DAG x) {
    if (isImmediate(x)) return true;
    Tag tag = tagOf(x);
    return tag <= NAME && tag != COMPLEX;
  }

  template <class Rules, class Test>
  bool anyBehind(DAG x, Test test) {
    std::size_t depth = 0;
    auto leave = [&](Parts rest) {
      if (depth == levels_.size()) [[unlikely]] levels_.resize(2 * depth);
      levels_[depth++] = rest;
    };
    Parts now = Rules::partsOf(x);
    for (;;) {
      if (now.head != 0) {
        leave({now.at, now.end, now.step, 0});
        now = {now.head, now.head + 4};
      }
      while (now.at >= now.end) {
        if (depth == 0) return false;
        now = levels_[--depth];
      }
      DAG part = partAt(now.at);
      now.at += now.step;
      if (!part) continue;
      if (test(part)) return true;
      if (isLeaf(part) || (!isShortSequence(part) && !met_.insert(part))) continue;
      if (now.at < now.end) leave(now);
      // Most of what an expression holds are calls of a name with a few arguments: those go on with the
      // arguments at once, which halves the time of a walk (bench/collections.sh, "has").
      if (headerWord(part) == (FUNCTION | 3) && isLeaf(part[1]) && Rules::isPlainCall(part)) {
        DAG arguments = part[2];
        if (!isImmediate(arguments) && isShortSequence(arguments)) {
          if (test(part[1]) || (Rules::testsArguments && test(arguments))) return true;
          now = fieldsOf(arguments, 1, lengthOf(arguments));
          continue;
        }
      }
      now = Rules::partsOf(part);
    }
  }

  std::vector<Parts> levels_ = std::vector<Parts>(fewestLevels);  // what was left for the inside of a part
  ObjectSet met_;
};

}  // namespace korel
