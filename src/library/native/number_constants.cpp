// Constants: series with rational terms, summed exactly by halves (binary splitting: B. Haible and T. Papanikolaou,
// "Fast multiprecision evaluation of series of rational numbers", 1998) and divided once.

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "frame/environment.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/fixed_point.h"
#include "library/native/native.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

namespace {

constexpr double ln10 = 2.302585092994046;

DAG integer(std::int64_t n) { return NewInteger(n); }
DAG sum(DAG a, DAG b) { return addint(a, b); }

// ---- what has been computed is kept

// The longest value so far, outside the heap: constants enter every reduction of an argument.
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

DAG constant(Kept& kept, std::int64_t p, DAG (*compute)(std::int64_t p)) {
  if (DAG known = recall(kept, p)) return known;
  // Somewhat more than asked for, so that a growing precision doesn't compute anew at each step.
  const std::int64_t more = p + p / 16 + 16;
  DAG value = shift10p(compute(more + 12), -12);
  keep(kept, more, value);
  return shift10p(value, p - more);
}

// ---- sums a(k) p(1)...p(k) / (q(1)...q(k))

// Terms first <= k < last: product of p, product of q, and the sum times the latter.
struct Part {
  DAG p, q, t;
};
using Term = Part (*)(std::int64_t k);

Part sumByHalves(Term term, std::int64_t first, std::int64_t last) {
  if (last - first == 1) return term(first);
  checkStack();
  const std::int64_t middle = (first + last) / 2;
  Part left = sumByHalves(term, first, middle), right = sumByHalves(term, middle, last);
  passWork(10);
  return {mulint(left.p, right.p), mulint(left.q, right.q), sum(mulint(left.t, right.q), mulint(left.p, right.t))};
}

// Pi (D. V. and G. V. Chudnovsky, 1988): 14.18 digits a term.
Part piTerm(std::int64_t k) {
  DAG p = mulint(mulint(integer(-(6 * k - 5)), integer(2 * k - 1)), integer(6 * k - 1));
  DAG q = mulint(mulint(integer(k), integer(k)), mulint(integer(k), integer(10939058860032000)));
  return {p, q, mulint(p, integer(13591409 + 545140134 * k))};
}
DAG computePi(std::int64_t p) {
  Part s = sumByHalves(piTerm, 1, p / 14 + 3);
  DAG root = isqrt(shift10p(integer(10005), 2 * p));
  DAG numerator = mulint(mulint(s.q, integer(426880)), root);
  return dividedBy(numerator, sum(mulint(s.q, integer(13591409)), s.t));
}

// Catalan's constant (A. Lupas, 2000): 0.6 digits a term.
Part catalanTerm(std::int64_t k) {
  DAG p = k == 1 ? integer(32)
                 : mulint(mulint(integer(-32 * (k - 1)), integer(k - 1)), mulint(integer(k - 1), integer(2 * k - 3)));
  DAG q = k == 1
              ? integer(9)
              : mulint(mulint(integer(4 * k - 1), integer(4 * k - 1)), mulint(integer(4 * k - 3), integer(4 * k - 3)));
  return {p, q, mulint(p, integer((40 * k - 24) * k + 3))};
}
DAG computeCatalan(std::int64_t p) {
  Part s = sumByHalves(catalanTerm, 1, p * 5 / 3 + 10);
  return dividedBy(shift10p(s.t, p), mulint(s.q, integer(64)));
}

// artanh(1/n) = sum of 1 / ((2k + 1) n^(2k + 1)): `q` gathers n^2, `p` the odd numbers of the denominators.
Part artanhPart(std::int64_t square, std::int64_t first, std::int64_t last) {
  if (last - first == 1) return {integer(2 * first + 1), integer(square), cons1};
  checkStack();
  const std::int64_t middle = (first + last) / 2;
  Part left = artanhPart(square, first, middle), right = artanhPart(square, middle, last);
  passWork(10);
  return {mulint(left.p, right.p), mulint(left.q, right.q),
          sum(mulint(mulint(right.p, right.q), left.t), mulint(left.p, right.t))};
}
DAG artanhOfReciprocal(std::int64_t n, std::int64_t p) {
  const auto terms =
      static_cast<std::int64_t>(static_cast<double>(p) * ln10 / (2 * std::log(static_cast<double>(n)))) + 3;
  Part s = artanhPart(n * n, 0, terms);
  return dividedBy(mulint(shift10p(s.t, p), integer(n)), mulint(s.p, s.q));
}
// A formula of Machin's kind (Gauss).
DAG computeLn10(std::int64_t p) {
  return sum(mulint(integer(46), artanhOfReciprocal(31, p)),
             sum(mulint(integer(34), artanhOfReciprocal(49, p)), mulint(integer(20), artanhOfReciprocal(161, p))));
}

// Euler's constant (R. P. Brent and E. M. McMillan, 1980, algorithm B1): with A(k) = (n^k / k!)^2 and H(k) the harmonic
// numbers, sum A(k) H(k) / sum A(k) - ln n, off by less than 4 e^(-4n).
struct HarmonicPart {
  DAG p, q, t;  // A: products of n^2, of k^2, and the sum of A times q
  DAG c, d;     // sum of 1/k is c/d
  DAG u;        // sum of A(k) H(k) times q d
};
HarmonicPart harmonicPart(std::int64_t n, std::int64_t first, std::int64_t last) {
  if (last - first == 1) {
    DAG k = integer(first), square = integer(n * n);
    return {square, mulint(k, k), square, cons1, k, square};
  }
  checkStack();
  const std::int64_t middle = (first + last) / 2;
  HarmonicPart l = harmonicPart(n, first, middle), r = harmonicPart(n, middle, last);
  passWork(10);
  return {mulint(l.p, r.p),
          mulint(l.q, r.q),
          sum(mulint(l.t, r.q), mulint(l.p, r.t)),
          sum(mulint(l.c, r.d), mulint(r.c, l.d)),
          mulint(l.d, r.d),
          sum(mulint(mulint(l.u, r.q), r.d), mulint(l.p, sum(mulint(mulint(l.c, r.d), r.t), mulint(l.d, r.u))))};
}
DAG computeGamma(std::int64_t p) {
  // The logarithm of a power of 2 is one sum.
  const auto least = static_cast<std::int64_t>(static_cast<double>(p) * ln10 / 4) + 2;
  int a = 0;
  while ((std::int64_t{1} << a) < least) ++a;
  const std::int64_t n = std::int64_t{1} << a;
  HarmonicPart s = harmonicPart(n, 1, static_cast<std::int64_t>(3.5912 * static_cast<double>(n)) + 10);
  DAG ratio = dividedBy(shift10p(s.u, p), mulint(s.d, sum(s.q, s.t)));
  DAG ln2 = sum(mulint(integer(14), artanhOfReciprocal(31, p)),
                sum(mulint(integer(10), artanhOfReciprocal(49, p)), mulint(integer(6), artanhOfReciprocal(161, p))));
  return difference(ratio, mulint(integer(a), ln2));
}

// e = sum of 1/k!, with p = 1 and q = k: the sum over first < k <= last times (first + 1)...last.
struct ExpPart {
  DAG q, t;
};
ExpPart expPart(std::int64_t first, std::int64_t last) {
  if (last - first == 1) return {integer(last), cons1};
  checkStack();
  const std::int64_t middle = (first + last) / 2;
  ExpPart left = expPart(first, middle), right = expPart(middle, last);
  passWork(10);
  return {mulint(left.q, right.q), sum(mulint(left.t, right.q), right.t)};
}
DAG computeE(std::int64_t p) {
  // Terms until k! outgrows 10^p.
  std::int64_t terms = 10;
  while (std::lgamma(static_cast<double>(terms)) < static_cast<double>(p + 2) * ln10) terms += terms / 8 + 1;
  ExpPart s = expPart(0, terms);
  return sum(powerOfTen(p), dividedBy(shift10p(s.t, p), s.q));
}

Kept keptPi, keptLn10, keptGamma, keptCatalan, keptE;

DAG valueOf(const BuiltinCall& call, DAG (*constantAt)(std::int64_t p)) {
  if (argumentCount(call) != 0) wrongParameters(call);
  const std::int64_t p = requireDigits() + 10;
  return rounded(decimal(constantAt(p), -p));
}

}  // namespace

DAG fixedPi(std::int64_t p) { return constant(keptPi, p, computePi); }
DAG fixedLn10(std::int64_t p) { return constant(keptLn10, p, computeLn10); }
DAG fixedGamma(std::int64_t p) { return constant(keptGamma, p, computeGamma); }
DAG fixedCatalan(std::int64_t p) { return constant(keptCatalan, p, computeCatalan); }
DAG fixedE(std::int64_t p) { return constant(keptE, p, computeE); }

DAG native::evalfPi(const BuiltinCall& call) { return valueOf(call, fixedPi); }
DAG native::evalfGamma(const BuiltinCall& call) { return valueOf(call, fixedGamma); }
DAG native::evalfCatalan(const BuiltinCall& call) { return valueOf(call, fixedCatalan); }

}  // namespace korel
