#include "eval/procedures/scoping.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/bindings.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

ProcedureRecord* procSimplStack = nullptr;

namespace {

// Objects in which no name is sought.
constexpr TagSet nameless = numberTags | TagSet{STRING, TABLE, RTABLE, MODULE, HASH, HASHTAB};

std::int32_t number(DAG x) { return static_cast<std::int32_t>(rawField(x, 1)); }
DAG reference(Tag tag, std::int32_t n) { return new2(tag, DAG(static_cast<Word>(n))); }

// A raw definition holds its locals in a LIST.
DAG sequenceOf(DAG declarations) { return isTag(declarations, LIST) ? declarations[1] : declarations; }

// Position of `name` in a sequence of declarations, or 0.
Word positionOf(DAG declarations, DAG name) {
  declarations = sequenceOf(declarations);
  for (Word i = 1; i < lengthOf(declarations); ++i)
    if (declaredName(declarations[i]) == name) return i;
  return 0;
}

Word countOf(DAG declarations) { return memberCount(sequenceOf(declarations)); }

// A lexical reference is negative when what it captures is a parameter.
bool capturesParameter(DAG binding) {
  return isTag(binding, PARAM) || (isTag(binding, LEXICAL) && number(binding) < 0);
}

Word lexicalPair(DAG proc, DAG name) {
  DAG table = lexicalsOf(proc);
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

// The LEXICAL for pair `k`, which holds `binding`.
DAG lexicalReference(Word k, DAG binding) {
  auto n = static_cast<std::int32_t>(k);
  return reference(LEXICAL, capturesParameter(binding) ? -n : n);
}

// The place among the arguments of a name that tells of the call, or 1.
std::int32_t placeOfCallName(DAG name) {
  return name == ini("nargs") ? 0 : name == ini("args") ? -1 : name == ini("procname") ? -2 : 1;
}
bool isReserved(DAG name) { return placeOfCallName(name) < 1; }

}  // namespace

DAG lookupDeclaredName(DAG name, DAG proc) {
  if (Word i = positionOf(paramsOf(proc), name)) return reference(PARAM, static_cast<std::int32_t>(i));
  if (Word i = positionOf(localsOf(proc), name)) return reference(LOCAL, static_cast<std::int32_t>(i));
  if (hasTag(proc, MODDEF))
    if (Word i = positionOf(exportsOf(proc), name))
      return reference(LOCAL, static_cast<std::int32_t>(countOf(localsOf(proc)) + i));
  if (Word k = lexicalPair(proc, name)) return lexicalReference(k, lexicalsOf(proc)[2 * k]);
  if (hasTag(proc, MODDEF) && name == ini("thismodule")) return reference(PARAM, 1);
  return name;
}

bool isDeclaredIn(DAG proc, DAG name) {
  return isMember(name, globalsOf(proc)) || lookupDeclaredName(name, proc) != name;
}

DAG addLexicalPair(DAG proc, DAG name, DAG binding) {
  DAG old = lexicalsOf(proc);
  Word n = lengthOf(old);
  DAG table = space_insert(old, n - 1, 2);
  table[n] = name;
  table[n + 1] = binding;
  lexicalsOf(proc) = table;
  return lexicalReference((n + 1) / 2, binding);
}

DAG lexicalFor(DAG proc, DAG name, DAG binding) {
  DAG table = lexicalsOf(proc);
  for (Word i = 2; i < lengthOf(table); i += 2)
    if (tagOf(table[i]) == tagOf(binding) && number(table[i]) == number(binding))
      return lexicalReference(i / 2, binding);
  return addLexicalPair(proc, name, binding);
}

namespace {

// The reference for `name` in the scopes from `scope` on, the name itself when it is global there, or 0.
DAG searchEnclosingScopes(ProcedureRecord* scope, DAG name) {
  if (scope == nullptr) return DAG();
  DAG proc = scope->procedure;
  if (isMember(name, globalsOf(proc))) return name;
  DAG found = lookupDeclaredName(name, proc);
  if (found != name) return found;
  if (isReserved(name)) return DAG();
  // Found further out, the name is captured by every level in between on the way back.
  DAG outer = searchEnclosingScopes(scope->link, name);
  if (!outer || outer == name) return outer;
  return addLexicalPair(proc, name, outer);
}

}  // namespace

void ScopeVariables(DAG x, DAG proc) {
  if (!x || isImmediate(x) || isAmong(x, nameless | frameReferenceTags)) return;
  Word n = lengthOf(x);
  switch (tagOf(x)) {
    case MODDEF:
      // The name of an inner module is a variable of this scope.
      if (!isSimplified(x)) ScopeVariables(x[moddefName], proc);
      return;
    case PROC: {
      // The names of an inner procedure are settled when it is simplified itself, but for the types of
      // its parameters, which belong to this scope.
      if (isSimplified(x)) return;
      DAG parameters = paramsOf(x);
      for (Word i = 1; i < lengthOf(parameters); ++i)
        if (isTag(parameters[i], DCOLON)) ScopeVariables(parameters[i][2], proc);
      return;
    }
    case NAME: {
      if (isEnvironmentName(x) || isDeclaredIn(proc, x) || isReserved(x)) return;
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
  if (!isName(name) || replacementOf(name, bindings)) return;
  if (isDeclaredIn(proc, name) || isEnvironmentName(name)) return;
  if (searchEnclosingScopes(procSimplStack, name)) return;
  DAG kind = strinstall(hasTag(proc, PROC) ? "procedure" : "module");
  if (nameForMessages) KernelWarning(2, "`%1` is implicitly declared local to %2 `%3`", name, kind, nameForMessages);
  else KernelWarning(2, "`%1` is implicitly declared local to %2", name, kind);
  DAG& locals = localsOf(proc);
  Word n = lengthOf(locals);
  locals = space_insert(locals, n - 1, 1);
  locals[n] = name;
}

void assignedTarget(DAG target, DAG proc, DAG nameForMessages, DAG bindings) {
  if (isTag(target, EXPSEQ)) {
    for (Word i = 1; i < lengthOf(target); ++i) assignedTarget(target[i], proc, nameForMessages, bindings);
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
    case MODDEF: return assignedTarget(s[moddefName], proc, nameForMessages, bindings);
    case ASSIGN:
      assignedTarget(s[1], proc, nameForMessages, bindings);
      return DetermLocals(isTag(s[2], MODDEF) ? s[2] : DAG(), proc, nameForMessages, bindings);
    case FOR: {
      DAG variable = s[loopVariable];
      while (isTag(variable, TABLEREF)) variable = variable[1];
      implicitLocal(variable, proc, nameForMessages, bindings);
      return DetermLocals(bodyOfLoop(s), proc, nameForMessages, bindings);
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
  return found == x && isReserved(x) ? reference(PARAM, placeOfCallName(x)) : found;
}

void checkNumber(DAG x, DAG proc) {
  const std::int32_t n = number(x);
  const bool module = hasTag(proc, MODDEF);
  auto outside = [n](std::int32_t least, Word most) { return n < least || n > static_cast<std::int32_t>(most); };
  switch (tagOf(x)) {
    case PARAM:
      if (outside(-2, countOf(paramsOf(proc)))) KernelException("nameless parameter in procedure or module");
      return;
    case LOCAL:
      if (outside(1, countOf(localsOf(proc)) + (module ? countOf(exportsOf(proc)) : 0)))
        KernelException(module ? "nameless local variable in module" : "nameless local variable in procedure");
      return;
    default:
      if (n == 0 || 2 * (n < 0 ? -n : n) >= static_cast<std::int32_t>(lengthOf(lexicalsOf(proc))))
        KernelException("unbound lexically scoped identifier in procedure or module");
  }
}

// `sequence` with `replace` applied to the right operands of its members of the tag `kind`.
template <class Replace>
DAG withRightSides(DAG sequence, Tag kind, Replace replace) {
  return withFields(sequence, 1, 1, [&](DAG member) {
    if (!hasTag(member, kind)) return member;
    DAG right = replace(member[2]);
    return right == member[2] ? member : new3(kind, member[1], right);
  });
}

// Of an inner procedure its parameters' types and its lexical bindings belong to this one, of an inner module
// also the name that it is assigned to.
DAG replaceInInner(DAG x, DAG proc, DAG bindings) {
  auto replace = [&](DAG part) { return simplfnc(part, proc, bindings); };
  DAG copy = CopyAlg(x);
  paramsOf(copy) = withRightSides(paramsOf(x), DCOLON, replace);
  lexicalsOf(copy) = withFields(lexicalsOf(x), 2, 2, [&](DAG binding) {
    return isName(binding) ? positionOfName(binding, proc, bindings) : binding;
  });
  if (hasTag(x, MODDEF)) copy[moddefName] = replace(x[moddefName]);
  return copy;
}

}  // namespace

DAG simplfnc(DAG x, DAG proc, DAG bindings) {
  if (!x || isImmediate(x)) return x;
  ReferenceFields fields = referenceFields(x);
  Tag tag = tagOf(x);
  if (nameless.contains(tag)) return x;
  switch (tag) {
    case NAME: return positionOfName(x, proc, bindings);
    case LOCAL: case PARAM: case LEXICAL: checkNumber(x, proc); return x;
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
