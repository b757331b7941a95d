// Scoping: which names of a procedure's body are its own, which belong to a procedure outside, and
// which become implicit locals.

#include "eval/simplify/bindings.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/procedures/procedures.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

std::int32_t number(DAG x) { return static_cast<std::int32_t>(rawField(x, 1)); }
DAG reference(Tag tag, std::int32_t n) { return new2(tag, DAG(static_cast<Word>(n))); }

// Position of `name` in a sequence of declarations, or 0.
Word positionOf(DAG declarations, DAG name) {
  if (isTag(declarations, LIST)) declarations = declarations[1];
  for (Word i = 1; i < lengthOf(declarations); ++i)
    if (declaredName(declarations[i]) == name) return i;
  return 0;
}

Word countOf(DAG declarations) {
  if (isTag(declarations, LIST)) declarations = declarations[1];
  return lengthOf(declarations) - 1;
}

// A lexical reference is negative when what it captures is a parameter.
bool capturesParameter(DAG binding) {
  return isTag(binding, PARAM) || (isTag(binding, LEXICAL) && number(binding) < 0);
}

Word lexicalPair(DAG proc, DAG name) {
  DAG table = proc[8];
  for (Word i = 1; i < lengthOf(table); i += 2)
    if (table[i] == name) return (i + 1) / 2;
  return 0;
}

// The right side that `bindings` have for `name`, or 0.
DAG replacementOf(DAG name, DAG bindings) {
  for (Word i = 1; i < lengthOf(bindings); ++i)
    if (bindings[i][1] == name) return bindings[i][2];
  return DAG();
}

bool isReserved(DAG name) {
  return name == ini("nargs") || name == ini("args") || name == ini("procname");
}

}  // namespace

bool hasMember(DAG s, DAG x) {
  for (Word i = 1; i < lengthOf(s); ++i)
    if (s[i] == x) return true;
  return false;
}

DAG lookupDeclaredName(DAG name, DAG proc) {
  if (Word i = positionOf(proc[1], name)) return reference(PARAM, static_cast<std::int32_t>(i));
  if (Word i = positionOf(proc[2], name)) return reference(LOCAL, static_cast<std::int32_t>(i));
  if (hasTag(proc, MODDEF))
    if (Word i = positionOf(proc[4], name))
      return reference(LOCAL, static_cast<std::int32_t>(countOf(proc[2]) + i));
  if (Word k = lexicalPair(proc, name)) {
    auto n = static_cast<std::int32_t>(k);
    return reference(LEXICAL, capturesParameter(proc[8][2 * k]) ? -n : n);
  }
  if (hasTag(proc, MODDEF) && name == ini("thismodule")) return reference(PARAM, 1);
  return name;
}

DAG addLexicalPair(DAG proc, DAG name, DAG binding) {
  DAG old = proc[8];
  Word n = lengthOf(old);
  DAG table = newl2(n + 2, EXPSEQ);
  for (Word i = 1; i < n; ++i) table[i] = old[i];
  table[n] = name;
  table[n + 1] = binding;
  proc[8] = table;
  auto k = static_cast<std::int32_t>((n + 1) / 2);
  return reference(LEXICAL, capturesParameter(binding) ? -k : k);
}

DAG lexicalFor(DAG proc, DAG name, DAG binding) {
  DAG table = proc[8];
  for (Word i = 2; i < lengthOf(table); i += 2) {
    if (tagOf(table[i]) != tagOf(binding) || number(table[i]) != number(binding)) continue;
    auto k = static_cast<std::int32_t>(i / 2);
    return reference(LEXICAL, capturesParameter(binding) ? -k : k);
  }
  return addLexicalPair(proc, name, binding);
}

DAG searchEnclosingScopes(ProcedureRecord* scope, DAG name) {
  if (scope == nullptr) return DAG();
  DAG proc = scope->procedure;
  if (hasMember(proc[7], name)) return name;
  DAG found = lookupDeclaredName(name, proc);
  if (found != name) return found;
  if (isReserved(name)) return DAG();
  // Found further out, the name is captured by every level in between on the way back.
  DAG outer = searchEnclosingScopes(scope->link, name);
  if (!outer || outer == name) return outer;
  return addLexicalPair(proc, name, outer);
}

void ScopeVariables(DAG x, DAG proc) {
  if (!x || isImmediate(x)) return;
  Word n = lengthOf(x);
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case COMPLEX: case STRING:
    case LOCAL: case PARAM: case LEXICAL: case TABLE: case RTABLE: case MODDEF:
    case MODULE: case HASH: case HASHTAB:
      return;
    case PROC: {
      // The names of an inner procedure are settled when it is simplified itself, but for the types of
      // its parameters, which belong to this scope.
      if (isSimplified(x)) return;
      DAG parameters = x[1];
      for (Word i = 1; i < lengthOf(parameters); ++i)
        if (isTag(parameters[i], DCOLON)) ScopeVariables(parameters[i][2], proc);
      return;
    }
    case NAME: {
      if (hasMember(proc[7], x) || isEnvironmentName(x)) return;
      if (lookupDeclaredName(x, proc) != x || isReserved(x)) return;
      DAG found = searchEnclosingScopes(procSimplStack, x);
      if (found && found != x) addLexicalPair(proc, x, found);
      return;
    }
    case MEMBER: return ScopeVariables(x[1], proc);
    case FUNCTION:
      ScopeVariables(x[2], proc);
      ScopeVariables(x[1], proc);
      return;
    case SERIES:
      ScopeVariables(x[1], proc);
      for (Word i = 2; i < n; i += 2) ScopeVariables(x[i], proc);
      return;
    case USE: {
      DAG bindings = asSequence(x[1]);
      for (Word i = 1; i < lengthOf(bindings); ++i)
        ScopeVariables(isTag(bindings[i], EQUATION) ? bindings[i][2] : bindings[i], proc);
      ScopeVariables(x[2], proc);
      return;
    }
    default:
      checkStack();
      for (Word i = 1; i < n; ++i) ScopeVariables(x[i], proc);
  }
}

namespace {

void implicitLocal(DAG name, DAG proc, DAG nameForMessages, DAG bindings) {
  if (!isTag(name, NAME)) return;
  if (replacementOf(name, bindings) || hasMember(proc[7], name) || lookupDeclaredName(name, proc) != name) return;
  if (isEnvironmentName(name)) return;
  if (searchEnclosingScopes(procSimplStack, name)) return;
  DAG kind = strinstall(hasTag(proc, PROC) ? "procedure" : "module");
  if (nameForMessages)
    KernelWarning(2, "`%1` is implicitly declared local to %2 `%3`", name, kind, nameForMessages);
  else
    KernelWarning(2, "`%1` is implicitly declared local to %2", name, kind);
  DAG old = proc[2];
  Word n = lengthOf(old);
  DAG locals = newl2(n + 1, EXPSEQ);
  for (Word i = 1; i < n; ++i) locals[i] = old[i];
  locals[n] = name;
  proc[2] = locals;
}

void assignedTarget(DAG target, DAG proc, DAG nameForMessages, DAG bindings) {
  if (isTag(target, EXPSEQ)) {
    for (Word i = 1; i < lengthOf(target); ++i)
      assignedTarget(target[i], proc, nameForMessages, bindings);
    return;
  }
  while (isTag(target, DCOLON) || isTag(target, TABLEREF)) target = target[1];
  implicitLocal(target, proc, nameForMessages, bindings);
}

// Equations for the names that a `use` binds, in front of those in force. Only their left sides count.
DAG joinBindings(DAG list, DAG outer) {
  DAG names = boundNames(list);
  DAG joined = newl2(lengthOf(names) + lengthOf(outer) - 1, EXPSEQ);
  Word at = 1;
  for (Word i = 1; i < lengthOf(names); ++i) joined[at++] = new3(EQUATION, names[i], names[i]);
  for (Word i = 1; i < lengthOf(outer); ++i) joined[at++] = outer[i];
  return joined;
}

}  // namespace

void DetermLocals(DAG s, DAG proc, DAG nameForMessages, DAG bindings) {
  if (!s || isImmediate(s)) return;
  switch (tagOf(s)) {
    case STATSEQ: case IF: case TRY:
      checkStack();
      for (Word i = 1; i < lengthOf(s); ++i) DetermLocals(s[i], proc, nameForMessages, bindings);
      return;
    case USE: return DetermLocals(s[2], proc, nameForMessages, joinBindings(s[1], bindings));
    case MODDEF: return assignedTarget(s[9], proc, nameForMessages, bindings);
    case ASSIGN:
      assignedTarget(s[1], proc, nameForMessages, bindings);
      return DetermLocals(isTag(s[2], MODDEF) ? s[2] : DAG(), proc, nameForMessages, bindings);
    case FOR: {
      DAG variable = s[1];
      while (isTag(variable, TABLEREF)) variable = variable[1];
      implicitLocal(variable, proc, nameForMessages, bindings);
      return DetermLocals(s[lengthOf(s) - 1], proc, nameForMessages, bindings);
    }
    default: return;
  }
}

// ---- replacing names by positions

namespace {

// Names have no position of their own but by declaration; the three that tell of the call do.
DAG positionOfName(DAG x, DAG proc, DAG bindings) {
  if (DAG replacement = replacementOf(x, bindings)) return replacement;
  DAG found = lookupDeclaredName(x, proc);
  if (found != x) return found;
  if (x == ini("nargs")) return reference(PARAM, 0);
  if (x == ini("args")) return reference(PARAM, -1);
  if (x == ini("procname")) return reference(PARAM, -2);
  return x;
}

void checkNumber(DAG x, DAG proc) {
  std::int32_t n = number(x);
  switch (tagOf(x)) {
    case PARAM:
      if (n > static_cast<std::int32_t>(countOf(proc[1])) || n < -2)
        KernelException("nameless parameter in procedure or module");
      return;
    case LOCAL: {
      Word locals = countOf(proc[2]) + (hasTag(proc, MODDEF) ? countOf(proc[4]) : 0);
      if (n < 1 || n > static_cast<std::int32_t>(locals)) {
        if (hasTag(proc, MODDEF)) KernelException("nameless local variable in module");
        KernelException("nameless local variable in procedure");
      }
      return;
    }
    default:
      if (n == 0 || 2 * (n < 0 ? -n : n) >= static_cast<std::int32_t>(lengthOf(proc[8])))
        KernelException("unbound lexically scoped identifier in procedure or module");
  }
}

// Inside an inner procedure only its parameters' types and its lexical bindings belong to this one.
DAG replaceInInner(DAG x, DAG proc, DAG bindings) {
  DAG copy = CopyAlg(x);
  DAG parameters = CopyAlg(copy[1]);
  for (Word i = 1; i < lengthOf(parameters); ++i)
    if (isTag(parameters[i], DCOLON)) {
      DAG typed = CopyAlg(parameters[i]);
      typed[2] = simplfnc(typed[2], proc, bindings);
      parameters[i] = typed;
    }
  copy[1] = parameters;
  DAG table = copy[8];
  if (lengthOf(table) > 1) {
    table = CopyAlg(table);
    for (Word i = 2; i < lengthOf(table); i += 2)
      if (isTag(table[i], NAME)) table[i] = positionOfName(table[i], proc, bindings);
    copy[8] = table;
  }
  return copy;
}

}  // namespace

DAG simplfnc(DAG x, DAG proc, DAG bindings) {
  if (!x || isImmediate(x)) return x;
  ReferenceFields fields = referenceFields(x);
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case COMPLEX: case STRING:
    case TABLE: case RTABLE: case MODULE: case HASH: case HASHTAB:
      return x;
    case NAME: return positionOfName(x, proc, bindings);
    case LOCAL: case PARAM: case LEXICAL:
      checkNumber(x, proc);
      return x;
    case PROC: case MODDEF:
      if (isSimplified(x)) return x;
      return replaceInInner(x, proc, bindings);
    case MEMBER: case ZPPOLY: fields.end = 2; break;
    case USE: {
      // The statements wait for the bindings, which come before declared names (`simplUse`).
      DAG copy = CopyAlg(x);
      DAG own = isTag(x[1], EXPSEQ) ? CopyAlg(x[1]) : new2(EXPSEQ, x[1]);
      for (Word i = 1; i < lengthOf(own); ++i) {
        if (!isTag(own[i], EQUATION)) {
          // What a bound name means is settled when the list is expanded.
          if (!isTag(own[i], NAME) || !replacementOf(own[i], bindings)) own[i] = simplfnc(own[i], proc, bindings);
          continue;
        }
        DAG equation = CopyAlg(own[i]);
        equation[2] = simplfnc(equation[2], proc, bindings);
        own[i] = equation;
      }
      copy[1] = own;
      return copy;
    }
    default: break;
  }
  checkStack();
  return withFields(x, fields, [&](DAG field) { return simplfnc(field, proc, bindings); });
}

}  // namespace korel
