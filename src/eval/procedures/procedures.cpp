#include "eval/procedures/procedures.h"

#include <cstring>

#include "eval/simplify/bindings.h"
#include "eval/walk/copy_on_change.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "library/repository/lookup.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "eval/types/constant_expressions.h"
#include "eval/walk/has.h"

namespace korel {

ProcedureRecord* procSimplStack = nullptr;
DAG assignedProcName;

namespace {


// ---- checks of declarations

// The texts of one kind of declaration.
struct DeclarationKind {
  const char* reserved;     // as %2 of "%1 cannot be declared as %2"
  const char* environment;  // for an environment variable
  const char* repeated;
  const char* expected;     // for what is no name
  const char* imaginary;    // warning for the name I
  bool repeatedFirst;       // a repetition is told before a clash with another kind
};
constexpr DeclarationKind parameterKind = {
    "a parameter", "cannot use environment variable `%1` as a parameter",
    "parameter `%1` is declared more than once", "symbol or symbol::type expected in parameter list",
    "imaginary unit `%1` used as a parameter name", false};
constexpr DeclarationKind localKind = {
    "a local", "cannot use environment variable `%1` as a local variable",
    "local `%1` is declared more than once", "symbol or symbol::type expected in local list",
    "imaginary unit `%1` used as a local variable", true};
constexpr DeclarationKind exportKind = {
    "an export", "cannot use environment variable `%1` as an exported variable",
    "export `%1` is declared more than once", "symbol or symbol::type expected in export list",
    "imaginary unit `%1` used as a module member", false};

bool isReservedName(DAG name) {
  const StandardName reserved[] = {"%", "%%", "%%%", "args", "nargs", "procname", "thismodule"};
  for (StandardName r : reserved)
    if (name == ini(r)) return true;
  return false;
}

bool isDeclaration(DAG x) { return isTag(x, NAME) || (isTag(x, DCOLON) && isTag(x[1], NAME)); }

bool isDeclared(DAG declarations, DAG name) {
  for (Word i = 1; i < lengthOf(declarations); ++i)
    if (isDeclaration(declarations[i]) && declaredName(declarations[i]) == name) return true;
  return false;
}

int occurrences(DAG declarations, DAG name) {
  int count = 0;
  for (Word i = 1; i < lengthOf(declarations); ++i)
    if (isDeclaration(declarations[i]) && declaredName(declarations[i]) == name) ++count;
  return count;
}

struct Clash {
  DAG declarations;
  const char* message;
};

template <std::size_t N>
void checkDeclarations(DAG declarations, const DeclarationKind& kind, const Clash (&clashes)[N]) {
  for (Word i = 1; i < lengthOf(declarations); ++i) {
    DAG declaration = declarations[i];
    if (!isDeclaration(declaration)) KernelException(kind.expected);
    DAG name = declaredName(declaration);
    if (isReservedName(name))
      KernelException("%1 cannot be declared as %2", name, strinstall(kind.reserved));
    if (kind.repeatedFirst && occurrences(declarations, name) > 1) KernelException(kind.repeated, name);
    for (const Clash& clash : clashes)
      if (isDeclared(clash.declarations, name)) KernelException(clash.message, name);
    if (occurrences(declarations, name) > 1) KernelException(kind.repeated, name);
    if (bindingsEnabled && std::strcmp(textOf(name), "I") == 0) KernelWarning(2, kind.imaginary, name);
    if (isEnvironmentName(name)) KernelException(kind.environment, name);
  }
}

void checkGlobals(DAG globals) {
  for (Word i = 1; i < lengthOf(globals); ++i) {
    DAG name = globals[i];
    if (!isTag(name, NAME)) KernelException("symbol expected in global list");
    if (isReservedName(name))
      KernelException("%1 cannot be declared as %2", name, strinstall("a global"));
    if (occurrences(globals, name) > 1) KernelException("global `%1` is declared more than once", name);
  }
}

// ---- steps shared by procedures and modules

// The name at `position` of a declaration list that a numbered reference came from.
DAG nameAt(DAG declarations, Word position, const char* message) {
  if (position < 1 || position >= lengthOf(declarations)) KernelException(message);
  return declaredName(declarations[position]);
}

// The name that a position in the procedure around this one stands for.
DAG nameOfReference(DAG reference, DAG outer) {
  auto n = static_cast<std::int32_t>(rawField(reference, 1));
  if (isTag(reference, LOCAL)) {
    // The exports of a module are numbered behind its locals.
    Word position = rawField(reference, 1), locals = lengthOf(outer[2]) - 1;
    bool isExport = hasTag(outer, MODDEF) && position > locals;
    return isExport ? nameAt(outer[4], position - locals, "invalid local on stack")
                    : nameAt(outer[2], position, "invalid local on stack");
  }
  if (isTag(reference, PARAM))
    return nameAt(outer[1], rawField(reference, 1), "invalid parameter on stack");
  Word pair = static_cast<Word>(n < 0 ? -n : n);
  return nameAt(outer[8], 2 * pair - 1, "invalid lexically scoped identifier on stack");
}

// A name for messages; inside another procedure it may already be a position.
DAG takeNameForMessages() {
  DAG name = assignedProcName;
  assignedProcName = DAG();
  if (!name || isTag(name, NAME) || isTag(name, TABLEREF)) return name;
  bool isReference = isTag(name, LOCAL) || isTag(name, PARAM) || isTag(name, LEXICAL);
  if (!isReference || procSimplStack == nullptr) return DAG();
  return nameOfReference(name, procSimplStack->procedure);
}

void simplifyDeclarations(DAG proc) {
  DAG parameters = proc[1];
  if (lengthOf(parameters) > 1) {
    parameters = CopyAlg(parameters);
    for (Word i = 1; i < lengthOf(parameters); ++i)
      if (isTag(parameters[i], DCOLON)) {
        DAG typed = CopyAlg(parameters[i]);
        typed[2] = simpl(typed[2]);
        parameters[i] = typed;
      }
  }
  proc[1] = SimplifyMaybeBind(parameters, false);
  if (isTag(proc[2], LIST)) proc[2] = proc[2][1];
  proc[7] = SimplifyMaybeBind(proc[7], false);
}

// `x` of the procedure `outer` as `proc` inside of it reads it: references become lexical.
DAG captured(DAG x, DAG proc, DAG outer) {
  if (!x || isImmediate(x)) return x;
  switch (tagOf(x)) {
    case LOCAL: case PARAM: case LEXICAL: {
      if (isTag(x, PARAM) && static_cast<std::int32_t>(rawField(x, 1)) < 1) return x;
      return lexicalFor(proc, nameOfReference(x, outer), x);
    }
    case PROC: {
      // Of an inner procedure only the bindings of its lexical table refer outwards.
      auto outward = [&](DAG field) { return captured(field, proc, outer); };
      DAG table = withFields(x[8], 2, 2, outward);
      if (table == x[8]) return x;
      DAG copy = CopyAlg(x);
      copy[8] = SimplifyMaybeBind(table, false);
      return markSimplified(copy);
    }
    case MEMBER: case TABLEREF: case DCOLON: case CATENATE: case POWER: case PROD: case SERIES: case SUM:
    case FUNCTION: case UNEVAL: case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT:
    case OR: case EXPSEQ: case LIST: case RANGE: case SET:
      checkStack();
      return withFields(x, 1, 1, [&](DAG field) { return captured(field, proc, outer); });
    default:
      return x;
  }
}

// The equations in force that the procedure's own names do not shadow.
DAG unshadowed(DAG equations, DAG proc) {
  DAG kept = newl2(lengthOf(equations), EXPSEQ);
  Word at = 1;
  for (Word i = 1; i < lengthOf(equations); ++i) {
    DAG name = equations[i][1];
    if (hasMember(proc[7], name) || lookupDeclaredName(name, proc) != name) continue;
    DAG right = equations[i][2];
    if (isTag(right, LOCAL) || isTag(right, PARAM) || isTag(right, LEXICAL))
      right = addLexicalPair(proc, name, right);
    else if (procSimplStack != nullptr && hasparloc(right))
      right = captured(right, proc, procSimplStack->procedure);
    kept[at++] = new3(EQUATION, name, right);
  }
  if (at != lengthOf(kept)) shorten(kept, lengthOf(kept), at);
  return kept;
}

struct SavedStacks {
  ProcedureRecord* procedures;
  BindingRecord* bindings;
};
void restoreStacks(const char*) {
  auto* saved = reinterpret_cast<SavedStacks*>(errorProcParam);
  procSimplStack = saved->procedures;
  useSimplStack = saved->bindings;
}

// Numbers the names of the body, then simplifies it, with the procedure as the innermost scope.
void simplifyBody(DAG proc, DAG bindings) {
  SavedStacks saved{procSimplStack, useSimplStack};
  PushParamErrorProc(restoreStacks, &saved);
  BindingRecord shadowing;
  if (bindings != null) {
    shadowing = {unshadowed(bindings, proc), nullptr};
    useSimplStack = &shadowing;
  } else if (useSimplStack != nullptr) {
    // The imaginary unit alone is in force: a declaration of its name shadows it.
    shadowing = {unshadowed(useSimplStack->equations, proc), nullptr};
    useSimplStack = &shadowing;
  }
  ProcedureRecord record{proc, procSimplStack};
  procSimplStack = &record;
  DAG numbered = simplfnc(proc[5], proc, null);
  proc[5] = simpl(numbered);
  procSimplStack = record.link;
  useSimplStack = saved.bindings;
  PopErrorProc();
}

// ---- operators

// `x -> c` is the number c, and `x -> f(x)` is f.
DAG reducedOperator(DAG proc) {
  DAG body = proc[5];
  if (lengthOf(proc[8]) > 1) return DAG();
  if (isNumeric(body)) return body;
  if (!isTag(body, FUNCTION) || lengthOf(body) != 3 || isImmediate(body[1])) return DAG();
  switch (tagOf(body[1])) {
    case LOCAL: case PARAM: case LEXICAL: return DAG();
    default: break;
  }
  Word n = lengthOf(proc[1]);
  if (n == 1 || lengthOf(body[2]) != n) return DAG();
  for (Word i = 1; i < n; ++i) {
    DAG argument = body[2][i];
    if (!isTag(argument, PARAM) || rawField(argument, 1) != i || isTag(proc[1][i], DCOLON)) return DAG();
  }
  // A head that holds parameters of its own is no constant function.
  return isTag(body[1], NAME) ? body[1] : DAG();
}

void checkInline(DAG proc) {
  DAG body = proc[5];
  if (!isImmediate(body) && tagOf(body) >= ASSIGN)
    KernelException("inline procedure body must be an expression");
  if (lengthOf(proc[2]) > 1) KernelException("inline procedure cannot have local variables");
  if (lengthOf(proc[8]) > 1)
    KernelException("inline procedure cannot have lexically scoped identifiers");
  if (hasOption(proc, ini("remember")) || hasOption(proc, naminstall("system")))
    KernelWarning(2, "options remember and system are ineffective for inline procedures");
}

// Names that stand for one value, declared ones included, are nothing that an operator can be given.
bool isIndeterminate(DAG name, DAG proc) {
  return !isEnvironmentName(name) && !isConstantName(name) && !isInfinite(name) && !isUndefined(name) &&
         name != ini("true") && name != ini("false") && name != ini("FAIL") &&
         !isDeclared(isTag(proc[2], LIST) ? proc[2][1] : proc[2], name) && !isDeclared(proc[7], name);
}

// An operator without arrow and parameters takes the names among the indeterminates of its body as its
// parameters, in the order in which they appear.
void collectNames(DAG x, DAG proc, DAG& names) {
  if (!x || isImmediate(x)) return;
  switch (tagOf(x)) {
    case NAME: {
      if (hasMember(names, x) || !isIndeterminate(x, proc)) return;
      DAG grown = newl2(lengthOf(names) + 1, EXPSEQ);
      for (Word i = 1; i < lengthOf(names); ++i) grown[i] = names[i];
      grown[lengthOf(names)] = x;
      names = grown;
      return;
    }
    case SUM: case PROD: case POWER: case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN:
    case AND: case NOT: case OR: case EXPSEQ: case LIST: case RANGE: case SET:
      checkStack();
      for (Word i = 1; i < lengthOf(x); ++i) collectNames(x[i], proc, names);
      return;
    case FUNCTION: return collectNames(x[2], proc, names);
    default: return;
  }
}

}  // namespace

bool hasOption(DAG procedure, DAG name) { return hasMember(procedure[3], name); }

DAG simplProcedure(DAG s) {
  DAG name = takeNameForMessages();
  if (lengthOf(s[1]) == 1 && hasOption(s, ini("operator")) && !hasOption(s, ini("arrow"))) {
    DAG names = newl2(1, EXPSEQ);
    collectNames(s[5], s, names);
    s[1] = names;
  }
  simplifyDeclarations(s);
  ScopeVariables(s[5], s);
  DAG bindings = hasUserBindings() ? allBindings() : null;
  DetermLocals(s[5], s, name, bindings);
  s[2] = SimplifyMaybeBind(s[2], false);
  const Clash parameterClashes[] = {
      {s[2], "parameter and local `%1` have the same name"},
      {s[7], "parameter and global `%1` have the same name"},
  };
  checkDeclarations(s[1], parameterKind, parameterClashes);
  const Clash localClashes[] = {{s[7], "local and global `%1` have the same name"}};
  checkDeclarations(s[2], localKind, localClashes);
  checkGlobals(s[7]);
  s[3] = simpl(s[3]);
  if (s[4] != null) s[4] = isTag(s[4], HASHTAB) ? s[4] : simpl(s[4]);
  simplifyBody(s, bindings);
  s[6] = simpl(s[6]);
  if (hasOption(s, ini("operator")))
    if (DAG reduced = reducedOperator(s)) return reduced;
  s[8] = SimplifyMaybeBind(s[8], false);
  if (hasOption(s, ini("inline"))) checkInline(s);
  return markSimplified(s);
}

DAG simplModuleDefinition(DAG s) {
  DAG assignedName = takeNameForMessages();
  if (lengthOf(s[1]) > 1 && !(lengthOf(s[1]) == 2 && s[1][1] == ini("thismodule")))
    KernelException("modules cannot have parameters");
  simplifyDeclarations(s);
  s[4] = SimplifyMaybeBind(isTag(s[4], LIST) ? s[4][1] : s[4], false);
  ScopeVariables(s[5], s);
  DAG bindings = hasUserBindings() ? allBindings() : null;
  DetermLocals(s[5], s, s[9] == null ? assignedName : s[9], bindings);
  s[2] = SimplifyMaybeBind(s[2], false);
  const Clash localClashes[] = {{s[7], "local and global `%1` have the same name"}};
  checkDeclarations(s[2], localKind, localClashes);
  const Clash exportClashes[] = {
      {s[2], "export and local `%1` have the same name"},
      {s[7], "export and global `%1` have the same name"},
  };
  checkDeclarations(s[4], exportKind, exportClashes);
  checkGlobals(s[7]);
  s[3] = simpl(s[3]);
  s[9] = s[9] == null ? null : SimplifyMaybeBind(s[9], false);
  simplifyBody(s, bindings);
  s[6] = simpl(s[6]);
  s[8] = SimplifyMaybeBind(s[8], false);
  s[1] = simpl(new2(EXPSEQ, ini("thismodule")));
  return markSimplified(s);
}

bool isNamed(DAG x, Tag tag) {
  if (isImmediate(x)) return false;
  if (hasTag(x, tag)) return true;
  if (!hasTag(x, NAME)) return false;
  return isTag(valuenv(x, false), tag);
}

bool NAMED_ARRAY(DAG x) {
  if (isObject(x) && hasTag(x, NAME)) x = valuenv(x, false);
  return isTag(x, TABLE) && x[2] != ini("false");
}

}  // namespace korel
