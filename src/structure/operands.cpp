#include "structure/operands.h"

#include "eval/arithmetic.h"
#include "eval/environment_variables.h"
#include "eval/simplify.h"
#include "structure/tables.h"
#include "frame/errors.h"
#include "numbers/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }

// What `op(0, x)` answers by tag, where one name does for all objects of the tag.
struct KindName {
  Tag tag;
  StandardName name;
};
const KindName kindNames[] = {
    // tag       op(0, x)
    {INTNEG, "Integer"},      {INTPOS, "Integer"},     {RATIONAL, "Fraction"}, {FLOAT, "Float"},
    {COMPLEX, "Complex"},     {STRING, "string"},      {NAME, "symbol"},       {DCOLON, "::"},
    {CATENATE, "||"},         {POWER, "^"},            {EQUATION, "="},        {INEQUAT, "<>"},
    {LESSEQ, "<="},           {LESSTHAN, "<"},         {AND, "and"},           {OR, "or"},
    {NOT, "not"},             {UNEVAL, "uneval"},      {ZPPOLY, "zppoly"},     {LIST, "list"},
    {SET, "set"},             {RANGE, ".."},           {PROC, "procedure"},    {MODULE, "module"},
    {MODDEF, "moduledefinition"},
};

DAG kindOf(DAG x) {
  Tag tag = tagOf(x);
  switch (tag) {
    case TABLEREF: case SERIES: case FUNCTION: return x[1];
    case SUM: return lengthOf(x) == 3 ? ini("*") : ini("+");
    case PROD: return lengthOf(x) == 3 ? ini("^") : ini("*");
    case TABLE: return x[2] == ini("false") ? ini("table") : ini("array");
    default: break;
  }
  for (const KindName& row : kindNames)
    if (row.tag == tag) return ini(row.name);
  improperSelector();
}

DAG valueOfName(DAG x) { return valuenv(x, false); }

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
  if (i == (array ? 3 : 2)) return simpl(new2(LIST, indices(x, tablePairs)));
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
    case SERIES: case PROC: return n - 2;
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
    case NAME: return valueOfName(x);
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
    case PROD:
      if (multiplication(x)) return fact(i, x);
      return x[i];
    default: return x[i];
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

DAG oplist(DAG positions, DAG x) {
  DAG list = positions[1];
  for (Word k = 1, n = lengthOf(list); k < n; ++k) {
    if (isTag(x, EXPSEQ) && lengthOf(x) == 2) x = x[1];
    DAG position = list[k];
    if (isInteger(position)) {
      std::int64_t i = LongLongValue(position);
      x = op(i, i, x);
    } else if (k + 1 < n) {
      KernelException("integer expected in op list");
    } else if (isTag(position, RANGE) && isInteger(position[1]) && isInteger(position[2])) {
      x = op(LongLongValue(position[1]), LongLongValue(position[2]), x);
    } else {
      KernelException("integer or integer range expected in op list");
    }
  }
  return x;
}

}  // namespace korel
