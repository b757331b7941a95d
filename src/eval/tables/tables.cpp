#include "eval/tables/tables.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/procedures/remember.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/structure/kinds.h"
#include "eval/tables/index_functions.h"
#include "eval/walk/has.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr Word tableBuckets = 256;

// ---- keys and bounds

// The indices of a key, one or several.
struct Indices {
  const DAG* first;
  Word count;

  explicit Indices(const DAG& key)
      : first(isSequence(key) ? &key[1] : &key), count(isSequence(key) ? memberCount(key) : 1) {}
};

DAG arrayName() { return ini("array"); }

bool isWithin(DAG index, DAG range) {
  DAG lower = range[1], upper = range[2];
  if (isImmediate(index) && isImmediate(lower) && isImmediate(upper)) {
    std::int32_t i = immediateValue(index);
    return immediateValue(lower) <= i && i <= immediateValue(upper);
  }
  return compcon(lower, index) <= 0 && compcon(index, upper) <= 0;
}

}  // namespace

bool isIntegerKey(DAG key) {
  Indices indices(key);
  for (Word i = 0; i < indices.count; ++i)
    if (!isInteger(indices.first[i])) return false;
  return true;
}

void checkBounds(DAG key, DAG table, EntryUse use) {
  if (!isArrayTable(table)) return;
  if (!isIntegerKey(key)) {
    if (use == EntryUse::store) KernelException("integer indices required for %1", arrayName());
    return;
  }
  Indices indices(key), ranges(table[tableBounds]);
  if (indices.count != ranges.count) KernelException("number of indices does not match rank");
  for (Word i = 0; i < indices.count; ++i)
    if (!isWithin(indices.first[i], ranges.first[i])) KernelException("%1 index out of range", arrayName());
}

// ---- entries

DAG lookUpDirectly(DAG index, DAG table) {
  DAG key = tableKey(index);
  checkBounds(key, table, EntryUse::lookup);
  PairAddress pair = search(key.word, table[tableEntries]);
  return pair == notFound ? absent : pairValue(pair);
}

namespace {

[[gnu::always_inline]] inline void store(DAG key, DAG table, DAG value) {
  DAG entries = table[tableEntries];
  updategen(key);
  updategen(value);
  stepEvaluationClock();
  hashunique(key.word, value, entries);
  updategen(entries);
  updategen(entries[bucketIndex(key.word, lengthOf(entries))]);
}

}  // namespace

void storeEntry(DAG key, DAG table, DAG value) { store(key, table, value); }

void storeDirectly(DAG index, DAG table, DAG value) {
  DAG key = tableKey(index);
  if (isArrayTable(table)) checkBounds(key, table, EntryUse::store);
  store(key, table, value);
}

namespace {

// Values that hold no reference to anything; parts of a COMPLEX are numbers.
constexpr TagSet plainTags = tagsBetween(INTNEG, NAME);

void refuseSelfReference(DAG index, DAG name, DAG value) {
  if (!isNameOrIndexed(name) || isAmong(value, plainTags)) return;
  if (hasExceptInPROCorUNEVAL(value, simpl(new3(TABLEREF, name, simpl(asSequence(index))))))
    KernelException("recursive assignment");
}

}  // namespace

FoundEntry lookUpEntry(DAG index, DAG name, DAG table) {
  if (table[tableFunction] == null) return {lookUpDirectly(index, table)};
  return lookUpByFunction(index, name, table);
}

void assignEntry(DAG index, DAG name, DAG table, DAG value) {
  refuseSelfReference(index, name, value);
  if (table[tableFunction] == null) storeDirectly(index, table, value);
  else storeByFunction(index, name, table, value);
}

void removeEntry(DAG index, DAG table) {
  stepEvaluationClock();
  hashdelete(tableKey(storedIndex(index, table[tableFunction])).word, table[tableEntries]);
}

// ---- a store into what is no table yet

namespace {

bool hasNewTableHook() {
  DAG hook = ini("index/newtable");
  return valuenv(hook, false) != hook;
}

// The user's procedure `index/newtable` decides what is made: the table that it returns is assigned to
// `name` and takes the value; anything else means that it has seen to the store itself.
void indexNewTable(DAG index, DAG name, DAG value) {
  DAG hook = valuenv(ini("index/newtable"), false);
  DAG procedure = isTag(hook, NAME) ? valuenv(hook, false) : hook;
  if (!isTag(procedure, PROC)) KernelException("`index/newtable` not assigned a procedure");
  DAG arguments = newSequence({new2(UNEVAL, name), new2(LIST, index), new2(LIST, new2(EXPSEQ, new2(UNEVAL, value)))});
  for (DAG kept : {index, name, value}) updategen(kept);
  DAG made = tableBehind(simpl(eval(new3(FUNCTION, ini("index/newtable"), arguments))));
  if (!made) return;
  assign(name, made);
  assignEntry(index, name, made, value);
}

constexpr TagSet assignableTags = {NAME, TABLEREF, FUNCTION};

}  // namespace

void korelindex(DAG index, DAG name, DAG container, DAG value) {
  const Kind& kind = kindOf(container);
  if (kind.store != nullptr) return kind.store(index, name, container, value);
  const bool insideProcedure = Environment->frame->previousFrame != nullptr;
  const bool hook = hasNewTableHook();
  if (kind.storeRefusal != nullptr && !(hook && insideProcedure)) KernelException(kind.storeRefusal);
  if (isName(container)) {
    DAG stored = valuenv(container, false);
    if (isTag(stored, TABLE)) return assignEntry(index, name, stored, value);
  }
  if (hook) return indexNewTable(index, isName(container) ? container : name, value);
  if (!isAmong(container, assignableTags)) KernelException("invalid left hand side of table reference");
  DAG table = maketable(DAG(), null);
  assign(container, table);
  assignEntry(index, name, table, value);
}

// ---- listing

namespace {

DAG asList(DAG x) { return simpl(new2(LIST, simpl(asSequence(x)))); }

struct Collection {
  DAG sequence;
  Word at;
  Listing what;
};

bool collectPair(void* arg, PairAddress pair) {
  auto& c = *static_cast<Collection*>(arg);
  DAG key = pairKey(pair), value = pairValue(pair);
  DAG entry;
  switch (c.what) {
    case Listing::indices: entry = asList(key); break;
    case Listing::pairs: entry = simpl(new3(EQUATION, key, value)); break;
    case Listing::entries: entry = asList(value); break;
  }
  c.sequence[c.at++] = entry;
  return true;
}

}  // namespace

DAG indices(DAG table, Listing what) {
  std::int64_t count = hashcount(table[tableEntries]);
  if (count >= maxLength) KernelException("object too large");
  Collection c{newl2(static_cast<Word>(count + 1), EXPSEQ), 1, what};
  hashforeach(table[tableEntries], collectPair, &c);
  return simpl(c.sequence);
}

DAG tableBehind(DAG x) {
  if (isTag(x, TABLEREF)) x = simpl(mvalue(x));
  if (isTag(x, NAME)) x = valuenv(x, false);
  return isTag(x, TABLE) ? x : DAG();
}

// ---- creation

namespace {

[[noreturn]] void invalidParameters() { KernelException("invalid parameters for creation of table or array"); }

struct Definition {
  DAG bounds;       // EXPSEQ of RANGE
  bool dimensions;  // told, be it that there are none
  DAG values;       // LIST, SET, or 0
};

void addRange(Definition& definition, Word& count, DAG range) {
  if (!isInteger(range[1]) || !isInteger(range[2])) KernelException("non-integer ranges in array/table creation");
  // An upper bound one below the lower makes an empty dimension.
  if (compcon(range[1], simpl(add(range[2], cons1))) > 0) KernelException("lower>upper bound in array/table creation");
  definition.bounds[count++] = range;
  definition.dimensions = true;
}

Definition readArguments(DAG arguments) {
  Definition definition{newl2(lengthOf(arguments), EXPSEQ), false, DAG()};
  Word count = 1;
  for (Word i = 1; i < lengthOf(arguments); ++i) {
    DAG argument = arguments[i];
    if (isTag(argument, RANGE)) {
      addRange(definition, count, argument);
    } else if (isTag(argument, EXPSEQ)) {
      definition.dimensions = true;
    } else if (isTag(argument, LIST) || isTag(argument, SET)) {
      if (definition.values) KernelException("multiple initialization of table/array");
      definition.values = argument;
    } else {
      invalidParameters();
    }
  }
  if (count != lengthOf(definition.bounds)) shorten(definition.bounds, lengthOf(definition.bounds), count);
  return definition;
}

bool areAll(DAG members, Tag tag) {
  for (Word i = 1; i < lengthOf(members); ++i)
    if (!isTag(members[i], tag)) return false;
  return true;
}
bool isListOfLists(DAG list) { return list[1] != null && areAll(list[1], LIST); }

DAG countingRange(DAG list) {
  return simpl(new3(RANGE, cons1, immediate(static_cast<std::int32_t>(lengthOf(list[1]) - 1))));
}

// Bounds that fit the values: one dimension for a flat list, two for a list of lists.
DAG boundsOfValues(DAG list) {
  if (!isListOfLists(list)) return new2(EXPSEQ, countingRange(list));
  return new3(EXPSEQ, countingRange(list), countingRange(list[1][1]));
}

// ---- initial values without the library

void storeEquation(DAG table, DAG equation) { assignEntry(equation[1], DAG(), table, equation[2]); }

// The members of nested lists, the outermost of which counts dimension `dimension`; the indices before
// that one are in `index`.
void fillDimension(DAG table, DAG list, DAG index, Word dimension) {
  if (!isTag(list, LIST)) invalidParameters();
  checkStack();
  DAG members = list[1];
  DAG lower = Indices(table[tableBounds]).first[dimension - 1][1];
  for (Word i = 1; i < lengthOf(members); ++i) {
    index[dimension] = simpl(add(lower, immediate(static_cast<std::int32_t>(i - 1))));
    if (dimension + 1 == lengthOf(index)) assignEntry(simpl(CopyAlg(index)), DAG(), table, members[i]);
    else fillDimension(table, members[i], index, dimension + 1);
  }
}

// Equations store their right sides under their left sides. Other members of a table's list count from
// 1; an array's nested lists fill its dimensions from the lower bounds.
void fillInitialValues(DAG table, DAG values) {
  updategen(values);
  DAG members = values[1];
  if (areAll(members, EQUATION)) {
    for (Word i = 1; i < lengthOf(members); ++i) storeEquation(table, members[i]);
    return;
  }
  if (isTag(values, SET)) invalidParameters();
  if (isArrayTable(table)) {
    Word rank = Indices(table[tableBounds]).count;
    if (rank == 0) invalidParameters();
    fillDimension(table, values, newl2(rank + 1, EXPSEQ), 1);
    return;
  }
  for (Word i = 1; i < lengthOf(members); ++i) {
    if (isTag(members[i], EQUATION)) storeEquation(table, members[i]);
    else assignEntry(immediate(static_cast<std::int32_t>(i)), DAG(), table, members[i]);
  }
}

}  // namespace

DAG maketable(DAG function, DAG arguments, TableKind kind) {
  Definition definition = readArguments(arguments);
  if (kind == TableKind::table) {
    if (definition.dimensions) KernelException("ranges cannot be specified for table definitions");
  } else if (!definition.dimensions) {
    if (!definition.values || isTag(definition.values, SET))
      KernelException("needs ranges or initialization list for building arrays");
    definition.bounds = boundsOfValues(definition.values);
  }
  DAG bounds = ini("false");
  if (kind == TableKind::array) bounds = tableKey(simpl(definition.bounds));
  DAG table = simpl(newTable(function ? function : null, bounds, newhashtab(tableBuckets)));
  if (!definition.values) return table;
  if (retrieve("index/FillInitVals") == null) fillInitialValues(table, definition.values);
  else evalsysf("index/FillInitVals", newSequence({table, definition.values}));
  return table;
}

// ---- the built-ins

namespace {

// A leading name, or a list of names of indexing functions, says how indices are read.
DAG build(const BuiltinCall& call, TableKind kind) {
  DAG arguments = call.arguments;
  Word n = argumentCount(call);
  DAG function;
  if (n > 0 && (isTag(arguments[1], NAME) || isFunctionList(arguments[1]))) {
    function = arguments[1];
    arguments = n == 1 ? null : copysub(arguments, 1, n - 1);
  }
  return maketable(function, arguments, kind);
}

DAG list(const BuiltinCall& call, Listing what) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG x = call.arguments[1];
  if (DAG table = tableBehind(x)) x = table;
  const Kind& kind = kindOf(x);
  if (kind.listing == nullptr) wrongParameters(call);
  return kind.listing(x, what);
}

}  // namespace

DAG builtin::table(const BuiltinCall& call) { return build(call, TableKind::table); }
DAG builtin::array(const BuiltinCall& call) { return build(call, TableKind::array); }
DAG builtin::indices(const BuiltinCall& call) { return list(call, Listing::indices); }
DAG builtin::entries(const BuiltinCall& call) { return list(call, Listing::entries); }

}  // namespace korel
