#include "algebra/engine/image_gcd.h"

#include <algorithm>

#include "algebra/engine/dense_gcd.h"
#include "algebra/engine/product.h"
#include "algebra/engine/sparse_gcd.h"
#include "eval/simplify/simplify.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/vocabulary.h"

namespace korel::engine {

ExponentRows exponentRows(Arena& arena, const Layout& layout, const VariableOrder& order, const IntegerPolynomial& p) {
  ExponentRows rows{p.count, order.count, arena.make<std::int32_t>(p.count * order.count), {}};
  for (std::size_t i = 0; i < p.count; ++i)
    for (int k = 0; k < order.count; ++k) {
      const std::int64_t e = exponentIn(layout.variables[order.variables[k]], p.monomials[i]);
      rows.exponents[i * order.count + k] = static_cast<std::int32_t>(e);
      rows.highest[k] = std::max(rows.highest[k], e);
    }
  return rows;
}

namespace {

Monomial fieldOf(const Variable& v) { return ((Monomial{1} << v.bits) - 1) << v.shift; }

// ---- the leading coefficient

IntegerPolynomial leadingCoefficient(const ImageProblem& problem, const IntegerPolynomial& p,
                                     const ExponentRows& rows) {
  IntegerPolynomial result;
  result.monomials = problem.arena.make<Monomial>(p.count);
  result.coefficients = problem.arena.make<DAG>(p.count);
  const Variable& main = problem.layout.variables[problem.order.variables[0]];
  for (std::size_t i = 0; i < p.count; ++i) {
    if (rows.row(i)[0] != rows.highest[0]) continue;
    result.monomials[result.count] = p.monomials[i] - (static_cast<Monomial>(rows.highest[0]) << main.shift);
    result.coefficients[result.count++] = p.coefficients[i];
  }
  return result;
}

bool findLeading(ImageProblem& problem) {
  Arena& arena = problem.arena;
  IntegerPolynomial x = leadingCoefficient(problem, problem.a, problem.rowsOfA);
  IntegerPolynomial y = leadingCoefficient(problem, problem.b, problem.rowsOfB);
  DAG content = simpl(igcd(contentOf(x), contentOf(y)));
  makePrimitive(x);
  makePrimitive(y);
  if (!primitiveGcd(arena, problem.layout, x, y, problem.leading)) return false;
  auto* scaled = arena.make<DAG>(problem.leading.count);
  for (std::size_t i = 0; i < problem.leading.count; ++i)
    scaled[i] = simpl(mul(content, problem.leading.coefficients[i]));
  problem.leading.coefficients = scaled;
  problem.rowsOfLeading = exponentRows(arena, problem.layout, problem.order, problem.leading);
  return true;
}

// ---- the main variable: that with the fewest terms in the shorter leading coefficient

std::size_t leadingTerms(const Layout& layout, const IntegerPolynomial& p, int v, std::int64_t top) {
  std::size_t n = 0;
  for (std::size_t i = 0; i < p.count; ++i) n += exponentIn(layout.variables[v], p.monomials[i]) == top;
  return n;
}

VariableOrder chooseOrder(const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b) {
  std::int64_t highest[mostVariables], highestOfB[mostVariables];
  highestExponents(layout, {a.count, a.monomials, nullptr, 1}, highest);
  highestExponents(layout, {b.count, b.monomials, nullptr, 1}, highestOfB);
  VariableOrder order;
  std::size_t fewest = SIZE_MAX;
  for (int v = 0; v < layout.count; ++v) {
    if (highest[v] == 0 && highestOfB[v] == 0) continue;
    order.variables[order.count++] = v;
    const std::size_t n = std::min(leadingTerms(layout, a, v, highest[v]), leadingTerms(layout, b, v, highestOfB[v]));
    if (n >= fewest) continue;
    fewest = n;
    std::swap(order.variables[0], order.variables[order.count - 1]);
  }
  return order;
}

}  // namespace

bool takeCandidate(const ImageProblem& problem, const std::int32_t* exponents, const DAG* coefficients,
                   std::size_t count, IntegerPolynomial& result) {
  Arena& arena = problem.arena;
  auto* terms = arena.make<IntegerTerm>(count);
  std::size_t used = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (coefficients[i] == cons0) continue;
    Monomial monomial = 0;
    for (int k = 0; k < problem.order.count; ++k)
      monomial |= static_cast<Monomial>(exponents[i * problem.order.count + k])
                  << problem.layout.variables[problem.order.variables[k]].shift;
    terms[used++] = {monomial, coefficients[i]};
  }
  if (used == 0) return false;
  IntegerPolynomial candidate = fromTerms(arena, terms, used);
  arena.free(terms);
  makePrimitive(candidate);
  // With a number for the divisor of the leading coefficients nothing is too much.
  const bool isNumberLed = problem.leading.count == 1 && problem.leading.monomials[0] == 0;
  IntegerPolynomial content;
  const Monomial main = fieldOf(problem.layout.variables[problem.order.variables[0]]);
  if (!isNumberLed && !takeContent(arena, problem.layout, candidate, main, content)) return false;
  if (!isDivisor(arena, problem.layout, candidate, problem.a) ||
      !isDivisor(arena, problem.layout, candidate, problem.b))
    return false;
  result = candidate;
  return true;
}

double countOfImages(const ImageProblem& problem) {
  double images = 1;
  for (int k = 1; k < problem.order.count; ++k)
    images *= static_cast<double>(std::min(problem.rowsOfA.highest[k], problem.rowsOfB.highest[k]) +
                                  problem.rowsOfLeading.highest[k] + 1);
  return images;
}

double denseGcdSteps(const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b) {
  std::int64_t highest[mostVariables], highestOfB[mostVariables];
  highestExponents(layout, {a.count, a.monomials, nullptr, 1}, highest);
  highestExponents(layout, {b.count, b.monomials, nullptr, 1}, highestOfB);
  double images = 1, oneImage = 0;
  for (int v = 0; v < layout.count; ++v) {
    images *= static_cast<double>(std::min(highest[v], highestOfB[v]) + 1);
    oneImage = std::max(oneImage, static_cast<double>(highest[v]) * static_cast<double>(highestOfB[v]));
  }
  return images * (oneImage + 100) + 40 * static_cast<double>(a.count + b.count);
}

bool gcdByImages(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b,
                 IntegerPolynomial& result, ImageMethod method) {
  constexpr double mostImages = 4000;  // of the dense method, but for long operands
  ImageProblem problem{arena, layout, chooseOrder(layout, a, b), a, b, {}, {}, {}, {}};
  if (problem.order.count == 0) return false;
  const Monomial main = fieldOf(layout.variables[problem.order.variables[0]]);
  IntegerPolynomial contentA, contentB, content;
  if (!takeContent(arena, layout, problem.a, main, contentA) || !takeContent(arena, layout, problem.b, main, contentB))
    return false;
  if (!primitiveGcd(arena, layout, contentA, contentB, content)) return false;
  problem.rowsOfA = exponentRows(arena, layout, problem.order, problem.a);
  problem.rowsOfB = exponentRows(arena, layout, problem.order, problem.b);
  if (!findLeading(problem)) return false;
  const double enough = std::max(mostImages, 2 * static_cast<double>(std::min(a.count, b.count)));
  const bool dense = method == ImageMethod::best ? countOfImages(problem) < enough : method == ImageMethod::dense;
  IntegerPolynomial found;
  if (!(dense && denseGcd(problem, found)) && (method == ImageMethod::dense || !sparseGcd(problem, found)))
    return false;
  result = productOf(arena, layout, content, found);
  return result.count != 0;
}

}  // namespace korel::engine
