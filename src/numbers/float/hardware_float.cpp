#include "numbers/float/hardware_float.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/float/float.h"
#include "numbers/float/float_rounding.h"
#include "numbers/float/shortest_decimal.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/objects.h"

namespace korel {

double mIEEEPosInfinity, mIEEENegInfinity, mIEEEQuietNaN, mIEEESignalNaN;
double mIEEEPi, mIEEEgamma, mIEEECatalan;

namespace {

using DoubleBytes = std::uint8_t[8];

// Big-endian bytes of the constants.
struct HardwareConstant {
  double* place;
  DoubleBytes bytes;
};
const HardwareConstant hardwareConstants[] = {
    // place               bytes
    {&mIEEEPosInfinity, {0x7F, 0xF0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}},
    {&mIEEENegInfinity, {0xFF, 0xF0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}},
    {&mIEEEQuietNaN,    {0x7F, 0xFC, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}},
    {&mIEEESignalNaN,   {0x7F, 0xF7, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
    {&mIEEEPi,          {0x40, 0x09, 0x21, 0xFB, 0x54, 0x44, 0x2D, 0x18}},
    {&mIEEEgamma,       {0x3F, 0xE2, 0x78, 0x8C, 0xFC, 0x6F, 0xB6, 0x19}},
    {&mIEEECatalan,     {0x3F, 0xED, 0x4F, 0x97, 0x13, 0xE8, 0x13, 0x5D}},
};

// Bytes are moved, never loaded as a double: that would quieten a signalling NaN.
void storeBytes(double* place, const DoubleBytes& bytes) {
  std::uint64_t bits = 0;
  for (std::uint8_t byte : bytes) bits = bits << 8 | byte;
  std::memcpy(place, &bits, sizeof bits);
}

int classOfBits(const double* place) {
  std::uint64_t bits;
  std::memcpy(&bits, place, sizeof bits);
  constexpr std::uint64_t exponentMask = 0x7FF0000000000000, quietBit = 0x0008000000000000;
  if ((bits & exponentMask) != exponentMask) return 4;
  if ((bits & 0x000FFFFFFFFFFFFF) == 0) return bits >> 63 != 0 ? negativeInfinity : positiveInfinity;
  return (bits & quietBit) != 0 ? quietNaN : signallingNaN;
}

[[noreturn]] void reportConstant(const char* name, const double* place) {
  std::uint64_t bits;
  std::memcpy(&bits, place, sizeof bits);
  char text[128];
  int length = std::snprintf(text, sizeof text, "IEEE Math: %s, %g, %d, ", name, *place, classOfBits(place));
  for (int shift = 56; shift >= 0; shift -= 8)
    length += std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length), "%02X",
                            static_cast<unsigned>(bits >> shift & 0xFF));
  std::fprintf(stderr, "%s\n", text);
  notimpl(text);
}

void requireClass(const char* name, const double* place, int expected) {
  if (classOfBits(place) != expected) reportConstant(name, place);
}

}  // namespace

int fp_class_d(double x) { return classOfBits(&x); }

void InitializeIEEEMath() {
  for (const HardwareConstant& constant : hardwareConstants) storeBytes(constant.place, constant.bytes);
  requireClass("PosInfinity", &mIEEEPosInfinity, positiveInfinity);
  requireClass("NegInfinity", &mIEEENegInfinity, negativeInfinity);
  if (classOfBits(&mIEEESignalNaN) != signallingNaN) mIEEESignalNaN = mIEEEQuietNaN;
  requireClass("SignalNaN", &mIEEESignalNaN, signallingNaN);
  if (classOfBits(&mIEEEQuietNaN) != quietNaN) mIEEEQuietNaN = mIEEEPosInfinity / mIEEEPosInfinity;
  requireClass("QuietNaN", &mIEEEQuietNaN, quietNaN);
}

int matherr(MathError& error) {
  switch (error.type) {
    case 1: case 2: case 5: case 6: error.result = mIEEEQuietNaN; break;
    case 4: error.result = 0.0; break;
    default: break;
  }
  return 1;
}

namespace {

// The double nearest m * 10^exponent.
double doubleOf(DAG m, std::int64_t exponent) {
  const bool negative = tagOf(m) == INTNEG;
  if (isZeroImmediate(m)) return negative ? -0.0 : 0.0;
  std::int64_t length = ilength(m);
  if (exponent + length > 310) return negative ? mIEEENegInfinity : mIEEEPosInfinity;
  if (exponent + length < -325) return negative ? -0.0 : 0.0;
  // 800 digits tell any decimal number from a point halfway between two doubles; a one behind them
  // stands for what is cut off.
  constexpr std::int64_t longest = 800;
  if (length > longest) {
    const bool cut = SoftIntTrailingNonZeroes(m, length - longest);
    m = shift10p(m, longest - length);
    exponent += length - longest;
    if (cut) {
      m = addint(times10p(m, 1), negative ? consm1 : cons1);
      --exponent;
    }
  }
  char text[longest + 32];
  char* end = writeDecimal(m, text);
  *end++ = 'e';
  end = std::to_chars(end, text + sizeof text - 1, exponent).ptr;
  double value;
  if (std::from_chars(text, end, value).ec == std::errc()) return value;
  // Out of the range of normal numbers.
  *end = '\0';
  return std::strtod(text, nullptr);
}

// Up to 2^53 and 10^22 both factors are exact, so that one rounding gives the nearest double (Clinger, "How to read
// floating point numbers accurately"). Most numbers that programs write are of this kind, and are handed to external
// code one by one (bench/external.sh).
bool doubleOfShort(DAG m, std::int64_t exponent, double& value) {
  static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                      1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr std::int64_t mostPower = std::size(powers) - 1, mostExact = std::int64_t{1} << 53;
  if (exponent < -mostPower || exponent > mostPower) return false;
  std::int64_t whole;
  if (isImmediate(m)) {
    if (isZeroImmediate(m)) return false;  // it may be a negative one
    whole = immediateValue(m);
  } else if (!readLongLong(m, whole) || whole > mostExact || whole < -mostExact) {
    return false;
  }
  const auto exact = static_cast<double>(whole);
  value = exponent < 0 ? exact / powers[-exponent] : exact * powers[exponent];
  return true;
}

}  // namespace

double SoftwareToHardwareFloat(DAG x) {
  DAG m = mantissaOf(x), e = exponentOf(x);
  double value;
  if (isImmediate(e) && doubleOfShort(m, immediateValue(e), value)) return value;
  if (e == ini("infinity")) return tagOf(m) == INTNEG ? mIEEENegInfinity : mIEEEPosInfinity;
  if (e == ini("undefined")) return mIEEEQuietNaN;
  if (!isInteger(e)) notimpl("invalid software floating point value");
  return doubleOf(m, exponentValue(e));
}

namespace {

// The FLOAT of a double that isn't finite, or is a zero; 0 for any other.
DAG specialFloat(double x) {
  if (x == 0.0) return std::signbit(x) ? consfm0 : consf0;
  if (std::isfinite(x)) return DAG();
  switch (fp_class_d(x)) {
    case signallingNaN: return newFLOAT(consm1, ini("undefined"));
    case quietNaN: return consfNaN;
    case positiveInfinity: return consfinf;
    default: return consfminf;
  }
}

// Mantissa and exponent of any other.
ShortDecimal decimalOf(double x) {
  constexpr double limit = 2147483648.0;
  if (std::fabs(x) < limit && static_cast<double>(static_cast<std::int64_t>(x)) == x)
    return {static_cast<std::int64_t>(x), 0};
  const ShortDecimal decimal = shortestDecimal(std::fabs(x));
  return {x < 0 ? -decimal.digits : decimal.digits, decimal.exponent};
}

}  // namespace

DAG HardwareToSoftwareFloat(double x) {
  if (DAG special = specialFloat(x)) return special;
  const ShortDecimal decimal = decimalOf(x);
  return newFLOAT(NewInteger(decimal.digits), immediate(decimal.exponent));
}

DAG floatOfDouble(double x) {
  if (DAG special = specialFloat(x)) return simpl(special);
  const ShortDecimal decimal = decimalOf(x);
  return uniqueFloat(decimal.digits, decimal.exponent);
}

// ---- the bits as text

void HFloatToIEEEHex(double x, bool upperCase, char* text) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  const char* alphabet = upperCase ? "0123456789ABCDEF" : "0123456789abcdef";
  for (int i = 0; i < ieeeHexLength; ++i) text[i] = alphabet[bits >> (60 - 4 * i) & 15];
  text[ieeeHexLength] = 0;
}

double IEEEHexToHFloat(const char* text) {
  std::uint64_t bits = 0;
  const auto read = std::from_chars(text, text + std::strlen(text), bits, 16);
  if (read.ec != std::errc() || *read.ptr != 0 || read.ptr - text != ieeeHexLength)
    KernelException("expecting exactly 16 hexadecimal digits");
  double x;
  std::memcpy(&x, &bits, sizeof x);
  return x;
}

// ---- objects

DAG HFloatToFloat(DAG hfloat) { return floatOfDouble(hfloatValue(hfloat)); }

DAG SuppressHFloats(DAG x) {
  auto isHFloat = [](DAG part) { return isTag(part, HFLOAT); };
  if (isHFloat(x)) return HFloatToFloat(x);
  if (!isObject(x) || !hasTag(x, COMPLEX)) return x;
  DAG result = withFields(x, 1, 1, [=](DAG part) { return isHFloat(part) ? HFloatToFloat(part) : part; });
  return result == x ? x : simpl(result);
}

double FloatValue(DAG x) {
  if (isInteger(x)) return isImmediate(x) ? immediateValue(x) : doubleOf(x, 0);
  switch (tagOf(x)) {
    case RATIONAL: {
      std::int64_t scale = ilength(x[2]) - ilength(x[1]) + 20;
      bool cut = scale < 0 && hasNonzeroTail(x[1], -scale);
      DAG remainder;
      DAG q = IntegerDivide(shift10p(x[1], scale), x[2], &remainder);
      if (cut || remainder != cons0) q = markTruncated(q);
      return SoftwareToHardwareFloat(new3(FLOAT, q, NewInteger(-scale)));
    }
    case FLOAT: return SoftwareToHardwareFloat(x);
    case HFLOAT: return hfloatValue(x);
    default: return mIEEEQuietNaN;
  }
}

}  // namespace korel
