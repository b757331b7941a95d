#pragma once
// The elementary functions of the language: one row each, for what they share.
//
// A row tells how the function is computed in floats, how it is symmetric, what it is at the ends of the real line,
// and where it is easy to lose digits. `elementary_floats.cpp` works the float values out, `elementary_values.cpp` the
// exact special values.

#include <cstdint>

#include "frame/builtin_call.h"
#include "numbers/functions/complex_reals.h"
#include "store/dag.h"

namespace korel {

enum class Parity : std::uint8_t { none, odd, even };
/// What of its argument has to be known to more digits than the result has.
enum class Care : std::uint8_t {
  none,
  whole,     // as many as stand before the point
  byPi,      // those beside a multiple of Pi/2
  besideOne  // those beside 1 and -1, or the unit circle
};

struct ElementaryRow {
  const char* name;
  reals::Complex (*value)(const reals::Complex& z);
  bool ofReciprocal;  // the value is that at 1/z
  bool inverted;      // the value is 1 over it
  Care care;
  Parity parity;
  const char* atInfinity;  // values at infinity and -infinity: "0", "1", "-1", "infinity", "-infinity", "Pi", "Pi/2",
  const char* atMinusInfinity;  // "-Pi/2", "undefined"; null where the call stands
};

enum class Elementary : std::uint8_t {
  exp,
  ln,
  sqrt,
  sin,
  cos,
  tan,
  cot,
  sec,
  csc,
  sinh,
  cosh,
  tanh,
  coth,
  sech,
  csch,
  arcsin,
  arccos,
  arctan,
  arccot,
  arcsec,
  arccsc,
  arcsinh,
  arccosh,
  arctanh,
  arccoth,
  arcsech,
  arccsch,
  count
};
const ElementaryRow& rowOf(Elementary f);
/// The name as an object, and the unevaluated call of it; simplified.
DAG nameOf(Elementary f);
DAG callOf(Elementary f, DAG x);

/// The float of f at a finite real or complex number, exact or float; a singularity is a numeric event.
DAG floatAt(Elementary f, DAG x);
/// The float of x^y for finite numbers, x not 0.
DAG floatPower(DAG x, DAG y);
/// The float of the angle of the point (x, y), real numbers not both 0.
DAG floatAngle(DAG y, DAG x);
/// The float of ln(x)/ln(b).
DAG floatLogarithm(DAG x, DAG b);
/// A finite real or complex number of any kind; and one with a float in it.
bool isFiniteNumber(DAG x);
bool isFloatValue(DAG x);

/// What f(x) is for an exact x, simplified, or 0 where the call stands as it is.
DAG exactAt(Elementary f, DAG x);
/// The value at an end of the real line, `infinity`, `-infinity`, `undefined`, or 0 for any other x.
DAG atEnd(Elementary f, DAG x);
/// The event of a division by zero in f at x.
DAG poleOf(DAG name, DAG x, DAG standard);

}  // namespace korel
