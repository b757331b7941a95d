#include "algebra/polynomials/indeterminates.h"

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/types/constant_expressions.h"
#include "eval/types/types.h"
#include "eval/walk/walk_memory.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "rtable/element_access.h"
#include "rtable/stored_positions.h"
#include "store/append.h"
#include "store/object_set.h"
#include "store/reference_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// What one walk asks, and what it has found: a sequence that grows by halves.
struct Gathering {
  DAG type;  // that wanted parts match; 0 for indeterminates
  ObjectSet& met;
  DAG found = newl2(9, EXPSEQ);
  Word count = 0;

  void insert(DAG x) {
    if (count + 1 == lengthOf(found)) found = enlarge(found, lengthOf(found) / 2 + 8);
    found[++count] = x;
  }
  DAG asSet() {
    shorten(found, lengthOf(found), count + 1);
    return simpl(new2(SET, found));
  }
};

void gather(Gathering& into, DAG x);

DAG gatherAlone(DAG x, DAG type) {
  return withWalkMemory<ObjectSet>([&](ObjectSet& met) {
    Gathering gathering{type, met};
    gather(gathering, x);
    return gathering.asSet();
  });
}

void gatherFields(Gathering& into, DAG x, const ReferenceFields& fields) {
  if (fields.extra != 0) gather(into, x[fields.extra]);
  for (Word i = fields.first; i < fields.end; i += fields.step) gather(into, x[i]);
}

// A RootOf is in what its polynomial is in beside the variable of that.
void gatherRoot(Gathering& into, DAG root) {
  DAG members = gatherAlone(root[2][1], into.type)[1];
  const bool bound = isMember(ini("_Z"), members), alone = bound && lengthOf(members) == 2;
  for (Word i = 1; i < lengthOf(members); ++i)
    if (members[i] != ini("_Z")) into.insert(members[i]);
  if (into.type ? type(root, into.type) : bound && !alone) into.insert(root);
}

void gatherCall(Gathering& into, DAG call) {
  DAG arguments = asSequence(call[2]);
  if (call[1] == ini("RootOf") && lengthOf(arguments) > 1) return gatherRoot(into, call);
  if (!into.type && onlyconst(call)) return;
  gather(into, arguments);
  if (!into.type || type(call, into.type)) into.insert(call);
}

void gatherPower(Gathering& into, DAG power) {
  gather(into, power[1]);
  if (into.type) return gather(into, power[2]);
  if (onlyconst(power[2])) return;
  gather(into, power[2]);
  if (isNameOrIndexed(power[1]) && vname(power[1])) into.insert(power);
}

void gatherElements(Gathering& into, DAG rtable) {
  forEachEntry(rtable, [&](const std::int32_t* index) {
    if (DAG element = selectElement(rtable, index)) gather(into, element);
  });
}

void gatherParts(Gathering& into, DAG x) {
  switch (tagOf(x)) {
    case SUM:
      for (Word i = 1; i < lengthOf(x); i += 2) {
        gather(into, x[i]);
        if (!isNumber(x[i + 1])) gather(into, x[i + 1]);
      }
      return;
    case RTABLE: return gatherElements(into, x);
    case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT: case OR: case EXPSEQ: case RANGE:
      return gatherFields(into, x, referenceFields(x));
    case LIST: case SET: return gather(into, x[1]);
    case FUNCTION: return gatherCall(into, x);
    case ZPPOLY: return gather(into, x[1]);
    case SERIES: return gatherFields(into, x, referenceFields(x));
    case PROD: return gatherFields(into, x, {1, lengthOf(x), 2});
    case POWER: return gatherPower(into, x);
    case DCOLON: return gather(into, x[1]);
    case CATENATE: case MEMBER: case NAME: case TABLEREF:
      if (!into.type && !isConstantName(x)) into.insert(x);
      return;
    case LOCAL: case PARAM: case LEXICAL:
      KernelException(into.type ? "unbound local or parameter in indets" : "invalid argument for indets");
    case HFLOAT: case UNEVAL: case NOTAG: KernelException("invalid argument for indets");
    default: return;
  }
}

void gather(Gathering& into, DAG x) {
  if (!x) KernelException("invalid argument for indets");
  if (isImmediate(x)) {
    if (into.type && type(x, into.type)) into.insert(x);
    return;
  }
  if (!into.type && tagOf(x) <= FLOAT) return;
  if (!into.met.insert(x)) return;
  checkStack();
  passWork(objectSteps);
  // A call is searched whether it matches or not; sequences are no parts of their own.
  if (into.type && !isTag(x, FUNCTION) && !isTag(x, EXPSEQ) && type(x, into.type)) return into.insert(x);
  gatherParts(into, x);
}

}  // namespace

DAG indets(DAG x) { return gatherAlone(x, DAG()); }
DAG indets(DAG x, DAG type) { return gatherAlone(x, type); }
DAG indetsSequence(DAG x) { return indets(x)[1]; }
bool hasIndeterminate(DAG x, DAG type) { return indets(x, type) != emptyset; }

DAG builtin::indets(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n < 1 || n > 2) wrongParameters(call);
  return n == 1 ? korel::indets(call.arguments[1]) : korel::indets(call.arguments[1], call.arguments[2]);
}

}  // namespace korel
