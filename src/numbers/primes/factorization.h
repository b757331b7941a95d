#pragma once
// Factorization of natural numbers into primes.
//
// By rising cost: trial division, powers, Pollard's rho for one limb, the quadratic sieve to `largestSieved` digits,
// elliptic curves without end beyond. From some 40 digits on p - 1 and a few curves come before the sieve.

#include <vector>

#include "numbers/primes/natural.h"
#include "numbers/primes/primality.h"

namespace korel {

struct PrimePower {
  Natural prime;
  unsigned exponent;
};

/// The prime powers of n > 0 in the order of the primes; false when stopped.
bool factorNatural(const Natural& n, std::vector<PrimePower>& factors);

// ---- the methods: a proper divisor of a composite n, odd and no power, in `divisor`; `no` when none was found

/// Brent's form of Pollard's rho (Brent, "An improved Monte Carlo factorization algorithm", 1980). n < 2^63.
Limb rhoDivisor(Limb n);
Answer pMinusOneDivisor(const Natural& n, std::uint32_t bound, Natural& divisor);
/// One curve by Suyama's parameter `sigma` > 5, both stages (Montgomery, "Speeding the Pollard and elliptic curve
/// methods of factorization", 1987).
Answer curveDivisor(const Natural& n, Limb sigma, std::uint32_t bound, Natural& divisor);
/// The self-initializing quadratic sieve (Contini, 1997).
Answer quadraticSieveDivisor(const Natural& n, Natural& divisor);

}  // namespace korel
