#include "structure/substitute.h"

#include "eval/arithmetic.h"
#include "frame/environment.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/standard_names.h"

namespace korel {

namespace {

// Fields that hold references, for a walk: the first, the step to the next, and whether to enter.
struct Fields {
  Word from, step, end;
};
Fields fieldsOf(DAG x) {
  Word n = lengthOf(x);
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case HFLOAT: case STRING: case NAME: case LOCAL: case PARAM:
    case LEXICAL: case BINARY: case GARBAGE: case FOREIGN: case RTABLE:
      return {0, 1, 0};
    case SERIES: return {2, 2, n};
    case ZPPOLY: return {1, 1, 2};
    case FLOAT: case COMPLEX: case RATIONAL: return {1, 1, n};
    default: return {1, 1, n};
  }
}

bool sameParameter(DAG a, DAG b) {
  return isObject(a) && isObject(b) && hasTag(a, PARAM) && hasTag(b, PARAM) &&
         rawField(a, 1) == rawField(b, 1);
}

}  // namespace

DAG substituteInCopy(DAG equations, DAG x) {
  if (!x) return x;
  for (Word i = 1; i < lengthOf(equations); ++i) {
    DAG left = equations[i][1];
    if (left == x || sameParameter(left, x)) return equations[i][2];
  }
  if (isImmediate(x)) return x;
  Fields fields = fieldsOf(x);
  if (fields.from == 0) return x;
  checkStack();
  DAG result = x;
  auto replace = [&](Word i) {
    DAG value = substituteInCopy(equations, x[i]);
    if (value == x[i]) return;
    if (result == x) result = CopyAlg(x);
    result[i] = value;
  };
  if (hasTag(x, SERIES)) replace(1);
  for (Word i = fields.from; i < fields.end; i += fields.step) replace(i);
  // An exponent that became symbolic leaves the pairs of a product.
  if (result != x && (hasTag(x, PROD) || hasTag(x, SUM)))
    for (Word i = 2; i < lengthOf(result); i += 2)
      if (!isNumeric(result[i])) {
        DAG base = result[i - 1];
        result[i - 1] = hasTag(x, PROD) ? new3(POWER, base, result[i])
                                        : new5(PROD, base, cons1, result[i], cons1);
        result[i] = cons1;
      }
  return result;
}

}  // namespace korel
