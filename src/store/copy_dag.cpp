#include "store/copy_dag.h"

#include "eval/simplify/simplify.h"
#include "store/check/verify_walk.h"
#include "store/collect/collector.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"

namespace korel {

namespace {

constexpr DAG invalidStructure{2};

// The copy under way. Objects are copied as they are first met, shallowly, and their references
// replaced later, so that the depth of the structure does not matter.
struct Copying {
  DAG table;  // HASHTAB: object to its copy
  DAG queue;  // EXPSEQ of pairs (object, copy), in the order in which they were met
  Word end;   // of the queue
};
Copying copying;
DAG& copytab = copying.table;

DAG (*rtableCopier)(DAG rtable, DAG (*copyReference)(DAG x)) = nullptr;

// A new object with the raw fields of `s` and, for the time being, its references.
DAG shallowCopy(DAG s) {
  switch (tagOf(s)) {
    case HFLOAT: return NewHFloat(hfloatValue(s), false);
    case HASHTAB: {
      DAG table = newhashtab(lengthOf(s) - 1);
      controlWord(table) |= controlWord(s) & tableBit;
      return table;
    }
    default: {
      DAG copy = CopyAlg(s);
      constexpr Word kept = tableBit | brnextKnown;
      if (hasTag(s, HASH) || hasTag(s, FOR)) controlWord(copy) |= controlWord(s) & kept;
      return copy;
    }
  }
}

// The copy that stands for `x`; its references may still be those of `x`.
DAG copyReference(DAG x) {
  if (!isObject(x)) return x;
  switch (tagOf(x)) {
    case NAME: return x;  // one object for its text already, or a local, which is its name
    case STRING: return strinstall(textOf(x));
    case FOREIGN: return x;  // its owner knows the address
    case RTABLE:
      if (rtableCopier == nullptr) return x;
      break;
    default: break;
  }
  PairAddress pair = search(x.word, copytab);
  if (pair != notFound) return pairValue(pair);
  DAG copy = hasTag(x, RTABLE) ? rtableCopier(x, copyReference) : shallowCopy(x);
  hashinsert(x.word, copy, copytab);
  copying.queue[copying.end++] = x;
  copying.queue[copying.end++] = copy;
  return copy;
}

template <class Visit>
void forEachPair(DAG table, Visit visit) {
  for (Word bucket = 1; bucket < lengthOf(table); ++bucket) {
    DAG chain = table[bucket];
    if (!chain) continue;
    visitChain(chain, [&](PairAddress pair) { return visit(pairKey(pair), pairValue(pair)), true; });
  }
}

void copyReferencesOf(DAG source, DAG copy) {
  switch (tagOf(source)) {
    case RTABLE: return;  // its copier has done it
    case HASHTAB: {
      bool rawKeys = (controlWord(source) & tableBit) != 0;
      forEachPair(source, [&](DAG key, DAG value) {
        DAG newValue = copyReference(value);
        if (rawKeys) hashinsert(key.word, newValue, copy);
        else copyReference(key);
      });
      return;
    }
    default: forEachReferenceField(copy, [](DAG& field) { field = copyReference(field); });
  }
}

// Keys that are objects are the unique objects of their content: the tables are filled when all copies
// are complete and can be simplified.
void fillTable(DAG source, DAG copy) {
  if (controlWord(source) & tableBit) return;
  forEachPair(source,
              [&](DAG key, DAG value) { hashunique(simpl(copyReference(key)).word, copyReference(value), copy); });
}

Word bucketsFor(std::uint32_t objects) {
  Word buckets = 16;
  while (buckets < objects && buckets < (maxLength >> 1)) buckets *= 2;
  return buckets;
}

}  // namespace

void registerRtableCopier(DAG (*copy)(DAG rtable, DAG (*copyReference)(DAG x))) { rtableCopier = copy; }

DAG CopyDAG(DAG x) {
  if (isImmediate(x)) return x;
  StructureSize size = measureStructure(x);
  if (!size.valid) return invalidStructure;
  registerRoot(&copytab);
  Copying outer = copying;  // simplifying a key may lead here again
  copytab = newhashtab(bucketsFor(size.objects));
  copying.queue = newl2(2 * size.objects + 1, EXPSEQ);
  copying.end = 1;
  DAG result = copyReference(x);
  for (Word i = 1; i < copying.end; i += 2) copyReferencesOf(copying.queue[i], copying.queue[i + 1]);
  for (Word i = 1; i < copying.end; i += 2)
    if (hasTag(copying.queue[i], HASHTAB)) fillTable(copying.queue[i], copying.queue[i + 1]);
  clearhash(copytab, true);
  release(copytab, lengthOf(copytab));
  release(copying.queue, lengthOf(copying.queue));
  copying = outer;
  return result;
}

}  // namespace korel
