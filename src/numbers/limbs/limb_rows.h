#pragma once
// Rows of binary limbs: the arithmetic below binary floats, primes and residues of long moduli.
//
// A row is a plain array of 64-bit limbs, lowest first, whose length is given; nothing here takes memory or raises.
// The loops stand in the header, since most rows are a few limbs long and their callers are hot.

#include <cstddef>
#include <cstdint>

namespace korel {

using Limb = std::uint64_t;
using DoubleLimb = unsigned __int128;

// ---- shape and order

inline void clearLimbs(Limb* r, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) r[i] = 0;
}
inline void copyLimbs(Limb* r, const Limb* a, std::size_t n) { __builtin_memmove(r, a, n * sizeof(Limb)); }
/// The length without the zero limbs on top.
inline std::size_t significantLimbs(const Limb* a, std::size_t n) {
  while (n > 0 && a[n - 1] == 0) --n;
  return n;
}
/// Order of two rows of n limbs.
inline int compareLimbs(const Limb* a, const Limb* b, std::size_t n) {
  while (n-- > 0)
    if (a[n] != b[n]) return a[n] < b[n] ? -1 : 1;
  return 0;
}

// ---- sums

/// r = a + b and r = a - b, n limbs; give carry and borrow. r may be an operand.
inline Limb addLimbs(Limb* r, const Limb* a, const Limb* b, std::size_t n) {
  Limb carry = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const DoubleLimb t = DoubleLimb{a[i]} + b[i] + carry;
    r[i] = static_cast<Limb>(t);
    carry = static_cast<Limb>(t >> 64);
  }
  return carry;
}
inline Limb subtractLimbs(Limb* r, const Limb* a, const Limb* b, std::size_t n) {
  Limb borrow = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const DoubleLimb t = DoubleLimb{a[i]} - b[i] - borrow;
    r[i] = static_cast<Limb>(t);
    borrow = static_cast<Limb>(t >> 64) & 1;
  }
  return borrow;
}
/// r += x and r -= x for a single limb; give carry and borrow.
inline Limb addLimb(Limb* r, std::size_t n, Limb x) {
  for (std::size_t i = 0; i < n && x != 0; ++i) {
    r[i] += x;
    x = r[i] < x ? 1 : 0;
  }
  return x;
}
inline Limb subtractLimb(Limb* r, std::size_t n, Limb x) {
  for (std::size_t i = 0; i < n && x != 0; ++i) {
    const Limb before = r[i];
    r[i] -= x;
    x = before < x ? 1 : 0;
  }
  return x;
}
/// r = -a modulo 2^(64 n).
inline void negateLimbs(Limb* r, const Limb* a, std::size_t n) {
  std::size_t i = 0;
  for (; i < n && a[i] == 0; ++i) r[i] = 0;
  if (i < n) {
    r[i] = 0 - a[i];
    for (++i; i < n; ++i) r[i] = ~a[i];
  }
}

// ---- products by one limb

/// r = a * f, r += a * f, r -= a * f; give the limb that comes out at the top.
inline Limb scaleLimbs(Limb* r, const Limb* a, std::size_t n, Limb f) {
  Limb carry = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const DoubleLimb t = DoubleLimb{a[i]} * f + carry;
    r[i] = static_cast<Limb>(t);
    carry = static_cast<Limb>(t >> 64);
  }
  return carry;
}
inline Limb addScaled(Limb* r, const Limb* a, std::size_t n, Limb f) {
  Limb carry = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const DoubleLimb t = DoubleLimb{a[i]} * f + r[i] + carry;
    r[i] = static_cast<Limb>(t);
    carry = static_cast<Limb>(t >> 64);
  }
  return carry;
}
inline Limb subtractScaled(Limb* r, const Limb* a, std::size_t n, Limb f) {
  Limb borrow = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const DoubleLimb t = DoubleLimb{a[i]} * f + borrow;
    const auto low = static_cast<Limb>(t);
    borrow = static_cast<Limb>(t >> 64) + static_cast<Limb>(r[i] < low);
    r[i] -= low;
  }
  return borrow;
}

// ---- products by columns

/// The sum of products of limbs that makes a column of a longer product, and what it carries.
struct LimbColumn {
  Limb low = 0, high = 0, top = 0;

  /// Adds a * b. Compilers make a comparison of each carry; these additions take two thirds of the time of a row's.
  void add(Limb a, const Limb& b) {
    Limb upper;
    asm("mulq %5\n\taddq %%rax, %0\n\tadcq %%rdx, %1\n\tadcq $0, %2"
        : "+r"(low), "+r"(high), "+r"(top), "+a"(a), "=&d"(upper)
        : "m"(b)
        : "cc");
  }
  /// Adds a[0] * b[0] + a[1] * b[-1] + ..., `count` products.
  void add(const Limb* a, const Limb* b, std::size_t count) {
    for (; count > 0; --count) add(*a++, *b--);
  }
  /// Adds the column twice.
  void addTwice(const LimbColumn& c) {
    const DoubleLimb l = DoubleLimb{low} + (c.low << 1);
    const DoubleLimb h = DoubleLimb{high} + (c.high << 1 | c.low >> 63) + static_cast<Limb>(l >> 64);
    low = static_cast<Limb>(l);
    high = static_cast<Limb>(h);
    top += (c.top << 1 | c.high >> 63) + static_cast<Limb>(h >> 64);
  }
  /// The lowest limb; what is left is carried to the next column.
  Limb shift() {
    const Limb r = low;
    low = high;
    high = top;
    top = 0;
    return r;
  }
};

/// r = a * b from column `first` on, na + nb - first limbs; neither row is empty. r doesn't overlap.
inline void multiplyColumns(Limb* r, const Limb* a, std::size_t na, const Limb* b, std::size_t nb,
                            std::size_t first = 0) {
  LimbColumn column;
  for (std::size_t k = first; k + 1 < na + nb; ++k) {
    const std::size_t low = k < nb ? 0 : k - nb + 1, high = k < na ? k : na - 1;
    column.add(a + low, b + (k - low), high - low + 1);
    *r++ = column.shift();
  }
  *r = column.low;
}
/// Column k of a^2: products of different limbs once, doubled, and the square.
inline void addSquareColumn(LimbColumn& column, const Limb* a, std::size_t n, std::size_t k) {
  LimbColumn pairs;
  const std::size_t low = k < n ? 0 : k - n + 1;
  pairs.add(a + low, a + (k - low), (k + 1) / 2 - low);
  column.addTwice(pairs);
  if (k % 2 == 0) column.add(a[k / 2], a[k / 2]);
}
/// r = a^2, 2n limbs, n > 0. r doesn't overlap.
inline void squareLimbs(Limb* r, const Limb* a, std::size_t n) {
  LimbColumn column;
  for (std::size_t k = 0; k + 1 < 2 * n; ++k) {
    addSquareColumn(column, a, n, k);
    r[k] = column.shift();
  }
  r[2 * n - 1] = column.low;
}

// ---- shifts

/// r = a * 2^k and r = a / 2^k for 0 <= k < 64; the first gives what comes out at the top. r may be a.
inline Limb shiftLimbsUp(Limb* r, const Limb* a, std::size_t n, unsigned k) {
  if (n == 0) return 0;
  if (k == 0) {
    copyLimbs(r, a, n);
    return 0;
  }
  const Limb out = a[n - 1] >> (64 - k);
  for (std::size_t i = n - 1; i > 0; --i) r[i] = a[i] << k | a[i - 1] >> (64 - k);
  r[0] = a[0] << k;
  return out;
}
inline void shiftLimbsDown(Limb* r, const Limb* a, std::size_t n, unsigned k) {
  if (n == 0) return;
  if (k == 0) {
    copyLimbs(r, a, n);
    return;
  }
  for (std::size_t i = 0; i + 1 < n; ++i) r[i] = a[i] >> k | a[i + 1] << (64 - k);
  r[n - 1] = a[n - 1] >> k;
}

// ---- quotients

/// Division of two limbs by one whose top bit is set, with its reciprocal (Moeller and Granlund, "Improved division
/// by invariant integers", algorithm 4).
struct LimbDivisor {
  Limb value = 0, reciprocal = 0;

  LimbDivisor() = default;
  constexpr explicit LimbDivisor(Limb normalized)
      : value(normalized), reciprocal(static_cast<Limb>((DoubleLimb{~normalized} << 64 | ~Limb{0}) / normalized)) {}

  /// The quotient of (high, low), high below the divisor; `rest` may be `high`.
  Limb divide(Limb high, Limb low, Limb& rest) const {
    const DoubleLimb estimate = DoubleLimb{reciprocal} * high + (DoubleLimb{high} << 64 | low);
    Limb quotient = static_cast<Limb>(estimate >> 64) + 1;
    Limb left = low - quotient * value;
    const Limb over = Limb{0} - static_cast<Limb>(left > static_cast<Limb>(estimate));
    quotient += over;
    left += over & value;
    if (left >= value) [[unlikely]] {
      ++quotient;
      left -= value;
    }
    rest = left;
    return quotient;
  }
};

/// r = a / d for d > 0; gives the remainder. r may be a.
inline Limb divideLimbs(Limb* r, const Limb* a, std::size_t n, Limb d) {
  const int shift = __builtin_clzll(d);
  const LimbDivisor divisor(d << shift);
  Limb rest = shift == 0 || n == 0 ? 0 : a[n - 1] >> (64 - shift);
  for (std::size_t i = n; i-- > 0;) {
    const Limb low = shift == 0 ? a[i] : a[i] << shift | (i == 0 ? 0 : a[i - 1] >> (64 - shift));
    r[i] = divisor.divide(rest, low, rest);
  }
  return rest >> shift;
}

/// One limb of a quotient of rows (Knuth, vol. 2, 4.3.1, algorithm D). Takes the nb limbs of b, whose highest is `top`,
/// out of the nb + 1 limbs of a as often as it goes, and gives how often. What the nb highest limbs of a tell is less
/// than b; the highest becomes 0.
inline Limb quotientLimb(Limb* a, const Limb* b, std::size_t nb, const LimbDivisor& top) {
  const Limb high = a[nb];
  if (high == 0 && a[nb - 1] < top.value) return 0;
  Limb digit = ~Limb{0};
  if (high < top.value) {
    Limb rest;
    digit = top.divide(high, a[nb - 1], rest);
    // The second limb tells most of the estimates that are too large, one in four.
    while (nb > 1 && DoubleLimb{digit} * b[nb - 2] > (DoubleLimb{rest} << 64 | a[nb - 2])) {
      --digit;
      rest += top.value;
      if (rest < top.value) break;
    }
  }
  Limb borrow = subtractScaled(a, b, nb, digit);
  for (; high < borrow; --digit) borrow -= addLimbs(a, a, b, nb);
  a[nb] = 0;
  return digit;
}

}  // namespace korel
