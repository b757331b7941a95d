#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/named_kinds.h"
#include "eval/procedures/remember.h"
#include "eval/simplify/simplify.h"
#include "eval/tables/tables.h"
#include "external/addresses.h"
#include "external/vector_functions.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace vector {

// ---- lists

namespace {

DAG listBehind(ALGEB x) {
  DAG list = valueOf(x);
  if (!isTag(list, LIST)) userror("first argument must be a list");
  return list;
}

// The body of the list, which has a member `i`.
DAG bodyWithMember(DAG list, M_INT i) {
  if (i < 1 || i > static_cast<M_INT>(memberCount(list[1])))
    KernelException("bad index, %1, into list", simpl(NewInteger(i)));
  return list[1];
}

}  // namespace

ALGEB listAlloc(M_INT members) {
  if (members < 0 || members >= M_INT{maxLength}) userror("object too large");
  DAG body = newl2(static_cast<Word>(members) + 1, EXPSEQ);
  for (Word i = 1; i < lengthOf(body); ++i) body[i] = cons0;
  return toC(new2(LIST, body));
}

void listAssign(ALGEB x, M_INT i, ALGEB value) {
  DAG list = listBehind(x);
  if (isSimplified(list)) userror("lists from Korel cannot be modified in-place");
  bodyWithMember(list, i)[i] = simpl(fromC(value));
}
ALGEB listSelect(ALGEB x, M_INT i) { return toC(bodyWithMember(listBehind(x), i)[i]); }

// ---- x[i, j, ...]

DAG indexSequence(M_INT count, const M_INT* index) {
  if (count < 0 || count >= M_INT{maxLength}) userror("object too large");
  DAG sequence = newl2(static_cast<Word>(count) + 1, EXPSEQ);
  for (M_INT i = 0; i < count; ++i) sequence[i + 1] = simpl(NewInteger(index[i]));
  return simpl(sequence);
}

ALGEB selectIndexed(ALGEB reference, M_INT count, const M_INT* index) {
  DAG x = fromC(reference), value = valueOf(reference);
  constexpr Tag indexable[] = {LIST, SET, TABLE, RTABLE, STRING, NAME, TABLEREF, EXPSEQ};
  bool isIndexable = false;
  for (Tag tag : indexable) isIndexable = isIndexable || isTag(value, tag);
  if (!isIndexable) userror("indexable variable expected");
  // A table is selected from by its name, where it has one.
  DAG base = isTag(value, TABLE) ? x : value;
  return toC(simpl(eval(simpl(new3(TABLEREF, base, indexSequence(count, index))))));
}

// ---- tables

namespace {

struct NamedTable {
  DAG name, table;
};
NamedTable tableFor(ALGEB reference) {
  DAG table = valueOf(reference);
  if (!isTag(table, TABLE)) userror("first argument must be a table");
  return {fromC(reference), table};
}

DAG keyOf(ALGEB index) { return asSequence(simpl(fromC(index))); }

}  // namespace

M_BOOL isTable(ALGEB x) { return isTag(valueOf(x), TABLE); }

ALGEB tableAlloc() { return toC(simpl(maketable(DAG(), null))); }

void tableAssign(ALGEB reference, ALGEB index, ALGEB value) {
  NamedTable t = tableFor(reference);
  assignEntry(keyOf(index), t.name, t.table, simpl(fromC(value)));
}
void tableDelete(ALGEB reference, ALGEB index) { removeEntry(keyOf(index), tableFor(reference).table); }

M_BOOL tableHasEntry(ALGEB reference, ALGEB index) {
  NamedTable t = tableFor(reference);
  return lookUpEntry(keyOf(index), t.name, t.table).value != absent;
}
ALGEB tableSelect(ALGEB reference, ALGEB index) {
  NamedTable t = tableFor(reference);
  DAG value = lookUpEntry(keyOf(index), t.name, t.table).value;
  return value == absent ? nullptr : toC(value);
}

}  // namespace vector

}  // namespace korel
