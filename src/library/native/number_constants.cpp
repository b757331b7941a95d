// Pi and e in decimal, as integers of so many places: series with rational terms, summed exactly by halves (binary
// splitting: B. Haible and T. Papanikolaou, "Fast multiprecision evaluation of series of rational numbers", 1998) and
// divided once. The other constants come from the binary floats, whose sums are cut as they grow.

#include "library/native/number_constants.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "frame/environment.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/float/float.h"
#include "numbers/functions/real.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

namespace {

DAG integer(std::int64_t n) { return NewInteger(n); }
DAG sum(DAG a, DAG b) { return addint(a, b); }
DAG quotient(DAG a, DAG b) {
  DAG rest;
  return IntegerDivide(a, b, &rest);
}

// ---- what has been computed is kept

// The longest value so far, outside the heap: it is asked for again and again.
struct Kept {
  std::int64_t places = -1;
  Word* words = nullptr;
  Word length = 0;
};

// The value at p places, cut from what is kept, or 0.
DAG recall(const Kept& kept, std::int64_t p) {
  if (p > kept.places) return DAG();
  DAG whole = news(kept.length);
  std::memcpy(&headerWord(whole), kept.words, kept.length * sizeof(Word));
  return shift10p(whole, p - kept.places);
}

void keep(Kept& kept, std::int64_t p, DAG value) {
  if (isImmediate(value)) return;
  auto* words = static_cast<Word*>(std::malloc(lengthOf(value) * sizeof(Word)));
  if (words == nullptr) return;
  std::memcpy(words, &headerWord(value), lengthOf(value) * sizeof(Word));
  std::free(kept.words);
  kept = {p, words, lengthOf(value)};
}

// The constant to the digits of the environment and some more.
DAG constant(Kept& kept, DAG (*compute)(std::int64_t p)) {
  const std::int64_t p = requireDigits() + 10;
  DAG value = recall(kept, p);
  if (value == DAG()) {
    // Somewhat more than asked for, so that a growing precision doesn't compute anew at each step.
    const std::int64_t more = p + p / (p < 4000 ? 16 : 256) + 16;
    value = shift10p(compute(more + 12), -12);
    keep(kept, more, value);
    value = shift10p(value, p - more);
  }
  return BuildFloat(value, NewInteger(-p));
}

// ---- sums of quotients of integers

// Terms first <= k < last of sum p(1)...p(k)/(q(1)...q(k)) a(k): product of p, product of q, and the sum times that.
struct Part {
  DAG p, q, t;
};

// Pi (D. V. and G. V. Chudnovsky, 1988): 14.18 digits a term. The product of p is no use to the last part of all.
constexpr std::int64_t mostPiTerms = 500000;  // factors below 2^63
Part piPart(std::int64_t first, std::int64_t last, bool isEnd) {
  if (last - first == 1) {
    const std::int64_t k = first;
    DAG p = integer(-(6 * k - 5) * (2 * k - 1) * (6 * k - 1));
    return {p, mulint(integer(k * k * k), integer(10939058860032000)), mulint(p, integer(13591409 + 545140134 * k))};
  }
  checkStack();
  const std::int64_t middle = (first + last) / 2;
  Part left = piPart(first, middle, false), right = piPart(middle, last, isEnd);
  passWork(10);
  return {isEnd ? cons1 : mulint(left.p, right.p), mulint(left.q, right.q),
          sum(mulint(left.t, right.q), mulint(left.p, right.t))};
}
DAG computePi(std::int64_t p) {
  const std::int64_t terms = p / 14 + 3;
  if (terms > mostPiTerms) KernelException("object too large");
  const Part s = piPart(1, terms, true);
  // Of numerator and denominator no more digits than the quotient has.
  const std::int64_t excess = std::max<std::int64_t>(ilength(s.q) - p - 20, 0);
  DAG q = shift10p(s.q, -excess), t = shift10p(s.t, -excess);
  DAG numerator = mulint(mulint(q, integer(426880)), isqrt(shift10p(integer(10005), 2 * p)));
  return quotient(numerator, sum(mulint(q, integer(13591409)), t));
}

// e = sum of 1/k!, with p = 1 and q = k: the sum over first < k <= last times (first + 1)...last.
struct ExpPart {
  DAG q, t;
};
ExpPart expPart(std::int64_t first, std::int64_t last) {
  // Three factors below 2^20 make a machine word.
  if (last - first <= 3 && last < 1 << 20) {
    std::int64_t q = 1, t = 0;
    for (std::int64_t k = first + 1; k <= last; ++k) {
      q *= k;
      t = t * k + 1;
    }
    return {integer(q), integer(t)};
  }
  if (last - first == 1) return {integer(last), cons1};
  checkStack();
  const std::int64_t middle = (first + last) / 2;
  ExpPart left = expPart(first, middle), right = expPart(middle, last);
  passWork(10);
  return {mulint(left.q, right.q), sum(mulint(left.t, right.q), right.t)};
}
DAG computeE(std::int64_t p) {
  // Terms until k! outgrows 10^p.
  const double wanted = static_cast<double>(p + 2) * 2.302585092994046;
  std::int64_t terms = 10;
  while (std::lgamma(static_cast<double>(terms)) < wanted) terms += terms / 100 + 1;
  const ExpPart s = expPart(0, terms);
  return sum(shift10p(cons1, p), quotient(shift10p(s.t, p), s.q));
}

Kept keptPi, keptE;

DAG floatOfConstant(const BuiltinCall& call, reals::Real (*value)()) {
  if (argumentCount(call) != 0) wrongParameters(call);
  const reals::RealSession session(requireDigits());
  return reals::floatOf(value());
}

}  // namespace

DAG floatOfE() { return constant(keptE, computeE); }

DAG native::evalfPi(const BuiltinCall& call) {
  if (argumentCount(call) != 0) wrongParameters(call);
  return constant(keptPi, computePi);
}
DAG native::evalfGamma(const BuiltinCall& call) { return floatOfConstant(call, reals::eulerGamma); }
DAG native::evalfCatalan(const BuiltinCall& call) { return floatOfConstant(call, reals::catalanConstant); }

}  // namespace korel
