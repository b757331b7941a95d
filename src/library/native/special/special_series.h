#pragma once
// Series and the functions that others are made of.

#include "library/native/special/ball.h"

namespace korel::special {

/// Set when a value can't be had with a bearable effort: more precision won't help.
extern bool hopeless;
/// A value of which nothing is known.
Complex unknown();
/// The arguments of the call are multiples of 10^-argumentPlaces, products of two of them as well.
extern double argumentPlaces;
/// A sum of arguments and integers, or a product of two arguments: exact where it can only be an integer.
Complex knownInteger(const Complex& z);
/// Gives up.
Complex giveUp();

/// Sum of (a1)_k...(ap)_k / ((b1)_k...(bq)_k) z^k / k!, p at most q + 1, with the bound of what is left out. No lower
/// parameter is 0, -1, ... unless an upper one ends the sum before. For p = q + 1, |z| < 1.
Complex hypergeometricSum(const Complex* a, int p, const Complex* b, int q, const Complex& z);
/// Sum of (a1)_k (a2)_k (-1/w)^k, as long as its terms fall: w^a1 U(a1, a1 - a2 + 1, w). `reached` tells whether the
/// terms fall below the working precision; |arg w| <= Pi.
Complex asymptoticSum(const Complex& a1, const Complex& a2, const Complex& w, bool& reached);
/// Whether the terms of `asymptoticSum` fall far enough for arguments of that size.
bool isAsymptotic(const Complex& w);

// ---- the gamma function

Complex gamma(const Complex& z);
/// 1/gamma(z), which is 0 at the poles.
Complex reciprocalGamma(const Complex& z);
/// The logarithm that is continuous off the negative axis.
Complex lnGamma(const Complex& z);
/// Psi(z) and its n-th derivative.
Complex digamma(const Complex& z);
Complex polygamma(std::int64_t n, const Complex& z);
/// B(2k)/(2k(2k - 1)), k >= 1, of which at least `count` are at hand.
Real stirlingCoefficient(std::int64_t k, std::int64_t count);
Real factorialBall(std::int64_t n);
/// z (z + 1) ... (z + n - 1)
Complex risingProduct(const Complex& z, std::int64_t n);
/// True for 0, -1, -2, ...
bool isPole(const Complex& z);

/// The n-th derivative by s of the sum of (a + k)^-s, continued.
Complex hurwitzZeta(const Complex& s, const Complex& a, std::int64_t n);
Complex riemannZeta(const Complex& s);

/// The integral of e^-t t^(a-1) from z to infinity.
Complex upperGamma(const Complex& a, const Complex& z);

}  // namespace korel::special
