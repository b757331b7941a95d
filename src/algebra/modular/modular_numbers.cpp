// Numbers behind the modular polynomials: the Chinese remainder theorem, primes, pseudo-random numbers.

#include "algebra/modular/modular_polynomials.h"
#include "algebra/modular/modular_rings.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/primes/primality.h"
#include "store/objects.h"

namespace korel {

// ---- the Chinese remainder theorem, in mixed radix (Garner)

DAG mChrem(DAG residues, DAG moduli) {
  DAG r = residues[1], m = moduli[1];
  const Word n = lengthOf(r);
  if (lengthOf(m) != n) KernelException("list of moduli and residues must be the same length");
  for (Word i = 1; i < n; ++i)
    if (!isInteger(r[i]) || !isInteger(m[i]) || compcon(m[i], cons1) <= 0 || compcon(r[i], m[i]) >= 0)
      KernelException("modp1: invalid arguments");
  DAG sum = cons0, product = cons1;
  for (Word i = 1; i < n; ++i) {
    DAG inverse = mInverse(product, m[i]);
    if (inverse == cons0) KernelException("moduli are not relatively prime");
    DAG digit = imod(mul(add(r[i], negate(sum)), inverse), m[i], false);
    sum = add(sum, mul(digit, product));
    product = mul(product, m[i]);
    passWork(isImmediate(product) ? 10 : lengthOf(product));
  }
  return simpl(sum);
}

// ---- primes

bool isPrimeModulus(DAG n) {
  if (compcon(n, cons1) <= 0) return false;
  const Answer answer = isPrimeNatural(naturalOf(n));
  if (answer == Answer::stopped) endOperation();
  return answer == Answer::yes;
}

DAG mGetPrime(DAG n) {
  // The first prime of a walk, and one for those that have gone below four digits.
  constexpr std::int32_t first = largestRawModulus, restart = 99999989, least = 1010;
  if (compcon(n, immediate(2)) < 0) return immediate(first);
  if (compcon(n, immediate(least)) < 0) return immediate(restart);
  DAG candidate = simpl(add(n, isodd(n) ? immediate(-2) : consm1));
  while (!isPrimeModulus(candidate)) {
    candidate = simpl(add(candidate, immediate(-2)));
    passWork(100);
  }
  return candidate;
}

// ---- pseudo-random numbers

namespace {

constexpr Word randomFactor = 21216, randomModulus = 46337;
Word randomSeed = 1;

}  // namespace

void ResetModRand() { randomSeed = 1; }

Word mRand(Word k) {
  randomSeed = randomSeed * randomFactor % randomModulus;
  return randomSeed % k;
}

DAG mRandpoly(DAG x, std::int64_t degree, DAG m) {
  DAG a = newDense(x, m, degree);
  if (isHardwareModulus(m)) {
    const auto bound = static_cast<Word>(immediateValue(m));
    for (std::int64_t i = degree - 1; i >= 0; --i) rawField(a, firstCoefficient + i) = mRand(bound);
    Word top;
    while ((top = mRand(bound)) == 0) {
    }
    rawField(a, firstCoefficient + degree) = top;
    return finishedDense(a);
  }
  DAG generator = evalsysf("rand", m);
  if (!isTag(generator, PROC)) KernelException("invalid result from rand");
  DAG call = simpl(new3(FUNCTION, generator, null));
  auto draw = [&] {
    DAG c = simpl(eval(call));
    if (!isInteger(c) || consneg(c) || compcon(c, m) >= 0) KernelException("invalid result from rand");
    return c;
  };
  for (std::int64_t i = degree - 1; i >= 0; --i) a[firstCoefficient + i] = draw();
  DAG top;
  while ((top = draw()) == cons0) {
  }
  a[firstCoefficient + degree] = top;
  return finishedDense(a);
}

}  // namespace korel
