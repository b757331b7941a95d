// Values of dense polynomials at points, polynomials by their values, and shifts of the variable.

#include "algebra/modular/dense_instances.h"
#include "algebra/modular/dense_polynomials.h"
#include "frame/errors.h"
#include "frame/interrupts.h"

namespace korel {

template <class R>
void evaluateDense(const R& ring, typename R::Unit* r, Dense<R> a, const typename R::Unit* point) {
  ring.clear(r, 1);
  for (long i = a.degree; i >= 0; --i) {
    ring.multiply(r, r, point);
    ring.add(r, r, ring.at(a.c, i));
    passWork(ring.steps(1) + 1);
  }
}

// ---- trees of products x - point
//
// A polynomial's values at the points below a node are those of its remainder by the node's product (von zur Gathen and
// Gerhard, "Modern Computer Algebra", chapter 10).

namespace {

constexpr long leafPoints = 16;  // below, points are taken one by one
constexpr long treeFrom = 64;    // points from which a tree pays (bench/modular_bench.cpp)

template <class R>
struct PointTree {
  Dense<R> product;
  long first, count;  // of the points
  PointTree *left = nullptr, *right = nullptr;
};

template <class R>
void multiplyByLinear(const R& ring, Dense<R>& a, const typename R::Unit* point) {
  Workspace space;
  auto* term = ring.take(space, 1);
  ring.copy(ring.at(a.c, a.degree + 1), ring.at(a.c, a.degree), 1);
  for (long i = a.degree; i > 0; --i) {
    ring.multiply(term, ring.at(a.c, i), point);
    ring.subtract(ring.at(a.c, i), ring.at(a.c, i - 1), term);
  }
  ring.multiply(term, a.c, point);
  ring.negate(a.c, term);
  ++a.degree;
}

template <class R>
PointTree<R>* grow(const R& ring, Workspace& space, const typename R::Unit* points, long first, long count) {
  auto* node = space.take<PointTree<R>>(1);
  *node = {{ring.take(space, count + 1), 0}, first, count};
  if (count <= leafPoints) {
    ring.setSmall(node->product.c, 1);
    for (long i = 0; i < count; ++i) multiplyByLinear(ring, node->product, ring.at(points, first + i));
  } else {
    node->left = grow(ring, space, points, first, count / 2);
    node->right = grow(ring, space, points, first + count / 2, count - count / 2);
    node->product.degree = multiplyDense(ring, node->product.c, node->left->product, node->right->product);
  }
  return node;
}

template <class R>
void evaluateBelow(const R& ring, typename R::Unit* r, Dense<R> a, const typename R::Unit* points,
                   const PointTree<R>& node) {
  Workspace space;
  Dense<R> rest = copied(ring, space, a, 0);
  if (rest.degree >= node.count) {
    const auto divisor = preparedDivisor(ring, space, node.product, rest.degree - node.count + 1, Use::once);
    rest.degree = divideDense(ring, rest.c, rest.degree, divisor, static_cast<typename R::Unit*>(nullptr));
  }
  if (node.left != nullptr) {
    evaluateBelow(ring, r, rest, points, *node.left);
    evaluateBelow(ring, r, rest, points, *node.right);
    return;
  }
  for (long i = node.first; i < node.first + node.count; ++i)
    evaluateDense(ring, ring.at(r, i), rest, ring.at(points, i));
}

// The sum of c[i] * product / (x - point i) over the points below the node.
template <class R>
Dense<R> combineBelow(const R& ring, Workspace& space, const typename R::Unit* c, const typename R::Unit* points,
                      const PointTree<R>& node) {
  Dense<R> sum = {ring.take(space, node.count + 1), -1};
  Workspace step;
  if (node.left == nullptr) {
    Dense<R> done = {ring.take(step, node.count + 1), 0};
    auto *scaled = ring.take(step, node.count + 1), *moved = ring.take(step, node.count + 2);
    ring.setSmall(done.c, 1);
    for (long i = node.first; i < node.first + node.count; ++i) {
      Dense<R> part = {scaled, scaleDense(ring, scaled, done, ring.at(c, i))};
      Dense<R> whole = {moved, sum.degree};
      if (sum.degree >= 0) {
        ring.copy(moved, sum.c, sum.degree + 1);
        multiplyByLinear(ring, whole, ring.at(points, i));
      }
      sum.degree = addDense(ring, sum.c, whole, part);
      multiplyByLinear(ring, done, ring.at(points, i));
    }
    return sum;
  }
  const Dense<R> left = combineBelow(ring, step, c, points, *node.left);
  const Dense<R> right = combineBelow(ring, step, c, points, *node.right);
  auto* other = ring.take(step, node.count + 1);
  sum.degree = multiplyDense(ring, sum.c, left, node.right->product);
  sum.degree = addDense(ring, sum.c, sum, {other, multiplyDense(ring, other, right, node.left->product)});
  return sum;
}

// The same polynomial as by divided differences; false where some value of the product's derivative has no inverse: two
// points are equal, or too near for the modulus.
template <class R>
bool interpolateByTree(const R& ring, typename R::Unit* r, const typename R::Unit* points,
                       const typename R::Unit* values, long n, long& degree) {
  Workspace space;
  const PointTree<R>& root = *grow(ring, space, points, 0, n);
  Dense<R> derivative = {ring.take(space, n + 1), -1};
  auto *factor = ring.take(space, 1), *weights = ring.take(space, n);
  for (long i = 1; i <= n; ++i) {
    ring.setSmall(factor, static_cast<std::uint64_t>(i));
    ring.multiply(ring.at(derivative.c, i - 1), ring.at(root.product.c, i), factor);
  }
  derivative.degree = trimmedDegree(ring, derivative.c, n - 1);
  evaluateBelow(ring, weights, derivative, points, root);
  for (long i = 0; i < n; ++i) {
    if (ring.isZero(ring.at(weights, i)) || !ring.invert(ring.at(weights, i), ring.at(weights, i))) return false;
    ring.multiply(ring.at(weights, i), ring.at(weights, i), ring.at(values, i));
    passWork(ring.steps(20) + 100);
  }
  const Dense<R> sum = combineBelow(ring, space, weights, points, root);
  ring.copy(r, sum.c, sum.degree + 1);
  degree = sum.degree;
  return true;
}

}  // namespace

template <class R>
void evaluateAtPoints(const R& ring, typename R::Unit* r, Dense<R> a, const typename R::Unit* points, long n) {
  if (n < treeFrom || a.degree < treeFrom) {
    for (long i = 0; i < n; ++i) evaluateDense(ring, ring.at(r, i), a, ring.at(points, i));
    return;
  }
  Workspace space;
  const PointTree<R>& root = *grow(ring, space, points, 0, n);
  evaluateBelow(ring, r, a, points, root);
}

// Many points by a tree of products. Few, and those with an error to tell, by Newton's divided differences, then the
// Newton form multiplied out from its last term.
template <class R>
long interpolateDense(const R& ring, typename R::Unit* r, const typename R::Unit* points,
                      const typename R::Unit* values, long n) {
  if (long degree; n >= treeFrom && interpolateByTree(ring, r, points, values, n, degree)) return degree;
  Workspace space;
  auto *difference = ring.take(space, 1), *term = ring.take(space, 1);
  ring.copy(r, values, n);
  for (long j = 1; j < n; ++j)
    for (long i = n - 1; i >= j; --i) {
      ring.subtract(difference, ring.at(points, i), ring.at(points, i - j));
      if (ring.isZero(difference)) KernelException("the same point has been entered twice");
      if (!ring.invert(difference, difference)) mInverseError();
      ring.subtract(term, ring.at(r, i), ring.at(r, i - 1));
      ring.multiply(ring.at(r, i), term, difference);
      passWork(ring.steps(20) + 100);
    }
  for (long i = n - 2; i >= 0; --i)
    for (long j = i; j < n - 1; ++j) {
      ring.multiply(term, ring.at(r, j + 1), ring.at(points, i));
      ring.subtract(ring.at(r, j), ring.at(r, j), term);
      passWork(ring.steps(1) + 1);
    }
  return trimmedDegree(ring, r, n - 1);
}

template <class R>
void translateDense(const R& ring, Dense<R> a, const typename R::Unit* shift) {
  Workspace space;
  auto* term = ring.take(space, 1);
  for (long i = a.degree - 1; i >= 0; --i)
    for (long j = i; j < a.degree; ++j) {
      ring.multiply(term, ring.at(a.c, j + 1), shift);
      ring.add(ring.at(a.c, j), ring.at(a.c, j), term);
      passWork(ring.steps(1) + 1);
    }
}

KOREL_FOR_EACH_RING(KOREL_INSTANTIATE_POINTS)

}  // namespace korel
