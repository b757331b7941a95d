#include "numbers/primes/montgomery.h"

#include <algorithm>

#include "frame/interrupts.h"

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
    : modulus_(modulus), inverse_(-inverseOfLimb(modulus[0])), scratch_(2 * modulus.size() + 2) {
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
  if (n == 2) return multiplyTwoLimbs(r, a, b);
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

// The same for two limbs, all of it in registers: factors of 20 to 38 digits live on it (bench/number_theory.sh).
void MontgomeryModulus::multiplyTwoLimbs(Limb* r, const Limb* a, const Limb* b) const {
  const Limb m0 = modulus_[0], m1 = modulus_[1], b0 = b[0], b1 = b[1];
  Limb t0 = 0, t1 = 0, top = 0;
  for (const Limb limb : {a[0], a[1]}) {
    const DoubleLimb low = DoubleLimb{limb} * b0 + t0;
    const DoubleLimb middle = DoubleLimb{limb} * b1 + t1 + static_cast<Limb>(low >> 64);
    const DoubleLimb high = DoubleLimb{top} + static_cast<Limb>(middle >> 64);
    const Limb q = static_cast<Limb>(low) * inverse_;
    const DoubleLimb gone = DoubleLimb{q} * m0 + static_cast<Limb>(low);
    const DoubleLimb first = DoubleLimb{q} * m1 + static_cast<Limb>(middle) + static_cast<Limb>(gone >> 64);
    const DoubleLimb second = high + static_cast<Limb>(first >> 64);
    t0 = static_cast<Limb>(first);
    t1 = static_cast<Limb>(second);
    top = static_cast<Limb>(second >> 64);
  }
  r[0] = t0;
  r[1] = t1;
  if (top != 0 || t1 > m1 || (t1 == m1 && t0 >= m0)) subtractLimbs(r, r, modulus_.data(), 2);
}

void MontgomeryModulus::square(Limb* r, const Limb* a) const {
  const std::size_t n = limbs();
  if (n <= 2) return multiply(r, a, a);
  Limb* t = scratch_.data();
  squareLimbs(t, a, n);
  Limb carry = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const DoubleLimb s = DoubleLimb{addScaled(t + i, modulus_.data(), n, t[i] * inverse_)} + t[i + n] + carry;
    t[i + n] = static_cast<Limb>(s);
    carry = static_cast<Limb>(s >> 64);
  }
  reduceOnce(t + n, carry);
  std::copy(t + n, t + 2 * n, r);
}

void MontgomeryModulus::add(Limb* r, const Limb* a, const Limb* b) const { reduceOnce(r, addLimbs(r, a, b, limbs())); }

void MontgomeryModulus::subtract(Limb* r, const Limb* a, const Limb* b) const {
  if (subtractLimbs(r, a, b, limbs()) != 0) addLimbs(r, r, modulus_.data(), limbs());
}

bool MontgomeryModulus::power(Natural& r, const Natural& base, const Natural& exponent) const {
  // Windows that end in a bit of 1, with a table of the odd powers (Knuth, vol. 2, 4.6.3).
  const std::size_t bits = bitLength(exponent), window = bits < 24 ? 2 : bits < 80 ? 3 : bits < 240 ? 4 : 5;
  std::vector<Natural> odd{base};
  const auto steps = static_cast<std::int64_t>(2 * limbs() * limbs() + 10);
  r = base;
  square(r.data(), r.data());
  while (odd.size() < std::size_t{1} << (window - 1)) {
    odd.push_back(odd.back());
    multiply(odd.back().data(), odd.back().data(), r.data());
  }
  r = one_;
  bool started = false;
  for (std::size_t at = bits; at > 0;) {
    std::size_t end = at - 1, digit = 0;  // bits end .. at - 1 make the digit
    if (bitAt(exponent, end)) {
      end = at > window ? at - window : 0;
      while (!bitAt(exponent, end)) ++end;
      for (std::size_t i = at; i-- > end;) digit = 2 * digit + bitAt(exponent, i);
    }
    for (std::size_t i = end; started && i < at; ++i) square(r.data(), r.data());
    if (isTimeUp(steps * static_cast<std::int64_t>(at - end + 1))) return false;
    at = end;
    if (digit == 0) continue;
    if (started) multiply(r.data(), r.data(), odd[digit / 2].data());
    else r = odd[digit / 2];
    started = true;
  }
  return true;
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
