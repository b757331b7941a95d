#pragma once
// All roots of a polynomial with complex coefficients in doubles.

namespace korel {

/// Writes the `degree` roots of sum a[k] x^k, k from 0 to `degree`, to `re` and `im`. `startRe`, `startIm` turn the
/// starting points. The leading coefficient isn't 0. Each root is one of a polynomial whose coefficients differ from
/// the given ones by some roundings. False when numbers leave the range of doubles.
///
/// Method: the simultaneous iteration of Ehrlich and Aberth in extended precision, from starting points on the
/// circles of the Newton polygon (D. Bini, Numerical computation of polynomial zeros by means of Aberth's method,
/// 1996).
bool findPolynomialRoots(int degree, const double* aRe, const double* aIm, double startRe, double startIm, double* re,
                         double* im);

}  // namespace korel
