#include "eval/structure/select_elements.h"

#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "eval/statements/statements.h"
#include "eval/structure/map.h"
#include "eval/types/type_names.h"
#include "eval/types/types.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// Relations, and combinations of them, whose truth can be asked for.
constexpr TagSet conditionTags = relationTags | booleanTags;

}  // namespace

// ---- the predicate

Predicate makePredicate(DAG f, DAG extra) {
  Predicate p{f, extra, Predicate::call, {}};
  if (f == ini("type")) p.way = Predicate::byType;
  else if (f == ini("has")) p.way = Predicate::byHas;
  else if (f == ini("hastype")) p.way = Predicate::byHastype;
  else return p;
  if (lengthOf(extra) != 2) KernelException("incorrect number of extra arguments in select");
  if (p.way == Predicate::byType && isName(extra[1])) {
    p.tags = tagsOfType(extra[1]);
    if (!p.tags.isEmpty()) p.way = Predicate::byTag;
  }
  return p;
}

bool holdsFor(const Predicate& p, DAG x) {
  switch (p.way) {
    case Predicate::byTag: return isAmong(x, p.tags);
    case Predicate::byType: return type(x, p.extra[1]);
    case Predicate::byHas: return hasany(x, p.extra[1]);
    case Predicate::byHastype: return hastype(x, p.extra[1]);
    case Predicate::call: break;
  }
  DAG value = simpl(applyTo(p.f, DAG(), x, p.extra));
  value = singleMember(value);
  DAG answer = isAmong(value, conditionTags) ? evalbool(value) : value;
  if (answer == ini("true")) return true;
  if (answer == ini("false")) return false;
  KernelException("selecting function must return true or false");
}

DAG mselect(DAG x, void* state) { return holdsFor(*static_cast<Predicate*>(state), x) ? x : null; }
DAG mremove(DAG x, void* state) { return holdsFor(*static_cast<Predicate*>(state), x) ? null : x; }

// ---- both

namespace {

// What the predicate answered for each operand, in the order of the walk, and how many of the answers a
// second walk has used.
struct Answers {
  const Predicate& predicate;
  DAG given;
  Word count, used;
};
constexpr Word firstAnswers = 32;

DAG selectAndNote(DAG x, void* state) {
  auto& a = *static_cast<Answers*>(state);
  bool holds = holdsFor(a.predicate, x);
  if (++a.count == lengthOf(a.given)) a.given = enlarge(a.given, a.count);
  a.given[a.count] = holds ? cons1 : cons0;
  return holds ? x : null;
}
DAG removeAsNoted(DAG x, void* state) {
  auto& a = *static_cast<Answers*>(state);
  return a.given[++a.used] == cons1 ? null : x;
}

}  // namespace

DAG SelectRemove(const Predicate& predicate, DAG x) {
  // The predicate may store in the table that is walked, and both walks are over the same entries.
  if (isTag(x, TABLE) && isTag(x[tableEntries], HASHTAB))
    x = newTable(x[tableFunction], x[tableBounds], copyhashtab(x[tableEntries]));
  Answers answers{predicate, newl2(firstAnswers, EXPSEQ), 0, 0};
  DAG selected = MapFunction({selectAndNote, &answers, OperandWalk::selection}, x);
  DAG removed = MapFunction({removeAsNoted, &answers, OperandWalk::selection}, x);
  return simpl(new3(EXPSEQ, selected, removed));
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
  return MapFunction({mselect, &predicate, OperandWalk::selection}, call.arguments[2]);
}

DAG builtin::remove(const BuiltinCall& call) {
  Predicate predicate = predicateOf(call);
  return MapFunction({mremove, &predicate, OperandWalk::selection}, call.arguments[2]);
}

DAG builtin::selectremove(const BuiltinCall& call) { return SelectRemove(predicateOf(call), call.arguments[2]); }

}  // namespace korel
