#include "eval/types/constant_expressions.h"

#include "eval/evaluate/environment_variables.h"
#include "frame/environment.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/integer_cache.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// What one traversal asks.
struct ConstantWalk {
  bool undefinedToo;  // the name `undefined` may count as a constant
  DAG constants;      // value of the name `constants`
  Word clock;         // of the integer cache
};

DAG valueOfConstants() {
  DAG name = ini("constants");
  DAG value = valuenv(name, false);
  return value == name ? null : value;  // unassigned: no constants
}

bool isConstant(const ConstantWalk& walk, DAG x);

// ---- RootOf

// Which indeterminates an expression holds beside `_Z`, the variable of a RootOf.
struct Indeterminates {
  bool bound = false;  // _Z
  bool others = false;
};

// A call that isn't constant is an indeterminate itself, or, where only names are asked for, a place
// to look for them.
void gatherIndeterminates(const ConstantWalk& walk, DAG x, bool namesOnly, Indeterminates& found) {
  if (found.others || isImmediate(x)) return;
  checkStack();
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case COMPLEX: case STRING: return;
    case NAME:
      if (x == ini("_Z")) found.bound = true;
      else if (!isMember(x, walk.constants)) found.others = true;
      return;
    case SUM: case PROD:
      for (Word i = 1; i < lengthOf(x); i += 2) gatherIndeterminates(walk, x[i], namesOnly, found);
      return;
    case POWER:
      gatherIndeterminates(walk, x[1], namesOnly, found);
      if (!isConstant(walk, x[2])) found.others |= !namesOnly;
      if (namesOnly) gatherIndeterminates(walk, x[2], namesOnly, found);
      return;
    case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT: case OR: case EXPSEQ: case LIST:
    case RANGE: case SET:
      for (Word i = 1; i < lengthOf(x); ++i) gatherIndeterminates(walk, x[i], namesOnly, found);
      return;
    case FUNCTION:
      if (isConstant(walk, x)) return;
      if (!namesOnly) found.others = true;
      else gatherIndeterminates(walk, x[2], namesOnly, found);
      return;
    default: found.others = true;
  }
}

bool isConstantRoot(const ConstantWalk& walk, DAG arguments) {
  Indeterminates found;
  bool alone = lengthOf(arguments) == 2;
  gatherIndeterminates(walk, arguments[1], alone, found);
  return !found.others && (found.bound || !alone);
}

// ---- by tag

bool areConstant(const ConstantWalk& walk, DAG x, Word step) {
  for (Word i = 1; i < lengthOf(x); i += step)
    if (!isConstant(walk, x[i])) return false;
  return true;
}

bool computeConstant(const ConstantWalk& walk, DAG x) {
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: return true;
    case FLOAT: case HFLOAT: return !isUndefined(x);
    case COMPLEX: return !isUndefined(x) && areConstant(walk, x, 1);
    case NAME: return isMember(x, walk.constants) && (walk.undefinedToo || x != ini("undefined"));
    case DCOLON: return isConstant(walk, x[1]);
    case POWER: return areConstant(walk, x, 1);
    case SUM: case PROD:
      for (Word i = 2; i < lengthOf(x); i += 2)
        if (isUndefined(x[i])) return false;
      return areConstant(walk, x, 2);
    case FUNCTION:
      if (!isTag(x[2], EXPSEQ)) return isConstant(walk, x[2]);
      if (x[1] == ini("RootOf") && lengthOf(x[2]) > 1) return isConstantRoot(walk, x[2]);
      return areConstant(walk, x[2], 1);
    default: return false;
  }
}

bool isConstant(const ConstantWalk& walk, DAG x) {
  if (isImmediate(x)) return true;
  if (tagOf(x) <= NAME) return computeConstant(walk, x);
  // Shared parts are asked once.
  if (const Word* known = cachedInteger(x, walk.clock)) return *known != 0;
  checkStack();
  bool result = computeConstant(walk, x);
  cacheInteger(x, result, walk.clock);
  return result;
}

bool walkConstant(DAG x, bool undefinedToo) {
  if (isImmediate(x)) return true;
  return isConstant({undefinedToo, valueOfConstants(), beginIntegerTraversal()}, x);
}

}  // namespace

bool isConstantName(DAG x) { return isMember(x, valueOfConstants()); }

bool vname(DAG x) { return isTag(x, TABLEREF) || (isTag(x, NAME) && !isConstantName(x)); }

bool onlyconst(DAG x) { return walkConstant(x, true); }

bool isDefinedConstant(DAG x) { return walkConstant(x, false); }

}  // namespace korel
