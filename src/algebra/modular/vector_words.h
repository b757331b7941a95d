#pragma once
// Loops over words below a hardware modulus in vector instructions, where the processor has them.

#include "algebra/modular/modular_rings.h"

namespace korel {

/// Whether the processor has the vector instructions that these loops and the transforms are written in.
bool hasVectorInstructions();

/// The sum of x[i] * y[i], exact.
std::uint64_t vectorDot(const Word* x, const Word* y, long n);
/// a[i] = (a[i] + c1 * b[i - 1] + c0 * b[i]) modulo m for i below n, b[-1] being 0; all are residues.
void addTwoMultiples(const HardwareRing& ring, Word* a, const Word* b, long n, Word c1, Word c0);

}  // namespace korel
