#pragma once
// A sum of products of rational numbers.
//
// It is kept as a fraction that isn't in lowest terms: a product takes one greatest common divisor, of the
// denominators, in place of five, and the sum is reduced at its end only (bench/calculus.sh).

#include "eval/simplify/simplify.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "store/objects.h"

namespace korel {

struct RationalSum {
  DAG numerator = cons0, denominator = cons1;

  /// Adds a * b, or factor * a * b, for integers or RATIONALs other than 0.
  void add(DAG a, DAG b) { addFraction(mulint(above(a), above(b)), mulint(below(a), below(b))); }
  void add(DAG factor, DAG a, DAG b) {
    addFraction(mulint(mulint(above(a), above(b)), above(factor)), mulint(mulint(below(a), below(b)), below(factor)));
  }
  /// The sum in lowest terms, simplified.
  DAG total() const {
    DAG p = simpl(numerator);
    return denominator == cons1 ? p : simpl(mul(p, simpl(power(simpl(denominator), -1))));
  }

 private:
  static DAG above(DAG x) { return isInteger(x) ? x : x[1]; }
  static DAG below(DAG x) { return isInteger(x) ? cons1 : x[2]; }
  static Word size(DAG n) { return isImmediate(n) ? 1 : lengthOf(n); }
  void addFraction(DAG p, DAG q) {
    passWork(size(p) + size(q));
    const bool same = isImmediate(q) || isImmediate(denominator) ? q == denominator : compint(q, denominator) == 0;
    if (same) {
      numerator = addint(numerator, p);
      return;
    }
    DAG parts[2];
    gcdsimpl(denominator, q, parts);
    numerator = addint(mulint(numerator, parts[1]), mulint(p, parts[0]));
    denominator = mulint(denominator, parts[1]);
  }
};

}  // namespace korel
