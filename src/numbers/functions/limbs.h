#pragma once
// Rows of binary limbs: the arithmetic below the binary floats of real.h, and the space that they live in.
//
// A row is a plain array of 64-bit limbs, lowest first, whose length is given. Rows lie in one stack of limbs: who
// works takes what he needs with `limbSpace` and gives it back by the mark that he has noted (`LimbMark`). An
// interrupt or a time limit empties the whole stack before it jumps (`passLimbWork`), so that nothing here has
// to be destroyed, and no other error may be raised while rows are in use.

#include <cstddef>
#include <cstdint>

#include "store/dag.h"

namespace korel {

using Limb = std::uint64_t;
using DoubleLimb = unsigned __int128;

// ---- space

/// `count` limbs, not cleared. They stay where they are until a mark noted before is given back.
Limb* limbSpace(std::size_t count);
/// Gives back what has been taken since, when it goes or when it is told.
class LimbMark {
 public:
  LimbMark();
  ~LimbMark() { release(); }
  LimbMark(const LimbMark&) = delete;
  LimbMark& operator=(const LimbMark&) = delete;
  void release();

 private:
  std::size_t chunk_, used_;
  bool released_ = false;
};
/// A place in the stack, and the way back to it: for loops that give space back in each round.
struct LimbPlace {
  std::size_t chunk, used;
};
LimbPlace limbPlace();
void returnToPlace(const LimbPlace& place);
/// Empties the stack, and hands long chunks back to the system.
void releaseAllLimbs();
/// Counts work, about a product of limbs a step. An interrupt or a time limit ends it with an error.
void passLimbWork(std::size_t steps);

// ---- rows

inline void clearLimbs(Limb* r, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) r[i] = 0;
}
inline void copyLimbs(Limb* r, const Limb* a, std::size_t n) { __builtin_memmove(r, a, n * sizeof(Limb)); }
/// Order of two rows of n limbs.
int compareLimbs(const Limb* a, const Limb* b, std::size_t n);
/// r = a + b and r = a - b, n limbs; give carry and borrow. r may be an operand.
Limb addLimbs(Limb* r, const Limb* a, const Limb* b, std::size_t n);
Limb subtractLimbs(Limb* r, const Limb* a, const Limb* b, std::size_t n);
/// r += x and r -= x for a single limb; give carry and borrow.
Limb addLimb(Limb* r, std::size_t n, Limb x);
Limb subtractLimb(Limb* r, std::size_t n, Limb x);
/// r = -a modulo 2^(64 n).
void negateLimbs(Limb* r, const Limb* a, std::size_t n);
/// r = a * f, r += a * f, r -= a * f; give the limb that comes out at the top.
Limb scaleLimbs(Limb* r, const Limb* a, std::size_t n, Limb f);
Limb addScaled(Limb* r, const Limb* a, std::size_t n, Limb f);
Limb subtractScaled(Limb* r, const Limb* a, std::size_t n, Limb f);
/// r = a / d; gives the remainder. r may be a.
Limb divideLimbs(Limb* r, const Limb* a, std::size_t n, Limb d);
/// r = a * 2^k and r = a / 2^k for 0 <= k < 64; the first gives what comes out at the top. r may be a.
Limb shiftLimbsUp(Limb* r, const Limb* a, std::size_t n, unsigned k);
void shiftLimbsDown(Limb* r, const Limb* a, std::size_t n, unsigned k);

/// r = a * b, na + nb limbs, neither 0. r doesn't overlap. The same row twice makes a square.
void multiplyLimbs(Limb* r, const Limb* a, std::size_t na, const Limb* b, std::size_t nb);
/// The n highest of the 2n limbs of a * b, short of less than two units of the lowest.
void multiplyHigh(Limb* r, const Limb* a, const Limb* b, std::size_t n);
/// q = a / b for rows of na >= nb limbs, b's top bit set: na - nb limbs, and the limb above them (0 or 1) as result. a
/// keeps the remainder in its nb lowest limbs.
Limb quotientOfLimbs(Limb* q, Limb* a, std::size_t na, const Limb* b, std::size_t nb);

}  // namespace korel
