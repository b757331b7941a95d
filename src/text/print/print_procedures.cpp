// Procedures and modules, and the references to their variables by position.

#include "store/constants.h"
#include "store/hash.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

// Fields of PROC and MODDEF.
enum ProcedureField : int {
  parameterField = 1,
  localField = 2,
  optionField = 3,
  rememberField = 4,  // PROC
  exportField = 4,    // MODDEF
  bodyField = 5,
  descriptionField = 6,
  globalField = 7,
  lexicalField = 8,
  moduleNameField = 9,
};

// The sequence of a field; a raw procedure holds its locals in a LIST.
DAG sequenceOf(DAG field) {
  if (isObject(field) && hasTag(field, LIST)) field = field[1];
  return isSequence(field) ? field : null;
}

DAG withoutType(DAG declared) {
  return isObject(declared) && hasTag(declared, DCOLON) ? declared[1] : declared;
}

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
    printObject(name, 0);
  } else {
    printByPosition(kind, position);
  }
}

// ---- declarations

void breakPoint() { EmitSpace(); }

void printClause(const char* keyword, DAG field) {
  DAG members = sequenceOf(field);
  if (lengthOf(members) == 1) return;
  EmitToken(keyword);
  EmitSpace();
  printList(members, ", ");
  EmitChar(';');
  breakPoint();
}

void printOptions(DAG field) {
  printClause(lengthOf(sequenceOf(field)) > 2 ? "options" : "option", field);
}

// The parameters with their types. A type is written in terms of the enclosing procedure's
// variables.
void printParameters(DAG parameters, DAG enclosing) {
  for (Word i = 1, n = lengthOf(parameters); i < n; ++i) {
    if (i > 1) {
      EmitChar(',');
      breakPoint();
    }
    DAG parameter = parameters[i];
    printObject(withoutType(parameter), 11);
    if (!isObject(parameter) || !hasTag(parameter, DCOLON)) continue;
    EmitToken("::");
    DAG procedure = mProcPrint;
    if (enclosing) mProcPrint = enclosing;
    printObject(parameter[2], 0);
    mProcPrint = procedure;
  }
}

void printBody(DAG body) {
  if (isEmptySequence(body)) return;
  printObject(body, 0);
  EmitSpace();
}

// ---- what follows a definition

// A call of `target` with what an entry of the remember table is kept under: the arguments, or of an indexed
// call index::arguments.
void printRememberedCall(DAG target, DAG key) {
  printObject(target, 11);
  if (isObject(key) && hasTag(key, DCOLON)) {
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
  if (!isObject(table) || !hasTag(table, HASHTAB)) return;
  DAG entries = hashseq(table);
  printAssignTarget = DAG();
  for (Word i = 1, n = lengthOf(entries); i < n; ++i) {
    EmitChar(';');
    breakPoint();
    printRememberedCall(target, entries[i][1]);
    printBetweenBlanks(":=");
    printObject(entries[i][2], 0);
  }
  printAssignTarget = target;
}

// `name := value;` for each variable of a module that has a value.
void printVariableValues(DAG names) {
  for (Word i = 1, n = lengthOf(names); i < n; ++i) {
    DAG name = withoutType(names[i]);
    if (!isObject(name) || !hasTag(name, NAME) || !name[1]) continue;
    printObject(name, 0);
    printBetweenBlanks(":=");
    printObject(name[1], 0);
    EmitChar(';');
    breakPoint();
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

void printModuleHead(DAG definition) {
  EmitToken("module");
  EmitSpace();
  DAG name = definition[moduleNameField];
  if (isObject(name) && !isEmptySequence(name)) {
    printObject(name, 11);
    EmitSpace();
  }
  EmitToken("()");
  EmitSpace();
  printClause("local", definition[localField]);
  printClause("export", definition[exportField]);
  printClause("global", definition[globalField]);
  printOptions(definition[optionField]);
  printClause("description", definition[descriptionField]);
}

}  // namespace

void printLocal(DAG x, int, int) {
  auto position = static_cast<std::int32_t>(rawField(x, 1));
  DAG name;
  if (mProcPrint) {
    DAG locals = sequenceOf(mProcPrint[localField]);
    name = declaredName(locals, position);
    // A module numbers its exports behind its locals.
    if (!name && hasTag(mProcPrint, MODDEF))
      name = declaredName(sequenceOf(mProcPrint[exportField]), position - (lengthOf(locals) - 1));
  }
  printNameOrPosition(name, "loc", position);
}

void printParameter(DAG x, int, int) {
  auto position = static_cast<std::int32_t>(rawField(x, 1));
  switch (position) {
    case 0:
      EmitToken("nargs");
      return;
    case -1:
      EmitToken("args");
      return;
    case -2:
      EmitToken("procname");
      return;
    default:
      break;
  }
  DAG name = mProcPrint ? declaredName(sequenceOf(mProcPrint[parameterField]), position) : DAG();
  printNameOrPosition(name, "args", position);
}

void printLexical(DAG x, int, int) {
  auto number = static_cast<std::int32_t>(rawField(x, 1));
  std::int64_t pair = number < 0 ? -std::int64_t{number} : number;
  DAG name = mProcPrint ? declaredName(sequenceOf(mProcPrint[lexicalField]), 2 * pair - 1) : DAG();
  printNameOrPosition(name, "lex", number);
}

void printProcedure(DAG x, int, int) {
  EnclosingDefinition enclosing = enterDefinition(x);
  EmitToken("proc");
  EmitSpace();
  EmitChar('(');
  printParameters(sequenceOf(x[parameterField]), enclosing.procedure);
  EmitChar(')');
  EmitSpace();
  printClause("local", x[localField]);
  printClause("global", x[globalField]);
  printOptions(x[optionField]);
  printClause("description", x[descriptionField]);
  printBody(x[bodyField]);
  EmitToken("end proc");
  bool outermost = printProcDepth == 1;
  leaveDefinition(enclosing);
  if (outermost && printAssignTarget) printRememberTable(x[rememberField], printAssignTarget);
}

void printModuleDefinition(DAG x, int, int) {
  EnclosingDefinition enclosing = enterDefinition(x);
  printModuleHead(x);
  printBody(x[bodyField]);
  EmitToken("end module");
  leaveDefinition(enclosing);
}

// A member can hold its own module, or one further out: that one is known there as `thismodule`, the others
// print without the values that are under way already.
void printModule(DAG x, int, int) {
  if (mProcPrint == x[2]) return printObject(ini("thismodule"), 0);
  const bool underWay = isUnderWay(x[2]);
  PrintedHolder module{x[2], printedHolders};
  printedHolders = &module;
  EnclosingDefinition enclosing = enterDefinition(x[2]);
  printModuleHead(x[2]);
  if (!underWay) {
    printVariableValues(sequenceOf(x[3]));
    printVariableValues(sequenceOf(x[1]));
  }
  EmitToken("end module");
  leaveDefinition(enclosing);
  printedHolders = module.link;
}

}  // namespace korel
