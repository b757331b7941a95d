#pragma once
// IEEE doubles: the hardware's constants, classes, and the way from and to software floats.

#include "store/dag.h"

namespace korel {

extern double mIEEEPosInfinity, mIEEENegInfinity, mIEEEQuietNaN, mIEEESignalNaN;
extern double mIEEEPi, mIEEEgamma, mIEEECatalan;

/// Stores the constants byte by byte and holds them against `fp_class_d`; part of the start.
/// A constant that the machine classes otherwise is an internal error.
void InitializeIEEEMath();

enum DoubleClass : int { signallingNaN = 0, quietNaN = 1, positiveInfinity = 2, negativeInfinity = 3 };
/// Class of `x`; 4 for every other double.
int fp_class_d(double x);

/// What a function of the mathematical library leaves after an error: `type` is 1 domain, 2
/// singularity, 3 overflow, 4 underflow, 5 total and 6 partial loss of significance.
struct MathError {
  int type;
  double result;
};
/// Sets the value that the error is to have. Always 1: nothing is printed.
int matherr(MathError& error);

/// The double nearest a FLOAT, rounded once. Internal error for an exponent that is another name:
/// "invalid software floating point value".
double SoftwareToHardwareFloat(DAG x);
/// The FLOAT of a double: an integer below 2^31 in magnitude as such, any other finite number with as many digits
/// as make the double again, 17 at most. Not simplified.
DAG HardwareToSoftwareFloat(double x);
/// The same, simplified: what elements of arrays and results of external code become, one by one.
DAG floatOfDouble(double x);
/// The simplified FLOAT of an HFLOAT.
DAG HFloatToFloat(DAG hfloat);
/// HFLOATs, alone or as parts of a COMPLEX, in their software form; other objects unchanged.
DAG SuppressHFloats(DAG x);

/// Writes the eight bytes of `x`, the highest first, as hexadecimal digits and a zero.
constexpr int ieeeHexLength = 16;
void HFloatToIEEEHex(double x, bool upperCase, char* text);
/// The double with these digits. Error: "expecting exactly 16 hexadecimal digits".
double IEEEHexToHFloat(const char* text);

/// The double nearest a real number: integer, RATIONAL, FLOAT or HFLOAT.
double FloatValue(DAG x);

}  // namespace korel
