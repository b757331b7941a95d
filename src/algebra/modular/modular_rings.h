#pragma once
// The two kinds of coefficients of a dense polynomial: machine words below 46328, and runs of limbs.
//
// Algorithms on dense polynomials are templates over a ring. A ring says how wide a coefficient is in its units, and
// does arithmetic on pointers to coefficients; `at(c, i)` is coefficient i of an array. The workhorse is `dot`, the sum
// of many products with one reduction at its end: products and quotients of polynomials are made of it.

#include <cstdint>
#include <cstring>

#include "algebra/modular/wide_modulus.h"
#include "store/dag.h"
#include "store/reference_fields.h"

namespace korel {

/// True when the coefficients of polynomials modulo `m` are raw words.
inline bool isHardwareModulus(DAG m) { return isImmediate(m) && immediateValue(m) <= largestRawModulus; }

/// Inverse of a modulo m by the extended Euclidean algorithm, or 0 when there is none; a is in 0 .. m-1.
std::int64_t mInverseHW(std::int64_t a, std::int64_t m);
/// Error: "the modular inverse does not exist".
[[noreturn]] void mInverseError();

struct HardwareRing {
  using Unit = Word;
  static constexpr long width = 1;
  static constexpr bool isHardware = true;
  Word m;
  std::uint64_t inverse;  // 2^64 / m, rounded down
  double reciprocal;      // 1 / m

  explicit HardwareRing(DAG modulus) : m(static_cast<Word>(immediateValue(modulus))) {
    // The same modulus comes again and again, and divisions take as long as a short product.
    static Inverses last = {1, ~std::uint64_t{0}, 1};
    if (m != last.m) last = {m, ~std::uint64_t{0} / m, 1.0 / m};
    inverse = last.inverse;
    reciprocal = last.reciprocal;
  }

  static Unit* at(Unit* c, long i) { return c + i; }
  static const Unit* at(const Unit* c, long i) { return c + i; }
  static Unit* take(Workspace& space, long count) { return space.take<Unit>(static_cast<std::size_t>(count)); }
  static void copy(Unit* r, const Unit* a, long count) {
    std::memmove(r, a, static_cast<std::size_t>(count) * sizeof(Unit));
  }
  static void clear(Unit* r, long count) { std::memset(r, 0, static_cast<std::size_t>(count) * sizeof(Unit)); }

  /// The quotient by the reciprocal is at most 1 too small.
  Word reduced(std::uint64_t x) const {
    auto q = static_cast<std::uint64_t>(static_cast<DoubleLimb>(x) * inverse >> 64);
    auto r = static_cast<Word>(x - q * m);
    return r >= m ? r - m : r;
  }
  static bool isZero(const Unit* a) { return *a == 0; }
  static bool isOne(const Unit* a) { return *a == 1; }
  static bool isEqual(const Unit* a, const Unit* b) { return *a == *b; }
  void setSmall(Unit* r, std::uint64_t x) const { *r = reduced(x); }
  void setInteger(Unit* r, DAG integer) const;
  DAG integer(const Unit* a) const { return immediate(static_cast<std::int32_t>(*a)); }
  void add(Unit* r, const Unit* a, const Unit* b) const {
    Word sum = *a + *b;
    *r = sum >= m ? sum - m : sum;
  }
  void subtract(Unit* r, const Unit* a, const Unit* b) const { *r = *a >= *b ? *a - *b : *a + m - *b; }
  void negate(Unit* r, const Unit* a) const { *r = *a == 0 ? 0 : m - *a; }
  void multiply(Unit* r, const Unit* a, const Unit* b) const { *r = reduced(std::uint64_t{*a} * *b); }
  bool invert(Unit* r, const Unit* a) const {
    *r = static_cast<Word>(mInverseHW(*a, m));
    return *r != 0;
  }
  /// r = the sum of x[i] * y[i], i below n.
  void dot(Unit* r, const Unit* x, const Unit* y, long n) const;
  /// Steps for `passWork` of so many products of coefficients.
  static std::int64_t steps(std::int64_t products) { return products / 4; }

 private:
  struct Inverses {
    Word m;
    std::uint64_t inverse;
    double reciprocal;
  };
};

struct WideRing {
  using Unit = Limb;
  static constexpr bool isHardware = false;
  WideModulus modulus;
  long width;

  WideRing(DAG m, Workspace& space) : modulus(m, space), width(modulus.limbs) {}

  Unit* at(Unit* c, long i) const { return c + i * width; }
  const Unit* at(const Unit* c, long i) const { return c + i * width; }
  Unit* take(Workspace& space, long count) const {
    return space.take<Unit>(static_cast<std::size_t>(count) * static_cast<std::size_t>(width));
  }
  void copy(Unit* r, const Unit* a, long count) const {
    std::memmove(r, a, static_cast<std::size_t>(count * width) * sizeof(Unit));
  }
  void clear(Unit* r, long count) const { std::memset(r, 0, static_cast<std::size_t>(count * width) * sizeof(Unit)); }

  bool isZero(const Unit* a) const {
    Limb any = 0;
    for (long i = 0; i < width; ++i) any |= a[i];
    return any == 0;
  }
  bool isOne(const Unit* a) const {
    Limb any = a[0] ^ 1;
    for (long i = 1; i < width; ++i) any |= a[i];
    return any == 0;
  }
  bool isEqual(const Unit* a, const Unit* b) const {
    return std::memcmp(a, b, static_cast<std::size_t>(width) * sizeof(Unit)) == 0;
  }
  void setSmall(Unit* r, std::uint64_t x) const {
    clear(r, 1);
    r[0] = width == 1 ? x % modulus.modulus[0] : x;
  }
  void setInteger(Unit* r, DAG integer) const { modulus.residueOf(r, integer); }
  DAG integer(const Unit* a) const { return integerOfLimbs(a, width); }
  void add(Unit* r, const Unit* a, const Unit* b) const;
  void subtract(Unit* r, const Unit* a, const Unit* b) const;
  void negate(Unit* r, const Unit* a) const;
  void multiply(Unit* r, const Unit* a, const Unit* b) const { dot(r, a, b, 1); }
  bool invert(Unit* r, const Unit* a) const { return modulus.invert(r, a); }
  void dot(Unit* r, const Unit* x, const Unit* y, long n) const;
  std::int64_t steps(std::int64_t products) const { return products * (width + 1) * (width + 1); }
};

/// Runs `work` on the ring of the modulus `m`, an integer above 1, with scratch that any error gives back.
template <class Work>
auto withModularRing(DAG m, Work work) {
  GuardedWorkspace space;
  if (isHardwareModulus(m)) return work(HardwareRing(m), space);
  return work(WideRing(m, space), space);
}

}  // namespace korel
