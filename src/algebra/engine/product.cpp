#include "algebra/engine/product.h"

#include <algorithm>
#include <cmath>

#include "frame/errors.h"
#include "frame/interrupts.h"

namespace korel::engine {

// ---- boxes

Box::Box(const Layout& layout, const std::int64_t* highest) : layout_(layout), places_(1) {
  for (int v = layout.count - 1; v >= 0; --v) {
    strides_[v] = places_ < 1e15 ? static_cast<std::size_t>(places_) : 0;
    places_ *= static_cast<double>(highest[v]) + 1;
  }
}

std::size_t Box::placeOf(Monomial m) const {
  std::size_t place = 0;
  for (int v = 0; v < layout_.count; ++v)
    place += strides_[v] * static_cast<std::size_t>(exponentIn(layout_.variables[v], m));
  return place;
}

Monomial Box::monomialAt(std::size_t place) const {
  Monomial m = 0;
  for (int v = 0; v < layout_.count; ++v) {
    m |= static_cast<Monomial>(place / strides_[v]) << layout_.variables[v].shift;
    place %= strides_[v];
  }
  return m;
}

void highestExponents(const Layout& layout, const Polynomial& p, std::int64_t* highest) {
  for (int v = 0; v < layout.count; ++v) {
    highest[v] = 0;
    for (std::size_t i = 0; i < p.count; ++i)
      highest[v] = std::max(highest[v], exponentIn(layout.variables[v], p.monomials[i]));
  }
}

namespace {

constexpr double largestBoxBytes = 1e9;
constexpr double largestTableBytes = 6e9;

// ---- in a box

template <int W, int WA, int WB>
Polynomial multiplyInBox(Arena& arena, const Box& box, const Polynomial& a, const Polynomial& b) {
  const auto places = static_cast<std::size_t>(box.places());
  auto* sums = arena.makeZero<Limb>(places * W);
  auto* placesOfB = arena.make<std::size_t>(b.count);
  for (std::size_t j = 0; j < b.count; ++j) placesOfB[j] = box.placeOf(b.monomials[j]) * W;
  for (std::size_t i = 0; i < a.count; ++i) {
    passWork(static_cast<std::int64_t>(b.count) * W);
    Limb* at = sums + box.placeOf(a.monomials[i]) * W;
    const Limb* ca = a.coefficients + i * WA;
    for (std::size_t j = 0; j < b.count; ++j) addProduct<W, WA, WB>(at + placesOfB[j], ca, b.coefficients + j * WB);
  }
  Polynomial result;
  result.width = W;
  for (std::size_t k = 0; k < places; ++k) result.count += !isZero<W>(sums + k * W);
  checkTermCount(result.count);
  result.monomials = arena.make<Monomial>(result.count);
  result.coefficients = arena.make<Limb>(result.count * W);
  std::size_t n = 0;
  for (std::size_t k = places; k-- > 0;) {
    if (isZero<W>(sums + k * W)) continue;
    result.monomials[n] = box.monomialAt(k);
    std::copy_n(sums + k * W, W, result.coefficients + n * W);
    ++n;
  }
  arena.free(placesOfB);
  arena.free(sums);
  return result;
}

// ---- in a table

// Open addressing with linear probing, at most half full. A key is a monomial + 1, since 0 marks a free place.
template <int W>
class SumTable {
 public:
  SumTable(Arena& arena, std::size_t expected) : arena_(arena) {
    while ((std::size_t{1} << bits_) < 2 * expected && bits_ < 22) ++bits_;
    entries_ = arena.template makeZero<Entry>(std::size_t{1} << bits_);
  }

  Limb* sumOf(Monomial m) {
    const Monomial key = m + 1;
    std::size_t at = placeOf(key);
    while (entries_[at].key != key) {
      if (entries_[at].key == 0) {
        if (2 * (used_ + 1) > (std::size_t{1} << bits_)) {
          grow();
          return sumOf(m);
        }
        ++used_;
        entries_[at].key = key;
        break;
      }
      at = (at + 1) & mask();
    }
    return entries_[at].sum;
  }

  Polynomial terms() {
    Polynomial result;
    result.width = W;
    for (std::size_t k = 0; k <= mask(); ++k) result.count += !isZero<W>(entries_[k].sum);
    checkTermCount(result.count);
    result.monomials = arena_.template make<Monomial>(result.count);
    result.coefficients = arena_.template make<Limb>(result.count * W);
    std::size_t n = 0;
    for (std::size_t k = 0; k <= mask(); ++k) {
      if (isZero<W>(entries_[k].sum)) continue;
      result.monomials[n] = entries_[k].key - 1;
      std::copy_n(entries_[k].sum, W, result.coefficients + n * W);
      ++n;
    }
    arena_.free(entries_);
    sortTerms(arena_, result);
    return result;
  }

 private:
  struct Entry {
    Monomial key;
    Limb sum[W];
  };
  std::size_t mask() const { return (std::size_t{1} << bits_) - 1; }
  // Multiplicative hashing (Knuth, vol. 3, 6.4): the upper bits of the product are the best.
  std::size_t placeOf(Monomial key) const {
    const auto low = static_cast<std::uint64_t>(key), high = static_cast<std::uint64_t>(key >> 64);
    std::uint64_t mixed = (low ^ high * 0xff51afd7ed558ccdu) * 0x9e3779b97f4a7c15u;
    return (mixed ^ mixed >> 29) * 0xbf58476d1ce4e5b9u >> (64 - bits_);
  }
  void grow() {
    checkTermCount(used_);
    Entry* old = entries_;
    const std::size_t places = mask() + 1;
    if (static_cast<double>(places) * 2 * sizeof(Entry) > largestTableBytes) KernelException("object too large");
    ++bits_;
    entries_ = arena_.template makeZero<Entry>(mask() + 1);
    for (std::size_t k = 0; k < places; ++k) {
      if (old[k].key == 0) continue;
      std::size_t at = placeOf(old[k].key);
      while (entries_[at].key != 0) at = (at + 1) & mask();
      entries_[at] = old[k];
    }
    arena_.free(old);
  }

  Arena& arena_;
  int bits_ = 6;
  std::size_t used_ = 0;
  Entry* entries_;
};

template <int W, int WA, int WB>
Polynomial multiplyInTable(Arena& arena, const Polynomial& a, const Polynomial& b) {
  SumTable<W> table(arena, 2 * (a.count + b.count));
  for (std::size_t i = 0; i < a.count; ++i) {
    passWork(3 * static_cast<std::int64_t>(b.count) * W);
    const Limb* ca = a.coefficients + i * WA;
    for (std::size_t j = 0; j < b.count; ++j)
      addProduct<W, WA, WB>(table.sumOf(a.monomials[i] + b.monomials[j]), ca, b.coefficients + j * WB);
  }
  return table.terms();
}

template <int W, int WA, int WB>
Polynomial multiplyAs(Arena& arena, const Layout& layout, const Polynomial& a, const Polynomial& b) {
  std::int64_t highest[mostVariables], highestOfB[mostVariables];
  highestExponents(layout, a, highest);
  highestExponents(layout, b, highestOfB);
  for (int v = 0; v < layout.count; ++v) highest[v] += highestOfB[v];
  Box box(layout, highest);
  const double products = static_cast<double>(a.count) * static_cast<double>(b.count);
  // A place is cleared and read once; a product in the table costs some four times as much as in the box.
  if (box.places() < 2 * products + 1000 && box.places() * W * sizeof(Limb) < largestBoxBytes)
    return multiplyInBox<W, WA, WB>(arena, box, a, b);
  return multiplyInTable<W, WA, WB>(arena, a, b);
}

Polynomial widened(Arena& arena, const Polynomial& p, int width) {
  Polynomial wide = p;
  wide.width = width;
  wide.coefficients = arena.make<Limb>(p.count * width);
  for (std::size_t i = 0; i < p.count; ++i)
    withWidth(width, [&](auto w) { extend<w>(wide.coefficients + i * width, p.coefficient(i), p.width); });
  return wide;
}

}  // namespace

Polynomial multiply(Arena& arena, const Layout& layout, const Polynomial& a, const Polynomial& b, int width) {
  if (a.count < b.count) return multiply(arena, layout, b, a, width);
  return withWidth(width, [&](auto w) {
    constexpr int W = w;
    if (a.width == 1 && b.width == 1) return multiplyAs<W, 1, 1>(arena, layout, a, b);
    if (b.width == 1) return multiplyAs<W, W, 1>(arena, layout, a.width == W ? a : widened(arena, a, W), b);
    return multiplyAs<W, W, W>(arena, layout, a.width == W ? a : widened(arena, a, W),
                               b.width == W ? b : widened(arena, b, W));
  });
}

Polynomial sum(Arena& arena, const Polynomial& a, const Polynomial& b) {
  Polynomial result;
  result.width = a.width;
  result.monomials = arena.make<Monomial>(a.count + b.count);
  result.coefficients = arena.make<Limb>((a.count + b.count) * a.width);
  passWork(static_cast<std::int64_t>(a.count + b.count));
  std::size_t i = 0, j = 0;
  withWidth(a.width, [&](auto w) {
    while (i < a.count || j < b.count) {
      const bool fromA = i < a.count && (j == b.count || a.monomials[i] >= b.monomials[j]);
      const bool fromB = j < b.count && (i == a.count || b.monomials[j] >= a.monomials[i]);
      Limb* to = result.coefficients + result.count * w;
      result.monomials[result.count] = fromA ? a.monomials[i] : b.monomials[j];
      std::copy_n(fromA ? a.coefficient(i) : b.coefficient(j), w, to);
      if (fromA && fromB) add<w>(to, b.coefficient(j));
      i += fromA;
      j += fromB;
      result.count += !isZero<w>(to);
    }
  });
  return result;
}

Polynomial multiplyByFew(Arena& arena, const Polynomial& a, const Polynomial& b, int width) {
  Polynomial result;
  result.width = width;
  for (std::size_t j = 0; j < b.count; ++j) {
    Polynomial part;
    part.count = a.count;
    part.width = width;
    part.monomials = arena.make<Monomial>(a.count);
    part.coefficients = arena.makeZero<Limb>(a.count * width);
    passWork(3 * static_cast<std::int64_t>(a.count) * width);
    withWidth(width, [&](auto w) {
      constexpr int W = w;
      Limb factor[W], c[W];
      extend<W>(factor, b.coefficient(j), b.width);
      for (std::size_t i = 0; i < a.count; ++i) {
        part.monomials[i] = a.monomials[i] + b.monomials[j];
        extend<W>(c, a.coefficient(i), a.width);
        addProduct<W, W, W>(part.coefficients + i * W, c, factor);
      }
    });
    if (j == 0) {
      result = part;
      continue;
    }
    const Polynomial before = result;
    result = sum(arena, before, part);
    for (const Polynomial& p : {before, part}) {
      arena.free(p.monomials);
      arena.free(p.coefficients);
    }
  }
  return result;
}

double bitsOfNorm(const Polynomial& p) {
  // Lengths by themselves would count a sum of ones as twice as long.
  double sum = 0;
  for (std::size_t i = 0; i < p.count; ++i) {
    const Limb* c = p.coefficient(i);
    sum += bitLength(c, p.width) <= 52 ? std::fabs(static_cast<double>(static_cast<std::int64_t>(c[0])))
                                       : std::ldexp(1.0, std::min(bitLength(c, p.width), 1000));
  }
  return std::log2(sum + 1e-9) + 1e-6;
}

// ---- powers

namespace {

// Every term but one, at most, has a variable that no other has: products of different powers of the terms differ.
bool isIndependent(const Layout& layout, const Polynomial& a) {
  std::size_t dependent = 0;
  for (std::size_t i = 0; i < a.count && dependent < 2; ++i) {
    bool hasOwn = false;
    for (int v = 0; v < layout.count && !hasOwn; ++v) {
      std::size_t holders = 0;
      for (std::size_t k = 0; k < a.count; ++k) holders += exponentIn(layout.variables[v], a.monomials[k]) != 0;
      hasOwn = holders == 1 && exponentIn(layout.variables[v], a.monomials[i]) != 0;
    }
    dependent += !hasOwn;
  }
  return dependent < 2;
}

template <int W>
void scaleBy(Limb* x, Limb factor) {
  Limb carry = 0;
  for (int i = 0; i < W; ++i) {
    const Wide product = Wide{x[i]} * factor + carry;
    x[i] = static_cast<Limb>(product);
    carry = static_cast<Limb>(product >> 64);
  }
}
// For a magnitude, which the divisor divides.
template <int W>
void divideBy(Limb* x, Limb divisor) {
  if constexpr (W == 1) {
    x[0] /= divisor;
  } else {
    Limb rest = 0;
    for (int i = W - 1; i >= 0; --i) {
      const Wide part = Wide{rest} << 64 | x[i];
      x[i] = static_cast<Limb>(part / divisor);
      rest = static_cast<Limb>(part % divisor);
    }
  }
}

// The power of a sum of independent terms by the multinomial theorem: one term after the other gets its share of the
// exponent, the highest first, so that the terms of the power come in descending order where those of the sum are
// powers of single variables.
template <int W>
class MultinomialPower {
 public:
  MultinomialPower(Arena& arena, const Polynomial& a, std::int32_t n) : a_(a), n_(n) {
    // Binomial coefficients on the way to the last one, each a whole number.
    std::size_t count = 1;
    for (std::size_t i = 1; i < a.count; ++i) {
      count = count * (static_cast<std::size_t>(n) + i) / i;
      checkTermCount(count);
    }
    result_.width = W;
    result_.monomials = arena.make<Monomial>(count);
    result_.coefficients = arena.make<Limb>(count * W);
    powers_ = arena.makeZero<Limb>(a.count * static_cast<std::size_t>(n + 1) * W);
    for (std::size_t i = 0; i < a.count; ++i) {
      power(i, 0)[0] = 1;
      for (std::int32_t k = 1; k <= n; ++k)
        withWidth(a.width, [&](auto w) {
          // The sum's coefficients are no wider than the power's.
          if constexpr (w <= W) {
            Limb factor[W];
            extend<W>(factor, a.coefficient(i), w);
            addProduct<W, W, W>(power(i, k), power(i, k - 1), factor);
          }
        });
    }
  }
  Polynomial result() {
    Limb one[W] = {1};
    share(0, n_, 0, one);
    return result_;
  }

 private:
  Limb* power(std::size_t i, std::int32_t k) {
    return powers_ + (i * static_cast<std::size_t>(n_ + 1) + static_cast<std::size_t>(k)) * W;
  }
  // `product` is that of the terms before the i-th, to their powers, times the magnitude of their binomials.
  void share(std::size_t i, std::int32_t left, Monomial monomial, const Limb* product) {
    if (i + 1 == a_.count) {
      Limb* to = result_.coefficients + result_.count * W;
      std::fill_n(to, W, Limb{0});
      addProduct<W, W, W>(to, product, power(i, left));
      result_.monomials[result_.count++] = monomial + static_cast<Monomial>(left) * a_.monomials[i];
      return;
    }
    passWork(left + 1);
    Limb binomial[W] = {1};
    Monomial m = monomial + static_cast<Monomial>(left) * a_.monomials[i];
    for (std::int32_t k = left; k >= 0; --k, m -= a_.monomials[i]) {
      Limb scaled[W] = {}, next[W] = {};
      addProduct<W, W, W>(scaled, product, binomial);
      addProduct<W, W, W>(next, scaled, power(i, k));
      share(i + 1, left - k, m, next);
      scaleBy<W>(binomial, static_cast<Limb>(k));
      divideBy<W>(binomial, static_cast<Limb>(left - k + 1));
    }
  }

  const Polynomial& a_;
  std::int32_t n_;
  Limb* powers_;
  Polynomial result_;
};

}  // namespace

Polynomial raise(Arena& arena, const Layout& layout, const Polynomial& a, std::int32_t n) {
  const double bits = bitsOfNorm(a);
  const int width = widthFor(bits * n);
  if (width == 0) return {};
  if (n > 2 && isIndependent(layout, a)) {
    Polynomial power = withWidth(std::max(width, a.width), [&](auto w) {
      constexpr int W = w;
      return MultinomialPower<W>(arena, a, n).result();
    });
    sortTerms(arena, power);
    return power;
  }
  Polynomial result = a;
  for (std::int32_t k = 2; k <= n; ++k) {
    Polynomial next = multiply(arena, layout, result, a, std::max({widthFor(bits * k), result.width, a.width}));
    if (result.monomials != a.monomials) {
      arena.free(result.monomials);
      arena.free(result.coefficients);
    }
    result = next;
  }
  return result;
}

}  // namespace korel::engine
