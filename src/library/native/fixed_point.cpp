#include "library/native/fixed_point.h"

#include <cmath>

#include "frame/environment_block.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

// ---- numbers as they come in

Exact decimal(DAG m, std::int64_t e) { return {m, cons1, e}; }

Exact exactOf(DAG number) {
  if (isTag(number, HFLOAT)) number = HFloatToFloat(number);
  if (isTag(number, RATIONAL)) return {number[1], number[2], 0};
  if (isSoftFloat(number)) return decimal(mantissaOf(number), exponentValue(exponentOf(number)));
  return decimal(number, 0);
}

bool isZero(const Exact& x) { return isZero(x.numerator); }
bool isNegative(const Exact& x) { return consneg(x.numerator); }
Exact negated(Exact x) {
  x.numerator = complint(x.numerator);
  return x;
}

Exact reciprocal(const Exact& x) {
  if (isNegative(x)) return {complint(x.denominator), complint(x.numerator), -x.exponent};
  return {x.denominator, x.numerator, -x.exponent};
}

Exact product(const Exact& a, const Exact& b) {
  return {mulint(a.numerator, b.numerator), mulint(a.denominator, b.denominator), a.exponent + b.exponent};
}

Exact plus(const Exact& x, std::int32_t n) {
  DAG unit = mulint(Newint(n), x.denominator);
  if (x.exponent >= 0) return {addint(shift10p(x.numerator, x.exponent), unit), x.denominator, 0};
  return {addint(x.numerator, shift10p(unit, -x.exponent)), x.denominator, x.exponent};
}

std::int64_t magnitude(const Exact& x) { return ilength(x.numerator) - ilength(x.denominator) + x.exponent + 1; }

DAG fixed(const Exact& x, std::int64_t p) {
  if (x.denominator == cons1) return shift10p(x.numerator, p + x.exponent);
  const std::int64_t shift = p + x.exponent;
  if (shift >= 0) return dividedBy(shift10p(x.numerator, shift), x.denominator);
  return shift10p(dividedBy(x.numerator, x.denominator), shift);
}

DAG rounded(const Exact& x) {
  if (x.denominator == cons1) return BuildFloat(x.numerator, NewInteger(x.exponent));
  const std::int64_t places = precisionDigits() + 10 + ilength(x.denominator) - ilength(x.numerator);
  return BuildFloat(dividedBy(shift10p(x.numerator, places), x.denominator), NewInteger(x.exponent - places));
}

// ---- steps

DAG dividedBy(DAG a, DAG n) {
  if (isZero(a)) return cons0;
  DAG rest;
  return IntegerDivide(a, n, &rest);
}
DAG difference(DAG a, DAG b) { return addint(a, complint(b)); }
DAG powerOfTen(std::int64_t p) { return shift10p(cons1, p); }
DAG fixedProduct(DAG a, DAG b, std::int64_t p) { return shift10p(mulint(a, b), -p); }
DAG fixedQuotient(DAG a, DAG b, std::int64_t p) { return dividedBy(shift10p(a, p), b); }

double leadingDouble(DAG a, std::int64_t p) {
  const std::int64_t excess = std::max<std::int64_t>(ilength(a) - 17, 0);
  return IntegerToDouble(shift10p(a, -excess)) * std::pow(10.0, static_cast<double>(excess - p));
}
DAG fixedDouble(double x, std::int64_t p) {
  return NewInteger(std::llround(x * std::pow(10.0, static_cast<double>(p))));
}

}  // namespace korel
