#include "algebra/engine/polynomial_procedures.h"

#include <algorithm>
#include <cmath>

#include "algebra/engine/gcd.h"
#include "algebra/engine/integer_polynomial.h"
#include "algebra/engine/product.h"
#include "algebra/engine/quotient.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel::engine {

namespace {

constexpr double longestValue = 8e6;  // digits of base 10000 in an integer that stands for a polynomial

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
  if (box.places() * static_cast<double>(digits) > longestValue) return DAG();
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

// ---- powers

namespace {

// How many exponent vectors of the terms are independent once the first is taken from all, modulo a prime.
int rankOf(Arena& arena, const Layout& layout, const Operand& operand) {
  constexpr std::int64_t prime = 1000003;
  constexpr std::size_t mostRows = 200;
  const std::size_t rows = std::min(operand.terms, mostRows);
  auto* matrix = arena.make<std::int64_t>(rows * mostVariables);
  const Monomial first = monomialOfTerm(layout, operand, 0);
  for (std::size_t i = 0; i < rows; ++i)
    for (int v = 0; v < layout.count; ++v) {
      const Variable& variable = layout.variables[v];
      std::int64_t e = exponentIn(variable, monomialOfTerm(layout, operand, i)) - exponentIn(variable, first);
      matrix[i * mostVariables + v] = (e % prime + prime) % prime;
    }
  int rank = 0;
  for (int v = 0; v < layout.count; ++v) {
    std::size_t pivot = rank;
    while (pivot < rows && matrix[pivot * mostVariables + v] == 0) ++pivot;
    if (pivot == rows) continue;
    std::swap_ranges(matrix + pivot * mostVariables, matrix + (pivot + 1) * mostVariables,
                     matrix + rank * mostVariables);
    const std::int64_t* lead = matrix + rank * mostVariables;
    for (std::size_t i = rank + 1; i < rows; ++i) {
      std::int64_t* row = matrix + i * mostVariables;
      // Fraction-free: both rows by the other's entry.
      const std::int64_t factor = row[v];
      for (int w = v; w < layout.count && factor != 0; ++w)
        row[w] = ((row[w] * lead[v] - lead[w] * factor) % prime + prime) % prime;
    }
    ++rank;
  }
  return rank;
}

// Refuses a power that no memory holds. Independent terms alone have C(n + rank, rank) products, which nothing but
// chance cancels; and the coefficients of a power are long on average.
void checkSizeOfPower(Arena& arena, const Layout& layout, const Operand& operand, std::int64_t n) {
  constexpr double mostWords = 8e8;
  const int rank = rankOf(arena, layout, operand);
  double terms = 1;
  for (int k = 1; k <= rank && terms < 1e18; ++k) terms *= (static_cast<double>(n) + k) / k;
  const double bits = operand.terms > 1 ? std::max(operand.bits - 1, 1.0) * static_cast<double>(n) : 0;
  constexpr double bitsPerDigit = 13.28771238, shareOfLongest = 0.3;
  const double words = 2 + shareOfLongest * bits / bitsPerDigit;
  if (terms > maxLength / 2.0 || terms * words > mostWords) KernelException("object too large");
}

// (s + t)^n by the binomial theorem: no like terms arise.
DAG binomialPower(Arena& arena, const Layout& layout, const Operand& operand, std::int32_t n,
                  const std::int64_t* lowest, DAG denominator) {
  IntegerPolynomial p = packIntegers(arena, layout, operand);
  DAG x = p.coefficients[0], y = p.coefficients[1];
  auto* monomials = arena.make<Monomial>(n + 1);
  auto* coefficients = arena.make<DAG>(n + 1);
  // C(n, k) x^(n - k) y^k: each from the one before by small factors, where x and y are 1 or -1.
  DAG c = cons1;
  for (std::int32_t k = 0; k <= n; ++k) {
    passWork(objectSteps + n / 16);
    monomials[k] = static_cast<Monomial>(n - k) * p.monomials[0] + static_cast<Monomial>(k) * p.monomials[1];
    DAG powers = simpl(mul(simpl(power(x, n - k)), simpl(power(y, k))));
    coefficients[k] = simpl(mul(c, powers));
    DAG next;
    rem(mul(c, NewInteger(n - k)), NewInteger(k + 1), &next);
    c = simpl(next);
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
  checkSizeOfPower(arena, layout, operand, n);
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
