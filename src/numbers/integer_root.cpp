// Integer square roots, by Newton's iteration with the remainder carried along.

#include "numbers/integer.h"
#include "numbers/integer_functions.h"
#include "numbers/integer_space.h"
#include "store/constants.h"

namespace korel {

namespace {

void discard(DAG x) {
  if (!isImmediate(x)) release(x, lengthOf(x));
}

/// The root nearest to sqrt(n) for n below 10^9.
std::int32_t nearestRoot(std::int32_t n) {
  std::int32_t m = n - 1;
  if (m < 19) return (m * (31 - m) + 108) / 83;
  std::int32_t before = m / 83 + 1;
  std::int32_t g = (before - 1 + m / before + 2) / 2;
  while (g != before) {
    before = g;
    g = (g + m / g + 1) / 2;
  }
  return g;
}

/// n - g^2 for an estimate g of the root.
DAG remainderOf(DAG n, DAG g) {
  DAG square = mulint(g, g);
  DAG negative = isImmediate(square) ? complint(square) : negateint(square);
  DAG rest = addint(n, negative);
  if (rest != n && negative != rest) discard(negative);
  return rest;
}

/// An estimate of sqrt(n) that is off by less than a few units.
DAG estimate(DAG n) {
  std::int64_t length = ilength(n);
  if (length < 10) return immediate(nearestRoot(immediateValue(n)));
  // With n = h 10^2k + l and s near sqrt(h): sqrt(n) = s 10^k + (h - s^2) 10^k / 2s + an error of
  // ((h - s^2) / 2s)^2 10^k / 2s, below a unit when s has more than k digits.
  std::int64_t k = (length - 2) / 4;
  DAG high = shift10p(n, -2 * k);
  DAG s = estimate(high);
  DAG rest = remainderOf(high, s);
  DAG lifted = shift10p(rest, k);
  DAG doubled = addint(s, s), unused;
  DAG correction = IntegerDivide(lifted, doubled, &unused);
  DAG whole = times10p(s, k);
  DAG g = addint(whole, correction);
  // What is no operand of the result goes back at once: roots of long numbers make long parts.
  for (DAG x : {high, rest, lifted, doubled}) discard(x);
  if (g != whole) discard(whole);
  return g;
}

}  // namespace

DAG isqrt(DAG n) {
  if (hasTag(n, INTNEG)) return cons0;
  if (isImmediate(n) && immediateValue(n) < 1000000000) return immediate(nearestRoot(immediateValue(n)));
  // The nearest root g is the one with -g < n - g^2 <= g.
  DAG g = estimate(n);
  for (;;) {
    DAG rest = remainderOf(n, g);
    int order = compint(rest, g);
    bool negative = hasTag(rest, INTNEG);
    discard(rest);
    if (order < 0 || (order == 0 && !negative)) return g;
    DAG next = addint(g, negative ? consm1 : cons1);
    discard(g);
    g = next;
  }
}

}  // namespace korel
