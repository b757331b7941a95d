#include "hardware/hardware_functions.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <iterator>

#include "frame/errors.h"
#include "hardware/hardware_power.h"
#include "hardware/special_functions.h"
#include "numbers/float/hardware_float.h"
#include "store/names.h"

namespace korel {

namespace {

// ---- functions by parts of their argument

double sign(double x) { return x > 0 ? 1.0 : x < 0 ? -1.0 : x == 0 ? 0.0 : x; }
double fraction(double x) { return std::isinf(x) ? 0.0 : x - std::trunc(x); }
double heaviside(double x) { return x > 0 ? 1.0 : x < 0 ? 0.0 : x == 0 ? 0.5 : x; }
double dirac(double x) { return x == 0 ? mIEEEPosInfinity : std::isnan(x) ? x : 0.0; }
double absolute(double x) { return std::fabs(x); }
double floorOf(double x) { return std::floor(x); }
double ceilOf(double x) { return std::ceil(x); }
double roundOf(double x) { return std::round(x); }
double truncOf(double x) { return std::trunc(x); }
double expOf(double x) { return std::exp(x); }
double logOf(double x) { return std::log(x); }
double arcsin(double x) { return std::asin(x); }
double arccos(double x) { return std::acos(x); }
double arctan(double x) { return std::atan(x); }
double arctan2(double y, double x) { return std::atan2(y, x); }
double sine(double x) { return hftrig(x, selectSin); }
double cosine(double x) { return hftrig(x, selectCos); }
double tangent(double x) { return hftrig(x, selectTan); }

double larger(double a, double b) { return std::isnan(a) || a > b ? a : b; }
double smaller(double a, double b) { return std::isnan(a) || a < b ? a : b; }
double sum(double a, double b) { return a + b; }
double product(double a, double b) { return a * b; }

// ---- derivatives: f(n, x) is the n-th of f at x

// The order, a whole number from 0 on.
void requireOrder(double n, const char* name) {
  if (!(n >= 0 && n == std::trunc(n))) wrongHardwareArguments(naminstall(name));
}
bool isWhole(double x) { return x == std::trunc(x); }
// The value at a point between the jumps, which `atJump` tells.
double betweenJumps(bool atJump, double value, const char* message, const char* name) {
  if (atJump) KernelException(message, naminstall(name));
  return value;
}
constexpr char notAtZero[] = "%1 is not differentiable at 0", notAtIntegers[] = "%1 is not differentiable at integers",
               notAtHalves[] = "%1 is not differentiable at half-integers";

double absDerivative(double n, double x) {
  requireOrder(n, "abs");
  if (n == 0) return std::fabs(x);
  return betweenJumps(x == 0, n == 1 ? sign(x) : 0.0, notAtZero, "abs");
}
double signDerivative(double n, double x, const char* name) {
  requireOrder(n, name);
  return n == 0 ? sign(x) : betweenJumps(x == 0, 0.0, notAtZero, name);
}
double signumDerivative(double n, double x) { return signDerivative(n, x, "signum"); }
double csgnDerivative(double n, double x) { return signDerivative(n, x, "csgn"); }
double floorDerivative(double n, double x) {
  requireOrder(n, "floor");
  return n == 0 ? std::floor(x) : betweenJumps(isWhole(x), 0.0, notAtIntegers, "floor");
}
double ceilDerivative(double n, double x) {
  requireOrder(n, "ceil");
  return n == 0 ? std::ceil(x) : betweenJumps(isWhole(x), 0.0, notAtIntegers, "ceil");
}
double roundDerivative(double n, double x) {
  requireOrder(n, "round");
  return n == 0 ? std::round(x) : betweenJumps(fraction(std::fabs(x)) == 0.5, 0.0, notAtHalves, "round");
}
// Both pass through 0 without a jump.
double truncDerivative(double n, double x) {
  requireOrder(n, "trunc");
  return n == 0 ? std::trunc(x) : betweenJumps(x != 0 && isWhole(x), 0.0, notAtIntegers, "trunc");
}
double fracDerivative(double n, double x) {
  requireOrder(n, "frac");
  return n == 0 ? fraction(x) : betweenJumps(x != 0 && isWhole(x), n == 1 ? 1.0 : 0.0, notAtIntegers, "frac");
}
double diracDerivative(double n, double x) {
  requireOrder(n, "Dirac");
  return n == 0 ? dirac(x) : betweenJumps(x == 0, 0.0, notAtZero, "Dirac");
}

using enum HardwareArity;

// In the order of `strcmp`.
constexpr HardwareFunction functions[] = {
    // name       arity  one         two
    {"*",         fold,  nullptr,    product},
    {"**",        fold,  nullptr,    hfpow},
    {"+",         fold,  nullptr,    sum},
    {"Dirac",     fixed, dirac,      diracDerivative},
    {"GAMMA",     fixed, hfgamma,    nullptr},
    {"Heaviside", fixed, heaviside,  nullptr},
    {"^",         fold,  nullptr,    hfpow},
    {"abs",       fixed, absolute,   absDerivative},
    {"arccos",    fixed, arccos,     nullptr},
    {"arccosh",   fixed, hfarccosh,  nullptr},
    {"arccot",    fixed, hfarccot,   nullptr},
    {"arccoth",   fixed, hfarccoth,  nullptr},
    {"arccsc",    fixed, hfarccsc,   nullptr},
    {"arccsch",   fixed, hfarccsch,  nullptr},
    {"arcsec",    fixed, hfarcsec,   nullptr},
    {"arcsech",   fixed, hfarcsech,  nullptr},
    {"arcsin",    fixed, arcsin,     nullptr},
    {"arcsinh",   fixed, hfarcsinh,  nullptr},
    {"arctan",    fixed, arctan,     arctan2},
    {"arctanh",   fixed, hfarctanh,  nullptr},
    {"ceil",      fixed, ceilOf,     ceilDerivative},
    {"cos",       fixed, cosine,     nullptr},
    {"cosh",      fixed, hfcosh,     nullptr},
    {"cot",       fixed, hfcot,      nullptr},
    {"coth",      fixed, hfcoth,     nullptr},
    {"csc",       fixed, hfcsc,      nullptr},
    {"csch",      fixed, hfcsch,     nullptr},
    {"csgn",      fixed, sign,       csgnDerivative},
    {"erf",       fixed, hferf,      nullptr},
    {"erfc",      fixed, hferfc,     nullptr},
    {"exp",       fixed, expOf,      nullptr},
    {"floor",     fixed, floorOf,    floorDerivative},
    {"frac",      fixed, fraction,   fracDerivative},
    {"ln",        fixed, logOf,      nullptr},
    {"lnGAMMA",   fixed, hflgamma,   nullptr},
    {"log",       fixed, logOf,      nullptr},
    {"log10",     fixed, hflog10,    nullptr},
    {"max",       fold,  nullptr,    larger},
    {"min",       fold,  nullptr,    smaller},
    {"round",     fixed, roundOf,    roundDerivative},
    {"sec",       fixed, hfsec,      nullptr},
    {"sech",      fixed, hfsech,     nullptr},
    {"signum",    fixed, sign,       signumDerivative},
    {"sin",       fixed, sine,       nullptr},
    {"sinh",      fixed, hfsinh,     nullptr},
    {"sqrt",      fixed, hfsqrt,     nullptr},
    {"surd",      fixed, nullptr,    hfsurd},
    {"tan",       fixed, tangent,    nullptr},
    {"tanh",      fixed, hftanh,     nullptr},
    {"trunc",     fixed, truncOf,    truncDerivative},
};

// ---- constants

struct Constant {
  const char* name;
  double value;
};
constexpr Constant constants[] = {
    {"Catalan", 0.915965594177219015},
    {"DBL_DIG", DBL_DIG},
    {"DBL_EPSILON", DBL_EPSILON},
    {"DBL_MANT_DIG", DBL_MANT_DIG},
    {"DBL_MAX", DBL_MAX},
    {"DBL_MAX_10_EXP", DBL_MAX_10_EXP},
    {"DBL_MAX_EXP", DBL_MAX_EXP},
    {"DBL_MIN", DBL_MIN},
    {"DBL_MIN_10_EXP", DBL_MIN_10_EXP},
    {"DBL_MIN_EXP", DBL_MIN_EXP},
    {"FLT_RADIX", FLT_RADIX},
    {"LNMAXFLOAT", 709.78271289338399684},
    {"Pi", 3.14159265358979323846},
    {"false", 0.0},
    {"gamma", 0.577215664901532860607},
    {"infinity", __builtin_inf()},
    {"true", 1.0},
    {"undefined", __builtin_nan("")},
};

template <class Row>
const Row* rowNamed(const Row* begin, const Row* end, const char* name) {
  const Row* row =
      std::lower_bound(begin, end, name, [](const Row& r, const char* n) { return std::strcmp(r.name, n) < 0; });
  return row != end && std::strcmp(row->name, name) == 0 ? row : nullptr;
}

}  // namespace

const HardwareFunction* hardwareFunction(const char* name) {
  return rowNamed(std::begin(functions), std::end(functions), name);
}

void wrongHardwareArguments(DAG name) { KernelException("wrong arguments for function `%1`", name); }

bool hardwareConstant(const char* name, double& value) {
  const Constant* row = rowNamed(std::begin(constants), std::end(constants), name);
  if (row == nullptr) return false;
  value = row->name[0] == 'u' ? mIEEEQuietNaN : row->value;
  return true;
}

}  // namespace korel
