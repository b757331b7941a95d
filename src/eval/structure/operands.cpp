#include "eval/structure/operands.h"

#include "numbers/arithmetic.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/tag_facts.h"
#include "eval/tables/tables.h"

namespace korel {

namespace {


DAG kindOf(DAG x) {
  Tag tag = tagOf(x);
  switch (tag) {
    case TABLEREF: case SERIES: case FUNCTION: return x[1];
    case SUM: return lengthOf(x) == 3 ? ini("*") : ini("+");
    case PROD: return lengthOf(x) == 3 ? ini("^") : ini("*");
    case TABLE: return x[2] == ini("false") ? ini("table") : ini("array");
    case RTABLE: rtableNotAvailable("op");
    default: break;
  }
  const char* head = factsOf(tag).head;
  if (head[0] == 0) improperSelector();
  return naminstall(head);
}

// A word of an object whose words may be raw: a raw one is shown as the integer it holds.
DAG wordAt(std::int64_t i, DAG x) {
  ReferenceFields fields = referenceFields(x);
  auto k = static_cast<Word>(i);
  if (k == fields.extra || (k >= fields.first && k < fields.end && (k - fields.first) % fields.step == 0))
    return x[i] ? x[i] : null;
  return simpl(NewInteger(static_cast<std::int32_t>(rawField(x, i))));
}

DAG procedureField(std::int64_t i, DAG x) {
  if (i <= 3) return x[i];
  if (i == 4) {
    if (x[4] == null) return null;
    return simpl(new4(TABLE, null, ini("false"), x[4]));
  }
  return x[i + 1];
}

DAG tableOperand(std::int64_t i, DAG x) {
  bool array = x[2] != ini("false");
  if (i == 1) return x[1];
  if (i == (array ? 3 : 2)) return simpl(new2(LIST, indices(x, Listing::pairs)));
  return x[i];
}

}  // namespace

void improperSelector() { KernelException("improper op or subscript selector"); }

bool addition(DAG x) { return isTag(x, SUM) && lengthOf(x) >= 5; }
bool multiplication(DAG x) {
  return (isTag(x, SUM) && lengthOf(x) == 3) || (isTag(x, PROD) && lengthOf(x) >= 5);
}

DAG mterm(std::int64_t i, DAG x) {
  if (!addition(x)) return x;
  DAG term = x[2 * i - 1], coefficient = x[2 * i];
  if (coefficient == cons1) return term;
  return isNumeric(term) ? simpl(mul(term, coefficient)) : simpl(new3(SUM, term, coefficient));
}

DAG fact(std::int64_t i, DAG x) {
  if (isTag(x, SUM)) {
    if (i == 1) return x[2];
    return multiplication(x[1]) ? fact(i - 1, x[1]) : x[1];
  }
  DAG base = x[2 * i - 1], exponent = x[2 * i];
  return exponent == cons1 ? base : simpl(new3(PROD, base, exponent));
}

std::int64_t numterms(DAG x) {
  if (isImmediate(x)) return 1;
  Word n = lengthOf(x);
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case STRING: case NAME: return 1;
    case LIST: case SET: return lengthOf(x[1]) - 1;
    case TABLEREF: case FUNCTION: return lengthOf(x[2]) - 1;
    case TABLE: return x[2] == ini("false") ? 2 : 3;
    case ZPPOLY: return n - 3;
    // The body of a procedure or module is no operand.
    case SERIES: case PROC: case MODDEF: return n - 2;
    case RTABLE: rtableNotAvailable("nops");
    case SUM:
      if (n >= 5) return (n - 1) / 2;
      return multiplication(x[1]) ? numterms(x[1]) + 1 : 2;
    case PROD: return n >= 5 ? (n - 1) / 2 : 2;
    default: return n - 1;
  }
}

DAG op1(std::int64_t i, DAG x) {
  if (i == 0) return kindOf(x);
  if (isImmediate(x)) return x;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case STRING: return x;
    case NAME: return valuenv(x, false);
    case LOCAL: case PARAM: case LEXICAL:
      KernelException("cannot take op of an unevaluated local object");
    case MEMBER: improperSelector();
    case LIST: case SET: return x[1][i];
    case TABLEREF: case FUNCTION: return x[2][i];
    case PROC: return procedureField(i, x);
    case MODDEF: return i <= 4 ? x[i] : x[i + 1];
    case TABLE: return tableOperand(i, x);
    case SERIES:
      return (i & 1) != 0 ? x[i + 1] : Newint(static_cast<std::int32_t>(rawField(x, i + 1)));
    case SUM: return addition(x) ? mterm(i, x) : fact(i, x);
    case PROD: return multiplication(x) ? fact(i, x) : x[i];
    case ZPPOLY:
      return hasRawCoefficients(x) ? Newint(static_cast<std::int32_t>(rawField(x, i + 2))) : x[i + 2];
    case RTABLE: rtableNotAvailable("op");
    case RATIONAL: case FLOAT: case COMPLEX: case DCOLON: case CATENATE: case POWER: case UNEVAL:
    case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT: case OR: case EXPSEQ:
    case RANGE:
      return x[i];
    default: return wordAt(i, x);
  }
}

DAG op(std::int64_t i, std::int64_t j, DAG x) {
  std::int64_t n = numterms(x);
  if (i < 0) i += n + 1;
  if (j < 0) j += n + 1;
  if (j > n || i < 0 || i > j + 1) improperSelector();
  if (i == j + 1) return null;
  if (i == j) return op1(i, x);
  if (i == 1 && j == n && !isImmediate(x)) switch (tagOf(x)) {
      case LIST: case SET: return x[1];
      case FUNCTION: case TABLEREF: return x[2];
      default: break;
    }
  DAG sequence = newl2(static_cast<Word>(j - i + 2), EXPSEQ);
  for (std::int64_t k = i; k <= j; ++k) sequence[k - i + 1] = op1(k, x);
  return simpl(sequence);
}

std::int64_t operandPosition(DAG integer) {
  if (!FitIntoWord(integer)) improperSelector();
  return LongLongValue(integer);
}

void rtableNotAvailable(const char* operation) {
  KernelException("the operation `%1` is not available", naminstall(operation));
}

namespace {

DAG opRange(DAG range, DAG x) { return op(operandPosition(range[1]), operandPosition(range[2]), x); }
bool isIntegerRange(DAG x) { return isTag(x, RANGE) && isInteger(x[1]) && isInteger(x[2]); }

}  // namespace

DAG oplist(DAG positions, DAG x) {
  DAG list = positions[1];
  for (Word k = 1, n = lengthOf(list); k < n; ++k) {
    DAG position = list[k];
    if (isInteger(position)) {
      std::int64_t i = operandPosition(position);
      x = op(i, i, x);
    } else if (k + 1 < n) {
      KernelException("integer expected in op list");
    } else if (isIntegerRange(position)) {
      x = opRange(position, x);
    } else {
      KernelException("integer or integer range expected in op list");
    }
  }
  return x;
}

Word member(DAG sequence, DAG x) {
  if (!isTag(sequence, EXPSEQ)) return sequence == x ? 1 : 0;
  for (Word i = 1, n = lengthOf(sequence); i < n; ++i)
    if (sequence[i] == x) return i;
  return 0;
}

// ---- built-ins

DAG builtin::nops(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return simpl(NewInteger(numterms(call.arguments[1])));
}

DAG builtin::op(const BuiltinCall& call) {
  DAG args = call.arguments;
  Word n = argumentCount(call);
  if (n == 1) return korel::op(1, numterms(args[1]), args[1]);
  if (n != 2) wrongParameters(call);
  DAG position = args[1], x = args[2];
  if (isInteger(position)) {
    std::int64_t i = operandPosition(position);
    return korel::op(i, i, x);
  }
  if (isIntegerRange(position)) return opRange(position, x);
  if (isTag(position, LIST)) return oplist(position, x);
  wrongParameters(call);
}

DAG builtin::member(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n < 2 || n > 3) wrongParameters(call);
  DAG x = call.arguments[1], container = call.arguments[2];
  if (!isTag(container, LIST) && !isTag(container, SET)) return unevaluatedCall(call);
  Word position = korel::member(container[1], x);
  if (position == 0) return ini("false");
  if (n == 3) assign(evalname(call.arguments[3]), immediate(static_cast<std::int32_t>(position)));
  return ini("true");
}

}  // namespace korel
