#include "numbers/primes/montgomery.h"

#include <algorithm>

namespace korel {

namespace {

/// 1 / n modulo 2^64 for n odd: each step of Newton's doubles the bits that are right.
Limb inverseOfLimb(Limb n) {
  Limb x = n;
  for (int i = 0; i < 6; ++i) x *= 2 - n * x;
  return x;
}

Natural padded(Natural x, std::size_t limbs) {
  x.resize(limbs);
  return x;
}

}  // namespace

MontgomeryModulus::MontgomeryModulus(const Natural& modulus)
    : modulus_(modulus), inverse_(-inverseOfLimb(modulus[0])), scratch_(modulus.size() + 2) {
  const std::size_t n = limbs();
  one_ = padded(remainder(shiftedLeft({1}, 64 * n), modulus), n);
  square_ = padded(remainder(shiftedLeft({1}, 128 * n), modulus), n);
}

Natural MontgomeryModulus::form(const Natural& x) const {
  Natural r = padded(remainder(x, modulus_), limbs());
  multiply(r.data(), r.data(), square_.data());
  return r;
}

Natural MontgomeryModulus::valueOf(const Natural& form) const {
  Natural r(limbs()), unit(limbs());
  unit[0] = 1;
  multiply(r.data(), form.data(), unit.data());
  dropZeroLimbs(r);
  return r;
}

void MontgomeryModulus::reduceOnce(Limb* r, Limb top) const {
  const std::size_t n = limbs();
  if (top != 0 || compareLimbs(r, modulus_.data(), n) >= 0) subtractLimbs(r, r, modulus_.data(), n);
}

// Product and reduction limb by limb (Koc, Acar and Kaliski, "Analyzing and comparing Montgomery multiplication
// algorithms", 1996: CIOS).
void MontgomeryModulus::multiply(Limb* r, const Limb* a, const Limb* b) const {
  const std::size_t n = limbs();
  Limb* t = scratch_.data();
  std::fill(t, t + n + 2, 0);
  for (std::size_t i = 0; i < n; ++i) {
    Limb carry = 0;
    for (std::size_t j = 0; j < n; ++j) {
      const DoubleLimb s = DoubleLimb{a[i]} * b[j] + t[j] + carry;
      t[j] = static_cast<Limb>(s);
      carry = static_cast<Limb>(s >> 64);
    }
    const DoubleLimb top = DoubleLimb{t[n]} + carry;
    t[n] = static_cast<Limb>(top);
    t[n + 1] = static_cast<Limb>(top >> 64);
    const Limb q = t[0] * inverse_;
    carry = static_cast<Limb>((DoubleLimb{q} * modulus_[0] + t[0]) >> 64);
    for (std::size_t j = 1; j < n; ++j) {
      const DoubleLimb s = DoubleLimb{q} * modulus_[j] + t[j] + carry;
      t[j - 1] = static_cast<Limb>(s);
      carry = static_cast<Limb>(s >> 64);
    }
    const DoubleLimb last = DoubleLimb{t[n]} + carry;
    t[n - 1] = static_cast<Limb>(last);
    t[n] = t[n + 1] + static_cast<Limb>(last >> 64);
  }
  reduceOnce(t, t[n]);
  std::copy(t, t + n, r);
}

void MontgomeryModulus::add(Limb* r, const Limb* a, const Limb* b) const { reduceOnce(r, addLimbs(r, a, b, limbs())); }

void MontgomeryModulus::subtract(Limb* r, const Limb* a, const Limb* b) const {
  if (subtractLimbs(r, a, b, limbs()) != 0) addLimbs(r, r, modulus_.data(), limbs());
}

Natural MontgomeryModulus::power(const Natural& base, const Natural& exponent) const {
  // Windows of four bits.
  constexpr std::size_t window = 4;
  std::vector<Natural> powers{one_, base};
  for (std::size_t i = 2; i < (std::size_t{1} << window); ++i) {
    powers.push_back(powers.back());
    multiply(powers[i].data(), powers[i].data(), base.data());
  }
  Natural r = one_;
  for (std::size_t at = (bitLength(exponent) + window - 1) / window * window; at > 0; at -= window) {
    for (std::size_t i = 0; i < window; ++i) multiply(r.data(), r.data(), r.data());
    std::size_t digit = 0;
    for (std::size_t i = 1; i <= window; ++i) digit = 2 * digit + bitAt(exponent, at - i);
    if (digit != 0) multiply(r.data(), r.data(), powers[digit].data());
  }
  return r;
}

LimbModulus::LimbModulus(Limb modulus) : modulus_(modulus), inverse_(inverseOfLimb(modulus)) {
  one_ = -modulus % modulus;
  square_ = static_cast<Limb>(DoubleLimb{one_} * one_ % modulus);
}

Limb LimbModulus::power(Limb base, Limb exponent) const {
  Limb r = one_;
  for (; exponent != 0; exponent >>= 1) {
    if (exponent & 1) r = multiply(r, base);
    base = multiply(base, base);
  }
  return r;
}

}  // namespace korel
