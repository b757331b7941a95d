// What stands for what: `evparloc`, `evalname`, and the one-level `mvalue`.

#include "eval/evaluate/evaluate.h"

#include <cstring>

#include "eval/evaluate/concatenation.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/select.h"
#include "eval/procedures/modules.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/simplify.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

std::int32_t position(DAG x) { return static_cast<std::int32_t>(rawField(x, 1)); }

// ---- formal parameters, locals, lexicals

[[noreturn]] void missingArgument(std::int32_t n, DAG declaration) {
  const Frame& frame = *Environment->frame;
  DAG name = newLocalName(textOf(declaredName(declaration)));
  if (isTag(declaration, DCOLON))
    KernelException("%1 uses a %-2 argument, %3 (of type %4), which is missing", frame.procName, immediate(n),
                    simpl(name), declaration[2]);
  KernelException("%1 uses a %-2 argument, %3, which is missing", frame.procName, immediate(n), simpl(name));
}

DAG parameterValue(std::int32_t n) {
  Frame& frame = *Environment->frame;
  if (n == 0) return Newint(static_cast<std::int32_t>(lengthOf(frame.args)) - 1);
  // As one object the arguments are unique, as every value is; until asked for they need not be.
  if (n == -1) return frame.args = simpl(frame.args);
  if (n == -2) return frame.procName;
  if (n < static_cast<std::int32_t>(lengthOf(frame.args))) return frame.args[n];
  DAG declarations = isDefinition(frame.proc) ? paramsOf(frame.proc) : null;
  if (n < static_cast<std::int32_t>(lengthOf(declarations))) missingArgument(n, declarations[n]);
  KernelException("illegal use of a formal parameter");
}

DAG localEntry(DAG x) {
  const Frame& frame = *Environment->frame;
  std::int32_t n = position(x);
  if (n < 1 || n >= static_cast<std::int32_t>(lengthOf(frame.locals)))
    KernelException("illegal use of a formal parameter");
  return frame.locals[n];
}

DAG lexicalEntry(DAG x) {
  const Frame& frame = *Environment->frame;
  std::int32_t n = position(x);
  Word at = 2 * static_cast<Word>(n < 0 ? -n : n);
  if (frame.proc == null || at >= lengthOf(lexicalsOf(frame.proc)))
    KernelException("illegal use of a formal parameter");
  return lexicalsOf(frame.proc)[at];
}

// What was quoted is mostly a value, an operand on its way through `map`, without anything to be looked up.
// A walk over it would meet shared parts again and again: behind the first objects, parts are searched, which
// enters a shared part once, and walked only where there is something.
constexpr std::int64_t fewObjects = 100, unlimited = INT64_MAX;
std::int64_t objectsBeforeSearch = unlimited;

DAG substituteFields(DAG x) {
  passWork(objectSteps);
  return withFields(x, 1, 1, evparloc);
}

// A closure captures the frame: each binding that refers to it is replaced by what it stands for.
DAG bindLexicals(DAG x, DAG original) {
  DAG table = lexicalsOf(x);
  DAG bound = withFields(table, 2, 2, [](DAG binding) {
    return isAmong(binding, frameReferenceTags) ? simpl(TypedLocal(binding)) : binding;
  });
  if (bound == table) return x;
  if (x == original) x = CopyAlg(x);
  lexicalsOf(x) = simpl(bound);
  // A bound closure keeps the final form of the procedure it was copied from.
  if (isSimplified(original)) setSimplified(x);
  return x;
}

// What the type of a parameter may be made of.
constexpr TagSet typeTags = (binaryTags - TagSet{CATENATE}) | TagSet{TABLEREF, PROD, FUNCTION, NOT, EXPSEQ, LIST, SET};

// A type with the values that the frame's variables have in it; it is no expression to be evaluated.
DAG bindType(DAG x) {
  if (isImmediate(x) || hasTag(x, NAME)) return x;
  if (isAmong(x, frameReferenceTags)) return simpl(eval(x));
  if (!isAmong(x, typeTags)) return evparloc(x);
  checkStack();
  return withFields(x, 1, 1, bindType);
}

// Types of parameters, where they aren't mere names, are told in terms of the frame that makes the closure.
DAG bindParameterTypes(DAG x, DAG original) {
  DAG declarations = paramsOf(original);
  DAG bound = withFields(declarations, 1, 1, [](DAG declaration) {
    if (!isTag(declaration, DCOLON)) return declaration;
    DAG type = bindType(declaration[2]);
    return type == declaration[2] ? declaration : simpl(new3(DCOLON, declaration[1], simpl(type)));
  });
  if (bound == declarations) return x;
  if (x == original) x = CopyAlg(x);
  paramsOf(x) = simpl(bound);
  if (isSimplified(original)) setSimplified(x);
  return x;
}

// `original` with its first field evaluated as `evparloc` does, in `x`, a copy or the original itself.
DAG substituteFirst(DAG x, DAG original) {
  DAG first = evparloc(original[1]);
  if (first == original[1]) return x;
  if (x == original) x = CopyAlg(x);
  x[1] = first;
  return x;
}

DAG substituteInModule(DAG x) {
  DAG name = evparloc(x[moddefName]);
  DAG copy = x;
  if (name != x[moddefName]) {
    copy = CopyAlg(x);
    copy[moddefName] = name;
  }
  return bindLexicals(copy, x);
}

}  // namespace

DAG evparloc(DAG x) {
  if (isImmediate(x)) return x;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case COMPLEX: case STRING: case TABLE:
    case RTABLE: case MODULE: case BREAK: case NEXT: case STOP:
      return x;
    case NAME:
      if (x == ini("%") || x == ini("%%") || x == ini("%%%")) return valuenv(x, false);
      return x;
    case MEMBER: return evalname(x);
    case SERIES: return withReferences(x, evparloc);
    case ZPPOLY: return substituteFirst(x, x);
    case LOCAL: return declaredName(localEntry(x));
    case PARAM: return parameterValue(position(x));
    case LEXICAL: return declaredName(lexicalEntry(x));
    case PROC: return bindParameterTypes(bindLexicals(x, x), x);
    case MODDEF: return substituteInModule(x);
    default:
      checkStack();
      if (--objectsBeforeSearch < 0 && isSimplified(x) && !refersToFrame(x)) return x;
      return substituteFields(x);
  }
}

DAG unquoted(DAG x) {
  if (isImmediate(x)) return x;
  objectsBeforeSearch = fewObjects;
  DAG value = evparloc(x);
  objectsBeforeSearch = unlimited;
  return value;
}

DAG TypedLocal(DAG x) {
  if (optASSERT < 2) return evparloc(x);
  if (isTag(x, LOCAL)) return localEntry(x);
  if (isTag(x, LEXICAL)) return lexicalEntry(x);
  return evparloc(x);
}

namespace {

DAG moduleMember(DAG x) {
  if (x[1] == null) return x[2];
  DAG lastName;
  DAG module = simpl(eval(x[1], &lastName));
  if (isTag(module, NAME)) module = mvalue(module);
  if (!isTag(module, MODULE)) KernelException("`%1` does not evaluate to a module", evparloc(x[1]));
  return MemberInstance(module, x[2]);
}

// A reference or call whose base is a name and whose index is a value.
DAG evalReferenceName(DAG x) {
  checkStack();
  DAG base = evalname(x[1]);
  return simpl(withParts(x, base, simpl(eval(x[2]))));
}

DAG evalNames(DAG x) {
  DAG result = x;
  for (Word i = 1; i < lengthOf(x); ++i) {
    DAG name = evalname(x[i]);
    if (name == x[i]) continue;
    if (result == x) result = CopyAlg(x);
    result[i] = name;
  }
  return simpl(result);
}

}  // namespace

DAG TypedName(DAG x) {
  if (optASSERT == 2 && isTag(x, MEMBER)) return moduleMember(x);
  return evalname(x);
}

DAG evalname(DAG x) {
  bool parameter = false;
  for (;;) switch (tagOf(x)) {
      case STRING: case NAME: case TABLE: case RTABLE: return x;
      case LOCAL: case PARAM: case LEXICAL:
        parameter = parameter || hasTag(x, PARAM) || (hasTag(x, LEXICAL) && position(x) < 0);
        x = evparloc(x);
        continue;
      case DCOLON: x = x[1]; continue;
      case MEMBER: return declaredName(moduleMember(x));
      case TABLEREF: case FUNCTION: return evalReferenceName(x);
      case CATENATE: checkStack(); return concatenate(evalname(x[1]), simpl(eval(x[2])));
      case EXPSEQ: return evalNames(x);
      default:
        if (parameter) KernelException("illegal use of a formal parameter");
        KernelException("illegal use of an object as a name");
    }
}

// ---- one level

namespace {

constexpr TagSet constantTags = realTags | TagSet{STRING};
constexpr TagSet oneLevelInside =
    (binaryTags - TagSet{DCOLON, CATENATE}) | pairTags | TagSet{COMPLEX, NOT, EXPSEQ, LIST, SET};

}  // namespace

DAG mvalue(DAG x) {
  if (isImmediate(x) || isAmong(x, constantTags)) return x;
  if (isAmong(x, oneLevelInside)) {
    checkStack();
    passWork(objectSteps);
    return withFields(x, 1, 1, mvalue);
  }
  switch (tagOf(x)) {
    case NAME: return valuenv(x, false);
    case MEMBER: {
      DAG name = evalname(x);
      return isTag(name, NAME) ? valuenv(name, false) : name;
    }
    case TABLEREF: return selectStored(x);
    case DCOLON: return mvalue(x[1]);
    case UNEVAL: return evparloc(x[1]);
    case LOCAL: return mvalue(evparloc(x));
    case PARAM: return evparloc(x);
    case LEXICAL: return position(x) > 0 ? mvalue(evparloc(x)) : evparloc(x);
    default: return evparloc(x);
  }
}

}  // namespace korel
