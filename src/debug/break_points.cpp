#include "debug/break_points.h"

#include <cstring>

#include "debug/statement_walk.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/modules.h"
#include "eval/procedures/procedures.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "store/names.h"

namespace korel {

bool isOfDebugger(DAG name) {
  constexpr const char* whole = "debugger";
  const std::size_t n = std::strlen(whole);
  if (!isText(name)) return false;
  const char* text = textOf(name);
  return std::strncmp(text, whole, n) == 0 && (text[n] == '\0' || text[n] == '/');
}

namespace {

// The name behind a member of a module that exports it, or 0.
DAG exportedName(DAG member) {
  if (member[1] == null) return member[2];
  DAG module = simpl(eval(member[1]));
  if (isTag(module, NAME)) module = mvalue(module);
  DAG instance = isTag(module, MODULE) ? exportInstance(module, member[2]) : DAG();
  return instance ? declaredName(instance) : DAG();
}

}  // namespace

DAG debuggableProcedure(DAG name) {
  if (isTag(name, MEMBER)) name = exportedName(name);
  if (!name || !isNameOrIndexed(name)) KernelException("procedure name expected");
  DAG procedure = mvalue(name);
  if (isTag(procedure, UNEVAL)) procedure = procedure[1];
  // The value may be another name, of a name in turn; a circle has no procedure.
  constexpr int longestChain = 100;
  for (int i = 0; i < longestChain && isNameOrIndexed(procedure); ++i) procedure = mvalue(procedure);
  if (!isTag(procedure, PROC)) KernelException("procedure name expected");
  if (hasOption(procedure, ini("builtin"))) KernelException("cannot debug built-in functions");
  if (isTag(name, NAME) && hasText(name, "debugger")) KernelException("cannot debug the debugger");
  return procedure;
}

bool leadsTo(DAG name, DAG procedure) {
  if (!isNameOrIndexed(name)) return false;
  DAG value = isTag(name, NAME) ? name[1] : mvalue(name);
  return value && isTag(value, PROC) && bodyOf(value) == bodyOf(procedure);
}

namespace {

StatementPlace placeIn(DAG procedure, std::int32_t number) {
  StatementPlace place;
  if (!placeOfNumber(procedure, number, place)) KernelException("statement number out of range");
  return place;
}

}  // namespace

void setBreakPoint(DAG name, std::int32_t number, DAG condition) {
  DAG procedure = debuggableProcedure(name);
  const StatementPlace place = placeIn(procedure, number);
  if (isTraced(place.wrapped())) KernelException("cannot set break point on a traced statement");
  DAG arguments = null;
  if (condition) arguments = simpl(new2(EXPSEQ, SimplifyMaybeBind(simplfnc(condition, procedure, null), false)));
  DAG stop = simpl(new3(FUNCTION, ini("DEBUG"), arguments));
  DAG pair = new3(STATSEQ, stop, place.statement());
  setSimplified(pair);
  replaceStatement(place, pair);
}

void clearBreakPoint(DAG name, std::int32_t number) {
  DAG procedure = debuggableProcedure(name);
  const StatementPlace place = placeIn(procedure, number);
  if (!isBreakPoint(place.wrapped())) KernelException("no break point set at specified location");
  replaceStatement(place, place.statement());
}

}  // namespace korel
