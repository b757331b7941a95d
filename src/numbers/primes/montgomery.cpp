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

// Product and reduction column by column (Koc, Acar and Kaliski, "Analyzing and comparing Montgomery multiplication
// algorithms", 1996: FIPS). `addColumn` adds column k of the product.
template <typename AddColumn>
void MontgomeryModulus::reduceColumns(Limb* r, AddColumn addColumn) const {
  const std::size_t n = limbs();
  const Limb* m = modulus_.data();
  Limb *q = scratch_.data(), *t = q + n;  // what the modulus is taken times, and the result
  LimbColumn column;
  for (std::size_t k = 0; k < n; ++k) {
    addColumn(column, k);
    column.add(q, m + k, k);
    q[k] = column.low * inverse_;
    column.add(q[k], m[0]);
    column.shift();
  }
  for (std::size_t k = n; k + 1 < 2 * n; ++k) {
    addColumn(column, k);
    column.add(q + (k - n + 1), m + n - 1, 2 * n - 1 - k);
    t[k - n] = column.shift();
  }
  t[n - 1] = column.low;
  reduceOnce(t, column.high);
  std::copy(t, t + n, r);
}

void MontgomeryModulus::multiply(Limb* r, const Limb* a, const Limb* b) const {
  const std::size_t n = limbs();
  if (n == 2) return multiplyTwoLimbs(r, a, b);
  reduceColumns(r, [=](LimbColumn& column, std::size_t k) {
    const std::size_t low = k < n ? 0 : k - n + 1;
    column.add(a + low, b + (k - low), (k < n ? k + 1 : n) - low);
  });
}

void MontgomeryModulus::square(Limb* r, const Limb* a) const {
  const std::size_t n = limbs();
  if (n < 6) return multiply(r, a, a);
  reduceColumns(r, [=](LimbColumn& column, std::size_t k) { addSquareColumn(column, a, n, k); });
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
