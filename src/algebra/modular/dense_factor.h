#pragma once
// Factors of dense polynomials over a finite field of q elements, in the three steps of Cantor and Zassenhaus.
//
// Polynomials to be factored are monic and of degree at least 1. Powers by q are taken by the matrix of the Frobenius
// map, whose columns are the powers of x^q (von zur Gathen and Gerhard, "Modern Computer Algebra",
// chapter 14). A modulus that isn't prime may raise "the modular inverse does not exist", or give nonsense.

#include "algebra/modular/dense_polynomials.h"

namespace korel {

/// The prime p, at most the largest `long`.
template <class R>
long characteristic(const R& ring);
/// r = the element whose p-th power is a.
template <class R>
void rootOfElement(const R& ring, typename R::Unit* r, const typename R::Unit* a);

/// Polynomials that a step has found, each with a number: its multiplicity or the degree of its factors.
template <class R>
struct FactorList {
  Dense<R>* factors;
  long* numbers;
  long count = 0;
  typename R::Unit* pool;  // for their coefficients
  long used = 0;

  /// Room for what a polynomial of that degree can fall into.
  FactorList(const R& ring, Workspace& space, long degree)
      : factors(space.take<Dense<R>>(static_cast<std::size_t>(degree) + 1)),
        numbers(space.take<long>(static_cast<std::size_t>(degree) + 1)),
        pool(ring.take(space, 2 * degree + 2)) {}
  void add(const R& ring, Dense<R> f, long number) {
    factors[count] = {ring.at(pool, used), f.degree};
    ring.copy(factors[count].c, f.c, f.degree + 1);
    numbers[count++] = number;
    used += f.degree + 1;
  }
};

/// Square-free polynomials, pairwise prime, with their multiplicities.
template <class R>
void squareFreeParts(const R& ring, Dense<R> f, FactorList<R>& result);
/// Products of all irreducible factors of one degree, for a square-free f.
template <class R>
void distinctDegrees(const R& ring, Dense<R> f, FactorList<R>& result);
/// The irreducible factors of f, all of degree d.
template <class R>
void equalDegrees(const R& ring, Dense<R> f, long d, FactorList<R>& result);
/// The product of the different linear factors, monic.
template <class R>
Dense<R> partWithRoots(const R& ring, Workspace& space, Dense<R> f);
template <class R>
bool isIrreducible(const R& ring, Dense<R> f);

/// All irreducible factors with their multiplicities.
template <class R>
void factorDense(const R& ring, Workspace& space, Dense<R> f, FactorList<R>& result) {
  FactorList<R> parts(ring, space, f.degree);
  squareFreeParts(ring, f, parts);
  for (long i = 0; i < parts.count; ++i) {
    Workspace step;
    FactorList<R> degrees(ring, step, parts.factors[i].degree);
    distinctDegrees(ring, parts.factors[i], degrees);
    const long first = result.count;
    for (long k = 0; k < degrees.count; ++k) equalDegrees(ring, degrees.factors[k], degrees.numbers[k], result);
    for (long k = first; k < result.count; ++k) result.numbers[k] = parts.numbers[i];
  }
}
/// How often the linear factor g divides f, which loses it.
template <class R>
long takeOutRoot(const R& ring, Workspace& space, Dense<R>& f, Dense<R> g) {
  auto* q = ring.take(space, f.degree + 1);
  Divisor<R> divisor = preparedDivisor(ring, space, g, 1);
  for (long multiplicity = 0;; ++multiplicity) {
    Workspace step;
    if (f.degree < 1) return multiplicity;
    Dense<R> rest = copied(ring, step, f, 0);
    if (divideDense(ring, rest.c, rest.degree, divisor, q) >= 0) return multiplicity;
    ring.copy(f.c, q, f.degree);
    --f.degree;
  }
}

}  // namespace korel
