// Search for a part of an expression that matches a type.

#include "eval/procedures.h"
#include "frame/environment.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/integer_cache.h"
#include "store/objects.h"
#include "structure/operands.h"
#include "structure/type_match.h"
#include "structure/types.h"

namespace korel {

namespace {

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }

// One search. Objects in which it found nothing are noted in the integer cache, and so are those that it
// is inside of: a shared part is searched once, and a table that holds itself is not entered again.
struct Search {
  DAG type;
  bool products;  // the type asks for products or powers
  Word clock;
};

bool found(const Search& search, DAG e);

// Types of products and powers see a term with its coefficient, which a sum stores apart.
bool asksForProducts(DAG t) {
  if (isTag(t, FUNCTION)) t = t[1];
  return t == ini("*") || t == ini("^");
}

bool inFields(const Search& search, DAG e, Word first, Word step) {
  for (Word i = first; i < lengthOf(e); i += step)
    if (e[i] && found(search, e[i])) return true;
  return false;
}

// The members of a sequence, which itself is no part.
bool inMembers(const Search& search, DAG members) {
  return isTag(members, EXPSEQ) ? inFields(search, members, 1, 1) : found(search, members);
}

bool inSum(const Search& search, DAG sum) {
  if (search.products && addition(sum))
    for (Word i = 1; i < lengthOf(sum); i += 2)
      if (sum[i + 1] != cons1 && found(search, mterm((i + 1) / 2, sum))) return true;
  return inFields(search, sum, 1, 1);
}

struct EntrySearch {
  const Search& search;
  bool result;
};
bool inEntry(void* arg, PairAddress pair) {
  auto& entries = *static_cast<EntrySearch*>(arg);
  entries.result = found(entries.search, pairKey(pair)) || found(entries.search, pairValue(pair));
  return !entries.result;
}

bool inEntries(const Search& search, DAG table) {
  if (!isTag(table, HASHTAB)) return false;
  EntrySearch entries{search, false};
  hashforeach(table, inEntry, &entries);
  return entries.result;
}

bool inBody(const Search& search, DAG procedure) {
  // The body of a built-in is its number.
  return !hasOption(procedure, ini("builtin")) && found(search, procedure[5]);
}

bool inParts(const Search& search, DAG e) {
  switch (tagOf(e)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case STRING: case NAME: case MEMBER:
    case LOCAL: case PARAM: case LEXICAL:
      return false;
    case SUM: return inSum(search, e);
    case SERIES: return found(search, e[1]) || inFields(search, e, 2, 2);
    case ZPPOLY: return found(search, e[1]);
    case LIST: case SET: return inMembers(search, e[1]);
    case FUNCTION:
      if (e[1] == ini("RootOf") && isTag(e[2], EXPSEQ) && lengthOf(e[2]) > 1)
        return found(search, e[2][1]);
      return found(search, e[1]) || inMembers(search, e[2]);
    case TABLEREF: return found(search, e[1]) || inMembers(search, e[2]);
    case PROC: case MODDEF: return inBody(search, e);
    case MODULE: return isTag(e[2], MODDEF) && inBody(search, e[2]);
    case TABLE: return inEntries(search, e[3]);
    case HASHTAB: return inEntries(search, e);
    case RTABLE: case BINARY: case HASH: case GARBAGE: case FOREIGN: case CONTROL: case DEBUG:
      return false;
    default: return inFields(search, e, 1, 1);
  }
}

bool found(const Search& search, DAG e) {
  if (e == null) return false;
  if (isImmediate(e) || tagOf(e) <= NAME)
    return type(e, search.type) || (isTag(e, COMPLEX) && inParts(search, e));
  if (cachedInteger(e, search.clock) != nullptr) return false;
  checkStack();
  cacheInteger(e, false, search.clock);
  return type(e, search.type) || inParts(search, e);
}

}  // namespace

bool hastype(DAG e, DAG t) {
  return found({t, asksForProducts(t), beginIntegerTraversal()}, e);
}

DAG hastypeBuiltin(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  typematchI = -1;
  bool result = hastype(call.arguments[1], call.arguments[2]);
  return ini(result ? StandardName("true") : StandardName("false"));
}

}  // namespace korel
