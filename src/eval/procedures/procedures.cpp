#include "eval/procedures/procedures.h"

#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/bindings.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/types/constant_expressions.h"
#include "eval/walk/has.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/repository/lookup.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/tag_facts.h"

namespace korel {

namespace {

// ---- checks of declarations

// The texts of one kind of declaration.
struct DeclarationKind {
  const char* reserved;     // as %2 of "%1 cannot be declared as %2"
  const char* environment;  // for an environment variable
  const char* repeated;
  const char* expected;   // for what is no name
  const char* imaginary;  // warning for the name I
  bool repeatedFirst;     // a repetition is told before a clash with another kind
};
constexpr DeclarationKind parameterKind = {"a parameter",
                                           "cannot use environment variable `%1` as a parameter",
                                           "parameter `%1` is declared more than once",
                                           "symbol or symbol::type expected in parameter list",
                                           "imaginary unit `%1` used as a parameter name",
                                           false};
constexpr DeclarationKind localKind = {"a local",
                                       "cannot use environment variable `%1` as a local variable",
                                       "local `%1` is declared more than once",
                                       "symbol or symbol::type expected in local list",
                                       "imaginary unit `%1` used as a local variable",
                                       true};
constexpr DeclarationKind exportKind = {"an export",
                                        "cannot use environment variable `%1` as an exported variable",
                                        "export `%1` is declared more than once",
                                        "symbol or symbol::type expected in export list",
                                        "imaginary unit `%1` used as a module member",
                                        false};

bool isReservedName(DAG name) {
  const StandardName reserved[] = {"%", "%%", "%%%", "args", "nargs", "procname", "thismodule"};
  for (StandardName r : reserved)
    if (name == ini(r)) return true;
  return false;
}

bool isDeclaration(DAG x) { return isTag(x, NAME) || (isTag(x, DCOLON) && isTag(x[1], NAME)); }

int occurrences(DAG declarations, DAG name) {
  int count = 0;
  for (Word i = 1; i < lengthOf(declarations); ++i)
    if (isDeclaration(declarations[i]) && declaredName(declarations[i]) == name) ++count;
  return count;
}
bool isDeclared(DAG declarations, DAG name) { return occurrences(declarations, name) > 0; }

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
    if (isReservedName(name)) KernelException("%1 cannot be declared as %2", name, strinstall(kind.reserved));
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
    if (isReservedName(name)) KernelException("%1 cannot be declared as %2", name, strinstall("a global"));
    if (occurrences(globals, name) > 1) KernelException("global `%1` is declared more than once", name);
  }
}

// ---- steps shared by procedures and modules

// The name at `position` of a declaration list that a numbered reference came from.
DAG nameAt(DAG declarations, Word position, const char* message) {
  if (position < 1 || position >= lengthOf(declarations)) KernelException(message);
  return declaredName(declarations[position]);
}

}  // namespace

DAG nameOfReference(DAG reference, DAG outer) {
  auto n = static_cast<std::int32_t>(rawField(reference, 1));
  if (isTag(reference, LOCAL)) {
    // The exports of a module are numbered behind its locals.
    Word position = rawField(reference, 1), locals = memberCount(localsOf(outer));
    bool isExport = hasTag(outer, MODDEF) && position > locals;
    return isExport ? nameAt(exportsOf(outer), position - locals, "invalid local on stack")
                    : nameAt(localsOf(outer), position, "invalid local on stack");
  }
  if (isTag(reference, PARAM)) return nameAt(paramsOf(outer), rawField(reference, 1), "invalid parameter on stack");
  Word pair = static_cast<Word>(n < 0 ? -n : n);
  return nameAt(lexicalsOf(outer), 2 * pair - 1, "invalid lexically scoped identifier on stack");
}

namespace {

// The assigned `name`, or 0, as messages tell it; inside another procedure it may already be a position.
DAG nameForMessages(DAG name) {
  if (!name || isNameOrIndexed(name)) return name;
  if (!isAmong(name, frameReferenceTags) || procSimplStack == nullptr) return DAG();
  return nameOfReference(name, procSimplStack->procedure);
}

DAG withoutBindings(DAG x) { return SimplifyMaybeBind(x, false); }

void simplifyDeclarations(DAG proc) {
  paramsOf(proc) = withoutBindings(withFields(paramsOf(proc), 1, 1, [](DAG declaration) {
    return isTag(declaration, DCOLON) ? new3(DCOLON, declaration[1], simpl(declaration[2])) : declaration;
  }));
  if (isTag(localsOf(proc), LIST)) localsOf(proc) = localsOf(proc)[1];
  globalsOf(proc) = withoutBindings(globalsOf(proc));
}

// What replacements of bound names are made of.
constexpr TagSet capturedInside =
    binaryTags | pairTags | TagSet{MEMBER, TABLEREF, SERIES, FUNCTION, UNEVAL, NOT, EXPSEQ, LIST, SET};

// `x` of the procedure `outer` as `proc` inside of it reads it: references become lexical.
DAG captured(DAG x, DAG proc, DAG outer) {
  if (!x || isImmediate(x)) return x;
  auto capturedPart = [&](DAG part) { return captured(part, proc, outer); };
  if (isAmong(x, frameReferenceTags)) {
    bool tellsOfCall = hasTag(x, PARAM) && static_cast<std::int32_t>(rawField(x, 1)) < 1;
    return tellsOfCall ? x : lexicalFor(proc, nameOfReference(x, outer), x);
  }
  if (hasTag(x, PROC)) {
    // Of an inner procedure only the bindings of its lexical table refer outwards.
    DAG table = withFields(lexicalsOf(x), 2, 2, capturedPart);
    if (table == lexicalsOf(x)) return x;
    DAG copy = CopyAlg(x);
    lexicalsOf(copy) = withoutBindings(table);
    return markSimplified(copy);
  }
  if (!isAmong(x, capturedInside)) return x;
  checkStack();
  return withReferences(x, capturedPart);
}

// The equations in force that the procedure's own names do not shadow.
DAG unshadowed(DAG equations, DAG proc) {
  DAG kept = newl2(lengthOf(equations), EXPSEQ);
  Word at = 1;
  for (Word i = 1; i < lengthOf(equations); ++i) {
    DAG name = equations[i][1];
    if (isDeclaredIn(proc, name)) continue;
    DAG right = equations[i][2];
    if (isObject(right) && isAmong(right, frameReferenceTags)) right = addLexicalPair(proc, name, right);
    else if (procSimplStack != nullptr && hasparloc(right)) right = captured(right, proc, procSimplStack->procedure);
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
  // Without bindings of the user the imaginary unit may be in force: a declaration of its name shadows it.
  if (bindings == null && useSimplStack != nullptr) bindings = useSimplStack->equations;
  BindingRecord shadowing;
  if (bindings != null) {
    shadowing = {unshadowed(bindings, proc), nullptr};
    useSimplStack = &shadowing;
  }
  ProcedureRecord record{proc, procSimplStack};
  procSimplStack = &record;
  bodyOf(proc) = simpl(simplfnc(bodyOf(proc), proc, null));
  procSimplStack = record.link;
  useSimplStack = saved.bindings;
  PopErrorProc();
}

// ---- operators

// A head that is the same function on every call. What stands in a procedure without captured names is its own.
bool isConstantHead(DAG head) { return isTag(head, PROC) ? isEmptySequence(lexicalsOf(head)) : !hasparloc(head); }

// The arguments are the parameters, in their order and without types.
bool passesParameters(DAG proc, DAG arguments) {
  DAG parameters = paramsOf(proc);
  if (lengthOf(arguments) != lengthOf(parameters)) return false;
  for (Word i = 1; i < lengthOf(parameters); ++i)
    if (!isTag(arguments[i], PARAM) || rawField(arguments[i], 1) != i || isTag(parameters[i], DCOLON)) return false;
  return true;
}

// `x -> c` is the number c, and `x -> f(x)` is f.
DAG reducedOperator(DAG proc) {
  DAG body = bodyOf(proc);
  if (lengthOf(lexicalsOf(proc)) > 1) return DAG();
  if (isNumeric(body)) return body;
  bool isPlainCall = isTag(body, FUNCTION) && lengthOf(body) == 3;
  return isPlainCall && isConstantHead(body[1]) && passesParameters(proc, body[2]) ? body[1] : DAG();
}

void checkInline(DAG proc) {
  if (isAmong(bodyOf(proc), statementTags)) KernelException("inline procedure body must be an expression");
  if (lengthOf(localsOf(proc)) > 1) KernelException("inline procedure cannot have local variables");
  if (lengthOf(lexicalsOf(proc)) > 1) KernelException("inline procedure cannot have lexically scoped identifiers");
  if (hasOption(proc, ini("remember")) || hasOption(proc, naminstall("system")))
    KernelWarning(2, "options remember and system are ineffective for inline procedures");
}

// Names that stand for one value, declared ones included, are nothing that an operator can be given.
bool isIndeterminate(DAG name, DAG proc) {
  return !isEnvironmentName(name) && !isConstantName(name) && !isInfinite(name) && !isUndefined(name) &&
         name != ini("true") && name != ini("false") && name != ini("FAIL") && !isDeclaredIn(proc, name);
}

constexpr TagSet searchedForNames = pairTags | relationTags | booleanTags | collectionTags | TagSet{POWER, RANGE};

// An operator without arrow and parameters takes the names among the indeterminates of its body as its
// parameters, in the order in which they appear.
void collectNames(DAG x, DAG proc, DAG& names) {
  if (!x || isImmediate(x)) return;
  if (isName(x)) {
    if (isMember(x, names) || !isIndeterminate(x, proc)) return;
    Word n = lengthOf(names);
    names = space_insert(names, n - 1, 1);
    names[n] = x;
  } else if (hasTag(x, FUNCTION)) {
    collectNames(x[2], proc, names);
  } else if (isAmong(x, searchedForNames)) {
    checkStack();
    for (Word i = 1; i < lengthOf(x); ++i) collectNames(x[i], proc, names);
  }
}

// ---- what the final forms of procedures and modules share

// Names get their scopes before the declarations are checked: implicit locals are declarations too.
// Gives the bindings in force.
DAG scopeBody(DAG s, DAG nameForMessages) {
  ScopeVariables(bodyOf(s), s);
  DAG bindings = hasUserBindings() ? allBindings() : null;
  DetermLocals(bodyOf(s), s, nameForMessages, bindings);
  localsOf(s) = withoutBindings(localsOf(s));
  return bindings;
}

void checkLocalsAndGlobals(DAG s) {
  const Clash clashes[] = {{globalsOf(s), "local and global `%1` have the same name"}};
  checkDeclarations(localsOf(s), localKind, clashes);
}

}  // namespace

DAG simplProcedure(DAG s, DAG assignedName) {
  DAG name = nameForMessages(assignedName);
  if (lengthOf(paramsOf(s)) == 1 && hasOption(s, ini("operator")) && !hasOption(s, ini("arrow"))) {
    DAG names = newl2(1, EXPSEQ);
    collectNames(bodyOf(s), s, names);
    paramsOf(s) = names;
  }
  simplifyDeclarations(s);
  DAG bindings = scopeBody(s, name);
  const Clash clashes[] = {
      {localsOf(s), "parameter and local `%1` have the same name"},
      {globalsOf(s), "parameter and global `%1` have the same name"},
  };
  checkDeclarations(paramsOf(s), parameterKind, clashes);
  checkLocalsAndGlobals(s);
  checkGlobals(globalsOf(s));
  optionsOf(s) = simpl(optionsOf(s));
  if (rememberOf(s) != null && !isTag(rememberOf(s), HASHTAB)) rememberOf(s) = simpl(rememberOf(s));
  simplifyBody(s, bindings);
  descriptionOf(s) = simpl(descriptionOf(s));
  if (hasOption(s, ini("operator")))
    if (DAG reduced = reducedOperator(s)) return reduced;
  lexicalsOf(s) = withoutBindings(lexicalsOf(s));
  if (hasOption(s, ini("inline"))) checkInline(s);
  return markSimplified(s);
}

DAG simplModuleDefinition(DAG s, DAG assignedName) {
  DAG parameters = paramsOf(s), thisModule = ini("thismodule");
  if (lengthOf(parameters) > 1 && !(lengthOf(parameters) == 2 && parameters[1] == thisModule))
    KernelException("modules cannot have parameters");
  simplifyDeclarations(s);
  exportsOf(s) = withoutBindings(isTag(exportsOf(s), LIST) ? exportsOf(s)[1] : exportsOf(s));
  DAG& ownName = s[moddefName];
  DAG bindings = scopeBody(s, nameForMessages(ownName == null ? assignedName : ownName));
  checkLocalsAndGlobals(s);
  const Clash clashes[] = {
      {localsOf(s), "export and local `%1` have the same name"},
      {globalsOf(s), "export and global `%1` have the same name"},
  };
  checkDeclarations(exportsOf(s), exportKind, clashes);
  checkGlobals(globalsOf(s));
  optionsOf(s) = simpl(optionsOf(s));
  ownName = withoutBindings(ownName);
  simplifyBody(s, bindings);
  descriptionOf(s) = simpl(descriptionOf(s));
  lexicalsOf(s) = withoutBindings(lexicalsOf(s));
  paramsOf(s) = simpl(newSequence({thisModule}));
  return markSimplified(s);
}

}  // namespace korel
