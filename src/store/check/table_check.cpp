// The check of the tables that make objects unique.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "store/check/verify.h"
#include "store/collect/collector.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

char violation[200];

const char* tell(const char* what, DAG x) {
  const char* tag = isObject(x) ? DagIDToName(headerWord(x) >> 26) : nullptr;
  std::snprintf(violation, sizeof violation, "0x%x (%s) %s", x.word, tag == nullptr ? "no tag" : tag, what);
  return violation;
}

// Objects with words that change after the simplifier is done with them: their hash may have been
// another when they came into the table.
bool hasChangingWords(Tag tag) {
  return tag == PROC || tag == MODDEF || tag == TABLE || tag == RTABLE || tag == MODULE;
}

bool isSameText(DAG a, DAG b) { return std::strcmp(textOf(a), textOf(b)) == 0; }
// What `identical` says, which would correct the labels: statements and procedures are never equal.
bool isOneOfItsKind(Tag tag) {
  return hasChangingWords(tag) || tag == ASSIGN || tag == FOR || tag == IF || tag == READ || tag == SAVE ||
         tag == STATSEQ || tag == STOP;
}
bool isSameContent(DAG a, DAG b) {
  return headerWord(a) == headerWord(b) && !isOneOfItsKind(tagOf(a)) &&
         std::memcmp(&a[1], &b[1], 4 * (std::size_t{lengthOf(a)} - 1)) == 0;
}

// What one table promises of its values.
struct Promise {
  Tag tag;  // NOTAG: any
  Word (*hash)(DAG value);
  bool (*same)(DAG a, DAG b);
};

const char* checkValue(const Promise& promise, Word key, DAG value) {
  if (!isObject(value)) return tell("is no object and stands in a unique table", value);
  if (promise.tag != NOTAG && tagOf(value) != promise.tag) return tell("stands in the wrong table", value);
  if (promise.tag == NOTAG && (controlWord(value) & simplifiedBit) == 0)
    return tell("is unique and not simplified", value);
  if (!hasChangingWords(tagOf(value)) && promise.hash(value) != key)
    return tell("stands under a hash that is not its own", value);
  return nullptr;
}

const char* checkTable(DAG table, const Promise& promise) {
  if (!isObject(table)) return nullptr;
  for (Word bucket = 1; bucket < lengthOf(table); ++bucket) {
    DAG chain = table[bucket];
    if (!chain) continue;
    if (rawField(chain, lengthOf(chain) - 2) != 0) return tell("has no empty last pair", chain);
    for (Word i = 1; rawField(chain, i) != 0; i += 2) {
      Word key = rawField(chain, i);
      DAG value = chain[i + 1];
      if (bucketIndex(key, lengthOf(table)) != bucket) return tell("stands in the wrong bucket", value);
      if (const char* found = checkValue(promise, key, value)) return found;
      for (Word k = 1; k < i; k += 2)
        if (rawField(chain, k) == key && promise.same(chain[k + 1], value)) return tell("is in its table twice", value);
    }
  }
  return nullptr;
}

Word textHash(DAG value) { return hashstring(textOf(value)); }

}  // namespace

const char* checkUniqueTables() {
  const char* found = checkTable(nametab, {NAME, textHash, isSameText});
  if (found == nullptr) found = checkTable(strtab, {STRING, textHash, isSameText});
  if (found == nullptr) found = checkTable(simpltab, {NOTAG, hashalg, isSameContent});
  if (found == nullptr && !checkTableIndices()) found = "the index of a table differs from the table";
  return found;
}

}  // namespace korel
