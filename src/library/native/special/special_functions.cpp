#include "library/native/special/special_functions.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include "library/native/special/bessel.h"
#include "library/native/special/elementary_balls.h"
#include "library/native/special/elliptic.h"
#include "library/native/special/error_integrals.h"
#include "library/native/special/hypergeometric_values.h"
#include "library/native/special/polylogarithm.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

// An index that has to be a natural number.
bool isIndex(const Complex& z, std::int64_t& n) { return isMachineInteger(z, n) && n >= 0 && n < 1000000; }
bool isOne(const Complex& z) { return isExactZero(z - 1); }

// ---- functions whose meaning depends on the count of arguments

Complex gammaOf(const Complex* a, int n) {
  if (n == 1) return gamma(a[0]);
  return isExactZero(a[1]) ? gamma(a[0]) : upperGamma(a[0], a[1]);
}
Complex psiOf(const Complex* a, int n) {
  std::int64_t order;
  if (n == 1) return digamma(a[0]);
  return isIndex(a[0], order) && order < 5000 ? polygamma(order, a[1]) : giveUp();
}
Complex zetaOf(const Complex* a, int n) {
  if (n == 1) return riemannZeta(a[0]);
  std::int64_t order;
  if (!isIndex(a[0], order)) return giveUp();
  if (n == 2 && order == 0) return riemannZeta(a[1]);
  return hurwitzZeta(a[1], n == 2 ? Complex(1) : a[2], order);
}
bool isLarge(const Complex& z) { return std::hypot(toDouble(z.re), toDouble(z.im)) > 1e6; }
Complex betaOf(const Complex* a, int n) {
  const Complex both = knownInteger(a[0] + a[1]);
  // (-1)^b Beta(1 - a - b, b) for a natural number b
  if (isPole(a[0]) || isPole(a[1])) {
    const int natural = isPole(a[0]) ? 1 : 0;
    const Complex other[2] = {Complex(1) - both, a[natural]};
    const Complex value = betaOf(other, n);
    return isInteger(halved(a[natural].re)) ? value : -value;
  }
  // Of large numbers the factors leave the range of exponents, which their quotient keeps.
  if ((isLarge(a[0]) || isLarge(a[1])) && !isPole(both)) {
    const Complex value = exp(lnGamma(a[0]) + lnGamma(a[1]) - lnGamma(both));
    return isReal(a[0]) && isReal(a[1]) ? Complex(value.re) : value;
  }
  return gamma(a[0]) * gamma(a[1]) * reciprocalGamma(both);
}
Complex binomialOf(const Complex* a, int) {
  const Complex rest = knownInteger(a[0] - a[1]);
  if ((isLarge(a[0]) || isLarge(a[1])) && !isPole(a[0] + 1) && !isPole(a[1] + 1) && !isPole(rest + 1)) {
    const Complex value = exp(lnGamma(a[0] + 1) - lnGamma(a[1] + 1) - lnGamma(rest + 1));
    return isReal(a[0]) && isReal(a[1]) ? Complex(value.re) : value;
  }
  return gamma(a[0] + 1) * reciprocalGamma(a[1] + 1) * reciprocalGamma(rest + 1);
}
Complex lambertOf(const Complex* a, int n) {
  std::int64_t branch = 0;
  if (n == 2 && !isMachineInteger(a[0], branch)) return giveUp();
  return lambertW(branch, a[n - 1]);
}
Complex airyAiOf(const Complex* a, int n) {
  if (n == 1) return airyAi(a[0]);
  return isExactZero(a[0]) ? airyAi(a[1]) : isOne(a[0]) ? airyAiDerivative(a[1]) : giveUp();
}
Complex airyBiOf(const Complex* a, int n) {
  if (n == 1) return airyBi(a[0]);
  return isExactZero(a[0]) ? airyBi(a[1]) : isOne(a[0]) ? airyBiDerivative(a[1]) : giveUp();
}

// ---- poles

int poleAtEnd(const Complex* a, int n) { return isPole(a[n - 1]) ? 1 : 0; }
int gammaPole(const Complex* a, int n) {
  if (n == 1) return isPole(a[0]) ? 1 : 0;
  return isExactZero(a[1]) && isPole(a[0]) ? 1 : 0;
}
int zetaPole(const Complex* a, int n) {
  if (isOne(a[n == 1 ? 0 : 1])) return 1;
  return n == 3 && isPole(a[2]) && signOf(a[1].re) > 0 ? 1 : 0;
}
// Finite at a pole of one factor where the sum is a pole as well and the other argument a natural number.
int betaPole(const Complex* a, int) {
  const bool first = isPole(a[0]), second = isPole(a[1]);
  return (first || second) && ((first && second) || !isPole(knownInteger(a[0] + a[1]))) ? 1 : 0;
}
int binomialPole(const Complex* a, int) { return isPole(a[0] + 1) ? 1 : 0; }
int minusAtZero(const Complex* a, int n) { return isExactZero(a[n - 1]) ? -1 : 0; }
int exponentialPole(const Complex* a, int n) {
  if (!isExactZero(a[n - 1])) return 0;
  if (n == 1) return -1;
  return toDouble(a[0].re) <= 1 ? 1 : 0;
}
int logarithmicPole(const Complex* a, int) { return isOne(a[0]) ? -1 : 0; }
int besselSecondPole(const Complex* a, int n) { return minusAtZero(a, n); }
int besselKPole(const Complex* a, int n) { return -minusAtZero(a, n); }
int besselFirstPole(const Complex* a, int) {
  std::int64_t n;
  if (!isExactZero(a[1]) || isMachineInteger(a[0], n)) return 0;
  return signOf(a[0].re) < 0 ? 1 : 0;
}
int polylogarithmPole(const Complex* a, int) { return isOne(a[1]) && toDouble(a[0].re) <= 1 ? 1 : 0; }
int lambertPole(const Complex* a, int n) { return n == 2 && !isExactZero(a[0]) && isExactZero(a[1]) ? -1 : 0; }
int ellipticPole(const Complex* a, int) { return isOne(square(a[0])) ? 1 : 0; }
// From 0 to an end where both roots of the integrand vanish.
int ellipticEnd(const Complex& z, const Complex& k) { return isOne(square(z)) && isOne(square(k)) ? signOf(z.re) : 0; }
int ellipticFPole(const Complex* a, int) { return ellipticEnd(a[0], a[1]); }
int ellipticPiPole(const Complex* a, int n) {
  if (n == 2) return isOne(a[0]) || isOne(square(a[1])) ? 1 : 0;
  return isOne(knownInteger(a[1] * square(a[0]))) ? signOf(a[0].re) : ellipticEnd(a[0], a[2]);
}

// ---- orthogonal functions of a degree n that is no natural number

bool isPolynomial(const Complex& n) { return isReal(n) && isInteger(n.re) && signOf(n.re) >= 0; }
bool isReal(const Complex* a, int n) {
  return std::all_of(a, a + n, [](const Complex& x) { return isReal(x); });
}
int signOfGamma(const Complex& x) { return signOf(reciprocalGamma(x).re); }
// At -1 they are infinite like -sin(Pi n) times a falling power of x + 1, or its logarithm, times positive factors.
int poleAtMinusOne(const Complex& n, const Complex& x) { return isExactZero(x + 1) ? -signOf(sinPi(n).re) : 0; }
// What precedes the hypergeometric function, gamma(sum)/(gamma(n + 1) gamma(other)), is infinite.
bool isFactorPole(const Complex& sum, const Complex& n, const Complex& other) {
  return isPole(knownInteger(sum)) && !isPole(n + 1) && !isPole(other);
}
int legendrePole(const Complex* a, int n) {
  return isReal(a, n) && !isInteger(a[0].re) ? poleAtMinusOne(a[0], a[1]) : 0;
}
int gegenbauerPole(const Complex* a, int n) {
  if (isPolynomial(a[0])) return 0;
  if (isFactorPole(a[0] + a[1] * 2, a[0], a[1] * 2)) return 1;
  return isReal(a, n) && !isInteger(a[0].re) && toDouble(a[1].re) >= 0.5 ? poleAtMinusOne(a[0], a[2]) : 0;
}
int jacobiPole(const Complex* a, int n) {
  if (isPolynomial(a[0])) return 0;
  const Complex sum = a[0] + a[1] + 1;
  if (isFactorPole(sum, a[0], a[1] + 1)) return 1;
  if (!isReal(a, n) || isInteger(a[0].re) || isNegative(a[2].re)) return 0;
  return poleAtMinusOne(a[0], a[3]) * signOfGamma(sum) * signOfGamma(knownInteger(sum + a[2]));
}
int laguerrePole(const Complex* a, int n) {
  return n == 3 && !isPolynomial(a[0]) && isFactorPole(a[0] + a[1] + 1, a[0], a[1] + 1) ? 1 : 0;
}

template <Complex (*f)(const Complex&)>
Complex unary(const Complex* a, int) {
  return f(a[0]);
}
template <Complex (*f)(const Complex&, const Complex&)>
Complex binary(const Complex* a, int) {
  return f(a[0], a[1]);
}

const SpecialFunction functions[] = {
    // name           least  most  value  pole
    {"AiryAi", 1, 2, airyAiOf, nullptr},
    {"AiryBi", 1, 2, airyBiOf, nullptr},
    {"BesselI", 2, 2, binary<besselI>, besselFirstPole},
    {"BesselJ", 2, 2, binary<besselJ>, besselFirstPole},
    {"BesselK", 2, 2, binary<besselK>, besselKPole},
    {"BesselY", 2, 2, binary<besselY>, besselSecondPole},
    {"Beta", 2, 2, betaOf, betaPole},
    {"ChebyshevT", 2, 2, binary<chebyshevT>, nullptr},
    {"ChebyshevU", 2, 2, binary<chebyshevU>, legendrePole},
    {"Chi", 1, 1, unary<hyperbolicCosineIntegral>, minusAtZero},
    {"Ci", 1, 1, unary<cosineIntegral>, minusAtZero},
    {"Ei", 1, 1, unary<exponentialIntegral>, exponentialPole},
    {"Ei", 2, 2, [](const Complex* a, int) { return exponentialIntegral(a[0], a[1]); }, exponentialPole},
    {"EllipticE", 1, 1, unary<ellipticE>, nullptr},
    {"EllipticE", 2, 2, binary<ellipticE>, nullptr},
    {"EllipticF", 2, 2, binary<ellipticF>, ellipticFPole},
    {"EllipticK", 1, 1, unary<ellipticK>, ellipticPole},
    {"EllipticPi", 2, 2, binary<ellipticPi>, ellipticPiPole},
    {"EllipticPi", 3, 3, [](const Complex* a, int) { return ellipticPi(a[0], a[1], a[2]); }, ellipticPiPole},
    {"GAMMA", 1, 2, gammaOf, gammaPole},
    {"GegenbauerC", 3, 3, [](const Complex* a, int) { return gegenbauerC(a[0], a[1], a[2]); }, gegenbauerPole},
    {"HermiteH", 2, 2, binary<hermiteH>, nullptr},
    {"JacobiP", 4, 4, [](const Complex* a, int) { return jacobiP(a[0], a[1], a[2], a[3]); }, jacobiPole},
    {"LaguerreL", 2, 3, [](const Complex* a, int n) { return laguerreL(a[0], n == 2 ? Complex(0) : a[1], a[n - 1]); },
     laguerrePole},
    {"LambertW", 1, 2, lambertOf, lambertPole},
    {"LegendreP", 2, 2, binary<legendreP>, legendrePole},
    {"Li", 1, 1, [](const Complex* a, int) { return isExactZero(a[0]) ? Complex(0) : logarithmicIntegral(a[0]); },
     logarithmicPole},
    {"Psi", 1, 2, psiOf, poleAtEnd},
    {"Shi", 1, 1, unary<hyperbolicSineIntegral>, nullptr},
    {"Si", 1, 1, unary<sineIntegral>, nullptr},
    {"Zeta", 1, 3, zetaOf, zetaPole},
    {"binomial", 2, 2, binomialOf, binomialPole},
    {"dilog", 1, 1, unary<dilogarithm>, nullptr},
    {"erf", 1, 1, unary<errorFunction>, nullptr},
    {"erfc", 1, 1, unary<complementaryErrorFunction>, nullptr},
    {"erfi", 1, 1, unary<imaginaryErrorFunction>, nullptr},
    {"factorial", 1, 1, [](const Complex* a, int) { return gamma(a[0] + 1); },
     [](const Complex* a, int) { return isPole(a[0] + 1) ? 1 : 0; }},
    {"lnGAMMA", 1, 1, unary<lnGamma>, poleAtEnd},
    {"polylog", 2, 2, binary<polylogarithm>, polylogarithmPole},
};

}  // namespace

const SpecialFunction* specialFunction(const char* name, int arguments) {
  for (const SpecialFunction& f : functions)
    if (std::strcmp(f.name, name) == 0 && arguments >= f.least && arguments <= f.most) return &f;
  return nullptr;
}

}  // namespace korel::special
