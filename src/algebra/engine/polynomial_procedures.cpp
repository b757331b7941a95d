#include "algebra/engine/polynomial_procedures.h"

#include <algorithm>
#include <cmath>

#include "algebra/engine/gcd.h"
#include "algebra/engine/integer_polynomial.h"
#include "algebra/engine/product.h"
#include "algebra/engine/quotient.h"
#include "algebra/polynomials/expanded_size.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_groups.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel::engine {

namespace {

constexpr double longestValue = 6e7;  // digits of base 10000 in an integer that stands for a polynomial

void setRanges(const Layout& layout, const Operand& a, const Operand& b, std::int64_t* ranges, std::int64_t n = 1) {
  for (int v = 0; v < layout.count; ++v) ranges[v] = (a.highest[v] - a.lowest[v]) * n + (b.highest[v] - b.lowest[v]);
}

IntegerPolynomial fromProductValue(Arena& arena, const Box& box, DAG value, std::int64_t digits) {
  PowerSum sum = fromValue(arena, value, digits);
  return inBox(arena, box, sum, sum.count == 0 ? 0 : sum.exponents[0]);
}

// The product by way of integers, for coefficients that are too long for limbs; 0 when the terms lie too far apart.
DAG productOfValues(Arena& arena, const Layout& layout, const Operand* operands, const std::int64_t* ranges,
                    const std::int64_t* lowest, DAG denominator) {
  Box box(layout, ranges);
  const double terms = static_cast<double>(std::min(operands[0].terms, operands[1].terms));
  const std::int64_t digits = digitsForBits(operands[0].bits + operands[1].bits + std::log2(terms) + 2);
  // Term by term each product takes some hundred digits' time.
  constexpr double digitsOfProduct = 3, shortValue = 8e6;
  const double length = box.places() * static_cast<double>(digits);
  const double products = static_cast<double>(operands[0].terms) * static_cast<double>(operands[1].terms);
  if (length > longestValue || (length > shortValue && length > products * digitsOfProduct)) return DAG();
  DAG a = valueAtPower(arena, box, packIntegers(arena, layout, operands[0]), digits);
  DAG b = operands[1].sum == operands[0].sum
              ? a
              : valueAtPower(arena, box, packIntegers(arena, layout, operands[1]), digits);
  IntegerPolynomial p = fromProductValue(arena, box, simpl(mul(a, b)), digits);
  return unpackIntegers(arena, layout, p.monomials, p.coefficients, p.count, lowest, denominator);
}

}  // namespace

DAG product(DAG a, DAG b) {
  Arena arena;
  Layout layout;
  Operand operands[2] = {{.sum = a}, {.sum = b}};
  if (!survey(layout, operands, 2)) return DAG();
  std::int64_t ranges[mostVariables], lowest[mostVariables];
  setRanges(layout, operands[0], operands[1], ranges);
  for (int v = 0; v < layout.count; ++v) lowest[v] = operands[0].lowest[v] + operands[1].lowest[v];
  if (!assignFields(layout, ranges)) return DAG();
  DAG denominator = simpl(mul(operands[0].denominator, operands[1].denominator));
  const double terms = static_cast<double>(std::min(operands[0].terms, operands[1].terms));
  const int widthOfA = widthOf(operands[0]), widthOfB = widthOf(operands[1]);
  const int width = widthFor(operands[0].bits + operands[1].bits + std::log2(terms));
  if (width == 0) return productOfValues(arena, layout, operands, ranges, lowest, denominator);
  Polynomial p = pack(arena, layout, operands[0], widthOfA), q = pack(arena, layout, operands[1], widthOfB);
  return unpack(arena, layout, multiply(arena, layout, p, q, width), lowest, denominator);
}

DAG sumOfProducts(DAG a, DAG b, DAG c, DAG d) {
  Arena arena;
  Layout layout;
  Operand operands[4] = {{.sum = a}, {.sum = b}, {.sum = c}, {.sum = d}};
  if (!survey(layout, operands, 4)) return DAG();
  for (const Operand& operand : operands)
    if (operand.denominator != cons1) return DAG();
  std::int64_t ranges[mostVariables], lowest[mostVariables], raised[2][mostVariables];
  for (int v = 0; v < layout.count; ++v) {
    std::int64_t low[2], high[2];
    for (int k = 0; k < 2; ++k) {
      low[k] = operands[2 * k].lowest[v] + operands[2 * k + 1].lowest[v];
      high[k] = operands[2 * k].highest[v] + operands[2 * k + 1].highest[v];
    }
    lowest[v] = std::min(low[0], low[1]);
    ranges[v] = std::max(high[0], high[1]) - lowest[v];
    for (int k = 0; k < 2; ++k) raised[k][v] = low[k] - lowest[v];
  }
  if (!assignFields(layout, ranges)) return DAG();
  double bits = 0;
  for (int k = 0; k < 4; k += 2) {
    const double terms = static_cast<double>(std::min(operands[k].terms, operands[k + 1].terms));
    bits = std::max(bits, operands[k].bits + operands[k + 1].bits + std::log2(terms) + 1);
  }
  const int width = widthFor(bits);
  if (width == 0) return DAG();
  Polynomial products[2];
  for (int k = 0; k < 2; ++k) {
    Polynomial p = pack(arena, layout, operands[2 * k], widthOf(operands[2 * k]));
    Polynomial q = pack(arena, layout, operands[2 * k + 1], widthOf(operands[2 * k + 1]));
    products[k] = multiply(arena, layout, p, q, width);
    Monomial by = 0;
    for (int v = 0; v < layout.count; ++v) by |= static_cast<Monomial>(raised[k][v]) << layout.variables[v].shift;
    for (std::size_t i = 0; i < products[k].count; ++i) products[k].monomials[i] += by;
  }
  return unpack(arena, layout, sum(arena, products[0], products[1]), lowest, cons1);
}

// ---- powers

namespace {

// Refuses a power that no memory holds: its coefficients are long on average.
void checkSize(const Operand& operand, std::int64_t n) {
  constexpr double bitsPerDigit = 13.28771238, shareOfLongest = 0.3;
  const double bits = operand.terms > 1 ? std::max(operand.bits - 1, 1.0) * static_cast<double>(n) : 0;
  checkSizeOfPower(operand.sum, static_cast<double>(n), shareOfLongest * bits / bitsPerDigit);
}

// C(n, k) for all k, each from the one before by small factors; the second half is the first.
DAG* binomials(Arena& arena, std::int32_t n) {
  auto* all = arena.make<DAG>(n + 1);
  auto* c = arena.make<Group>(groupsFor(static_cast<std::size_t>(digitsForBits(n))) + 2);
  std::size_t used = 1;
  c[0] = 1;
  for (std::int32_t k = 0; 2 * k <= n; ++k) {
    passWork(objectSteps + 10 * static_cast<std::int64_t>(used));
    all[k] = all[n - k] = simpl(integerOfGroups(c, used, INTPOS));
    c[used] = scaleGroups(c, c, used, static_cast<Group>(n - k));
    divideGroupsBy(c, c, used + 1, static_cast<Group>(k + 1));
    used = significantGroups(c, used + 1);
  }
  return all;
}

bool isUnit(DAG x) { return x == cons1 || x == consm1; }

// (s + t)^n by the binomial theorem: no like terms arise.
DAG binomialPower(Arena& arena, const Layout& layout, const Operand& operand, std::int32_t n,
                  const std::int64_t* lowest, DAG denominator) {
  IntegerPolynomial p = packIntegers(arena, layout, operand);
  DAG x = p.coefficients[0], y = p.coefficients[1];
  const bool areUnits = isUnit(x) && isUnit(y);
  // log2 C(n, k) is n/(2 ln 2) on average; opposite ones are one object where nothing else comes in.
  constexpr double bitsPerDigit = 13.28771238, averageShare = 0.7213;
  const double bits = (areUnits ? averageShare / 2 : averageShare + (bitsOf(x) + bitsOf(y)) / 2 - 1) * n;
  checkRoom(n + 1.0, (n + 1.0) * (wordsOfSmallTerm + bits / bitsPerDigit));
  auto* monomials = arena.make<Monomial>(n + 1);
  DAG* coefficients = binomials(arena, n);
  for (std::int32_t k = 0; k <= n; ++k) {
    monomials[k] = static_cast<Monomial>(n - k) * p.monomials[0] + static_cast<Monomial>(k) * p.monomials[1];
    if (areUnits) {
      const bool isNegative = (x == consm1 && (n - k) % 2 != 0) != (y == consm1 && k % 2 != 0);
      if (isNegative) coefficients[k] = simpl(negate(coefficients[k]));
      continue;
    }
    passWork(objectSteps + n / 16);
    DAG powers = simpl(mul(simpl(power(x, n - k)), simpl(power(y, k))));
    coefficients[k] = simpl(mul(coefficients[k], powers));
  }
  return unpackIntegers(arena, layout, monomials, coefficients, n + 1, lowest, denominator);
}

}  // namespace

DAG powerOfSum(DAG a, DAG exponent) {
  Arena arena;
  Layout layout;
  Operand operands[1] = {{.sum = a}};
  if (!survey(layout, operands, 1)) return DAG();
  Operand& operand = operands[0];
  if (!isImmediate(exponent)) {
    if (operand.terms > 1) KernelException("object too large");
    return DAG();
  }
  const std::int32_t n = immediateValue(exponent);
  std::int64_t ranges[mostVariables], lowest[mostVariables];
  for (int v = 0; v < layout.count; ++v) {
    ranges[v] = (operand.highest[v] - operand.lowest[v]) * n;
    lowest[v] = operand.lowest[v] * n;
    if (ranges[v] > largestExponent) KernelException("object too large");
  }
  if (!assignFields(layout, ranges)) return DAG();
  checkSize(operand, n);
  DAG denominator = simpl(power(operand.denominator, n));
  if (operand.terms == 2 && n > 40) return binomialPower(arena, layout, operand, n, lowest, denominator);
  if (int width = widthOf(operand); width != 0) {
    Polynomial p = raise(arena, layout, pack(arena, layout, operand, width), n);
    if (p.count != 0) return unpack(arena, layout, p, lowest, denominator);
  }
  Box box(layout, ranges);
  const double bits = (operand.bits + std::log2(static_cast<double>(operand.terms))) * n;
  const std::int64_t digits = digitsForBits(bits);
  if (box.places() * static_cast<double>(digits) > longestValue) return DAG();
  DAG value = valueAtPower(arena, box, packIntegers(arena, layout, operand), digits);
  IntegerPolynomial p = fromProductValue(arena, box, simpl(power(value, n)), digits);
  return unpackIntegers(arena, layout, p.monomials, p.coefficients, p.count, lowest, denominator);
}

// ---- quotients

Divided quotient(DAG a, DAG b, DAG& result) {
  Arena arena;
  Layout layout;
  Operand operands[2] = {{.sum = a}, {.sum = b}};
  if (!survey(layout, operands, 2)) return Divided::unknown;
  if (operands[0].denominator != cons1 || operands[1].denominator != cons1) return Divided::unknown;
  std::int64_t ranges[mostVariables], lowest[mostVariables];
  for (int v = 0; v < layout.count; ++v) {
    ranges[v] =
        std::max(operands[0].highest[v] - operands[0].lowest[v], operands[1].highest[v] - operands[1].lowest[v]);
    lowest[v] = operands[0].lowest[v] - operands[1].lowest[v];
    if (lowest[v] < 0) return Divided::no;
  }
  if (!assignFields(layout, ranges)) return Divided::unknown;
  const int widthOfA = widthOf(operands[0]), widthOfB = widthOf(operands[1]);
  if (widthOfA == 0 || widthOfB == 0) return Divided::unknown;
  Polynomial q;
  switch (divideExactly(arena, layout, pack(arena, layout, operands[0], widthOfA),
                        pack(arena, layout, operands[1], widthOfB), q)) {
    case Division::inexact: return Divided::no;
    case Division::tooWide: return Divided::unknown;
    case Division::exact: break;
  }
  result = unpack(arena, layout, q, lowest, cons1);
  return Divided::yes;
}

// ---- greatest common divisors

DAG gcd(DAG a, DAG b) {
  Arena arena;
  Layout layout;
  Operand operands[2] = {{.sum = a}, {.sum = b}};
  if (!survey(layout, operands, 2)) return DAG();
  if (operands[0].denominator != cons1 || operands[1].denominator != cons1) return DAG();
  std::int64_t ranges[mostVariables], lowest[mostVariables];
  for (int v = 0; v < layout.count; ++v) {
    ranges[v] =
        std::max(operands[0].highest[v] - operands[0].lowest[v], operands[1].highest[v] - operands[1].lowest[v]);
    lowest[v] = std::min(operands[0].lowest[v], operands[1].lowest[v]);
  }
  if (!assignFields(layout, ranges)) return DAG();
  IntegerPolynomial p = packIntegers(arena, layout, operands[0]), q = packIntegers(arena, layout, operands[1]), g;
  DAG contentP = contentOf(p), contentQ = contentOf(q);
  divideBy(p, contentP);
  divideBy(q, contentQ);
  if (!primitiveGcd(arena, layout, p, q, g)) return DAG();
  DAG content = simpl(igcd(contentP, contentQ));
  for (std::size_t i = 0; i < g.count; ++i) g.coefficients[i] = simpl(mul(g.coefficients[i], content));
  return unpackIntegers(arena, layout, g.monomials, g.coefficients, g.count, lowest, cons1);
}

}  // namespace korel::engine
