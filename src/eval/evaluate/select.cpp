#include "eval/evaluate/select.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/operand.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "eval/procedures/procedures.h"
#include "eval/procedures/remember.h"
#include "eval/simplify/simplify.h"
#include "eval/evaluate/unique_sequence.h"
#include "eval/tables/tables.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
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

DAG referenceTo(DAG x, DAG base, DAG index) {
  if (base == x[1] && index == x[2]) return x;
  DAG rebuilt = CopyAlg(x);
  rebuilt[1] = base;
  rebuilt[2] = index;
  return rebuilt;
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
  if (!isTag(name, NAME)) KernelException("index must evaluate to a name when indexing a module");
  PairAddress global = srchname(textOf(name));
  if (global != notFound) name = pairValue(global);
  DAG member = declaredName(MemberInstance(module, name));
  return isTag(member, NAME) ? eval(member, lastName) : member;
}

bool isHiddenEntry(DAG value) { return isTag(value, PROC) || isTag(value, TABLE); }

// Value of an entry of the TABLE `table`.
DAG tableEntry(DAG x, DAG table, DAG index, DAG name, DAG* lastName) {
  auto reference = [&] { return simpl(referenceTo(x, name, index)); };
  if (lastName != nullptr && isNameOrIndexed(name)) *lastName = reference();
  FoundEntry found = lookUpEntry(index, name, table);
  if (found.value == absent) return reference();
  if (found.byProcedure || isTag(x[1], LOCAL)) return found.value;
  DAG value = eval(found.value, lastName);
  if (lastName == nullptr && isHiddenEntry(value) && isNameOrIndexed(name)) return reference();
  return value;
}

}  // namespace

DAG select_list(DAG container, DAG index) {
  DAG body = hasTag(container, EXPSEQ) ? container : container[1];
  DAG first = index;
  DAG rest;
  if (isTag(index, EXPSEQ)) {
    if (lengthOf(index) == 1) return hasTag(container, EXPSEQ) ? container : body;
    first = index[1];
    if (lengthOf(index) > 2) rest = copysub(index, 1, lengthOf(index) - 2);
  }
  std::int64_t n = lengthOf(body) - 1;
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
  std::int64_t n = 0;
  while (text[n] != 0) ++n;
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

// Whether the index is one expression, and no indexing function asks for it as a sequence.
bool isPlainAccess(DAG x, DAG container) {
  return isTag(container, TABLE) && container[1] == null && isTag(x[2], EXPSEQ) && lengthOf(x[2]) == 2;
}

DAG evalTableReference(DAG x, DAG* lastName) {
  checkStack();
  DAG base = x[1];
  DAG name;
  DAG B;
  bool evaluated = false;
  if (isTag(base, NAME) && !isEnvironmentName(base) && base[1] &&
      (isTag(base[1], LIST) || isTag(base[1], RTABLE))) {
    B = base[1];
    name = base;
  } else {
    DAG inner;
    B = simpl(eval(base, &inner));
    evaluated = true;
    if (isTag(B, NAME)) {
      DAG stored = valuenv(B, false);
      if (isTag(stored, TABLE)) {
        inner = B;
        B = stored;
      }
    }
    name = inner;
  }
  if (!name) name = evparloc(base);
  // What the index does to the names that held it must not take it away.
  updategen(B);
  DAG index;
  switch (tagOf(B)) {
    case INTNEG: case INTPOS:
      if (B == cons0) return cons0;
      break;
    case EXPSEQ: case LIST: case SET: {
      DAG rawIndex = x[2];
      DAG evaluatedIndex = simpl(eval(rawIndex));
      DAG element = select_list(B, evaluatedIndex);
      if (element) {
        if (evaluated || (element == x && lastName == nullptr)) return element;
        return eval(element, lastName);
      }
      DAG reference = referenceTo(x, evaluated && !isNameOrIndexed(name) ? B : name, evaluatedIndex);
      if (lastName != nullptr) *lastName = reference;
      return reference;
    }
    case NAME: case TABLEREF: case UNEVAL: {
      DAG reference = referenceTo(x, B, simpl(eval(x[2])));
      if (lastName != nullptr) *lastName = reference;
      return reference;
    }
    case MODULE:
      return moduleMember(B, simpl(eval(x[2])), lastName);
    default:
      if (auto select = kindOf(B).index) {
        index = simpl(eval(x[2]));
        if (DAG part = select(B, index)) return part;
      }
      break;
  }
  if (isPlainAccess(x, B)) {
    // The entry is found by the index itself; the sequence around it is made when it has none.
    DAG key = simpl(evalOperand(x[2][1]));
    if (lastName == nullptr && !isTag(key, EXPSEQ)) {
      PairAddress pair = search(key.word, B[3]);
      if (pair != notFound) {
        DAG entry = pairValue(pair);
        if (isImmediate(entry) || isTag(base, LOCAL)) return entry;
      }
    }
    index = key == x[2][1] ? x[2] : singleSequence(key);
  }
  if (!index) index = isTag(x[2], EXPSEQ) ? evaluatedSequence(x[2]) : simpl(eval(x[2]));
  if (isTag(B, TABLE)) return tableEntry(x, B, index, name, lastName);
  DAG reference = referenceTo(x, isTag(B, PROC) && isNameOrIndexed(name) ? name : B, index);
  if (lastName != nullptr && isNameOrIndexed(name)) *lastName = referenceTo(x, name, index);
  return reference;
}

DAG selectStored(DAG x) {
  DAG lastName;
  DAG base = simpl(eval(x[1], &lastName));
  if (isTag(base, NAME)) {
    DAG stored = valuenv(base, false);
    if (isTag(stored, TABLE)) {
      lastName = base;
      base = stored;
    }
  }
  DAG index = simpl(eval(x[2]));
  if (isTag(base, TABLE)) {
    FoundEntry found = lookUpEntry(index, lastName ? lastName : evparloc(x[1]), base);
    if (found.value != absent) return found.value;
  } else if (auto select = kindOf(base).index) {
    if (DAG part = select(base, index)) return part;
  }
  return simpl(referenceTo(x, lastName && isNameOrIndexed(lastName) ? lastName : base, index));
}

}  // namespace korel
