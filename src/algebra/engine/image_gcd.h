#pragma once
// Greatest common divisors by images: what the dense and the sparse method have in common.
//
// All variables but a main one get values modulo a prime; divisors of such images in one variable, taken at many
// values, make up the divisor. Images are known but for a factor: they are made to fit together by the divisor of the
// leading coefficients, which is a multiple of the wanted one's; what is too much of it goes at the end with the
// content. A candidate is taken when it divides, so that no chance is in the result.

#include "algebra/engine/gcd.h"

namespace korel::engine {

/// The order in which the variables are looked at: the main one first.
struct VariableOrder {
  int count = 0;
  int variables[mostVariables];  // numbers of the layout
};

/// Exponents of some terms in the variables of an order, a row for each.
struct ExponentRows {
  std::size_t count = 0;
  int columns = 0;
  std::int32_t* exponents = nullptr;
  std::int64_t highest[mostVariables] = {};  // in each column

  const std::int32_t* row(std::size_t i) const { return exponents + i * columns; }
};
ExponentRows exponentRows(Arena& arena, const Layout& layout, const VariableOrder& order, const IntegerPolynomial& p);

/// Two polynomials that are primitive as polynomials in the main variable.
struct ImageProblem {
  Arena& arena;
  const Layout& layout;
  VariableOrder order;
  IntegerPolynomial a, b;
  ExponentRows rowsOfA, rowsOfB;
  IntegerPolynomial leading;  // the divisor of their leading coefficients
  ExponentRows rowsOfLeading;
};

/// The polynomial with these terms, without its content, when it divides both operands. `exponents` has a row of the
/// order's variables for each coefficient.
bool takeCandidate(const ImageProblem& problem, const std::int32_t* exponents, const DAG* coefficients,
                   std::size_t count, IntegerPolynomial& result);

/// Images that the dense method takes for two polynomials, at most.
double countOfImages(const ImageProblem& problem);
/// Time of the dense method in steps of a few processor cycles, for one prime: an estimate before anything is done.
double denseGcdSteps(const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b);

enum class ImageMethod { best, dense, sparse };
/// The primitive greatest common divisor of two primitive polynomials in the same variables, without a monomial factor,
/// with a positive leading coefficient. The best method is the dense one where the images are few, else the sparse one.
/// False when chance is against it several times.
bool gcdByImages(Arena& arena, const Layout& layout, const IntegerPolynomial& a, const IntegerPolynomial& b,
                 IntegerPolynomial& result, ImageMethod method = ImageMethod::best);

}  // namespace korel::engine
