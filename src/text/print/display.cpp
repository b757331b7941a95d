#include "text/print/display.h"

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/library_calls.h"
#include "store/copy_on_change.h"
#include "store/hash.h"
#include "store/object_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// One pass. Visited objects and what became of them stand in `memo`, so that a shared part is
// visited once; a table of its own for each pass, since the procedures called may print in turn.
struct Pass {
  DAG memo;
  const char* failure;  // text of the internal error for an object that can't be shown
};

DAG prepare(const Pass& pass, DAG x, bool top);

// ---- walking operands

ReferenceFields operandFields(DAG x) {
  constexpr TagSet onlyFirst = {ZPPOLY, LIST, SET}, firstTwo = {TABLEREF, FUNCTION};
  if (isTag(x, SERIES)) return referenceFields(x);
  return {1, isAmong(x, onlyFirst) ? 2 : isAmong(x, firstTwo) ? 3 : lengthOf(x)};
}

// `x` with its operands prepared: a simplified copy if one of them has changed, else `x` itself.
DAG prepareOperands(const Pass& pass, DAG x) {
  DAG result = withFields(x, operandFields(x), [&](DAG operand) { return prepare(pass, operand, false); });
  return result == x ? x : simpl(result);
}

// ---- calls

// The name by which the library may hold a procedure that prints calls of `head`, or 0.
DAG printedName(DAG head) {
  while (isTag(head, TABLEREF)) head = head[1];
  if (!isName(head) || head == ini("table") || head == ini("array")) return DAG();
  return head;
}

DAG prepareCall(const Pass& pass, DAG call) {
  if (DAG name = printedName(call[1])) {
    DAG shown = evalextf("print/", textOf(name), call[2]);
    if (shown && shown != null) return shown;
    // A plot's arguments are data: names in them are not looked at.
    if (hasText(name, "PLOT") || hasText(name, "PLOT3D")) return call;
  }
  return prepareOperands(pass, call);
}

// ---- tables

// The call that makes a table without entries.
DAG tableConstructor(DAG table) {
  DAG function = table[tableFunction], arguments = null;
  const bool isArray = isArrayTable(table), hasFunction = function && function != null;
  if (isArray) {
    arguments = hasFunction ? newSequence({function, table[tableBounds]}) : newSequence({table[tableBounds]});
  } else if (hasFunction) {
    arguments = newSequence({function});
  }
  return simpl(newCall(isArray ? ini("array") : ini("table"), {arguments}));
}

DAG prepareTable(const Pass& pass, DAG table) {
  DAG entries = table[tableEntries];
  if (!isTag(entries, HASHTAB)) return table;
  if (hashcount(entries) == 0) return tableConstructor(table);

  // A table that holds itself is met again on the way, and stays as it is there.
  hashinsert(table.word, table, pass.memo);
  // A printing procedure may assign entries of this very table.
  DAG pairs = hashseq(entries), rebuilt = newhashtab(lengthOf(entries) - 1);
  bool changed = false;
  for (Word i = 1, n = lengthOf(pairs); i < n; ++i) {
    DAG value = pairs[i][2], prepared = prepare(pass, value, false);
    if (prepared != value) changed = true;
    hashinsert(pairs[i][1].word, prepared, rebuilt);
  }
  return changed ? simpl(newTable(table[tableFunction], table[tableBounds], rebuilt)) : table;
}

// ---- rtables and names

DAG prepareRtable(const Pass& pass, DAG rtable, DAG name) {
  DAG shown = evalextf("print/rtable", newSequence({rtable, name}));
  if (!shown || shown == null) return rtable;
  return isTag(shown, RTABLE) ? shown : prepare(pass, shown, false);
}

bool isShownByName(DAG value) { return isObject(value) && isAmong(value, TagSet{TABLE, RTABLE, PROC}); }

// A name at the top: what it stands for, when that is a table, an rtable or a procedure.
DAG prepareNameAtTop(const Pass& pass, DAG name) {
  DAG lastName = name;
  DAG value = eval(name, &lastName);
  if (!isShownByName(value)) return name;
  if (hasTag(value, RTABLE)) return prepareRtable(pass, value, name);
  return prepare(pass, value, false);
}

constexpr TagSet definitionTags = {PROC, MODDEF, MODULE};
// What nothing is replaced in.
constexpr TagSet atomTags = tagsBetween(INTNEG, NAME) | frameReferenceTags | definitionTags;
constexpr TagSet tagsWithOperands = (tagsBetween(MEMBER, LIST) - TagSet{FUNCTION}) | TagSet{RANGE, SET, ASSIGN};

DAG prepareUnseen(const Pass& pass, DAG x) {
  switch (tagOf(x)) {
    case FUNCTION: return prepareCall(pass, x);
    case TABLE: return prepareTable(pass, x);
    case RTABLE: return prepareRtable(pass, x, null);
    default:
      if (isAmong(x, tagsWithOperands)) return prepareOperands(pass, x);
      notimpl(pass.failure);
  }
}

DAG prepare(const Pass& pass, DAG x, bool top) {
  if (isImmediate(x) || !x) return x;
  Tag tag = tagOf(x);
  if (top && (tag == NAME || tag == TABLEREF)) return prepareNameAtTop(pass, x);
  if (atomTags.contains(tag)) return x;
  PairAddress seen = search(x.word, pass.memo);
  if (seen != notFound) return pairValue(seen);
  checkStack();
  DAG result = prepareUnseen(pass, x);
  if (tag == TABLE) hashunique(x.word, result, pass.memo);
  else hashinsert(x.word, result, pass.memo);
  return result;
}

// ---- the pass

constexpr Word memoBuckets = 1024;

// The printing procedures run untraced: the print level of this frame, and that of new ones, is at most 1
// meanwhile. What they show would be prepared by themselves again, without an end.
struct SavedPrintLevel {
  Frame* frame;
  std::int32_t level;
  DAG ofNewFrames;
};

void putBack(const SavedPrintLevel& saved) {
  saved.frame->printLevel = saved.level;
  if (isImmediate(saved.ofNewFrames)) ini("printlevel")[1] = saved.ofNewFrames;
}
void restorePrintLevel(const char*) { putBack(*reinterpret_cast<SavedPrintLevel*>(errorProcParam)); }

DAG runPass(DAG object, bool membersAtTop, const char* failure) {
  DAG& ofNewFrames = ini("printlevel")[1];
  SavedPrintLevel saved{Environment->frame, Environment->frame->printLevel, ofNewFrames};
  PushStateKeeper(restorePrintLevel, &saved);
  if (saved.level > 1) saved.frame->printLevel = 1;
  // Frames take no other level than an immediate one.
  if (isImmediate(ofNewFrames) && immediateValue(ofNewFrames) > 1) ofNewFrames = cons1;

  Pass pass{newhashtab(memoBuckets), failure};
  DAG result = object;
  if (!membersAtTop) {
    result = prepare(pass, object, false);
  } else if (!isSequence(object)) {
    result = prepare(pass, object, true);
  } else {
    for (Word i = 1, n = lengthOf(object); i < n; ++i) {
      DAG prepared = prepare(pass, object[i], true);
      if (prepared == object[i]) continue;
      if (result == object) result = CopyAlg(object);
      result[i] = prepared;
    }
    if (result != object) result = simpl(result);
  }
  clearhash(pass.memo, true);

  PopErrorProc();
  putBack(saved);
  return result;
}

}  // namespace

DAG prtprepro(DAG object, DisplayOf what) { return runPass(object, what == DisplayOf::arguments, "in prtprepro1"); }

DAG lprtprepro(DAG object) { return runPass(object, true, "in lprtprepro1"); }

}  // namespace korel
