#include "eval/structure/equality.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"

namespace korel {

namespace {


[[noreturn]] void noRtables(const char* operation) {
  KernelException("the operation `%1` is not available", naminstall(operation));
}

// Within procedures and statements: the same word, or the same kind with equal parts. Names and other
// objects without references are one object when they are equal.
bool deeplyEqual(DAG a, DAG b) {
  if (a == b) return true;
  if (!isObject(a) || !isObject(b) || headerWord(a) != headerWord(b)) return false;
  switch (tagOf(a)) {
    case NAME: case STRING: case RTABLE: return false;
    case HASHTAB: return hashEqualEntries(a, b);
    default: break;
  }
  if (isSimplified(a) && isSimplified(b) && tagOf(a) < PROC) return false;
  ReferenceFields fields = referenceFields(a);
  if (fields.first != 1 || fields.step != 1 || fields.end != lengthOf(a)) return false;
  checkStack();
  for (Word i = 1; i < lengthOf(a); ++i)
    if (!deeplyEqual(a[i], b[i])) return false;
  return true;
}

bool isAlgebraic(DAG x) { return isImmediate(x) || (tagOf(x) <= UNEVAL && !hasTag(x, STRING)); }

bool haveFunction(DAG a, DAG b) { return a[1] != null || b[1] != null; }

}  // namespace

bool EqualStructure(DAG a, DAG b) {
  if (a == b) return true;
  if (isImmediate(a) || isImmediate(b) || tagOf(a) != tagOf(b)) return false;
  switch (tagOf(a)) {
    case TABLE: return a[1] == b[1] && a[2] == b[2];
    case RTABLE: noRtables("RTableEqualStructure");
    case PROC: case TRY: return deeplyEqual(a, b);
    default: return false;
  }
}

bool EqualEntries(DAG a, DAG b) {
  if (tagOf(a) != tagOf(b)) return false;
  switch (tagOf(a)) {
    case TABLE:
      if (haveFunction(a, b)) KernelException("cannot handle tables with indexing functions");
      return hashEqualEntries(a[3], b[3]);
    case HASHTAB: return hashEqualEntries(a, b);
    case RTABLE: noRtables("RTableEqualEntries");
    case PROC: case TRY: return deeplyEqual(a, b);
    default: break;
  }
  if (isAlgebraic(a)) return evalbool(simpl(new3(EQUATION, a, b))) == ini("true");
  return a == b;
}

bool Equal(DAG a, DAG b) {
  if (a == b) return true;
  if (isImmediate(a) || isImmediate(b) || tagOf(a) != tagOf(b)) return false;
  switch (tagOf(a)) {
    case RTABLE: noRtables("RTableEqual");
    case PROC: case TRY: return deeplyEqual(a, b);
    default: return EqualStructure(a, b) && EqualEntries(a, b);
  }
}

namespace {

// What a name or an entry of a table holds, when that is hidden behind it.
DAG behind(DAG x) {
  DAG value = x;
  if (isTag(value, TABLEREF)) value = simpl(mvalue(value));
  if (isTag(value, NAME)) value = valuenv(value, false);
  return isTag(value, TABLE) || isTag(value, PROC) ? value : x;
}

DAG compare(const BuiltinCall& call, bool (*equal)(DAG a, DAG b)) {
  if (argumentCount(call) != 2) wrongParameters(call);
  bool same = equal(behind(call.arguments[1]), behind(call.arguments[2]));
  return same ? ini("true") : ini("false");
}

}  // namespace

DAG builtin::EqualEntries(const BuiltinCall& call) { return compare(call, korel::EqualEntries); }
DAG builtin::EqualStructure(const BuiltinCall& call) { return compare(call, korel::EqualStructure); }

}  // namespace korel
