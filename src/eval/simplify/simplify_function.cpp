// Calls in canonical form: the constructors of numbers, the factorial of a number, and the expansion
// of inline procedures.

#include "eval/simplify/simplify.h"

#include <limits>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evalf.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/modules.h"
#include "eval/procedures/procedures.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/bindings.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/structure/substitute.h"
#include "eval/walk/has.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool isSpecialName(DAG x) { return x == ini("infinity") || x == consminf || x == ini("undefined"); }

// What no constructor takes: strings, and everything behind the algebraic objects, but for the
// references of a procedure's body, whose values are not known yet.
bool isInvalidOperand(DAG x) { return !isAmong(x, algebraicTags | frameReferenceTags); }

DAG finishCall(DAG s) { return makeUnique(s); }

DAG factorialCall(DAG s) {
  DAG args = s[2];
  if (lengthOf(args) != 2) KernelException("factorial only takes one argument");
  DAG n = args[1];
  if (DAG bound = operatorBinding(ini("!"))) return callBinding(bound, n);
  if (!isInteger(n)) return finishCall(s);
  if (consneg(n) && !isZero(n)) KernelException("the argument to factorial should be non-negative");
  return simpl(factorial(n));
}

DAG integerCall(DAG s) {
  DAG args = s[2];
  if (lengthOf(args) != 2) KernelException("wrong number of arguments for Integer constructor");
  DAG x = args[1];
  if (isInteger(x) || isSpecialName(x)) return x;
  if (isTag(x, COMPLEX) && isInteger(x[1])) return x;
  if (isInvalidOperand(x)) KernelException("invalid argument for Integer constructor");
  return finishCall(s);
}

DAG callOf(StandardName head, DAG a) { return new3(FUNCTION, ini(head), new2(EXPSEQ, a)); }
DAG callOf(StandardName head, DAG a, DAG b) { return new3(FUNCTION, ini(head), new3(EXPSEQ, a, b)); }

// A constructor applied to each part of a COMPLEX.
template <class Construct>
DAG distribute(DAG z, Construct construct) {
  if (lengthOf(z) == 2) return simpl(new2(COMPLEX, construct(z[1])));
  return simpl(callOf("Complex", construct(z[1]), construct(z[2])));
}

DAG fractionOfTwo(DAG s, DAG a, DAG b) {
  if (isFloatNumber(a) || isFloatNumber(b) || isTag(b, COMPLEX) || isInvalidOperand(a) || isInvalidOperand(b))
    KernelException("invalid argument for Fraction constructor");
  if (isTag(a, COMPLEX)) return distribute(a, [b](DAG part) { return simpl(callOf("Fraction", part, b)); });
  if (isUndefined(a) || isUndefined(b)) return ini("undefined");
  if (isInfinite(a)) {
    if (isInfinite(b)) return TriggerNumericEvent(invalidOperation, ini("Fraction"), a, b, ini("undefined"), true);
    if (!isNumeric(b)) return finishCall(s);
    return consneg(b) ? simpl(negate(a)) : a;
  }
  if (isInfinite(b)) return isNumeric(a) ? cons0 : finishCall(s);
  if (!isNumeric(a) || !isNumeric(b)) return finishCall(s);
  if (isZero(b)) {
    if (isZero(a)) return TriggerNumericEvent(invalidOperation, ini("Fraction"), a, b, ini("undefined"), true);
    return TriggerNumericEvent(divisionByZero, ini("Fraction"), a, b, ini("infinity"), true);
  }
  return simpl(mul(a, simpl(power(b, -1))));
}

DAG fractionCall(DAG s) {
  DAG args = s[2];
  if (lengthOf(args) == 2) {
    DAG x = args[1];
    if (isRationalNumber(x) || isSpecialName(x)) return x;
    if (isTag(x, COMPLEX)) return distribute(x, [](DAG part) { return simpl(callOf("Fraction", part)); });
    if (isFloatNumber(x) || isInvalidOperand(x)) KernelException("invalid argument for Fraction constructor");
    return finishCall(s);
  }
  if (lengthOf(args) != 3) KernelException("wrong number of arguments for Fraction constructor");
  return fractionOfTwo(s, args[1], args[2]);
}

DAG complexCall(DAG s) {
  DAG args = s[2];
  if (lengthOf(args) == 2) {
    DAG x = args[1];
    if (isTag(x, COMPLEX)) return x;
    if (isFiniteNumber(x)) return isInteger(x) && isZero(x) ? cons0 : simpl(new2(COMPLEX, x));
    if (isSpecialName(x) || isInfinite(x) || isUndefined(x)) return simpl(new2(COMPLEX, x));
    if (isInvalidOperand(x)) KernelException("invalid argument for Complex constructor");
    return finishCall(s);
  }
  if (lengthOf(args) != 3) KernelException("wrong number of arguments for Complex constructor");
  DAG a = args[1], b = args[2];
  if (isInvalidOperand(a) || isInvalidOperand(b) || isTag(a, COMPLEX) || isTag(b, COMPLEX))
    KernelException("invalid arguments for Complex constructor");
  auto isPart = [](DAG x) { return isNumeric(x) || isSpecialName(x); };
  if (!isPart(a) || !isPart(b)) return finishCall(s);
  if (isFloatNumber(a) != isFloatNumber(b) && isNumeric(a) && isNumeric(b)) {
    a = simpl(evalf(a));
    b = simpl(evalf(b));
  }
  if (b == cons0) return a;
  if (a == cons0) return simpl(new2(COMPLEX, b));
  return simpl(new3(COMPLEX, a, b));
}

DAG signedFloatInfinity(DAG x) { return consneg(x) ? consfminf : consfinf; }

DAG floatOfTwo(DAG s, DAG m, DAG e) {
  if (isTag(m, COMPLEX) && isInteger(e))
    return distribute(m, [e](DAG part) { return simpl(callOf("Float", part, e)); });
  bool exponentName = e == ini("infinity") || e == ini("undefined");
  if (isInvalidOperand(m) || isInvalidOperand(e) || isFloatNumber(e) || isTag(e, COMPLEX) || isTag(m, COMPLEX) ||
      isTag(m, RATIONAL) || isTag(e, RATIONAL) || isTag(m, HFLOAT) || (exponentName && isTag(m, FLOAT)))
    KernelException("invalid arguments for Float constructor");
  if (isUndefined(m)) return consfNaN;
  if (exponentName && isInteger(m)) {
    if (e == ini("undefined")) return simpl(new3(FLOAT, m, e));
    if (isZero(m)) return TriggerNumericEvent(invalidOperation, ini("Float"), m, e, consfNaN, true);
    return signedFloatInfinity(m);
  }
  if (m == ini("infinity") || m == consminf) {
    if (!isInteger(e) && !exponentName && e != consminf) return finishCall(s);
    return signedFloatInfinity(m);
  }
  if (!isInteger(e)) return finishCall(s);
  if (isTag(m, FLOAT)) {
    if (isInfinite(m) || isUndefined(m)) return m;
    return simpl(callOf("Float", m[1], simpl(addint(m[2], e))));
  }
  if (!isInteger(m)) return finishCall(s);
  if (isZero(m)) return m == consm0 ? consfm0 : consf0;
  if (!FitIntoLongLong(e)) KernelException("integer too large in context");
  std::int64_t top = LongLongValue(e);
  constexpr std::int64_t bound = std::numeric_limits<std::int32_t>::max();
  if (top > 4 * bound || top < -4 * bound || top + ilength(m) > bound || top + ilength(m) < -bound - 1)
    KernelException("integer too large in context");
  return simpl(newFLOAT(m, e));
}

DAG floatCall(DAG s) {
  DAG args = s[2];
  if (lengthOf(args) == 2) {
    DAG x = args[1];
    if (x == ini("infinity")) return consfinf;
    if (x == consminf) return consfminf;
    if (x == ini("undefined")) return consfNaN;
    if (isNumeric(x) || isTag(x, COMPLEX)) return simpl(evalf(x));
    if (isInvalidOperand(x)) KernelException("invalid argument for Float constructor");
    return finishCall(s);
  }
  if (lengthOf(args) != 3) KernelException("wrong number of arguments for Float constructor");
  return floatOfTwo(s, args[1], args[2]);
}

struct Constructor {
  StandardName head;
  DAG (*simplify)(DAG);
};
const Constructor constructors[] = {
    // head        case
    {"factorial", factorialCall},
    {"Integer", integerCall},
    {"Fraction", fractionCall},
    {"Complex", complexCall},
    {"Float", floatCall},
    {"SFloat", floatCall},
};

// ---- inline procedures

// The procedure that a call's head names, when its calls are expanded here; 0 otherwise.
DAG inlineProcedure(DAG head) {
  if (isTag(head, MEMBER)) {
    DAG module = head[1];
    if (!isTag(module, MODULE) && !isTag(module, NAME)) return DAG();
    DAG value = isTag(module, NAME) ? module[1] : module;
    if (!value || !isTag(value, MODULE)) return DAG();
    head = exportInstance(value, declaredName(head[2]));
    if (head) head = declaredName(head);
  }
  if (!head || !isTag(head, NAME) || isEnvironmentName(head)) return DAG();
  DAG value = head[1];
  if (!value || !isTag(value, PROC)) return DAG();
  DAG body = value[5];
  if (isImmediate(body) || tagOf(body) >= ASSIGN) return DAG();
  return hasOption(value, ini("inline")) ? value : DAG();
}

DAG expandInline(DAG s, DAG procedure) {
  DAG args = s[2];
  Word count = lengthOf(args) - 1;
  if (count != lengthOf(procedure[1]) - 1) {
    KernelWarning(2, "inline procedure `%1` called with wrong number of arguments; not inlined", s[1]);
    return finishCall(s);
  }
  DAG equations = newl2(count + 4, EXPSEQ);
  auto equation = [](std::int32_t number, DAG value) {
    DAG parameter = new2(PARAM, DAG(static_cast<Word>(number)));
    return new3(EQUATION, simpl(parameter), value);
  };
  for (Word i = 1; i <= count; ++i) equations[i] = equation(static_cast<std::int32_t>(i), args[i]);
  equations[count + 1] = equation(0, immediate(static_cast<std::int32_t>(count)));
  equations[count + 2] = equation(-1, args);
  equations[count + 3] = equation(-2, s[1]);
  DAG expanded = substituteInCopy(equations, procedure[5]);
  if (hasCallTo(expanded, s[1])) KernelException("recursive expansion of inline procedure `%1`", s[1]);
  checkStack();
  return SimplifyMaybeBind(expanded, false);
}

// ---- powers that `evalhf` judges by its own rules

// Whether the power of two numbers is an error on doubles, while exact arithmetic gives it a value.
bool isErrorOnDoubles(DAG base, DAG exponent) {
  if (!isNumeric(base) || !isNumeric(exponent)) return false;
  return isZero(base) ? isZero(exponent) : consneg(base) && !isInteger(exponent);
}
DAG powerCall(DAG base, DAG exponent) { return new3(FUNCTION, ini("^"), new3(EXPSEQ, base, exponent)); }

// Nothing but numbers and their sums, products and powers: no name that a binding could replace.
bool isNumericTree(DAG x) {
  if (isNumeric(x)) return true;
  if (!isAmong(x, TagSet{SUM, PROD, POWER})) return false;
  checkStack();
  for (Word i = 1; i < lengthOf(x); ++i)
    if (!isNumericTree(x[i])) return false;
  return true;
}

DAG withPowersKept(DAG x);

// The power's parts, simplified in their places when they are numbers; true when it is one to be kept.
bool isKeptPower(DAG& base, DAG& exponent) {
  base = withPowersKept(base);
  exponent = withPowersKept(exponent);
  if (!isNumericTree(base) || !isNumericTree(exponent)) return false;
  base = simpl(base);
  exponent = simpl(exponent);
  return isErrorOnDoubles(base, exponent);
}

// The raw argument of `evalhf`, such powers in it as calls of `^`, which stand until they are evaluated.
DAG withPowersKept(DAG x) {
  if (!isObject(x) || isSimplified(x)) return x;
  checkStack();
  switch (tagOf(x)) {
    case POWER: return isKeptPower(x[1], x[2]) ? powerCall(x[1], x[2]) : x;
    case PROD:
      for (Word i = 1; i < lengthOf(x); i += 2) {
        if (!isKeptPower(x[i], x[i + 1])) continue;
        x[i] = powerCall(x[i], x[i + 1]);
        x[i + 1] = cons1;
      }
      return x;
    case SUM: case FUNCTION: case EXPSEQ:
      for (Word i = 1; i < lengthOf(x); ++i) x[i] = withPowersKept(x[i]);
      return x;
    default: return x;
  }
}

}  // namespace

DAG simplFunction(DAG s, Word key) {
  const DAG arguments = s[2];
  if (s[1] == ini("evalhf")) s[2] = withPowersKept(s[2]);
  if (s[1] == ini("traperror")) s[2] = simplifyUnderTrap(s[2]);
  if (bindingsEnabled && (s[1] == ini("bind") || s[1] == ini("unbind"))) s[2] = simplBindingArguments(s);
  bool changed = simplifyFields(s) || bindingsEnabled;
  DAG head = s[1];
  if (isObject(s[2]) && !hasTag(s[2], EXPSEQ)) s[2] = simpl(new2(EXPSEQ, s[2]));
  else if (isImmediate(s[2])) s[2] = simpl(new2(EXPSEQ, s[2]));
  if (lengthOf(s) == 3 && isTag(head, NAME))
    for (const Constructor& row : constructors)
      if (head == ini(row.head)) return row.simplify(s);
  if (optionInline)
    if (DAG procedure = inlineProcedure(head)) return expandInline(s, procedure);
  changed = changed || s[2] != arguments;
  return finish(s, key, changed);
}

}  // namespace korel
