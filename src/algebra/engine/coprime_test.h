#pragma once
// A cheap proof that polynomials have no common factor.
//
// All variables but one get values modulo a prime. A common factor that holds the variable left over would divide both
// images, and keeps its degree where the leading coefficient of one polynomial in that variable is a number that the
// prime doesn't divide. So images without a common factor tell that there is none; others tell nothing.

#include "algebra/engine/modular_arithmetic.h"

namespace korel::engine {

/// One polynomial, tested against several: its images are kept.
class CoprimeTest {
 public:
  /// `f` is a sum or a term with integer coefficients; where it is anything else the test never succeeds.
  CoprimeTest(Arena& arena, DAG f) : arena_(arena), f_(f) {}
  /// True only when no common factor of `f` and the expanded `g` holds a variable.
  bool isCoprimeTo(DAG g);

 private:
  struct Image {
    DAG variable;
    bool exists;  // `f` is a polynomial in the variable as far as the test goes
    DensePolynomial polynomial;
  };
  const Image* imageOfF(DAG variable);

  static constexpr int mostImages = 8;
  Arena& arena_;
  DAG f_;
  Image images_[mostImages];
  int known_ = 0;
};

}  // namespace korel::engine
