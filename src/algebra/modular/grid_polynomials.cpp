#include "algebra/modular/grid_polynomials.h"

#include <algorithm>

#include "algebra/modular/dense_instances.h"
#include "frame/errors.h"
#include "frame/interrupts.h"

namespace korel {

namespace {

constexpr std::size_t mostPlaces = std::size_t{1} << 27;

// Walks the monomials of some extents, and the place of each in a grid of others.
class Places {
 public:
  Places(const Extents& walked, const Extents& other) : walked_(walked) {
    std::size_t stride = 1;
    for (int v = 0; v < walked.count; ++v) {
      strides_[v] = stride;
      stride *= static_cast<std::size_t>(other.degree[v]) + 1;
    }
  }
  std::size_t place() const { return place_; }
  const long* exponents() const { return exponents_; }
  void next() {
    for (int v = 0; v < walked_.count; ++v) {
      if (exponents_[v] < walked_.degree[v]) {
        ++exponents_[v];
        place_ += strides_[v];
        return;
      }
      place_ -= static_cast<std::size_t>(exponents_[v]) * strides_[v];
      exponents_[v] = 0;
    }
  }

 private:
  const Extents& walked_;
  std::size_t strides_[engine::mostVariables] = {};
  long exponents_[engine::mostVariables] = {};
  std::size_t place_ = 0;
};

}  // namespace

std::size_t Extents::placesBelow(int indeterminate) const {
  std::size_t n = 1;
  for (int v = 0; v < indeterminate; ++v) {
    const auto side = static_cast<std::size_t>(degree[v]) + 1;
    if (side > mostPlaces / n) KernelException("object too large");
    n *= side;
  }
  return n;
}
std::size_t Extents::places() const { return placesBelow(count); }

template <class R>
Grid<R> Grids<R>::zero(const Extents& extents) const {
  const auto n = static_cast<long>(extents.places());
  Grid<R> g = {extents, arena.make<Unit>(static_cast<std::size_t>(n * ring.width))};
  ring.clear(g.c, n);
  return g;
}

template <class R>
Grid<R> Grids<R>::one(int indeterminates) const {
  Extents extents;
  extents.count = indeterminates;
  Grid<R> g = zero(extents);
  ring.setSmall(g.c, 1);
  return g;
}

// ---- shape

template <class R>
Grid<R> Grids<R>::reshaped(const Grid<R>& g, const Extents& extents) const {
  Grid<R> result = zero(extents);
  Places to(g.extents, extents);
  const std::size_t n = g.extents.places();
  passWork(static_cast<std::int64_t>(n));
  for (std::size_t i = 0; i < n; ++i, to.next())
    if (!ring.isZero(at(g, i))) ring.copy(at(result, to.place()), at(g, i), 1);
  return result;
}

template <class R>
Grid<R> Grids<R>::trimmed(const Grid<R>& g) const {
  Extents degrees;
  degrees.count = g.extents.count;
  Places walk(g.extents, g.extents);
  const std::size_t n = g.extents.places();
  for (std::size_t i = 0; i < n; ++i, walk.next())
    if (!ring.isZero(at(g, i)))
      for (int v = 0; v < degrees.count; ++v) degrees.degree[v] = std::max(degrees.degree[v], walk.exponents()[v]);
  return reshaped(g, degrees);
}

// ---- arithmetic

template <class R>
void Grids<R>::scale(const Grid<R>& g, const Unit* factor) const {
  const std::size_t n = g.extents.places();
  passWork(ring.steps(static_cast<std::int64_t>(n)));
  for (std::size_t i = 0; i < n; ++i)
    if (!ring.isZero(at(g, i))) ring.multiply(at(g, i), at(g, i), factor);
}

template <class R>
void Grids<R>::makeMonic(const Grid<R>& g) const {
  const long lead = leadingPlace(g);
  if (lead < 0 || ring.isOne(ring.at(g.c, lead))) return;
  Workspace space;
  scale(g, invertedLead(ring, space, Dense<R>{g.c, lead}));
}

template <class R>
Grid<R> Grids<R>::evaluated(const Grid<R>& g, const Unit* point) const {
  Extents inner = g.extents;
  const long degree = inner.degree[--inner.count];
  inner.degree[inner.count] = 0;
  Grid<R> result = zero(inner);
  const std::size_t slab = inner.places();
  passWork(ring.steps(static_cast<std::int64_t>(slab) * (degree + 1)));
  for (long e = degree; e >= 0; --e)
    for (std::size_t i = 0; i < slab; ++i) {
      if (!ring.isZero(at(result, i))) ring.multiply(at(result, i), at(result, i), point);
      ring.add(at(result, i), at(result, i), at(g, static_cast<std::size_t>(e) * slab + i));
    }
  return result;
}

template <class R>
Grid<R> Grids<R>::product(const Grid<R>& a, const Grid<R>& b) const {
  Extents sum = a.extents;
  for (int v = 0; v < sum.count; ++v) sum.degree[v] += b.extents.degree[v];
  Grid<R> result = zero(sum), left = reshaped(a, sum), right = reshaped(b, sum);
  const long da = leadingPlace(left), db = leadingPlace(right);
  if (da >= 0 && db >= 0) multiplyDense(ring, result.c, Dense<R>{left.c, da}, Dense<R>{right.c, db});
  arena.free(left.c);
  arena.free(right.c);
  return result;
}

// A polynomial and its image by substitution are the same array. When the images divide, and the quotient has no
// monomial beyond the difference of the degrees, then so do the polynomials: the product of that quotient and the
// divisor stays within the grid, where the substitution is one to one.
template <class R>
bool Grids<R>::quotient(const Grid<R>& a, const Grid<R>& b, Grid<R>& q) const {
  const Grid<R> dividend = trimmed(a), divisor = trimmed(b);
  Extents difference = dividend.extents;
  for (int v = 0; v < difference.count; ++v) {
    difference.degree[v] -= divisor.extents.degree[v];
    if (difference.degree[v] < 0) {
      if (!isZero(dividend)) return false;
      difference.degree[v] = 0;
    }
  }
  q = zero(difference);
  if (isZero(dividend)) return true;
  const Grid<R> by = reshaped(divisor, dividend.extents);
  const long da = leadingPlace(dividend), db = leadingPlace(by);
  if (da < db) return false;
  Workspace space;
  auto* image = ring.take(space, da - db + 1);
  auto prepared = preparedDivisor(ring, space, Dense<R>{by.c, db}, da - db + 1, Use::once);
  bool exact = divideDense(ring, dividend.c, da, prepared, image) < 0;
  Places walk(difference, dividend.extents);
  long found = 0, nonzero = 0;
  for (long i = 0; exact && i <= da - db; ++i) nonzero += ring.isZero(ring.at(image, i)) ? 0 : 1;
  const std::size_t n = difference.places();
  for (std::size_t i = 0; exact && i < n; ++i, walk.next()) {
    const auto place = static_cast<long>(walk.place());
    if (place > da - db || ring.isZero(ring.at(image, place))) continue;
    ring.copy(at(q, i), ring.at(image, place), 1);
    ++found;
  }
  arena.free(dividend.c);
  arena.free(divisor.c);
  arena.free(by.c);
  return exact && found == nonzero;
}

template <class R>
Grid<R> Grids<R>::derivative(const Grid<R>& g, int indeterminate) const {
  Extents extents = g.extents;
  extents.degree[indeterminate] = std::max(extents.degree[indeterminate] - 1, 0L);
  Grid<R> result = zero(extents);
  Workspace space;
  auto* factor = ring.take(space, 1);
  const std::size_t below = g.extents.placesBelow(indeterminate), n = g.extents.places();
  const std::size_t side = static_cast<std::size_t>(g.extents.degree[indeterminate]) + 1;
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t e = i / below % side, above = i / below / side;
    if (e == 0 || ring.isZero(at(g, i))) continue;
    ring.setSmall(factor, e);
    ring.multiply(at(result, (above * std::max(side - 1, std::size_t{1}) + e - 1) * below + i % below), at(g, i),
                  factor);
  }
  return result;
}

#define KOREL_INSTANTIATE_GRIDS(R)                                                  \
  template Grid<R> Grids<R>::zero(const Extents&) const;                            \
  template Grid<R> Grids<R>::one(int) const;                                        \
  template Grid<R> Grids<R>::reshaped(const Grid<R>&, const Extents&) const;        \
  template Grid<R> Grids<R>::trimmed(const Grid<R>&) const;                         \
  template void Grids<R>::makeMonic(const Grid<R>&) const;                          \
  template void Grids<R>::scale(const Grid<R>&, const R::Unit*) const;              \
  template Grid<R> Grids<R>::evaluated(const Grid<R>&, const R::Unit*) const;       \
  template Grid<R> Grids<R>::product(const Grid<R>&, const Grid<R>&) const;         \
  template bool Grids<R>::quotient(const Grid<R>&, const Grid<R>&, Grid<R>&) const; \
  template Grid<R> Grids<R>::derivative(const Grid<R>&, int) const;
KOREL_FOR_EACH_RING(KOREL_INSTANTIATE_GRIDS)

}  // namespace korel
