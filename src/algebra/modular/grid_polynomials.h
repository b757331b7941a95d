#pragma once
// Polynomials in several indeterminates over a finite field: grids with a place for each monomial up to the highest
// exponent of each indeterminate.
//
// Indeterminate 0 runs fastest, so that the order of places is the lexicographic order of monomials with the last
// indeterminate first. Values are put in for the last one, whose coefficients are slabs; products and exact quotients
// are those of polynomials in one indeterminate (Kronecker's substitution): a grid is its own image. Greatest common
// divisors, resultants and determinants come from values at enough elements of the field, by interpolation in one
// indeterminate after the other (Brown, "On Euclid's algorithm and the computation of polynomial greatest common
// divisors"); where the field has too few elements, from values in an extension of it.

#include "algebra/engine/arena.h"
#include "algebra/engine/polynomial.h"
#include "algebra/modular/galois_rings.h"

namespace korel {

/// Indeterminates and their highest exponents.
struct Extents {
  int count = 0;
  long degree[engine::mostVariables] = {};

  /// Error: "object too large".
  std::size_t places() const;
  std::size_t placesBelow(int indeterminate) const;
};

template <class R>
struct Grid {
  Extents extents;
  typename R::Unit* c = nullptr;
};

/// Factors that were found, each with its multiplicity.
template <class R>
struct GridList {
  Grid<R>* factors = nullptr;
  long* multiplicities = nullptr;
  long count = 0, room = 0;
};

/// Arithmetic of grids over one field; all of them lie in the arena. Operands have the same indeterminates.
template <class R>
class Grids {
 public:
  using Unit = typename R::Unit;
  const R& ring;
  engine::Arena& arena;

  Grid<R> zero(const Extents& extents) const;
  Grid<R> one(int indeterminates) const;
  Unit* at(const Grid<R>& g, std::size_t place) const { return ring.at(g.c, static_cast<long>(place)); }

  // ---- shape
  /// Place of the leading monomial; -1 for zero.
  long leadingPlace(const Grid<R>& g) const {
    return trimmedDegree(ring, g.c, static_cast<long>(g.extents.places()) - 1);
  }
  bool isZero(const Grid<R>& g) const { return leadingPlace(g) < 0; }
  bool isConstant(const Grid<R>& g) const { return leadingPlace(g) <= 0; }
  /// A copy with other extents, in which all terms lie.
  Grid<R> reshaped(const Grid<R>& g, const Extents& extents) const;
  /// A copy whose extents are the degrees.
  Grid<R> trimmed(const Grid<R>& g) const;

  // ---- arithmetic
  void makeMonic(const Grid<R>& g) const;
  void scale(const Grid<R>& g, const Unit* factor) const;
  /// The value at a point of the last indeterminate, which the result has no more.
  Grid<R> evaluated(const Grid<R>& g, const Unit* point) const;
  Grid<R> product(const Grid<R>& a, const Grid<R>& b) const;
  /// Whether b, not zero, divides a; then the quotient.
  bool quotient(const Grid<R>& a, const Grid<R>& b, Grid<R>& q) const;
  Grid<R> derivative(const Grid<R>& g, int indeterminate) const;

  // ---- by values
  /// The monic greatest common divisor.
  Grid<R> commonDivisor(const Grid<R>& a, const Grid<R>& b) const;
  /// The resultant of trimmed polynomials in indeterminate 0, which the result has to the power 0.
  Grid<R> resultant(const Grid<R>& a, const Grid<R>& b) const;
  /// The determinant of n rows of n entries.
  Grid<R> determinant(const Grid<R>* entries, long n) const;
  /// The same over this field alone: false when it has too few elements.
  bool findCommonDivisor(const Grid<R>& a, const Grid<R>& b, Grid<R>& g) const;
  bool findResultant(const Grid<R>& a, const Grid<R>& b, Grid<R>& r) const;
  bool findDeterminant(const Grid<R>* entries, long n, Grid<R>& d) const;

  // ---- factors, of polynomials that are not zero
  /// Monic square-free polynomials, pairwise prime, with their multiplicities.
  void squareFreeParts(Grid<R> f, GridList<R>& result) const;
  /// Monic irreducible polynomials with their multiplicities.
  void factors(const Grid<R>& f, GridList<R>& result) const;

 private:
  Grid<R> rootOfPower(const Grid<R>& g, long p) const;
  void add(GridList<R>& list, const Grid<R>& f, long multiplicity) const;
  void factorSquareFree(Grid<R> f, long multiplicity, GridList<R>& result) const;
};

/// Element number `index` of a finite field in some order; false when it has no more of them.
inline bool elementAt(const HardwareRing& ring, Word* r, std::uint64_t index) {
  ring.setSmall(r, index);
  return index < ring.m;
}
inline bool elementAt(const WideRing& ring, Limb* r, std::uint64_t index) {
  ring.setSmall(r, index);
  return ring.width > 1 || index < ring.modulus.modulus[0];
}
template <class Base>
bool elementAt(const GaloisRing<Base>& ring, typename Base::Unit* r, std::uint64_t index);

/// Elements of a field, at most 2^62.
inline constexpr std::uint64_t mostElements = std::uint64_t{1} << 62;
inline std::uint64_t elementCount(const HardwareRing& ring) { return ring.m; }
inline std::uint64_t elementCount(const WideRing& ring) {
  return ring.width > 1 || ring.modulus.modulus[0] > mostElements ? mostElements : ring.modulus.modulus[0];
}
template <class Base>
std::uint64_t elementCount(const GaloisRing<Base>& ring) {
  const std::uint64_t q = elementCount(ring.base);
  std::uint64_t n = 1;
  for (long j = 0; j < ring.k && n < mostElements; ++j) n = n > mostElements / q ? mostElements : n * q;
  return n;
}
template <class Base>
bool elementAt(const GaloisRing<Base>& ring, typename Base::Unit* r, std::uint64_t index) {
  const std::uint64_t q = elementCount(ring.base);
  for (long j = 0; j < ring.k; ++j, index /= q) elementAt(ring.base, ring.base.at(r, j), index % q);
  return index == 0;
}

}  // namespace korel
