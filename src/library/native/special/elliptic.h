#pragma once
// Elliptic integrals of the three kinds, of the modulus k: complete ones by the arithmetic-geometric mean, incomplete
// ones by Carlson's duplication (B. C. Carlson, "Numerical computation of real or complex elliptic integrals", 1995).

#include "library/native/special/ball.h"

namespace korel::special {

Complex arithmeticGeometricMean(const Complex& a, const Complex& b);
Complex ellipticK(const Complex& k);
Complex ellipticE(const Complex& k);
Complex ellipticPi(const Complex& n, const Complex& k);

/// From 0 to z, the sine of the amplitude.
Complex ellipticF(const Complex& z, const Complex& k);
Complex ellipticE(const Complex& z, const Complex& k);
Complex ellipticPi(const Complex& z, const Complex& n, const Complex& k);

}  // namespace korel::special
