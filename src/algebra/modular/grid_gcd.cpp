// Greatest common divisors, resultants and determinants of polynomials in several indeterminates, by their values.

#include <algorithm>

#include "algebra/modular/dense_factor.h"
#include "algebra/modular/dense_instances.h"
#include "algebra/modular/grid_polynomials.h"
#include "frame/errors.h"
#include "frame/interrupts.h"

namespace korel {

namespace {

// ---- interpolation at points that are given one after the other

// Values of several polynomials in one indeterminate at the same points.
template <class R>
class Values {
 public:
  using Unit = typename R::Unit;
  /// `count` polynomials that `points` values determine.
  Values(const Grids<R>& grids, std::size_t count, long points)
      : grids_(grids), ring_(grids.ring), count_(static_cast<long>(count)), most_(points) {
    points_ = take(points);
    values_ = take(count_ * points);
    ring_.clear(values_, count_ * points);
  }
  ~Values() {
    grids_.arena.free(points_);
    grids_.arena.free(values_);
  }
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;

  bool isComplete() const { return known_ == most_; }
  bool isEmpty() const { return known_ == 0; }
  void forget() {
    known_ = 0;
    ring_.clear(values_, count_ * most_);
  }
  void add(const Unit* point, const Unit* values) {
    ring_.copy(ring_.at(points_, known_), point, 1);
    for (long i = 0; i < count_; ++i) ring_.copy(ring_.at(values_, i * most_ + known_), ring_.at(values, i), 1);
    ++known_;
  }
  /// Coefficient e of polynomial i goes to place e * count + i.
  void interpolate(Unit* result) const {
    Unit* matrix = interpolationMatrix();
    for (long i = 0; i < count_; ++i) {
      passWork(ring_.steps(most_ * most_) + most_);
      const Unit* values = ring_.at(values_, i * most_);
      if (trimmedDegree(ring_, values, most_ - 1) < 0) continue;
      for (long e = 0; e < most_; ++e)
        ring_.dot(ring_.at(result, e * count_ + i), ring_.at(matrix, e * most_), values, most_);
    }
    grids_.arena.free(matrix);
  }

 private:
  Unit* take(long n) const { return grids_.arena.template make<Unit>(static_cast<std::size_t>(n * ring_.width)); }

  // Row e, column j: the coefficient of x^e in the polynomial that is 1 at point j and 0 at the others.
  Unit* interpolationMatrix() const {
    const long n = most_;
    Unit* matrix = take(n * n);
    Workspace space;
    auto *master = ring_.take(space, n + 1), *quotient = ring_.take(space, n);  // master: the product of x - point
    auto *term = ring_.take(space, 1), *carry = ring_.take(space, 1), *value = ring_.take(space, 1);
    ring_.clear(master, n + 1);
    ring_.setSmall(master, 1);
    for (long j = 0; j < n; ++j)
      for (long e = j + 1; e >= 0; --e) {
        ring_.multiply(term, ring_.at(master, e), ring_.at(points_, j));
        if (e == 0) ring_.negate(master, term);
        else ring_.subtract(ring_.at(master, e), ring_.at(master, e - 1), term);
      }
    for (long j = 0; j < n; ++j) {
      passWork(4 * ring_.steps(n) + 100);
      const Unit* point = ring_.at(points_, j);
      ring_.clear(carry, 1);
      ring_.clear(value, 1);
      for (long e = n - 1; e >= 0; --e) {
        ring_.multiply(carry, carry, point);
        ring_.add(carry, carry, ring_.at(master, e + 1));
        ring_.copy(ring_.at(quotient, e), carry, 1);
        ring_.multiply(value, value, point);
        ring_.add(value, value, carry);
      }
      if (!ring_.invert(value, value)) mInverseError();
      for (long e = 0; e < n; ++e) ring_.multiply(ring_.at(matrix, e * n + j), ring_.at(quotient, e), value);
    }
    return matrix;
  }

  const Grids<R>& grids_;
  const R& ring_;
  long count_, most_, known_ = 0;
  Unit *points_, *values_;
};

// ---- the divisor

template <class R>
Dense<R> divisorOf(const R& ring, Workspace& space, Dense<R> a, Dense<R> b) {
  return gcdDense(ring, copied(ring, space, a, 0), copied(ring, space, b, 0));
}

// One indeterminate after the other gets values, the last one first.
template <class R>
class Brown {
 public:
  using Unit = typename R::Unit;
  explicit Brown(const Grids<R>& grids) : grids_(grids), ring_(grids.ring) {}

  bool find(const Grid<R>& a, const Grid<R>& b, Grid<R>& g) const {
    if (grids_.isZero(a) || grids_.isZero(b)) {
      const Grid<R>& other = grids_.isZero(a) ? b : a;
      g = grids_.reshaped(other, other.extents);
      grids_.makeMonic(g);
      return true;
    }
    if (a.extents.count == 0) {
      g = grids_.one(0);
      return true;
    }
    if (a.extents.count == 1) return findInOne(a, b, g);
    return findInSeveral(a, b, g);
  }

 private:
  bool findInOne(const Grid<R>& a, const Grid<R>& b, Grid<R>& g) const {
    Workspace space;
    return store(divisorOf(ring_, space, Dense<R>{a.c, grids_.leadingPlace(a)}, Dense<R>{b.c, grids_.leadingPlace(b)}),
                 1, g);
  }
  // A polynomial in the last of some indeterminates.
  bool store(Dense<R> f, int indeterminates, Grid<R>& g) const {
    Extents extents;
    extents.count = indeterminates;
    extents.degree[indeterminates - 1] = f.degree;
    g = grids_.zero(extents);
    ring_.copy(g.c, f.c, f.degree + 1);
    return true;
  }

  // The coefficient of monomial i of all indeterminates but the last, a polynomial in that.
  Dense<R> column(Workspace& space, const Grid<R>& a, std::size_t slab, std::size_t i) const {
    const long degree = a.extents.degree[a.extents.count - 1];
    Dense<R> f = {ring_.take(space, degree + 1), degree};
    for (long e = 0; e <= degree; ++e)
      ring_.copy(ring_.at(f.c, e), grids_.at(a, static_cast<std::size_t>(e) * slab + i), 1);
    f.degree = trimmedDegree(ring_, f.c, degree);
    return f;
  }
  // The content as a polynomial in the others; the leading coefficient as well.
  Dense<R> content(Workspace& space, const Grid<R>& a, Dense<R>& leading) const {
    const int last = a.extents.count - 1;
    const std::size_t slab = a.extents.placesBelow(last);
    Dense<R> result = {ring_.take(space, a.extents.degree[last] + 1), -1};
    leading = {ring_.take(space, a.extents.degree[last] + 1), -1};
    for (std::size_t i = slab; i-- > 0 && result.degree != 0;) {
      Workspace step;
      const Dense<R> f = column(step, a, slab, i);
      if (f.degree < 0) continue;
      if (leading.degree < 0) {
        leading.degree = f.degree;
        ring_.copy(leading.c, f.c, f.degree + 1);
      }
      const Dense<R> g = divisorOf(ring_, step, result, f);
      ring_.copy(result.c, g.c, g.degree + 1);
      result.degree = g.degree;
    }
    return result;
  }
  Grid<R> withoutContent(const Grid<R>& a, Dense<R> content) const {
    Grid<R> divisor, q;
    store(content, a.extents.count, divisor);
    grids_.quotient(a, divisor, q);
    grids_.arena.free(divisor.c);
    return q;
  }
  // A bound for the degree of the divisor in the last indeterminate: that of the divisor at values of the others, at
  // which the coefficient of the highest power of one operand doesn't vanish.
  long boundOfDegree(const Grid<R>& a, const Grid<R>& b) const {
    const int last = a.extents.count - 1;
    const long most = std::min(a.extents.degree[last], b.extents.degree[last]);
    Workspace space;
    const Dense<R> f = atValues(space, a), g = atValues(space, b);
    if (f.degree != a.extents.degree[last] || g.degree != b.extents.degree[last]) return most;
    return std::min(most, gcdDense(ring_, f, g).degree);
  }
  Dense<R> atValues(Workspace& space, const Grid<R>& a) const {
    const int last = a.extents.count - 1;
    Dense<R> f = {ring_.take(space, a.extents.degree[last] + 1), a.extents.degree[last]};
    auto* point = ring_.take(space, 1);
    Extents inner = a.extents;
    inner.count = last;
    const std::size_t slab = inner.places();
    for (long e = 0; e <= f.degree; ++e) {
      Grid<R> rest = {inner, grids_.at(a, static_cast<std::size_t>(e) * slab)};
      for (int v = last; v-- > 0;) {
        // Some values that have nothing to do with each other.
        elementAt(ring_, point, (std::uint64_t{2654435769} * static_cast<unsigned>(v + 1) >> 7) % elementCount(ring_));
        const Grid<R> next = grids_.evaluated(rest, point);
        if (v + 1 < last) grids_.arena.free(rest.c);
        rest = next;
      }
      ring_.copy(ring_.at(f.c, e), rest.c, 1);
      grids_.arena.free(rest.c);
    }
    f.degree = trimmedDegree(ring_, f.c, f.degree);
    return f;
  }

  bool findInSeveral(const Grid<R>& a, const Grid<R>& b, Grid<R>& g) const {
    Workspace space;
    Dense<R> leadingA, leadingB;
    const Dense<R> contentA = content(space, a, leadingA), contentB = content(space, b, leadingB);
    const Grid<R> p = withoutContent(a, contentA), q = withoutContent(b, contentB);
    const Dense<R> common = divisorOf(ring_, space, contentA, contentB);
    const Dense<R> leadP = divided(space, leadingA, contentA), leadQ = divided(space, leadingB, contentB);
    Grid<R> primitive;
    if (!findPrimitive(p, q, leadP, leadQ, primitive)) return false;
    Grid<R> factor;
    store(common, a.extents.count, factor);
    g = grids_.trimmed(grids_.product(primitive, factor));
    grids_.makeMonic(g);
    for (Unit* c : {p.c, q.c, primitive.c, factor.c}) grids_.arena.free(c);
    return true;
  }
  Dense<R> divided(Workspace& space, Dense<R> a, Dense<R> b) const {
    Dense<R> rest = copied(ring_, space, a, 0), q = {ring_.take(space, a.degree + 1), a.degree - b.degree};
    divideDense(ring_, rest.c, rest.degree, preparedDivisor(ring_, space, b, q.degree + 1, Use::once), q.c);
    return q;
  }

  // Of polynomials without content in the last indeterminate.
  bool findPrimitive(const Grid<R>& p, const Grid<R>& q, Dense<R> leadP, Dense<R> leadQ, Grid<R>& result) const {
    const int last = p.extents.count - 1;
    Workspace space;
    const Dense<R> lead = divisorOf(ring_, space, leadP, leadQ);
    Extents inner;  // of images
    inner.count = last;
    for (int v = 0; v < last; ++v) inner.degree[v] = std::min(p.extents.degree[v], q.extents.degree[v]);
    Extents whole = inner;
    whole.count = last + 1;
    whole.degree[last] = boundOfDegree(p, q) + lead.degree;
    Values<R> values(grids_, inner.places(), whole.degree[last] + 1);
    auto *point = ring_.take(space, 1), *value = ring_.take(space, 1);
    long leadingPlace = 0;
    for (std::uint64_t i = 1; elementAt(ring_, point, i); ++i) {
      evaluateDense(ring_, value, leadP, point);
      if (ring_.isZero(value)) continue;
      evaluateDense(ring_, value, leadQ, point);
      if (ring_.isZero(value)) continue;
      Grid<R> image;
      if (!findImage(p, q, point, inner, image)) return false;
      const long place = grids_.leadingPlace(image);
      if (place == 0) {
        result = grids_.one(last + 1);
        return true;
      }
      // An image with a higher leading monomial than another's is of no use.
      if (!values.isEmpty() && place < leadingPlace) values.forget();
      if (values.isEmpty() || place == leadingPlace) {
        leadingPlace = place;
        evaluateDense(ring_, value, lead, point);
        grids_.scale(image, value);
        values.add(point, image.c);
      }
      grids_.arena.free(image.c);
      if (!values.isComplete()) continue;
      if (takeCandidate(p, q, values, whole, result)) return true;
      values.forget();
    }
    return false;
  }
  bool findImage(const Grid<R>& p, const Grid<R>& q, const Unit* point, const Extents& extents, Grid<R>& image) const {
    const Grid<R> a = grids_.evaluated(p, point), b = grids_.evaluated(q, point);
    Grid<R> g;
    const bool found = find(a, b, g);
    if (found) {
      image = grids_.reshaped(g, extents);
      grids_.arena.free(g.c);
    }
    grids_.arena.free(a.c);
    grids_.arena.free(b.c);
    return found;
  }
  bool takeCandidate(const Grid<R>& p, const Grid<R>& q, const Values<R>& values, const Extents& extents,
                     Grid<R>& result) const {
    Grid<R> candidate = grids_.zero(extents), quotient;
    values.interpolate(candidate.c);
    Workspace space;
    Dense<R> leading;
    result = withoutContent(candidate, content(space, candidate, leading));
    grids_.arena.free(candidate.c);
    return grids_.quotient(p, result, quotient) && grids_.quotient(q, result, quotient);
  }

  const Grids<R>& grids_;
  const R& ring_;
};

// ---- what comes from values at all points of a grid

// `leaf` tells the value, once `operands` have the first `leafLevel` indeterminates only, whose places it gives none.
// `bounds[v]` is a bound of the degree in indeterminate v.
template <class R, class Leaf>
bool interpolated(const Grids<R>& grids, const Grid<R>* operands, long count, int leafLevel, const long* bounds,
                  Leaf leaf, Grid<R>& result) {
  const int level = operands[0].extents.count;
  Extents extents;
  extents.count = level;
  for (int v = leafLevel; v < level; ++v) extents.degree[v] = bounds[v];
  result = grids.zero(extents);
  if (level == leafLevel) {
    leaf(operands, result.c);
    return true;
  }
  const long points = bounds[level - 1] + 1;
  Values<R> values(grids, extents.placesBelow(level - 1), points);
  Workspace space;
  auto* point = grids.ring.take(space, 1);
  auto* inner = grids.arena.template make<Grid<R>>(static_cast<std::size_t>(count));
  for (long j = 0; j < points; ++j) {
    if (!elementAt(grids.ring, point, static_cast<std::uint64_t>(j))) return false;
    for (long k = 0; k < count; ++k) inner[k] = grids.evaluated(operands[k], point);
    Grid<R> value;
    if (!interpolated(grids, inner, count, leafLevel, bounds, leaf, value)) return false;
    values.add(point, value.c);
    grids.arena.free(value.c);
    for (long k = 0; k < count; ++k) grids.arena.free(inner[k].c);
  }
  grids.arena.free(inner);
  values.interpolate(result.c);
  return true;
}

// The determinant of Sylvester's matrix for degrees that the operands may not have.
template <class R>
void formalResultant(const R& ring, typename R::Unit* r, Dense<R> a, long da, Dense<R> b, long db) {
  Workspace space;
  auto *factor = ring.take(space, 1), *rest = ring.take(space, 1);
  ring.setSmall(factor, 1);
  while ((a.degree < da && da > 0) || (b.degree < db && db > 0)) {
    if (a.degree < da && b.degree < db) return ring.clear(r, 1);
    if (a.degree < da) {
      ring.multiply(factor, factor, ring.at(b.c, b.degree));
      if (db % 2 != 0) ring.negate(factor, factor);
      --da;
    } else {
      ring.multiply(factor, factor, ring.at(a.c, a.degree));
      --db;
    }
  }
  if ((a.degree < 0 && db > 0) || (b.degree < 0 && da > 0)) ring.clear(rest, 1);
  else if (da == 0 && db == 0) ring.setSmall(rest, 1);
  else resultantDense(ring, rest, a, b);
  ring.multiply(r, factor, rest);
}

// By elimination; the entries are lost.
template <class R>
void determinantOf(const R& ring, typename R::Unit* r, typename R::Unit* m, long n) {
  Workspace space;
  auto *inverse = ring.take(space, 1), *term = ring.take(space, 1);
  auto entry = [&](long i, long j) { return ring.at(m, i * n + j); };
  ring.setSmall(r, 1);
  for (long k = 0; k < n; ++k) {
    long pivot = k;
    while (pivot < n && ring.isZero(entry(pivot, k))) ++pivot;
    if (pivot == n) return ring.clear(r, 1);
    if (pivot != k) {
      ring.negate(r, r);
      for (long j = k; j < n; ++j) {
        ring.copy(term, entry(k, j), 1);
        ring.copy(entry(k, j), entry(pivot, j), 1);
        ring.copy(entry(pivot, j), term, 1);
      }
    }
    ring.multiply(r, r, entry(k, k));
    if (!ring.invert(inverse, entry(k, k))) mInverseError();
    passWork(ring.steps((n - k) * (n - k)) + 100);
    for (long i = k + 1; i < n; ++i) {
      if (ring.isZero(entry(i, k))) continue;
      ring.multiply(entry(i, k), entry(i, k), inverse);
      for (long j = k + 1; j < n; ++j) {
        ring.multiply(term, entry(i, k), entry(k, j));
        ring.subtract(entry(i, j), entry(i, j), term);
      }
    }
  }
}

// ---- extensions of the field

template <class R>
constexpr bool canBeSmall = false;
template <>
constexpr bool canBeSmall<HardwareRing> = true;
template <>
constexpr bool canBeSmall<GaloisRing<HardwareRing>> = true;

// The first irreducible polynomial of degree k.
template <class R>
Dense<R> irreducibleOfDegree(const R& ring, Workspace& space, long k) {
  Dense<R> f = {ring.take(space, k + 1), k};
  const std::uint64_t q = elementCount(ring);
  for (std::uint64_t index = 1;; ++index) {
    std::uint64_t rest = index;
    for (long i = 0; i < k; ++i, rest /= q) elementAt(ring, ring.at(f.c, i), rest % q);
    ring.setSmall(ring.at(f.c, k), 1);
    if (isIrreducible(ring, f)) return f;
  }
}

template <class R>
Grid<GaloisRing<R>> lifted(const Grids<GaloisRing<R>>& above, const Grid<R>& g) {
  Grid<GaloisRing<R>> result = above.zero(g.extents);
  const auto n = static_cast<long>(g.extents.places());
  for (long i = 0; i < n; ++i) above.ring.base.copy(above.ring.at(result.c, i), above.ring.base.at(g.c, i), 1);
  return result;
}
template <class R>
Grid<R> lowered(const Grids<R>& below, const GaloisRing<R>& ring, const Grid<GaloisRing<R>>& g) {
  Grid<R> result = below.zero(g.extents);
  const auto n = static_cast<long>(g.extents.places());
  for (long i = 0; i < n; ++i) below.ring.copy(below.ring.at(result.c, i), ring.at(g.c, i), 1);
  return result;
}

// Runs `find(grids, operands, result)` over the field, or over an extension with enough elements.
template <class R, class Find>
Grid<R> inLargeField(const Grids<R>& grids, const Grid<R>* operands, long count, Find find) {
  Grid<R> result;
  if (find(grids, operands, result)) return result;
  if constexpr (canBeSmall<R>) {
    double wanted = 64;
    for (long i = 0; i < count; ++i)
      for (int v = 0; v < operands[i].extents.count; ++v)
        wanted += 4.0 * static_cast<double>(operands[i].extents.degree[v]);
    double elements = static_cast<double>(elementCount(grids.ring));
    const double q = elements;
    constexpr long mostDegree = 60;
    for (long k = 2; k <= mostDegree; ++k) {
      elements *= q;
      if (elements < wanted) continue;
      Workspace space;
      const GaloisRing<R> ring(grids.ring, space, irreducibleOfDegree(grids.ring, space, k));
      const Grids<GaloisRing<R>> above = {ring, grids.arena};
      auto* images = grids.arena.template make<Grid<GaloisRing<R>>>(static_cast<std::size_t>(count));
      for (long i = 0; i < count; ++i) images[i] = lifted(above, operands[i]);
      Grid<GaloisRing<R>> found;
      if (find(above, images, found)) return lowered(grids, ring, found);
    }
  }
  KernelException("object too large");
}

}  // namespace

template <class R>
bool Grids<R>::findCommonDivisor(const Grid<R>& a, const Grid<R>& b, Grid<R>& g) const {
  return Brown<R>(*this).find(a, b, g);
}

template <class R>
bool Grids<R>::findResultant(const Grid<R>& a, const Grid<R>& b, Grid<R>& r) const {
  const long da = a.extents.degree[0], db = b.extents.degree[0];
  long bounds[engine::mostVariables] = {};
  for (int v = 1; v < a.extents.count; ++v) bounds[v] = da * b.extents.degree[v] + db * a.extents.degree[v];
  const Grid<R> operands[2] = {a, b};
  return interpolated(
      *this, operands, 2, 1, bounds,
      [&](const Grid<R>* f, Unit* value) {
        formalResultant(ring, value, Dense<R>{f[0].c, leadingPlace(f[0])}, da, Dense<R>{f[1].c, leadingPlace(f[1])},
                        db);
      },
      r);
}

template <class R>
bool Grids<R>::findDeterminant(const Grid<R>* entries, long n, Grid<R>& d) const {
  const int count = entries[0].extents.count;
  long bounds[engine::mostVariables] = {};
  for (int v = 0; v < count; ++v) {
    long byRows = 0, byColumns = 0;
    for (long i = 0; i < n; ++i) {
      long row = 0, column = 0;
      for (long j = 0; j < n; ++j) {
        row = std::max(row, entries[i * n + j].extents.degree[v]);
        column = std::max(column, entries[j * n + i].extents.degree[v]);
      }
      byRows += row;
      byColumns += column;
    }
    bounds[v] = std::min(byRows, byColumns);
  }
  return interpolated(
      *this, entries, n * n, 0, bounds,
      [&](const Grid<R>* values, Unit* value) {
        Workspace space;
        auto* matrix = ring.take(space, n * n);
        for (long i = 0; i < n * n; ++i) ring.copy(ring.at(matrix, i), values[i].c, 1);
        determinantOf(ring, value, matrix, n);
      },
      d);
}

template <class R>
Grid<R> Grids<R>::commonDivisor(const Grid<R>& a, const Grid<R>& b) const {
  const Grid<R> operands[2] = {trimmed(a), trimmed(b)};
  return inLargeField(*this, operands, 2,
                      [](const auto& grids, const auto* f, auto& g) { return grids.findCommonDivisor(f[0], f[1], g); });
}
template <class R>
Grid<R> Grids<R>::resultant(const Grid<R>& a, const Grid<R>& b) const {
  const Grid<R> operands[2] = {a, b};
  return inLargeField(*this, operands, 2,
                      [](const auto& grids, const auto* f, auto& r) { return grids.findResultant(f[0], f[1], r); });
}
template <class R>
Grid<R> Grids<R>::determinant(const Grid<R>* entries, long n) const {
  return inLargeField(*this, entries, n * n,
                      [n](const auto& grids, const auto* m, auto& d) { return grids.findDeterminant(m, n, d); });
}

#define KOREL_INSTANTIATE_FIND(R)                                                            \
  template bool Grids<R>::findCommonDivisor(const Grid<R>&, const Grid<R>&, Grid<R>&) const; \
  template bool Grids<R>::findResultant(const Grid<R>&, const Grid<R>&, Grid<R>&) const;     \
  template bool Grids<R>::findDeterminant(const Grid<R>*, long, Grid<R>&) const;
KOREL_FOR_EACH_RING(KOREL_INSTANTIATE_FIND)

#define KOREL_INSTANTIATE_BY_VALUES(R)                                            \
  template Grid<R> Grids<R>::commonDivisor(const Grid<R>&, const Grid<R>&) const; \
  template Grid<R> Grids<R>::resultant(const Grid<R>&, const Grid<R>&) const;     \
  template Grid<R> Grids<R>::determinant(const Grid<R>*, long) const;
KOREL_FOR_EACH_FIELD(KOREL_INSTANTIATE_BY_VALUES)

}  // namespace korel
