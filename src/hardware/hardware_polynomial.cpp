// The call evalhf_polynom(a, x, re, im).
//
// `a` holds the coefficients, the constant one first: real ones in one dimension, or rows (real part, imaginary part)
// in two. `x` is the starting point, which turns the circles from which the search sets out. `re` and `im` get a root
// in each place, from their lower bounds on. The value is the number of roots.

#include <cmath>
#include <cstdlib>

#include "frame/errors.h"
#include "hardware/hardware_arrays.h"
#include "hardware/hardware_calls.h"
#include "hardware/hardware_forms.h"
#include "hardware/hardware_functions.h"
#include "hardware/hardware_value.h"
#include "hardware/interpreter.h"
#include "hardware/polynomial_roots.h"
#include "rtable/rtable_object.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

[[noreturn]] void invalidDimensions() { KernelException("evalhf_polynom: invalid array dimensions"); }

// A result array: given by `var`, or held by a variable of the frame.
DAG resultArray(DAG argument, const PassedArgument& passed, const char* message) {
  const bool ofFrame = HFStack != nullptr && (isTag(argument, LOCAL) || isTag(argument, PARAM));
  const bool byReference = isVarForm(argument) || ofFrame;
  if (!byReference || !isArrayValue(passed.value)) KernelException(message);
  return referredObject(passed.value);
}

double* elementsOfVector(DAG array, std::int64_t least) {
  if (dimensionsOf(array) != 1 || extentOf(array, 0) < least) invalidDimensions();
  return reinterpret_cast<double*>(dataOf(array));
}

// Coefficient k of the array: real in one dimension, a row of two in two.
struct Coefficients {
  DAG array;
  int count;
  bool isComplex;
};
Coefficients coefficientsIn(DAG array) {
  const Word n = dimensionsOf(array);
  if (n != 1 && n != 2) invalidDimensions();
  if (n == 2 && extentOf(array, 1) != 2) invalidDimensions();
  if (extentOf(array, 0) < 1 || extentOf(array, 0) > 4097) invalidDimensions();
  return {array, static_cast<int>(extentOf(array, 0)), n == 2};
}
double partOf(const Coefficients& a, int k, int part) {
  if (part == 1 && !a.isComplex) return 0.0;
  const double index[2] = {static_cast<double>(lowerBound(a.array, 0)) + k,
                           a.isComplex ? static_cast<double>(lowerBound(a.array, 1)) + part : 0.0};
  return *arrayElement(a.array, index);
}

}  // namespace

double evalhf_polynom(DAG call) {
  DAG arguments = asSequence(call[2]);
  if (memberCount(arguments) != 4) wrongHardwareArguments(call[1]);
  PassedArgument passed[4];
  for (Word i = 0; i < 4; ++i) passed[i] = passArgument(arguments[i + 1]);
  DAG re = resultArray(arguments[3], passed[2], "evalhf_polynom: third argument must be var array");
  DAG im = resultArray(arguments[4], passed[3], "evalhf_polynom: fourth argument must be var array");
  const double start = requireNumber(passed[1].value);
  const Coefficients a = coefficientsIn(hfarraydes(passed[0].value));
  const int degree = a.count - 1;
  double *roots = elementsOfVector(re, degree), *imaginary = elementsOfVector(im, degree);
  if (partOf(a, degree, 0) == 0.0 && partOf(a, degree, 1) == 0.0) KernelException("0 leading coefficient");
  DAG scratch = newDoubleAligned(static_cast<Word>(4 * a.count), BINARY);
  auto* parts = reinterpret_cast<double*>(&scratch[1]);
  for (int k = 0; k < a.count; ++k) {
    parts[k] = partOf(a, k, 0);
    parts[a.count + k] = partOf(a, k, 1);
  }
  if (!findPolynomialRoots(degree, parts, parts + a.count, start, 0.0, roots, imaginary))
    KernelException("evalhf_polynom: values too extreme, normalize coefficients");
  release(scratch, lengthOf(scratch));
  writeBackArguments(passed, 4);
  return degree;
}

}  // namespace korel
