#include "eval/walk/measure.h"

#include <cstring>

#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "eval/walk/has.h"
#include "eval/walk/walk_memory.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/object_set.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/word_map.h"

namespace korel {

namespace {


// Composite objects that were met, and results for those that were met twice: a shared part is counted at
// most two times, and what is no shared part, as most of any expression, needs no entry.
struct CountMemory {
  ObjectSet met;
  WordMap known;

  void clear() {
    met.clear();
    known.clear();
  }
  void release() {
    met.release();
    known.release();
  }
};
// Of the count that runs. There is but one: nothing is evaluated meanwhile.
CountMemory* counted = nullptr;

// Sums of counts, cheap while they are small.
class Total {
 public:
  void add(DAG count) {
    if (isImmediate(count)) small_ += immediateValue(count);
    else large_ = addint(large_, count);
  }
  void add(std::int64_t count) { small_ += count; }
  DAG value() const {
    if (large_ == cons0 && small_ <= maxImmediate) return immediate(static_cast<std::int32_t>(small_));
    return addint(large_, NewInteger(small_));
  }

 private:
  DAG large_ = cons0;
  std::int64_t small_ = 0;
};

// Adds what `count` finds in the composite object `x`.
template <class Count>
void addMeasured(DAG x, Total& total, Count count) {
  bool first = isShortSequence(x) || counted->met.insert(x);
  const std::int32_t* value = first ? nullptr : counted->known.find(x.word);
  if (value != nullptr) return total.add(DAG(static_cast<Word>(*value)));
  checkStack();
  if (first) return count(x, total);
  Total own;
  count(x, own);
  DAG result = own.value();
  counted->known.insert(x.word, static_cast<std::int32_t>(result.word));
  total.add(result);
}

// The total of what `count(total)` adds up.
template <class Count>
DAG totalOf(Count count) {
  return withWalkMemory<CountMemory>([&](CountMemory& memory) {
    counted = &memory;
    Total total;
    count(total);
    return simpl(total.value());
  });
}

// ---- occurrences

void addOccurrences(DAG x, DAG y, Total& total) {
  if (x == y) return total.add(std::int64_t{1});
  if (isImmediate(x)) return;
  Tag tag = tagOf(x);
  if (tag == COMPLEX && y == sqrtm1) return total.add(std::int64_t{1});
  if (tag <= NAME && tag != COMPLEX) return;
  addMeasured(x, total, [y, tag](DAG object, Total& sum) {
    bool pairs = tag == SUM || tag == PROD;
    bool isPair = pairs && isTag(y, tag) && lengthOf(y) == 3;
    if (pairs && (isPair || isNumeric(y)))
      for (Word i = 1, n = lengthOf(object); i < n; i += 2)
        if (isPair ? object[i] == y[1] && object[i + 1] == y[2] : object[i + 1] == y) sum.add(std::int64_t{1});
    forEachPart(object, [&](DAG part) { addOccurrences(part, y, sum); });
  });
}

// ---- length

// In long objects the parts to come are asked for a few steps ahead, as a search does (part_walk.h).
constexpr Word stepsAhead = 30;

// A text fills its words but for the rest of the last one, where its zero stands (`textLength`).
std::int64_t characterCount(DAG text) {
  Word n = lengthOf(text), last = rawField(text, n - 1);
  Word zeros = (last - 0x01010101u) & ~last & 0x80808080u;
  return 4 * (std::int64_t{n} - 4) + (__builtin_ctz(zeros) >> 3);
}

// The size of a number, name or string; -1 for any other object.
[[gnu::always_inline]] inline std::int64_t leafSize(DAG x) {
  if (isImmediate(x)) return x == cons1 ? 1 : ilength(x);  // most are coefficients
  Tag tag = tagOf(x);
  if (tag == NAME || tag == STRING) return characterCount(x);
  return tag == INTPOS || tag == INTNEG ? ilength(x) : -1;
}

void addObjectSize(DAG x, Total& total);
void addSize(DAG x, Total& total);

void addEntrySizes(DAG entries, Total& total) {
  hashforeach(
      entries,
      [](void* arg, PairAddress pair) {
        auto& t = *static_cast<Total*>(arg);
        addSize(pairKey(pair), t);
        if (pairValue(pair)) addSize(pairValue(pair), t);
        return true;
      },
      &total);
}

// A call of a name with a few leaves, as many arguments are: to count it again costs no more than to
// remember it. -1 for any other object.
[[gnu::always_inline]] inline std::int64_t shallowCallSize(DAG x) {
  if (headerWord(x) != (FUNCTION | 3) || !isShortSequence(x[2])) return -1;
  std::int64_t size = leafSize(x[1]);
  if (size < 0) return -1;
  Word n = lengthOf(x[2]);
  size += 3 + n;
  for (Word i = 1; i < n; ++i) {
    std::int64_t member = leafSize(x[2][i]);
    if (member < 0) return -1;
    size += member;
  }
  return size;
}

void addPartSizes(DAG x, Total& total) {
  if (hasTag(x, HASHTAB) && (controlWord(x) & tableBit) == 0) return addEntrySizes(x, total);
  std::int64_t own = lengthOf(x);
  auto add = [&](DAG part, std::int64_t size) {
    if (size < 0) addObjectSize(part, total);
    else own += size;
  };
  ReferenceFields fields = hasTag(x, FUNCTION) ? ReferenceFields{1, lengthOf(x)} : referenceFields(x);
  if (fields.extra != 0 && x[fields.extra]) addSize(x[fields.extra], total);
  for (Word i = fields.first; i < fields.end; i += fields.step) {
    DAG field = x[i];
    if (!field) continue;
    if (i + stepsAhead < fields.end) askFor(x[i + stepsAhead]);
    if (!isImmediate(field) && isShortSequence(field)) {
      // The arguments of a call.
      own += lengthOf(field);
      for (Word k = 1, n = lengthOf(field); k < n; ++k) {
        std::int64_t size = leafSize(field[k]);
        add(field[k], size < 0 ? shallowCallSize(field[k]) : size);
      }
    } else {
      add(field, leafSize(field));
    }
  }
  total.add(own);
}

// What is no leaf.
void addObjectSize(DAG x, Total& total) {
  if (auto size = kindOf(x).size) return total.add(size(x));
  addMeasured(x, total, addPartSizes);
}

void addSize(DAG x, Total& total) {
  std::int64_t size = leafSize(x);
  if (size >= 0) total.add(size);
  else addObjectSize(x, total);
}

}  // namespace

DAG numboccur(DAG x, DAG y) {
  if (!isTag(y, EXPSEQ)) {
    // What doesn't occur is found out by a search, which is several times as fast.
    if (!has(x, y)) return cons0;
    return totalOf([=](Total& total) { addOccurrences(x, y, total); });
  }
  Total total;
  for (Word i = 1, n = lengthOf(y); i < n; ++i) {
    passWork(searchSteps);
    total.add(numboccur(x, y[i]));
  }
  return simpl(total.value());
}

DAG length(DAG x) {
  return totalOf([=](Total& total) { addSize(x, total); });
}

DAG builtin::numboccur(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  DAG x = call.arguments[1], y = call.arguments[2];
  DAG count = korel::numboccur(x, y);
  bool collection = isTag(y, LIST) || isTag(y, SET);
  return collection && count == cons0 ? korel::numboccur(x, y[1]) : count;
}

DAG builtin::length(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return korel::length(call.arguments[1]);
}

}  // namespace korel
