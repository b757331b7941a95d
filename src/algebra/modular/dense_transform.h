#pragma once
// Long products of dense polynomials by number-theoretic transforms in vectors of doubles.
//
// Coefficients are taken modulo primes below 2^50, whose residues a double holds exactly, and the products of two of
// them in a pair of doubles by a fused multiplication and addition (van der Hoeven, Lecerf, Quintin, "Modular SIMD
// arithmetic in Mathemagix"). One prime is enough for words; for wide moduli there are as many as the exact
// coefficients of the product need, which are put together modulo m without being built.

#include "algebra/modular/dense_polynomials.h"

namespace korel {

/// r = a * b, na + nb - 1 coefficients; na and nb are at least 1. False, with r untouched, where the product is too
/// long or the modulus too large, or the instructions are missing.
bool transformMultiply(const HardwareRing& ring, Word* r, const Word* a, long na, const Word* b, long nb);
bool transformMultiply(const WideRing& ring, Limb* r, const Limb* a, long na, const Limb* b, long nb);

}  // namespace korel
