#include "algebra/engine/modular_arithmetic.h"

#include <algorithm>

#include "numbers/integer/integer.h"
#include "numbers/primes/primality.h"

namespace korel::engine {

Residue Modulus::power(Residue a, std::uint64_t n) const {
  Residue result = 1;
  for (; n != 0; n >>= 1) {
    if ((n & 1) != 0) result = multiply(result, a);
    a = multiply(a, a);
  }
  return result;
}

Residue Modulus::of(DAG integer) const {
  if (isImmediate(integer)) {
    const std::int64_t value = immediateValue(integer);
    return value >= 0 ? static_cast<Residue>(value) % prime : subtract(0, static_cast<Residue>(-value) % prime);
  }
  // Four digits a step: the residue before them times 10^16 is below the prime times 2^64.
  const Word* digits = digitsOf(integer);
  const auto n = static_cast<std::size_t>(digitCount(integer));
  Residue result = 0;
  for (std::size_t end = n; end > 0;) {
    const std::size_t begin = (end - 1) / digitsPerGroup * digitsPerGroup;
    Group group = 0;
    while (end > begin) group = group * BASE + digits[--end];
    result = divisor_.split(Wide{result} * groupBase + group).rest;
  }
  return hasTag(integer, INTNEG) ? subtract(0, result) : result;
}

Residue primeBelow(Residue bound) {
  Residue n = bound - 1 - bound % 2;
  while (!isPrimeLimb(n)) n -= 2;
  return n;
}

DensePolynomial gcdInPlace(const Modulus& m, DensePolynomial a, DensePolynomial b) {
  if (a.degree < b.degree) std::swap(a, b);
  while (b.degree >= 0) {
    // a modulo b
    const Residue inverse = m.inverse(b.coefficients[b.degree]);
    for (std::int64_t k = a.degree; k >= b.degree; --k) {
      const Residue q = m.multiply(a.coefficients[k], inverse);
      if (k == b.degree + 1 && b.degree > 0) {
        // The step that is the rule: both terms of the quotient in one pass.
        Residue* x = a.coefficients;
        const Residue *y = b.coefficients, first = m.subtract(0, q);
        const Residue next = m.multiply(m.add(x[k - 1], m.multiply(first, y[b.degree - 1])), inverse);
        const Residue last = m.subtract(0, next);
        x[0] = m.add(x[0], m.multiply(last, y[0]));
        for (std::int64_t j = 1; j < b.degree; ++j) x[j] = m.sumOfProducts(x[j], first, y[j - 1], last, y[j]);
        break;
      }
      if (q == 0) continue;
      Residue* at = a.coefficients + (k - b.degree);
      for (std::int64_t j = 0; j <= b.degree; ++j) at[j] = m.subtract(at[j], m.multiply(q, b.coefficients[j]));
    }
    a.degree = std::min(a.degree, b.degree - 1);
    while (a.degree >= 0 && a.coefficients[a.degree] == 0) --a.degree;
    std::swap(a, b);
  }
  if (a.degree < 0) return a;
  const Residue inverse = m.inverse(a.coefficients[a.degree]);
  for (std::int64_t j = 0; j <= a.degree; ++j) a.coefficients[j] = m.multiply(a.coefficients[j], inverse);
  return a;
}

void solveVandermonde(const Modulus& m, const Residue* nodes, const Residue* values, std::size_t n, Residue* c,
                      Residue* scratch) {
  // The master polynomial, the product of z - node_k, lowest coefficient first.
  std::fill_n(scratch, n + 1, Residue{0});
  scratch[0] = 1;
  for (std::size_t k = 0; k < n; ++k)
    for (std::size_t j = k + 2; j-- > 0;) {
      const Residue product = m.multiply(scratch[j], nodes[k]);
      scratch[j] = m.subtract(j > 0 ? scratch[j - 1] : 0, product);
    }
  for (std::size_t k = 0; k < n; ++k) {
    // Synthetic division by z - node_k gives the polynomial that vanishes at all other nodes.
    Residue quotient = 1, atNode = 1, sum = values[n - 1];
    for (std::size_t j = n - 1; j-- > 0;) {
      quotient = m.add(scratch[j + 1], m.multiply(quotient, nodes[k]));
      sum = m.add(sum, m.multiply(quotient, values[j]));
      atNode = m.add(m.multiply(atNode, nodes[k]), quotient);
    }
    c[k] = m.multiply(sum, m.inverse(m.multiply(atNode, nodes[k])));
  }
}

}  // namespace korel::engine
