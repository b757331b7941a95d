#pragma once
// Very long products by a number-theoretic transform.
//
// The operands become polynomials whose product is taken modulo two primes just below 2^62 by fast
// transforms, and the coefficients, below 2^124, are put together by the Chinese remainder theorem: the
// result is exact. The length is a power of two or three quarters of one.

#include "numbers/integer/integer_groups.h"

namespace korel {

/// r = a * b, na + nb groups. False when the memory for it can't be had; r is then untouched.
bool transformProduct(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb);
/// The same for rows of binary limbs.
bool binaryTransformProduct(std::uint64_t* r, const std::uint64_t* a, std::size_t na, const std::uint64_t* b,
                            std::size_t nb);

}  // namespace korel
