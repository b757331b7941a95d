// The selectors of `modp2` and `evalgf1`: dense polynomials in two indeterminates.

#include <iterator>

#include "algebra/modular/bivariate_polynomials.h"
#include "algebra/modular/selectors.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/objects.h"

namespace korel {

namespace {

// ---- checks of arguments

DAG dense(const Selection& call, Word i) {
  call.require(m2Verify(call[i], call.modulus));
  return call[i];
}
std::int64_t small(const Selection& call, Word i) {
  call.require(isImmediate(call[i]));
  return immediateValue(call[i]);
}
// The two indeterminates that stand from argument `first` on.
DAG indeterminates(const Selection& call, Word first) {
  call.require(isNameOrIndexed(call[first]) && isNameOrIndexed(call[first + 1]) && call[first] != call[first + 1]);
  return simpl(newSequence({call[first], call[first + 1]}));
}
// `a` with another modulus where it is smaller than that of the call.
DAG carried(DAG a, const Selection& call) { return withModulus(a, call.modulus); }

// ---- making and showing

DAG build(const Selection& call) {
  if (call.count() != 3 || !isNameOrIndexed(call[2]) || !isNameOrIndexed(call[3]) || call[2] == call[3])
    KernelException("modp2: invalid arguments to Build");
  return m2Build(call[1], indeterminates(call, 2), call.modulus);
}

DAG constantPolynomial(DAG c, DAG names, DAG m) { return newBivariate(names, m, newSequence({c})); }

// Constant(c, x, y) of an integer c; of a polynomial c in y, where y may be left out.
DAG constant(const Selection& call) {
  const Word n = call.count();
  if (n < 2) KernelException("too few arguments to Constant");
  if (n > 3) KernelException("too many arguments to Constant");
  DAG c = call[1], m = call.modulus;
  if (isInteger(c)) {
    if (n != 3) KernelException("incorrect number of arguments to Constant");
  } else {
    call.require(isUnivariate(c));
    if (!mVerify(c, m)) KernelException("invalid modulus in Constant");
  }
  DAG x = call[2], y = n == 3 ? call[3] : c[1];
  if (!isNameOrIndexed(x) || !isNameOrIndexed(y) || x == y) KernelException("invalid indeterminate in Constant");
  if (!isInteger(c) && c[1] != y) KernelException("invalid indeterminate in Constant");
  DAG names = simpl(newSequence({x, y}));
  return constantPolynomial(isInteger(c) ? constantDense(c, y, m) : carried(c, call), names, m);
}
DAG one(const Selection& call) {
  DAG names = indeterminates(call, 1);
  return constantPolynomial(constantDense(cons1, names[2], call.modulus), names, call.modulus);
}
DAG zero(const Selection& call) { return zeroDense(indeterminates(call, 1), call.modulus); }

constexpr BivariateMessages modp2Messages = {"modp2: invalid arguments", "modp2: degree too large",
                                             "modp2: polynomial does not have integer coefficients"};
constexpr BivariateMessages evalgf1Messages = {"evalgf1: invalid arguments", "evalgf1: degree too large",
                                               "evalgf1: polynomial does not have integer coefficients"};

DAG converted(const Selection& call, const BivariateMessages& messages) {
  DAG given = newl2(call.count(), EXPSEQ);
  for (Word i = 2; i <= call.count(); ++i) {
    if (!isNameOrIndexed(call[i])) KernelException(messages.invalidArguments);
    given[i - 1] = call[i];
  }
  given = simpl(given);
  return m2ConvertIn(call[1], m2ResolveIndets(call[1], given), call.modulus, messages);
}
DAG m2Converted(const Selection& call) { return converted(call, modp2Messages); }
DAG gf1Converted(const Selection& call) { return converted(call, evalgf1Messages); }
DAG convertedAndSwapped(const Selection& call) { return m2VarSwap(converted(call, modp2Messages), call.modulus); }

DAG convertOut(const Selection& call) {
  DAG a = dense(call, 1);
  if (call.count() == 1) return m2ConvertOut(a, a[1][1], a[1][2]);
  call.require(call.count() == 3);
  DAG names = indeterminates(call, 2);
  return m2ConvertOut(a, names[1], names[2]);
}

// ---- queries

DAG coefficient1(const Selection& call) {
  DAG a = dense(call, 1);
  call.require(isInteger(call[2]));
  return carried(isImmediate(call[2]) ? denseCoefficient(a, immediateValue(call[2])) : zeroCoefficient(a), call);
}
DAG coefficient2(const Selection& call) {
  DAG a = dense(call, 1);
  call.require(isInteger(call[2]));
  return isImmediate(call[2]) ? m2Coeff2(a, immediateValue(call[2]), call.modulus) : zeroDense(a[1][1], call.modulus);
}
DAG degree1(const Selection& call) { return immediate(static_cast<std::int32_t>(denseDegree(dense(call, 1)))); }
DAG degree2(const Selection& call) { return immediate(static_cast<std::int32_t>(m2Degree2(dense(call, 1)))); }
DAG indeterminatesOf(const Selection& call) { return dense(call, 1)[1]; }
DAG modulusOf(const Selection& call) { return dense(call, 1)[2]; }

bool isConstantPolynomial(DAG a, DAG c) {
  if (denseDegree(a) > 0 || m2Degree2(a) > 0) return false;
  return !c || (denseDegree(a) == 0 && denseCoefficient(denseCoefficient(a, 0), 0) == c);
}
DAG isConstant(const Selection& call) {
  DAG a = dense(call, 1);
  if (call.count() == 1) return truth(isConstantPolynomial(a, DAG()));
  call.require(isInteger(call[2]));
  return truth(isConstantPolynomial(a, call[2]));
}
DAG isOne(const Selection& call) { return truth(isConstantPolynomial(dense(call, 1), cons1)); }
DAG isZeroPolynomial(const Selection& call) { return truth(denseDegree(dense(call, 1)) < 0); }

// ---- other polynomials

DAG evaluated2(const Selection& call) {
  DAG a = dense(call, 1);
  call.require(isInteger(call[2]));
  return m2Eval2(a, call[2], call.modulus);
}
DAG replaceTerm(const Selection& call) { return m2ReplaceTerm(carried(dense(call, 1), call), call[2], call[3]); }
DAG shift(const Selection& call) {
  DAG a = dense(call, 1);
  return mShift(a, small(call, 2), call.modulus);
}
DAG subPolynomial(const Selection& call) {
  DAG a = dense(call, 1), i = call[2], j = call[3];
  if (!isImmediate(i) || !isImmediate(j) || immediateValue(i) < 0 || immediateValue(j) < immediateValue(i))
    KernelException("modp2: invalid range in SubPoly");
  return m2SubPoly(a, immediateValue(i), immediateValue(j), call.modulus);
}
DAG swapped(const Selection& call) { return m2VarSwap(dense(call, 1), call.modulus); }
// The coefficients of the swapped polynomial under the indeterminates of the first.
DAG swappedBack(const Selection& call) {
  DAG a = dense(call, 1), m = call.modulus, across = m2VarSwap(a, m);
  DAG coefficients = newl2(static_cast<Word>(denseDegree(across) + 2), EXPSEQ);
  for (long i = 0; i <= denseDegree(across); ++i) {
    DAG c = CopyAlg(denseCoefficient(across, i));
    c[1] = a[1][2];
    coefficients[i + 1] = simpl(c);
  }
  return newBivariate(a[1], m, coefficients);
}

// f on the coefficients of all operands, place by place.
DAG zip(const Selection& call) {
  const Word operands = call.count() - 1;
  DAG first = dense(call, 2), m = call.modulus;
  long degree = denseDegree(first);
  for (Word k = 3; k <= call.count(); ++k) {
    call.require(dense(call, k)[1] == first[1]);
    degree = std::max(degree, denseDegree(call[k]));
  }
  DAG coefficients = newl2(static_cast<Word>(degree + 2), EXPSEQ);
  for (long i = 0; i <= degree; ++i) coefficients[i + 1] = zeroDense(first[1][2], m);
  for (long i = 0; i <= degree; ++i) {
    DAG arguments = newl2(operands + 1, EXPSEQ);
    for (Word k = 1; k <= operands; ++k) arguments[k] = carried(denseCoefficient(call[k + 1], i), call);
    DAG c = simpl(eval(simpl(new3(FUNCTION, call[1], simpl(arguments)))));
    call.require(mVerify(c, m) && c[1] == first[1][2]);
    coefficients[i + 1] = carried(c, call);
  }
  return newBivariate(first[1], m, coefficients);
}

constexpr Selector modp2Selectors[] = {
    // name                    arguments  operation
    {"Build",                  0, -1,     build},
    {"Coeff1",                 2,  2,     coefficient1},
    {"Coeff2",                 2,  2,     coefficient2},
    {"Constant",               0, -1,     constant},
    {"ConvertIn",              1, -1,     m2Converted},
    {"ConvertInAndSwapIndets", 1, -1,     convertedAndSwapped},
    {"ConvertOut",             1,  3,     convertOut},
    {"Degree1",                1,  1,     degree1},
    {"Degree2",                1,  1,     degree2},
    {"Eval2",                  2,  2,     evaluated2},
    {"Indeterminates",         1,  1,     indeterminatesOf},
    {"IsConstant",             1,  2,     isConstant},
    {"IsOne",                  1,  1,     isOne},
    {"IsZero",                 1,  1,     isZeroPolynomial},
    {"Modulus",                1,  1,     modulusOf},
    {"One",                    2,  2,     one},
    {"ReplaceTerm",            3,  3,     replaceTerm},
    {"Shift",                  2,  2,     shift},
    {"SubPoly",                3,  3,     subPolynomial},
    {"VarSwap",                1,  1,     swapped},
    {"VarSwapSwap",            1,  1,     swappedBack},
    {"Zero",                   2,  2,     zero},
    {"Zip",                    2, -1,     zip},
};

constexpr Selector evalgf1Selectors[] = {
    // name                    arguments  operation
    {"Build",                  0, -1,     build},
    {"Constant",               0, -1,     constant},
    {"ConvertIn",              1, -1,     gf1Converted},
    {"ConvertOut",             1,  3,     convertOut},
    {"Indeterminates",         1,  1,     indeterminatesOf},
    {"IsConstant",             1,  2,     isConstant},
    {"IsOne",                  1,  1,     isOne},
    {"IsZero",                 1,  1,     isZeroPolynomial},
    {"Modulus",                1,  1,     modulusOf},
    {"One",                    2,  2,     one},
    {"ReplaceTerm",            3,  3,     replaceTerm},
    {"Shift",                  2,  2,     shift},
    {"SubPoly",                3,  3,     subPolynomial},
    {"VarSwap",                1,  1,     swapped},
    {"VarSwapSwap",            1,  1,     swappedBack},
    {"Zero",                   2,  2,     zero},
    {"Zip",                    2, -1,     zip},
};

}  // namespace

const SelectorFamily modp2Family = {
    .badName = "modp2: bad function name",
    .invalidArguments = "modp2: invalid arguments to function %1",
    .library = "modp2/",
    .selectors = modp2Selectors,
    .selectorCount = std::size(modp2Selectors),
    .mapsLists = true,
};
const SelectorFamily evalgf1Family = {
    .badName = "evalgf1: bad function name",
    .invalidArguments = "evalgf1: invalid arguments to function %1",
    .library = "evalgf1/",
    .selectors = evalgf1Selectors,
    .selectorCount = std::size(evalgf1Selectors),
    .mapsLists = true,
};

}  // namespace korel
