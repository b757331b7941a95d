#pragma once
// Products modulo one odd number, without division (Montgomery, "Modular multiplication without trial division", 1985).
//
// A residue x stands as x * 2^(64 n) modulo the number, in n limbs: its form. Sums and differences of forms are forms,
// and `multiply` gives the form of the product.

#include "numbers/primes/natural.h"

namespace korel {

class MontgomeryModulus {
 public:
  /// `modulus` is odd and above 1.
  explicit MontgomeryModulus(const Natural& modulus);

  std::size_t limbs() const { return modulus_.size(); }
  const Natural& modulus() const { return modulus_; }
  /// The forms of 1 and of a residue, `limbs()` limbs each.
  const Natural& one() const { return one_; }
  Natural form(const Natural& x) const;
  Natural valueOf(const Natural& form) const;

  /// r = a * b, a + b, a - b of forms; r may be an operand.
  void multiply(Limb* r, const Limb* a, const Limb* b) const;
  /// The same for a * a, in three quarters of the time.
  void square(Limb* r, const Limb* a) const;
  void add(Limb* r, const Limb* a, const Limb* b) const;
  void subtract(Limb* r, const Limb* a, const Limb* b) const;
  /// r = base^exponent for a form; `exponent` isn't zero. False when the clock has stopped it.
  [[nodiscard]] bool power(Natural& r, const Natural& base, const Natural& exponent) const;

 private:
  void reduceOnce(Limb* r, Limb top) const;
  template <typename AddColumn>
  void reduceColumns(Limb* r, AddColumn addColumn) const;
  void multiplyTwoLimbs(Limb* r, const Limb* a, const Limb* b) const;

  Natural modulus_;
  Limb inverse_ = 0;      // -1 / modulus modulo 2^64
  Natural one_, square_;  // of the radix: the forms of 1 and of the radix
  mutable Natural scratch_;
};

// ---- one limb

/// The same for an odd number of one limb.
class LimbModulus {
 public:
  explicit LimbModulus(Limb modulus);
  Limb modulus() const { return modulus_; }
  Limb one() const { return one_; }
  Limb form(Limb x) const { return multiply(x % modulus_, square_); }
  Limb multiply(Limb a, Limb b) const {
    const DoubleLimb t = DoubleLimb{a} * b;
    const Limb q = static_cast<Limb>(t) * inverse_;
    const Limb high = static_cast<Limb>(t >> 64), taken = static_cast<Limb>((DoubleLimb{q} * modulus_) >> 64);
    return high >= taken ? high - taken : high - taken + modulus_;
  }
  Limb add(Limb a, Limb b) const { return a >= modulus_ - b ? a - (modulus_ - b) : a + b; }
  Limb power(Limb base, Limb exponent) const;

 private:
  Limb modulus_, inverse_, one_, square_;  // inverse_: 1 / modulus modulo 2^64
};

}  // namespace korel
