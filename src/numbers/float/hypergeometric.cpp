// The hypergeometric series, summed in integers.
//
// The sum of (a1)_k ... (ap)_k / ((b1)_k ... (bq)_k) z^k / k! is formed with terms scaled by 10^s and
// truncated. Each term follows from the one before by the ratio
//
//     (a1 + k-1) ... (ap + k-1)           z
//     -------------------------- * P/Q * ---
//     (b1 + k-1) ... (bq + k-1)           k
//
// in which a parameter p/q stands as the pair (p, q), its numerator growing by q a step, and P and Q
// collect what is the same for all steps. When the sum cancels more digits than s has to spare, it is
// formed again with a larger s.

#include "numbers/float/hypergeometric.h"

#include <algorithm>

#include "eval/evaluate/evalf.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/float/float_rounding.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_space.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

DAG times(DAG a, DAG b) { return mulint(a, b); }

// ---- parameters

// A parameter as an exact number.
DAG exactParameter(DAG x, const char* message) {
  if (!isNumeric(x)) x = evalf(x);
  if (isTag(x, HFLOAT)) x = evalf(x);
  if (!isNumeric(x) || (isSoftFloat(x) && isSingular(x))) KernelException(message);
  if (isSoftFloat(x)) x = floatrat(x);
  if (!isRationalNumber(x)) KernelException(message);
  return x;
}

bool isNonpositiveInteger(DAG x) { return isInteger(x) && (isZero(x) || consneg(x)); }

// The parameters of one list in an EXPSEQ of pairs p, q; the product of all q.
struct Parameters {
  DAG pairs;
  DAG denominators = cons1;
  bool hasNonpositive = false;

  Word count() const { return (lengthOf(pairs) - 1) / 2; }
  DAG& p(Word i) const { return pairs[2 * i + 1]; }
  DAG& q(Word i) const { return pairs[2 * i + 2]; }
};

Parameters readParameters(DAG list, const char* message) {
  DAG body = list[1];
  Word n = lengthOf(body) - 1;
  Parameters result;
  result.pairs = newl2(2 * n + 1, EXPSEQ);
  for (Word i = 0; i < n; ++i) {
    DAG x = exactParameter(body[i + 1], message);
    const bool isFraction = !isInteger(x);
    result.p(i) = isFraction ? x[1] : x == consm0 ? cons0 : x;
    result.q(i) = isFraction ? x[2] : cons1;
    if (isFraction) result.denominators = times(result.denominators, x[2]);
    if (isNonpositiveInteger(x)) result.hasNonpositive = true;
  }
  return result;
}

bool sameInteger(DAG a, DAG b) {
  return tagOf(a) == tagOf(b) && isImmediate(a) == isImmediate(b) && compint(a, b) == 0;
}

// A parameter in both lists has no effect.
void removeCommonPairs(Parameters& a, Parameters& b) {
  for (Word i = 0; i < a.count();) {
    Word k = 0;
    while (k < b.count() && !(sameInteger(a.p(i), b.p(k)) && sameInteger(a.q(i), b.q(k)))) ++k;
    if (k == b.count()) {
      ++i;
      continue;
    }
    // The denominators cancel with the pair.
    DAG rest;
    a.denominators = IntegerDivide(a.denominators, a.q(i), &rest);
    b.denominators = IntegerDivide(b.denominators, b.q(k), &rest);
    shrinkn(a.pairs, 2 * i, 2);
    shrinkn(b.pairs, 2 * k, 2);
  }
}

// ---- the argument: multiplier, divisor, and a power of ten

struct Argument {
  DAG numerator = cons1, denominator = cons1;
  std::int64_t scale = 0;
};

Argument splitArgument(DAG z) {
  if (isInteger(z)) return {z, cons1, 0};
  if (hasTag(z, RATIONAL)) return {z[1], z[2], 0};
  return {mantissaOf(z), cons1, exponentValue(exponentOf(z))};
}

// ---- summing

enum class Ending { converged, outOfSpace, zeroDenominator };

struct Sum {
  DAG value;
  Ending ending;
  std::int64_t terms;
};

// Digits that the space for a product of a term allows.
std::int64_t digitSpace(DAG multiplier, const Parameters& a, std::int64_t scale) {
  std::int64_t space = ilength(multiplier) + 41 + scale - 1;
  for (Word i = 0; i < a.count(); ++i) space += std::max(ilength(a.p(i)), ilength(a.q(i)) + 4);
  return space;
}

// Product of the parameters at their present step.
DAG productOfSteps(DAG start, const Parameters& parameters) {
  for (Word i = 0; i < parameters.count(); ++i) start = times(start, parameters.p(i));
  return start;
}

void advance(const Parameters& parameters) {
  for (Word i = 0; i < parameters.count(); ++i) parameters.p(i) = addint(parameters.p(i), parameters.q(i));
}

Sum sumSeries(const Parameters& a, const Parameters& b, DAG multiplier, DAG divisor, std::int64_t shift,
              std::int64_t scale, std::int64_t limit) {
  const std::int64_t space = digitSpace(multiplier, a, scale);
  const std::int64_t mostTerms = precisionDigits() + 9999;
  if (scale >= maxDecimalDigits) return {cons0, Ending::outOfSpace, 0};
  DAG term = times10p(cons1, scale), sum = times10p(cons1, scale);
  std::int64_t k = 1;
  for (;; ++k) {
    if (limit != 0 && k >= limit) break;
    if (limit == 0 && k > mostTerms) KernelException("Too many iterations without convergence");
    if (TestInterrupt()) jumpback();
    DAG numerators = productOfSteps(multiplier, a), denominators = productOfSteps(divisor, b);
    if (denominators == cons0) return {sum, Ending::zeroDenominator, k};
    const std::int64_t length = ilength(numerators) + ilength(term);
    if (length > space || length + shift > maxDecimalDigits) return {sum, Ending::outOfSpace, k};
    DAG product = times(term, numerators);
    if (product != term) discard(term);
    if (shift != 0) {
      DAG shifted = shift10p(product, shift);
      if (shifted != product && product != numerators) discard(product);
      product = shifted;
    }
    DAG remainder;
    term = IntegerDivide(product, times(denominators, NewInteger(k)), &remainder);
    if (remainder != product) discard(remainder);
    if (product != term && product != numerators) discard(product);
    if (term == cons0) break;
    DAG next = addint(sum, term);
    discard(sum);
    // After a sum of 0 the term itself comes back, which is given up before the sum is.
    sum = next == term ? CopyAlg(term) : next;
    advance(a);
    advance(b);
  }
  return {sum, Ending::converged, k};
}

std::int64_t termLimit(DAG terms) {
  if (terms == cons0) return 0;
  if (!isInteger(terms) || consneg(terms) || isZero(terms))
    KernelException("optional fourth argument must be a positive integer");
  return FitIntoLongLong(terms) ? LongLongValue(terms) : INT64_MAX;
}

DAG askLibrary(DAG a, DAG b, DAG z) { return evalsysf("evalf/hypergeom/converg", new4(EXPSEQ, a, b, z)); }

int guardDigits(std::int64_t terms) { return terms < 32 ? 1 : terms < 317 ? 2 : 3; }

// The sum with `guard` digits more than asked for, and again with more of them when so many have cancelled.
DAG guardedSum(DAG a, DAG b, DAG z, DAG terms, std::int64_t guard) {
  if (isZero(z)) return consf1;
  if (!isObject(a) || !hasTag(a, LIST)) KernelException("first argument of hypergeom must be a list");
  if (!isObject(b) || !hasTag(b, LIST)) KernelException("second argument of hypergeom must be a list");
  const std::int64_t limit = termLimit(terms);
  Parameters numerators = readParameters(a, "non-numeric numerator");
  Parameters denominators = readParameters(b, "non-numeric denominator");
  if (limit == 0 && denominators.hasNonpositive) return askLibrary(a, b, z);
  if (!isNumeric(z) || hasTag(z, HFLOAT)) z = evalf(z);
  if (!isNumeric(z) || (isSoftFloat(z) && isSingular(z))) KernelException("hypergeom argument (third) must be numeric");
  if (isZero(z)) return consf1;
  const bool sameLength = numerators.count() == denominators.count();
  if (!numerators.hasNonpositive) {
    Word p = numerators.count(), q = denominators.count();
    int size = p == q + 1 ? compcon(absalg(z), cons1) : 0;
    if (p > q + 1 || size > 0) KernelException("series is divergent");
    if (p == q + 1 && size == 0) return askLibrary(a, b, z);
  }

  removeCommonPairs(numerators, denominators);
  Argument argument = splitArgument(z);
  DAG ratio[2];
  gcdsimpl(times(denominators.denominators, argument.numerator), times(numerators.denominators, argument.denominator),
           ratio);

  const std::int64_t digits = precisionDigits();
  std::int64_t margin = consneg(z) ? 5 : 3;
  if (sameLength) margin *= 2;
  const std::int64_t scale = digits + guard + margin;
  Sum sum = sumSeries(numerators, denominators, ratio[0], ratio[1], argument.scale, scale, limit);
  if (sum.ending == Ending::outOfSpace) return ini("FAIL");
  if (sum.ending == Ending::zeroDenominator)
    return TriggerNumericEvent(divisionByZero, naminstall("hypergeom"), z, DAG(), consfinf, true);

  // Digits that cancellation has cost beyond the guard; so many more in a second run.
  std::int64_t missing = digits + guardDigits(sum.terms) - ilength(sum.value) + 1;
  if (missing < 1 || (guard >= 30 && 10 * digits <= guard)) return evalf(newFLOAT(sum.value, NewInteger(-scale)));
  return guardedSum(a, b, z, terms, guard + missing + 6);
}

}  // namespace

DAG hypergeom(DAG a, DAG b, DAG z, DAG terms) { return guardedSum(a, b, z, terms, 0); }

}  // namespace korel
