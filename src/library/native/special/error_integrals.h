#pragma once
// The error functions, the exponential, sine and cosine integrals, and the incomplete gamma function they come from.

#include "library/native/special/ball.h"

namespace korel::special {

Complex errorFunction(const Complex& z);
Complex complementaryErrorFunction(const Complex& z);
/// -i erf(iz).
Complex imaginaryErrorFunction(const Complex& z);

/// The principal value of the integral of e^t/t from -infinity to z; real on the negative axis.
Complex exponentialIntegral(const Complex& z);
/// The integral of e^(-z t) t^-n from 1 to infinity.
Complex exponentialIntegral(const Complex& n, const Complex& z);
/// Ei(ln z).
Complex logarithmicIntegral(const Complex& z);
Complex sineIntegral(const Complex& z);
Complex cosineIntegral(const Complex& z);
Complex hyperbolicSineIntegral(const Complex& z);
Complex hyperbolicCosineIntegral(const Complex& z);

}  // namespace korel::special
