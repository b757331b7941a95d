// Values of special functions as floats: the precision grows until the error of the result is small enough.

#include <algorithm>
#include <cmath>

#include "frame/environment_block.h"
#include "frame/errors.h"
#include "library/native/native.h"
#include "library/native/special/elementary_balls.h"
#include "library/native/special/hypergeometric_values.h"
#include "library/native/special/special_functions.h"
#include "library/native/special/special_series.h"
#include "numbers/complex/complex.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/float/hardware_float.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

using special::Complex;
using special::Real;

constexpr int mostArguments = 24;
// Digits that the result is to hold beyond those wanted: the final rounding is half a unit by itself.
constexpr double surplus = 2.3;
// Digits beyond those wanted in the first attempt. The limbs hold some twelve more.
constexpr double guardDigits = 6;

// Below this power of ten no float has a name.
constexpr double leastExponent = -2.2e9;
// Digits beyond which no more precision is tried.
double mostDigits(double wanted) { return 40 * wanted + 20000; }
// A part that is so much smaller than the other is none.
double vanishing(double wanted) { return 3 * wanted + 60; }

// How many digits x lacks; below 0 when it has enough, infinite when not even its sign is known.
double lackOf(const Real& x, double wanted) {
  if (special::isExact(x)) return -wanted;
  if (special::lowerBound(x).m == 0) return INFINITY;
  return wanted + surplus + special::log10Of(x.error) - special::log10Of(special::middleBound(x));
}
void dropVanishing(Real& part, const Real& other, double wanted) {
  if (lackOf(part, wanted) != INFINITY || special::mayBeZero(other)) return;
  const double size = special::log10Of(special::lowerBound(other)), left = special::log10Of(special::upperBound(part));
  if (left < size - vanishing(wanted)) part = Real();
}

// What is evaluated: a function and its arguments, numbers all.
struct Task {
  const special::SpecialFunction* function;  // null for a hypergeometric function
  const DAG* arguments;
  int count, upper;  // of a hypergeometric function: arguments are the upper and lower parameters, and z
};

enum class Outcome { value, pole, overflow, underflow, none };

Outcome evaluateOnce(const Task& task, Complex& value, int& sign) {
  Complex a[mostArguments];
  for (int i = 0; i < task.count; ++i) a[i] = special::complexOf(task.arguments[i]);
  if (task.function == nullptr) {
    value = special::hypergeometric(a, task.upper, a + task.upper, task.count - task.upper - 1, a[task.count - 1]);
    return Outcome::value;
  }
  sign = task.function->pole == nullptr ? 0 : task.function->pole(a, task.count);
  if (sign != 0) return Outcome::pole;
  value = task.function->value(a, task.count);
  return Outcome::value;
}

// The decimal places of a number, as many of them as its denominator has digits.
double placesOf(DAG x) {
  if (isComplex(x)) return std::max(lengthOf(x) == 2 ? 0 : placesOf(x[1]), placesOf(imaginaryPartOf(x)));
  if (isTag(x, HFLOAT)) x = HFloatToFloat(x);
  if (isTag(x, RATIONAL)) return static_cast<double>(ilength(x[2]));
  return isSoftFloat(x) ? std::max(0.0, -static_cast<double>(exponentValue(exponentOf(x)))) : 0;
}
double placesOfArguments(const Task& task) {
  double places = 0;
  for (int i = 0; i < task.count; ++i) places += 2 * placesOf(task.arguments[i]);
  return places;
}

// The sum of a series at 1 takes more than twice the precision (hypergeometric_at_one.h).
bool isSumAtOne(const Task& task) {
  if (task.function != nullptr || task.upper < 3 || 2 * task.upper != task.count) return false;
  releaseAllLimbs();
  reals::workingLimbs = 1;
  return special::isExactZero(special::complexOf(task.arguments[task.count - 1]) - 1);
}

Outcome evaluate(const Task& task, Complex& value, int& sign) {
  const auto wanted = static_cast<double>(requireDigits());
  special::argumentPlaces = placesOfArguments(task);
  double digits = isSumAtOne(task) ? 1.7 * wanted + 30 : wanted + guardDigits;
  special::hopeless = false;
  for (;;) {
    special::isOverflow = false;
    releaseAllLimbs();
    reals::workingLimbs = reals::limbsForDigits(static_cast<std::int64_t>(digits));
    special::soughtDigits = digits + guardDigits;
    const Outcome outcome = evaluateOnce(task, value, sign);
    if (outcome != Outcome::value) return outcome;
    const special::Bound size = special::upperBound(value);
    if (special::isOverflow && special::isInfinite(size)) return Outcome::overflow;
    if (size.m != 0 && special::log10Of(size) < leastExponent) return Outcome::underflow;
    if (special::hopeless) return Outcome::none;
    dropVanishing(value.re, value.im, wanted);
    dropVanishing(value.im, value.re, wanted);
    const double lack = std::max(lackOf(value.re, wanted), lackOf(value.im, wanted));
    if (lack <= 0) return Outcome::value;
    // Twice as many digits where nothing is known; what is known to lack and some otherwise.
    const double next = lack == INFINITY ? 2 * digits + 10 : digits + lack + 6;
    if (next > mostDigits(wanted)) return Outcome::none;
    digits = next;
  }
}

DAG floatOfParts(const Complex& value) {
  if (special::isReal(value)) return reals::floatOf(value.re.middle);
  DAG re = special::isExactZero(value.re) ? consf0 : reals::floatOf(value.re.middle);
  DAG im = reals::floatOf(value.im.middle);
  return new3(COMPLEX, re, im);
}

DAG resultOf(const Task& task, DAG name, DAG operands) {
  Complex value;
  int sign = 0;
  const Outcome outcome = evaluate(task, value, sign);
  DAG result;
  if (outcome == Outcome::value) result = floatOfParts(value);
  releaseAllLimbs();
  if (outcome == Outcome::value) return result;
  if (outcome == Outcome::none) return ini("FAIL");
  DAG limit = outcome == Outcome::underflow ? consf0 : sign < 0 ? consfminf : consfinf;
  DAG sequence = new4(EXPSEQ, name, new2(LIST, operands), limit);
  const int event = outcome == Outcome::pole       ? divisionByZero
                    : outcome == Outcome::overflow ? overflowEvent
                                                   : underflowEvent;
  return TriggerNumericEvent(event, sequence, DAG(), DAG(), DAG(), false);
}

bool isFiniteNumber(DAG x) {
  if (isComplex(x)) {
    for (Word i = 1; i < lengthOf(x); ++i)
      if (!isFiniteNumber(x[i])) return false;
    return true;
  }
  return isNumeric(x) && !(isSoftFloat(x) && isSingular(x));
}

}  // namespace

// special/value(name, x, ...): the float of a special function of numbers; FAIL where it has no value or none is found.
DAG native::specialValue(const BuiltinCall& call) {
  const Word count = argumentCount(call);
  if (count < 2 || !isText(call.arguments[1]) || count - 1 > mostArguments) wrongParameters(call);
  const Task task{special::specialFunction(textOf(call.arguments[1]), static_cast<int>(count) - 1), &call.arguments[2],
                  static_cast<int>(count) - 1, 0};
  if (task.function == nullptr) return ini("FAIL");
  for (int i = 0; i < task.count; ++i)
    if (!isFiniteNumber(task.arguments[i])) return ini("FAIL");
  return resultOf(task, call.arguments[1], copysub(call.arguments, 1, count - 1));
}

// special/hypergeom([a, ...], [b, ...], z): the float of a hypergeometric function; FAIL as above.
DAG native::specialHypergeom(const BuiltinCall& call) {
  if (argumentCount(call) != 3 || !isTag(call.arguments[1], LIST) || !isTag(call.arguments[2], LIST))
    wrongParameters(call);
  DAG upper = call.arguments[1], lower = call.arguments[2];
  const Word p = memberCount(upper[1]), q = memberCount(lower[1]);
  if (p + q + 1 > mostArguments) return ini("FAIL");
  DAG numbers[mostArguments];
  int count = 0;
  for (Word i = 1; i <= p; ++i) numbers[count++] = upper[1][i];
  for (Word i = 1; i <= q; ++i) numbers[count++] = lower[1][i];
  numbers[count++] = call.arguments[3];
  for (int i = 0; i < count; ++i)
    if (!isFiniteNumber(numbers[i])) return ini("FAIL");
  return resultOf({nullptr, numbers, count, static_cast<int>(p)}, naminstall("hypergeom"), call.arguments);
}

}  // namespace korel
