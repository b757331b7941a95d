// A structural walk that replaces and rebuilds.

#include "eval/evaluate/evaluate_at.h"

#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/substitute.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "rtable/rtable_kind.h"
#include "store/check/verify.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"

namespace korel {

namespace {

// What the walk leaves as it is.
constexpr TagSet closedTags = numberTags | textTags | frameReferenceTags | (statementTags - TagSet{STATSEQ}) |
                              TagSet{MEMBER, PROC, MODDEF, MODULE};

DAG replacement(DAG equations, DAG x) {
  for (Word i = 1; i < lengthOf(equations); ++i)
    if (equations[i][1] == x) return equations[i][2];
  return DAG();
}

DAG walk(DAG equations, DAG x);

DAG walkFields(DAG equations, DAG x, ReferenceFields fields) {
  return withFields(x, fields, [equations](DAG field) {
    DAG value = walk(equations, field);
    // A sequence has its place: what comes for the empty one becomes its member.
    return value != field && isTag(field, EXPSEQ) && !isTag(value, EXPSEQ) ? singleSequence(value) : value;
  });
}
DAG walkFields(DAG equations, DAG x) { return walkFields(equations, x, {1, lengthOf(x)}); }

// True when evaluation would leave a call of `head` as it is, its arguments being values.
bool isPlainHead(DAG head) {
  return isTag(head, NAME) && !head[1] && !isEnvironmentName(head) && (controlWord(head) & deferredBit) == 0 &&
         std::strncmp(textOf(head), "INTERFACE_", 10) != 0;
}

// A changed call or reference is evaluated again, its operands already being values.
DAG walkCall(DAG equations, DAG x) {
  if (hasTag(x, FUNCTION) && isTag(x[1], NAME)) {
    DAG known = evalextf("eval/", textOf(x[1]), simpl(new3(EXPSEQ, x, equations)));
    if (known != null) return simpl(known);
  }
  DAG changed = walkFields(equations, x, {1, 3});
  if (changed == x) return x;
  // To quote the arguments of each level would look all through them at each.
  if (hasTag(x, FUNCTION) && isPlainHead(changed[1])) return simpl(changed);
  DAG quoted = CopyAlg(changed[2]);
  for (Word i = 1; i < lengthOf(quoted); ++i)
    if (!isImmediate(quoted[i])) quoted[i] = new2(UNEVAL, quoted[i]);
  changed[2] = simpl(quoted);
  return simpl(eval(simpl(changed)));
}

DAG walkTyped(DAG equations, DAG x) {
  DAG known = evalextf("eval/", "::", simpl(new3(EXPSEQ, x, equations)));
  return known != null ? simpl(known) : simpl(walkFields(equations, x, {1, 2}));
}

DAG walkSum(DAG equations, DAG x) {
  DAG result = walkFields(equations, x, {1, lengthOf(x), 2});
  return result == x ? x : simpl(withListsAdded(result));
}

// Bases and exponents. An exponent that became symbolic leaves its place.
DAG walkProduct(DAG equations, DAG x) {
  DAG result = walkFields(equations, x);
  if (result == x) return x;
  for (Word i = 2, n = lengthOf(result); i < n; i += 2) {
    if (isNumeric(result[i])) continue;
    result[i - 1] = new3(POWER, result[i - 1], result[i]);
    result[i] = cons1;
  }
  return simpl(result);
}

struct EntryWalk {
  DAG equations, fresh;
};

// Keys that become one leave one entry. The walk is over a copy: what is evaluated may store.
DAG walkTable(DAG equations, DAG x) {
  EntryWalk w{equations, newhashtab(lengthOf(x[3]) - 1)};
  hashforeach(
      copyhashtab(x[3]),
      [](void* arg, PairAddress pair) {
        auto& walked = *static_cast<EntryWalk*>(arg);
        DAG key = simpl(walk(walked.equations, pairKey(pair)));
        hashunique(key.word, simpl(walk(walked.equations, pairValue(pair))), walked.fresh);
        return true;
      },
      &w);
  return simpl(new4(TABLE, x[1], x[2], w.fresh));
}

DAG walkRTable(DAG equations, DAG x) {
  return RTableModifyIntoCopy(
      x,
      [](DAG element, void* state) {
        DAG value = simpl(walk(*static_cast<DAG*>(state), element));
        updategen(value);
        return value;
      },
      &equations);
}

DAG walk(DAG equations, DAG x) {
  if (DAG right = replacement(equations, x)) return right;
  if (isImmediate(x)) return x;
  if (isAmong(x, closedTags)) return x;
  checkStack();
  passWork(objectSteps);
  switch (tagOf(x)) {
    case FUNCTION: case TABLEREF: return walkCall(equations, x);
    case SUM: return walkSum(equations, x);
    case PROD: return walkProduct(equations, x);
    case TABLE: return walkTable(equations, x);
    case RTABLE: return walkRTable(equations, x);
    case DCOLON: return walkTyped(equations, x);
    case ZPPOLY: return subs1(equations, x);
    case SERIES: return simpl(walkFields(equations, x, referenceFields(x)));
    case CATENATE: case POWER: case UNEVAL: case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT:
    case OR: case EXPSEQ: case LIST: case RANGE: case SET: case STATSEQ:
      return simpl(walkFields(equations, x));
    default: KernelException("invalid expression (%1) in evalat", naminstall(DagIDToName(tagOf(x))));
  }
}

}  // namespace

DAG evalat(DAG equations, DAG x) { return simpl(walk(equations, x)); }

}  // namespace korel
