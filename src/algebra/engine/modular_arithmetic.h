#pragma once
// Arithmetic modulo a prime below 2^62, and polynomials in one variable over it.

#include <cstdint>

#include "algebra/engine/arena.h"
#include "algebra/engine/limbs.h"
#include "numbers/integer/integer_groups.h"
#include "store/dag.h"

namespace korel::engine {

using Residue = std::uint64_t;

struct Modulus {
  explicit Modulus(Residue p) : prime(p), divisor_(p) {}

  Residue prime;

  Residue add(Residue a, Residue b) const {
    Residue sum = a + b;
    return sum >= prime ? sum - prime : sum;
  }
  Residue subtract(Residue a, Residue b) const { return a >= b ? a - b : a + prime - b; }
  Residue multiply(Residue a, Residue b) const { return divisor_.split(Wide{a} * b).rest; }
  /// c + a*b + x*y, reduced once.
  Residue sumOfProducts(Residue c, Residue a, Residue b, Residue x, Residue y) const {
    return divisor_.split(Wide{a} * b + Wide{x} * y + c).rest;
  }
  Residue power(Residue a, std::uint64_t n) const;
  Residue inverse(Residue a) const { return power(a, prime - 2); }
  /// Residue of an integer of the kernel.
  Residue of(DAG integer) const;

 private:
  GroupDivisor divisor_;
};

/// The greatest prime below `bound`, which is at most 2^62.
Residue primeBelow(Residue bound);

/// A polynomial in one variable, dense, lowest coefficient first; the zero polynomial has degree -1.
struct DensePolynomial {
  std::int64_t degree = -1;
  Residue* coefficients = nullptr;
};
/// The monic greatest common divisor; what was in the operands is lost, one of which holds the result.
DensePolynomial gcdInPlace(const Modulus& m, DensePolynomial a, DensePolynomial b);

/// Solves sum over k of c_k node_k^s = value_s for s = 1, ..., n; the nodes are distinct and not 0
/// (Press et al., "Numerical Recipes", 2.8). `scratch` has room for n + 1 residues.
void solveVandermonde(const Modulus& m, const Residue* nodes, const Residue* values, std::size_t n, Residue* c,
                      Residue* scratch);

}  // namespace korel::engine
