#pragma once
// Primality.
//
// Below 2^64 the answer is proven: no composite passes the strong test to the bases of Sinclair's list. Above, a
// number is called prime that passes the strong test to base 2 and the extra strong test of Lucas (Baillie and
// Wagstaff, "Lucas pseudoprimes", 1980; Grantham, "Frobenius pseudoprimes", 2001); no composite that does is known.
//
// Long tests look at the clock: `Answer::stopped` means that the caller must clean up and call `endOperation`.

#include <span>

#include "numbers/primes/natural.h"

namespace korel {

enum class Answer { no, yes, stopped };

bool isPrimeLimb(Limb n);
Answer isPrimeNatural(const Natural& n);
/// The primes below `limit`, at most 2^26, in order; kept and extended from call to call.
std::span<const std::uint32_t> primesBelow(std::uint32_t limit);
/// The nearest prime above n, or below (n > 2): `found` gets it.
Answer nextPrime(const Natural& n, Natural& found);
Answer previousPrime(const Natural& n, Natural& found);
/// How many primes are at most x (Lucy's sieve, O(x^(3/4)) steps); -1 when stopped.
std::int64_t primeCount(std::int64_t x);

}  // namespace korel
