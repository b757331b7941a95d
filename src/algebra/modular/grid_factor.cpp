// Factors of polynomials in several indeterminates over a finite field.
//
// Square-free parts come by derivatives and p-th roots. A square-free polynomial is factored through its image in one
// indeterminate: each of its factors is a product of factors of the image, and subsets of those are tried, small ones
// first. The substitution leaves places free to which no monomial goes, so that a product that is no image shows there.

#include <algorithm>

#include "algebra/modular/dense_factor.h"
#include "algebra/modular/dense_instances.h"
#include "algebra/modular/grid_polynomials.h"
#include "frame/interrupts.h"

namespace korel {

template <class R>
void Grids<R>::add(GridList<R>& list, const Grid<R>& f, long multiplicity) const {
  if (list.count == list.room) {
    list.room = 2 * list.room + 8;
    list.factors = arena.grow(list.factors, static_cast<std::size_t>(list.room));
    list.multiplicities = arena.grow(list.multiplicities, static_cast<std::size_t>(list.room));
  }
  list.factors[list.count] = trimmed(f);
  makeMonic(list.factors[list.count]);
  list.multiplicities[list.count++] = multiplicity;
}

// ---- square-free parts

template <class R>
Grid<R> Grids<R>::rootOfPower(const Grid<R>& g, long p) const {
  Extents extents = g.extents;
  for (int v = 0; v < extents.count; ++v) extents.degree[v] /= p;
  Grid<R> root = zero(extents);
  const std::size_t n = root.extents.places();
  for (std::size_t i = 0; i < n; ++i) {
    std::size_t rest = i, place = 0, stride = 1;
    for (int v = 0; v < extents.count; ++v) {
      const std::size_t side = static_cast<std::size_t>(extents.degree[v]) + 1;
      place += rest % side * static_cast<std::size_t>(p) * stride;
      stride *= static_cast<std::size_t>(g.extents.degree[v]) + 1;
      rest /= side;
    }
    rootOfElement(ring, at(root, i), at(g, place));
  }
  return root;
}

// The divisor of f and its derivatives has each factor of multiplicity e to the power e - 1, or e when p divides e
// (Geddes, Czapor and Labahn, "Algorithms for Computer Algebra", 8.3).
template <class R>
void Grids<R>::squareFreeParts(Grid<R> f, GridList<R>& result) const {
  const long p = characteristic(ring);
  long multiplicity = 1;
  f = trimmed(f);
  while (!isConstant(f)) {
    Grid<R> repeated = f, once, next, part;
    for (int v = 0; v < f.extents.count; ++v) {
      const Grid<R> d = derivative(f, v);
      if (!isZero(d)) repeated = commonDivisor(repeated, d);
    }
    quotient(f, repeated, once);
    for (long i = 1; !isConstant(once); ++i) {
      const Grid<R> more = commonDivisor(once, repeated);
      quotient(once, more, part);
      if (!isConstant(part)) add(result, part, i * multiplicity);
      quotient(repeated, more, next);
      once = more;
      repeated = next;
    }
    if (isConstant(repeated)) return;
    f = rootOfPower(trimmed(repeated), p);
    multiplicity *= p;
  }
}

// ---- irreducible factors

namespace {

// Factors of the image of a square-free polynomial in which every indeterminate of the list occurs.
template <class R>
class ImageFactors {
 public:
  using Unit = typename R::Unit;
  ImageFactors(const Grids<R>& grids, Workspace& space, const Grid<R>& f)
      : grids_(grids), ring_(grids.ring), rest_(grids.trimmed(f)), image_(imageExtents(rest_.extents)) {
    const Grid<R> image = grids.reshaped(rest_, image_);
    const long degree = grids.leadingPlace(image);
    grids.makeMonic(image);
    FactorList<R> found(ring_, space, degree);
    factorDense(ring_, space, Dense<R>{image.c, degree}, found);
    for (long i = 0; i < found.count; ++i) count_ += found.numbers[i];
    factors_ = space.take<Dense<R>>(static_cast<std::size_t>(count_));
    chosen_ = space.take<long>(static_cast<std::size_t>(count_));
    long n = 0;
    for (long i = 0; i < found.count; ++i)
      for (long k = 0; k < found.numbers[i]; ++k) factors_[n++] = found.factors[i];
    std::stable_sort(factors_, factors_ + n, [](const Dense<R>& a, const Dense<R>& b) { return a.degree < b.degree; });
    low_ = image_.degree[0] + 1;
    products_ = ring_.take(space, low_ * (count_ + 1));
    ring_.clear(products_, low_);
    ring_.setSmall(products_, 1);
  }

  /// The next irreducible factor; false when there is no more.
  bool next(Grid<R>& factor) {
    if (grids_.isConstant(rest_)) return false;
    for (; 2 * size_ <= count_; ++size_)
      if (choose(0, 0, 0, factor)) {
        removeChosen();
        return true;
      }
    factor = rest_;
    rest_ = grids_.one(rest_.extents.count);
    return true;
  }

 private:
  // One place more than the degrees need, for each indeterminate that occurs but the last.
  static Extents imageExtents(Extents extents) {
    for (int v = 0; v + 1 < extents.count; ++v)
      if (extents.degree[v] > 0) ++extents.degree[v];
    return extents;
  }
  // Completes a subset of `size_` factors, of which `n` are chosen, by some from `from` on.
  bool choose(long n, long from, long degree, Grid<R>& factor) {
    if (n == size_) return isImage(degree) && tryChosen(degree, factor);
    for (long i = from; i + (size_ - n) <= count_; ++i) {
      // Of equal factors that follow each other the first ones are enough.
      if (i > from && factors_[i].c == factors_[i - 1].c) continue;
      chosen_[n] = i;
      passWork(ring_.steps(low_ * std::min(low_, factors_[i].degree + 1)) + 100);
      multiplyLow(ring_.at(products_, (n + 1) * low_), ring_.at(products_, n * low_), factors_[i]);
      if (choose(n + 1, i + 1, degree + factors_[i].degree, factor)) return true;
    }
    return false;
  }
  // r = the lowest coefficients of a * f.
  void multiplyLow(Unit* r, const Unit* a, Dense<R> f) const {
    Workspace space;
    auto* term = ring_.take(space, 1);
    ring_.clear(r, low_);
    for (long i = 0; i <= f.degree && i < low_; ++i)
      for (long j = 0; i + j < low_; ++j) {
        ring_.multiply(term, ring_.at(f.c, i), ring_.at(a, j));
        ring_.add(ring_.at(r, i + j), ring_.at(r, i + j), term);
      }
  }
  // The leading monomial and the first free place allow the chosen product to be an image.
  bool isImage(long degree) const {
    const bool hasFreePlace = image_.degree[0] > rest_.extents.degree[0];
    if (hasFreePlace && !ring_.isZero(ring_.at(products_, size_ * low_ + low_ - 1))) return false;
    for (int v = 0; v < image_.count; ++v) {
      if (degree % (image_.degree[v] + 1) > rest_.extents.degree[v]) return false;
      degree /= image_.degree[v] + 1;
    }
    return degree == 0;
  }
  bool tryChosen(long degree, Grid<R>& factor) {
    Workspace space;
    Dense<R> product = {ring_.take(space, degree + 1), 0}, other = {ring_.take(space, degree + 1), 0};
    ring_.setSmall(product.c, 1);
    for (long k = 0; k < size_; ++k) {
      other.degree = multiplyDense(ring_, other.c, product, factors_[chosen_[k]]);
      std::swap(product, other);
    }
    Grid<R> candidate = grids_.zero(image_);
    ring_.copy(candidate.c, product.c, product.degree + 1);
    factor = grids_.trimmed(candidate);
    grids_.arena.free(candidate.c);
    Grid<R> quotient;
    if (!grids_.quotient(rest_, factor, quotient)) return false;
    rest_ = quotient;
    return true;
  }
  void removeChosen() {
    for (long k = size_; k-- > 0;) {
      std::copy(factors_ + chosen_[k] + 1, factors_ + count_, factors_ + chosen_[k]);
      --count_;
    }
  }

  const Grids<R>& grids_;
  const R& ring_;
  Grid<R> rest_;  // what the factors so far leave
  Extents image_;
  Dense<R>* factors_ = nullptr;  // of the image of that
  long* chosen_ = nullptr;
  long count_ = 0, size_ = 1;
  long low_ = 0;
  Unit* products_ = nullptr;  // lowest coefficients of the product of the first n chosen ones, for each n
};

}  // namespace

template <class R>
void Grids<R>::factorSquareFree(Grid<R> f, long multiplicity, GridList<R>& result) const {
  f = trimmed(f);
  // Indeterminates that are factors.
  for (int v = 0; v < f.extents.count; ++v) {
    Extents extents;
    extents.count = f.extents.count;
    extents.degree[v] = 1;
    Grid<R> x = zero(extents), q;
    ring.setSmall(at(x, 1), 1);
    while (!isConstant(f) && quotient(f, x, q)) {
      add(result, x, multiplicity);
      f = trimmed(q);
    }
  }
  if (isConstant(f)) return;
  Workspace space;
  ImageFactors<R> image(*this, space, f);
  for (Grid<R> factor; image.next(factor);) add(result, factor, multiplicity);
}

template <class R>
void Grids<R>::factors(const Grid<R>& f, GridList<R>& result) const {
  GridList<R> parts;
  squareFreeParts(f, parts);
  for (long i = 0; i < parts.count; ++i) factorSquareFree(parts.factors[i], parts.multiplicities[i], result);
}

#define KOREL_INSTANTIATE_GRID_FACTORS(R)                               \
  template void Grids<R>::squareFreeParts(Grid<R>, GridList<R>&) const; \
  template void Grids<R>::factors(const Grid<R>&, GridList<R>&) const;
KOREL_FOR_EACH_FIELD(KOREL_INSTANTIATE_GRID_FACTORS)

}  // namespace korel
