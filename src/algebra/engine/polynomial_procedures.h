#pragma once
// Products, powers, quotients and greatest common divisors of expressions on the engine.
//
// Each gives 0, no object, for operands that are nothing for the engine (floats, complex numbers, symbolic exponents):
// the caller then goes another way.

#include <cstdint>

#include "store/dag.h"

namespace korel::engine {

/// a * b for expanded sums.
DAG product(DAG a, DAG b);
/// a * b + c * d for expanded sums with integer coefficients; 0 also where these get long.
DAG sumOfProducts(DAG a, DAG b, DAG c, DAG d);
/// a^n for an expanded sum and n > 0.
DAG powerOfSum(DAG a, DAG n);
enum class Divided { yes, no, unknown };
/// Whether `b` divides `a` over the integers, and the quotient.
Divided quotient(DAG a, DAG b, DAG& result);
/// The greatest common divisor over the integers of two expanded polynomials, content included.
DAG gcd(DAG a, DAG b);

}  // namespace korel::engine
