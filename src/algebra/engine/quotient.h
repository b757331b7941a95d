#pragma once
// Exact division.

#include "algebra/engine/integer_polynomial.h"

namespace korel::engine {

enum class Division { exact, inexact, tooWide };
/// a / b over the integers, term by term from the top. `tooWide` when coefficients on the way need more than the widest
/// limbs. `b` is not zero.
Division divideExactly(Arena& arena, const Layout& layout, const Polynomial& a, const Polynomial& b,
                       Polynomial& quotient);

/// The same for integers of the kernel, of any length: whether `b` divides `a`.
bool quotientOfIntegers(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b,
                        IntegerPolynomial& quotient);

}  // namespace korel::engine
