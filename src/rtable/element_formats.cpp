#include "rtable/element_formats.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "eval/evaluate/evalf.h"
#include "eval/evaluate/known_values.h"
#include "eval/simplify/simplify.h"
#include "eval/types/types.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "hardware/constant_double.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "store/generations.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- from expressions

// A real number that `x` stands for, exact or not, or 0.
DAG realNumber(DAG x) {
  if (isNumeric(x)) return x;
  if (isTag(x, COMPLEX)) return cxIsReal(x) ? realNumber(cxRealPart(x)) : DAG();
  DAG value = simpl(evalf(x));
  if (isTag(value, COMPLEX) && cxIsReal(value)) value = cxRealPart(value);
  return isNumeric(value) ? value : DAG();
}

// The real float that `x` stands for, with `Digits` digits at most, or 0.
DAG realFloat(DAG x) {
  DAG number = realNumber(x);
  return number ? simpl(evalf(number)) : number;
}

bool splitParts(DAG x, DAG& real, DAG& imaginary, DAG (*numberOf)(DAG x)) {
  if (!isNumber(x)) x = simpl(evalf(x));
  if (!isNumber(x)) return false;
  real = numberOf(isTag(x, COMPLEX) ? cxRealPart(x) : x);
  imaginary = numberOf(isTag(x, COMPLEX) ? cxImaginaryPart(x) : cons0);
  return real && imaginary;
}

// An integer, or a float that equals one.
bool wholeNumber(DAG x, std::int64_t& value) {
  if (isInteger(x)) return readLongLong(x, value);
  if (!isFloatNumber(x)) return false;
  const double d = FloatValue(x);
  constexpr double limit = 9223372036854775808.0;
  if (!(d >= -limit && d < limit) || d != std::trunc(d)) return false;
  value = static_cast<std::int64_t>(d);
  return isTag(x, HFLOAT) || compcon(x, simpl(NewInteger(value))) == 0;
}

// The number that a constant such as Pi stands for, with the digits that a double keeps.
DAG hardwareNumber(DAG x) {
  if (isNumber(x)) return x;
  constexpr std::int64_t digitsOfDoubles = 20;
  EnvironmentChange digits;
  setDigits(digits, std::max(precisionDigits(), digitsOfDoubles));
  DAG value = simpl(evalf(x));
  restoreDigits(digits);
  return value;
}

bool convertByObjects(Word datatype, DAG elementType, DAG x, RawElement& element) {
  switch (datatype) {
    case dataDag:
      element.object = x;
      if (elementType == ini("anything")) return true;
      if (elementType != ini("sfloat")) return type(x, elementType);
      element.object = realFloat(x);
      return static_cast<bool>(element.object);
    case dataComplexFloat: return splitParts(x, element.parts[0], element.parts[1], realFloat);
    case dataFloat64: {
      if (constantDouble(x, element.real)) return true;
      DAG number = realNumber(hardwareNumber(x));
      if (number) element.real = FloatValue(number);
      return static_cast<bool>(number);
    }
    default: {
      DAG real, imaginary;
      if (!splitParts(hardwareNumber(x), real, imaginary, realNumber)) return false;
      element.doubles[0] = FloatValue(real);
      element.doubles[1] = FloatValue(imaginary);
      return true;
    }
  }
}

// ---- in the block

template <class T>
T load(const unsigned char* place) {
  T value;
  std::memcpy(&value, place, sizeof value);
  return value;
}
template <class T>
void store(unsigned char* place, const RawElement& element) {
  std::memcpy(place, &element, sizeof(T));
}
template <class T>
bool isZeroOf(const RawElement& element) {
  return load<T>(element.bytes) == T{0};
}

template <class T>
DAG readInteger(const unsigned char* place) {
  if constexpr (sizeof(T) < 4) return immediate(load<T>(place));
  else return simpl(NewInteger(load<T>(place)));
}
DAG floatOf(double x) { return floatOfDouble(x); }

struct ObjectPair {
  DAG real, imaginary;
};
struct DoublePair {
  double real, imaginary;
};

}  // namespace

const ElementFormat elementFormats[datatypeCount] = {
    {load<DAG>, store<DAG>, [](const RawElement& e) { return isZeroValue(e.object); }},
    {[](const unsigned char* place) {
       auto pair = load<ObjectPair>(place);
       return pair.real ? simpl(new3(COMPLEX, pair.real, pair.imaginary)) : DAG();
     },
     store<ObjectPair>, [](const RawElement& e) { return isZeroValue(e.parts[0]) && isZeroValue(e.parts[1]); }},
    {readInteger<std::int8_t>, store<std::int8_t>, isZeroOf<std::int8_t>},
    {readInteger<std::int16_t>, store<std::int16_t>, isZeroOf<std::int16_t>},
    {readInteger<std::int32_t>, store<std::int32_t>, isZeroOf<std::int32_t>},
    {readInteger<std::int64_t>, store<std::int64_t>, isZeroOf<std::int64_t>},
    {[](const unsigned char* place) { return floatOf(load<double>(place)); }, store<double>, isZeroOf<double>},
    {[](const unsigned char* place) {
       auto pair = load<DoublePair>(place);
       return simpl(new3(COMPLEX, floatOf(pair.real), floatOf(pair.imaginary)));
     },
     store<DoublePair>, [](const RawElement& e) { return e.doubles[0] == 0 && e.doubles[1] == 0; }},
};

bool convertElement(Word datatype, DAG elementType, DAG x, RawElement& element) {
  if (datatype < dataInteger8 || datatype > dataInteger64) return convertByObjects(datatype, elementType, x, element);
  const int bits = 8 * rtableElementBytes[datatype];
  std::int64_t value = 0;
  if (!wholeNumber(x, value)) return false;
  // Little-endian: the low bytes stand first.
  element.integer64 = value;
  return bits == 64 || (value >= -(std::int64_t{1} << (bits - 1)) && value < (std::int64_t{1} << (bits - 1)));
}

RawElement DagToRTableData(DAG r, DAG x) {
  RawElement element;
  if (!convertElement(datatypeOf(r), r[rtableElementType], x, element))
    KernelException("unable to store %1 when datatype=%2 ", x, datatypeValue(r));
  return element;
}

unsigned char* elementPlace(DAG r, std::int64_t offset) {
  unsigned char* data = dataOf(r);
  if (storageOf(r) == storageSparse) data += std::int64_t{4} * rawField(r, rtableCount) * dimensionsOf(r);
  return data + offset * rtableElementBytes[datatypeOf(r)];
}

void storeRaw(DAG r, std::int64_t offset, const RawElement& element) {
  switch (datatypeOf(r)) {
    case dataComplexFloat: updategen(element.parts[1]); [[fallthrough]];
    case dataDag: updategen(element.parts[0]); break;
    default: break;
  }
  stepEvaluationClock();
  formatOf(r).write(elementPlace(r, offset), element);
}

// ---- zero and one

namespace {

DAG imaginaryZero() { return simpl(new2(COMPLEX, consf0)); }

bool goesByObjects(DAG r) { return datatypeOf(r) == dataDag && r[rtableElementType] != ini("sfloat"); }
bool isIntegerFormat(Word datatype) { return datatype >= dataInteger8 && datatype <= dataInteger64; }

}  // namespace

DAG RTableZero(DAG r) {
  const Word datatype = datatypeOf(r);
  if (goesByObjects(r) || isIntegerFormat(datatype)) return cons0;
  return datatype == dataComplexFloat || datatype == dataComplexFloat64 ? imaginaryZero() : consf0;
}
DAG RTableOne(DAG r) { return goesByObjects(r) || isIntegerFormat(datatypeOf(r)) ? cons1 : consf1; }

bool isZeroValue(DAG x) {
  if (isImmediate(x)) return isZeroImmediate(x);
  if (isTag(x, HFLOAT)) return hfloatValue(x) == 0;
  if (isTag(x, FLOAT)) return isFloatZero(x);
  if (!isTag(x, COMPLEX)) return false;
  for (Word i = 1; i < lengthOf(x); ++i)
    if (!isZeroValue(x[i])) return false;
  return true;
}

}  // namespace korel
