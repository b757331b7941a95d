#pragma once
// Generalized hypergeometric functions, and the orthogonal polynomials, which are some of them.

#include "library/native/special/ball.h"

namespace korel::special {

/// pFq(a; b; z) for any z where it has a value; cut along z > 1, where it belongs to the lower side.
Complex hypergeometric(const Complex* a, int p, const Complex* b, int q, const Complex& z);

Complex legendreP(const Complex& n, const Complex& x);
Complex chebyshevT(const Complex& n, const Complex& x);
Complex chebyshevU(const Complex& n, const Complex& x);
Complex hermiteH(const Complex& n, const Complex& x);
Complex laguerreL(const Complex& n, const Complex& a, const Complex& x);
Complex gegenbauerC(const Complex& n, const Complex& a, const Complex& x);
Complex jacobiP(const Complex& n, const Complex& a, const Complex& b, const Complex& x);

}  // namespace korel::special
