#pragma once
// Bessel's functions of the four kinds and Airy's two with their derivatives, of complex order and argument. Principal
// branches, cut along the negative axis.

#include "library/native/special/ball.h"

namespace korel::special {

Complex besselJ(const Complex& order, const Complex& z);
Complex besselY(const Complex& order, const Complex& z);
Complex besselI(const Complex& order, const Complex& z);
Complex besselK(const Complex& order, const Complex& z);

Complex airyAi(const Complex& z);
Complex airyBi(const Complex& z);
Complex airyAiDerivative(const Complex& z);
Complex airyBiDerivative(const Complex& z);

}  // namespace korel::special
