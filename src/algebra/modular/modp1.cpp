// The selectors of `modp1`: dense polynomials in one indeterminate.

#include <iterator>

#include "algebra/modular/modular_polynomials.h"
#include "algebra/modular/selectors.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/objects.h"

namespace korel {

namespace {

// ---- checks of arguments

DAG dense(const Selection& call, Word i) {
  call.require(mVerify(call[i], call.modulus));
  return call[i];
}
DAG indeterminate(const Selection& call, Word i) {
  call.require(isNameOrIndexed(call[i]));
  return call[i];
}
DAG integer(const Selection& call, Word i) {
  call.require(isInteger(call[i]));
  return call[i];
}
DAG list(const Selection& call, Word i) {
  call.require(isTag(call[i], LIST));
  return call[i];
}
// A degree or shift that objects can have.
std::int64_t small(const Selection& call, Word i) {
  call.require(isImmediate(call[i]));
  return immediateValue(call[i]);
}
void requirePair(const Selection& call) { call.require(mVerifyPair(call[1], call[2], call.modulus)); }
// Arguments from `first` on are names that take further results.
void requireTargets(const Selection& call, Word first) {
  for (Word i = first; i <= call.count(); ++i) call.require(isNameOrIndexed(call[i]));
}

// ---- making and showing

DAG constant(const Selection& call) { return constantDense(integer(call, 1), indeterminate(call, 2), call.modulus); }
DAG one(const Selection& call) { return constantDense(cons1, indeterminate(call, 1), call.modulus); }
DAG zero(const Selection& call) { return zeroDense(indeterminate(call, 1), call.modulus); }
DAG convertIn(const Selection& call) {
  DAG x = indeterminate(call, 2);
  return isTag(call[1], LIST) ? mConvertList(call[1], x, call.modulus) : mConvertIn(call[1], x, call.modulus);
}
DAG convertOut(const Selection& call) {
  DAG a = dense(call, 1);
  return mConvertOut(a, call.count() == 2 ? indeterminate(call, 2) : a[1]);
}
DAG randpoly(const Selection& call) {
  // The indeterminate may stand behind the degree too.
  const Word degree = isNameOrIndexed(call[1]) ? 2 : 1;
  const std::int64_t n = small(call, degree);
  call.require(n >= 0);
  return mRandpoly(indeterminate(call, 3 - degree), n, call.modulus);
}

// ---- queries

DAG coefficient(const Selection& call) {
  DAG a = dense(call, 1), n = integer(call, 2);
  return isImmediate(n) ? denseCoefficient(a, immediateValue(n)) : cons0;
}
DAG degreeOf(const Selection& call) { return immediate(static_cast<std::int32_t>(denseDegree(dense(call, 1)))); }
DAG indeterminateOf(const Selection& call) { return dense(call, 1)[1]; }
DAG modulusOf(const Selection& call) { return dense(call, 1)[2]; }
DAG isConstant(const Selection& call) {
  DAG a = dense(call, 1), c = integer(call, 2);
  return truth(denseDegree(a) == 0 && denseCoefficient(a, 0) == c);
}
DAG isOne(const Selection& call) {
  DAG a = dense(call, 1);
  return truth(denseDegree(a) == 0 && denseCoefficient(a, 0) == cons1);
}
DAG isZeroPolynomial(const Selection& call) { return truth(denseDegree(dense(call, 1)) < 0); }
DAG maxHardware(const Selection&) { return immediate(largestRawModulus); }

// ---- arithmetic

DAG sum(const Selection& call) {
  call.require(mVerifyMany(call.arguments, call.modulus));
  return mAdd(call.arguments, call.modulus);
}
DAG difference(const Selection& call) {
  if (call.count() == 1) return mNegate(dense(call, 1), call.modulus);
  requirePair(call);
  return mSubtract(call[1], call[2], call.modulus);
}
DAG product(const Selection& call) {
  requirePair(call);
  return mMultiply(call[1], call[2], call.modulus);
}
DAG quotient(const Selection& call) {
  requirePair(call);
  requireTargets(call, 3);
  DAG q, r;
  mDivide(call[1], call[2], &q, call.count() == 3 ? &r : nullptr, call.modulus);
  if (call.count() == 3) assign(call[3], r);
  return q;
}
DAG remainder(const Selection& call) {
  requirePair(call);
  requireTargets(call, 3);
  DAG q, r;
  mDivide(call[1], call[2], call.count() == 3 ? &q : nullptr, &r, call.modulus);
  if (call.count() == 3) assign(call[3], q);
  return r;
}
DAG gcd(const Selection& call) {
  requirePair(call);
  requireTargets(call, 3);
  DAG g = mGcd(call[1], call[2], call.modulus);
  for (Word i = 3; i <= call.count(); ++i) {
    DAG cofactor = withModulus(call[i - 2], call.modulus);
    if (denseDegree(g) >= 0) mDivide(cofactor, g, &cofactor, nullptr, call.modulus);
    assign(call[i], cofactor);
  }
  return g;
}
DAG gcdex(const Selection& call) {
  requirePair(call);
  requireTargets(call, 3);
  DAG a = call[1], b = call[2], m = call.modulus, s;
  DAG g = mGcdex(a, b, &s, m);
  if (call.count() >= 3) assign(call[3], s);
  if (call.count() == 4) {
    DAG t = zeroDense(a[1], m);
    if (denseDegree(b) >= 0) mDivide(mSubtract(g, mMultiply(s, a, m), m), b, &t, nullptr, m);
    assign(call[4], t);
  }
  return g;
}
DAG powmod(const Selection& call) {
  DAG a = dense(call, 1), n = integer(call, 2), b = dense(call, 3);
  call.require(!consneg(n) && a[1] == b[1]);
  return mPowmod(a, n, b, call.modulus);
}
DAG resultant(const Selection& call) {
  requirePair(call);
  return mResultant(call[1], call[2], call.modulus);
}
DAG derivative(const Selection& call) { return mDiff(dense(call, 1), call.modulus); }
DAG shift(const Selection& call) {
  DAG a = dense(call, 1);
  return mShift(a, small(call, 2), call.modulus);
}
DAG translate(const Selection& call) {
  DAG a = dense(call, 1);
  return mTranslate(a, integer(call, 2), call.modulus);
}
DAG embed(const Selection& call) {
  DAG a = dense(call, 1), m2 = integer(call, 2);
  call.require(compcon(m2, cons1) > 0);
  return mEmbed(a, m2);
}

// ---- points and numbers

DAG value(const Selection& call) {
  DAG a = dense(call, 1);
  if (!isTag(call[2], LIST)) return mEval(a, integer(call, 2), call.modulus);
  call.require(everyMember(call[2][1], [](DAG c) { return isInteger(c); }));
  return mEval2(a, call[2], call.modulus);
}
DAG interpolate(const Selection& call) {
  call.require(mVerifyList(call[1], call.modulus) && mVerifyList(call[2], call.modulus));
  return mInterpolate(call[1], call[2], indeterminate(call, 3), call.modulus);
}
DAG chrem(const Selection& call) {
  DAG residues = list(call, 1);
  return mChrem(residues, list(call, 2));
}
DAG prime(const Selection& call) { return mGetPrime(integer(call, 1)); }

constexpr Selector selectors[] = {
    // name           arguments  operation
    {"Add",           1, -1,     sum},
    {"Chrem",         2,  2,     chrem},
    {"Coeff",         2,  2,     coefficient},
    {"Constant",      2,  2,     constant},
    {"ConvertIn",     2,  2,     convertIn},
    {"ConvertOut",    1,  2,     convertOut},
    {"Degree",        1,  1,     degreeOf},
    {"Diff",          1,  1,     derivative},
    {"Embed",         2,  2,     embed},
    {"Eval",          2,  2,     value},
    {"Gcd",           2,  4,     gcd},
    {"Gcdex",         2,  4,     gcdex},
    {"Indeterminate", 1,  1,     indeterminateOf},
    {"Interp",        3,  3,     interpolate},
    {"IsConstant",    2,  2,     isConstant},
    {"IsOne",         1,  1,     isOne},
    {"IsZero",        1,  1,     isZeroPolynomial},
    {"MaxHardware",   0,  0,     maxHardware},
    {"Modulus",       1,  1,     modulusOf},
    {"Multiply",      2,  2,     product},
    {"One",           1,  1,     one},
    {"Powmod",        3,  3,     powmod},
    {"Prime",         1,  1,     prime},
    {"Quo",           2,  3,     quotient},
    {"Randpoly",      2,  2,     randpoly},
    {"Rem",           2,  3,     remainder},
    {"Resultant",     2,  2,     resultant},
    {"Shift",         2,  2,     shift},
    {"Subtract",      1,  2,     difference},
    {"Translate",     2,  2,     translate},
    {"Zero",          1,  1,     zero},
};

}  // namespace

const SelectorFamily modp1Family = {
    .badName = "modp1: bad function name",
    .invalidArguments = "modp1: invalid arguments to function %1",
    .library = "modp1/",
    .selectors = selectors,
    .selectorCount = std::size(selectors),
    .mapsLists = false,
};

}  // namespace korel
