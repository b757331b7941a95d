#include "algebra/polynomials/fractions.h"

#include <algorithm>
#include <new>

#include "algebra/engine/coprime_test.h"
#include "algebra/engine/polynomial_procedures.h"
#include "algebra/polynomial_types.h"
#include "algebra/polynomials/coefficients.h"
#include "algebra/polynomials/divide.h"
#include "algebra/polynomials/expand.h"
#include "algebra/polynomials/indeterminates.h"
#include "algebra/polynomials/integer_polynomials.h"
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
#include "store/pairs.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- products of powers: EXPSEQ (base, exponent, base, exponent, ...); one whose exponent is 0 is out

DAG emptyProduct() { return new1(EXPSEQ); }

Word positionOf(DAG product, DAG base) {
  for (Word i = 1; i < lengthOf(product); i += 2)
    if (product[i] == base) return i;
  return 0;
}

/// Takes base^exponent in, an exponent not below 0.
void putFactor(DAG& product, DAG base, DAG exponent) {
  if (exponent == cons0) return;
  if (Word at = positionOf(product, base)) product[at + 1] = simpl(add(product[at + 1], exponent));
  else product = Append3(product, base, exponent);
}

/// The product as an expression, times `number`.
DAG expressionOf(DAG number, DAG product) {
  DAG powers = newl2(lengthOf(product), PROD);
  Word at = 1;
  for (Word i = 1; i < lengthOf(product); i += 2) {
    if (product[i + 1] == cons0) continue;
    powers[at++] = product[i];
    powers[at++] = product[i + 1];
  }
  shorten(powers, lengthOf(powers), at);
  powers = simpl(powers);
  return number == cons1 ? powers : simpl(NewPROD(number, powers));
}

bool isMonomialBase(DAG base) { return isNameOrIndexed(base); }

// ---- numbers

struct NumberParts {
  DAG numerator, denominator;
};

NumberParts partsOfNumber(DAG number) {
  if (isTag(number, RATIONAL)) return {number[1], number[2]};
  if (!isTag(number, COMPLEX)) return {number, cons1};
  DAG common = cons1;
  for (Word i = 1; i < lengthOf(number); ++i)
    if (isTag(number[i], RATIONAL)) {
      DAG reduced[2];
      gcdsimpl(common, number[i][2], reduced);
      common = simpl(mul(reduced[0], number[i][2]));
    }
  return {simpl(mul(number, common)), common};
}

DAG inverseNumber(DAG number) {
  if (isZero(number)) KernelException("division by zero");
  return simpl(new3(PROD, number, consm1));
}

// ---- fractions

Fraction constantFraction(DAG number) { return {number, emptyProduct(), emptyProduct()}; }

/// A polynomial as its content times a primitive one.
Fraction polynomialFraction(DAG p) {
  Fraction result = constantFraction(cons1);
  if (isNumber(p)) {
    result.number = p;
  } else {
    DAG content = simpl(icontent(p));
    if (content != cons1 && content != cons0) {
      result.number = content;
      p = simpl(NewPROD(inverseNumber(content), p));
    }
    putFactor(result.numerators, p, cons1);
  }
  return result;
}

Fraction fractionOf(DAG x);

/// Takes part^exponent into `result`; of equal bases above and below the smaller power cancels.
void takePower(Fraction& result, const Fraction& part, DAG exponent) {
  const bool inverse = consneg(exponent);
  DAG e = inverse ? simpl(negate(exponent)) : exponent;
  if (part.number != cons1) {
    DAG number = simpl(new3(PROD, part.number, exponent));
    if (!isNumber(number)) KernelException("invalid arguments to normal/numden");
    result.number = simpl(mul(result.number, number));
  }
  for (int side = 0; side < 2; ++side) {
    DAG factors = side == 0 ? part.numerators : part.denominators;
    const bool below = (side == 1) != inverse;
    for (Word i = 1; i < lengthOf(factors); i += 2) {
      DAG power = simpl(mul(factors[i + 1], e));
      DAG opposite = below ? result.numerators : result.denominators;
      if (Word at = positionOf(opposite, factors[i])) {
        DAG common = compcon(opposite[at + 1], power) < 0 ? opposite[at + 1] : power;
        opposite[at + 1] = simpl(add(opposite[at + 1], negate(common)));
        power = simpl(add(power, negate(common)));
      }
      putFactor(below ? result.denominators : result.numerators, factors[i], power);
    }
  }
}

Fraction fractionOfProduct(DAG x) {
  Fraction result = constantFraction(cons1);
  for (Word i = 1; i < lengthOf(x); i += 2) {
    if (!isInteger(x[i + 1])) KernelException("invalid arguments to normal/numden");
    takePower(result, fractionOf(x[i]), x[i + 1]);
  }
  return result;
}

// The factors of `whole` that `part` lacks.
DAG missingFactors(DAG whole, DAG part) {
  DAG result = emptyProduct();
  for (Word i = 1; i < lengthOf(whole); i += 2) {
    Word at = positionOf(part, whole[i]);
    putFactor(result, whole[i], at == 0 ? whole[i + 1] : simpl(add(whole[i + 1], negate(part[at + 1]))));
  }
  return result;
}

DAG commonDenominators(DAG a, DAG b) {
  DAG result = CopyAlg(a);
  for (Word i = 1; i < lengthOf(b); i += 2) {
    Word at = positionOf(result, b[i]);
    if (at == 0) result = Append3(result, b[i], b[i + 1]);
    else if (compcon(b[i + 1], result[at + 1]) > 0) result[at + 1] = b[i + 1];
  }
  return result;
}

// ---- sums of fractions

std::int64_t termCount(DAG p) { return isTag(p, SUM) ? pairCount(p) : 1; }

// Products of more terms than these are the engine's; those of fewer keep the order of their terms.
constexpr std::int64_t fewTerms = 25;

// a * b, expanded, for expanded operands.
DAG productOfExpanded(DAG a, DAG b) {
  if (termCount(a) * termCount(b) > fewTerms)
    if (DAG p = engine::product(a, b)) return p;
  return expand(simpl(NewPROD(a, b)));
}

// The factors from `first` to before `end`, multiplied out, by halves.
DAG productOfFactors(DAG factors, Word first, Word end) {
  checkStack();
  std::int64_t terms = 1;
  for (Word i = first; i < end && terms <= fewTerms; i += 2) terms *= termCount(factors[i]);
  if (end - first <= 2 || terms <= fewTerms)
    return expand(expressionOf(cons1, copysub(factors, first - 1, end - first)));
  const Word middle = first + ((end - first) / 4) * 2;
  return productOfExpanded(productOfFactors(factors, first, middle), productOfFactors(factors, middle, end));
}
DAG productOfFactors(DAG factors) { return productOfFactors(factors, 1, lengthOf(factors)); }

// A fraction, and the two factors of its expanded denominator where they are known.
struct Summand {
  Fraction fraction;
  DAG factors[2] = {};

  DAG denominator() const {
    return factors[0] ? productOfExpanded(factors[0], factors[1]) : productOfFactors(fraction.denominators);
  }
};

Summand sumOf(const Summand& a, const Summand& b) {
  const Fraction &f = a.fraction, &g = b.fraction;
  DAG common = commonDenominators(f.denominators, g.denominators);
  const bool shareNone = lengthOf(common) == lengthOf(f.denominators) + lengthOf(g.denominators) - 1;
  DAG above[] = {expand(expressionOf(f.number, f.numerators)), expand(expressionOf(g.number, g.numerators))};
  DAG missing[] = {shareNone ? b.denominator() : productOfFactors(missingFactors(common, f.denominators)),
                   shareNone ? a.denominator() : productOfFactors(missingFactors(common, g.denominators))};
  DAG p;
  if (std::max(termCount(above[0]) * termCount(missing[0]), termCount(above[1]) * termCount(missing[1])) > fewTerms)
    p = engine::sumOfProducts(above[0], missing[0], above[1], missing[1]);
  if (!p) {
    p = simpl(
        new5(SUM, productOfExpanded(above[0], missing[0]), cons1, productOfExpanded(above[1], missing[1]), cons1));
  }
  Summand result{polynomialFraction(p), {}};
  if (isNumber(p) && isZero(p)) return result;
  result.fraction.denominators = common;
  if (shareNone && termCount(missing[0]) * termCount(missing[1]) > fewTerms) std::copy_n(missing, 2, result.factors);
  return result;
}

// The terms from pair `first` to before `end`, by halves: numerators stay short as long as possible.
Summand fractionOfTerms(DAG sum, Word first, Word end) {
  checkStack();
  if (end - first > 2) {
    const Word middle = first + ((end - first) / 4) * 2;
    return sumOf(fractionOfTerms(sum, first, middle), fractionOfTerms(sum, middle, end));
  }
  Summand result{fractionOf(sum[first]), {}};
  result.fraction.number = simpl(mul(result.fraction.number, sum[first + 1]));
  return result;
}

// A sum without a negative power, at any depth.
bool isPolynomialAsWritten(DAG x) {
  if (!isTag(x, SUM) && !isTag(x, PROD)) return true;
  for (Word i = 1; i < lengthOf(x); i += 2)
    if ((isTag(x, PROD) && consneg(x[i + 1])) || !isPolynomialAsWritten(x[i])) return false;
  return true;
}

Fraction fractionOf(DAG x) {
  checkStack();
  passWork(objectSteps);
  if (isNumber(x)) return constantFraction(x);
  if (isTag(x, PROD)) return fractionOfProduct(x);
  if (!isTag(x, SUM)) return polynomialFraction(x);
  if (lengthOf(x) > 3 && isPolynomialAsWritten(x)) return polynomialFraction(expand(x));
  return fractionOfTerms(x, 1, lengthOf(x)).fraction;
}

// ---- lowest terms

// f^i above and g^j below, f and g with the factor h: f = h * f1, g = h * g1.
void cancelFactor(Fraction& fraction, Word above, Word below, DAG h, DAG f1, DAG g1) {
  DAG i = fraction.numerators[above + 1], j = fraction.denominators[below + 1];
  fraction.numerators[above + 1] = cons0;
  fraction.denominators[below + 1] = cons0;
  takePower(fraction, polynomialFraction(f1), i);
  takePower(fraction, polynomialFraction(g1), simpl(negate(j)));
  takePower(fraction, polynomialFraction(h), simpl(add(i, negate(j))));
}

// A variable as one factor and a sum as the other: the power of the variable that all terms have in common.
bool cancelVariable(Fraction& fraction, Word above, Word below) {
  DAG f = fraction.numerators[above], g = fraction.denominators[below];
  const bool variableBelow = isMonomialBase(g);
  DAG exponent;
  DAG rest = removeldeg(variableBelow ? f : g, variableBelow ? g : f, exponent);
  if (compcon(exponent, cons0) <= 0) return false;
  // sum^k = (variable^exponent * rest)^k
  DAG& power = variableBelow ? fraction.numerators[above + 1] : fraction.denominators[below + 1];
  DAG k = variableBelow ? power : simpl(negate(power));
  power = cons0;
  takePower(fraction, polynomialFraction(rest), k);
  takePower(fraction, polynomialFraction(variableBelow ? g : f), simpl(mul(exponent, k)));
  return true;
}

// A polynomial over the rational numbers with a leading coefficient below 0.
bool isNegative(DAG p) {
  return typol(PolynomialForm::polynomial, p, DAG(), rationalTags) && signOf(p, indetsSequence(p)) == consm1;
}

bool cancelPair(Fraction& fraction, Word above, Word below) {
  DAG f = fraction.numerators[above], g = fraction.denominators[below];
  if (isMonomialBase(f) && isMonomialBase(g)) return false;
  if (isMonomialBase(f) || isMonomialBase(g)) return cancelVariable(fraction, above, below);
  DAG h = evalsysf("normal/gcd", newSequence({f, g}));
  DAG f1, g1;
  if (isNumber(h) || !divide(f, h, f1) || !divide(g, h, g1)) return false;
  if (isNegative(g1)) {
    for (DAG* part : {&h, &f1, &g1}) *part = simpl(NewPROD(consm1, *part));
  }
  cancelFactor(fraction, above, below, h, f1, g1);
  return true;
}

// Cancels one common factor, if there is one. Most pairs have none, which an image shows.
bool cancelOnce(Fraction& fraction) {
  engine::Arena arena;
  const Word n = lengthOf(fraction.numerators) / 2;
  auto* tests = arena.make<engine::CoprimeTest>(n);
  for (Word i = 0; i < n; ++i) new (&tests[i]) engine::CoprimeTest(arena, fraction.numerators[2 * i + 1]);
  for (Word below = 1; below < lengthOf(fraction.denominators); below += 2) {
    DAG g = fraction.denominators[below];
    if (fraction.denominators[below + 1] == cons0) continue;
    for (Word above = 1; above < lengthOf(fraction.numerators); above += 2) {
      if (fraction.numerators[above + 1] == cons0) continue;
      if (isTag(g, SUM) && tests[above / 2].isCoprimeTo(g)) continue;
      if (cancelPair(fraction, above, below)) return true;
    }
  }
  return false;
}

}  // namespace

Fraction fractionInLowestTerms(DAG x) {
  Fraction result = fractionOf(x);
  if (isZero(result.number)) return constantFraction(result.number);
  while (cancelOnce(result)) {
  }
  return result;
}

DAG numeratorOf(const Fraction& fraction) {
  return expressionOf(partsOfNumber(fraction.number).numerator, fraction.numerators);
}
DAG denominatorOf(const Fraction& fraction) {
  return expressionOf(partsOfNumber(fraction.number).denominator, fraction.denominators);
}
DAG quotientOf(const Fraction& fraction) {
  DAG below = expressionOf(cons1, fraction.denominators);
  DAG above = expressionOf(cons1, fraction.numerators);
  if (below != cons1) above = simpl(NewPROD(above, simpl(new3(PROD, below, consm1))));
  return fraction.number == cons1 ? above : simpl(NewPROD(fraction.number, above));
}

}  // namespace korel
