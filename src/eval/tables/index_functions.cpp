#include "eval/tables/index_functions.h"

#include <cstring>
#include <utility>

#include "eval/procedures/remember.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/substitute.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// One access, as far as the functions have not had their say.
struct Access {
  DAG index;  // EXPSEQ or a single index
  DAG name;
  DAG table;
  DAG rest;   // functions still to come: `null`, a NAME or a LIST
  DAG value;  // what is stored; 0 in a lookup

  bool isStore() const { return value != DAG(); }
  Access at(DAG otherIndex) const { return {otherIndex, name, table, rest, value}; }
  Access with(DAG otherValue) const { return {index, name, table, rest, otherValue}; }
};

// What is found, or, after a store, what was stored.
FoundEntry entry(Access access);

// ---- indices

bool allEqual(DAG index) {
  if (!isSequence(index)) return true;
  for (Word i = 2; i < lengthOf(index); ++i)
    if (index[i] != index[1]) return false;
  return true;
}

bool hasEqualNeighbours(DAG sorted) {
  if (!isSequence(sorted)) return false;
  for (Word i = 2; i < lengthOf(sorted); ++i)
    if (sorted[i] == sorted[i - 1]) return true;
  return false;
}

// The indices in ascending order of their words, integers by value; `odd` tells whether the permutation
// is odd. There are few of them: insertion.
DAG SortIndices(DAG index, bool& odd) {
  odd = false;
  if (!isSequence(index)) return index;
  auto before = [](DAG a, DAG b) {
    if (isInteger(a) && isInteger(b)) return compcon(a, b) < 0;
    return static_cast<std::int32_t>(a.word) < static_cast<std::int32_t>(b.word);
  };
  DAG sorted = CopyAlg(index);
  for (Word i = 2; i < lengthOf(sorted); ++i)
    for (Word j = i; j > 1 && before(sorted[j], sorted[j - 1]); --j) {
      std::swap(sorted[j - 1], sorted[j]);
      odd = !odd;
    }
  return simpl(sorted);
}

DAG negated(DAG x) { return simpl(new3(SUM, x, consm1)); }

// The entry `sorted` stands for the one that was asked for; where there is none, so does its name.
FoundEntry entryOrReference(const Access& access, DAG sorted) {
  FoundEntry found = entry(access.at(sorted));
  bool isMissing = found.value == absent && !access.isStore();
  if (isMissing && sorted != access.index && isNameOrIndexed(access.name))
    found.value = simpl(new3(TABLEREF, access.name, sorted));
  return found;
}

// ---- the built-in functions
//
// What follows from the indices alone (the diagonal of an antisymmetric array, what lies off a diagonal, an
// identity matrix) is answered before the entries and the bounds are looked at.

FoundEntry symmetric(const Access& access) {
  bool odd;
  return entryOrReference(access, SortIndices(access.index, odd));
}

FoundEntry antisymmetric(const Access& access) {
  bool odd;
  DAG sorted = SortIndices(access.index, odd);
  if (hasEqualNeighbours(sorted)) {
    if (!access.isStore()) return {cons0};
    if (!isZero(access.value)) KernelException("cannot assign non-zero to diagonal entry of antisymmetric");
  }
  if (!odd) return entryOrReference(access, sorted);
  if (access.isStore()) return entry(access.at(sorted).with(negated(access.value)));
  FoundEntry found = entryOrReference(access, sorted);
  if (found.value != absent) found.value = negated(found.value);
  return found;
}

FoundEntry diagonal(const Access& access) {
  if (!allEqual(access.index)) {
    if (access.isStore()) KernelException("cannot assign to the off-diagonal elements of a diagonal array");
    if (isIntegerKey(access.index)) return {cons0};
  }
  return entry(access);
}

FoundEntry identity(const Access& access) {
  if (access.isStore()) KernelException("cannot assign to an identity matrix");
  DAG key = tableKey(access.index);
  if (allEqual(key)) return {cons1};
  return {isIntegerKey(key) ? cons0 : absent};
}

FoundEntry sparse(const Access& access) {
  FoundEntry found = entry(access);
  if (found.value != absent || access.isStore()) return found;
  if (isArrayTable(access.table) || isIntegerKey(tableKey(access.index))) found.value = cons0;
  return found;
}

struct IndexFunction {
  const char* name;
  FoundEntry (*access)(const Access& access);
  bool sorts;  // entries are kept under the sorted indices
};
constexpr IndexFunction indexFunctions[] = {
    // name            access         sorts
    {"symmetric",     symmetric,     true},
    {"antisymmetric", antisymmetric, true},
    {"diagonal",      diagonal,      false},
    {"identity",      identity,      false},
    {"sparse",        sparse,        false},
};

const IndexFunction* builtinFunction(DAG name) {
  const char* text = textOf(name);
  for (const IndexFunction& row : indexFunctions)
    if (row.name[0] == text[0] && std::strcmp(row.name, text) == 0) return &row;
  return nullptr;
}

// ---- functions of the library

// The procedure sees a table that shares the entries and has the remaining functions. A reference to
// that table in its result stands for the name.
FoundEntry libraryEntry(DAG function, const Access& access) {
  DAG view = CopyAlg(access.table);
  view[tableFunction] = access.rest;
  view = simpl(view);
  DAG arguments = newl2(access.isStore() ? 4 : 3, EXPSEQ);
  arguments[1] = simpl(new2(LIST, simpl(asSequence(access.index))));
  arguments[2] = view;
  if (access.isStore()) arguments[3] = simpl(new2(LIST, simpl(new2(EXPSEQ, new2(UNEVAL, access.value)))));
  // The procedure may assign the names that hold them.
  for (DAG kept : {access.name, access.table, access.index, access.value, access.rest}) updategen(kept);
  DAG result = evalsysf("index/", textOf(function), arguments);
  if (access.isStore()) return {access.value, true};
  if (!isNameOrIndexed(access.name)) return {result, true};
  DAG replacement = new2(EXPSEQ, new3(EQUATION, view, access.name));
  return {simpl(substituteInCopy(replacement, result)), true};
}

// ---- the chain of functions

// Takes the first of the functions that remain.
DAG takeFirst(Access& access) {
  DAG functions = access.rest;
  access.rest = null;
  if (!isTag(functions, LIST) || functions[1] == null) return functions;
  DAG names = functions[1];
  if (lengthOf(names) > 2) access.rest = simpl(new2(LIST, copydel(names, 0, 1)));
  return names[1];
}

FoundEntry entry(Access access) {
  if (access.rest == null) {
    if (!access.isStore()) return {lookUpDirectly(access.index, access.table)};
    storeDirectly(access.index, access.table, access.value);
    return {access.value};
  }
  checkStack();
  DAG function = takeFirst(access);
  if (!isName(function)) return entry(access);
  if (const IndexFunction* row = builtinFunction(function)) return row->access(access);
  return libraryEntry(function, access);
}

}  // namespace

FoundEntry lookUpByFunction(DAG index, DAG name, DAG table) {
  return entry({index, name, table, table[tableFunction], DAG()});
}
void storeByFunction(DAG index, DAG name, DAG table, DAG value) {
  entry({index, name, table, table[tableFunction], value});
}

DAG storedIndex(DAG index, DAG function) {
  DAG first = isTag(function, LIST) && function[1] != null ? function[1][1] : function;
  if (!isName(first)) return index;
  const IndexFunction* row = builtinFunction(first);
  if (row == nullptr || !row->sorts) return index;
  bool odd;
  return SortIndices(index, odd);
}

bool isFunctionList(DAG x) {
  if (!isTag(x, LIST) || lengthOf(x[1]) == 1) return false;
  DAG names = x[1];
  for (Word i = 1; i < lengthOf(names); ++i) {
    if (!isName(names[i])) return false;
    if (builtinFunction(names[i]) == nullptr && retrieve("index/", textOf(names[i])) == null) return false;
  }
  return true;
}

}  // namespace korel
