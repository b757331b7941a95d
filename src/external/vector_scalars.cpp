#include <cmath>
#include <cstdint>
#include <limits>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evalf.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/named_kinds.h"
#include "eval/simplify/simplify.h"
#include "external/addresses.h"
#include "external/vector_functions.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "rtable/axes.h"
#include "rtable/element_formats.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace vector {

DAG valueBehind(DAG x) {
  if (hasTag(x, TABLEREF)) return simpl(eval(x));
  // An array comes by its name, and a wrapper looks at it a dozen times (bench/external.sh).
  return isTag(x[1], RTABLE) && !isOpenEnvironmentName(x) ? x[1] : valuenv(x, false);
}

// ---- tests

namespace {

bool isIntegerWithin(ALGEB reference, int bits) {
  DAG x = valueOf(reference);
  std::int64_t value;
  if (!korel::isInteger(x) || !readLongLong(x, value)) return false;
  return bits == 64 || (value >= -(std::int64_t{1} << (bits - 1)) && value < (std::int64_t{1} << (bits - 1)));
}

}  // namespace

M_BOOL isComplexFloat(ALGEB x) {
  DAG value = valueOf(x);
  return isTag(value, COMPLEX) && isFloatComplex(value);
}
M_BOOL isFloat(ALGEB x) { return isFloatNumber(valueOf(x)); }
M_BOOL isInteger(ALGEB x) { return korel::isInteger(valueOf(x)); }
M_BOOL isInteger8(ALGEB x) { return isIntegerWithin(x, 8); }
M_BOOL isInteger16(ALGEB x) { return isIntegerWithin(x, 16); }
M_BOOL isInteger32(ALGEB x) { return isIntegerWithin(x, 32); }
M_BOOL isInteger64(ALGEB x) { return isIntegerWithin(x, 64); }
M_BOOL isZero(ALGEB x) { return isZeroValue(valueOf(x)); }
M_BOOL isString(ALGEB x) { return isTag(valueOf(x), STRING); }
M_BOOL isUnnamedZero(ALGEB x) { return fromC(x) == cons0; }

// ---- numbers into C

namespace {

// The float of an expression, with the digits that a double can hold when `Digits` asks for less.
DAG evaluated(DAG x) {
  constexpr std::int64_t doubleDigits = 18;
  if (precisionDigits() >= doubleDigits) return simpl(evalf(x));
  EnvironmentChange change;
  setDigits(change, doubleDigits);
  DAG value = simpl(evalf(x));
  restoreDigits(change);
  return value;
}

// A real number that `x` stands for, or 0.
DAG realNumber(DAG x) {
  if (isNumeric(x)) return x;
  if (isTag(x, COMPLEX)) return cxIsReal(x) ? cxRealPart(x) : DAG();
  if (!isObject(x) || hasTag(x, STRING) || hasTag(x, EXPSEQ)) return DAG();
  DAG value = evaluated(x);
  if (isTag(value, COMPLEX) && cxIsReal(value)) value = cxRealPart(value);
  return isNumeric(value) ? value : DAG();
}

[[noreturn]] void doesNotFit(DAG x, const char* type, int bytes) {
  KernelException("unable to store %1 when datatype=%2", x,
                  simpl(new3(TABLEREF, naminstall(type), new2(EXPSEQ, immediate(bytes)))));
}

// The whole part of a number that is no integer; false when it has none of 64 bits.
bool wholePart(DAG number, std::int64_t& value) {
  const double d = FloatValue(number);
  constexpr double limit = 9223372036854775808.0, exact = 9007199254740992.0;
  if (!(d >= -limit && d <= limit)) return false;
  // Beyond 2^53 a double has lost digits that a long float still has.
  if (std::fabs(d) >= exact && isTag(number, FLOAT)) {
    DAG whole = simpl(floatrat(number));
    if (korel::isInteger(whole)) return readLongLong(whole, value);
  }
  if (d == limit) return false;
  value = static_cast<std::int64_t>(d);
  return true;
}

std::int64_t integerFor(ALGEB reference, int bytes, const char* message) {
  DAG x = valueOf(reference);
  std::int64_t value = 0;
  bool fits;
  if (isImmediate(x)) {
    value = immediateValue(x);
    fits = true;
  } else {
    DAG number = realNumber(x);
    if (!number) userror(message);
    fits = korel::isInteger(number) ? readLongLong(number, value) : wholePart(number, value);
  }
  if (bytes < 8 && fits) {
    const std::int64_t bound = std::int64_t{1} << (8 * bytes - 1);
    fits = value >= -bound && value < bound;
  }
  if (!fits) doesNotFit(x, "integer", bytes);
  return value;
}

bool isFinite(DAG number) { return !isTag(number, FLOAT) || isFiniteFloat(number); }

}  // namespace

FLOAT64 korelToFloat64(ALGEB reference) {
  DAG x = valueOf(reference);
  if (isImmediate(x)) return x == consm0 ? -0.0 : immediateValue(x);
  DAG number = hasTag(x, FLOAT) ? x : realNumber(x);
  if (!number) userror("number expected for float[8] parameter");
  const double value = hasTag(number, FLOAT) ? SoftwareToHardwareFloat(number) : FloatValue(number);
  if (std::isinf(value) && isFinite(number) && !isTag(number, HFLOAT)) doesNotFit(x, "float", 8);
  return value;
}
FLOAT32 korelToFloat32(ALGEB reference) {
  DAG x = valueOf(reference);
  DAG number = realNumber(x);
  if (!number) userror("number expected for float[4] parameter");
  const double value = FloatValue(number);
  const auto narrow = static_cast<float>(value);
  if (std::isinf(narrow) && isFinite(number) && !(isTag(number, HFLOAT) && std::isinf(value)))
    doesNotFit(x, "float", 4);
  return narrow;
}

INTEGER8 korelToInteger8(ALGEB x) {
  return static_cast<INTEGER8>(integerFor(x, 1, "number expected for integer[1] parameter"));
}
INTEGER16 korelToInteger16(ALGEB x) {
  return static_cast<INTEGER16>(integerFor(x, 2, "number expected for integer[2] parameter"));
}
INTEGER32 korelToInteger32(ALGEB x) {
  return static_cast<INTEGER32>(integerFor(x, 4, "number expected for integer[4] parameter"));
}
INTEGER64 korelToInteger64(ALGEB x) { return integerFor(x, 8, "number expected for integer[8] parameter"); }

M_INT korelToM_INT(ALGEB reference) {
  DAG x = valueOf(reference);
  std::int64_t value;
  if (!korel::isInteger(x)) userror("integer expected for M_INT parameter");
  if (!readLongLong(x, value)) doesNotFit(x, "integer", 8);
  return value;
}

M_BOOL korelToBool(ALGEB reference) {
  DAG x = valueOf(reference);
  if (x == ini("true") || x == cons1) return TRUE;
  if (x == ini("false") || x == cons0) return FALSE;
  if (x == ini("FAIL")) return M_FAIL;
  userror("integer expected for M_BOOL parameter");
}

namespace {

// The parts of a complex number, as `numberOf` sees each of them.
bool splitParts(DAG x, DAG& real, DAG& imaginary) {
  if (!isNumber(x)) {
    if (!isObject(x) || hasTag(x, STRING) || hasTag(x, EXPSEQ)) return false;
    x = evaluated(x);
  }
  if (!isNumber(x)) return false;
  real = realNumber(isTag(x, COMPLEX) ? cxRealPart(x) : x);
  imaginary = realNumber(isTag(x, COMPLEX) ? cxImaginaryPart(x) : cons0);
  return real && imaginary;
}

}  // namespace

ComplexFloat64 korelToComplexFloat64(ALGEB x) {
  DAG real, imaginary;
  if (!splitParts(valueOf(x), real, imaginary)) userror("unable to convert to a complex float");
  return {korelToFloat64(toC(real)), korelToFloat64(toC(imaginary))};
}
ComplexFloatDAG korelToComplexFloatDAG(ALGEB x) {
  DAG real, imaginary;
  if (!splitParts(valueOf(x), real, imaginary)) userror("unable to convert to a complex float");
  return {toC(simpl(evalf(real))), toC(simpl(evalf(imaginary)))};
}

ALGEB selectRealPart(ALGEB x) { return toC(simpl(cxRealPart(valueOf(x)))); }
ALGEB selectImaginaryPart(ALGEB x) { return toC(simpl(cxImaginaryPart(valueOf(x)))); }

// ---- numbers out of C

ALGEB toKorelInteger(long value) { return toC(uniqueInteger(value)); }
ALGEB toKorelFloat(double value) { return toC(floatOfDouble(value)); }
ALGEB toKorelComplex(double re, double im) {
  DAG real = floatOfDouble(re), imaginary = floatOfDouble(im);
  return toC(simpl(new3(COMPLEX, real, imaginary)));
}
ALGEB toKorelComplexFloat(ComplexFloat64 value) { return toKorelComplex(value.re, value.im); }

// ---- truth and texts

ALGEB toKorelBoolean(long value) {
  if (value == M_FAIL) return toC(ini("FAIL"));
  return toC(truth(value != 0));
}
ALGEB toKorelChar(long value) {
  const auto c = static_cast<char>(value);
  return toC(c == 0 ? strinstall("") : charinstall(c));
}
ALGEB toKorelString(const char* text) { return toC(text == nullptr ? null : strinstall(text)); }

char* korelToString(ALGEB reference) {
  DAG x = fromC(reference);
  DAG value = valueOf(reference);
  if (!isText(value)) userror("string or symbol expected for STRING parameter");
  // An assigned name stands for a text; an unassigned one is a text of its own.
  return textOf(isTag(value, STRING) ? value : isName(x) ? value : x);
}

}  // namespace vector

}  // namespace korel
