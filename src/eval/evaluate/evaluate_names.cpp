// What stands for what: `evparloc`, `evalname`, the one-level `mvalue`, and concatenation.

#include <cstring>

#include "numbers/arithmetic.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/procedures.h"
#include "eval/evaluate/select.h"
#include "eval/simplify/simplify.h"
#include "session/driver.h"
#include "frame/errors.h"
#include "frame/long_operation.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/names.h"
#include "store/objects.h"
#include "eval/walk/has.h"
#include "store/long_string.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

std::int32_t position(DAG x) { return static_cast<std::int32_t>(rawField(x, 1)); }

// ---- formal parameters, locals, lexicals

[[noreturn]] void missingArgument(std::int32_t n, DAG declaration) {
  const Frame& frame = *Environment->frame;
  DAG name = newLocalName(textOf(declaredName(declaration)));
  if (isTag(declaration, DCOLON))
    KernelException("%1 uses a %-2 argument, %3 (of type %4), which is missing", frame.procName,
                    immediate(n), simpl(name), declaration[2]);
  KernelException("%1 uses a %-2 argument, %3, which is missing", frame.procName, immediate(n),
                  simpl(name));
}

DAG parameterValue(std::int32_t n) {
  Frame& frame = *Environment->frame;
  if (n == 0) return Newint(static_cast<std::int32_t>(lengthOf(frame.args)) - 1);
  // As one object the arguments are unique, as every value is; until asked for they need not be.
  if (n == -1) return frame.args = simpl(frame.args);
  if (n == -2) return frame.procName;
  if (n < static_cast<std::int32_t>(lengthOf(frame.args))) return frame.args[n];
  DAG declarations = isTag(frame.proc, PROC) || isTag(frame.proc, MODDEF) ? frame.proc[1] : null;
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
  if (frame.proc == null || at >= lengthOf(frame.proc[8]))
    KernelException("illegal use of a formal parameter");
  return frame.proc[8][at];
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
  DAG table = x[8];
  DAG bound = table;
  for (Word i = 2; i < lengthOf(table); i += 2) {
    DAG binding = table[i];
    if (!isTag(binding, LOCAL) && !isTag(binding, PARAM) && !isTag(binding, LEXICAL)) continue;
    if (bound == table) {
      bound = CopyAlg(table);
      if (x == original) x = CopyAlg(x);
    }
    bound[i] = simpl(TypedLocal(binding));
  }
  if (bound == table) return x;
  x[8] = simpl(bound);
  // A bound closure keeps the final form of the procedure it was copied from.
  if (isSimplified(original)) setSimplified(x);
  return x;
}

// A type with the values that the frame's variables have in it; it is no expression to be evaluated.
DAG bindType(DAG x) {
  if (isImmediate(x) || hasTag(x, NAME)) return x;
  if (hasTag(x, LOCAL) || hasTag(x, PARAM) || hasTag(x, LEXICAL)) return simpl(eval(x));
  switch (tagOf(x)) {
    case TABLEREF: case DCOLON: case POWER: case PROD: case FUNCTION: case EQUATION: case INEQUAT: case LESSEQ:
    case LESSTHAN: case AND: case NOT: case OR: case EXPSEQ: case LIST: case RANGE: case SET: break;
    default: return evparloc(x);
  }
  checkStack();
  return withFields(x, 1, 1, bindType);
}

// Types of parameters, where they aren't mere names, are told in terms of the frame that makes the closure.
DAG bindParameterTypes(DAG x, DAG original) {
  DAG declarations = original[1];
  for (Word i = 1, n = lengthOf(declarations); i < n; ++i) {
    DAG declaration = declarations[i];
    if (!isTag(declaration, DCOLON) || isImmediate(declaration[2]) || hasTag(declaration[2], NAME)) continue;
    DAG type = bindType(declaration[2]);
    if (type == declaration[2]) continue;
    if (x == original) x = CopyAlg(x);
    if (x[1] == declarations) x[1] = CopyAlg(declarations);
    x[1][i] = simpl(new3(DCOLON, declaration[1], simpl(type)));
  }
  if (x == original) return x;
  x[1] = simpl(x[1]);
  if (isSimplified(original)) setSimplified(x);
  return x;
}

}  // namespace

DAG evparloc(DAG x) {
  if (isImmediate(x)) return x;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case COMPLEX: case STRING:
    case TABLE: case RTABLE: case MODULE: case BREAK: case NEXT: case STOP:
      return x;
    case NAME:
      if (x == ini("%") || x == ini("%%") || x == ini("%%%")) return valuenv(x, false);
      return x;
    case MEMBER:
      return evalname(x);
    case SERIES: return withReferences(x, evparloc);
    case ZPPOLY: {
      DAG point = evparloc(x[1]);
      if (point == x[1]) return x;
      DAG result = CopyAlg(x);
      result[1] = point;
      return result;
    }
    case LOCAL: return declaredName(localEntry(x));
    case PARAM: return parameterValue(position(x));
    case LEXICAL: return declaredName(lexicalEntry(x));
    case PROC: return bindParameterTypes(bindLexicals(x, x), x);
    case MODDEF: {
      DAG name = evparloc(x[9]);
      DAG copy = x;
      if (name != x[9]) {
        copy = CopyAlg(x);
        copy[9] = name;
      }
      return bindLexicals(copy, x);
    }
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

}  // namespace

DAG TypedName(DAG x) {
  if (optASSERT == 2 && isTag(x, MEMBER)) return moduleMember(x);
  return evalname(x);
}

DAG evalname(DAG x) {
  bool parameter = false;
  for (;;) {
    if (!isImmediate(x)) switch (tagOf(x)) {
        case STRING: case NAME: case TABLE: case RTABLE:
          return x;
        case LOCAL:
          x = evparloc(x);
          continue;
        case PARAM:
          x = evparloc(x);
          parameter = true;
          continue;
        case LEXICAL:
          if (position(x) < 0) parameter = true;
          x = evparloc(x);
          continue;
        case DCOLON:
          x = x[1];
          continue;
        case MEMBER:
          return declaredName(moduleMember(x));
        case TABLEREF: case FUNCTION: {
          checkStack();
          DAG base = evalname(x[1]);
          DAG index = simpl(eval(x[2]));
          if (base == x[1] && index == x[2]) return simpl(x);
          DAG rebuilt = CopyAlg(x);
          rebuilt[1] = base;
          rebuilt[2] = index;
          return simpl(rebuilt);
        }
        case CATENATE:
          checkStack();
          return concatenate(evalname(x[1]), simpl(eval(x[2])));
        case EXPSEQ: {
          return simpl(withFields(x, 1, 1, [](DAG field) { return evalname(field); }));
        }
        default:
          break;
      }
    if (parameter) KernelException("illegal use of a formal parameter");
    KernelException("illegal use of an object as a name");
  }
}

// ---- one level

DAG mvalue(DAG x) {
  if (isImmediate(x)) return x;
  Tag tag = tagOf(x);
  if (tag <= STRING && tag != HFLOAT && tag != COMPLEX) return x;
  switch (tag) {
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
    case HFLOAT: return x;
    case POWER: case PROD: case SUM: case EXPSEQ: case LIST: case SET: case COMPLEX: case EQUATION:
    case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case OR: case NOT: case RANGE: {
      checkStack();
      passWork(objectSteps);
      return withFields(x, 1, 1, mvalue);
    }
    default: return evparloc(x);
  }
}

// ---- concatenation

namespace {


DAG joinText(DAG left, const char* tail) {
  char* text = AppendStringToString(AppendStringToString(NewLongString(), textOf(left)), tail);
  return hasTag(left, STRING) ? StringToMString(text) : StringToName(text);
}

// Appends the text of a string, name or integer; null when fewer than `room` characters are left for it.
char* appendPart(char* end, std::ptrdiff_t room, DAG part) {
  constexpr std::ptrdiff_t longestImmediate = 12;
  if (isImmediate(part)) return room > longestImmediate ? writeDecimal(part, end) : nullptr;
  if (isInteger(part)) return SoftIntLength(part) + 1 < room ? writeDecimal(part, end) : nullptr;
  auto size = static_cast<std::ptrdiff_t>(std::strlen(textOf(part)));
  if (size >= room) return nullptr;
  std::memcpy(end, textOf(part), static_cast<std::size_t>(size));
  return end + size;
}

// The text of `count` strings, names or integers in a row.
DAG joinParts(const DAG* parts, Word count, Tag tag) {
  // Most texts fit into a buffer on the stack.
  char brief[256];
  char* end = brief;
  for (Word i = 0; i < count && end != nullptr; ++i)
    end = appendPart(end, brief + sizeof brief - end, parts[i]);
  if (end != nullptr) {
    *end = '\0';
    return strnaminstall(brief, tag);
  }
  char* text = NewLongString();
  for (Word i = 0; i < count; ++i)
    text = AppendStringToString(text, textOf(isInteger(parts[i]) ? KorelIntToStr(parts[i]) : parts[i]));
  return tag == STRING ? StringToMString(text) : StringToName(text);
}

DAG joinOne(DAG left, DAG x) {
  const DAG parts[2] = {left, x};
  return joinParts(parts, 2, hasTag(left, STRING) ? STRING : NAME);
}

DAG joinRange(DAG left, DAG from, DAG to) {
  if (isInteger(from) && isInteger(to)) {
    DAG span = add(to, negate(from));
    if (consneg(span)) return null;
    if (!isImmediate(span) || immediateValue(span) >= static_cast<std::int32_t>(maxLength) - 1)
      KernelException("object too large");
    Word count = static_cast<Word>(immediateValue(span)) + 1;
    DAG sequence = newl2(count + 1, EXPSEQ);
    DAG k = from;
    for (Word i = 1; i <= count; ++i, k = increment(k)) {
      passWork(objectSteps);
      sequence[i] = joinOne(left, k);
    }
    return simpl(sequence);
  }
  if (isCharacter(from) && isCharacter(to)) {
    int lo = static_cast<unsigned char>(textOf(from)[0]), hi = static_cast<unsigned char>(textOf(to)[0]);
    if (hi < lo) return null;
    DAG sequence = newl2(static_cast<Word>(hi - lo + 2), EXPSEQ);
    for (int c = lo; c <= hi; ++c) {
      char tail[2] = {static_cast<char>(c), 0};
      sequence[c - lo + 1] = joinText(left, tail);
    }
    return simpl(sequence);
  }
  auto isConstant = [](DAG x) { return isNumeric(x) || hasTag(x, COMPLEX) || hasTag(x, STRING); };
  if (isConstant(from) && isConstant(to))
    KernelException("range values must be integers or characters");
  return DAG();
}

bool canJoin(DAG x) { return isText(x) || isInteger(x); }

}  // namespace

DAG concatenate(DAG left, DAG right) {
  if (isTag(left, EXPSEQ)) {
    DAG sequence = CopyAlg(left);
    for (Word i = 1; i < lengthOf(left); ++i) sequence[i] = concatenate(left[i], right);
    return simpl(sequence);
  }
  if (isText(left) && canJoin(right)) return joinOne(left, right);
  DAG unjoined = simpl(new3(CATENATE, left, right));
  if (!isText(left)) return unjoined;
  if (isTag(right, RANGE)) {
    if (right[1] == right[2]) return concatenate(left, right[1]);
    DAG joined = joinRange(left, right[1], right[2]);
    return joined ? joined : unjoined;
  }
  if (isTag(right, EXPSEQ)) {
    for (Word i = 1; i < lengthOf(right); ++i)
      if (!canJoin(right[i])) return unjoined;
    DAG sequence = CopyAlg(right);
    for (Word i = 1; i < lengthOf(right); ++i) sequence[i] = joinOne(left, right[i]);
    return simpl(sequence);
  }
  if (isTag(right, TABLEREF) && (isTag(right[1], NAME) || isTag(right[1], TABLEREF))) {
    DAG moved = CopyAlg(right);
    moved[1] = concatenate(left, right[1]);
    return simpl(moved);
  }
  return unjoined;
}

DAG korelCat(DAG parts) {
  const Word count = lengthOf(parts) - 1;
  return joinParts(&parts[1], count, count > 0 && hasTag(parts[1], STRING) ? STRING : NAME);
}

}  // namespace korel
