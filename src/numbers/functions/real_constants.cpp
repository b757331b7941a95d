// Constants: series with rational terms, summed exactly by halves (binary splitting: B. Haible and T. Papanikolaou,
// "Fast multiprecision evaluation of series of rational numbers", 1998) and divided once. Reals at the precision of
// the result serve as integers: what they cut off lies below it.

#include "numbers/functions/real.h"

#include <cmath>
#include <cstdlib>

#include "frame/errors.h"

namespace korel {
namespace reals {

namespace {

// ---- what has been computed is kept

// The longest value so far, outside the stack. Shorter ones stay, since numbers in use may point to them; as each is
// longer than the one before by a part of it, they are little.
struct Kept {
  Kept* before;
  Real value;
  std::size_t limbs;
};

Real constant(Kept*& kept, Real (*compute)()) {
  if (kept == nullptr || kept->limbs < workingLimbs) {
    // Somewhat more than asked for, so that a growing precision doesn't compute anew at each step.
    const std::size_t limbs = workingLimbs + (workingLimbs < 60 ? workingLimbs / 2 : workingLimbs / 16) + 2;
    LimbMark mark;
    Real value;
    {
      Precision p(limbs + 2);
      value = compute();
    }
    // Only now, since a time limit may jump out of the computation.
    auto* next = static_cast<Kept*>(std::malloc(sizeof(Kept)));
    auto* row = static_cast<Limb*>(std::malloc((limbs + 3) * sizeof(Limb)));
    if (next == nullptr || row == nullptr) {
      std::free(next);
      std::free(row);
      releaseAllLimbs();
      KernelException("object too large");
    }
    copyLimbs(row, value.limbs, value.size);
    value.limbs = row;
    *next = {kept, value, limbs};
    kept = next;
  }
  return cut(kept->value);
}

// ---- sums a(k) p(1)...p(k) / (q(1)...q(k))

// Terms first <= k < last: product of p, product of q, and the sum times the latter.
struct Part {
  Real p, q, t;
};
using Term = Part (*)(std::int64_t k);

Part sumByHalves(Term term, std::int64_t first, std::int64_t last) {
  LimbMark mark;
  Part all;
  if (last - first == 1) {
    all = term(first);
  } else {
    const std::int64_t middle = (first + last) / 2;
    const Part l = sumByHalves(term, first, middle), r = sumByHalves(term, middle, last);
    all = {l.p * r.p, l.q * r.q, l.t * r.q + l.p * r.t};
  }
  passLimbWork(20);
  keepAll(&all.p, 3, mark);
  return all;
}

std::int64_t termsFor(double bitsPerTerm) {
  return static_cast<std::int64_t>(static_cast<double>(workingBits()) / bitsPerTerm) + 3;
}

// Pi (D. V. and G. V. Chudnovsky, 1988): 47.1 bits a term.
Part piTerm(std::int64_t k) {
  const Real p = times(times(Real(-(6 * k - 5)), 2 * k - 1), 6 * k - 1);
  const Real q = times(times(times(Real(k), k), k), 10939058860032000);
  return {p, q, times(p, 13591409 + 545140134 * k)};
}
Real computePi() {
  const Part s = sumByHalves(piTerm, 1, termsFor(47));
  return times(s.q * sqrt(Real(10005)), 426880) / (times(s.q, 13591409) + s.t);
}

// Catalan's constant (A. Lupas, 2000): two bits a term.
Part catalanTerm(std::int64_t k) {
  const Real p = k == 1 ? Real(32) : times(times(times(Real(-32 * (k - 1)), k - 1), k - 1), 2 * k - 3);
  const Real q = k == 1 ? Real(9) : times(times(times(Real(4 * k - 1), 4 * k - 1), 4 * k - 3), 4 * k - 3);
  return {p, q, times(p, (40 * k - 24) * k + 3)};
}
Real computeCatalan() {
  const Part s = sumByHalves(catalanTerm, 1, termsFor(2) + 10);
  return scaled(s.t / s.q, -6);
}

// artanh(1/n) = sum of 1 / ((2k + 1) n^(2k + 1)): `q` gathers n^2, `p` the odd numbers of the denominators.
Part artanhPart(std::int64_t square, std::int64_t first, std::int64_t last) {
  if (last - first == 1) return {Real(2 * first + 1), Real(square), Real(1)};
  LimbMark mark;
  const std::int64_t middle = (first + last) / 2;
  const Part l = artanhPart(square, first, middle), r = artanhPart(square, middle, last);
  Part all = {l.p * r.p, l.q * r.q, r.p * r.q * l.t + l.p * r.t};
  passLimbWork(20);
  keepAll(&all.p, 3, mark);
  return all;
}
Real artanhOfReciprocal(std::int64_t n) {
  LimbMark mark;
  const Part s = artanhPart(n * n, 0, termsFor(2 * std::log2(static_cast<double>(n))));
  return keep(times(s.t, n) / (s.p * s.q), mark);
}
// The logarithm of 2^a 3^b 5^c, by formulas of Machin's kind (Gauss).
Real lnOfSmooth(std::int64_t a, std::int64_t b, std::int64_t c) {
  return times(artanhOfReciprocal(31), 14 * a + 22 * b + 32 * c) +
         times(artanhOfReciprocal(49), 10 * a + 16 * b + 24 * c) +
         times(artanhOfReciprocal(161), 6 * a + 10 * b + 14 * c);
}
Real computeLnTwo() { return lnOfSmooth(1, 0, 0); }
Real computeLnTen() { return lnOfSmooth(1, 0, 1); }

// Euler's constant (R. P. Brent and E. M. McMillan, 1980, algorithm B1): with A(k) = (n^k / k!)^2 and H(k) the harmonic
// numbers, sum A(k) H(k) / sum A(k) - ln n, off by less than 4 e^(-4n).
struct HarmonicPart {
  Real p, q, t;  // A: products of n^2, of k^2, and the sum of A times q
  Real c, d;     // sum of 1/k is c/d
  Real u;        // sum of A(k) H(k) times q d
};
// `p` and `c` are no use to the last part of all.
HarmonicPart harmonicPart(std::int64_t n, std::int64_t first, std::int64_t last, bool isEnd) {
  if (last - first == 1) {
    const Real k(first), square(n * n);
    return {square, k * k, square, Real(1), k, square};
  }
  LimbMark mark;
  const std::int64_t middle = (first + last) / 2;
  const HarmonicPart l = harmonicPart(n, first, middle, false), r = harmonicPart(n, middle, last, isEnd);
  passLimbWork(20);
  const Real later = l.p * r.t;
  HarmonicPart all = {isEnd ? Real() : l.p * r.p,
                      l.q * r.q,
                      l.t * r.q + later,
                      isEnd ? Real() : l.c * r.d + r.c * l.d,
                      l.d * r.d,
                      r.d * (l.u * r.q + l.c * later) + l.d * (l.p * r.u)};
  keepAll(&all.p, 6, mark);
  return all;
}

// The least number of factors 2, 3 and 5 that isn't below `least`.
struct SmoothNumber {
  std::int64_t n, a, b, c;
};
SmoothNumber smoothNumber(std::int64_t least) {
  SmoothNumber best{INT64_MAX, 0, 0, 0};
  std::int64_t c = 0;
  for (std::int64_t five = 1; five < 5 * least; five *= 5, ++c) {
    std::int64_t b = 0;
    for (std::int64_t odd = five; odd < 3 * least; odd *= 3, ++b) {
      std::int64_t a = 0, n = odd;
      for (; n < least; n *= 2) ++a;
      if (n < best.n) best = {n, a, b, c};
    }
  }
  return best;
}
Real computeGamma() {
  const auto least = static_cast<std::int64_t>(static_cast<double>(workingBits()) * 0.17329) + 2;
  const SmoothNumber s = smoothNumber(least);
  Precision p(workingLimbs + 1);
  const auto terms = static_cast<std::int64_t>(3.5912 * static_cast<double>(s.n)) + 10;
  const HarmonicPart all = harmonicPart(s.n, 1, terms, true);
  return all.u / (all.d * (all.q + all.t)) - lnOfSmooth(s.a, s.b, s.c);
}

Kept *keptPi, *keptLnTwo, *keptLnTen, *keptGamma, *keptCatalan;

}  // namespace

Real pi() { return constant(keptPi, computePi); }
Real lnTwo() { return constant(keptLnTwo, computeLnTwo); }
Real lnTen() { return constant(keptLnTen, computeLnTen); }
Real eulerGamma() { return constant(keptGamma, computeGamma); }
Real catalanConstant() { return constant(keptCatalan, computeCatalan); }

}  // namespace reals
}  // namespace korel
