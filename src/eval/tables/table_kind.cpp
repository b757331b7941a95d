// Tables, and the entries behind them, in the operations that all objects share.

#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "eval/tables/tables.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// A raw table has not got its entries yet.
bool hasEntries(DAG table) { return isTag(table[tableEntries], HASHTAB); }

// ---- operands: the indexing function, the bounds of an array, the list of entries

DAG tableHead(DAG table) { return isArrayTable(table) ? ini("array") : ini("table"); }
std::int64_t tableCount(DAG table) { return isArrayTable(table) ? 3 : 2; }
DAG tableOperand(DAG table, std::int64_t i) {
  if (i == tableCount(table)) return simpl(new2(LIST, indices(table, Listing::pairs)));
  return table[i];
}

DAG takeTableApart(DAG table) {
  DAG copy = CopyAlg(table);
  if (hasEntries(table)) copy[tableEntries] = copyhashtab(table[tableEntries]);
  return copy;
}

// What may stand for the bounds: none, a range, or a sequence of ranges.
bool isBounds(DAG x) {
  if (x == ini("false") || isTag(x, RANGE)) return true;
  if (!isSequence(x) || x == null) return false;
  for (Word i = 1; i < lengthOf(x); ++i)
    if (!isTag(x[i], RANGE)) return false;
  return true;
}
void replaceInTable(TakenApart& object, std::int64_t i, DAG replacement) {
  if (i > tableBounds || (i == tableBounds && !isBounds(replacement))) improperSelector();
  object.parts[i] = replacement;
}

// ---- walks

struct EntryWalk {
  const OperandWalk& walk;
  DAG fresh;
};

// Keys stay; an entry that is dropped goes with its key. The walk is over a copy: what is called may store.
DAG mapEntries(const OperandWalk& walk, DAG entries) {
  EntryWalk e{walk, newhashtab(lengthOf(entries) - 1)};
  hashforeach(
      copyhashtab(entries),
      [](void* arg, PairAddress pair) {
        auto& w = *static_cast<EntryWalk*>(arg);
        DAG key = pairKey(pair);
        DAG value = simpl(w.walk(pairValue(pair)));
        if (w.walk.purpose == OperandWalk::mapping || value != null) hashinsert(key.word, value, w.fresh);
        return true;
      },
      &e);
  return e.fresh;
}

DAG mapTable(const OperandWalk& walk, DAG table) {
  if (!hasEntries(table)) return table;
  DAG entries = mapEntries(walk, table[tableEntries]);
  return simpl(newTable(table[tableFunction], table[tableBounds], entries));
}

// ---- equality

bool sameTableStructure(DAG a, DAG b) {
  return a[tableFunction] == b[tableFunction] && a[tableBounds] == b[tableBounds];
}
bool sameTableEntries(DAG a, DAG b) {
  if (a[tableFunction] != null || b[tableFunction] != null)
    KernelException("cannot handle tables with indexing functions");
  return hashEqualEntries(a[tableEntries], b[tableEntries]);
}

}  // namespace

constexpr Kind tableKind = {
    .head = tableHead,
    .count = tableCount,
    .operand = tableOperand,
    .takeApart = takeTableApart,
    .replace = replaceInTable,
    .map = mapTable,
    .sameStructure = sameTableStructure,
    .sameEntries = sameTableEntries,
    .store = assignEntry,
    .listing = indices,
};

constexpr Kind entriesKind = {
    .operand = anyField,
    .takeApart = refuseSubsop,
    .map = mapEntries,
    .sameEntries = hashEqualEntries,
};

}  // namespace korel
