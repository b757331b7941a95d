#pragma once
// A product while it is put together from its factors.
//
// Numeric factors fold into one coefficient; nested products are spliced in; complex numbers to divide by wait until
// the numerator is whole.

#include "store/dag.h"

namespace korel {

struct Product {
  DAG factors;  // a PROD with room to spare; `used` words of it count
  Word used = 1;
  DAG coefficient;       // the number folded so far, or 0
  DAG divisor;           // complex numbers to divide by, or 0: they wait for the whole numerator
  DAG result;            // set when a factor settles the whole
  bool special = false;  // `infinity` or `undefined` stands among the factors
  bool again = false;    // a factor turned up that needs another pass
};

/// Adds a factor as it is.
void append(Product& product, DAG base, DAG exponent);
/// Multiplies the coefficient by `number`.
void fold(Product& product, DAG number);
/// Joins one factor to the product. Operands are simplified. Error: "invalid terms in product".
void multiply(Product& product, DAG base, DAG exponent);
/// Divides the coefficient by what waits for it, once all factors are joined.
void settleDivisor(Product& product);

}  // namespace korel
