#include "eval/procedures/remember.h"

#include "eval/evaluate/known_values.h"
#include "eval/evaluate/named_kinds.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr Word rememberBuckets = 128;

// A single argument stands for itself. The key is the simplified object, compared by word.
DAG keyOf(DAG arguments) { return singleMember(simpl(arguments)); }

// Values with a time stamp are kept as EXPSEQ (value, stamp).
DAG stampedValue(DAG entry, std::int64_t age) {
  if (age == timeless || !isTag(entry, EXPSEQ) || lengthOf(entry) != 3) return entry;
  return isInteger(entry[2]) && LongLongValue(entry[2]) >= age ? entry[1] : absent;
}

}  // namespace

DAG indexedKey(DAG index, DAG arguments) { return simpl(new3(DCOLON, singleMember(index), singleMember(arguments))); }

DAG srchpc(DAG procedure, DAG arguments, std::int64_t age) {
  DAG p = storedValue(procedure);
  if (!isTag(p, PROC) || !isTag(rememberOf(p), HASHTAB)) return absent;
  PairAddress pair = search(keyOf(arguments).word, rememberOf(p));
  if (pair == notFound) return absent;
  DAG value = stampedValue(pairValue(pair), age);
  if (value != absent) updategen(value);
  return value;
}

void pcinsert(DAG procedure, DAG arguments, DAG value, std::int64_t stamp) {
  DAG p = storedValue(procedure);
  if (!isTag(p, PROC)) KernelException("ineffective remember");
  if (!isTag(rememberOf(p), HASHTAB)) {
    DAG table = newhashtab(rememberBuckets);
    updategen(table);
    rememberOf(p) = table;
  }
  DAG key = keyOf(arguments);
  DAG kept = simpl(value);
  if (stamp != timeless) kept = simpl(new3(EXPSEQ, kept, NewInteger(stamp)));
  updategen(key);
  updategen(kept);
  stepEvaluationClock();
  hashunique(key.word, kept, rememberOf(p));
  updategen(rememberOf(p));
  updategen(rememberOf(p)[bucketIndex(key.word, lengthOf(rememberOf(p)))]);
}

}  // namespace korel
