// Search for a part of an expression that matches a type.

#include "eval/procedures/procedures.h"
#include "eval/structure/operands.h"
#include "eval/types/type_match.h"
#include "eval/types/type_names.h"
#include "eval/types/types.h"
#include "eval/walk/part_walk.h"
#include "eval/walk/walk_memory.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/object_set.h"
#include "store/objects.h"

namespace korel {

namespace {


// ---- parts

bool hasBody(DAG procedure) {
  // The body of a built-in is its number.
  return !hasOption(procedure, ini("builtin"));
}

// The members of a sequence, which itself is no part.
Parts membersIn(DAG x, Word field) {
  return isTag(x[field], EXPSEQ) ? fieldsOf(x[field], 1, lengthOf(x[field])) : fieldsOf(x, field, field + 1);
}

Parts headAndMembers(DAG x) {
  Parts parts = membersIn(x, 2);
  parts.head = x.word + 4;
  return parts;
}

bool isRootOf(DAG call) { return call[1] == ini("RootOf") && isTag(call[2], EXPSEQ) && lengthOf(call[2]) > 1; }

struct TypedPartRules {
  static bool isPlainCall(DAG call) { return call[1] != ini("RootOf"); }
  static constexpr bool testsArguments = false;
  static Parts partsOf(DAG e) {
    Word n = lengthOf(e);
    switch (tagOf(e)) {
      case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case STRING: case NAME: case MEMBER: case LOCAL:
      case PARAM: case LEXICAL: case BINARY: case GARBAGE: case FOREIGN: case CONTROL: case DEBUG:
        return {};
      case RTABLE: return partsOfRTable(e, true);
      case SERIES: case ZPPOLY: case HASH: return korel::partsOf(e);
      case LIST: case SET: return membersIn(e, 1);
      case FUNCTION: return isRootOf(e) ? fieldsOf(e[2], 1, 2) : headAndMembers(e);
      case TABLEREF: return headAndMembers(e);
      case PROC: case MODDEF: return hasBody(e) ? fieldsOf(e, 5, 6) : Parts{};
      case MODULE: return isTag(e[2], MODDEF) ? partsOf(e[2]) : Parts{};
      case TABLE: return isTag(e[3], HASHTAB) ? fieldsOf(e, 3, 4) : Parts{};
      default: return fieldsOf(e, 1, n);
    }
  }
};

// ---- types that a tag decides

// One search runs at a time: nothing is evaluated meanwhile.
PartSearch walk;

constexpr TagSet leafTags = realTags | textTags;

bool hasTagAmong(DAG e, TagSet tags) {
  auto test = [tags](DAG part) { return isAmong(part, tags); };
  auto never = [](DAG) { return false; };
  if ((tags - leafTags).isEmpty()) return walk.any<TypedPartRules>(e, test, never);
  // The empty sequence matches nothing, not even the type of sequences.
  return walk.any<TypedPartRules>(e, test, [test](DAG part) { return test(part) && part != null; });
}

// ---- other types, whose tests may call procedures

// One search. Objects in which it found nothing are noted, and so are those that it is inside of: a
// shared part is searched once, and a table that holds itself is not entered again.
struct Search {
  DAG type;
  TypeTest test;  // of a name that the kernel knows
  bool products;  // the type asks for products or powers
  ObjectSet& met;
};

bool matches(const Search& search, DAG e) { return search.test != nullptr ? search.test(e) : type(e, search.type); }

bool found(const Search& search, DAG e);

// Types of products and powers see a term with its coefficient, which a sum stores apart.
bool asksForProducts(DAG t) {
  if (isTag(t, FUNCTION)) t = t[1];
  return t == ini("*") || t == ini("^");
}

// A term with its coefficient is tested as the product that it is. Its parts are those of the sum.
bool isTermOfType(const Search& search, DAG sum) {
  for (Word i = 1; i < lengthOf(sum); i += 2)
    if (sum[i + 1] != cons1 && matches(search, mterm((i + 1) / 2, sum))) return true;
  return false;
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

bool inParts(const Search& search, DAG e) {
  switch (tagOf(e)) {
    case TABLE: case HASHTAB: {
      DAG table = hasTag(e, TABLE) ? e[3] : e;
      if (!isTag(table, HASHTAB)) return false;
      EntrySearch entries{search, false};
      hashforeach(copyhashtab(table), inEntry, &entries);  // a test may store
      return entries.result;
    }
    case HASH: return false;
    case SUM:
      if (search.products && addition(e) && isTermOfType(search, e)) return true;
      break;
    default: break;
  }
  Parts parts = TypedPartRules::partsOf(e);
  if (parts.head != 0 && found(search, partAt(parts.head))) return true;
  for (; parts.at < parts.end; parts.at += parts.step)
    if (partAt(parts.at) && found(search, partAt(parts.at))) return true;
  return false;
}

bool found(const Search& search, DAG e) {
  if (e == null) return false;
  if (isImmediate(e) || tagOf(e) <= NAME) return matches(search, e) || (isTag(e, COMPLEX) && inParts(search, e));
  if (!search.met.insert(e)) return false;
  checkStack();
  return matches(search, e) || inParts(search, e);
}

}  // namespace

bool hastype(DAG e, DAG t) {
  if (e == null) return false;
  bool named = isTag(t, NAME);
  if (TagSet tags = named ? tagsOfType(t) : TagSet(); !tags.isEmpty()) return hasTagAmong(e, tags);
  return withWalkMemory<ObjectSet>([&](ObjectSet& met) {
    return found({t, named ? builtinType(t) : nullptr, asksForProducts(t), met}, e);
  });
}

DAG builtin::hastype(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  typematchI = -1;
  bool result = korel::hastype(call.arguments[1], call.arguments[2]);
  return ini(result ? StandardName("true") : StandardName("false"));
}

}  // namespace korel
