#include "algebra/modular/dense_factor.h"

#include <algorithm>
#include <limits>

#include "algebra/modular/dense_instances.h"
#include "frame/interrupts.h"

namespace korel {

namespace {

constexpr long noLimit = std::numeric_limits<long>::max();

// ---- the characteristic

long characteristicOf(const HardwareRing& ring) { return static_cast<long>(ring.m); }
long characteristicOf(const WideRing& ring) {
  const Limb p = ring.modulus.modulus[0];
  return ring.width == 1 && p < static_cast<Limb>(noLimit) ? static_cast<long>(p) : noLimit;
}
template <class Base>
long characteristicOf(const GaloisRing<Base>& ring) {
  return characteristicOf(ring.base);
}
long degreeOverPrimeField(const HardwareRing&) { return 1; }
long degreeOverPrimeField(const WideRing&) { return 1; }
template <class Base>
long degreeOverPrimeField(const GaloisRing<Base>& ring) {
  return ring.k;
}

// The order q of the field.
ExponentBits bitsOfOrder(const HardwareRing& ring, Workspace& space) {
  auto* limbs = space.take<Limb>(1);
  limbs[0] = ring.m;
  return {limbs, significantBits(limbs, 1)};
}
ExponentBits bitsOfOrder(const WideRing& ring, Workspace&) {
  return {ring.modulus.modulus, significantBits(ring.modulus.modulus, ring.width)};
}
template <class Base>
ExponentBits bitsOfOrder(const GaloisRing<Base>& ring, Workspace& space) {
  const ExponentBits p = bitsOfOrder(ring.base, space);
  const long n = (p.bits + 63) / 64, count = n * ring.k;
  auto* power = space.take<Limb>(static_cast<std::size_t>(count));
  auto* product = space.take<Limb>(static_cast<std::size_t>(count));
  std::fill(power, power + count, 0);
  power[0] = 1;
  for (long j = 0; j < ring.k; ++j) {
    std::fill(product, product + count, 0);
    for (long i = 0; i < n; ++i) {
      Limb carry = 0;
      for (long t = 0; t + i < count; ++t) {
        DoubleLimb sum = DoubleLimb{power[t]} * p.limbs[i] + product[t + i] + carry;
        product[t + i] = static_cast<Limb>(sum);
        carry = static_cast<Limb>(sum >> 64);
      }
    }
    std::swap(power, product);
  }
  return {power, significantBits(power, count)};
}

// r = the p-th root of a. In a prime field each element is its own; in one of p^k elements it is a^(p^(k-1)).
template <class R>
void takeRoot(const R& ring, typename R::Unit* r, const typename R::Unit* a) {
  ring.copy(r, a, 1);
}
template <class Base>
void takeRoot(const GaloisRing<Base>& ring, typename Base::Unit* r, const typename Base::Unit* a) {
  Workspace space;
  const ExponentBits p = bitsOfOrder(ring.base, space);
  auto* from = ring.take(space, 1);
  ring.copy(r, a, 1);
  for (long j = 1; j < ring.k; ++j) {
    ring.copy(from, r, 1);
    for (long i = p.bits - 2; i >= 0; --i) {
      ring.multiply(r, r, r);
      if (p[i]) ring.multiply(r, r, from);
    }
  }
}

// (q - 1) / 2: for an odd q, its bits but the lowest.
ExponentBits halved(Workspace& space, const ExponentBits& p) {
  const long count = (p.bits + 63) / 64;
  auto* limbs = space.take<Limb>(static_cast<std::size_t>(count));
  for (long i = 0; i < count; ++i) limbs[i] = p.limbs[i] >> 1 | (i + 1 < count ? p.limbs[i + 1] << 63 : 0);
  return {limbs, p.bits - 1};
}

// ---- steps

template <class R>
Dense<R> quotient(const R& ring, Workspace& space, Dense<R> a, Dense<R> b) {
  Dense<R> q = {ring.take(space, a.degree - b.degree + 1), a.degree - b.degree};
  Workspace step;
  Dense<R> rest = copied(ring, step, a, 0);
  divideDense(ring, rest.c, rest.degree, preparedDivisor(ring, step, b, q.degree + 1), q.c);
  return q;
}
template <class R>
Dense<R> commonDivisor(const R& ring, Workspace& space, Dense<R> a, Dense<R> b) {
  return gcdDense(ring, copied(ring, space, a, b.degree), copied(ring, space, b, a.degree));
}
template <class R>
Dense<R> derivative(const R& ring, Workspace& space, Dense<R> f) {
  Dense<R> d = {ring.take(space, f.degree + 1), -1};
  auto* factor = ring.take(space, 1);
  for (long i = 1; i <= f.degree; ++i) {
    ring.setSmall(factor, static_cast<std::uint64_t>(i));
    ring.multiply(ring.at(d.c, i - 1), ring.at(f.c, i), factor);
  }
  d.degree = trimmedDegree(ring, d.c, f.degree - 1);
  return d;
}

// a less x, in place; a has room for degree 1.
template <class R>
void subtractX(const R& ring, Dense<R>& a) {
  while (a.degree < 1) ring.clear(ring.at(a.c, ++a.degree), 1);
  Workspace space;
  auto* one = ring.take(space, 1);
  ring.setSmall(one, 1);
  ring.subtract(ring.at(a.c, 1), ring.at(a.c, 1), one);
  a.degree = trimmedDegree(ring, a.c, a.degree);
}

// ---- the Frobenius map modulo f

template <class R>
struct Frobenius {
  const R& ring;
  const Divisor<R>& f;
  long n;
  typename R::Unit* columns;  // coefficient j of x^(q*i) stands at j * n + i

  Frobenius(const R& ring, Workspace& space, const Divisor<R>& f)
      : ring(ring), f(f), n(f.b.degree), columns(ring.take(space, n * n)) {
    Workspace step;
    Dense<R> base = {ring.take(step, n + 1), 1};
    ring.clear(base.c, 2);
    ring.setSmall(ring.at(base.c, 1), 1);
    if (n == 1) base.degree = divideDense(ring, base.c, 1, f, static_cast<typename R::Unit*>(nullptr));
    Dense<R> power = powerDense(ring, step, base, bitsOfOrder(ring, step), f);
    Dense<R> row = {ring.take(step, 2 * n + 1), 0};
    auto* product = ring.take(step, 2 * n + 1);
    ring.setSmall(row.c, 1);
    for (long i = 0; i < n; ++i) {
      for (long j = 0; j < n; ++j) {
        auto* target = ring.at(columns, j * n + i);
        if (j <= row.degree) ring.copy(target, ring.at(row.c, j), 1);
        else ring.clear(target, 1);
      }
      const long degree = multiplyDense(ring, product, row, power);
      std::swap(row.c, product);
      row.degree = divideDense(ring, row.c, degree, f, static_cast<typename R::Unit*>(nullptr));
    }
  }
  /// r = a^q for a reduced a, into another array of n coefficients.
  Dense<R> operator()(typename R::Unit* r, Dense<R> a) const {
    passWork(ring.steps(n * (a.degree + 1)));
    for (long j = 0; j < n; ++j) ring.dot(ring.at(r, j), a.c, ring.at(columns, j * n), a.degree + 1);
    return {r, trimmedDegree(ring, r, n - 1)};
  }
};

}  // namespace

// ---- square-free parts

namespace {

template <class R>
void squareFree(const R& ring, Dense<R> f, long multiple, FactorList<R>& result) {
  const long p = characteristic(ring);
  Workspace space;
  Dense<R> c = commonDivisor(ring, space, f, derivative(ring, space, f));
  Dense<R> w = quotient(ring, space, f, c);
  for (long i = 1; w.degree > 0; ++i) {
    Dense<R> y = commonDivisor(ring, space, w, c);
    Dense<R> part = quotient(ring, space, w, y);
    if (part.degree > 0) result.add(ring, part, i * multiple);
    w = y;
    c = quotient(ring, space, c, y);
  }
  if (c.degree <= 0) return;
  // A p-th power.
  Dense<R> root = {ring.take(space, c.degree / p + 1), c.degree / p};
  for (long i = 0; i <= root.degree; ++i) rootOfElement(ring, ring.at(root.c, i), ring.at(c.c, i * p));
  squareFree(ring, root, multiple * p, result);
}

}  // namespace

template <class R>
void squareFreeParts(const R& ring, Dense<R> f, FactorList<R>& result) {
  squareFree(ring, f, 1, result);
}

// ---- factors by degree

namespace {

constexpr long gcdBatch = 8;  // differences x^(q^d) - x multiplied before a gcd is taken

// Calls found(g, d) for the product g of the factors of degree d; goes on while it answers true.
template <class R, class Found>
void separateDegrees(const R& ring, Dense<R> f, Found found) {
  Workspace space;
  Divisor<R> divisor = preparedDivisor(ring, space, f, f.degree);
  Frobenius<R> frobenius(ring, space, divisor);
  const long n = f.degree;
  Dense<R> rest = copied(ring, space, f, 0);
  Dense<R> powers[gcdBatch];  // x^(q^d), less x
  for (Dense<R>& h : powers) h.c = ring.take(space, n + 2);
  Dense<R> latest = {ring.take(space, n + 2), 1};
  ring.clear(latest.c, 2);
  ring.setSmall(ring.at(latest.c, 1), 1);
  if (n == 1) latest.degree = divideDense(ring, latest.c, 1, divisor, static_cast<typename R::Unit*>(nullptr));
  auto* spare = ring.take(space, n + 2);
  for (long d = 0; rest.degree > 0 && 2 * (d + 1) <= rest.degree;) {
    Workspace batch;
    Divisor<R> modulus = preparedDivisor(ring, batch, rest, rest.degree);
    Dense<R> product = {ring.take(batch, 2 * n + 1), 0};
    auto* other = ring.take(batch, 2 * n + 1);
    ring.setSmall(product.c, 1);
    long count = 0;
    for (; count < gcdBatch && 2 * (d + count + 1) <= rest.degree; ++count) {
      Dense<R> next = frobenius(spare, latest);
      std::swap(latest.c, spare);
      latest = {latest.c, next.degree};
      Dense<R>& h = powers[count];
      ring.copy(h.c, latest.c, latest.degree + 1);
      h.degree = latest.degree;
      subtractX(ring, h);
      h.degree = divideDense(ring, h.c, h.degree, modulus, static_cast<typename R::Unit*>(nullptr));
      const long degree = multiplyDense(ring, other, product, h);
      std::swap(product.c, other);
      product.degree = divideDense(ring, product.c, degree, modulus, static_cast<typename R::Unit*>(nullptr));
    }
    Dense<R> common = commonDivisor(ring, batch, rest, product);
    for (long k = 0; k < count && common.degree > 0; ++k) {
      Dense<R> g = commonDivisor(ring, batch, common, powers[k]);
      if (g.degree <= 0) continue;
      if (!found(g, d + k + 1)) return;
      common = quotient(ring, batch, common, g);
      Dense<R> less = quotient(ring, batch, rest, g);
      ring.copy(rest.c, less.c, less.degree + 1);
      rest.degree = less.degree;
    }
    d += count;
  }
  if (rest.degree > 0) found(rest, rest.degree);
}

}  // namespace

template <class R>
void distinctDegrees(const R& ring, Dense<R> f, FactorList<R>& result) {
  separateDegrees(ring, f, [&](Dense<R> g, long d) {
    result.add(ring, g, d);
    return true;
  });
}

template <class R>
bool isIrreducible(const R& ring, Dense<R> f) {
  bool irreducible = false;
  separateDegrees(ring, f, [&](Dense<R>, long d) {
    irreducible = d == f.degree;
    return false;
  });
  return irreducible;
}

template <class R>
Dense<R> partWithRoots(const R& ring, Workspace& space, Dense<R> f) {
  Divisor<R> divisor = preparedDivisor(ring, space, f, f.degree);
  Dense<R> x = {ring.take(space, f.degree + 2), 1};
  ring.clear(x.c, 2);
  ring.setSmall(ring.at(x.c, 1), 1);
  if (f.degree == 1) x.degree = divideDense(ring, x.c, 1, divisor, static_cast<typename R::Unit*>(nullptr));
  Dense<R> power = x;
  if (x.degree >= 0) power = powerDense(ring, space, x, bitsOfOrder(ring, space), divisor);
  subtractX(ring, power);
  power.degree = divideDense(ring, power.c, power.degree, divisor, static_cast<typename R::Unit*>(nullptr));
  return commonDivisor(ring, space, f, power);
}

// ---- factors of one degree

namespace {

// Draws of a generator of its own (Marsaglia, "Xorshift RNGs"): the seed of the language's numbers stays.
std::uint64_t drawState = 88172645463325252u;
std::uint64_t draw() {
  drawState ^= drawState << 13;
  drawState ^= drawState >> 7;
  drawState ^= drawState << 17;
  return drawState;
}
void drawCoefficient(const HardwareRing& ring, Word* c) { *c = ring.reduced(draw()); }
void drawCoefficient(const WideRing& ring, Limb* c) {
  Workspace space;
  auto* x = space.take<Limb>(static_cast<std::size_t>(ring.width) + 2);
  for (long i = 0; i < ring.width + 1; ++i) x[i] = draw();
  ring.modulus.reduce(c, x, ring.width + 1);
}

template <class Base>
void drawCoefficient(const GaloisRing<Base>& ring, typename Base::Unit* c) {
  for (long i = 0; i < ring.k; ++i) drawCoefficient(ring.base, ring.base.at(c, i));
}

// Room for products modulo f.
template <class R>
struct Products {
  const R& ring;
  const Divisor<R>& f;
  typename R::Unit* spare;

  Products(const R& ring, Workspace& space, const Divisor<R>& f)
      : ring(ring), f(f), spare(ring.take(space, 2 * f.b.degree + 1)) {}
  /// a = a * b; a has room for twice the degree of f, and changes places with the spare room.
  void multiplyBy(Dense<R>& a, Dense<R> b) {
    const long degree = multiplyDense(ring, spare, a, b);
    std::swap(a.c, spare);
    a.degree = divideDense(ring, a.c, degree, f, static_cast<typename R::Unit*>(nullptr));
  }
};

// The sum of the powers r^(2^i), i below n.
template <class R>
Dense<R> traceToTwo(const R& ring, Workspace& space, const Divisor<R>& f, Dense<R> r, long n) {
  Products<R> products(ring, space, f);
  Dense<R> square = copied(ring, space, r, 2 * f.b.degree), sum = copied(ring, space, r, 2 * f.b.degree);
  for (long i = 1; i < n; ++i) {
    products.multiplyBy(square, square);
    sum.degree = addDense(ring, sum.c, sum, square);
  }
  return sum;
}

// A polynomial that has about half of the factors of f, all of degree d. For odd q: a random one's norm to the field of
// q elements, to the power (q - 1) / 2, less 1. For q a power of 2: its trace to the field of two elements.
template <class R>
Dense<R> splitter(const R& ring, Workspace& space, const Divisor<R>& f, const Frobenius<R>* frobenius, long d) {
  const long n = f.b.degree;
  Dense<R> image = {ring.take(space, n + 1), n - 1};
  for (long i = 0; i < n; ++i) drawCoefficient(ring, ring.at(image.c, i));
  image.degree = trimmedDegree(ring, image.c, n - 1);
  if (characteristic(ring) == 2) return traceToTwo(ring, space, f, image, d * degreeOverPrimeField(ring));
  Products<R> products(ring, space, f);
  Dense<R> norm = copied(ring, space, image, 2 * n);
  auto* spare = ring.take(space, n + 1);
  for (long i = 1; i < d; ++i) {
    Dense<R> next = (*frobenius)(spare, image);
    spare = image.c;
    image = next;
    products.multiplyBy(norm, image);
  }
  if (norm.degree < 0) return norm;
  const ExponentBits half = halved(space, bitsOfOrder(ring, space));
  Dense<R> power = powerDense(ring, space, norm, half, f);
  if (power.degree < 0) return power;
  auto* one = ring.take(space, 1);
  ring.setSmall(one, 1);
  ring.subtract(power.c, power.c, one);
  power.degree = trimmedDegree(ring, power.c, power.degree);
  return power;
}

}  // namespace

template <class R>
void equalDegrees(const R& ring, Dense<R> f, long d, FactorList<R>& result) {
  if (f.degree <= d) {
    result.add(ring, f, d);
    return;
  }
  Workspace space;
  Divisor<R> divisor = preparedDivisor(ring, space, f, f.degree);
  Frobenius<R>* frobenius = nullptr;
  if (d > 1 && characteristic(ring) != 2)
    frobenius = new (space.take<Frobenius<R>>(1)) Frobenius<R>(ring, space, divisor);
  for (;;) {
    Workspace step;
    Dense<R> g = commonDivisor(ring, step, f, splitter(ring, step, divisor, frobenius, d));
    passWork(100);
    if (g.degree <= 0 || g.degree == f.degree) continue;
    equalDegrees(ring, g, d, result);
    equalDegrees(ring, quotient(ring, step, f, g), d, result);
    return;
  }
}

template <class R>
long characteristic(const R& ring) {
  return characteristicOf(ring);
}
template <class R>
void rootOfElement(const R& ring, typename R::Unit* r, const typename R::Unit* a) {
  takeRoot(ring, r, a);
}

KOREL_FOR_EACH_FIELD(KOREL_INSTANTIATE_FACTOR)

}  // namespace korel
