#pragma once
// Residues modulo an integer of any size, as runs of 64-bit limbs, lowest first.
//
// A number of more limbs is reduced by division with a reciprocal of the modulus's top limb (Knuth, vol. 2, 4.3.1,
// algorithm D), so that every modulus will do, even ones too. All residues have the length of the modulus.

#include "algebra/modular/workspace.h"
#include "numbers/limbs/limb_rows.h"
#include "store/dag.h"

namespace korel {

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
  LimbDivisor top;  // highest limb of `normal`

  /// `m` is an integer above 1; the limbs lie in the workspace.
  WideModulus(DAG m, Workspace& space);

  /// r = x modulo m. x has `count` limbs and room for one more; it is lost.
  void reduce(Limb* r, Limb* x, long count) const;
  /// r = the inverse of a; false when there is none. r may be a.
  bool invert(Limb* r, const Limb* a) const;
  /// r = residue of the integer x of either sign.
  void residueOf(Limb* r, DAG x) const;
};

}  // namespace korel
