#include "eval/procedures/remember.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "eval/evaluate/known_values.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/objects.h"

namespace korel {

namespace {

constexpr Word rememberBuckets = 128;


DAG procedureOf(DAG x) { return isTag(x, NAME) ? valuenv(x, false) : x; }

// A single argument stands for itself. The key is the simplified object, compared by word.
DAG keyOf(DAG arguments) {
  DAG key = simpl(arguments);
  return isTag(key, EXPSEQ) && lengthOf(key) == 2 ? key[1] : key;
}

// Values with a time stamp are kept as EXPSEQ (value, stamp).
DAG stampedValue(DAG entry, std::int64_t age) {
  if (age == -1 || !isTag(entry, EXPSEQ) || lengthOf(entry) != 3) return entry;
  return isInteger(entry[2]) && LongLongValue(entry[2]) >= age ? entry[1] : absent;
}

}  // namespace

DAG srchpc(DAG procedure, DAG arguments, std::int64_t age) {
  DAG p = procedureOf(procedure);
  if (!isTag(p, PROC) || !isTag(p[4], HASHTAB)) return absent;
  PairAddress pair = search(keyOf(arguments).word, p[4]);
  if (pair == notFound) return absent;
  DAG value = stampedValue(pairValue(pair), age);
  if (value != absent) updategen(value);
  return value;
}

void pcinsert(DAG procedure, DAG arguments, DAG value, std::int64_t stamp) {
  DAG p = procedureOf(procedure);
  if (!isTag(p, PROC)) KernelException("ineffective remember");
  if (!isTag(p[4], HASHTAB)) {
    DAG table = newhashtab(rememberBuckets);
    updategen(table);
    p[4] = table;
  }
  DAG key = keyOf(arguments);
  DAG kept = simpl(value);
  if (stamp != -1) kept = simpl(new3(EXPSEQ, kept, NewInteger(stamp)));
  updategen(key);
  updategen(kept);
  stepEvaluationClock();
  hashunique(key.word, kept, p[4]);
  updategen(p[4]);
  updategen(p[4][bucketIndex(key.word, lengthOf(p[4]))]);
}

}  // namespace korel
