#include "structure/measure.h"

#include <cstring>

#include "eval/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/integer.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/object_set.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/word_map.h"
#include "structure/has.h"
#include "structure/operands.h"

namespace korel {

namespace {

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }

// Results for composite objects, kept while one count runs, those of 0 as members of a set: nothing is
// evaluated meanwhile, so that they can be one for all. An error in the midst leaves them full, and the
// next count empties them.
WordMap known;
ObjectSet zeros;
int entered;
constexpr int keepFrom = 64;

// Sums of counts, cheap while they are small.
class Total {
 public:
  void add(DAG count) {
    if (isImmediate(count)) small_ += immediateValue(count);
    else large_ = addint(large_, count);
  }
  void add(std::int64_t count) { small_ += count; }
  DAG value() const { return addint(large_, NewInteger(small_)); }

 private:
  DAG large_ = cons0;
  std::int64_t small_ = 0;
};

template <class Measure>
DAG measured(DAG x, Measure measure) {
  bool keeps = ++entered > keepFrom && !isShortSequence(x);
  if (keeps) {
    if (zeros.contains(x)) return cons0;
    if (const std::int32_t* value = known.find(x.word)) return DAG(static_cast<Word>(*value));
  }
  checkStack();
  DAG value = measure(x);
  if (keeps) {
    if (value == cons0) zeros.insert(x);
    else known.insert(x.word, static_cast<std::int32_t>(value.word));
  }
  return value;
}

void begin() {
  known.clear();
  zeros.clear();
  entered = 0;
}

// ---- occurrences

DAG occurrences(DAG x, DAG y) {
  if (x == y) return cons1;
  if (isImmediate(x)) return cons0;
  Tag tag = tagOf(x);
  if (tag == COMPLEX && y == sqrtm1) return cons1;
  if (tag <= NAME && tag != COMPLEX) return cons0;
  return measured(x, [y, tag](DAG object) {
    Total total;
    bool pairs = tag == SUM || tag == PROD;
    bool isPair = pairs && isTag(y, tag) && lengthOf(y) == 3;
    if (pairs && (isPair || isNumeric(y)))
      for (Word i = 1, n = lengthOf(object); i < n; i += 2)
        if (isPair ? object[i] == y[1] && object[i + 1] == y[2] : object[i + 1] == y)
          total.add(std::int64_t{1});
    forEachPart(object, [&](DAG part) { total.add(occurrences(part, y)); });
    return total.value();
  });
}

// ---- length

DAG size(DAG x);

DAG entriesSize(DAG entries) {
  Total total;
  hashforeach(
      entries,
      [](void* arg, PairAddress pair) {
        auto& t = *static_cast<Total*>(arg);
        t.add(size(pairKey(pair)));
        if (pairValue(pair)) t.add(size(pairValue(pair)));
        return true;
      },
      &total);
  return total.value();
}

DAG size(DAG x) {
  if (isInteger(x)) return NewInteger(ilength(x));
  switch (tagOf(x)) {
    case STRING: case NAME: return NewInteger(static_cast<std::int64_t>(std::strlen(textOf(x))));
    case RTABLE: rtableNotAvailable("length");
    default: break;
  }
  return measured(x, [](DAG object) {
    if (hasTag(object, HASHTAB) && (controlWord(object) & tableBit) == 0) return entriesSize(object);
    Total total;
    total.add(static_cast<std::int64_t>(lengthOf(object)));
    forEachReferenceField(object, [&](DAG field) {
      if (field) total.add(size(field));
    });
    return total.value();
  });
}

}  // namespace

DAG numboccur(DAG x, DAG y) {
  if (!isTag(y, EXPSEQ)) {
    // What doesn't occur is found out by a search, which is several times as fast.
    if (!has(x, y)) return cons0;
    begin();
    DAG count = simpl(occurrences(x, y));
    known.clear();
    return count;
  }
  Total total;
  for (Word i = 1, n = lengthOf(y); i < n; ++i) total.add(numboccur(x, y[i]));
  return simpl(total.value());
}

DAG length(DAG x) {
  begin();
  DAG result = simpl(size(x));
  known.clear();
  return result;
}

DAG numboccurBuiltin(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  DAG x = call.arguments[1], y = call.arguments[2];
  DAG count = numboccur(x, y);
  bool collection = isTag(y, LIST) || isTag(y, SET);
  return collection && count == cons0 ? numboccur(x, y[1]) : count;
}

DAG lengthBuiltin(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return length(call.arguments[1]);
}

}  // namespace korel
