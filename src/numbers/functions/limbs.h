#pragma once
// Long rows of limbs (limb_rows.h) for the binary floats of real.h: products and quotients, and the space they live in.
//
// Rows lie in one stack of limbs: who works takes what he needs with `limbSpace` and gives it back by the mark that he
// has noted (`LimbMark`). An interrupt or a time limit empties the whole stack before it jumps (`passLimbWork`), so
// that nothing here has to be destroyed, and no other error may be raised while rows are in use.

#include <cstddef>

#include "numbers/limbs/limb_rows.h"

namespace korel {

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

// ---- products and quotients

/// r = a * b, na + nb limbs, neither 0. r doesn't overlap. The same row twice makes a square.
void multiplyLimbs(Limb* r, const Limb* a, std::size_t na, const Limb* b, std::size_t nb);
/// The n highest of the 2n limbs of a * b, short of less than two units of the lowest.
void multiplyHigh(Limb* r, const Limb* a, const Limb* b, std::size_t n);
/// q = a / b for rows of na >= nb limbs, b's top bit set: na - nb limbs, and the limb above them (0 or 1) as result. a
/// keeps the remainder in its nb lowest limbs.
Limb quotientOfLimbs(Limb* q, Limb* a, std::size_t na, const Limb* b, std::size_t nb);

}  // namespace korel
