#include "algebra/polynomials/divide.h"

#include "algebra/float_context.h"
#include "algebra/polynomial_types.h"
#include "algebra/polynomials/ascending_terms.h"
#include "algebra/polynomials/degree.h"
#include "algebra/polynomials/expand.h"
#include "algebra/polynomials/indeterminates.h"
#include "algebra/polynomials/integer_polynomials.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/append.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

[[noreturn]] void refuse(DAG a, DAG b) { KernelException("invalid arguments to divide: %1, %2", a, b); }

// The integer a / b, or 0 (no object) when there is none.
DAG integerQuotient(DAG a, DAG b) {
  DAG q = simpl(mul(a, simpl(power(b, -1))));
  return isInteger(q) ? q : DAG();
}

// ---- by an integer

bool divideSumByInteger(DAG a, DAG b, DAG& quotient) {
  DAG result = CopyAlg(a);
  for (Word i = 1; i < lengthOf(a); i += 2) {
    passWork(objectSteps);
    // A constant term is a number with coefficient 1.
    Word numeric = isInteger(a[i + 1]) && !isNumber(a[i]) ? i + 1 : i;
    if (!isInteger(a[numeric]) || !isInteger(a[i + 1])) return false;
    DAG q = integerQuotient(numeric == i ? simpl(mul(a[i], a[i + 1])) : a[numeric], b);
    if (!q) return false;
    result[numeric] = q;
    if (numeric == i) result[i + 1] = cons1;
  }
  quotient = simpl(result);
  return true;
}

bool divideByInteger(DAG a, DAG b, DAG& quotient) {
  if (isTag(a, SUM)) return divideSumByInteger(a, b, quotient);
  DAG content = simpl(icontent(a));
  if (!isInteger(content) || !integerQuotient(content, b)) return false;
  quotient = simpl(NewPROD(a, simpl(power(b, -1))));
  return true;
}

// ---- long division in one variable

// The first variable of the divisor in which both are polynomials.
DAG mainVariable(DAG a, DAG b, DAG variables) {
  for (Word i = 1; i < lengthOf(variables); ++i) {
    DAG x = variables[i];
    if (isNameOrIndexed(x) && isInteger(degree(a, x)) && isInteger(degree(b, x))) return x;
  }
  refuse(a, b);
}

// Coefficients of a quotient in Z[x] are bounded: maxnorm(a) * 2^degree, since a quotient's are those of a factor
// (Mignotte, "An inequality about factors of polynomials"); 0 where no bound is taken.
DAG quotientBound(DAG a, DAG variables, DAG degreeOfA) {
  constexpr std::int32_t highest = 20000;
  if (lengthOf(variables) != 2 || !isImmediate(degreeOfA) || immediateValue(degreeOfA) >= highest) return DAG();
  if (!typol(PolynomialForm::polynomial, a, variables, rationalTags)) return DAG();
  return simpl(mul(maxnorm(a), power(immediate(2), immediateValue(degreeOfA))));
}

// A divisor with integer ends that don't divide those of `a` is refused before any work.
bool lowestAgree(const AscendingTerms& a, const AscendingTerms& b) {
  if (a.count() < 2 || b.count() < 2) return true;
  DAG x = a.coefficient(1), y = b.coefficient(1);
  if (!isInteger(x) || !isInteger(y) || y == cons1 || y == consm1) return true;
  return static_cast<bool>(integerQuotient(x, y));
}

bool longDivision(AscendingTerms rest, const AscendingTerms& b, DAG x, DAG bound, DAG& quotient) {
  DAG terms = new1(SUM);
  while (rest.count() > 0) {
    passWork(objectSteps * std::int64_t{b.count()});
    const Word top = rest.count(), topOfB = b.count();
    std::int64_t e = std::int64_t{rest.exponent(top)} - b.exponent(topOfB);
    if (e < 0) return false;
    DAG q;
    if (!divideZ(rest.coefficient(top), b.coefficient(topOfB), q)) return false;
    if (bound && isNumeric(q) && compcon(absalg(q), bound) > 0) return false;
    terms = Append3(terms, simpl(NewPROD(q, simpl(new3(PROD, x, NewInteger(e))))), cons1);
    rest.removeTop();
    rest.subtractMultiple(b, q, e);
  }
  quotient = expand(simpl(terms));
  return true;
}

// The library's division, for long operands.
bool divideInLibrary(DAG a, DAG b, DAG& quotient) {
  DAG name = simpl(newLocalName("q"));
  if (evalsysf("expand/bigdiv", newSequence({a, b, name})) != ini("true")) return false;
  quotient = simpl(eval(name));
  return true;
}

}  // namespace

namespace {

bool isLongDivision(DAG a, DAG b, DAG variablesOfA) {
  constexpr std::int64_t wordsForLibrary = 12000;  // product of the lengths, for each variable
  return isTag(b, SUM) && isTag(a, SUM) &&
         memberCount(variablesOfA) * wordsForLibrary <
             (std::int64_t{lengthOf(a)} - 3) * (std::int64_t{lengthOf(b)} - 3);
}

bool divideInVariable(DAG a, DAG b, DAG& quotient, bool mayAskLibrary) {
  DAG variables = indetsSequence(b);
  if (variables == null) refuse(a, b);
  DAG x = mainVariable(a, b, variables), variablesOfA = indetsSequence(a);
  if (!everyMember(variables, [&](DAG v) { return isMember(v, variablesOfA); })) return false;
  DAG da = degree(a, x), db = degree(b, x);
  if (!isInteger(da) || !isInteger(db)) refuse(a, b);
  if (compcon(da, db) < 0) return false;
  if (mayAskLibrary && isLongDivision(a, b, variablesOfA)) return divideInLibrary(a, b, quotient);
  AscendingTerms rest = ascendingTerms(a, x), divisor = ascendingTerms(b, x);
  if (!lowestAgree(rest, divisor)) return false;
  return longDivision(rest, divisor, x, quotientBound(a, variablesOfA, da), quotient);
}

}  // namespace

bool divideZ(DAG a, DAG b, DAG& quotient) {
  if (a == b) {
    quotient = cons1;
    return true;
  }
  if (isInteger(b)) return divideByInteger(a, b, quotient);
  return divideInVariable(a, b, quotient, true);
}

bool divideByTerms(DAG a, DAG b, DAG& quotient) { return divideInVariable(a, b, quotient, false); }

namespace {

bool hasSum(DAG x) { return hasid(x, SUM); }

// Contents and primitive parts; the division of the latter is remembered.
bool dividePrimitive(DAG a, DAG b, DAG& quotient) {
  DAG contentA = simpl(icontent(a)), contentB = simpl(icontent(b));
  DAG content = cons1;
  if (contentA != cons0) {
    content = integerQuotient(contentA, contentB);
    if (!content) return false;
    a = simpl(NewPROD(a, simpl(power(contentA, -1))));
    b = simpl(NewPROD(b, simpl(power(contentB, -1))));
  }
  DAG q, key = simpl(new3(EXPSEQ, a, b));
  if (DAG known = recall(Remembering::divide, key); known != absent) {
    q = known;
  } else {
    if (!divideZ(a, b, q)) return false;
    memorize(Remembering::divide, key, q);
  }
  quotient = content == cons1 ? q : simpl(NewPROD(content, q));
  return true;
}

}  // namespace

bool divide(DAG a, DAG b, DAG& quotient) {
  if (isZero(b)) KernelException("division by zero");
  if (isZero(a)) {
    quotient = cons0;
    return true;
  }
  if (a == b || b == cons1) {
    quotient = a == b ? cons1 : a;
    return true;
  }
  if (isNumber(b) || (isTag(a, SUM) && !hasSum(b))) return divideZ(a, b, quotient);
  return dividePrimitive(a, b, quotient);
}

DAG builtin::divide(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n < 2 || n > 3 || (n == 3 && !isNameOrIndexed(call.arguments[3]))) wrongParameters(call);
  DAG a = call.arguments[1], b = call.arguments[2], q;
  bool divides = inFloatContextOf(call.arguments, [&] { return korel::divide(a, b, q); });
  if (divides && n == 3) assign(evalname(call.arguments[3]), q);
  return truth(divides);
}

}  // namespace korel
