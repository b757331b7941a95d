// Native library procedures on polynomials.

#include "algebra/engine/polynomial_procedures.h"
#include "algebra/polynomial_types.h"
#include "algebra/polynomials/divide.h"
#include "algebra/polynomials/expand.h"
#include "algebra/polynomials/expanded_size.h"
#include "algebra/polynomials/frontend.h"
#include "algebra/polynomials/gcd_remainders.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

void requireArguments(const BuiltinCall& call, Word least, Word most) {
  if (argumentCount(call) < least || argumentCount(call) > most) wrongParameters(call);
}

}  // namespace

// ---- expand

DAG native::expandBigprod(const BuiltinCall& call) {
  requireArguments(call, 2, 2);
  DAG a = call.arguments[1], b = call.arguments[2];
  DAG result = engine::product(a, b);
  return result ? result : productByTerms(a, b);
}

DAG native::expandBigpow(const BuiltinCall& call) {
  requireArguments(call, 2, 2);
  DAG a = call.arguments[1], n = call.arguments[2];
  if (!isInteger(n) || consneg(n)) wrongParameters(call);
  if (DAG result = engine::powerOfSum(a, n)) return result;
  if (!isImmediate(n)) KernelException("object too large");
  checkSizeOfPower(a, immediateValue(n), 0);
  // By squares: what is nothing for the engine, as a sum with floats, has no better way.
  DAG result = cons1, square = a;
  for (std::int32_t k = immediateValue(n); k > 0; k >>= 1) {
    if ((k & 1) != 0) result = result == cons1 ? square : exprod(result, square);
    if (k > 1) square = exprod(square, square);
  }
  return result;
}

DAG native::expandBigdiv(const BuiltinCall& call) {
  requireArguments(call, 3, 3);
  DAG a = call.arguments[1], b = call.arguments[2], q;
  if (!isNameOrIndexed(call.arguments[3])) wrongParameters(call);
  switch (engine::quotient(a, b, q)) {
    case engine::Divided::no: return ini("false");
    case engine::Divided::yes: break;
    case engine::Divided::unknown:
      if (!divideByTerms(a, b, q)) return ini("false");
  }
  assign(evalname(call.arguments[3]), q);
  return ini("true");
}

DAG native::expandOperator(const BuiltinCall& call) {
  requireArguments(call, 1, 1);
  DAG f = call.arguments[1];
  if (!isTag(f, PROC)) return f;
  DAG body = bodyOf(f);
  if (isImmediate(body) || !isAmong(body, algebraicTags)) return f;
  DAG expanded = expand(body);
  return expanded == body ? f : simpl(withField(f, procBody, expanded));
}

// ---- greatest common divisors

namespace {

// The arguments of a user's call with names for what is no sum, product or power.
struct Polynomials {
  DAG frozen, equations;
};
Polynomials polynomialsOf(const BuiltinCall& call, DAG sequence) {
  Frozen frozen = freeze(sequence);
  for (Word i = 1; i < lengthOf(sequence); ++i)
    if (!typol(PolynomialForm::polynomial, frozen.expression[i], DAG(), anyCoefficient))
      KernelException("%1 expects polynomials, but received %2", call.self, sequence[i]);
  return {frozen.expression, frozen.thaw};
}

// Of expanded operands.
DAG gcdOf(DAG a, DAG b) {
  if (isZero(a)) return b;
  if (isZero(b)) return a;
  if (isInteger(a) && isInteger(b)) return simpl(igcd(a, b));
  if (hasfloat(a) || hasfloat(b)) return cons1;
  // Fractions: the primitive parts alone tell.
  DAG contentA = simpl(icontent(a)), contentB = simpl(icontent(b));
  if (!isInteger(contentA) || !isInteger(contentB)) {
    a = simpl(NewPROD(a, simpl(power(contentA, -1))));
    b = simpl(NewPROD(b, simpl(power(contentB, -1))));
  }
  if (isNumber(a) || isNumber(b)) {
    DAG content = simpl(igcd(simpl(icontent(a)), simpl(icontent(b))));
    return isInteger(content) ? content : cons1;
  }
  DAG result = engine::gcd(a, b);
  return result ? result : gcdByRemainders(a, b);
}

DAG quotientBy(DAG a, DAG g) {
  if (g == cons1) return a;
  DAG q;
  if (isZero(a)) return cons0;
  if (isNumber(g)) return simpl(NewPROD(a, simpl(power(g, -1))));
  DAG content = simpl(icontent(a));
  if (!isInteger(content)) {
    DAG primitive = simpl(NewPROD(a, simpl(power(content, -1))));
    return divide(primitive, g, q) ? simpl(NewPROD(content, q)) : simpl(NewPROD(a, simpl(new3(PROD, g, consm1))));
  }
  return divide(a, g, q) ? q : simpl(NewPROD(a, simpl(new3(PROD, g, consm1))));
}

}  // namespace

DAG native::normalGcd(const BuiltinCall& call) {
  requireArguments(call, 2, 2);
  return gcdOf(expand(call.arguments[1]), expand(call.arguments[2]));
}

DAG native::normalExpanded(const BuiltinCall& call) {
  requireArguments(call, 2, 2);
  DAG n = expand(call.arguments[1]), d = expand(call.arguments[2]);
  if (isZero(d)) KernelException("division by zero");
  DAG g = gcdOf(n, d);
  n = quotientBy(n, g);
  d = quotientBy(d, g);
  return simpl(NewPROD(n, simpl(new3(PROD, d, consm1))));
}

DAG native::gcd(const BuiltinCall& call) {
  requireArguments(call, 2, 4);
  Polynomials p = polynomialsOf(call, newSequence({call.arguments[1], call.arguments[2]}));
  DAG a = expand(p.frozen[1]), b = expand(p.frozen[2]), g = gcdOf(a, b);
  for (Word i = 3; i <= argumentCount(call); ++i)
    assign(evalname(call.arguments[i]), isZero(g) ? cons0 : thaw(quotientBy(i == 3 ? a : b, g), p.equations));
  return thaw(g, p.equations);
}

DAG native::lcm(const BuiltinCall& call) {
  Polynomials p = polynomialsOf(call, call.arguments);
  DAG result = cons1;
  for (Word i = 1; i <= argumentCount(call); ++i) {
    DAG next = expand(p.frozen[i]);
    if (isZero(next)) return cons0;
    result = result == cons1 ? next : exprod(quotientBy(result, gcdOf(result, next)), next);
  }
  return thaw(isNumeric(result) ? simpl(absalg(result)) : result, p.equations);
}

}  // namespace korel
