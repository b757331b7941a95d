#pragma once
// The special functions by name: which are known, how many arguments they take, where they have poles. The native
// procedure "special/value" evaluates one; the library's procedures see to exact values and everything symbolic.

#include "library/native/special/ball.h"

namespace korel::special {

struct SpecialFunction {
  const char* name;
  int least, most;  // arguments
  Complex (*value)(const Complex* a, int n);
  /// The sign of the infinite value at these arguments, or 0; null for a function without poles.
  int (*pole)(const Complex* a, int n);
};
/// The function of that name with that many arguments, or null.
const SpecialFunction* specialFunction(const char* name, int arguments);

}  // namespace korel::special
