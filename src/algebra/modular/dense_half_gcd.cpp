#include "algebra/modular/dense_half_gcd.h"

#include <algorithm>
#include <utility>

#include "algebra/modular/dense_instances.h"
#include "algebra/modular/vector_words.h"
#include "frame/interrupts.h"

namespace korel {

namespace {

// Below this degree the steps are taken one by one.
constexpr long plainBelow(const HardwareRing&) { return 1500; }
constexpr long plainBelow(const WideRing&) { return 80; }
template <class Base>
constexpr long plainBelow(const GaloisRing<Base>&) {
  return 40;
}

// (c, d) = matrix * (a, b). Each entry has room for degree `room`; places above its degree are zero where they are
// written at all.
template <class R>
struct StepMatrix {
  Dense<R> entry[2][2];
  long room;

  StepMatrix(const R& ring, Workspace& space, long room) : room(room) {
    for (auto& row : entry)
      for (Dense<R>& e : row) {
        e = {ring.take(space, room + 1), -1};
        ring.clear(e.c, room + 1);
      }
    for (int i = 0; i < 2; ++i) {
      ring.setSmall(entry[i][i].c, 1);
      entry[i][i].degree = 0;
    }
  }
};

template <class R>
void assignDense(const R& ring, Dense<R>& to, Dense<R> from, long room) {
  ring.copy(to.c, from.c, from.degree + 1);
  if (room > from.degree) ring.clear(ring.at(to.c, from.degree + 1), room - from.degree);
  to.degree = from.degree;
}

// target = target - q * b; `target` has room for the product.
template <class R>
void subtractProduct(const R& ring, Dense<R>& target, Dense<R> q, Dense<R> b) {
  if (b.degree < 0) return;
  if constexpr (R::isHardware) {
    if (q.degree == 1) {
      // One pass, with b a place longer: rows of a matrix have zeros there.
      const long n = b.degree + 2;
      addTwoMultiples(ring, target.c, b.c, n, ring.m - q.c[1], q.c[0] == 0 ? 0 : ring.m - q.c[0]);
      target.degree = trimmedDegree(ring, target.c, std::max(target.degree, n - 1));
      return;
    }
  }
  Workspace space;
  Dense<R> product = {ring.take(space, q.degree + b.degree + 1), 0};
  product.degree = multiplyDense(ring, product.c, q, b);
  target.degree = subtractDense(ring, target.c, target, product);
}

// One step of the algorithm, in the operands and in the matrix.
template <class R>
void euclidStep(const R& ring, Dense<R>& a, Dense<R>& b, StepMatrix<R>& m) {
  Workspace space;
  Dense<R> q = {ring.take(space, a.degree - b.degree + 1), a.degree - b.degree};
  a.degree = divideDense(ring, a.c, a.degree, preparedDivisor(ring, space, b, q.degree + 1, Use::once), q.c);
  std::swap(a, b);
  for (int j = 0; j < 2; ++j) {
    subtractProduct(ring, m.entry[0][j], q, m.entry[1][j]);
    std::swap(m.entry[0][j], m.entry[1][j]);
  }
}

// x * a + y * b
template <class R>
Dense<R> combination(const R& ring, Workspace& space, Dense<R> x, Dense<R> a, Dense<R> y, Dense<R> b) {
  const long room = std::max({x.degree + a.degree, y.degree + b.degree, 0L});
  Dense<R> sum = {ring.take(space, room + 1), -1};
  Workspace step;
  auto* other = ring.take(step, room + 1);
  sum.degree = multiplyDense(ring, sum.c, x, a);
  sum.degree = addDense(ring, sum.c, sum, {other, multiplyDense(ring, other, y, b)});
  return sum;
}
template <class R>
void apply(const R& ring, const StepMatrix<R>& m, Dense<R>& a, Dense<R>& b) {
  Workspace space;
  Dense<R> c = combination(ring, space, m.entry[0][0], a, m.entry[0][1], b);
  Dense<R> d = combination(ring, space, m.entry[1][0], a, m.entry[1][1], b);
  assignDense(ring, a, c, c.degree);
  assignDense(ring, b, d, d.degree);
}
// second * first, into first
template <class R>
void multiplyMatrices(const R& ring, StepMatrix<R>& first, const StepMatrix<R>& second) {
  for (int j = 0; j < 2; ++j) {
    Workspace space;
    Dense<R> top =
        combination(ring, space, second.entry[0][0], first.entry[0][j], second.entry[0][1], first.entry[1][j]);
    Dense<R> low =
        combination(ring, space, second.entry[1][0], first.entry[0][j], second.entry[1][1], first.entry[1][j]);
    assignDense(ring, first.entry[0][j], top, first.room);
    assignDense(ring, first.entry[1][j], low, first.room);
  }
}

// The part of a from place k on, as a copy.
template <class R>
Dense<R> upperPart(const R& ring, Workspace& space, Dense<R> a, long k) {
  Dense<R> r = {ring.take(space, std::max(a.degree - k, 0L) + 2), std::max(a.degree - k, -1L)};
  if (r.degree >= 0) ring.copy(r.c, ring.at(a.c, k), r.degree + 1);
  return r;
}

// Takes steps until the second operand's degree is below half of the first's; both are changed, and the matrix tells
// how.
template <class R>
void gatherSteps(const R& ring, Dense<R>& a, Dense<R>& b, StepMatrix<R>& m) {
  const long half = (a.degree + 1) / 2;
  if (b.degree < half) return;
  if (a.degree < plainBelow(ring)) {
    while (b.degree >= half) euclidStep(ring, a, b, m);
    return;
  }
  {
    Workspace space;
    Dense<R> c = upperPart(ring, space, a, half), d = upperPart(ring, space, b, half);
    gatherSteps(ring, c, d, m);
  }
  apply(ring, m, a, b);
  if (b.degree < half) return;
  euclidStep(ring, a, b, m);
  if (b.degree < half) return;
  const long below = 2 * half - a.degree;
  Workspace space;
  Dense<R> c = upperPart(ring, space, a, below), d = upperPart(ring, space, b, below);
  StepMatrix<R> more(ring, space, c.degree - (c.degree + 1) / 2 + 1);
  gatherSteps(ring, c, d, more);
  apply(ring, more, a, b);
  multiplyMatrices(ring, m, more);
}

}  // namespace

template <class R>
bool halfGcdStep(const R& ring, Dense<R>& a, Dense<R>& b) {
  const long half = (a.degree + 1) / 2;
  if (b.degree < half) return false;
  Workspace space;
  StepMatrix<R> m(ring, space, a.degree - half + 1);
  gatherSteps(ring, a, b, m);
  return true;
}

KOREL_FOR_EACH_RING(KOREL_INSTANTIATE_HALF_GCD)

}  // namespace korel
