#pragma once
// Integer matrices eliminated by their images modulo primes (Cabay and Lam, "Congruence techniques for the exact
// solution of integer systems of linear equations", ACM Trans. Math. Softw. 3 (1977), 386-397).
//
// Elimination over the integers meets numbers that grow with each step. The images stay in machine words, and the
// minors that make up the result come from them by the Chinese remainder theorem; Hadamard's inequality tells how many
// primes it takes. Nothing is left to chance: what depends on the first prime is verified over the integers.

#include <cstddef>

#include "algebra/engine/arena.h"
#include "store/dag.h"

namespace korel::engine {

/// Row by row.
struct IntegerMatrix {
  std::size_t rows, columns;
  DAG* elements;

  DAG at(std::size_t i, std::size_t j) const { return elements[i * columns + j]; }
};

/// The determinant of a square matrix; 1 for the empty one.
DAG determinant(Arena& arena, const IntegerMatrix& a);

/// The reduced row echelon form times its common denominator: the identity times `denominator` in the columns of the
/// pivots, minors in the others.
struct ReducedMatrix {
  std::size_t rank;
  std::size_t* pivots;      // columns, ascending
  DAG denominator;          // a minor of the matrix
  IntegerMatrix rows;       // `rank` of them
  IntegerMatrix remainder;  // what is left of the other rows, times the denominator; 0 in the first columns
};
/// With pivots among the first `pivotColumns` columns.
ReducedMatrix reduced(Arena& arena, const IntegerMatrix& a, std::size_t pivotColumns);

}  // namespace korel::engine
