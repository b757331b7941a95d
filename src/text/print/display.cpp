#include "text/print/display.h"

#include <cstring>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/system_functions.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/objects.h"
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

// The fields of `x` that hold operands: from 1 to this place, every `step`-th.
struct OperandFields {
  Word last;
  Word step;
};

OperandFields operandFields(DAG x) {
  Word n = lengthOf(x);
  switch (tagOf(x)) {
    case SERIES:
      return {n - 1, 2};  // the exponents between are plain numbers
    case ZPPOLY:
    case LIST:
    case SET:
      return {1, 1};
    case TABLEREF:
    case FUNCTION:
      return {2, 1};
    default:
      return {n - 1, 1};
  }
}

// `x` with its operands prepared: a simplified copy if one of them has changed, else `x` itself.
DAG prepareOperands(const Pass& pass, DAG x) {
  OperandFields fields = operandFields(x);
  DAG result = x;
  bool series = hasTag(x, SERIES);
  for (Word i = 1; i <= fields.last; i += series && i > 1 ? fields.step : 1) {
    if (!x[i]) continue;
    DAG prepared = prepare(pass, x[i], false);
    if (prepared == x[i]) continue;
    if (result == x) result = CopyAlg(x);
    result[i] = prepared;
  }
  return result == x ? x : simpl(result);
}

// ---- calls

// The name by which the library may hold a procedure that prints calls of `head`, or 0.
DAG printedName(DAG head) {
  while (isObject(head) && hasTag(head, TABLEREF)) head = head[1];
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
DAG tableConstructor(DAG table, bool isArray) {
  DAG arguments = null;
  bool function = table[1] && table[1] != null;
  if (isArray) {
    arguments = function ? newSequence({table[1], table[2]}) : newSequence({table[2]});
  } else if (function) {
    arguments = newSequence({table[1]});
  }
  return simpl(newCall(isArray ? ini("array") : ini("table"), {arguments}));
}

DAG prepareTable(const Pass& pass, DAG table) {
  bool isArray = table[2] != ini("false");
  DAG entries = table[3];
  if (!isObject(entries) || !hasTag(entries, HASHTAB)) return table;
  if (hashcount(entries) == 0) return tableConstructor(table, isArray);

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
  return changed ? simpl(new4(TABLE, table[1], table[2], rebuilt)) : table;
}

// ---- rtables and names

DAG prepareRtable(const Pass& pass, DAG rtable, DAG name) {
  DAG shown = evalextf("print/", "rtable", newSequence({rtable, name}));
  if (!shown || shown == null) return rtable;
  return isObject(shown) && hasTag(shown, RTABLE) ? shown : prepare(pass, shown, false);
}

bool isShownByName(DAG value) {
  if (!isObject(value)) return false;
  Tag tag = tagOf(value);
  return tag == TABLE || tag == RTABLE || tag == PROC;
}

// A name at the top: what it stands for, when that is a table, an rtable or a procedure.
DAG prepareNameAtTop(const Pass& pass, DAG name) {
  DAG lastName = name;
  DAG value = eval(name, &lastName);
  if (!isShownByName(value)) return name;
  if (hasTag(value, RTABLE)) return prepareRtable(pass, value, name);
  return prepare(pass, value, false);
}

DAG prepareUnseen(const Pass& pass, DAG x) {
  switch (tagOf(x)) {
    case FUNCTION:
      return prepareCall(pass, x);
    case TABLE:
      return prepareTable(pass, x);
    case RTABLE:
      return prepareRtable(pass, x, null);
    case MEMBER:
    case TABLEREF:
    case DCOLON:
    case CATENATE:
    case POWER:
    case PROD:
    case SERIES:
    case SUM:
    case ZPPOLY:
    case UNEVAL:
    case EQUATION:
    case INEQUAT:
    case LESSEQ:
    case LESSTHAN:
    case AND:
    case NOT:
    case OR:
    case EXPSEQ:
    case LIST:
    case RANGE:
    case SET:
    case ASSIGN:
      return prepareOperands(pass, x);
    default:
      notimpl(pass.failure);
  }
}

bool isAtom(Tag tag) {
  return tag <= NAME || tag == LOCAL || tag == PARAM || tag == LEXICAL || tag == PROC ||
         tag == MODDEF || tag == MODULE;
}

DAG prepare(const Pass& pass, DAG x, bool top) {
  if (isImmediate(x) || !x) return x;
  Tag tag = tagOf(x);
  if (top && (tag == NAME || tag == TABLEREF)) return prepareNameAtTop(pass, x);
  if (isAtom(tag)) return x;
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
  } else if (!isObject(object) || !hasTag(object, EXPSEQ)) {
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

DAG prtprepro(DAG object, int flag) { return runPass(object, flag == 1, "in prtprepro1"); }

DAG lprtprepro(DAG object) { return runPass(object, true, "in lprtprepro1"); }

}  // namespace korel
