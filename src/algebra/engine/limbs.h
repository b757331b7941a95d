#pragma once
// Coefficients of a fixed width: W limbs of 64 bits in two's complement, lowest first.
//
// Whoever adds and multiplies has bounded the result, so that nothing is checked on the way: all arithmetic is modulo
// 2^(64 W), and sums that overflow on their way come out right.

#include <cstddef>
#include <cstdint>

namespace korel::engine {

using Limb = std::uint64_t;
using Wide = unsigned __int128;

/// The widths that there are; wider coefficients take other ways.
inline constexpr int widths[] = {1, 2, 3, 4, 6, 8};
inline constexpr int widest = 8;
/// The least width that holds numbers of magnitude below 2^bits and their negatives; 0 when there is none.
constexpr int widthFor(double bits) {
  for (int w : widths)
    if (bits < 64.0 * w - 1.5) return w;
  return 0;
}

inline bool isNegative(const Limb* x, int w) { return static_cast<std::int64_t>(x[w - 1]) < 0; }

template <int W>
inline bool isZero(const Limb* x) {
  Limb all = 0;
  for (int i = 0; i < W; ++i) all |= x[i];
  return all == 0;
}
template <int W>
inline void negate(Limb* x) {
  Limb carry = 1;
  for (int i = 0; i < W; ++i) {
    x[i] = ~x[i] + carry;
    carry = carry != 0 && x[i] == 0 ? 1 : 0;
  }
}
/// sum += x.
template <int W>
inline void add(Limb* sum, const Limb* x) {
  Limb carry = 0;
  for (int i = 0; i < W; ++i) {
    const Wide s = Wide{sum[i]} + x[i] + carry;
    sum[i] = static_cast<Limb>(s);
    carry = static_cast<Limb>(s >> 64);
  }
}
/// x of `w` limbs in W limbs, W at least w.
template <int W>
inline void extend(Limb* to, const Limb* x, int w) {
  const Limb fill = isNegative(x, w) ? ~Limb{0} : 0;
  for (int i = 0; i < W; ++i) to[i] = i < w ? x[i] : fill;
}

/// sum += a * b; W limbs for the sum, WA and WB (1 or W) for the factors.
template <int W, int WA, int WB>
inline void addProduct(Limb* sum, const Limb* a, const Limb* b) {
  if constexpr (W == 1) {
    sum[0] += a[0] * b[0];
  } else if constexpr (WA == 1 && WB == 1) {
    const __int128 product = static_cast<__int128>(static_cast<std::int64_t>(a[0])) * static_cast<std::int64_t>(b[0]);
    if constexpr (W == 2) {
      Wide s = Wide{sum[1]} << 64 | sum[0];
      s += static_cast<Wide>(product);
      sum[0] = static_cast<Limb>(s);
      sum[1] = static_cast<Limb>(s >> 64);
    } else {
      const Limb fill = product < 0 ? ~Limb{0} : 0;
      const Limb parts[2] = {static_cast<Limb>(product), static_cast<Limb>(static_cast<Wide>(product) >> 64)};
      Limb carry = 0;
      for (int i = 0; i < W; ++i) {
        Wide s = Wide{sum[i]} + (i < 2 ? parts[i] : fill) + carry;
        sum[i] = static_cast<Limb>(s);
        carry = static_cast<Limb>(s >> 64);
      }
    }
  } else if constexpr (WB == 1) {
    // The factor of one limb by its magnitude: a signed one would need a correction in each limb.
    const auto factor = static_cast<std::int64_t>(b[0]);
    const Limb magnitude = factor < 0 ? Limb{0} - static_cast<Limb>(factor) : static_cast<Limb>(factor);
    Limb carry = 0;
    if (factor >= 0) {
      for (int i = 0; i < W; ++i) {
        Wide s = Wide{a[i]} * magnitude + sum[i] + carry;
        sum[i] = static_cast<Limb>(s);
        carry = static_cast<Limb>(s >> 64);
      }
    } else {
      Limb borrow = 0;
      for (int i = 0; i < W; ++i) {
        Wide p = Wide{a[i]} * magnitude + carry;
        carry = static_cast<Limb>(p >> 64);
        const Limb low = static_cast<Limb>(p), before = sum[i];
        sum[i] = before - low - borrow;
        borrow = before < low || (before == low && borrow != 0) ? 1 : 0;
      }
    }
  } else if constexpr (WA == 1) {
    addProduct<W, WB, WA>(sum, b, a);
  } else {
    // The low W limbs of a product are the same whether the factors are read as signed or not.
    for (int i = 0; i < W; ++i) {
      Limb carry = 0;
      for (int j = 0; i + j < W; ++j) {
        Wide s = Wide{a[i]} * b[j] + sum[i + j] + carry;
        sum[i + j] = static_cast<Limb>(s);
        carry = static_cast<Limb>(s >> 64);
      }
    }
  }
}

/// Bits of the magnitude, rounded up.
inline int bitLength(const Limb* x, int w) {
  const Limb flip = isNegative(x, w) ? ~Limb{0} : 0;
  for (int i = w - 1; i >= 0; --i)
    if (Limb limb = x[i] ^ flip; limb != 0) return 64 * i + 64 - __builtin_clzll(limb) + (flip != 0 ? 1 : 0);
  return 1;
}

/// Calls `work` with W as a constant, for a `width` of the table.
template <class Work>
inline auto withWidth(int width, Work work) {
  switch (width) {
    case 1: return work(std::integral_constant<int, 1>{});
    case 2: return work(std::integral_constant<int, 2>{});
    case 3: return work(std::integral_constant<int, 3>{});
    case 4: return work(std::integral_constant<int, 4>{});
    case 6: return work(std::integral_constant<int, 6>{});
    default: return work(std::integral_constant<int, 8>{});
  }
}

}  // namespace korel::engine
