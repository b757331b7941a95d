#pragma once
// Dense polynomials over the integers modulo m, as objects.
//
//   ZPPOLY  s[1]             s[2]     s[3] ...
//           indeterminate,   modulus  coefficients by ascending exponents, the last one not 0: raw words for a
//           or EXPSEQ of two          small modulus, else integers; with two indeterminates ZPPOLYs in the second
//
// Operations take simplified objects of one modulus m, which their callers have checked, and give simplified objects
// with that modulus. Errors, where a line names none, are "the modular inverse does not exist" and "division by zero".

#include <cstdint>

#include "store/dag.h"
#include "store/reference_fields.h"
#include "store/vocabulary.h"

namespace korel {

constexpr Word firstCoefficient = 3;

inline bool isDense(DAG x) { return isTag(x, ZPPOLY); }
inline bool isUnivariate(DAG x) { return isDense(x) && !isSequence(x[1]); }
inline bool isBivariate(DAG x) { return isDense(x) && isSequence(x[1]); }
/// -1 for zero.
inline long denseDegree(DAG a) { return static_cast<long>(lengthOf(a)) - 4; }
/// Coefficient of x^i as an integer, or as a ZPPOLY of a bivariate one; the zero of its kind outside the degree.
DAG denseCoefficient(DAG a, std::int64_t i);
/// The zero that stands for a missing coefficient.
DAG zeroCoefficient(DAG a);

/// A raw object for coefficients up to `degree`, all zero where they are raw; 0 otherwise.
/// Error: "object too large".
DAG newDense(DAG indeterminate, DAG modulus, std::int64_t degree);
/// Stores an integer of 0 .. m-1 (or a ZPPOLY) as coefficient i of an object that is being made.
void setDenseCoefficient(DAG a, std::int64_t i, DAG value);
/// Trims zeros on top and simplifies.
DAG finishedDense(DAG a);

DAG constantDense(DAG c, DAG x, DAG m);  // c is any integer
DAG zeroDense(DAG x, DAG m);
/// `a`, or a copy that carries the modulus m, which is at least that of a and of its form.
DAG withModulus(DAG a, DAG m);

// ---- conversion

/// The polynomial f in x. Errors: "modp1: invalid arguments", "modp1: degree too large".
DAG mConvertIn(DAG f, DAG x, DAG m);
/// The same for a LIST of integers, lowest degree first.
DAG mConvertList(DAG list, DAG x, DAG m);
/// A SUM, highest degree first, simplified.
DAG mConvertOut(DAG a, DAG x);

// ---- arithmetic

DAG mAdd(DAG summands, DAG m);  // an EXPSEQ of them, not empty
DAG mSubtract(DAG a, DAG b, DAG m);
DAG mNegate(DAG a, DAG m);
DAG mMultiply(DAG a, DAG b, DAG m);
/// Quotient and remainder, each unless the pointer is null.
void mDivide(DAG a, DAG b, DAG* quotient, DAG* remainder, DAG m);
DAG mGcd(DAG a, DAG b, DAG m);
/// The monic gcd; `*s` the cofactor of a.
DAG mGcdex(DAG a, DAG b, DAG* s, DAG m);
/// a^n modulo b for an integer n, not negative. Error: "0^0 generated".
DAG mPowmod(DAG a, DAG n, DAG b, DAG m);
DAG mResultant(DAG a, DAG b, DAG m);
DAG mDiff(DAG a, DAG m);
/// a * x^n; coefficients that a negative n takes below 0 are dropped.
DAG mShift(DAG a, std::int64_t n, DAG m);
/// a(x + c)
DAG mTranslate(DAG a, DAG c, DAG m);
DAG mEval(DAG a, DAG point, DAG m);
/// The LIST of values at a LIST of integers.
DAG mEval2(DAG a, DAG points, DAG m);
/// a in the modulus m2, its coefficients reduced where that is the smaller.
DAG mEmbed(DAG a, DAG m2);
/// The polynomial that takes the values at the points, LISTs of residues.
/// Errors: "modp1: invalid arguments", "the same point has been entered twice".
DAG mInterpolate(DAG points, DAG values, DAG x, DAG m);

// ---- numbers

/// Inverse of a modulo m > 0 as an integer of 0 .. m-1, or 0 if there is none.
DAG mInverse(DAG a, DAG m);
/// a^n modulo |m|, in 0 .. |m|-1. Errors: "0^0 is undefined", "the modular inverse does not exist".
DAG mpower(DAG a, DAG n, DAG m);
/// The least integer that leaves the residues, LISTs of one length. Errors: "list of moduli and residues must be the
/// same length", "modp1: invalid arguments", "moduli are not relatively prime".
DAG mChrem(DAG residues, DAG moduli);
/// A modulus that makes a field (numbers/primes/primality.h).
bool isPrimeModulus(DAG n);
/// The largest prime below n, to walk down: see the source for small n.
DAG mGetPrime(DAG n);

/// Pseudo-random numbers: the seed goes on by seed * 21216 mod 46337; below k.
Word mRand(Word k);
void ResetModRand();
/// A random polynomial of that degree. Error: "invalid result from rand".
DAG mRandpoly(DAG x, std::int64_t degree, DAG m);

// ---- calls of the library

/// The arguments of a library procedure: `arguments`, and the modulus at their end. They are values, and names among
/// them are quoted, so that a procedure may assign results to them even if they have values already.
DAG libraryArguments(DAG arguments, DAG m);

// ---- checks of arguments

/// A dense polynomial in one indeterminate whose modulus is at most m, and of the same form.
bool mVerify(DAG a, DAG m);
/// Both, in the same indeterminate.
bool mVerifyPair(DAG a, DAG b, DAG m);
bool mVerifyMany(DAG sequence, DAG m);
/// A LIST of residues modulo m.
bool mVerifyList(DAG list, DAG m);
/// Two dense polynomials, or LISTs of them, with one indeterminate and modulus throughout.
bool mVerifyComparison(DAG a, DAG b);
/// The same rule as `mVerify` for two indeterminates.
bool m2Verify(DAG a, DAG m);
inline bool gf1Verify(DAG a, DAG m) { return m2Verify(a, m); }

}  // namespace korel
