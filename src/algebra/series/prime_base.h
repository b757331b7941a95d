#pragma once
// Natural numbers without large primes, as exponents of the primes of a base.
//
// The denominators of a series have small primes only, as a rule: those up to its length. So a coefficient comes to
// its lowest terms by trial division, for which a residue by a product of primes serves all of these at once, and no
// greatest common divisors of long numbers are taken (bench/calculus.sh).

#include <cstdint>

#include "algebra/engine/arena.h"
#include "numbers/integer/integer_groups.h"
#include "store/dag.h"

namespace korel {

/// Exponents of the primes of a base, those from `used` on being 0.
struct SmoothNumber {
  std::int32_t* exponents;
  int used = 0;

  bool isOne() const { return used == 0; }
  /// Takes zeros off the end.
  void trim() {
    while (used > 0 && exponents[used - 1] == 0) --used;
  }
};

class PrimeBase {
 public:
  /// The primes up to `bound`; arrays are the arena's.
  PrimeBase(engine::Arena& arena, std::int32_t bound);

  int count() const { return count_; }
  SmoothNumber one() const { return {arena_.makeZero<std::int32_t>(static_cast<std::size_t>(count_)), 0}; }

  /// Divides the n groups of a number, which isn't 0, by each prime as often as it goes and `most` allows; `taken`
  /// becomes what it was divided by. Gives the count of significant groups left.
  std::size_t takeOut(Group* a, std::size_t n, const SmoothNumber& most, SmoothNumber& taken) const;
  void assign(SmoothNumber& x, const SmoothNumber& value) const;
  /// Multiplies by `more`, or by a natural number up to the bound.
  void multiply(SmoothNumber& x, const SmoothNumber& more) const;
  void multiply(SmoothNumber& x, std::int32_t number) const;
  /// Divides by a divisor.
  void divide(SmoothNumber& x, const SmoothNumber& divisor) const;
  /// Sets `x` to a natural number in either form; false when that has other primes.
  bool factor(DAG number, SmoothNumber& x) const;

  /// Calls `use` with factors below 10^16 whose product the number is.
  template <class Use>
  void forEachFactor(const SmoothNumber& x, Use use) const {
    Group product = 1;
    for (int i = 0; i < x.used; ++i) {
      const Prime& prime = primes_[i];
      std::int32_t e = x.exponents[i];
      for (; e >= prime.exponent; e -= prime.exponent) use(prime.power);
      for (; e > 0; --e) {
        if (Wide{product} * prime.p >= groupBase) {
          use(product);
          product = 1;
        }
        product *= prime.p;
      }
    }
    if (product != 1) use(product);
  }
  /// Groups that the number has at most.
  std::size_t groupsOf(const SmoothNumber& x) const;
  /// The number itself, simplified.
  DAG numberOf(const SmoothNumber& x) const;

 private:
  struct Prime {
    Group p, power;         // the largest power below 10^16
    std::int32_t exponent;  // of that
  };
  struct Run {
    int first, end;  // of the primes
    Group product;
  };
  struct Dividend;
  static std::int32_t divideOut(Dividend& x, const Prime& prime, std::int32_t most);

  engine::Arena& arena_;
  int count_ = 0, runs_ = 0;
  Prime* primes_;
  Run* run_;  // primes whose products stay below 10^16
};

}  // namespace korel
