#pragma once
// Fractions of polynomials, kept as products of powers as long as no sum asks for more.

#include "store/dag.h"

namespace korel {

/// number * numerators / denominators: products of powers with positive exponents, EXPSEQs of bases and exponents in
/// turn, without numeric factors. Fresh, not simplified.
struct Fraction {
  DAG number;
  DAG numerators, denominators;
};

/// A rational expression as a fraction whose numerator and denominator have no common factor. Denominators are integer
/// polynomials. Error: "invalid arguments to normal/numden".
Fraction fractionInLowestTerms(DAG x);

/// Numerator and denominator, each with its part of the number.
DAG numeratorOf(const Fraction& fraction);
DAG denominatorOf(const Fraction& fraction);
/// The whole as one expression.
DAG quotientOf(const Fraction& fraction);

}  // namespace korel
