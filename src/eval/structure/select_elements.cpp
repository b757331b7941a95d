#include "eval/structure/select_elements.h"

#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "eval/statements/boolean.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "eval/walk/has.h"
#include "eval/structure/map.h"
#include "eval/structure/operands.h"
#include "eval/types/type_names.h"
#include "eval/types/types.h"

namespace korel {

namespace {

constexpr const char* rtableText = "invalid select from %1";

// A relation, or a combination of them, whose truth can be asked for.
bool isCondition(DAG x) { return isObject(x) && tagOf(x) >= EQUATION && tagOf(x) <= OR; }

}  // namespace

// ---- the predicate

Predicate makePredicate(DAG f, DAG extra) {
  Predicate p{f, extra, Predicate::call, NOTAG};
  if (f == ini("type")) p.way = Predicate::byType;
  else if (f == ini("has")) p.way = Predicate::byHas;
  else if (f == ini("hastype")) p.way = Predicate::byHastype;
  else return p;
  if (lengthOf(extra) != 2) KernelException("incorrect number of extra arguments in select");
  if (p.way == Predicate::byType && isTag(extra[1], NAME)) {
    p.tag = typesel(extra[1]);
    if (p.tag != NOTAG) p.way = Predicate::byTag;
  }
  return p;
}

bool holdsFor(const Predicate& p, DAG x) {
  switch (p.way) {
    case Predicate::byTag: return hasTag(x, p.tag);
    case Predicate::byType: return type(x, p.extra[1]);
    case Predicate::byHas: return hasany(x, p.extra[1]);
    case Predicate::byHastype: return hastype(x, p.extra[1]);
    case Predicate::call: break;
  }
  DAG value = simpl(applyTo(p.f, DAG(), x, p.extra));
  if (isTag(value, EXPSEQ) && lengthOf(value) == 2) value = value[1];
  DAG answer = isCondition(value) ? evalbool(value) : value;
  if (answer == ini("true")) return true;
  if (answer == ini("false")) return false;
  KernelException("selecting function must return true or false");
}

DAG mselect(DAG x, void* state) { return holdsFor(*static_cast<Predicate*>(state), x) ? x : null; }
DAG mremove(DAG x, void* state) { return holdsFor(*static_cast<Predicate*>(state), x) ? null : x; }

// ---- both in one pass

namespace {

// Two objects that grow side by side, with `used` words each.
struct Halves {
  DAG selected, removed;
  Word usedSelected, usedRemoved;
};

Halves halvesFor(Tag tag, Word length) { return {newl2(length, tag), newl2(length, tag), 1, 1}; }

void put(Halves& h, bool selected, DAG x) {
  if (selected) h.selected[h.usedSelected++] = x;
  else h.removed[h.usedRemoved++] = x;
}

DAG cut(DAG half, Word used) {
  if (used != lengthOf(half)) shorten(half, lengthOf(half), used);
  return half;
}

DAG pairOf(DAG selected, DAG removed) { return simpl(new3(EXPSEQ, simpl(selected), simpl(removed))); }

Halves splitSequence(const Predicate& p, DAG sequence) {
  Word n = lengthOf(sequence);
  Halves h = halvesFor(EXPSEQ, n);
  for (Word i = 1; i < n; ++i) {
    ++evaluationLevel;
    bool selected = holdsFor(p, sequence[i]);
    --evaluationLevel;
    put(h, selected, sequence[i]);
    if (p.way == Predicate::call) collectInLoop();
  }
  return {simpl(cut(h.selected, h.usedSelected)), simpl(cut(h.removed, h.usedRemoved)), 0, 0};
}

// A LIST, SET or FUNCTION, whose members stand in the sequence at word `body`.
DAG splitBody(const Predicate& p, DAG x, Word body) {
  Halves h = splitSequence(p, x[body]);
  DAG selected = CopyAlg(x), removed = CopyAlg(x);
  selected[body] = h.selected;
  removed[body] = h.removed;
  return pairOf(selected, removed);
}

DAG splitPairs(const Predicate& p, DAG x, Tag tag, DAG (*part)(std::int64_t i, DAG x)) {
  std::int64_t count = numterms(x);
  Halves h = halvesFor(tag, static_cast<Word>(2 * count + 1));
  for (std::int64_t i = 1; i <= count; ++i) {
    DAG operand = part(i, x);
    bool selected = holdsFor(p, operand);
    put(h, selected, operand);
    put(h, selected, cons1);
  }
  return pairOf(cut(h.selected, h.usedSelected), cut(h.removed, h.usedRemoved));
}

struct EntrySplit {
  const Predicate& predicate;
  DAG selected, removed;
};

DAG splitTable(const Predicate& p, DAG x) {
  Word buckets = lengthOf(x[3]) - 1;
  EntrySplit split{p, newhashtab(buckets), newhashtab(buckets)};
  hashforeach(
      copyhashtab(x[3]),  // the predicate may store
      [](void* arg, PairAddress pair) {
        auto& s = *static_cast<EntrySplit*>(arg);
        DAG key = pairKey(pair), value = pairValue(pair);
        hashinsert(key.word, value, holdsFor(s.predicate, value) ? s.selected : s.removed);
        return true;
      },
      &split);
  return pairOf(new4(TABLE, x[1], x[2], split.selected), new4(TABLE, x[1], x[2], split.removed));
}

// Objects of a fixed shape: `null` stands where an operand went to the other half.
DAG splitFields(const Predicate& p, DAG x, Word from, Word end, Word step) {
  DAG selected = CopyAlg(x), removed = CopyAlg(x);
  for (Word i = from; i < end; i += step) {
    if (!x[i]) continue;
    DAG& other = holdsFor(p, x[i]) ? removed[i] : selected[i];
    other = null;
  }
  return pairOf(selected, removed);
}

}  // namespace

DAG SelectRemove(const Predicate& p, DAG x) {
  if (isMappedWhole(x)) return holdsFor(p, x) ? pairOf(x, null) : pairOf(null, x);
  switch (tagOf(x)) {
    case LOCAL: case PARAM: case LEXICAL: cannotBeMapped();
    case RTABLE: KernelException(rtableText, naminstall("rtable"));
    case EXPSEQ: {
      Halves h = splitSequence(p, x);
      return pairOf(h.selected, h.removed);
    }
    case LIST: case SET: return splitBody(p, x, 1);
    case FUNCTION: return splitBody(p, x, 2);
    case TABLE: return isTag(x[3], HASHTAB) ? splitTable(p, x) : pairOf(x, x);
    case SERIES: return splitFields(p, x, 2, lengthOf(x), 2);
    case ZPPOLY: KernelException("invalid map onto ZPPOLY");
    case SUM: return addition(x) ? splitPairs(p, x, SUM, mterm) : splitPairs(p, x, PROD, fact);
    case PROD:
      if (multiplication(x)) return splitPairs(p, x, PROD, fact);
      return splitFields(p, new3(POWER, x[1], x[2]), 1, 3, 1);
    default: {
      ReferenceFields fields = referenceFields(x);
      return splitFields(p, x, fields.first, fields.end, fields.step);
    }
  }
}

// ---- built-ins

namespace {

Predicate predicateOf(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n < 2) wrongParameters(call);
  return makePredicate(call.arguments[1], n > 2 ? copysub(call.arguments, 2, n - 2) : null);
}

}  // namespace

DAG builtin::select(const BuiltinCall& call) {
  Predicate predicate = predicateOf(call);
  return MapFunction({mselect, &predicate, true, rtableText}, call.arguments[2]);
}

DAG builtin::remove(const BuiltinCall& call) {
  Predicate predicate = predicateOf(call);
  return MapFunction({mremove, &predicate, true, rtableText}, call.arguments[2]);
}

DAG builtin::selectremove(const BuiltinCall& call) {
  return SelectRemove(predicateOf(call), call.arguments[2]);
}

}  // namespace korel
