#pragma once
// Functions of one double that the platform's library lacks, or gives less exactly than doubles allow.
//
// They work in the 64 bits of precision of the extended format, so that their last rounding is all but the only one.
// Outside of a function's domain they give NaN, at a pole an infinity, unless an error is told.

namespace korel {

enum TrigonometricSelector : int { selectSin = 0, selectCos = 1, selectTan = 2 };
/// sin, cos or tan of any double, reduced without loss.
double hftrig(double x, int selector);

double hfcot(double x);
double hfsec(double x);
double hfcsc(double x);
double hfarccot(double x);  // from 0 to Pi
double hfarcsec(double x);
double hfarccsc(double x);
double hfsinh(double x);
double hfcosh(double x);
double hftanh(double x);
double hfcoth(double x);
double hfsech(double x);
double hfcsch(double x);
double hfarcsinh(double x);
double hfarccosh(double x);
double hfarctanh(double x);
double hfarccoth(double x);
double hfarcsech(double x);
double hfarccsch(double x);
double hflog10(double x);
double hferf(double x);
double hferfc(double x);
double hfgamma(double x);
/// ln |GAMMA(x)|. Error at 0 and the negative integers: "singularity encountered in lnGAMMA".
double hflgamma(double x);
/// The same from 1/2 to 5/2, where the function passes through 0 at 1 and 2.
double hflgamma1(double x);
/// Error: "sqrt of a negative number".
double hfsqrt(double x);

}  // namespace korel
