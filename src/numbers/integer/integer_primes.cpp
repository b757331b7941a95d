// Small primes, and one step of factorisation by continued fractions.

#include "numbers/integer/integer.h"

#include "eval/simplify/simplify.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

bool isPrime(std::int32_t n) {
  if (n % 2 == 0) return n == 2;
  for (std::int64_t d = 3; d * d <= n; d += 2)
    if (n % d == 0) return false;
  return true;
}

std::int32_t firstPrime(std::int32_t n) {
  if (n % 2 == 0) ++n;
  while (!isPrime(n)) n += 2;
  return n;
}

// ---- continued fraction of a square root (Morrison and Brillhart, "A method of factoring and the
// factorization of F7", section 2)
//
// With (g + P) / Q the complete quotient, its integer part a and remainder r:
//
//   A(i+1) = (A(i-1) + a A(i)) mod N
//   Q(i+1) = Q(i-1) + a (r(i) - r(i-1))
//   A(i+1)^2 = (-1)^(i+1) Q(i+1) modulo N
//
// The state holds r(i-1) in the place of P, since g + P = 2g - r(i-1).

namespace {

struct Expansion {
  DAG aBefore, a, qBefore, q, rest;  // A(i-1), A(i), Q(i-1), Q(i), r(i-1)
};

void advance(Expansion& e, DAG twiceG, DAG n) {
  DAG rest;
  DAG partial = IntegerDivide(addint(twiceG, complint(e.rest)), e.q, &rest);
  DAG a = imod(addint(e.aBefore, mulint(partial, e.a)), n, false);
  DAG q = addint(e.qBefore, mulint(partial, addint(rest, complint(e.rest))));
  e = {e.a, a, e.q, q, rest};
}

/// The part of q that is made of the primes in `product`, up to the eighth power of each.
DAG smoothPart(DAG product, DAG q) {
  DAG s = igcd(product, q);
  for (int i = 0; i < 3; ++i) s = igcd(mulint(s, s), q);
  return s;
}

}  // namespace

DAG MorrBrilCull(DAG state) {
  Expansion e{state[1], state[2], state[3], state[4], state[5]};
  DAG g = state[6], n = state[7], product = state[9], bound = state[10];
  std::int64_t count = LongLongValue(state[8]);
  DAG twiceG = addint(g, g);
  DAG relations = newl2(8, EXPSEQ);
  Word found = 1;
  // The expansion of the root of a square ends with a Q of 0.
  for (std::int64_t i = 0; i < count && !isZeroImmediate(e.q); i += 2) {
    for (bool odd : {true, false}) {
      if (isZeroImmediate(e.q)) break;
      passWork(objectSteps + ilength(n) + ilength(e.q));
      advance(e, twiceG, n);
      DAG s = smoothPart(product, e.q), rest;
      if (isZeroImmediate(s)) break;  // no primes are asked about
      if (compint(IntegerDivide(e.q, s, &rest), bound) > 0) continue;
      DAG relation = newSequence({e.a, odd ? complint(e.q) : e.q, s});
      if (found == lengthOf(relations)) relations = enlarge(relations, found);
      relations[found++] = simpl(new2(LIST, relation));
    }
  }
  shorten(relations, lengthOf(relations), found);
  DAG set = simpl(new2(SET, relations));
  return simpl(new2(LIST, newSequence({e.aBefore, e.a, e.qBefore, e.q, e.rest, set})));
}

}  // namespace korel
