#include "algebra/engine/gcd.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "algebra/engine/image_gcd.h"
#include "algebra/engine/quotient.h"
#include "eval/simplify/simplify.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"

namespace korel::engine {

bool isDivisor(Arena& arena, const Layout& layout, const IntegerPolynomial& divisor, const IntegerPolynomial& p) {
  IntegerPolynomial quotient;
  return quotientOfIntegers(arena, layout, p, divisor, quotient);
}

void makePrimitive(IntegerPolynomial& p) {
  if (p.count == 0) return;
  DAG content = contentOf(p);
  divideBy(p, consneg(p.coefficients[0]) ? simpl(negate(content)) : content);
}

namespace {

constexpr double longestValue = 80000;  // digits of base 10000, of the heuristic method
constexpr double longestProduct = 4e6;
constexpr int mostTries = 6;

// The product of the lowest power of each variable in `p`.
Monomial monomialContent(const Layout& layout, const IntegerPolynomial& p) {
  Monomial content = 0;
  for (int v = 0; v < layout.count; ++v) {
    std::int64_t lowest = INT64_MAX;
    for (std::size_t i = 0; i < p.count; ++i)
      lowest = std::min(lowest, exponentIn(layout.variables[v], p.monomials[i]));
    content |= static_cast<Monomial>(lowest) << layout.variables[v].shift;
  }
  return content;
}
Monomial commonMonomial(const Layout& layout, Monomial a, Monomial b) {
  Monomial common = 0;
  for (int v = 0; v < layout.count; ++v) {
    const Variable& variable = layout.variables[v];
    common |= static_cast<Monomial>(std::min(exponentIn(variable, a), exponentIn(variable, b))) << variable.shift;
  }
  return common;
}
IntegerPolynomial shifted(Arena& arena, const IntegerPolynomial& p, Monomial by, bool up) {
  IntegerPolynomial result = p;
  result.monomials = arena.make<Monomial>(p.count);
  for (std::size_t i = 0; i < p.count; ++i) result.monomials[i] = up ? p.monomials[i] + by : p.monomials[i] - by;
  return result;
}

// The common divisor that the divisor of two values tells, tried at each place where its lowest monomial may lie:
// values at powers of one number have a power of it in common, when neither polynomial has a constant term.
bool divisorFromValue(Arena& arena, const Layout& layout, const Box& box, const PowerSum& value, Monomial highest,
                      const IntegerPolynomial& a, const IntegerPolynomial& b, IntegerPolynomial& result) {
  constexpr int mostDivisions = 4;
  const std::size_t zeros = value.exponents[0];
  const std::size_t most =
      std::min({zeros, box.placeOf(a.monomials[a.count - 1]), box.placeOf(b.monomials[b.count - 1])});
  int divisions = 0;
  for (std::size_t lowest = most + 1; lowest-- > 0 && divisions < mostDivisions;) {
    IntegerPolynomial candidate = inBox(arena, box, value, lowest);
    bool fits = candidate.count != 0 && monomialContent(layout, candidate) == 0;
    for (std::size_t i = 0; fits && i < candidate.count; ++i) fits = divides(layout, candidate.monomials[i], highest);
    if (fits) {
      makePrimitive(candidate);
      ++divisions;
      const bool isOne = candidate.count == 1 && candidate.monomials[0] == 0;
      if (isOne || (isDivisor(arena, layout, candidate, a) && isDivisor(arena, layout, candidate, b))) {
        result = candidate;
        return true;
      }
    }
    arena.free(candidate.monomials);
    arena.free(candidate.coefficients);
    if (candidate.count == 0 && lowest == most) break;  // too long for the degrees
  }
  return false;
}

// Steps of the dense method by images against those of the divisor of two integers, which are as many as the square of
// their digits; the dense method has more to prepare.
bool imagesAreFaster(const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b) {
  constexpr double stepsForDigits = 0.04, toPrepare = 20000, bitsOfPrime = 30;
  std::int64_t highest[mostVariables], highestOfB[mostVariables];
  highestExponents(layout, {a.count, a.monomials, nullptr, 1}, highest);
  highestExponents(layout, {b.count, b.monomials, nullptr, 1}, highestOfB);
  for (int v = 0; v < layout.count; ++v) highest[v] = std::max(highest[v], highestOfB[v]);
  const double bits = std::max(bitsOfLargest(a), bitsOfLargest(b));
  const double digits = Box(layout, highest).places() * static_cast<double>(digitsForBits(bits + 2) + 1);
  const double primes = std::min(bitsOfLargest(a), bitsOfLargest(b)) / bitsOfPrime + 1;
  return toPrepare + primes * denseGcdSteps(layout, a, b) < stepsForDigits * digits * digits;
}

// Of polynomials without a monomial factor.
bool heuristicGcd(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b,
                  IntegerPolynomial& result) {
  std::int64_t highest[mostVariables], highestOfB[mostVariables];
  highestExponents(layout, {a.count, a.monomials, nullptr, 1}, highest);
  highestExponents(layout, {b.count, b.monomials, nullptr, 1}, highestOfB);
  Monomial most = 0;
  for (int v = 0; v < layout.count; ++v) {
    most |= static_cast<Monomial>(std::min(highest[v], highestOfB[v])) << layout.variables[v].shift;
    highest[v] = std::max(highest[v], highestOfB[v]);
  }
  Box box(layout, highest);
  // The point has to exceed twice the smaller of the largest coefficients; some room makes chance factors harmless.
  const double bits = std::max(bitsOfLargest(a), bitsOfLargest(b));
  std::int64_t digits = digitsForBits(bits + 2) + 1;
  for (int attempt = 0; attempt < mostTries; ++attempt, digits += digits / 2 + 1) {
    if (box.places() * static_cast<double>(digits) > longestValue) return false;
    DAG value = simpl(igcd(valueAtPower(arena, box, a, digits), valueAtPower(arena, box, b, digits)));
    PowerSum sum = fromValue(arena, value, digits);
    if (sum.count != 0 && divisorFromValue(arena, layout, box, sum, most, a, b, result)) return true;
  }
  return false;
}

// The field of each variable in which `p` has a positive degree.
Monomial fieldsIn(const Layout& layout, const IntegerPolynomial& p) {
  Monomial all = 0, fields = 0;
  for (std::size_t i = 0; i < p.count; ++i) all |= p.monomials[i];
  for (int v = 0; v < layout.count; ++v) {
    const Monomial field = ((Monomial{1} << layout.variables[v].bits) - 1) << layout.variables[v].shift;
    if ((all & field) != 0) fields |= field;
  }
  return fields;
}

bool isConstant(const IntegerPolynomial& p) { return p.count == 1 && p.monomials[0] == 0; }

// The divisor of `start`, unless that has no terms, and the coefficients of `a` as a polynomial in the variables of
// `fields`.
bool gcdOfCoefficients(Arena& arena, const Layout& layout, const IntegerPolynomial& a, Monomial fields,
                       const IntegerPolynomial& start, IntegerPolynomial& result) {
  auto* order = arena.make<std::size_t>(a.count);
  std::iota(order, order + a.count, std::size_t{0});
  std::stable_sort(order, order + a.count,
                   [&](std::size_t i, std::size_t j) { return (a.monomials[i] & fields) > (a.monomials[j] & fields); });
  result = start;
  for (std::size_t i = 0; i < a.count && !isConstant(result);) {
    IntegerPolynomial part;
    part.monomials = arena.make<Monomial>(a.count);
    part.coefficients = arena.make<DAG>(a.count);
    const Monomial power = a.monomials[order[i]] & fields;
    for (; i < a.count && (a.monomials[order[i]] & fields) == power; ++i) {
      part.monomials[part.count] = a.monomials[order[i]] & ~fields;
      part.coefficients[part.count++] = a.coefficients[order[i]];
    }
    makePrimitive(part);
    if (result.count == 0) result = part;
    else if (!primitiveGcd(arena, layout, part, result, result)) return false;
  }
  return true;
}

}  // namespace

IntegerPolynomial constantOne(Arena& arena) {
  IntegerPolynomial one;
  one.count = 1;
  one.monomials = arena.makeZero<Monomial>(1);
  one.coefficients = arena.make<DAG>(1);
  one.coefficients[0] = cons1;
  return one;
}

bool takeContent(Arena& arena, const Layout& layout, IntegerPolynomial& p, Monomial fields,
                 IntegerPolynomial& content) {
  if (!gcdOfCoefficients(arena, layout, p, fields, {}, content)) return false;
  if (isConstant(content)) return true;
  IntegerPolynomial quotient;
  if (!quotientOfIntegers(arena, layout, p, content, quotient)) return false;
  p = quotient;
  return true;
}

IntegerPolynomial productOf(Arena& arena, const Layout& layout, const IntegerPolynomial& a,
                            const IntegerPolynomial& b) {
  if (isConstant(a)) return b;
  Polynomial x = inLimbs(arena, a), y = inLimbs(arena, b);
  const double bits = bitsOfLargest(a) + bitsOfLargest(b) + std::log2(static_cast<double>(std::min(a.count, b.count)));
  if (x.count != 0 && y.count != 0 && widthFor(bits) != 0)
    return asIntegers(arena, multiply(arena, layout, x, y, widthFor(bits)));
  std::int64_t highest[mostVariables], highestOfB[mostVariables];
  highestExponents(layout, {a.count, a.monomials, nullptr, 1}, highest);
  highestExponents(layout, {b.count, b.monomials, nullptr, 1}, highestOfB);
  for (int v = 0; v < layout.count; ++v) highest[v] += highestOfB[v];
  Box box(layout, highest);
  const std::int64_t digits = digitsForBits(bits + 2);
  if (box.places() * static_cast<double>(digits) > longestProduct) return {};
  DAG value = simpl(mul(valueAtPower(arena, box, a, digits), valueAtPower(arena, box, b, digits)));
  PowerSum sum = fromValue(arena, value, digits);
  return inBox(arena, box, sum, sum.exponents[0]);
}

bool primitiveGcd(Arena& arena, const Layout& layout, IntegerPolynomial a, IntegerPolynomial b,
                  IntegerPolynomial& result) {
  if (isConstant(a) || isConstant(b)) {
    result = isConstant(a) ? a : b;
    return true;
  }
  const Monomial fieldsOfA = fieldsIn(layout, a), fieldsOfB = fieldsIn(layout, b);
  if (Monomial only = fieldsOfA & ~fieldsOfB; only != 0) return gcdOfCoefficients(arena, layout, a, only, b, result);
  if (Monomial only = fieldsOfB & ~fieldsOfA; only != 0) return gcdOfCoefficients(arena, layout, b, only, a, result);
  const Monomial contentOfA = monomialContent(layout, a), contentOfB = monomialContent(layout, b);
  IntegerPolynomial p = shifted(arena, a, contentOfA, false), q = shifted(arena, b, contentOfB, false);
  if (isConstant(p) || isConstant(q)) {
    result = constantOne(arena);
  } else {
    const bool imagesFirst = imagesAreFaster(layout, p, q);
    if (!(imagesFirst && gcdByImages(arena, layout, p, q, result)) && !heuristicGcd(arena, layout, p, q, result) &&
        (imagesFirst || !gcdByImages(arena, layout, p, q, result)))
      return false;
  }
  result = shifted(arena, result, commonMonomial(layout, contentOfA, contentOfB), true);
  return true;
}

}  // namespace korel::engine
