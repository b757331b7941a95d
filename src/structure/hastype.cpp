// Search for a part of an expression that matches a type.

#include "eval/procedures.h"
#include "frame/environment.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/objects.h"
#include "structure/operands.h"
#include "structure/type_match.h"
#include "structure/types.h"

namespace korel {

namespace {

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }

bool anyField(DAG e, Word first, Word step, DAG t) {
  for (Word i = first; i < lengthOf(e); i += step)
    if (e[i] && hastype(e[i], t)) return true;
  return false;
}

// The members of a sequence, which itself is no part.
bool anyMember(DAG members, DAG t) {
  return isTag(members, EXPSEQ) ? anyField(members, 1, 1, t) : hastype(members, t);
}

// Types of products and powers see a term with its coefficient, which a sum stores apart.
bool asksForProducts(DAG t) {
  if (isTag(t, FUNCTION)) t = t[1];
  return t == ini("*") || t == ini("^");
}

bool anyTerm(DAG sum, DAG t) {
  if (addition(sum) && asksForProducts(t))
    for (Word i = 1; i < lengthOf(sum); i += 2)
      if (sum[i + 1] != cons1 && hastype(mterm((i + 1) / 2, sum), t)) return true;
  return anyField(sum, 1, 1, t);
}

struct Search {
  DAG type;
  bool found;
};
bool searchEntry(void* arg, PairAddress pair) {
  auto& search = *static_cast<Search*>(arg);
  search.found = hastype(pairKey(pair), search.type) || hastype(pairValue(pair), search.type);
  return !search.found;
}

bool anyEntry(DAG table, DAG t) {
  if (!isTag(table, HASHTAB)) return false;
  Search search{t, false};
  hashforeach(table, searchEntry, &search);
  return search.found;
}

bool anyInBody(DAG procedure, DAG t) {
  // The body of a built-in is its number.
  return !hasOption(procedure, ini("builtin")) && hastype(procedure[5], t);
}

bool anyPart(DAG e, DAG t) {
  switch (tagOf(e)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case STRING: case NAME: case MEMBER:
    case LOCAL: case PARAM: case LEXICAL:
      return false;
    case SUM: return anyTerm(e, t);
    case SERIES: return hastype(e[1], t) || anyField(e, 2, 2, t);
    case ZPPOLY: return hastype(e[1], t);
    case LIST: case SET: return anyMember(e[1], t);
    case FUNCTION:
      if (e[1] == ini("RootOf") && isTag(e[2], EXPSEQ) && lengthOf(e[2]) > 1) return hastype(e[2][1], t);
      return hastype(e[1], t) || anyMember(e[2], t);
    case TABLEREF: return hastype(e[1], t) || anyMember(e[2], t);
    case PROC: case MODDEF: return anyInBody(e, t);
    case MODULE: return isTag(e[2], MODDEF) && anyInBody(e[2], t);
    case TABLE: return anyEntry(e[3], t);
    case HASHTAB: return anyEntry(e, t);
    case RTABLE: case BINARY: case HASH: case GARBAGE: case FOREIGN: case CONTROL: case DEBUG:
      return false;
    default: return anyField(e, 1, 1, t);
  }
}

}  // namespace

bool hastype(DAG e, DAG t) {
  if (e == null) return false;
  if (type(e, t)) return true;
  if (isImmediate(e)) return false;
  checkStack();
  return anyPart(e, t);
}

DAG hastypeBuiltin(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  typematchI = -1;
  bool found = hastype(call.arguments[1], call.arguments[2]);
  return ini(found ? StandardName("true") : StandardName("false"));
}

}  // namespace korel
