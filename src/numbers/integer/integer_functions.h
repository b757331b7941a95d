#pragma once
// What is built from the four operations on integers: division, powers, greatest common divisors,
// residues, roots, factorials, decimal shifts, and text.
//
// Arguments are integers in either form, results are canonical and fresh or an operand itself, unless
// a line says otherwise. "Heap" operands are objects, which may hold a small value. Limits of size
// raise an overflow event, whose handler gives the result. No routine here tests for a zero divisor:
// callers raise that error.

#include <cstdint>

#include "store/dag.h"

namespace korel {

// ---- division, truncated toward 0: the remainder has the sign of a

/// Replaces heap `a` by the remainder of a / b; gives the quotient in `q` (length a - length b + 2
/// words) unless that is 0. Not made immediate: a zero remainder is a heap zero of tag INTPOS.
DAG SoftIntDivide(DAG a, DAG b, DAG q);
/// Quotient of heap `a` by an immediate or a heap integer of a word. `q` has room for the length of
/// `a`, `*r` for the length of `a` where |b| is above 9999; both may be 0: then fresh.
DAG MixedDivide(DAG a, DAG b, DAG q, DAG* r);
/// Quotient of an immediate or an integer of a word.
/// Error: "integer too large in context" when `a` is longer.
DAG ImmediateDivide(DAG a, DAG b, DAG* r);
DAG IntegerDivide(DAG a, DAG b, DAG* r);
/// As `IntegerDivide` in the caller's space: `q`, and `*r` for the remainder, with room for a copy of
/// `a`; `a` may already be there.
DAG IntegerDiv(DAG a, DAG b, DAG q, DAG* r);
/// a / 2 in place.
DAG IntegerDivideByTwo(DAG a);
bool isodd(DAG x);
/// Residue of x by m: in 0 .. |m|-1, or the symmetric one in (-|m|/2, |m|/2].
DAG imod(DAG x, DAG m, bool symmetric);

// ---- powers

/// base^n for n >= 1 and base not 0.
DAG powint(DAG base, std::int32_t n);
/// The same for a heap base; the result stays a heap integer unless the base is 1, -1 or 10.
DAG SoftIntPower(DAG base, std::int32_t n);

// ---- greatest common divisors, never negative

std::int32_t gcd(std::int32_t a, std::int32_t b);
/// May overwrite heap operands.
DAG gcdint(DAG a, DAG b);
/// `b` of immediate size, heap `a`, which stays.
DAG gcdMixed(DAG b, DAG a);
/// Heap operands, which it may overwrite and one of which it may return; the immediate 1 for gcd 1.
DAG SoftIntGcd(DAG a, DAG b);
/// Leaves its operands alone.
DAG igcd(DAG a, DAG b);
/// out = {a / g, b / g} with g the gcd; a and b themselves when that is 1.
void gcdsimpl(DAG a, DAG b, DAG out[2]);
void SoftIntGcdSimpl(DAG a, DAG b, DAG out[2]);

// ---- roots, primes, factorials

/// The integer nearest to the square root of n; 0 for a negative n.
DAG isqrt(DAG n);
/// The truncated square root of n > 0; `*exact` tells whether n is its square.
DAG truncatedRoot(DAG n, bool* exact);
/// Trial division; 1 counts as prime.
bool isPrime(std::int32_t n);
/// Smallest odd "prime" at or above n.
std::int32_t firstPrime(std::int32_t n);
/// n! for n >= 0. Error: "object too large for factorial" above 32176.
DAG factorial(DAG n);

// ---- decimal digits

/// x * 10^k; for negative k rounded under the environment variable `Rounding`.
DAG times10p(DAG x, std::int64_t k);
/// The same, truncating.
DAG shift10p(DAG x, std::int64_t k);
/// Strips factors of 10 from `*x`, and factors of 5, each of which doubles `*y`. The count returned is
/// the number of decimal places p with x * y as before = x * 10^p * y.
std::int64_t pow10Elim(DAG* x, DAG* y);
/// True when any of the k lowest decimal digits of heap `x` is not zero; false for negative k.
bool SoftIntTrailingNonZeroes(DAG x, std::int64_t k);

// ---- content

/// Largest positive rational that divides the coefficients of an expression.
/// Error: "invalid argument to icontent".
DAG icontent(DAG e);
DAG icontent_sum(DAG sum);

// ---- factorisation

/// `count` steps of the continued fraction of the root of N, from the EXPSEQ
/// (A(i-1), A(i), Q(i-1), Q(i), P(i), g, N, count, M, bound), N not 0; gives the list to go on from.
DAG MorrBrilCull(DAG state);

// ---- text and doubles

/// Decimal text as an object of tag NAME that is in no table.
DAG KorelIntToStr(DAG x);
/// Writes the decimal digits of x with their sign, without a final 0, to `out`, which has room for
/// `ilength` + 2 characters; gives the end.
char* writeDecimal(DAG x, char* out);
/// Nearest double; infinite beyond 307 decimal digits.
double IntegerToDouble(DAG x);
/// Value of the digits of heap `x` from word i upward as a double, in units of word i's digit.
double FloatApprox(DAG x, Word i);
double SoftIntFloatApprox(DAG x, Word i);

}  // namespace korel
