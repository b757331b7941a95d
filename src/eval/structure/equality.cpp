#include "eval/structure/equality.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "eval/statements/statements.h"
#include "eval/structure/kinds.h"
#include "frame/environment.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/vocabulary.h"

namespace korel {

bool deeplyEqual(DAG a, DAG b) {
  if (a == b) return true;
  if (!isObject(a) || !isObject(b) || headerWord(a) != headerWord(b)) return false;
  if (hasTag(a, HASHTAB)) return hashEqualEntries(a, b);
  // Simplified objects are one when they are equal, up to those that may change.
  if (isSimplified(a) && isSimplified(b) && tagOf(a) < PROC) return false;
  ReferenceFields fields = referenceFields(a);
  if (fields.first != 1 || fields.step != 1 || fields.end != lengthOf(a)) return false;
  checkStack();
  for (Word i = 1; i < lengthOf(a); ++i)
    if (!deeplyEqual(a[i], b[i])) return false;
  return true;
}

namespace {

bool areComparable(DAG a, DAG b) { return !isImmediate(a) && !isImmediate(b) && tagOf(a) == tagOf(b); }

}  // namespace

bool EqualStructure(DAG a, DAG b) {
  if (a == b) return true;
  if (!areComparable(a, b)) return false;
  const Kind& kind = kindOf(a);
  return kind.sameStructure != nullptr && kind.sameStructure(a, b);
}

bool EqualEntries(DAG a, DAG b) {
  if (tagOf(a) != tagOf(b)) return false;
  if (const Kind& kind = kindOf(a); kind.sameEntries != nullptr) return kind.sameEntries(a, b);
  if (isAmong(a, algebraicTags)) return evalbool(simpl(new3(EQUATION, a, b))) == ini("true");
  return a == b;
}

bool Equal(DAG a, DAG b) {
  if (a == b) return true;
  if (!areComparable(a, b)) return false;
  if (const Kind& kind = kindOf(a); kind.equal != nullptr) return kind.equal(a, b);
  return EqualStructure(a, b) && EqualEntries(a, b);
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
  return truth(equal(behind(call.arguments[1]), behind(call.arguments[2])));
}

}  // namespace

DAG builtin::EqualEntries(const BuiltinCall& call) { return compare(call, korel::EqualEntries); }
DAG builtin::EqualStructure(const BuiltinCall& call) { return compare(call, korel::EqualStructure); }

}  // namespace korel
