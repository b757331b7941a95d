// Procedures and modules, and the references to their variables by position.

#include "store/hash.h"
#include "store/object_fields.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

// The sequence of a field; a raw procedure holds its locals in a LIST.
DAG sequenceOf(DAG field) {
  if (isTag(field, LIST)) field = field[1];
  return isSequence(field) ? field : null;
}

DAG withoutType(DAG declared) { return isTag(declared, DCOLON) ? declared[1] : declared; }

// Member `n` (from 1) of a declaration sequence without its type, or 0.
DAG declaredName(DAG sequence, std::int64_t n) {
  return n >= 1 && n < lengthOf(sequence) ? withoutType(sequence[n]) : DAG();
}

// `loc[3]` and its kin, for a variable whose declaration isn't at hand.
void printByPosition(const char* kind, std::int32_t position) {
  EmitToken(kind);
  EmitChar('[');
  EmitInteger(position);
  EmitChar(']');
}

void printNameOrPosition(DAG name, const char* kind, std::int32_t position) {
  if (name) {
    printObject(name, bindsNothing);
  } else {
    printByPosition(kind, position);
  }
}

// ---- declarations

void printClause(const char* keyword, DAG field) {
  DAG members = sequenceOf(field);
  if (lengthOf(members) == 1) return;
  EmitToken(keyword);
  EmitSpace();
  printList(members, ", ");
  EmitChar(';');
  EmitSpace();
}

void printOptions(DAG field) { printClause(lengthOf(sequenceOf(field)) > 2 ? "options" : "option", field); }

// The parameters with their types. A type is written in terms of the enclosing procedure's
// variables.
void printParameters(DAG parameters, DAG enclosing) {
  for (Word i = 1, n = lengthOf(parameters); i < n; ++i) {
    if (i > 1) {
      EmitChar(',');
      EmitSpace();
    }
    DAG parameter = parameters[i];
    printObject(withoutType(parameter), bindsCall);
    if (!isTag(parameter, DCOLON)) continue;
    EmitToken("::");
    DAG procedure = mProcPrint;
    if (enclosing) mProcPrint = enclosing;
    printObject(parameter[2], bindsNothing);
    mProcPrint = procedure;
  }
}

void printBody(DAG body) {
  if (isEmptySequence(body)) return;
  printObject(body, bindsNothing);
  EmitSpace();
}

// ---- what follows a definition

// A call of `target` with what an entry of the remember table is kept under: the arguments, or of an indexed
// call index::arguments.
void printRememberedCall(DAG target, DAG key) {
  printObject(target, bindsCall);
  if (isTag(key, DCOLON)) {
    EmitChar('[');
    printList(key[1], ",");
    EmitChar(']');
    key = key[2];
  }
  EmitChar('(');
  printList(key, ",");
  EmitChar(')');
}

// The remember table of the procedure that is assigned to `target`. Procedures among its values are assigned
// to nothing.
void printRememberTable(DAG table, DAG target) {
  if (!isTag(table, HASHTAB)) return;
  DAG entries = hashseq(table);
  printAssignTarget = DAG();
  for (Word i = 1, n = lengthOf(entries); i < n; ++i) {
    EmitChar(';');
    EmitSpace();
    printRememberedCall(target, entries[i][1]);
    printBetweenBlanks(":=");
    printObject(entries[i][2], bindsNothing);
  }
  printAssignTarget = target;
}

// `name := value;` for each variable of a module that has a value.
void printVariableValues(DAG names) {
  for (Word i = 1, n = lengthOf(names); i < n; ++i) {
    DAG name = withoutType(names[i]);
    if (!isName(name) || !name[1]) continue;
    printObject(name, bindsNothing);
    printBetweenBlanks(":=");
    printObject(name[1], bindsNothing);
    EmitChar(';');
    EmitSpace();
  }
}

// ---- entering a definition

struct EnclosingDefinition {
  DAG procedure, assignTarget;
};

EnclosingDefinition enterDefinition(DAG definition) {
  EnclosingDefinition enclosing{mProcPrint, printAssignTarget};
  mProcPrint = definition;
  printAssignTarget = DAG();
  ++printProcDepth;
  return enclosing;
}

void leaveDefinition(const EnclosingDefinition& enclosing) {
  --printProcDepth;
  printAssignTarget = enclosing.assignTarget;
  mProcPrint = enclosing.procedure;
}

void printModuleHead(DAG definition, const EnclosingDefinition& enclosing) {
  EmitToken("module");
  EmitSpace();
  DAG name = definition[moddefName];
  if (isObject(name) && !isEmptySequence(name)) {
    mProcPrint = enclosing.procedure;  // whose variable the name may be
    printObject(name, bindsCall);
    mProcPrint = definition;
    EmitSpace();
  }
  EmitToken("()");
  EmitSpace();
  printClause("local", localsOf(definition));
  printClause("export", exportsOf(definition));
  printClause("global", globalsOf(definition));
  printOptions(optionsOf(definition));
  printClause("description", descriptionOf(definition));
}

}  // namespace

void printLocal(DAG x, int, int) {
  auto position = static_cast<std::int32_t>(rawField(x, 1));
  DAG name;
  if (mProcPrint) {
    DAG locals = sequenceOf(localsOf(mProcPrint));
    name = declaredName(locals, position);
    // A module numbers its exports behind its locals.
    if (!name && hasTag(mProcPrint, MODDEF)) {
      const std::int64_t localCount = memberCount(locals);
      name = declaredName(sequenceOf(exportsOf(mProcPrint)), position - localCount);
    }
  }
  printNameOrPosition(name, "loc", position);
}

void printParameter(DAG x, int, int) {
  auto position = static_cast<std::int32_t>(rawField(x, 1));
  constexpr const char* specialNames[] = {"nargs", "args", "procname"};  // 0, -1, -2
  if (position <= 0 && position > -3) {
    EmitToken(specialNames[-position]);
    return;
  }
  DAG name = mProcPrint ? declaredName(sequenceOf(paramsOf(mProcPrint)), position) : DAG();
  printNameOrPosition(name, "args", position);
}

void printLexical(DAG x, int, int) {
  auto number = static_cast<std::int32_t>(rawField(x, 1));
  std::int64_t pair = number < 0 ? -std::int64_t{number} : number;
  DAG name = mProcPrint ? declaredName(sequenceOf(lexicalsOf(mProcPrint)), 2 * pair - 1) : DAG();
  printNameOrPosition(name, "lex", number);
}

void printProcedure(DAG x, int, int) {
  EnclosingDefinition enclosing = enterDefinition(x);
  EmitToken("proc");
  EmitSpace();
  EmitChar('(');
  printParameters(sequenceOf(paramsOf(x)), enclosing.procedure);
  EmitChar(')');
  EmitSpace();
  printClause("local", localsOf(x));
  printClause("global", globalsOf(x));
  printOptions(optionsOf(x));
  printClause("description", descriptionOf(x));
  printBody(bodyOf(x));
  EmitToken("end proc");
  bool outermost = printProcDepth == 1;
  leaveDefinition(enclosing);
  if (outermost && printAssignTarget) printRememberTable(rememberOf(x), printAssignTarget);
}

void printModuleDefinition(DAG x, int, int) {
  EnclosingDefinition enclosing = enterDefinition(x);
  printModuleHead(x, enclosing);
  printBody(bodyOf(x));
  EmitToken("end module");
  leaveDefinition(enclosing);
}

// A member can hold its own module, or one further out: that one is known there as `thismodule`, the others
// print without the values that are under way already.
void printModule(DAG x, int, int) {
  DAG definition = x[moduleDefinition];
  if (mProcPrint == definition) return printObject(ini("thismodule"), bindsNothing);
  const bool underWay = isUnderWay(definition);
  PrintedHolder module{definition, printedHolders};
  printedHolders = &module;
  EnclosingDefinition enclosing = enterDefinition(definition);
  printModuleHead(definition, enclosing);
  if (!underWay) {
    printVariableValues(sequenceOf(x[moduleLocals]));
    printVariableValues(sequenceOf(x[moduleExports]));
  }
  EmitToken("end module");
  leaveDefinition(enclosing);
  printedHolders = module.link;
}

}  // namespace korel
