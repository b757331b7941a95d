#pragma once
// Loops over words below a hardware modulus in vector instructions, where the processor has them.

#include "algebra/modular/modular_rings.h"

namespace korel {

/// Whether the processor has the vector instructions that these loops and the transforms are written in.
bool hasVectorInstructions();

/// The sum of x[i] * y[i], exact.
std::uint64_t vectorDot(const Word* x, const Word* y, long n);
/// Coefficients 0 to n - 1 of a * b: the first `na` of a, and all of b, which lies in `padded` behind `columnPadding`
/// zeros, with as many behind it. Wants vector instructions, and na below 2^20.
inline constexpr long columnPadding = 7;
void vectorColumns(const HardwareRing& ring, Word* r, long n, const Word* a, long na, const Word* padded, long nb);
/// The coefficients b with the zeros that `vectorColumns` wants.
Word* withColumnPadding(Workspace& space, const Word* b, long nb);
/// The n coefficients of a quotient, at the place of the lowest of which `top` begins in the dividend. `negative` are
/// the coefficients of the divisor, of degree db, from the top down, over -1 times the top one, whose inverse is given;
/// 8 zeros stand behind them. q has room for 8 more.
void vectorQuotient(const HardwareRing& ring, Word* q, const Word* top, long n, const Word* negative, long db,
                    Word inverse);
/// The same by scalar steps, without that room: a vector that is loaded right after some of its words were stored waits
/// for them, so that this is faster for few coefficients.
void shortQuotient(const HardwareRing& ring, Word* q, const Word* top, long n, const Word* negative, long db,
                   Word inverse);
/// The coefficients of b in reverse, times a factor of at most m, with 8 zeros behind them. `padded` is as above.
Word* reversedMultiple(const HardwareRing& ring, Workspace& space, const Word* padded, long nb, Word factor);
/// a[i] = (a[i] + c1 * b[i - 1] + c0 * b[i]) modulo m for i below n, b[-1] being 0; all are residues.
void addTwoMultiples(const HardwareRing& ring, Word* a, const Word* b, long n, Word c1, Word c0);
/// a[i] = (c2 * a[i] + c1 * b[i - 1] + c0 * b[i]) modulo m for i below n, b[-1] being 0; the factors are at most m.
void addTwoMultiplesToMultiple(const HardwareRing& ring, Word* a, const Word* b, long n, Word c2, Word c1, Word c0);

}  // namespace korel
