#include "structure/types.h"

#include <cstring>

#include "eval/arithmetic.h"
#include "eval/environment_variables.h"
#include "eval/evaluate.h"
#include "structure/operands.h"
#include "eval/procedures.h"
#include "eval/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/complex.h"
#include "numbers/integer_functions.h"
#include "numbers/system_functions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }
bool isComplexNumber(DAG x) { return isTag(x, COMPLEX); }
bool isFloatNumber(DAG x) { return isTag(x, FLOAT) || isTag(x, HFLOAT); }
bool isSpecial(DAG x) { return isInfinite(x) || isUndefined(x); }
bool isFiniteReal(DAG x) { return isNumeric(x) && !isSpecial(x); }
bool zeroPart(DAG x) { return isNumeric(x) && isZero(x); }

// Value that a name or an indexed name stands for, where a type asks what is behind it.
DAG behind(DAG x) {
  if (isTag(x, TABLEREF)) x = simpl(eval(x));
  return isTag(x, NAME) ? valuenv(x, false) : x;
}

bool isPositiveReal(DAG x) { return isFiniteReal(x) ? !consneg(x) && !isZero(x) : x == ini("infinity") || x == consfinf; }
bool isNegativeReal(DAG x) { return isFiniteReal(x) ? consneg(x) && !isZero(x) : x == consminf || x == consfminf; }

// ---- the built-in names

struct TypeRow {
  StandardName name;
  bool (*matches)(DAG e);
};
const TypeRow typeRows[] = {
    // name                    e matches if
    {"anything", [](DAG) { return true; }},
    {"integer", [](DAG e) { return isInteger(e); }},
    {"posint", [](DAG e) { return isInteger(e) && !consneg(e) && !isZero(e); }},
    {"negint", [](DAG e) { return isInteger(e) && consneg(e) && !isZero(e); }},
    {"nonnegint", [](DAG e) { return isInteger(e) && (!consneg(e) || isZero(e)); }},
    {"nonposint", [](DAG e) { return isInteger(e) && (consneg(e) || isZero(e)); }},
    {"even", [](DAG e) { return isInteger(e) && !isodd(e); }},
    {"odd", [](DAG e) { return isInteger(e) && isodd(e); }},
    {"fraction", [](DAG e) { return isTag(e, RATIONAL); }},
    {"rational", [](DAG e) { return isRationalNumber(e); }},
    {"extended_rational",
     [](DAG e) { return isRationalNumber(e) || e == ini("infinity") || e == consminf || e == ini("undefined"); }},
    {"float", [](DAG e) { return isFloatNumber(e); }},
    {"sfloat", [](DAG e) { return isTag(e, FLOAT); }},
    {"numeric", [](DAG e) { return isFiniteReal(e); }},
    {"extended_numeric",
     [](DAG e) { return isNumeric(e) || (isSpecial(e) && !isComplexNumber(e)); }},
    {"positive", isPositiveReal},
    {"negative", isNegativeReal},
    {"nonnegative", [](DAG e) { return isPositiveReal(e) || zeroPart(e); }},
    {"nonpositive", [](DAG e) { return isNegativeReal(e) || zeroPart(e); }},
    {"poszero", [](DAG e) { return zeroPart(e) && e != consm0 && !(isTag(e, FLOAT) && e[1] == consm0); }},
    {"negzero", [](DAG e) { return isTag(e, FLOAT) && e[1] == consm0; }},
    {"real_infinity", [](DAG e) { return isInfinite(e) && !isComplexNumber(e); }},
    {"pos_infinity", [](DAG e) { return e == ini("infinity") || e == consfinf; }},
    {"neg_infinity", [](DAG e) { return e == consminf || e == consfminf; }},
    {"infinity", [](DAG e) { return isInfinite(e); }},
    {"cx_infinity", [](DAG e) { return isComplexNumber(e) && isInfinite(e); }},
    {"cx_zero", [](DAG e) { return isComplexNumber(e) && isZero(e); }},
    {"undefined", [](DAG e) { return isUndefined(e); }},
    {"finite", [](DAG e) { return (isNumeric(e) || isComplexNumber(e)) && !isSpecial(e); }},
    {"imaginary", [](DAG e) { return isComplexNumber(e) && lengthOf(e) == 2; }},
    {"embedded_real",
     [](DAG e) { return isNumeric(e) || (isComplexNumber(e) && zeroPart(cxImaginaryPart(e))); }},
    {"embedded_imaginary", [](DAG e) { return isComplexNumber(e) && zeroPart(cxRealPart(e)); }},
    {"embedded_axis",
     [](DAG e) {
       return isNumeric(e) ||
              (isComplexNumber(e) && (zeroPart(cxImaginaryPart(e)) || zeroPart(cxRealPart(e))));
     }},
    {"nonreal", [](DAG e) { return isComplexNumber(e) && !zeroPart(cxImaginaryPart(e)); }},
    {"literal", [](DAG e) { return isImmediate(e) || tagOf(e) <= STRING; }},
    {"string", [](DAG e) { return isTag(e, STRING); }},
    {"symbol", [](DAG e) { return isTag(e, NAME); }},
    {"name", [](DAG e) { return isTag(e, NAME) || isTag(e, TABLEREF); }},
    {"indexed", [](DAG e) { return isTag(e, TABLEREF); }},
    {"function", [](DAG e) { return isTag(e, FUNCTION); }},
    {"atomic",
     [](DAG e) {
       if (isImmediate(e)) return true;
       Tag tag = tagOf(e);
       if (tag == NAME) return !NAMED_TABLE(e);
       return tag <= TABLEREF || tag == PROC || tag == MODDEF || tag == MODULE;
     }},
    {"algebraic", [](DAG e) { return isImmediate(e) || (tagOf(e) <= UNEVAL && !hasTag(e, STRING)); }},
    {"boolean",
     [](DAG e) {
       if (e == ini("true") || e == ini("false") || e == ini("FAIL")) return true;
       return !isImmediate(e) && tagOf(e) >= EQUATION && tagOf(e) <= OR;
     }},
    {"relation", [](DAG e) { return !isImmediate(e) && tagOf(e) >= EQUATION && tagOf(e) <= LESSTHAN; }},
    {"equation", [](DAG e) { return isTag(e, EQUATION); }},
    {"=", [](DAG e) { return isTag(e, EQUATION); }},
    {"<>", [](DAG e) { return isTag(e, INEQUAT); }},
    {"<", [](DAG e) { return isTag(e, LESSTHAN); }},
    {"<=", [](DAG e) { return isTag(e, LESSEQ); }},
    {"and", [](DAG e) { return isTag(e, AND); }},
    {"or", [](DAG e) { return isTag(e, OR); }},
    {"not", [](DAG e) { return isTag(e, NOT); }},
    {"+", [](DAG e) { return addition(e); }},
    {"*", [](DAG e) { return multiplication(e); }},
    {"**", [](DAG e) { return isTag(e, POWER) || (isTag(e, PROD) && lengthOf(e) == 3); }},
    {"^", [](DAG e) { return isTag(e, POWER) || (isTag(e, PROD) && lengthOf(e) == 3); }},
    {"radical", [](DAG e) { return isTag(e, PROD) && lengthOf(e) == 3 && isTag(e[2], RATIONAL); }},
    {"||", [](DAG e) { return isTag(e, CATENATE); }},
    {"::", [](DAG e) { return isTag(e, DCOLON); }},
    {"..", [](DAG e) { return isTag(e, RANGE); }},
    {"range", [](DAG e) { return isTag(e, RANGE); }},
    {".", [](DAG e) { return isTag(e, FUNCTION) && e[1] == ini("."); }},
    {"!", [](DAG e) { return isTag(e, FUNCTION) && e[1] == ini("factorial"); }},
    {"list", [](DAG e) { return isTag(e, LIST); }},
    {"set", [](DAG e) { return isTag(e, SET); }},
    {"series", [](DAG e) { return isTag(e, SERIES); }},
    {"zppoly", [](DAG e) { return isTag(e, ZPPOLY); }},
    {"uneval", [](DAG e) { return isTag(e, UNEVAL); }},
    {"sequential", [](DAG e) { return isTag(e, LIST) || isTag(e, SET) || isTag(e, EXPSEQ); }},
    {"table", [](DAG e) { return isTag(behind(e), TABLE); }},
    {"tabular", [](DAG e) { return isTag(behind(e), TABLE) || isTag(e, RTABLE); }},
    {"indexable",
     [](DAG e) {
       return NAMED_TABLE(e) || isTag(e, RTABLE) || isTag(e, EXPSEQ) || isTag(e, LIST) ||
              isTag(e, SET) || isTag(e, STRING);
     }},
    {"array",
     [](DAG e) {
       DAG t = behind(e);
       return isTag(t, TABLE) && t[2] != ini("false");
     }},
    {"rtable", [](DAG e) { return isTag(e, RTABLE); }},
    {"procedure", [](DAG e) { return isTag(behind(e), PROC); }},
    {"module", [](DAG e) { return isTag(behind(e), MODULE); }},
    {"moduledefinition", [](DAG e) { return isTag(e, MODDEF); }},
    {"protected",
     [](DAG e) {
       return isTag(e, NAME) && (e[2] == ini("protected") ||
                                 (isTag(e[2], EXPSEQ) && hasMember(e[2], ini("protected"))));
     }},
};

// Rows by the first character of their name, so that a test compares few words.
const TypeRow* const* rowsOf(char first) {
  constexpr int maxRows = 14;
  static const TypeRow* rows[128][maxRows + 1];
  static bool filled = false;
  if (!filled) {
    int counts[128] = {};
    for (const TypeRow& row : typeRows) {
      int c = static_cast<unsigned char>(inistrings[row.name.index][0]) & 127;
      assert(counts[c] < maxRows);
      rows[c][counts[c]++] = &row;
    }
    filled = true;
  }
  return rows[static_cast<unsigned char>(first) & 127];
}

bool (*builtinType(DAG name))(DAG) {
  for (const TypeRow* const* row = rowsOf(textOf(name)[0]); *row != nullptr; ++row)
    if (name == ini((*row)->name)) return (*row)->matches;
  return nullptr;
}

// ---- types of the library

bool callType(DAG procedure, DAG e, DAG rest, DAG t) {
  DAG quoted = new2(UNEVAL, simpl(new2(EXPSEQ, e)));
  DAG arguments = newl2(lengthOf(rest) + 1, EXPSEQ);
  arguments[1] = quoted;
  for (Word i = 1; i < lengthOf(rest); ++i) arguments[i + 1] = rest[i];
  DAG answer = simpl(eval(simpl(new3(FUNCTION, procedure, simpl(arguments)))));
  if (answer != ini("true") && answer != ini("false"))
    KernelException("result from type `%1` must be true or false", t);
  return answer == ini("true");
}

bool isCallable(DAG value) {
  return isTag(value, PROC) || (isTag(value, FUNCTION) && value[1] == ini("readlib"));
}

DAG libraryType(DAG t) {
  DAG name = retrieve("type/", textOf(t));
  DAG value = valuenv(name, false);
  if (value == name) KernelException("type `%1` does not exist", t);
  return value;
}

bool typeByName(DAG e, DAG t) {
  if (bool (*matches)(DAG) = builtinType(t)) return matches(e);
  DAG value = libraryType(t);
  if (!isCallable(value)) return type(e, value);
  if (!isImmediate(e) && tagOf(e) >= BINARY) return false;
  if (isTag(e, EXPSEQ) && lengthOf(e) > 2) return false;
  return callType(value, e, null, t);
}

bool typeByStructure(DAG e, DAG t) {
  if (isImmediate(e) || tagOf(e) != tagOf(t)) return false;
  std::int64_t n = numterms(t);
  if (numterms(e) != n) return false;
  for (std::int64_t i = 1; i <= n; ++i)
    if (!type(op1(i, e), op1(i, t))) return false;
  return true;
}

bool everyOperand(DAG e, DAG t) {
  for (std::int64_t i = 1, n = numterms(e); i <= n; ++i)
    if (!type(op1(i, e), t)) return false;
  return true;
}

bool isNamed(DAG head, const char* text) { return std::strcmp(textOf(head), text) == 0; }

[[noreturn]] void invalidType() { KernelException("testing against an invalid type"); }

bool typeByCall(DAG e, DAG t) {
  DAG head = t[1], args = t[2];
  Word n = lengthOf(args) - 1;
  if (!isTag(head, NAME)) {
    if (n != 1) invalidType();
    return isTag(e, FUNCTION) && type(e[1], head) && everyOperand(e, args[1]);
  }
  if (head == ini("identical")) {
    if (n != 1) invalidType();
    return simpl(args[1]) == e;
  }
  if (head == ini("anyfunc")) {
    if (!isTag(e, FUNCTION) || lengthOf(e[2]) != lengthOf(args)) return false;
    for (Word i = 1; i <= n; ++i)
      if (!type(e[2][i], args[i])) return false;
    return true;
  }
  if (head == ini("specfunc")) {
    if (n != 2) invalidType();
    if (!isTag(e, FUNCTION)) return false;
    bool known = isTag(args[2], SET) ? hasMember(args[2][1], e[1]) : e[1] == args[2];
    return known && everyOperand(e, args[1]);
  }
  if (head == ini("complex") && n == 1) {
    if (!isComplexNumber(e)) return type(e, args[1]);
    return type(cxRealPart(e), args[1]) && type(cxImaginaryPart(e), args[1]);
  }
  if (head == ini("evaln") || head == ini("name")) {
    if (!isTag(e, NAME) && !isTag(e, TABLEREF)) return false;
    return n == 0 || type(mvalue(e), args[1]);
  }
  if (isNamed(head, "And")) {
    if (n == 0) invalidType();
    for (Word i = 1; i <= n; ++i)
      if (!type(e, args[i])) return false;
    return true;
  }
  if (isNamed(head, "Or")) {
    for (Word i = 1; i <= n; ++i)
      if (type(e, args[i])) return true;
    return false;
  }
  if ((isNamed(head, "Not") || isNamed(head, "Non")) && n == 1) return !type(e, args[1]);
  if (isNamed(head, "&+") || isNamed(head, "&*")) {
    bool sum = isNamed(head, "&+");
    if (sum ? !addition(e) : !multiplication(e)) return false;
    if (numterms(e) != static_cast<std::int64_t>(n)) return false;
    for (Word i = 1; i <= n; ++i)
      if (!type(sum ? mterm(i, e) : fact(i, e), args[i])) return false;
    return true;
  }
  if (bool (*matches)(DAG) = builtinType(head)) {
    if (n != 1) invalidType();
    return matches(e) && everyOperand(e, args[1]);
  }
  DAG name = retrieve("type/", textOf(head));
  DAG value = valuenv(name, false);
  if (isCallable(value)) return callType(value, e, args, head);
  if (!isTag(e, FUNCTION) || e[1] != head || lengthOf(e[2]) != lengthOf(args)) return false;
  for (Word i = 1; i <= n; ++i)
    if (!type(e[2][i], args[i])) return false;
  return true;
}

bool typeByIndexedName(DAG e, DAG t) {
  DAG head = t[1], args = t[2];
  if (head == ini("float") && (lengthOf(args) == 1 || (lengthOf(args) == 2 && args[1] == immediate(8))))
    return isTag(e, HFLOAT);
  if (!isTag(e, TABLEREF) || !type(e[1], head) || lengthOf(e[2]) != lengthOf(args)) return false;
  for (Word i = 1; i < lengthOf(args); ++i)
    if (!type(e[2][i], args[i])) return false;
  return true;
}

}  // namespace

bool type(DAG e, DAG t) {
  if (isImmediate(t)) return e == t;
  switch (tagOf(t)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case COMPLEX: case STRING: case RTABLE:
      return e == t;
    case NAME: return typeByName(e, t);
    case SET:
      for (Word i = 1; i < lengthOf(t[1]); ++i)
        if (type(e, t[1][i])) return true;
      return false;
    case PROD:
      if (lengthOf(t) != 3) invalidType();
      [[fallthrough]];
    case POWER:
      return ((isTag(e, PROD) && lengthOf(e) == 3) || isTag(e, POWER)) && type(e[1], t[1]) &&
             type(e[2], t[2]);
    case DCOLON: return isTag(e, DCOLON) && type(e[1], t[1]) && type(e[2], t[2]);
    case EXPSEQ: case CATENATE: case SERIES: case UNEVAL: case EQUATION: case INEQUAT: case LESSEQ:
    case LESSTHAN: case AND: case NOT: case OR: case LIST: case RANGE:
      checkStack();
      return typeByStructure(e, t);
    case TABLEREF: return typeByIndexedName(e, t);
    case FUNCTION:
      checkStack();
      return typeByCall(e, t);
    default: invalidType();
  }
}

}  // namespace korel
