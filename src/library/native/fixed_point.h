#pragma once
// Fixed-point numbers on the kernel's integers: what the numeric values of functions and constants are computed with.
//
// A fixed-point number of p decimal places is the integer that 10^p times its value truncates to. Products and
// quotients are truncated, so that each step is off by less than one unit of the last place; whoever chains steps
// takes guard places for them. `Exact` is a number as it comes in: a fraction with a decimal exponent.
//
// The functions are computed to a number of significant digits that leaves the final rounding to `Digits` within 0.51
// units of the last digit.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// numerator / denominator * 10^exponent, with a denominator above 0.
struct Exact {
  DAG numerator, denominator;
  std::int64_t exponent;
};
/// An integer, RATIONAL or finite float as it stands.
Exact exactOf(DAG number);
/// m * 10^e.
Exact decimal(DAG m, std::int64_t e);
bool isZero(const Exact& x);
bool isNegative(const Exact& x);
Exact negated(Exact x);
/// 1 / x for an x that isn't 0.
Exact reciprocal(const Exact& x);
Exact product(const Exact& a, const Exact& b);
/// x + n with the same denominator.
Exact plus(const Exact& x, std::int32_t n);
/// A place m of the leading digit: 10^(m - 2) < |x| < 10^(m + 1), for an x that isn't 0.
std::int64_t magnitude(const Exact& x);
/// `x` at p places.
DAG fixed(const Exact& x, std::int64_t p);
/// The float nearest to x under `Digits` and `Rounding`.
DAG rounded(const Exact& x);

DAG fixedProduct(DAG a, DAG b, std::int64_t p);
DAG fixedQuotient(DAG a, DAG b, std::int64_t p);
/// a / n, a - b, and 10^p.
DAG dividedBy(DAG a, DAG n);
DAG difference(DAG a, DAG b);
DAG powerOfTen(std::int64_t p);
/// The leading digits of a positive fixed-point number as a double.
double leadingDouble(DAG a, std::int64_t p);
/// The fixed-point number nearest to x, for p up to 15.
DAG fixedDouble(double x, std::int64_t p);

// ---- constants at p places, off by a few units

DAG fixedPi(std::int64_t p);
DAG fixedLn10(std::int64_t p);
DAG fixedGamma(std::int64_t p);
DAG fixedCatalan(std::int64_t p);
/// exp(1)
DAG fixedE(std::int64_t p);

}  // namespace korel
