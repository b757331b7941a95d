#include "eval/tables/index_functions.h"

#include <cstring>
#include <utility>

#include "numbers/arithmetic.h"
#include "eval/procedures/remember.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/library_calls.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"
#include "eval/structure/substitute.h"
#include "eval/tables/tables.h"
#include "store/vocabulary.h"

namespace korel {

namespace {


// One access, as far as the functions have not had their say.
struct Access {
  DAG index;  // EXPSEQ or a single index
  DAG name;
  DAG table;
  DAG value;  // 0 for a lookup
  DAG rest;   // functions still to come: `null`, a NAME or a LIST

  Access at(DAG otherIndex) const { return {otherIndex, name, table, value, rest}; }
  Access with(DAG otherValue) const { return {index, name, table, otherValue, rest}; }
};

DAG entry(Access access);

// ---- indices

bool allEqual(DAG index) {
  if (!isTag(index, EXPSEQ)) return true;
  for (Word i = 2; i < lengthOf(index); ++i)
    if (index[i] != index[1]) return false;
  return true;
}

bool hasEqualNeighbours(DAG sorted) {
  if (!isTag(sorted, EXPSEQ)) return false;
  for (Word i = 2; i < lengthOf(sorted); ++i)
    if (sorted[i] == sorted[i - 1]) return true;
  return false;
}

// The indices in ascending order of their words, integers by value; `odd` tells whether the permutation
// is odd. There are few of them: insertion.
DAG SortIndices(DAG index, bool& odd) {
  odd = false;
  if (!isTag(index, EXPSEQ)) return index;
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
DAG entryOrReference(const Access& access, DAG sorted) {
  DAG found = entry(access.at(sorted));
  if (found != absent || access.value || sorted == access.index || !isNameOrIndexed(access.name)) return found;
  return simpl(new3(TABLEREF, access.name, sorted));
}

// ---- the built-in functions

DAG symmetric(const Access& access) {
  bool odd;
  return entryOrReference(access, SortIndices(access.index, odd));
}

DAG antisymmetric(const Access& access) {
  bool odd;
  DAG sorted = SortIndices(access.index, odd);
  if (hasEqualNeighbours(sorted)) {
    if (!access.value) {
      checkBounds(tableKey(access.index), access.table, false);
      return cons0;
    }
    if (!isZero(access.value))
      KernelException("cannot assign non-zero to diagonal entry of antisymmetric");
  }
  if (!odd) return entryOrReference(access, sorted);
  if (access.value) {
    entry(access.at(sorted).with(negated(access.value)));
    return access.value;
  }
  DAG found = entryOrReference(access, sorted);
  return found == absent ? absent : negated(found);
}

DAG diagonal(const Access& access) {
  if (!allEqual(access.index)) {
    if (access.value) KernelException("cannot assign to the off-diagonal elements of a diagonal array");
    if (isIntegerKey(access.index)) {
      checkBounds(access.index, access.table, false);
      return cons0;
    }
  }
  return entry(access);
}

DAG identity(const Access& access) {
  if (access.value) KernelException("cannot assign to an identity matrix");
  DAG key = tableKey(access.index);
  bool equal = allEqual(key);
  if (!equal && !isIntegerKey(key)) return absent;
  checkBounds(key, access.table, false);
  return equal ? cons1 : cons0;
}

DAG sparse(const Access& access) {
  DAG found = entry(access);
  if (found != absent || access.value) return found;
  bool array = access.table[2] != ini("false");
  return array || isIntegerKey(tableKey(access.index)) ? cons0 : absent;
}

struct IndexFunction {
  const char* name;
  DAG (*access)(const Access& access);
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
DAG libraryEntry(DAG function, const Access& access) {
  DAG view = CopyAlg(access.table);
  view[1] = access.rest;
  view = simpl(view);
  DAG sequence = isTag(access.index, EXPSEQ) ? access.index : simpl(new2(EXPSEQ, access.index));
  DAG arguments = newl2(access.value ? 4 : 3, EXPSEQ);
  arguments[1] = simpl(new2(LIST, sequence));
  arguments[2] = view;
  if (access.value) arguments[3] = simpl(new2(LIST, simpl(new2(EXPSEQ, new2(UNEVAL, access.value)))));
  // The procedure may assign the names that hold them.
  for (DAG kept : {access.name, access.table, access.index, access.value, access.rest}) updategen(kept);
  DAG result = evalsysf("index/", textOf(function), arguments);
  IndexFcnUsed = true;
  if (access.value) return access.value;
  if (!isNameOrIndexed(access.name)) return result;
  DAG replacement = new2(EXPSEQ, new3(EQUATION, view, access.name));
  return simpl(substituteInCopy(replacement, result));
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

DAG entry(Access access) {
  if (access.rest == null) return directEntry(access.index, access.table, access.value);
  checkStack();
  DAG function = takeFirst(access);
  if (!isTag(function, NAME)) return entry(access);
  if (const IndexFunction* row = builtinFunction(function)) return row->access(access);
  return libraryEntry(function, access);
}

}  // namespace

DAG entryByFunction(DAG index, DAG name, DAG table, DAG value) {
  return entry({index, name, table, value, table[1]});
}

DAG storedIndex(DAG index, DAG function) {
  DAG first = isTag(function, LIST) && function[1] != null ? function[1][1] : function;
  if (!isTag(first, NAME)) return index;
  const IndexFunction* row = builtinFunction(first);
  if (row == nullptr || !row->sorts) return index;
  bool odd;
  return SortIndices(index, odd);
}

bool isFunctionList(DAG x) {
  if (!isTag(x, LIST) || lengthOf(x[1]) == 1) return false;
  DAG names = x[1];
  for (Word i = 1; i < lengthOf(names); ++i) {
    if (!isTag(names[i], NAME)) return false;
    if (builtinFunction(names[i]) == nullptr && retrieve("index/", textOf(names[i])) == null) return false;
  }
  return true;
}

}  // namespace korel
