#include "eval/types/types.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/operands.h"
#include "eval/types/structured_types.h"
#include "eval/types/type_match.h"
#include "eval/types/type_names.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// The procedure or type that the library holds for the name `t`.
bool typeOfLibrary(DAG e, DAG t) {
  SuspendedBindings suspended = suspendBindings();  // the library is read by running it
  DAG name = retrieve("type/", textOf(t));
  resumeBindings(suspended);
  DAG value = name == null ? null : valuenv(name, false);
  if (name == null || value == name) KernelException("type `%1` does not exist", t);
  if (!isTypeProcedure(value)) return type(e, value);
  if (!isImmediate(e) && tagOf(e) >= BINARY) return false;
  if (isTag(e, EXPSEQ) && lengthOf(e) > 2) return false;
  return callTypeProcedure(name, e, null, t);
}

// The first alternative that matches decides; one that fails leaves no bindings behind.
bool typeByChoice(DAG e, DAG alternatives) {
  passWork(lengthOf(alternatives));
  for (Word i = 1; i < lengthOf(alternatives); ++i) {
    int bound = typematchI;
    if (type(e, alternatives[i])) return true;
    typematchI = bound;
  }
  return false;
}

bool typeByDeclaration(DAG e, DAG t) {
  if (typematchI < 0) return isTag(e, DCOLON) && type(e[1], t[1]) && type(e[2], t[2]);
  if (!type(e, t[2])) return false;
  bindPattern(t[1], e);
  return true;
}

bool typeByStructure(DAG e, DAG t) {
  if (isImmediate(e) || tagOf(e) != tagOf(t)) return false;
  std::int64_t n = numterms(t);
  if (numterms(e) != n) return false;
  for (std::int64_t i = 1; i <= n; ++i)
    if (!type(op1(i, e), op1(i, t))) return false;
  return true;
}

DAG answer(DAG e, DAG t) {
  typematchI = -1;
  return truth(type(e, t));
}

}  // namespace

bool type(DAG e, DAG t) {
  if (isImmediate(t)) return e == t;
  switch (tagOf(t)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case COMPLEX: case STRING: case RTABLE: return e == t;
    case NAME:
      if (TypeTest matches = builtinType(t)) return matches(e);
      checkStack();
      return typeOfLibrary(e, t);
    default: break;
  }
  checkStack();
  passWork(objectSteps);
  switch (tagOf(t)) {
    case SET: return typeByChoice(e, t[1]);
    case PROD:
      if (lengthOf(t) != 3) invalidType();
      [[fallthrough]];
    case POWER: return isPower(e) && type(e[1], t[1]) && type(e[2], t[2]);
    case DCOLON: return typeByDeclaration(e, t);
    case EXPSEQ: case CATENATE: case SERIES: case UNEVAL: case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN:
    case AND: case NOT: case OR: case LIST: case RANGE:
      return typeByStructure(e, t);
    case TABLEREF: return typeByIndexedName(e, t);
    case FUNCTION: return typeByCall(e, t);
    default: invalidType();
  }
}

DAG builtin::type(const BuiltinCall& call) {
  DAG args = call.arguments;
  // The usual call: two arguments that stay two. No sequence of their values is made, which would be one
  // object more for each expression tested.
  DAG e, t;
  if (lengthOf(args) == 3) {
    e = simpl(korel::eval(args[1]));
    t = simpl(korel::eval(args[2]));
    if (!isTag(e, EXPSEQ) && !isTag(t, EXPSEQ)) return answer(e, t);
    args = simpl(new3(EXPSEQ, e, t));
  } else {
    args = simpl(korel::eval(args));
  }
  if (!isSequence(args) || memberCount(args) == 1) return ini("false");
  if (lengthOf(args) != 3) wrongParameters(call);
  return answer(args[1], args[2]);
}

}  // namespace korel
