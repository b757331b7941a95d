#include "eval/evaluate/select.h"

#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/operand.h"
#include "eval/evaluate/unique_sequence.h"
#include "eval/procedures/modules.h"
#include "eval/procedures/remember.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "eval/tables/tables.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "rtable/rtable_kind.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// The members that positions i to j name, or an error; i = j + 1 is empty.
struct Span {
  std::int64_t from, to;
};
Span spanOf(DAG lower, DAG upper, std::int64_t n) {
  std::int64_t i = LongLongValue(lower), j = LongLongValue(upper);
  if (i < 0) i += n + 1;
  if (j < 0) j += n + 1;
  if (i < 1 || j > n || i > j + 1) improperSelector();
  return {i, j};
}

// A part of a container, of the container's kind.
DAG partOf(DAG container, DAG body, Span span) {
  DAG part = newl2(static_cast<Word>(span.to - span.from + 2), EXPSEQ);
  for (std::int64_t k = span.from; k <= span.to; ++k) part[k - span.from + 1] = body[k];
  if (hasTag(container, EXPSEQ)) return simpl(part);
  return simpl(new2(tagOf(container), simpl(part)));
}

DAG moduleMember(DAG module, DAG index, DAG* lastName) {
  DAG name = singleMember(index);
  if (!isName(name)) KernelException("index must evaluate to a name when indexing a module");
  PairAddress global = srchname(textOf(name));
  if (global != notFound) name = pairValue(global);
  DAG member = declaredName(MemberInstance(module, name));
  return isName(member) ? eval(member, lastName) : member;
}

bool isHiddenEntry(DAG value) { return isTag(value, PROC) || isTag(value, TABLE); }

// Value of what stands in a container. Without `lastName` tables and procedures stay hidden behind the reference.
DAG entryValue(DAG x, DAG entry, DAG index, DAG name, DAG* lastName) {
  DAG value = eval(entry, lastName);
  if (lastName == nullptr && isHiddenEntry(value) && isNameOrIndexed(name)) return simpl(withParts(x, name, index));
  return value;
}

// Value of an entry of the TABLE `table`.
DAG tableEntry(DAG x, DAG table, DAG index, DAG name, DAG* lastName) {
  auto reference = [&] { return simpl(withParts(x, name, index)); };
  if (lastName != nullptr && isNameOrIndexed(name)) *lastName = reference();
  const FoundEntry found = lookUpEntry(index, name, table);
  const DAG entry = found.value;
  if (entry == absent) return reference();
  if (found.byProcedure || isTag(x[1], LOCAL)) return entry;
  return entryValue(x, entry, index, name, lastName);
}

// Value of an element of an rtable; blocks are rtables, which are their own value.
DAG elementValue(DAG x, DAG element, DAG index, DAG name, DAG* lastName) {
  if (isImmediate(element) || isTag(element, RTABLE)) return element;
  if (lastName != nullptr && isNameOrIndexed(name)) *lastName = simpl(withParts(x, name, index));
  return isTag(x[1], LOCAL) ? simpl(mvalue(element)) : entryValue(x, element, index, name, lastName);
}

}  // namespace

DAG select_list(DAG container, DAG index) {
  DAG body = hasTag(container, EXPSEQ) ? container : container[1];
  DAG first = index;
  DAG rest;
  if (isTag(index, EXPSEQ)) {
    if (isEmptySequence(index)) return hasTag(container, EXPSEQ) ? container : body;
    first = index[1];
    if (lengthOf(index) > 2) rest = copysub(index, 1, lengthOf(index) - 2);
  }
  const std::int64_t n = memberCount(body);
  DAG selected;
  if (isInteger(first)) {
    Span span = spanOf(first, first, n);
    selected = body[span.from];
  } else if (isTag(first, RANGE) && isInteger(first[1]) && isInteger(first[2])) {
    selected = partOf(container, body, spanOf(first[1], first[2], n));
  } else {
    return DAG();
  }
  if (!rest) return selected;
  return simpl(eval(simpl(new3(TABLEREF, selected, simpl(rest)))));
}

DAG select_string(DAG string, DAG index) {
  const char* text = textOf(string);
  const auto n = static_cast<std::int64_t>(std::strlen(text));
  Span span;
  if (isInteger(index)) {
    span = spanOf(index, index, n);
  } else if (isTag(index, RANGE) && isInteger(index[1]) && isInteger(index[2])) {
    span = spanOf(index[1], index[2], n);
  } else {
    return DAG();
  }
  DAG part = newl2(textLength(static_cast<std::uint64_t>(span.to - span.from + 1)), STRING);
  char* out = textOf(part);
  for (std::int64_t k = span.from; k <= span.to; ++k) *out++ = text[k - 1];
  *out = 0;
  return strinstall(textOf(part));
}

namespace {

// The base of a reference: what it stands for, and the name which that comes from.
struct Base {
  DAG value;
  DAG name;        // or 0
  bool evaluated;  // a list or rtable in a name is taken as it is stored
};

// A table hides behind its name.
[[gnu::always_inline]] inline Base revealTable(Base base) {
  if (!isName(base.value)) return base;
  DAG stored = valuenv(base.value, false);
  if (isTag(stored, TABLE)) base = {stored, base.value, base.evaluated};
  return base;
}

[[gnu::always_inline]] inline Base evaluatedBase(DAG x) {
  Base base{DAG(), DAG(), true};
  base.value = simpl(eval(x, &base.name));
  return revealTable(base);
}

[[gnu::always_inline]] inline Base baseOf(DAG x) {
  // The most frequent base is a local that holds a table (bench/programs/tables.krl).
  if (isTag(x, LOCAL))
    if (DAG name = frameInstance(x); isName(name) && isTag(name[1], TABLE)) return {name[1], name, true};
  if (isName(x) && !isEnvironmentName(x) && (isTag(x[1], LIST) || isTag(x[1], RTABLE))) return {x[1], x, false};
  Base base = evaluatedBase(x);
  if (!base.name) base.name = evparloc(x);
  return base;
}

DAG selectMember(DAG x, const Base& base, DAG* lastName) {
  DAG index = simpl(eval(x[2]));
  if (DAG element = select_list(base.value, index))
    return base.evaluated || (element == x && lastName == nullptr) ? element : eval(element, lastName);
  DAG reference = withParts(x, base.evaluated && !isNameOrIndexed(base.name) ? base.value : base.name, index);
  if (lastName != nullptr) *lastName = reference;
  return reference;
}

DAG referenceToName(DAG x, DAG name, DAG* lastName) {
  DAG reference = withParts(x, name, simpl(eval(x[2])));
  if (lastName != nullptr) *lastName = reference;
  return reference;
}

bool isSingle(DAG index) { return isSequence(index) && lengthOf(index) == 2; }

// Whether the index is one expression, and no indexing function asks for it as a sequence.
bool isPlainAccess(DAG x, DAG container) {
  return isTag(container, TABLE) && container[tableFunction] == null && isSingle(x[2]);
}

// Value of an entry found by the index itself; the sequence around it is made when there is none.
DAG plainEntry(DAG x, const Base& base, DAG* lastName) {
  DAG key = simpl(evalOperand(x[2][1]));
  if (lastName == nullptr && !isTag(key, EXPSEQ)) {
    PairAddress pair = search(key.word, base.value[tableEntries]);
    if (pair != notFound) {
      DAG entry = pairValue(pair);
      if (isImmediate(entry) || isTag(x[1], LOCAL)) return entry;
    }
  }
  return tableEntry(x, base.value, key == x[2][1] ? x[2] : singleSequence(key), base.name, lastName);
}

// The evaluated index into an rtable; where integers tell an element that is its own value, that element instead, and
// no sequence of the index is made. Who wants the name of the element gets the index.
struct Place {
  DAG index, element;
};
constexpr TagSet ownValueTags = realTags | TagSet{STRING};
Place placeIn(DAG rtable, DAG index, bool wantsName) {
  constexpr Word mostIndices = 3;
  const Word n = isSequence(index) ? lengthOf(index) - 1 : 0;
  if (n == 0 || n > mostIndices) return {isSequence(index) ? evaluatedSequence(index) : simpl(eval(index)), DAG()};
  DAG values[mostIndices];
  for (Word k = 0; k < n; ++k) values[k] = simpl(evalOperand(index[k + 1]));
  DAG element = wantsName ? DAG() : elementAtIntegers(rtable, values, n);
  if (element && (isImmediate(element) || isAmong(element, ownValueTags))) return {DAG(), element};
  DAG evaluated = newl2(n + 1, EXPSEQ);
  for (Word k = 0; k < n; ++k) evaluated[k + 1] = values[k];
  return {simpl(evaluated), DAG()};
}

// A reference to what nothing is selected from.
DAG standingReference(DAG x, const Base& base, DAG index, DAG* lastName) {
  const bool named = isNameOrIndexed(base.name);
  if (lastName != nullptr && named) *lastName = withParts(x, base.name, index);
  return withParts(x, isTag(base.value, PROC) && named ? base.name : base.value, index);
}

}  // namespace

DAG evalTableReference(DAG x, DAG* lastName) {
  checkStack();
  const Base base = baseOf(x[1]);
  DAG value = base.value;
  // What the index does to the names that held it must not take it away.
  updategen(value);
  if (isPlainAccess(x, value)) return plainEntry(x, base, lastName);
  switch (tagOf(value)) {
    case EXPSEQ: case LIST: case SET: return selectMember(x, base, lastName);
    case NAME: case TABLEREF: case UNEVAL: return referenceToName(x, value, lastName);
    case MODULE: return moduleMember(value, simpl(eval(x[2])), lastName);
    case INTPOS:
      if (value == cons0) return cons0;
      break;
    default: break;
  }
  DAG index;
  if (hasTag(value, RTABLE)) {
    const Place place = placeIn(value, x[2], lastName != nullptr);
    if (place.element) return place.element;
    index = place.index;
  } else {
    index = isSequence(x[2]) ? evaluatedSequence(x[2]) : simpl(eval(x[2]));
  }
  if (hasTag(value, TABLE)) return tableEntry(x, value, index, base.name, lastName);
  if (auto select = kindOf(value).index)
    if (DAG part = select(value, index))
      return hasTag(value, RTABLE) ? elementValue(x, part, index, base.name, lastName) : part;
  return standingReference(x, base, index, lastName);
}

DAG selectStored(DAG x) {
  const Base base = evaluatedBase(x[1]);
  DAG index = simpl(eval(x[2]));
  if (isTag(base.value, TABLE)) {
    FoundEntry found = lookUpEntry(index, base.name ? base.name : evparloc(x[1]), base.value);
    if (found.value != absent) return found.value;
  } else if (auto select = kindOf(base.value).index) {
    if (DAG part = select(base.value, index)) return part;
  }
  return simpl(withParts(x, base.name && isNameOrIndexed(base.name) ? base.name : base.value, index));
}

}  // namespace korel
