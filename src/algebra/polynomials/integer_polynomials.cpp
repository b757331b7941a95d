#include "algebra/polynomials/integer_polynomials.h"

#include "algebra/polynomial_types.h"
#include "algebra/polynomials/coefficients.h"
#include "algebra/polynomials/indeterminates.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
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

// ---- genpoly

namespace {

// The terms d_i x^i under construction, and the base with its powers b^(2^k).
struct Digits {
  static constexpr int mostPowers = 40;
  DAG b, x;
  DAG sum;
  DAG powers[mostPowers];
  int known;

  DAG power(int k) {
    for (; known <= k; ++known) powers[known] = known == 0 ? b : simpl(mul(powers[known - 1], powers[known - 1]));
    return powers[k];
  }
  void put(DAG digit, std::int64_t i) {
    if (digit == cons0) return;
    DAG term = i == 0 ? digit : i == 1 ? x : simpl(new3(PROD, x, NewInteger(i)));
    sum = Append3(sum, term, i == 0 ? cons1 : digit);
  }
};

/// Puts the 2^k lowest digits of `n`, which stand from position `at` on; what is left of `n` above them.
///
/// The lower half depends on the residue of n alone: it is taken apart by itself, and its carry joins the quotient.
DAG putDigits(Digits& digits, DAG n, int k, std::int64_t at) {
  if (n == cons0) return n;
  passWork(objectSteps);
  DAG quotient;
  if (k == 0) {
    DAG digit = simpl(imod(n, digits.b, true));
    digits.put(digit, at);
    rem(add(n, negate(digit)), digits.b, &quotient);
    return simpl(quotient);
  }
  DAG low = simpl(rem(n, digits.power(k - 1), &quotient));
  DAG carry = putDigits(digits, low, k - 1, at);
  return putDigits(digits, simpl(add(quotient, carry)), k - 1, at + (std::int64_t{1} << (k - 1)));
}

// Digits d_i, so that n is the sum of d_i b^i, each the symmetric residue of what is left.
DAG digitPolynomial(DAG n, DAG b, DAG x) {
  if (n == cons0) return cons0;
  // In base 2 the digit of an odd number is 1: a negative one would never come to its end.
  if (consneg(n) && eq(absalg(b), 2) && !consneg(b)) return simpl(new3(SUM, digitPolynomial(negate(n), b, x), consm1));
  Digits digits{b, x, new1(SUM), {}, 0};
  int k = 0;
  for (DAG size = absalg(n); compcon(absalg(digits.power(k)), size) <= 0;) ++k;
  std::int64_t at = 0;
  for (; n != cons0; k = 0) {
    n = putDigits(digits, n, k, at);
    at += std::int64_t{1} << k;
  }
  return simpl(digits.sum);
}

}  // namespace

DAG genpoly(DAG n, DAG b, DAG x) {
  if (isInteger(n)) return digitPolynomial(n, b, x);
  if (!isTag(n, SUM)) return n;
  DAG sum = newl2(lengthOf(n), SUM);
  for (Word i = 1; i < lengthOf(n); i += 2) {
    DAG term = n[i], coefficient = n[i + 1];
    const bool isConstant = isInteger(term) && isInteger(coefficient);
    if (!isInteger(coefficient)) {
      sum[i] = term;
      sum[i + 1] = coefficient;
      continue;
    }
    DAG digits = digitPolynomial(isConstant ? simpl(mul(term, coefficient)) : coefficient, b, x);
    sum[i] = isConstant ? digits : simpl(NewPROD(digits, term));
    sum[i + 1] = cons1;
  }
  return simpl(sum);
}

DAG builtin::genpoly(const BuiltinCall& call) {
  if (argumentCount(call) != 3) wrongParameters(call);
  DAG n = call.arguments[1], b = call.arguments[2];
  if (!isInteger(b) || compcon(absalg(b), cons1) <= 0 || (isNumber(n) && !isInteger(n))) wrongParameters(call);
  return korel::genpoly(n, b, call.arguments[3]);
}

// ---- maxnorm

DAG maxnorm(DAG p) {
  if (isNumeric(p)) return absalg(p);
  checkStack();
  passWork(objectSteps);
  switch (tagOf(p)) {
    case NAME: case TABLEREF: return cons1;
    case SUM: {
      DAG largest = cons0;
      for (Word i = 1; i < lengthOf(p); i += 2) {
        if (!isNumeric(p[i + 1])) KernelException("unable to compute maxnorm of %1", p);
        DAG norm = simpl(mul(absalg(p[i + 1]), maxnorm(p[i])));
        if (compcon(norm, largest) > 0) largest = norm;
      }
      return largest;
    }
    case PROD: {
      DAG product = cons1;
      for (Word i = 1; i < lengthOf(p); i += 2) {
        if (!isImmediate(p[i + 1])) KernelException("unable to compute maxnorm of %1", p);
        product = simpl(mul(product, simpl(power(maxnorm(p[i]), immediateValue(p[i + 1])))));
      }
      return product;
    }
    case FUNCTION:
      if (isNameOrIndexed(p[1]))
        if (DAG norm = evalextf("maxnorm/", p[1], p[2]); norm != null) return norm;
      [[fallthrough]];
    default: KernelException("unable to compute maxnorm of %1", p);
  }
}

DAG builtin::maxnorm(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return simpl(korel::maxnorm(call.arguments[1]));
}

// ---- powers of a variable and contents

namespace {

// Exponent of x in a term, an integer; 0 where x isn't a factor by itself.
DAG exponentIn(DAG term, DAG x) {
  if (term == x) return cons1;
  if (!isTag(term, PROD)) return cons0;
  for (Word i = 1; i < lengthOf(term); i += 2)
    if (term[i] == x && isInteger(term[i + 1])) return term[i + 1];
  return cons0;
}

}  // namespace

DAG removeldeg(DAG p, DAG x, DAG& exponent) {
  DAG sum = isTag(p, SUM) ? p : new3(SUM, p, cons1);
  exponent = exponentIn(sum[1], x);
  for (Word i = 3; i < lengthOf(sum); i += 2) {
    DAG e = exponentIn(sum[i], x);
    if (compcon(e, exponent) < 0) exponent = e;
  }
  if (exponent == cons0) return p;
  DAG factor = simpl(new3(PROD, x, simpl(negate(exponent))));
  DAG result = newl2(lengthOf(sum), SUM);
  for (Word i = 1; i < lengthOf(sum); i += 2) {
    result[i] = simpl(NewPROD(sum[i], factor));
    result[i + 1] = sum[i + 1];
  }
  return simpl(result);
}

DAG icontsign(DAG p) {
  if (!typol(PolynomialForm::rationalFunction, p, DAG(), anyCoefficient)) notimpl("icontsign");
  DAG variables = indetsSequence(p), powers = cons1;
  for (Word i = 1; i < lengthOf(variables); ++i) {
    DAG exponent;
    p = removeldeg(p, variables[i], exponent);
    powers = simpl(NewPROD(powers, simpl(new3(PROD, variables[i], exponent))));
  }
  DAG content = simpl(icontent(p));
  if (signOf(p, indetsSequence(p)) == consm1) content = simpl(negate(content));
  return simpl(NewPROD(content, powers));
}

}  // namespace korel
