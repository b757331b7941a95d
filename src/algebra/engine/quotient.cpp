#include "algebra/engine/quotient.h"

#include <algorithm>
#include <cmath>

#include "algebra/engine/product.h"
#include "algebra/polynomials/divide.h"
#include "eval/simplify/simplify.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"

namespace korel::engine {

namespace {

// x / y for numbers of W limbs, when y divides x.
template <int W>
bool divideCoefficient(const Limb* x, const Limb* y, Limb* q) {
  if constexpr (W == 1) {
    const auto a = static_cast<std::int64_t>(x[0]), b = static_cast<std::int64_t>(y[0]);
    if (b == -1) {
      q[0] = Limb{0} - x[0];
      return true;
    }
    if (a % b != 0) return false;
    q[0] = static_cast<Limb>(a / b);
    return true;
  } else {
    // Schoolbook division of magnitudes, bit by bit only where the divisor is longer than a limb.
    Limb n[W], d[W];
    std::copy_n(x, W, n);
    std::copy_n(y, W, d);
    const bool negativeN = isNegative(n, W), negativeD = isNegative(d, W);
    if (negativeN) negate<W>(n);
    if (negativeD) negate<W>(d);
    bool single = true;
    for (int i = 1; i < W; ++i) single = single && d[i] == 0;
    Limb rest[W] = {};
    if (single) {
      Limb r = 0;
      for (int i = W - 1; i >= 0; --i) {
        Wide part = Wide{r} << 64 | n[i];
        q[i] = static_cast<Limb>(part / d[0]);
        r = static_cast<Limb>(part % d[0]);
      }
      if (r != 0) return false;
    } else {
      std::fill_n(q, W, Limb{0});
      for (int bit = 64 * W - 1; bit >= 0; --bit) {
        for (int i = W - 1; i > 0; --i) rest[i] = rest[i] << 1 | rest[i - 1] >> 63;
        rest[0] = rest[0] << 1 | (n[bit / 64] >> (bit % 64) & 1);
        bool atLeast = true;
        for (int i = W - 1; i >= 0; --i)
          if (rest[i] != d[i]) {
            atLeast = rest[i] > d[i];
            break;
          }
        if (!atLeast) continue;
        Limb borrow = 0;
        for (int i = 0; i < W; ++i) {
          const Limb before = rest[i];
          rest[i] = before - d[i] - borrow;
          borrow = before < d[i] || (before == d[i] && borrow != 0) ? 1 : 0;
        }
        q[bit / 64] |= Limb{1} << (bit % 64);
      }
      if (!isZero<W>(rest)) return false;
    }
    if (negativeN != negativeD) negate<W>(q);
    return true;
  }
}

// The terms of a quotient as they come, and how long its coefficients are.
template <int W>
struct Growing {
  Arena& arena;
  Polynomial& quotient;
  std::size_t room;
  int longest = 0;

  Growing(Arena& a, Polynomial& q, std::size_t expected) : arena(a), quotient(q), room(expected) {
    q = {};
    q.width = W;
    q.monomials = a.make<Monomial>(room);
    q.coefficients = a.make<Limb>(room * W);
  }
  Limb* next(Monomial m) {
    if (quotient.count == room) {
      checkTermCount(room);
      room = 2 * room;
      quotient.monomials = arena.grow(quotient.monomials, room);
      quotient.coefficients = arena.grow(quotient.coefficients, room * W);
    }
    quotient.monomials[quotient.count] = m;
    return quotient.coefficients + quotient.count * W;
  }
  void keep() {
    longest = std::max(longest, bitLength(quotient.coefficients + quotient.count * W, W));
    ++quotient.count;
  }
};

// Sums on the way stay below |a| + min(terms) |q| |b|; they have to fit W limbs.
struct Bounds {
  double bitsOfA, bitsOfB;
  std::size_t termsOfB;
  bool allow(int longestQuotient, std::size_t terms, int width) const {
    double products = longestQuotient + bitsOfB + std::log2(static_cast<double>(std::min(terms, termsOfB)) + 1);
    return std::max(bitsOfA, products) + 1 < 64.0 * width - 2;
  }
};

double bitsOfLargest(const Polynomial& p) {
  int bits = 1;
  for (std::size_t i = 0; i < p.count; ++i) bits = std::max(bits, bitLength(p.coefficient(i), p.width));
  return bits;
}

// In each variable the degrees of quotient and divisor add up to that of the dividend, so that no term of an exact
// quotient lies above `highest`.
bool isTermOfQuotient(const Layout& layout, Monomial m, Monomial divisor, Monomial highest) {
  return divides(layout, divisor, m) && divides(layout, m - divisor, highest);
}

// ---- in a box: the remainder has a place for each monomial below the leading one of `a`

template <int W>
Division divideInBox(Arena& arena, const Layout& layout, const Box& box, Monomial highest, const Polynomial& a,
                     const Polynomial& b, Polynomial& quotient) {
  const auto places = static_cast<std::size_t>(box.places());
  auto* rest = arena.makeZero<Limb>(places * W);
  for (std::size_t i = 0; i < a.count; ++i) std::copy_n(a.coefficient(i), W, rest + box.placeOf(a.monomials[i]) * W);
  auto* offsets = arena.make<std::size_t>(b.count);
  const std::size_t top = box.placeOf(b.monomials[0]);
  for (std::size_t j = 0; j < b.count; ++j) offsets[j] = (top - box.placeOf(b.monomials[j])) * W;
  Growing<W> growing(arena, quotient, a.count / 4 + 16);
  const Bounds bounds{bitsOfLargest(a), bitsOfLargest(b), b.count};
  Division outcome = Division::exact;
  for (std::size_t k = places; k-- > 0;) {
    if (isZero<W>(rest + k * W)) continue;
    passWork(static_cast<std::int64_t>(b.count) * W);
    Limb q[W], negated[W];
    const Monomial m = box.monomialAt(k);
    if (!isTermOfQuotient(layout, m, b.monomials[0], highest) ||
        !divideCoefficient<W>(rest + k * W, b.coefficient(0), q)) {
      outcome = Division::inexact;
      break;
    }
    std::copy_n(q, W, growing.next(m - b.monomials[0]));
    growing.keep();
    if (!bounds.allow(growing.longest, quotient.count, W)) {
      outcome = Division::tooWide;
      break;
    }
    std::copy_n(q, W, negated);
    negate<W>(negated);
    for (std::size_t j = 0; j < b.count; ++j) addProduct<W, W, W>(rest + k * W - offsets[j], negated, b.coefficient(j));
  }
  arena.free(offsets);
  arena.free(rest);
  return outcome;
}

// ---- with a heap of products (Monagan and Pearce, "Sparse polynomial division using a heap")

struct Product {
  Monomial monomial;
  std::uint32_t inQuotient, inDivisor;
};

class ProductHeap {
 public:
  explicit ProductHeap(Arena& arena) : arena_(arena), products_(arena.make<Product>(room_)) {}
  bool empty() const { return count_ == 0; }
  const Product& top() const { return products_[0]; }
  void push(const Product& product) {
    if (count_ == room_) products_ = arena_.grow(products_, room_ *= 2);
    products_[count_++] = product;
    std::push_heap(products_, products_ + count_, below);
  }
  Product pop() {
    std::pop_heap(products_, products_ + count_, below);
    return products_[--count_];
  }
  void release() { arena_.free(products_); }

 private:
  static bool below(const Product& a, const Product& b) { return a.monomial < b.monomial; }
  Arena& arena_;
  std::size_t room_ = 256, count_ = 0;
  Product* products_;
};

template <int W>
Division divideWithHeap(Arena& arena, const Layout& layout, Monomial highest, const Polynomial& a, const Polynomial& b,
                        Polynomial& quotient) {
  Growing<W> growing(arena, quotient, a.count / 4 + 16);
  ProductHeap heap(arena);
  const Bounds bounds{bitsOfLargest(a), bitsOfLargest(b), b.count};
  Division outcome = Division::exact;
  // The divisor with its sign turned, so that products are taken away by adding.
  auto* negated = arena.make<Limb>(b.count * W);
  std::copy_n(b.coefficients, b.count * W, negated);
  for (std::size_t j = 0; j < b.count; ++j) negate<W>(negated + j * W);
  std::size_t i = 0;
  while (i < a.count || !heap.empty()) {
    passWork(30);
    Monomial m = i < a.count ? a.monomials[i] : 0;
    if (!heap.empty() && (i >= a.count || heap.top().monomial > m)) m = heap.top().monomial;
    Limb sum[W] = {};
    if (i < a.count && a.monomials[i] == m) std::copy_n(a.coefficient(i++), W, sum);
    while (!heap.empty() && heap.top().monomial == m) {
      passWork(30 * W);
      Product product = heap.pop();
      addProduct<W, W, W>(sum, quotient.coefficient(product.inQuotient), negated + product.inDivisor * W);
      if (++product.inDivisor == b.count) continue;
      product.monomial = quotient.monomials[product.inQuotient] + b.monomials[product.inDivisor];
      heap.push(product);
    }
    if (isZero<W>(sum)) continue;
    if (!isTermOfQuotient(layout, m, b.monomials[0], highest) ||
        !divideCoefficient<W>(sum, b.coefficient(0), growing.next(m - b.monomials[0]))) {
      outcome = Division::inexact;
      break;
    }
    growing.keep();
    if (!bounds.allow(growing.longest, quotient.count, W)) {
      outcome = Division::tooWide;
      break;
    }
    const auto last = static_cast<std::uint32_t>(quotient.count - 1);
    if (b.count > 1) heap.push({quotient.monomials[last] + b.monomials[1], last, 1});
  }
  arena.free(negated);
  heap.release();
  return outcome;
}

template <int W>
Division divideAs(Arena& arena, const Layout& layout, const Polynomial& a, const Polynomial& b, Polynomial& quotient) {
  std::int64_t highest[mostVariables], highestOfB[mostVariables];
  highestExponents(layout, a, highest);
  highestExponents(layout, b, highestOfB);
  Monomial highestOfQuotient = 0;
  for (int v = 0; v < layout.count; ++v) {
    if (highestOfB[v] > highest[v]) return Division::inexact;
    highestOfQuotient |= static_cast<Monomial>(highest[v] - highestOfB[v]) << layout.variables[v].shift;
  }
  Box box(layout, highest);
  const bool dense = box.places() < 40 * static_cast<double>(a.count) && box.places() * W < 1e8;
  return dense ? divideInBox<W>(arena, layout, box, highestOfQuotient, a, b, quotient)
               : divideWithHeap<W>(arena, layout, highestOfQuotient, a, b, quotient);
}

Polynomial inWidth(Arena& arena, const Polynomial& p, int width) {
  if (p.width == width) return p;
  Polynomial wide = p;
  wide.width = width;
  wide.coefficients = arena.make<Limb>(p.count * width);
  for (std::size_t i = 0; i < p.count; ++i)
    withWidth(width, [&](auto w) { extend<w>(wide.coefficients + i * width, p.coefficient(i), p.width); });
  return wide;
}

}  // namespace

Division divideExactly(Arena& arena, const Layout& layout, const Polynomial& a, const Polynomial& b,
                       Polynomial& quotient) {
  const int least = std::max(a.width, b.width);
  for (int width : widths) {
    if (width < least || !Bounds{bitsOfLargest(a), bitsOfLargest(b), b.count}.allow(1, 1, width)) continue;
    Division outcome = withWidth(width, [&](auto w) {
      constexpr int W = w;
      return divideAs<W>(arena, layout, inWidth(arena, a, W), inWidth(arena, b, W), quotient);
    });
    if (outcome != Division::tooWide) return outcome;
  }
  return Division::tooWide;
}

// ---- long coefficients, by way of the values at a power of ten or term by term

namespace {

constexpr double longestValue = 1e6;  // digits of base 10000

// Where terms lie far apart: the kernel's long division, on the expressions.
bool quotientByTerms(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b,
                     IntegerPolynomial& quotient) {
  const std::int64_t zeros[mostVariables] = {};
  if (b.count == 1 && b.monomials[0] == 0) return false;
  DAG dividend = unpackIntegers(arena, layout, a.monomials, a.coefficients, a.count, zeros, cons1);
  DAG divisor = unpackIntegers(arena, layout, b.monomials, b.coefficients, b.count, zeros, cons1), q;
  if (!divideByTerms(dividend, divisor, q)) return false;
  Operand operand{.sum = q};
  operand.terms = isTag(q, SUM) ? (lengthOf(q) - 1) / 2 : 1;
  operand.denominator = cons1;
  quotient = packIntegers(arena, layout, operand);
  return true;
}

// Factors of a polynomial have coefficients whose product is below e^(sum of degrees) times the largest of its own
// (Gelfond): what is longer is no quotient, and what is not cannot mix with its neighbours in the product.
bool quotientOfValues(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b,
                      IntegerPolynomial& quotient) {
  constexpr double bitsOfE = 1.4427;
  std::int64_t highest[mostVariables], highestOfB[mostVariables], highestOfQuotient[mostVariables];
  highestExponents(layout, {a.count, a.monomials, nullptr, 1}, highest);
  highestExponents(layout, {b.count, b.monomials, nullptr, 1}, highestOfB);
  double bits = bitsOfLargest(a) + 2;
  for (int v = 0; v < layout.count; ++v) bits += bitsOfE * static_cast<double>(highest[v]) + 1;
  Box box(layout, highest);
  const std::int64_t digits =
      digitsForBits(std::max(bits, bitsOfLargest(b)) + std::log2(static_cast<double>(b.count)) + 2);
  if (box.places() * static_cast<double>(digits) > longestValue) return quotientByTerms(arena, layout, a, b, quotient);
  DAG q, rest = rem(valueAtPower(arena, box, a, digits), valueAtPower(arena, box, b, digits), &q);
  if (simpl(rest) != cons0) return false;
  PowerSum sum = fromValue(arena, simpl(q), digits);
  if (sum.count == 0) return false;
  quotient = inBox(arena, box, sum, sum.exponents[0]);
  if (quotient.count == 0 || bitsOfLargest(quotient) + bitsOfLargest(b) > bits + 2) return false;
  highestExponents(layout, {quotient.count, quotient.monomials, nullptr, 1}, highestOfQuotient);
  for (int v = 0; v < layout.count; ++v)
    if (highestOfQuotient[v] + highestOfB[v] > highest[v]) return false;
  return true;
}

}  // namespace

bool quotientOfIntegers(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b,
                        IntegerPolynomial& quotient) {
  Polynomial dividend = inLimbs(arena, a), divisor = inLimbs(arena, b), q;
  if (dividend.count != 0 && divisor.count != 0) {
    switch (divideExactly(arena, layout, dividend, divisor, q)) {
      case Division::inexact: return false;
      case Division::tooWide: break;
      case Division::exact: quotient = asIntegers(arena, q); return true;
    }
  }
  return quotientOfValues(arena, layout, a, b, quotient);
}

}  // namespace korel::engine
