#pragma once
// Natural numbers in binary limbs, for work modulo one number.
//
// Tests of primality and factorization multiply modulo one odd number millions of times. In base 10^16 each such
// product costs a long division; in binary it is Montgomery's (montgomery.h). So these routines convert an integer
// once, work on limbs, and convert back. Vectors are without zero limbs on top; zero is the empty vector. Nothing
// here raises: callers look at the clock themselves and clean up (frame/interrupts.h).

#include <vector>

#include "numbers/limbs/limb_rows.h"
#include "store/dag.h"

namespace korel {

using Natural = std::vector<Limb>;

/// The magnitude of an integer in either form.
Natural naturalOf(DAG integer);
/// The canonical integer.
DAG integerOf(const Natural& x);
inline Natural naturalOfLimb(Limb x) { return x == 0 ? Natural() : Natural{x}; }

void dropZeroLimbs(Natural& x);
int compareNaturals(const Natural& a, const Natural& b);
std::size_t bitLength(const Natural& x);
inline bool bitAt(const Natural& x, std::size_t i) { return i / 64 < x.size() && (x[i / 64] >> (i % 64) & 1) != 0; }
std::size_t trailingZeros(const Natural& x);  // of x > 0
double doubleOf(const Natural& x);

Natural sum(const Natural& a, const Natural& b);
/// a - b for a >= b.
Natural difference(const Natural& a, const Natural& b);
Natural product(const Natural& a, const Natural& b);
Natural scaled(const Natural& a, Limb factor);
Natural shiftedLeft(const Natural& a, std::size_t bits);
Natural shiftedRight(const Natural& a, std::size_t bits);
/// Quotient, and the remainder left in `a`; b isn't zero (Knuth, vol. 2, 4.3.1, algorithm D).
Natural divide(Natural& a, const Natural& b);
/// The same by a limb; gives the remainder.
Limb divideByLimb(Natural& a, Limb b);
Limb residue(const Natural& a, Limb b);
Natural remainder(Natural a, const Natural& b);

Natural greatestCommonDivisor(Natural a, Natural b);
/// The inverse of a modulo m, which are coprime.
Natural inverseModulo(const Natural& a, const Natural& m);
/// The truncated k-th root.
Natural truncatedRootOf(const Natural& x, unsigned k);
/// Jacobi's symbol (a/n) of n odd.
int jacobiSymbol(Natural a, Natural n);

}  // namespace korel
