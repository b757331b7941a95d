#pragma once
// Residues modulo an integer of any size, as runs of 64-bit limbs, lowest first.
//
// A number of more limbs is reduced by division with a reciprocal of the modulus's top limb (Knuth, vol. 2, 4.3.1,
// algorithm D), so that every modulus will do, even ones too. All residues have the length of the modulus.

#include <cstdint>

#include "algebra/modular/workspace.h"
#include "store/dag.h"

namespace korel {

using Limb = std::uint64_t;
using DoubleLimb = unsigned __int128;

/// Limbs that the magnitude of an integer takes, 1 for 0.
long limbsFor(DAG integer);
/// Writes the magnitude of an integer as `count` limbs, which are enough; those on top become 0.
void limbsOfInteger(DAG integer, Limb* limbs, long count);
/// The canonical integer of `count` limbs, which are left as they are.
DAG integerOfLimbs(const Limb* limbs, long count);

struct WideModulus {
  long limbs = 0;
  const Limb* modulus = nullptr;
  const Limb* normal = nullptr;  // shifted left until the top bit is set
  int shift = 0;
  Limb reciprocal = 0;  // 2^128 / top limb of `normal`, rounded down, less 2^64

  /// `m` is an integer above 1; the limbs lie in the workspace.
  WideModulus(DAG m, Workspace& space);

  /// r = x modulo m. x has `count` limbs and room for one more; it is lost.
  void reduce(Limb* r, Limb* x, long count) const;
  /// r = the inverse of a; false when there is none. r may be a.
  bool invert(Limb* r, const Limb* a) const;
  /// r = residue of the integer x of either sign.
  void residueOf(Limb* r, DAG x) const;
};

/// Quotient and rest of (high, low) by `divisor`, whose top bit is set; high is below it.
struct LimbQuotient {
  Limb quotient, rest;
};
inline Limb reciprocalOf(Limb divisor) { return static_cast<Limb>((DoubleLimb{~divisor} << 64 | ~Limb{0}) / divisor); }
/// Moeller and Granlund, "Improved division by invariant integers", algorithm 4.
inline LimbQuotient divideLimbs(Limb high, Limb low, Limb divisor, Limb reciprocal) {
  DoubleLimb estimate = DoubleLimb{reciprocal} * high + (DoubleLimb{high} << 64 | low);
  Limb quotient = static_cast<Limb>(estimate >> 64) + 1;
  Limb rest = low - quotient * divisor;
  Limb over = Limb{0} - static_cast<Limb>(rest > static_cast<Limb>(estimate));
  quotient += over;
  rest += over & divisor;
  if (__builtin_expect(rest >= divisor, 0)) {
    ++quotient;
    rest -= divisor;
  }
  return {quotient, rest};
}

}  // namespace korel
