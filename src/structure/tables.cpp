#include "structure/tables.h"

#include "eval/arithmetic.h"
#include "eval/environment_variables.h"
#include "eval/procedures.h"
#include "eval/remember.h"
#include "eval/simplify.h"
#include "eval/statements.h"
#include "structure/has.h"
#include "frame/errors.h"
#include "numbers/integer.h"
#include "numbers/system_functions.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

bool IndexFcnUsed = false;

namespace {

constexpr Word tableBuckets = 256;

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }

DAG keyOf(DAG index) {
  return isTag(index, EXPSEQ) && lengthOf(index) == 2 ? index[1] : index;
}

// Chains of this many words and more ask whether the whole table has become crowded.
constexpr Word longChain = 49;
constexpr Word tablePairsPerBucket = 6;


}  // namespace

void storeEntry(DAG key, DAG table, DAG value) {
  DAG entries = table[3];
  updategen(key);
  updategen(value);
  DAG& chain = entries[bucketIndex(key.word, lengthOf(entries))];
  Word before = chain ? lengthOf(chain) : 0;
  hashunique(key.word, value, entries);
  Word after = lengthOf(chain);
  if (after >= longChain && after != before && isCrowded(entries, hashcount(entries), tablePairsPerBucket)) {
    table[3] = entries = widenedhashtab(entries, 16 * (lengthOf(entries) - 1));
    updategen(entries);
    for (Word b = 1; b < lengthOf(entries); ++b) updategen(entries[b]);
    return;
  }
  updategen(entries);
  updategen(chain);
}

DAG maketable(DAG function, DAG arguments) {
  DAG bounds = newl2(lengthOf(arguments), EXPSEQ);
  Word ranges = 1;
  DAG initial;
  for (Word i = 1; i < lengthOf(arguments); ++i) {
    DAG argument = arguments[i];
    if (isTag(argument, RANGE)) {
      if (!isInteger(argument[1]) || !isInteger(argument[2]))
        KernelException("non-integer ranges in array/table creation");
      if (compcon(argument[1], simpl(add(argument[2], cons1))) > 0)
        KernelException("lower>upper bound in array/table creation");
      bounds[ranges++] = argument;
    } else if (isTag(argument, LIST) || isTag(argument, SET)) {
      if (initial) KernelException("multiple initialization of table/array");
      initial = argument;
    } else {
      KernelException("invalid parameters for creation of table or array");
    }
  }
  if (!function && ranges > 1) KernelException("ranges cannot be specified for table definitions");
  if (ranges != lengthOf(bounds)) shorten(bounds, lengthOf(bounds), ranges);
  DAG shape = ranges == 1 ? ini("false") : ranges == 2 ? bounds[1] : simpl(bounds);
  DAG table = simpl(new4(TABLE, function ? function : null, shape, newhashtab(tableBuckets)));
  if (initial) evalsysf("index/", "FillInitVals", simpl(new3(EXPSEQ, table, initial)));
  return table;
}

DAG TableIndex(DAG index, DAG name, DAG table, DAG value) {
  IndexFcnUsed = false;
  if (value && isTag(name, NAME) && hasExceptInPROCorUNEVAL(value, simpl(new3(TABLEREF, name, index))))
    KernelException("recursive assignment");
  DAG function = table[1];
  if (function != null && isTag(function, NAME)) {
    IndexFcnUsed = true;
    DAG arguments = value ? simpl(new4(EXPSEQ, simpl(new2(LIST, index)), table, simpl(new2(LIST, value))))
                          : simpl(new3(EXPSEQ, simpl(new2(LIST, index)), table));
    return evalsysf("index/", textOf(function), arguments);
  }
  DAG key = keyOf(index);
  if (value) {
    storeEntry(key, table, value);
    return value;
  }
  PairAddress pair = search(key.word, table[3]);
  return pair == notFound ? absent : pairValue(pair);
}

void removeEntry(DAG index, DAG table) { hashdelete(keyOf(index).word, table[3]); }

DAG korelindex(DAG index, DAG name, DAG container, DAG value) {
  if (isTag(container, TABLE)) return TableIndex(index, name, container, value);
  if (isTag(container, LIST)) KernelException("cannot assign to a list");
  if (isTag(container, SET)) KernelException("cannot assign to a set");
  if (isTag(container, EXPSEQ)) KernelException("cannot assign to an expression sequence");
  if (isTag(container, NAME)) {
    DAG stored = valuenv(container, false);
    if (isTag(stored, TABLE)) return TableIndex(index, name, stored, value);
  }
  if (!isTag(container, NAME) && !isTag(container, TABLEREF) && !isTag(container, FUNCTION))
    KernelException("invalid left hand side of table reference");
  DAG table = maketable(DAG(), null);
  assign(container, table);
  return TableIndex(index, name, table, value);
}

namespace {

DAG asList(DAG x) { return simpl(new2(LIST, isTag(x, EXPSEQ) ? x : simpl(new2(EXPSEQ, x)))); }

struct Collection {
  DAG sequence;
  Word at;
  int mode;
};

bool collectPair(void* arg, PairAddress pair) {
  auto& c = *static_cast<Collection*>(arg);
  DAG key = pairKey(pair), value = pairValue(pair);
  DAG entry;
  switch (c.mode) {
    case tableIndices: entry = asList(key); break;
    case tableEntries: entry = asList(value); break;
    default: entry = simpl(new3(EQUATION, key, value)); break;
  }
  c.sequence[c.at++] = entry;
  return true;
}

}  // namespace

DAG indices(DAG table, int mode) {
  Collection c{newl2(static_cast<Word>(hashcount(table[3]) + 1), EXPSEQ), 1, mode};
  hashforeach(table[3], collectPair, &c);
  return simpl(c.sequence);
}

}  // namespace korel
