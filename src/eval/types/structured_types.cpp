#include "eval/types/structured_types.h"

#include <algorithm>

#include "algebra/polynomial_types.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "eval/types/type_match.h"
#include "eval/types/type_names.h"
#include "eval/types/types.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/complex/complex.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool membersMatch(DAG members, DAG types) {
  if (lengthOf(members) != lengthOf(types)) return false;
  for (Word i = 1; i < lengthOf(types); ++i)
    if (!type(members[i], types[i])) return false;
  return true;
}

// Members of a sequence against one type. A built-in name is looked up once for all of them.
// A few of them as alternatives are looked up as well.
bool allHaveType(DAG members, DAG t) {
  if (TypeTest matches = isName(t) ? builtinType(t) : nullptr) return everyMember(members, matches);
  constexpr Word most = 8;
  if (isTag(t, SET) && lengthOf(t[1]) <= most) {
    TypeTest alternatives[most];
    Word n = 0;
    for (const Word end = lengthOf(t[1]) - 1; n < end; ++n) {
      alternatives[n] = isName(t[1][n + 1]) ? builtinType(t[1][n + 1]) : nullptr;
      if (alternatives[n] == nullptr) break;
    }
    if (n == lengthOf(t[1]) - 1)
      return everyMember(members, [&](DAG member) {
        passWork(n);
        return std::any_of(alternatives, alternatives + n, [member](TypeTest matches) { return matches(member); });
      });
  }
  return everyMember(members, [t](DAG member) { return type(member, t); });
}

/// The parts that a COMPLEX stores match `t`; an absent real part is not asked.
bool partsMatch(DAG complex, DAG t) {
  for (Word i = 1; i < lengthOf(complex); ++i)
    if (!type(complex[i], t)) return false;
  return true;
}

// ---- heads that are standard names

bool embeddedReal(DAG e, DAG u) {
  if (!isComplex(e)) return type(e, u);
  return hasZeroImaginaryPart(e) && type(cxRealPart(e), u);
}
bool embeddedImaginary(DAG e, DAG u) { return isComplex(e) && hasZeroRealPart(e) && type(imaginaryPartOf(e), u); }

// Classes of real numbers, which `complex` asks of each part.
constexpr StandardName realClasses[] = {
    "extended_numeric",  "numeric", "positive",    "negative",      "nonpositive",
    "nonnegative",       "integer", "negint",      "posint",        "nonnegint",
    "nonposint",         "even",    "odd",         "fraction",      "rational",
    "extended_rational", "sfloat",  "infinity",    "undefined",     "float",
    "poszero",           "negzero", "cx_infinity", "real_infinity", "pos_infinity",
    "neg_infinity",
};
bool isRealClass(DAG u) {
  for (StandardName name : realClasses)
    if (u == ini(name)) return true;
  return false;
}

bool isHeadIn(DAG head, DAG f) { return isTag(f, SET) ? isMember(head, f[1]) : head == f; }

bool valueMatches(DAG e, DAG u) {
  SuspendedBindings suspended = suspendBindings();
  DAG value = mvalue(e);
  resumeBindings(suspended);
  return type(value, u);
}

// A head with its own rule. `least` and `most` bound the count of arguments.
struct HeadRow {
  StandardName head;
  Word least, most;
  bool (*matches)(DAG e, DAG args);
};
constexpr Word anyCount = maxLength;
constexpr HeadRow headRows[] = {
    // head                least most      e matches if
    {"embedded_real",      1, 1,        [](DAG e, DAG args) { return embeddedReal(e, args[1]); }},
    {"embedded_imaginary", 1, 1,        [](DAG e, DAG args) { return embeddedImaginary(e, args[1]); }},
    {"embedded_axis",      1, 1,        [](DAG e, DAG args) {
       return embeddedReal(e, args[1]) || embeddedImaginary(e, args[1]); }},
    {"imaginary",          1, 1,        [](DAG e, DAG args) {
       return isComplex(e) && lengthOf(e) == 2 && type(e[1], args[1]); }},
    {"nonreal",            1, 1,        [](DAG e, DAG args) {
       return isComplex(e) && !hasZeroImaginaryPart(e) && partsMatch(e, args[1]); }},
    {"complex",            1, 1,        [](DAG e, DAG args) {
       return isComplex(e) && isRealClass(args[1]) ? partsMatch(e, args[1]) : type(e, args[1]); }},
    {"polynom",            1, 2,        [](DAG e, DAG args) {
       return matchesPolynomial(PolynomialForm::polynomial, e, args); }},
    {"ratpoly",            1, 2,        [](DAG e, DAG args) {
       return matchesPolynomial(PolynomialForm::rationalFunction, e, args); }},
    {"identical",          1, 1,        [](DAG e, DAG args) { return simpl(args[1]) == e; }},
    {"anyfunc",            0, anyCount, [](DAG e, DAG args) {
       return isTag(e, FUNCTION) && membersMatch(e[2], args); }},
    {"specfunc",           2, 2,        [](DAG e, DAG args) {
       return isTag(e, FUNCTION) && isHeadIn(e[1], args[2]) && allHaveType(e[2], args[1]); }},
    {"evaln",              0, 1,        [](DAG e, DAG args) {
       return isNameOrIndexed(e) && (lengthOf(args) == 1 || valueMatches(e, args[1])); }},
    {"name",               0, 1,        [](DAG e, DAG args) {
       return isNameOrIndexed(e) && (lengthOf(args) == 1 || valueMatches(e, args[1])); }},
};

// Names that with one argument are a type of containers: what matches the plain name, with every operand
// of the type that the argument tells.
constexpr StandardName containerHeads[] = {
    "+", "*",         "**",       "^",      "indexed",  "function", "series", "list",  "set", "equation",
    "=", "algebraic", "constant", "and",    "not",      "or",       "range",  "..",    "!",   ".",
    "<", "<=",        "<>",       "uneval", "relation", "radical",  "::",     "table",
};

// ---- heads that go by their text

bool allMatch(DAG e, DAG args) {
  return everyMember(args, [e](DAG t) { return type(e, t); });
}
bool oneMatches(DAG e, DAG args) {
  for (Word i = 1; i < lengthOf(args); ++i) {
    int bound = typematchI;
    if (type(e, args[i])) return true;
    typematchI = bound;
  }
  return false;
}
bool noneMatches(DAG e, DAG args) {
  int bound = typematchI;
  bool matches = type(e, args[1]);
  typematchI = bound;
  return !matches;
}
bool termsMatch(DAG e, DAG args) {
  if (!addition(e) || numterms(e) != static_cast<std::int64_t>(lengthOf(args)) - 1) return false;
  for (Word i = 1; i < lengthOf(args); ++i)
    if (!type(mterm(i, e), args[i])) return false;
  return true;
}
bool factorsMatch(DAG e, DAG args) {
  if (!multiplication(e) || numterms(e) != static_cast<std::int64_t>(lengthOf(args)) - 1) return false;
  for (Word i = 1; i < lengthOf(args); ++i)
    if (!type(fact(i, e), args[i])) return false;
  return true;
}

struct TextRow {
  const char* head;
  Word least, most;
  bool (*matches)(DAG e, DAG args);
};
constexpr TextRow textRows[] = {
    // head  least most     e matches if
    {"&+",   0, anyCount, termsMatch},
    {"&*",   0, anyCount, factorsMatch},
    {"And",  1, anyCount, allMatch},
    {"Or",   1, anyCount, oneMatches},
    {"Not",  1, 1,        noneMatches},
    {"Non",  1, 1,        noneMatches},
};

// ---- any other head

// Statements, and what refers to parameters or locals by number: parts of a procedure's body, no values
// that a procedure could be given.
bool isUnbound(DAG e) {
  if (isImmediate(e) || tagOf(e) <= NAME) return false;
  if (tagOf(e) > MODULE) return true;
  return hasparlocExceptInPROC(e);  // a procedure as a whole is a value
}

bool typeByLibraryCall(DAG e, DAG head, DAG args) {
  SuspendedBindings suspended = suspendBindings();
  DAG name = retrieve("type/", textOf(head));
  resumeBindings(suspended);
  if (name != null && isTypeProcedure(valuenv(name, false))) return callTypeProcedure(name, e, args, head);
  return isTag(e, FUNCTION) && e[1] == head && membersMatch(e[2], args);
}

bool typeByNamedCall(DAG e, DAG head, DAG args) {
  Word n = lengthOf(args) - 1;
  for (const HeadRow& row : headRows)
    if (head == ini(row.head)) {
      if (n < row.least || n > row.most) invalidType();
      return row.matches(e, args);
    }
  for (StandardName name : containerHeads)
    if (head == ini(name)) {
      if (n != 1) invalidType();
      return builtinType(head)(e) && everyOperand(e, args[1]);
    }
  for (const TextRow& row : textRows)
    if (hasText(head, row.head)) {
      if (n < row.least || n > row.most) invalidType();
      return row.matches(e, args);
    }
  return typeByLibraryCall(e, head, args);
}

// A head that is a type itself: calls, or indexed names, whose head matches it.
bool typeByTypedHead(DAG e, DAG head, DAG args) {
  if (isTag(head, UNEVAL)) return type(e, simpl(new3(FUNCTION, head[1], args)));
  if (lengthOf(args) != 2) invalidType();
  if (!isTag(e, FUNCTION) && !(isTag(e, TABLEREF) && isTag(head, TABLEREF))) return false;
  return type(e[1], head) && allHaveType(e[2], args[1]);
}

}  // namespace

void invalidType() { KernelException("testing against an invalid type"); }

bool everyOperand(DAG e, DAG t) {
  if (Word body = kindOf(e).body) return allHaveType(e[body], t);
  for (std::int64_t i = 1, n = numterms(e); i <= n; ++i)
    if (!type(op1(i, e), t)) return false;
  return true;
}

bool isTypeProcedure(DAG value) { return isTag(value, PROC) || (isTag(value, FUNCTION) && value[1] == ini("readlib")); }

bool callTypeProcedure(DAG head, DAG e, DAG rest, DAG t) {
  if (isUnbound(e)) return false;
  SuspendedBindings suspended = suspendBindings();
  DAG arguments = newl2(lengthOf(rest) + 1, EXPSEQ);
  arguments[1] = new2(UNEVAL, simpl(new2(EXPSEQ, e)));
  for (Word i = 1; i < lengthOf(rest); ++i) arguments[i + 1] = rest[i];
  DAG answer = simpl(eval(simpl(new3(FUNCTION, head, simpl(arguments)))));
  if (answer != ini("true") && answer != ini("false"))
    KernelException("result from type `%1` must be true or false", t);
  resumeBindings(suspended);
  return answer == ini("true");
}

bool typeByCall(DAG e, DAG t) {
  DAG head = t[1], args = t[2];
  if (!isSequence(args)) invalidType();
  return isName(head) ? typeByNamedCall(e, head, args) : typeByTypedHead(e, head, args);
}

bool typeByIndexedName(DAG e, DAG t) {
  DAG head = t[1], args = t[2];
  if (!isSequence(args)) invalidType();
  if (head == ini("float") && (lengthOf(args) == 1 || (lengthOf(args) == 2 && args[1] == immediate(8))))
    return isTag(e, HFLOAT);
  if (isName(head)) {
    SuspendedBindings suspended = suspendBindings();
    DAG name = retrieve("type/", textOf(head));
    resumeBindings(suspended);
    if (name != null && isTypeProcedure(valuenv(name, false)))
      return callTypeProcedure(simpl(new3(TABLEREF, name, args)), e, null, head);
  }
  return isTag(e, TABLEREF) && type(e[1], head) && membersMatch(e[2], args);
}

}  // namespace korel
